// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// How many characters the name or number at the start of a text has; 1 for anything else. What is in braces
/// is one name.
std::size_t wordLength(std::string_view text);

/// Why an expression has no finite value at x, as the end of a message: "; it divides by x-1, which is 0
/// there". Empty for other reasons and other curves.
std::string zeroDivisor(const mf::Curve& curve, double x);

}  // namespace mfcurve
