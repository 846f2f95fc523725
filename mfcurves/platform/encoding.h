// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

/// What an encoder reports when the buffer is smaller than the text needs.
constexpr std::uint32_t kErrorBufferTooSmall = 122;
/// What an encoder reports for arguments that it cannot work with.
constexpr std::uint32_t kErrorInvalidParameter = 87;

/// Converts `length` wide characters to the narrow encoding, a terminator among
/// them when it is counted in.
///
/// Returns the number of bytes written to `buffer`. With `size` 0 it writes
/// nothing and returns the number of bytes needed. On failure it returns 0 and
/// sets `error`; kErrorBufferTooSmall asks for a larger buffer.
using NarrowEncoder =
    std::function<int(const wchar_t* text, int length, char* buffer, int size, std::uint32_t& error)>;

/// Replaces the conversion of the whole process, so that a test can make it
/// fail; an empty function brings the built-in one back. The built-in encoding
/// is UTF-8, and a code point that it cannot hold becomes U+FFFD. Set it while no
/// other thread uses the library.
MFCURVES_API void setNarrowEncoder(NarrowEncoder encoder);

/// UTF-8 to wide text. Every byte that belongs to no valid sequence becomes one
/// U+FFFD.
MFCURVES_API std::wstring widen(std::string_view utf8);

/// Wide text to UTF-8, past the replaceable encoder. What is not a code point
/// becomes U+FFFD.
MFCURVES_API std::string toUtf8(std::wstring_view text);

}  // namespace mf::platform
