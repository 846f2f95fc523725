// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "mfcurves/host/KnotIndex.h"

namespace mf::host {

/// The polynomial a + b t + c t^2 + d t^3 in the distance t from its knot.
struct alignas(32) SplinePiece {
    double a;  ///< the value at the knot
    double b;  ///< the slope there
    double c;  ///< half the second derivative there
    double d;  ///< a sixth of the third derivative
};

/// The polynomials that Spline evaluates, and the index that finds the one for an x.
/// Constant after construction, so any number of threads may use it.
///
/// There are as many pieces as points. Piece i is valid from knot i up to the next knot,
/// and the last piece only at the last knot.
class SplinePieces {
public:
    SplinePieces() = default;  ///< no points
    /// Joins the points (x[i], y[i]), x finite and ascending, by the kinds of Spline:
    /// Akima 0, natural cubic 1, straight lines for any other kind.
    SplinePieces(std::vector<double> x, const std::vector<double>& y, int kind);

    /// The number of points, and of pieces.
    std::size_t count() const { return pieces_.size(); }
    /// X of the first and the last point; infinity and minus infinity without points.
    double firstX() const { return index_.first(); }
    double lastX() const { return index_.last(); }
    /// count() knots, followed by two copies of the next double above the last knot.
    const double* knots() const { return index_.knots(); }
    const SplinePiece* pieces() const { return pieces_.data(); }

    /// The index of the last piece that begins at or before x, for an x from the first point
    /// to the last.
    std::size_t indexAt(double x) const
    {
        return index_.at(x, [this](std::size_t low) {
            fetchAhead(pieces_.data() + low);
            fetchAhead(pieces_.data() + low + 1);
        });
    }

    /// The value or derivative of the end tangent, for an x up to the first point or from
    /// the last point on. 0.0 without points; NaN at a NaN.
    double outside(double x, int order) const;

private:
    // Prefetches memory into the cache. Any address is allowed.
    static void fetchAhead([[maybe_unused]] const void* address)
    {
#if defined(__GNUC__)
        __builtin_prefetch(address);
#endif
    }

    KnotIndex index_;
    std::vector<SplinePiece> pieces_;
};

}  // namespace mf::host
