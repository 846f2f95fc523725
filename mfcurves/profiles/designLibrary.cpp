// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/designLibrary.h"

#include "mfcurves/platform/files.h"

namespace mf::profiles {

std::vector<CString> designLibraryFolders(const CString& paths)
{
    constexpr wchar_t kSeparator = L';';
    std::vector<CString> folders;
    CString rest = paths;
    for (int end = rest.Find(kSeparator); end >= 0; end = rest.Find(kSeparator)) {
        folders.push_back(rest.Left(end));
        rest = rest.Mid(end + 1);
    }
    folders.push_back(rest);
    return folders;
}

CString fileInFolder(const CString& folder, const wchar_t* name)
{
    CString path = folder;
    path += static_cast<wchar_t>(platform::kDirectorySeparator);
    path += name;
    return path;
}

}  // namespace mf::profiles
