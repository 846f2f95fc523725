// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/interfaces/CString.h"

namespace mf::profiles {

/// The folders in the host's text, which separates them by ";". They keep their order
/// and spelling; empty ones are included.
std::vector<CString> designLibraryFolders(const CString& paths);

/// The path of a file of that name in a folder of the design library.
CString fileInFolder(const CString& folder, const wchar_t* name);

}  // namespace mf::profiles
