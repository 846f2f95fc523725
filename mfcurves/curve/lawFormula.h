// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/CurvePieces.h"
#include "mfcurves/curve/LawFinder.h"

namespace mf::curve {

/// Sets `formula` to that of a row between two points, under the shape's rule for numbers.
/// False if it would be longer than the engine accepts.
bool lawFormula(const Law& law, double startX, double startValue, const CurveRow& row, bool sixDecimals,
                FormulaText& formula);

/// The shortest text without an exponent that reads back as the number.
std::string allDigits(double number);

}  // namespace mf::curve
