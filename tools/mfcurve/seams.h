// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// Where rows meet, or the end of a cycle meets its start: right less left, what rounding leaves of a sum of
/// the sizes on both sides being 0.
struct Seam {
    double x;
    mf::CurveValues jump;
    bool isCycleEnd;  ///< from the end to the start
};

/// The seams of a table of rows, in their order; of an angle curve the cycle's end too. None for other
/// curves.
std::vector<Seam> seamsOf(const mf::Curve& curve);

/// The rows whose law does not begin or end at the row's own numbers, one sentence each.
std::vector<std::string> missedValues(const mf::Curve& curve);

}  // namespace mfcurve
