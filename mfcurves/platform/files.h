// SPDX-License-Identifier: MIT
#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace mf::platform {

constexpr char kDirectorySeparator = '/';

/// True when something at `path` may be read; a folder of that name counts.
bool isReadable(const wchar_t* path);

/// A file opened for reading bytes; in a failed state when it cannot be opened.
std::ifstream openFile(const wchar_t* path);

/// The whole content of a file; nothing when it cannot be read to its end.
std::optional<std::string> readFile(const wchar_t* path);

/// Puts a file with that content in the place of `path`: it is written beside
/// the old one and renamed, so that whoever looks finds the old content or the
/// new one and never a mixture. A link keeps pointing to the file, which keeps its
/// rights; a device or a pipe is written to. False, with the old file untouched
/// and nothing left beside it, when that cannot be done or the file may not be
/// written.
bool replaceFile(const wchar_t* path, std::string_view content);

/// What stands between the last separator and the last dot of the last part of
/// a path: `cam` for `curves/cam.xml`.
std::wstring fileStem(const std::wstring& path);

}  // namespace mf::platform
