// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// A place where rows meet, or where the end of a cycle meets its start.
struct Seam {
    double x;
    mf::CurveValues jump;  ///< right minus left; 0 if rounding can explain the difference
    bool isCycleEnd;       ///< from the end to the start
};

/// The seams of a table of rows, in their order; for an angle curve, the end of the cycle too. Empty for
/// other curves.
std::vector<Seam> seamsOf(const mf::Curve& curve);

/// One sentence for each row whose law does not begin or end at the row's own values.
std::vector<std::string> missedValues(const mf::Curve& curve);

}  // namespace mfcurve
