// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

/// An encoder's error when the buffer is too small for the text.
constexpr std::uint32_t kErrorBufferTooSmall = 122;
/// An encoder's error for invalid arguments.
constexpr std::uint32_t kErrorInvalidParameter = 87;

/// Converts `length` wide characters to the narrow encoding. The terminator is
/// converted too if `length` counts it.
///
/// Returns the number of bytes written to `buffer`. With `size` 0 it writes
/// nothing and returns the number of bytes needed. On failure it returns 0 and
/// sets `error`; after kErrorBufferTooSmall the caller tries a larger buffer.
using NarrowEncoder =
    std::function<int(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error)>;

/// Replaces the encoder of the whole process, so that a test can make it fail; an
/// empty function restores the built-in one. The built-in encoding is UTF-8; what
/// is not a code point becomes U+FFFD. Call this while no other thread uses the
/// library.
MFCURVES_API void setNarrowEncoder(NarrowEncoder encoder);

/// UTF-8 to wide text. Each byte that is not part of a valid sequence becomes one
/// U+FFFD.
MFCURVES_API std::wstring widen(std::string_view utf8);

/// Wide text to UTF-8, without the replaceable encoder. What is not a code point
/// becomes U+FFFD.
MFCURVES_API std::string toUtf8(std::wstring_view text);

}  // namespace mf::platform
