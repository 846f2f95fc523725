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

/// The spline of mf::host: Akima (kind 0), natural cubic (1) or linear (2, which is
/// also the kind of a new spline and the meaning of any other number).
///
/// Between points the curve is a polynomial of degree 3 at most. At a point, the piece
/// that starts there gives the value, at the last point the last piece. Outside, the
/// curve continues along the end tangent. Without points it is 0.0 everywhere, with one
/// point a constant, with two a line whatever the kind. At a NaN it is NaN.
///
/// Cost: a change only stores the point; the pieces are built at the next evaluation.
/// An x in the piece of the previous x or the next piece needs no search. Any other x
/// needs one look-up in an index, unless the X are distributed very unevenly.
///
/// Errors: X that are not finite are dropped. A Y that is not finite makes the pieces
/// that depend on it NaN or infinite, for a cubic all pieces. So do points so close that
/// a slope overflows, or so far apart that their distance does.
class MFCURVES_API Spline : public ISimSplineData_c {
public:
    Spline();  ///< linear, without points
    ~Spline() override;
    Spline(const Spline&) = delete;
    Spline& operator=(const Spline&) = delete;

    void setKind(int kind) override;
    int getKind() override { return kind_; }
    /// Copies points and kind through the interface. Does nothing for null or for this
    /// object.
    void copyFrom(ISimSplineData_c* source) override;
    const std::map<double, double>& getPointMap() override { return points_; }
    void clearPoints() override;
    /// A second point at the same X replaces the first. Takes constant time for an X
    /// above all others.
    void addPoint(double x, double y) override;
    double getValue(double x) override;
    double getFirstDerivative(double x) override;
    double getSecondDerivative(double x) override;
    double getThirdDerivative(double x) override;

private:
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();
    MFCURVES_LOCAL static constexpr double kNowhere[3] = {kInfinity, kInfinity, kInfinity};

    // The piece used last, with its coefficients multiplied by the factors of the
    // derivatives. With length 0 it contains no x.
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

    Current current_;  // the first member, which has the shortest instructions
    std::map<double, double> points_;
    int kind_ = 2;

    // Built from the points and the kind; null from a change to the next evaluation.
    std::unique_ptr<const SplinePieces> pieces_;
};

}  // namespace mf::host
