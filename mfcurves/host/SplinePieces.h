// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "mfcurves/platform/mfExport.h"

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
class MFCURVES_API SplinePieces {
public:
    SplinePieces() = default;  ///< no points
    /// Through the points (x[i], y[i]), x finite and ascending, joined as Spline's kinds
    /// have it: Akima 0, natural cubic 1, straight for any other kind.
    SplinePieces(std::vector<double> x, const std::vector<double>& y, int kind);

    /// The number of points, and of pieces.
    std::size_t count() const { return pieces_.size(); }
    /// X of the first point; infinity without points.
    double firstX() const { return firstX_; }
    /// X of the last point; minus infinity without points.
    double lastX() const { return lastX_; }
    /// count() knots, and twice the double after the last one.
    const double* knots() const { return knots_.data(); }
    /// count() pieces, in the order of the knots.
    const SplinePiece* pieces() const { return pieces_.data(); }

    /// The last piece that begins at or before x, for an x from the first point to the
    /// last.
    std::size_t indexAt(double x) const;

    /// The value or derivative of the end tangent, which goes on beyond the points, for an x
    /// up to the first point or from the last one on. 0.0 without points; NaN at a NaN.
    double outside(double x, int order) const;

private:
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();

    MFCURVES_LOCAL void iBuildIndex();
    MFCURVES_LOCAL std::uint32_t iBucketOf(double x) const;

    std::vector<double> knots_;
    std::vector<SplinePiece> pieces_;
    double firstX_ = kInfinity;
    double lastX_ = -kInfinity;
    // The range of X is cut into buckets of equal width. Entry k is the piece at
    // the lower edge of bucket k; one more entry after the last holds the last piece.
    std::vector<std::uint32_t> pieceAtBucket_;
    std::uint32_t lastBucket_ = 0;
    double bucketsPerX_ = 0.0;
};

}  // namespace mf::host
