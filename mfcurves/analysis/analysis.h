// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/platform/mfExport.h"

/// Questions about a curve whose answers are exact to rounding and proved, or say that
/// they could not be proved.
///
/// Every formula is also evaluated in interval arithmetic, rounded outwards, with its
/// derivatives. What cannot be is excluded so, and what is left is found by bracketing;
/// nothing is sampled. Pieces of splines are solved in closed form.
///
/// Orders: 0 is the value, 1 to 3 are the derivatives by x.
/// Units: those of the curve; nothing is converted.
/// Ranges: a Range is cut to the curve's own, [firstX(), lastX()]; `all` is the whole of
/// it. Without anything in common there is nothing to report.
/// Pieces: a curve consists of rows, of the polynomials between points, or of one expression.
/// Inside a row or expression a condition (of if, abs, min, max, sign, mod, step, int, nint,
/// floor, ceil, dim) makes further pieces, which meet at a kink.
/// Jumps: an order jumps where its two sides differ by more than 1e-9 of its largest
/// magnitude on the pieces beside it. Where order k - 1 jumps, order k has an impulse.
/// Errors: no function throws, except std::bad_alloc, and CurveError where that is documented.
/// Cost: each function limits its work for one piece by a count of operations, so that
/// it takes 50 ms at most and always the same path.
/// Threads: any number may ask about one curve at once.
namespace mf::analysis {

/// The curve's own range.
constexpr Range all{-std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};

// --- Where a curve is not smooth -------------------------------------------------------

/// Why a curve is not smooth at a place.
enum class Cause {
    Seam,     ///< where rows meet
    Knot,     ///< a point of a curve through points
    Kink,     ///< where a condition inside a formula changes
    CycleEnd  ///< lastX of a curve with Outside::Repeat
};

/// A place where the value or a derivative jumps.
struct Break {
    double x;           ///< where
    int lowest;         ///< the lowest order that jumps
    CurveValues left;   ///< the limits from below x
    CurveValues right;  ///< the limits from above x
    Cause cause;        ///< why
    /// The row that begins there, of a kink the row that it lies in, of a knot the point, all
    /// from 1; else 0.
    int row;
};

/// The breaks in a range, ascending, of which some order up to `upToOrder` (0 to 4) jumps.
/// An end of the curve is one only with Outside::Repeat: CycleEnd at lastX, its right side
/// from firstX.
MFCURVES_API std::vector<Break> breaks(const Curve& curve, int upToOrder = 3, Range range = all);

/// The first break strictly after an x. With Outside::Repeat the search goes on through
/// every cycle. Nothing when there is none, or `after` is not finite.
MFCURVES_API std::optional<double> nextBreak(const Curve& curve, double after, int upToOrder = 3);

// --- Extremes ---------------------------------------------------------------------------

/// An extreme of an order, or a place where its slope is 0.
struct Peak {
    double x;   ///< where
    double y;   ///< the value of the order
    Side side;  ///< Left or Right at the end of a piece, else Plain
    /// Bounds the distance of y to the true extreme, and to every computed value beyond it. Of a
    /// stationary point: the distance of x to the true place.
    double error;
};

/// One order on a range.
struct Summary {
    Peak least;                    ///< of equal ones the first; NaN without any finite value
    Peak greatest;                 ///< of equal ones the first; NaN without any finite value
    double rms;                    ///< root of the mean square over x
    double mean;                   ///< over x
    std::vector<double> impulses;  ///< where the order has an impulse; the peaks are those beside it
    /// true: the errors of both peaks are proved, and rms and mean leave out nothing between the
    /// places that they are taken from.
    bool guaranteed;
};

/// Value, velocity, acceleration and jerk on a range.
MFCURVES_API std::array<Summary, 4> summarize(const Curve& curve, Range range = all);

/// Where the next order (1 to 4) of an order (0 to 3) is 0, ascending: inside a piece, and at its
/// ends as seen from it. Places that rounding cannot tell apart are one. Stretches where the
/// order is constant are left out.
MFCURVES_API std::vector<Peak> stationaryPoints(const Curve& curve, int order, Range range = all);

/// Where an order takes a value, ascending; of a stretch where it has that value throughout, both
/// ends. A jump over the value takes it nowhere.
MFCURVES_API std::vector<double> crossings(const Curve& curve, int order, double value, Range range = all);

/// Where an order is below `low` or above `high`, ascending; neighbours are joined. An impulse
/// breaks every finite limit; alone it is a range of no length.
MFCURVES_API std::vector<Range> beyond(const Curve& curve, int order, double low, double high,
                                       Range range = all);

// --- Motion laws ------------------------------------------------------------------------

/// What a law does between (0, 0) and (1, 1). For a stroke H in a time T the largest velocity
/// is cv H/T, the largest acceleration ca H/T^2, the largest jerk cj H/T^3.
struct LawFactors {
    double cv;               ///< largest velocity; infinite where the value jumps inside
    double ca;               ///< largest acceleration; infinite where the velocity jumps inside
    double cj;               ///< largest jerk; infinite where the acceleration jumps inside
    double cvAt;             ///< the first place of cv, from 0 to 1
    double caAt;             ///< the first place of ca
    double cjAt;             ///< the first place of cj
    double power;            ///< largest magnitude of velocity times acceleration
    double rmsAcceleration;  ///< root of the mean square of the acceleration
    /// The highest order, up to 4, such that it and all lower ones do not jump against rest at
    /// the start. -1: the value itself jumps.
    int startContinuity;
    int endContinuity;    ///< the same at the end
    int innerContinuity;  ///< the same inside
    bool guaranteed;      ///< true: cv, ca, cj and power are proved
};

/// Throws CurveError when the law does not compile.
MFCURVES_API LawFactors factors(const LawText& law);

/// What a drive can do; infinite where there is no limit.
struct Limits {
    double velocity = std::numeric_limits<double>::infinity();      ///< largest magnitude
    double acceleration = std::numeric_limits<double>::infinity();  ///< largest magnitude
    double jerk = std::numeric_limits<double>::infinity();          ///< largest magnitude
};

/// The shortest time of a move that keeps the limits: the greatest of cv H/V, sqrt(ca H/A) and
/// cbrt(cj H/J). H is the size of the stroke. Infinite where a factor is and its limit is not; 0
/// without a limit.
MFCURVES_API double shortestDuration(const LawFactors& factors, double stroke, const Limits& limits);

// --- Derivatives ------------------------------------------------------------------------

/// How well each derivative agrees with differences of the order below it.
struct DerivativeCheck {
    bool ok;           ///< no error above 1e-6
    int worstOrder;    ///< 1 to 3; 0 where nothing could be compared
    double worstX;     ///< where the error is largest
    double stated;     ///< the derivative as evaluated
    double estimated;  ///< from differences of the order below
    double error;      ///< their distance relative to the largest magnitude of the order on its piece
};

/// Compares derivatives 1 to 3 with extrapolated differences inside every piece (Ridders, Adv.
/// Eng. Softw. 4 (1982)).
MFCURVES_API DerivativeCheck checkDerivatives(const Curve& curve, Range range = all);

// --- Other forms ------------------------------------------------------------------------

/// How a table joins its rows.
enum class Form {
    Linear,  ///< by straight lines
    Points,  ///< by the natural cubic spline, as Interpolation::Cubic
    Xyva     ///< by quintics that have value, velocity and acceleration of both rows
};

/// How far a table may be from its curve; infinite where it does not matter.
struct Tolerance {
    double value;                                         ///< of the value
    double d1 = std::numeric_limits<double>::infinity();  ///< of the first derivative; Xyva only
    double d2 = std::numeric_limits<double>::infinity();  ///< of the second derivative; Xyva only
};

/// A curve as rows of numbers.
struct CamTable {
    Form form;  ///< how to join the rows
    std::vector<double>
        x;  ///< ascending; twice the same where the value jumps, in Xyva also where v or a does
    std::vector<double> y;   ///< one for each x
    std::vector<double> d1;  ///< one for each x in Xyva, else none
    std::vector<double> d2;  ///< one for each x in Xyva, else none
    double bound;            ///< of the distance between what joins the rows and the curve
    double boundD1;          ///< of the distance of first derivatives; infinite except in Xyva
    double boundD2;          ///< of the distance of second derivatives; infinite except in Xyva
    bool guaranteed;         ///< true: the bounds are proved and within the tolerance
};

/// The curve as a table within a tolerance, from firstX() to lastX(). Rows are as far apart as
/// the proof of the bound allows: the error of a form is a known multiple of a derivative, which
/// is enclosed between the rows. Points cannot follow a jump of the value.
///
/// Throws CurveError for a tolerance that is not positive, and for one of a derivative with another
/// form than Xyva.
MFCURVES_API CamTable toTable(const Curve& curve, Form form, const Tolerance& tolerance);

/// An angle curve at a constant speed, as a curve over time: x times `secondsPerUnit`. Throws
/// CurveError for a speed that is not positive and finite.
MFCURVES_API Curve overTime(const Curve& curve, double secondsPerUnit);

}  // namespace mf::analysis
