// SPDX-License-Identifier: MIT
#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace mf::platform {

constexpr char kDirectorySeparator = '/';

/// True when the file or folder at `path` may be read.
bool isReadable(const wchar_t* path);

/// A file opened for reading bytes; in a failed state when it cannot be opened.
std::ifstream openFile(const wchar_t* path);

/// The whole content of a file; std::nullopt when it cannot be read to its end.
std::optional<std::string> readFile(const wchar_t* path);

/// Replaces the file `path` by one with that content. The new file is written beside
/// the old one and renamed, so that a reader sees the old or the new content, never a
/// mixture. Links keep pointing to the file, which keeps its rights. A device or a
/// pipe is written to directly. False when this fails or the file may not be written;
/// the old file is then unchanged, and no other file is left.
bool replaceFile(const wchar_t* path, std::string_view content);

/// The last part of a path, without the text from its last dot on: `cam` for
/// `curves/cam.xml`.
std::wstring fileStem(const std::wstring& path);

}  // namespace mf::platform
