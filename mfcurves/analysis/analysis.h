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

/// Analysis of curves. Results are exact to rounding and proved, or say that they could
/// not be proved.
///
/// Every formula and its derivatives are also evaluated in interval arithmetic, rounded
/// outwards. This excludes the places that cannot hold a result; in the others bracketing
/// finds it. Only what cannot be proved is sampled. Pieces of splines are solved in closed
/// form.
///
/// Orders: 0 is the value, 1 to 3 are the derivatives by x. For any other order the result
/// of stationaryPoints, crossings and beyond is empty.
/// Units: those of the curve; nothing is converted.
/// Ranges: a Range is cut to the curve's own, [firstX(), lastX()]; `all` is the whole of
/// it. If the two have nothing in common, the result is empty, or NaN in a Summary.
/// Pieces: a curve consists of rows, of the polynomials between points, or of one expression.
/// Inside a row or expression a condition (of if, abs, min, max, sign, mod, step, int, nint,
/// floor, ceil, dim) makes further pieces, which meet at a kink.
/// Jumps: an order jumps where its two sides differ by more than 1e-9 of its largest
/// magnitude on the two adjacent pieces. Where order k - 1 jumps, order k has an impulse.
/// Errors: no function throws, except std::bad_alloc, and CurveError where that is documented.
/// Cost: each function limits its work for one piece by a count of operations, which take
/// 50 ms at most (beyond: for each limit; toTable: a second). The result therefore does not depend on the
/// speed. Threads: any number of threads may analyse the same curve at once.
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
    /// Number, from 1, of the row that begins there; for a kink, of the row that it is in; for a
    /// knot, of the point. Otherwise 0.
    int row;
};

/// The breaks in a range where an order up to `upToOrder` (0 to 4) jumps, ascending in x.
/// The end of the curve is a break only with Outside::Repeat: CycleEnd at lastX, whose right
/// limits are those at firstX.
MFCURVES_API std::vector<Break> breaks(const Curve& curve, int upToOrder = 3, Range range = all);

/// Whether it is proved that breaks() finds all places: each order up to `upToOrder`, at most 3, is
/// guaranteed (see Summary). It is not where an order is infinite or has no value, as the velocity of
/// sqrt(x^2) at 0, nor where a piece has too many kinks.
MFCURVES_API bool areAllBreaksFound(const Curve& curve, int upToOrder = 3, Range range = all);

/// The x of the first break strictly after an x. With Outside::Repeat the search continues
/// through every cycle. Nothing if no break follows, or if `after` is not finite.
MFCURVES_API std::optional<double> nextBreak(const Curve& curve, double after, int upToOrder = 3);

// --- Extremes ---------------------------------------------------------------------------

/// An extreme of an order, or a place where its slope is 0.
struct Peak {
    double x;   ///< where
    double y;   ///< the value of the order
    Side side;  ///< Left or Right at the end of a piece, else Plain
    /// Bound of the distance from y to the true extreme, and to any computed value beyond it. For
    /// a stationary point: bound of the distance from x to the true place.
    double error;
};

/// One order on a range.
struct Summary {
    Peak least;                    ///< the first of equal ones; NaN if no value is finite
    Peak greatest;                 ///< the first of equal ones; NaN if no value is finite
    double rms;                    ///< root of the mean square over x
    double mean;                   ///< over x
    std::vector<double> impulses;  ///< where the order has an impulse; the peaks leave them out
    /// true: the errors of both peaks are proved, however large they are, and rms and mean miss nothing
    /// between the x where the order is evaluated for them.
    bool guaranteed;
};

/// Value, velocity, acceleration and jerk on a range.
MFCURVES_API std::array<Summary, 4> summarize(const Curve& curve, Range range = all);

/// Where the derivative of an order (0 to 3) is 0, ascending: inside a piece, and at its ends as
/// a limit from inside. Places that rounding cannot separate count once. Stretches where the
/// order is constant are left out. For orders up to 2, areAllCrossingsFound of the next order and 0 says
/// whether these are proved to be all.
MFCURVES_API std::vector<Peak> stationaryPoints(const Curve& curve, int order, Range range = all);

/// Where an order (0 to 3) has a value, ascending; both ends of a stretch where it has that value
/// throughout. A jump across the value does not count. Empty for a value that is not finite.
MFCURVES_API std::vector<double> crossings(const Curve& curve, int order, double value, Range range = all);

/// Whether it is proved that crossings() finds all places: the order and those below it are guaranteed (see
/// Summary), and the search left no range undecided. It may leave one where the order touches the value, or
/// has it thousands of times.
MFCURVES_API bool areAllCrossingsFound(const Curve& curve, int order, double value, Range range = all);

/// Where an order (0 to 3) is below `low` or above `high`, ascending; adjacent ranges are joined.
/// An impulse, which an order has where the order below it jumps, exceeds every finite limit; by itself it is
/// a range of length 0, and so is a value that the curve has at a single x.
MFCURVES_API std::vector<Range> beyond(const Curve& curve, int order, double low, double high,
                                       Range range = all);

// --- Motion laws ------------------------------------------------------------------------

/// The properties of a law between (0, 0) and (1, 1). For a stroke H in a time T the largest
/// velocity is cv H/T, the largest acceleration ca H/T^2, the largest jerk cj H/T^3. All three
/// are magnitudes.
struct LawFactors {
    double cv;               ///< largest velocity; infinite where the value jumps inside
    double ca;               ///< largest acceleration; infinite where the velocity jumps inside
    double cj;               ///< largest jerk; infinite where the acceleration jumps inside
    double cvAt;             ///< the first place of cv, from 0 to 1
    double caAt;             ///< the first place of ca
    double cjAt;             ///< the first place of cj
    double power;            ///< largest magnitude of velocity times acceleration
    double rmsAcceleration;  ///< root of the mean square of the acceleration
    /// The highest order, up to 4, such that neither it nor a lower one jumps between rest and
    /// the start. -1: the value itself jumps.
    int startContinuity;
    int endContinuity;    ///< the same at the end
    int innerContinuity;  ///< the same inside
    bool guaranteed;      ///< true: cv, ca, cj and power are proved
};

/// Throws CurveError when the law does not compile.
MFCURVES_API LawFactors factors(const LawText& law);

/// The limits of a drive; infinite without a limit.
struct Limits {
    double velocity = std::numeric_limits<double>::infinity();      ///< largest magnitude
    double acceleration = std::numeric_limits<double>::infinity();  ///< largest magnitude
    double jerk = std::numeric_limits<double>::infinity();          ///< largest magnitude
};

/// The shortest time of a move that keeps the limits: the greatest of cv H/V, sqrt(ca H/A) and
/// cbrt(cj H/J), where H is the magnitude of the stroke and V, A and J are the limits. Infinite
/// if a factor is infinite and its limit is not; 0 without a limit and for a stroke of 0.
MFCURVES_API double shortestDuration(const LawFactors& factors, double stroke, const Limits& limits);

// --- Derivatives ------------------------------------------------------------------------

/// How well each derivative agrees with differences of the order below it.
struct DerivativeCheck {
    bool ok;           ///< no error above 1e-6
    int worstOrder;    ///< 1 to 3; 0 if nothing could be compared
    double worstX;     ///< where the error is largest
    double stated;     ///< the derivative as evaluated
    double estimated;  ///< from differences of the order below
    double error;      ///< their difference relative to the largest magnitude of the order on its piece
};

/// Compares derivatives 1 to 3 with extrapolated differences inside every piece (Ridders, Adv.
/// Eng. Softw. 4 (1982)). Of a curve through points, at most 1000 pieces are compared, spread evenly.
MFCURVES_API DerivativeCheck checkDerivatives(const Curve& curve, Range range = all);

// --- Other forms ------------------------------------------------------------------------

/// How a table joins its rows.
enum class Form {
    Linear,  ///< by straight lines
    Points,  ///< by the natural cubic spline, as Interpolation::Cubic
    Xyva     ///< by quintics that have value, velocity and acceleration of both rows
};

/// How far a table may be from its curve; infinite if it does not matter.
struct Tolerance {
    double value;                                         ///< of the value
    double d1 = std::numeric_limits<double>::infinity();  ///< of the first derivative; Xyva only
    double d2 = std::numeric_limits<double>::infinity();  ///< of the second derivative; Xyva only
};

/// A curve as rows of numbers.
struct CamTable {
    Form form;  ///< how to join the rows
    /// Ascending. The same x twice where the value jumps, in Xyva also where d1 or d2 does.
    std::vector<double> x;
    std::vector<double> y;   ///< one for each x
    std::vector<double> d1;  ///< one for each x in Xyva, else empty
    std::vector<double> d2;  ///< one for each x in Xyva, else empty
    double bound;            ///< of the distance between the joined rows and the curve
    double boundD1;          ///< of the distance of the first derivatives; infinite except in Xyva
    double boundD2;          ///< of the distance of the second derivatives; infinite except in Xyva
    bool guaranteed;         ///< true: the bounds are proved and within the tolerance
};

/// The curve as a table within a tolerance, from firstX() to lastX(). Rows are as far apart as
/// the proof of the bound allows: the error of a form is a known multiple of a derivative, which
/// is enclosed between the rows. Form::Points cannot follow a jump of the value. A doubled row is at its
/// jump but for some ulps, between which the bound does not hold.
///
/// Throws CurveError for a tolerance that is not positive, and for a finite tolerance of a
/// derivative with a form other than Xyva.
MFCURVES_API CamTable toTable(const Curve& curve, Form form, const Tolerance& tolerance);

/// A curve over an angle, run at a constant speed, as a curve over time: x times
/// `secondsPerUnit`. Throws CurveError if `secondsPerUnit` is not positive and finite.
MFCURVES_API Curve overTime(const Curve& curve, double secondsPerUnit);

}  // namespace mf::analysis
