// SPDX-License-Identifier: MIT

// Any file may be refused; none may crash. One that is read matches exactly one
// motion object type; its curve can be evaluated, written and read again.
//
// The input is the document, as a file.

#include <cstdio>
#include <filesystem>
#include <unistd.h>

#include "fuzz/documentProperties.h"
#include "mfcurves/documents/readCurve.h"

namespace {

// The file of this process, in a folder in memory if the machine has one.
class InputFile {
public:
    InputFile()
    {
        const std::filesystem::path memory = "/dev/shm";
        const std::filesystem::path folder =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        path_ = folder / ("document_file_fuzz." + std::to_string(::getpid()) + ".xml");
    }
    ~InputFile() { std::filesystem::remove(path_); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    CString fill(const std::uint8_t* data, std::size_t size) const
    {
        std::FILE* file = std::fopen(path_.c_str(), "wb");
        document_fuzz::require(file != nullptr);
        document_fuzz::require(std::fwrite(data, 1, size, file) == size);
        document_fuzz::require(std::fclose(file) == 0);
        return path_.c_str();
    }

private:
    std::filesystem::path path_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace document_fuzz;
    if (size > kLongestDocument)
        return 0;

    static const InputFile file;
    const CString path = file.fill(data, size);
    int fitting = 0;
    for (const auto type : {mf::MotionObjectType_None, mf::MotionObjectType_Motor, mf::MotionObjectType_Force,
                            mf::MotionObjectType_Torque}) {
        const Host host;
        mfFunctionData_c function;
        require(function.initialize());
        function.setMotionObjectType(type);
        const auto outcome = mf::documents::readCurve(function, path, false, "");
        if (!outcome.taken || !outcome.reason.empty())
            continue;
        ++fitting;
        require(function.getMotionObjectType() == type);
        checkCurve(function);
    }
    require(fitting <= 1);
    return 0;
}
