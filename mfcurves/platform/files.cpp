#include "mfcurves/platform/files.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "mfcurves/platform/encoding.h"

namespace mf::platform {
namespace {

// Closes the file it holds, and removes it unless it was renamed to its place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target) : path_(target + ".XXXXXX")
    {
        descriptor_ = ::mkstemp(path_.data());
    }
    ~TemporaryFile()
    {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
            ::unlink(path_.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool write(std::string_view content)
    {
        while (!content.empty()) {
            const ssize_t written = ::write(descriptor_, content.data(), content.size());
            if (written <= 0)
                return false;
            content.remove_prefix(static_cast<std::size_t>(written));
        }
        return true;
    }

    // The new file bears the rights of the one that it replaces, or those that a
    // new file gets.
    bool takeRights(const std::string& target) const
    {
        struct stat old {};
        if (::stat(target.c_str(), &old) == 0)
            return ::fchmod(descriptor_, old.st_mode & 07777) == 0;
        const mode_t mask = ::umask(0);
        ::umask(mask);
        return ::fchmod(descriptor_, 0666 & ~mask) == 0;
    }

    bool renameTo(const std::string& target)
    {
        if (::fsync(descriptor_) != 0 || ::rename(path_.c_str(), target.c_str()) != 0)
            return false;
        ::close(descriptor_);
        descriptor_ = -1;
        return true;
    }

    bool isOpen() const { return descriptor_ >= 0; }

private:
    std::string path_;
    int descriptor_ = -1;
};

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
    const std::string target = toUtf8(path);
    TemporaryFile file(target);
    return file.isOpen() && file.write(content) && file.takeRights(target) && file.renameTo(target);
}

std::wstring fileStem(const std::wstring& path)
{
    const std::size_t separator = path.rfind(static_cast<wchar_t>(kDirectorySeparator));
    const std::wstring last = separator == std::wstring::npos ? path : path.substr(separator + 1);
    return last.substr(0, last.rfind(L'.'));
}

}  // namespace mf::platform
