#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <vector>

#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/platform/mfExport.h"

namespace mf::host {

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
/// pieces that it bears on, which for a cubic are all. Points so far apart that
/// their distance overflows give values that are not finite.
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
    // The polynomial a + b t + c t^2 + d t^3 in t = x - start.
    struct Piece {
        double start;
        double a;
        double b;
        double c;
        double d;
    };

    double iMoveTo(double x);
    void iSearch(double x);

    std::map<double, double> points_;
    int kind_ = 2;

    // What follows is built from the above at the first evaluation.
    bool built_ = false;
    std::vector<Piece> pieces_;  // one a point; the last is the end of the one before, expanded there
    std::vector<std::uint32_t> firstInBucket_;
};

}  // namespace mf::host
