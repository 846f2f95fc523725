// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mf::platform {

/// Formats a number by one printf conversion for a double, such as "%f" or "%.6G".
/// The decimal sign is a point under every locale.
std::string formatNumber(const char* format, double number);

/// A number with six decimals, as "%f" writes it, but much faster.
std::string sixDecimals(double number);

/// The number at the start of a text: white space, one sign, then the longest
/// decimal number; the rest is ignored. 0.0 when the text does not start with a
/// number, infinity with the sign when it is too large, 0.0 when it is too small.
/// The decimal sign is a point under every locale.
double readNumber(std::string_view text);

/// True when the whole text, apart from white space at its ends, is a finite
/// number, so that readNumber ignores nothing of it.
bool isNumber(std::string_view text);

/// The whole number at the start of a text, by the same rules; it is clamped to the
/// 32-bit range.
std::int32_t readInteger(std::string_view text);

}  // namespace mf::platform
