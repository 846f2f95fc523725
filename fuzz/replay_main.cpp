// SPDX-License-Identifier: MIT

// Runs a fuzz target over saved inputs: replay FILE_OR_FOLDER...
//
// It lets compilers without libFuzzer run the corpus too, so an input that once
// failed is tried in every test run. A run without inputs fails, because it would
// prove nothing.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

bool replayFile(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    // Prints the name first, so that a crash shows which input caused it.
    std::fprintf(stderr, "%s, %zu bytes\n", file.c_str(), bytes.size());
    // A copy of exact size puts the sanitizer's guard directly after the last byte.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

std::vector<fs::path> filesOf(const fs::path& path)
{
    if (!fs::is_directory(path))
        return {path};
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    return files;
}

}  // namespace

int main(int argc, char** argv)
{
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path& file : filesOf(argv[i])) {
            if (!replayFile(file))
                return 1;
            ++replayed;
        }
    }
    if (replayed == 0) {
        std::fprintf(stderr, "no input to replay\n");
        return 1;
    }
    std::fprintf(stderr, "replayed %zu inputs\n", replayed);
    return 0;
}
