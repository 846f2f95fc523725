// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/analysis/parts.h"

namespace mf::analysis {

/// Points whose natural cubic spline follows a curve.
struct CubicFit {
    std::vector<double> x;
    std::vector<double> y;
    double bound;  // of the distance between spline and curve; infinite if no bound is known
};

/// Fits a spline to the parts of a curve, one at least, within a tolerance if the work suffices.
CubicFit fitCubic(const Curve& curve, const std::vector<Part>& parts, double tolerance);

}  // namespace mf::analysis
