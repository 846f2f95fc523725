// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// The length of the name or number at the start of a text; 1 for anything else. A text in braces is one
/// name.
std::size_t wordLength(std::string_view text);

/// The end of a message that explains why an expression has no finite value at x: "; it divides by x-1,
/// which is 0 there". Empty for other reasons and for other curves.
std::string zeroDivisor(const mf::Curve& curve, double x);

}  // namespace mfcurve
