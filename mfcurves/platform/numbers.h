// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mf::platform {

/// A number by one printf conversion for a double, such as "%f" or "%.6G". The
/// decimal sign is a point under every locale.
std::string formatNumber(const char* format, double number);

/// A number with six decimals, as "%f" writes it, at a fraction of the time.
std::string sixDecimals(double number);

/// The number at the start of a text: white space, one sign, then as much as is
/// a decimal number; the rest is ignored. 0.0 when nothing can be read, infinity
/// with the sign when the number is too large, 0.0 when it is too small. The
/// decimal sign is a point under every locale.
double readNumber(std::string_view text);

/// True when the whole text, white space at its ends aside, is a number that is
/// finite: nothing of it is ignored by readNumber.
bool isNumber(std::string_view text);

/// The whole number at the start of a text, under the same rules; it saturates
/// at the ends of the 32-bit range.
std::int32_t readInteger(std::string_view text);

}  // namespace mf::platform
