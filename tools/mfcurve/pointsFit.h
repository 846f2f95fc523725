// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// Points, joined by the natural cubic spline, that stay near another curve.
struct PointsFit {
    mf::Curve curve;     ///< its numbers have the digits of a document
    std::size_t points;  ///< the number of points
    double bound;        ///< the proved bound of the distance to the other curve
};

/// Points whose spline stays within a tolerance of a curve. Throws Failure at `place` when the digits of a
/// document are too few, the value jumps, or the formula allows no proof.
PointsFit fitPoints(const mf::Curve& curve, double tolerance, const std::string& place);

}  // namespace mfcurve
