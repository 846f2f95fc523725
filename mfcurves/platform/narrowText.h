// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The internal part of the encodings; encoding.h is the public part.
namespace mf::platform {

bool hasBuiltInEncoder();

/// Calls the current encoder; see NarrowEncoder.
int encodeNarrow(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error);

/// ASCII text is the same in every encoding and every locale.
bool isAscii(std::string_view text);
bool isAscii(std::wstring_view text);

/// Moves text from the front of `utf8` to `buffer`, which takes `size` bytes, and
/// returns how many were written. Each byte that is not part of a valid sequence
/// becomes one U+FFFD. With a `size` of at least 4, each call moves something.
std::size_t moveValidUtf8(std::string_view& utf8, char* buffer, std::size_t size);

}  // namespace mf::platform
