// SPDX-License-Identifier: MIT

#include "mfcurves/platform/files.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "mfcurves/platform/encoding.h"

namespace mf::platform {
namespace {

bool writeAll(int descriptor, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// A new file in the folder of `target`, under an unused name. The destructor closes
// and removes it unless it was renamed to `target`.
class FileBeside {
public:
    // The process's umask applies to `rights`.
    FileBeside(const std::string& target, mode_t rights)
    {
        static std::atomic<unsigned> count = 0;
        const std::string folder = target.substr(0, target.rfind(kDirectorySeparator) + 1);
        const std::string start = folder + ".mfcurves-" + std::to_string(::getpid()) + "-";
        do {
            path_ = start + std::to_string(count++);
            descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, rights);
        } while (descriptor_ < 0 && errno == EEXIST);
    }
    ~FileBeside()
    {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
            ::unlink(path_.c_str());
        }
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    bool write(std::string_view content) { return writeAll(descriptor_, content); }
    bool takeRights(mode_t rights) { return ::fchmod(descriptor_, rights & 07777) == 0; }

    bool renameTo(const std::string& target)
    {
        if (::fsync(descriptor_) != 0 || ::rename(path_.c_str(), target.c_str()) != 0)
            return false;
        ::close(descriptor_);
        descriptor_ = -1;
        return true;
    }

private:
    std::string path_;
    int descriptor_ = -1;
};

// For a device or a pipe, which cannot be replaced by renaming.
bool writeStraight(const std::string& target, std::string_view content)
{
    const int descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool written = writeAll(descriptor, content);
    return ::close(descriptor) == 0 && written;
}

// The path with its links resolved; the path itself when nothing exists there.
std::string resolved(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

}  // namespace

bool isReadable(const wchar_t* path)
{
    return ::access(toUtf8(path).c_str(), R_OK) == 0;
}

std::ifstream openFile(const wchar_t* path)
{
    return std::ifstream(toUtf8(path), std::ios::binary);
}

std::optional<std::string> readFile(const wchar_t* path)
{
    std::ifstream file = openFile(path);
    if (!file)
        return std::nullopt;
    std::string content;
    std::array<char, 65536> block;
    while (file.read(block.data(), block.size()) || file.gcount() > 0)
        content.append(block.data(), static_cast<std::size_t>(file.gcount()));
    if (file.bad())
        return std::nullopt;
    return content;
}

bool replaceFile(const wchar_t* path, std::string_view content)
{
    const std::string target = resolved(toUtf8(path));
    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode))
        return !S_ISDIR(old.st_mode) && writeStraight(target, content);

    if (exists && ::access(target.c_str(), W_OK) != 0)
        return false;

    // The new file never has more rights than the old one, so that nobody else can read
    // a private file meanwhile.
    constexpr mode_t kRightsOfNewFile = 0666;
    FileBeside file(target, exists ? old.st_mode & 0777 : kRightsOfNewFile);
    return file.isOpen() && file.write(content) && (!exists || file.takeRights(old.st_mode)) &&
           file.renameTo(target);
}

std::wstring fileStem(const std::wstring& path)
{
    const std::size_t separator = path.rfind(static_cast<wchar_t>(kDirectorySeparator));
    const std::wstring last = separator == std::wstring::npos ? path : path.substr(separator + 1);
    return last.substr(0, last.rfind(L'.'));
}

}  // namespace mf::platform
