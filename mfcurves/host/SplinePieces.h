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

/// The polynomials between points and the index that finds the one for an x: what
/// Spline evaluates. Constant once made, so any number of threads may use it.
///
/// There are as many pieces as points. Piece i begins at knot i and holds up to the next
/// one, and the last piece holds at the last knot alone.
class SplinePieces {
public:
    SplinePieces() = default;  ///< no points
    /// Through the points (x[i], y[i]), x finite and ascending, joined as Spline's kinds
    /// have it: Akima 0, natural cubic 1, straight for any other kind.
    SplinePieces(std::vector<double> x, const std::vector<double>& y, int kind);

    /// The number of points, and of pieces.
    std::size_t count() const { return pieces_.size(); }
    /// X of the first and the last point; infinity and minus infinity without points.
    double firstX() const { return index_.first(); }
    double lastX() const { return index_.last(); }
    /// count() knots, and twice the double after the last one.
    const double* knots() const { return index_.knots(); }
    const SplinePiece* pieces() const { return pieces_.data(); }

    /// The last piece that begins at or before x, for an x from the first point to the
    /// last.
    std::size_t indexAt(double x) const
    {
        return index_.at(x, [this](std::size_t low) {
            fetchAhead(pieces_.data() + low);
            fetchAhead(pieces_.data() + low + 1);
        });
    }

    /// The value or derivative of the end tangent, which goes on beyond the points, for an x
    /// up to the first point or from the last one on. 0.0 without points; NaN at a NaN.
    double outside(double x, int order) const;

private:
    // Has memory on its way to the processor while something else is looked at. Any
    // address may be named.
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
