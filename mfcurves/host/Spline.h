#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <vector>

#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/platform/mfExport.h"

namespace mf::host {

/// The polynomial a + b t + c t^2 + d t^3 in t = x - start.
struct SplinePiece {
    double start;
    double a;
    double b;
    double c;
    double d;
};

/// The interpolator of the stand-alone host: Akima (kind 0), natural cubic (1) or
/// linear (2, that of a new spline and of any other number).
///
/// Between points the curve is a polynomial of degree 3 at most. At an inner point
/// the piece to its right answers, at the last one the piece before it. Outside,
/// the end tangent goes on. No point: 0.0 everywhere; one: a constant; two: a line
/// whatever the kind. Asked at a NaN, it answers NaN.
///
/// A change costs what it takes to store it; the pieces are built at the first
/// evaluation after it. Asking on at an x, or near the one asked before, costs no
/// search; any other x costs one look into an index, unless the X are spread very
/// unevenly.
///
/// Errors: X that are not finite are dropped. A Y that is not finite spoils the
/// pieces that it bears on, which for a cubic are all, and so do points so close
/// that a slope overflows or so far apart that their distance does.
class MFCURVES_API Spline : public ISimSplineData_c {
public:
    void setKind(int kind) override;
    int getKind() override { return kind_; }
    /// Takes points and kind over through the interface alone; nothing for null
    /// or itself.
    void copyFrom(ISimSplineData_c* source) override;
    const std::map<double, double>& getPointMap() override { return points_; }
    void clearPoints() override;
    /// A second point at one X replaces the first. Constant time for an X above
    /// all others.
    void addPoint(double x, double y) override;
    double getValue(double x) override;
    double getFirstDerivative(double x) override;
    double getSecondDerivative(double x) override;
    double getThirdDerivative(double x) override;

private:
    double iMoveTo(double x) { return x >= from_ && x < to_ ? x - current_.start : iSearch(x); }
    double iSearch(double x);
    double iFollowTangent(const SplinePiece& end, double x, double from, double to);
    void iEnter(std::size_t piece);
    std::size_t iPieceAt(double x) const;
    std::uint32_t iBucketOf(double x) const;
    void iBuild();
    void iBuildIndex();
    void iForgetPieces();
    void iForgetCurrent();

    std::map<double, double> points_;
    int kind_ = 2;

    // Built from the above at the first evaluation after a change. There are as
    // many pieces as points: the last one is the end of the piece before it,
    // expanded at the last point.
    bool built_ = false;
    std::vector<SplinePiece> pieces_;
    // The range of X is cut into buckets of equal width. Entry k is the piece at
    // the lower edge of bucket k; one more entry behind the last holds the last piece.
    std::vector<std::uint32_t> pieceAtBucket_;
    double bucketsPerX_ = 0.0;

    // What answers at the x asked for last, and for which x it would answer too:
    // from_ <= x < to_, empty where nothing can be kept.
    SplinePiece current_{};
    double from_ = std::numeric_limits<double>::infinity();
    double to_ = -std::numeric_limits<double>::infinity();
    std::size_t currentPiece_ = 0;
};

}  // namespace mf::host
