// SPDX-License-Identifier: MIT
#include "tools/mfcurve/files.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <memory>
#include <system_error>

#include "tools/mfcurve/failure.h"

namespace mfcurve {

namespace {

namespace fs = std::filesystem;
using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Failure systemFailure(const std::string& place, const char* what, int reason = errno)
{
    return {kFailed, place, fmt::format("{}: {}", what, std::generic_category().message(reason))};
}

std::string readAll(std::FILE* file, const std::string& name)
{
    std::string content;
    char buffer[1 << 16];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file))
        content.append(buffer, count);
    if (std::ferror(file) != 0)
        throw systemFailure(name, "cannot be read");
    return content;
}

// A file whose destructor removes it unless it was moved to its place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target) : path_(target + ".new~") {}
    ~TemporaryFile()
    {
        std::error_code ignored;
        if (!isMoved_)
            fs::remove(path_, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool write(std::string_view content) const
    {
        File file(std::fopen(path_.c_str(), "wb"), &std::fclose);
        if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size())
            return false;
        return std::fclose(file.release()) == 0;
    }
    std::error_code moveTo(const std::string& target)
    {
        std::error_code error;
        fs::rename(path_, target, error);
        isMoved_ = !error;
        return error;
    }

private:
    std::string path_;
    bool isMoved_ = false;
};

// For a device or a pipe, which cannot be replaced.
void writeInPlace(const std::string& path, std::string_view content)
{
    File file(std::fopen(path.c_str(), "wb"), &std::fclose);
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
        std::fclose(file.release()) != 0)
        throw systemFailure(path, "cannot write");
}

}  // namespace

bool isStandardStream(const std::string& path)
{
    return path == "-";
}

std::string inputName(const std::string& path)
{
    return isStandardStream(path) ? "standard input" : path;
}

std::string linePlace(const std::string& path, int line)
{
    return line == 0 ? inputName(path) : fmt::format("{}:{}", inputName(path), line);
}

std::string readInput(const std::string& path)
{
    if (isStandardStream(path))
        return readAll(stdin, inputName(path));
    const File file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!file)
        throw systemFailure(path, "cannot be read");
    return readAll(file.get(), path);
}

void writeOutput(const std::string& path, std::string_view content)
{
    if (isStandardStream(path))
        return print(content);
    std::error_code ignored;
    if (fs::is_directory(path, ignored))
        throw Failure(kFailed, path, "cannot write: it is a folder");
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored))
        return writeInPlace(path, content);
    const fs::path target =
        fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : fs::path(path);
    TemporaryFile file(target.string());
    if (!file.write(content))
        throw systemFailure(path, "cannot write");
    if (const std::error_code error = file.moveTo(target.string()))
        throw Failure(kFailed, path, "cannot write: " + error.message());
}

void print(std::string_view text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        throw systemFailure("", "cannot write standard output");
}

void finishOutput()
{
    if (std::fflush(stdout) != 0)
        throw systemFailure("", "cannot write standard output");
}

void report(const mf::Problem& problem)
{
    std::fflush(stdout);  // keeps the order of the two outputs
    const char* level = problem.level == mf::Problem::Level::Error ? "error" : "warning";
    const std::string line = fmt::format("mfcurve: {}: {}{}{}\n", level, problem.place,
                                         problem.place.empty() ? "" : ": ", problem.message);
    std::fputs(line.c_str(), stderr);
}

void warn(const std::string& place, const std::string& message)
{
    report({mf::Problem::Level::Warning, place, message});
}

}  // namespace mfcurve
