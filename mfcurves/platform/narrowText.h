// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// What the library itself needs of the encodings, besides encoding.h.
namespace mf::platform {

bool hasBuiltInEncoder();

/// Runs the current encoder, under the contract of NarrowEncoder.
int encodeNarrow(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error);

/// Every encoding and every locale has such a text as it is.
bool isAscii(std::string_view text);
bool isAscii(std::wstring_view text);

/// Moves text from the front of `utf8` to `buffer`, which takes `size` bytes, and
/// returns how many were written. Every byte that belongs to no valid sequence
/// becomes one U+FFFD. From 4 bytes on there is always room for a part of it.
std::size_t moveValidUtf8(std::string_view& utf8, char* buffer, std::size_t size);

}  // namespace mf::platform
