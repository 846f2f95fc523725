// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>

#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/platform/mfExport.h"

namespace mf::host {

struct SplinePiece;
class SplinePieces;

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
    Spline();  ///< linear, without points
    ~Spline() override;
    Spline(const Spline&) = delete;
    Spline& operator=(const Spline&) = delete;

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
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();
    MFCURVES_LOCAL static constexpr double kNowhere[3] = {kInfinity, kInfinity, kInfinity};

    // The piece that answered last, with the factors that its derivatives bring
    // multiplied in. Without a length it answers nowhere.
    struct Current {
        double start = 0.0;
        std::uint64_t lengthBits = 0;
        double a = 0.0;
        double b = 0.0;
        double c = 0.0;
        double d = 0.0;
        double c2 = 0.0;
        double d3 = 0.0;
        double d6 = 0.0;
        const double* knot = kNowhere;
        const SplinePiece* piece = nullptr;
    };

    template <int order>
    MFCURVES_LOCAL double iEvaluate(double x);
    template <int order>
    MFCURVES_LOCAL double iOrderAt(double t) const;
    template <int order>
    MFCURVES_LOCAL double iStepAndEvaluate(double x);
    MFCURVES_LOCAL double iSearchAndEvaluate(double x, int order);
    MFCURVES_LOCAL void iEnter(const double* knot, const SplinePiece* piece);
    MFCURVES_LOCAL void iBuild();
    MFCURVES_LOCAL void iForgetPieces();

    Current current_;  // first, where it is reached in the shortest instructions
    std::map<double, double> points_;
    int kind_ = 2;

    // Of the points and the kind; null from a change to the next evaluation.
    std::unique_ptr<const SplinePieces> pieces_;
};

}  // namespace mf::host
