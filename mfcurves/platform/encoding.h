#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

constexpr std::uint32_t kErrorBufferTooSmall = 122;
constexpr std::uint32_t kErrorInvalidParameter = 87;

/// Converts `length` wide characters to the narrow encoding, a terminator among
/// them when it is counted in.
///
/// Answers the number of bytes written to `buffer`. With `size` 0 it writes
/// nothing and answers the number of bytes needed. On failure it answers 0 and
/// sets `error`; kErrorBufferTooSmall asks for a larger buffer.
using NarrowEncoder =
    std::function<int(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error)>;

/// Replaces the conversion of the whole process, so that a test can make it
/// fail; an empty function brings the built-in one back. The built-in encoding
/// is UTF-8, and a code point that it cannot hold becomes U+FFFD.
MFCURVES_API void setNarrowEncoder(NarrowEncoder encoder);
bool hasBuiltInEncoder();

/// Runs the current encoder, under the contract of NarrowEncoder.
int encodeNarrow(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error);

/// Every encoding and every locale has such a text as it is.
bool isAscii(std::string_view text);
bool isAscii(std::wstring_view text);

/// UTF-8 to wide text. Every byte that belongs to no valid sequence becomes one
/// U+FFFD.
std::wstring widen(std::string_view utf8);

/// Moves text from the front of `utf8` to `buffer`, which takes `size` bytes, and
/// answers how many were written. Every byte that belongs to no valid sequence
/// becomes one U+FFFD. From 4 bytes on there is always room for a part of it.
std::size_t moveValidUtf8(std::string_view& utf8, char* buffer, std::size_t size);

/// Wide text to UTF-8, past the replaceable encoder. What is no code point
/// becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

}  // namespace mf::platform
