// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "mfcurves/analysis/parts.h"
#include "mfcurves/host/SplinePieces.h"

namespace mf::analysis {

/// A polynomial between two points, cut to a range: t is the distance from its knot.
struct SplinePart {
    host::SplinePiece c;
    double knot;
    double from, to;  // as t

    double at(int order, double t) const
    {
        switch (order) {
            case 0:
                return c.a + t * (c.b + t * (c.c + t * c.d));
            case 1:
                return c.b + t * (2.0 * c.c + t * (3.0 * c.d));
            case 2:
                return 2.0 * c.c + t * (6.0 * c.d);
            case 3:
                return 6.0 * c.d;
            default:
                return 0.0;
        }
    }
    /// A bound of the magnitude of an order, to which its rounding error is proportional.
    double size(int order) const
    {
        const double t = std::max(std::fabs(from), std::fabs(to));
        const SplinePart sizes{{std::fabs(c.a), std::fabs(c.b), std::fabs(c.c), std::fabs(c.d)}, knot, t, t};
        return sizes.at(order, t);
    }
    /// Sets t to the places on (from, to) where the order is `value`, ascending. Returns their
    /// number, up to three.
    int zeros(int order, double value, std::array<double, 3>& t) const;
};

/// The polynomial of a curve through points that begins at point i, cut to a range.
SplinePart splinePart(const host::SplinePieces& spline, std::size_t i, Range range);

/// The first and the last point whose polynomials lie in a range.
struct PointRange {
    std::size_t first, last;
};
PointRange pointsIn(const host::SplinePieces& spline, Range range);

/// The orders of a part at one of its ends, t.
EndValues splineEnd(const SplinePart& part, double t);

}  // namespace mf::analysis
