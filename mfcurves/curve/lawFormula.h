// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/CurvePieces.h"
#include "mfcurves/curve/LawFinder.h"

namespace mf::curve {

/// The formula of a row between two points, under the shape's rule for numbers. False when
/// it would be longer than the engine takes.
bool lawFormula(const Law& law, double startX, double startValue, const CurveRow& row, bool sixDecimals,
                FormulaText& formula);

/// A number with as many digits as it takes to tell it from its neighbours, without an
/// exponent.
std::string allDigits(double number);

}  // namespace mf::curve
