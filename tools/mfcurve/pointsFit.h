// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// Points, joined by the natural cubic spline, that stay near another curve.
struct PointsFit {
    mf::Curve curve;     ///< with the digits of a document
    std::size_t points;  ///< how many
    double bound;        ///< of the distance to the other curve, proved
};

/// Points within a tolerance of a curve. Throws Failure at `place` when the digits of a document, a jump of
/// the value or a formula without a proof do not allow that.
PointsFit fitPoints(const mf::Curve& curve, double tolerance, const std::string& place);

}  // namespace mfcurve
