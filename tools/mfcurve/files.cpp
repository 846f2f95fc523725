// SPDX-License-Identifier: MIT

#include "tools/mfcurve/files.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "mfcurves/platform/files.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Failure systemFailure(const std::string& what)
{
    return {kFailed, what + ": " + std::generic_category().message(errno)};
}

std::string readAll(std::FILE* file, const std::string& name)
{
    std::string content;
    char buffer[1 << 16];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file))
        content.append(buffer, count);
    if (std::ferror(file) != 0)
        throw systemFailure("cannot read " + name);
    return content;
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

std::string readInput(const std::string& path)
{
    if (isStandardStream(path))
        return readAll(stdin, inputName(path));
    const File file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!file)
        throw systemFailure("cannot read " + path);
    return readAll(file.get(), path);
}

void writeOutput(const std::string& path, const std::string& content)
{
    if (isStandardStream(path))
        return print(content);
    if (std::filesystem::is_directory(path))
        throw Failure(kFailed, "cannot write " + path + ": it is a folder");
    if (!mf::platform::replaceFile(toCString(path), content))
        throw systemFailure("cannot write " + path);
}

void print(const std::string& text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        throw systemFailure("cannot write standard output");
}

void finishOutput()
{
    if (std::fflush(stdout) != 0)
        throw systemFailure("cannot write standard output");
}

void warn(const std::string& message)
{
    std::fflush(stdout);  // what was printed before stands before
    std::fputs(("mfcurve: " + message + "\n").c_str(), stderr);
}

}  // namespace mfcurve
