// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

/// Interval arithmetic, rounded outwards without changing the rounding mode, so
/// that it works wherever IEEE doubles do.
///
/// For all operands in the given intervals, the resulting interval contains the exact
/// result and what the operation on doubles returns. A result that is exact stays
/// exact: error-free transformations give the rounding error of a sum, product or
/// quotient (Knuth, The Art of Computer Programming 2, 4.2.2; Dekker, Numer. Math. 18
/// (1971)), and a bound moves only if that error is not zero.
namespace mf::engine {

constexpr double kUnbounded = std::numeric_limits<double>::infinity();

/// All numbers from lo to hi. Both are NaN where an expression has no value at all.
struct Interval {
    double lo = 0.0;
    double hi = 0.0;
    bool partial = false;  // the expression may have no value at some points

    Interval() = default;
    Interval(double from, double to, bool isPartial = false) : lo(from), hi(to), partial(isPartial) {}
    explicit Interval(double point) : lo(point), hi(point) {}

    static Interval nothing() { return {std::nan(""), std::nan(""), true}; }
    static Interval everything(bool isPartial = true) { return {-kUnbounded, kUnbounded, isPartial}; }

    bool isNothing() const { return lo != lo; }
    bool isPoint() const { return lo == hi; }
    bool isZero() const { return lo == 0.0 && hi == 0.0; }
    bool contains(double x) const { return lo <= x && x <= hi; }
    bool excludesZero() const { return lo > 0.0 || hi < 0.0; }
    /// Whether there is a value everywhere, and it is between finite bounds.
    bool isFinite() const { return !partial && lo > -kUnbounded && hi < kUnbounded; }

    double middle() const { return isPoint() ? lo : 0.5 * lo + 0.5 * hi; }
    double width() const { return hi - lo; }
    double largest() const { return std::max(std::fabs(lo), std::fabs(hi)); }
    double smallest() const { return excludesZero() ? std::min(std::fabs(lo), std::fabs(hi)) : 0.0; }
};

// --- Rounding ------------------------------------------------------------------------

/// The double below x, or one slightly lower; Rump, Zimmermann, Boldo and Melquiond,
/// BIT 49 (2009).
inline double stepDown(double x)
{
    constexpr double kHalfUlp = 0x1p-53 * (1.0 + 0x1p-52);
    constexpr double kMost = std::numeric_limits<double>::max();
    if (!(x <= kMost))
        return x == x ? kMost : x;
    return x - (std::fabs(x) * kHalfUlp + std::numeric_limits<double>::denorm_min());
}

inline double stepUp(double x)
{
    return -stepDown(-x);
}

/// Bounds of a result that errs by less than `ulps` units in the last place.
inline double lowered(double x, double ulps)
{
    return stepDown(x < kUnbounded ? x - std::fabs(x) * ((ulps - 1.0) * 0x1p-52) : x);
}

inline double raised(double x, double ulps)
{
    return -lowered(-x, ulps);
}

/// a + b = s + the returned error, exactly; NaN where s overflows.
inline double sumError(double a, double b, double s)
{
    const double bPart = s - a;
    return (a - (s - bPart)) + (b - bPart);
}

/// a * b = p + the returned error, exactly; NaN where it cannot be computed.
inline double productError(double a, double b, double p)
{
    constexpr double kSplitter = 134217729.0;  // 2^27 + 1
    constexpr double kLeast = 1e-280;          // below it the halves may underflow
    constexpr double kMost = 1e290;            // above it their product may overflow
    const double size = std::fabs(p);
    if (!(size >= kLeast && size <= kMost))
        return a == 0.0 || b == 0.0 ? 0.0 : std::nan("");
    // A factor too large to split makes NaN.
    const double aScaled = kSplitter * a;
    const double bScaled = kSplitter * b;
    const double aHigh = aScaled - (aScaled - a);
    const double bHigh = bScaled - (bScaled - b);
    const double aLow = a - aHigh;
    const double bLow = b - bHigh;
    return ((aHigh * bHigh - p) + aHigh * bLow + aLow * bHigh) + aLow * bLow;
}

inline double sumDown(double a, double b)
{
    const double s = a + b;
    return sumError(a, b, s) >= 0.0 ? s : stepDown(s);
}

inline double sumUp(double a, double b)
{
    return -sumDown(-a, -b);
}

inline double productDown(double a, double b)
{
    const double p = a * b;
    if (p != p)
        return a == a && b == b ? 0.0 : p;  // 0 times a bound at infinity
    return productError(a, b, p) >= 0.0 ? p : stepDown(p);
}

inline double productUp(double a, double b)
{
    return -productDown(-a, b);
}

inline bool isExactQuotient(double a, double b, double q)
{
    return q * b == a && productError(q, b, a) == 0.0;
}

inline double quotientDown(double a, double b)
{
    const double q = a / b;
    return isExactQuotient(a, b, q) ? q : stepDown(q);
}

inline double quotientUp(double a, double b)
{
    return -quotientDown(-a, b);
}

// --- Arithmetic ----------------------------------------------------------------------

inline Interval operator-(const Interval& a)
{
    return {-a.hi, -a.lo, a.partial};
}

inline Interval operator+(const Interval& a, const Interval& b)
{
    return {sumDown(a.lo, b.lo), sumUp(a.hi, b.hi), a.partial || b.partial};
}

inline Interval operator-(const Interval& a, const Interval& b)
{
    return a + -b;
}

inline Interval operator*(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return Interval::nothing();
    // 0 times what may overflow may be NaN.
    const bool partial = a.partial || b.partial || (a.isZero() && b.largest() == kUnbounded) ||
                         (b.isZero() && a.largest() == kUnbounded);
    if (a.lo >= 0.0) {
        return {productDown(b.lo >= 0.0 ? a.lo : a.hi, b.lo), productUp(b.hi >= 0.0 ? a.hi : a.lo, b.hi),
                partial};
    }
    if (a.hi <= 0.0) {
        return {productDown(b.hi >= 0.0 ? a.lo : a.hi, b.hi), productUp(b.lo >= 0.0 ? a.hi : a.lo, b.lo),
                partial};
    }
    if (b.lo >= 0.0)
        return {productDown(a.lo, b.hi), productUp(a.hi, b.hi), partial};
    if (b.hi <= 0.0)
        return {productDown(a.hi, b.lo), productUp(a.lo, b.lo), partial};
    return {std::min(productDown(a.lo, b.hi), productDown(a.hi, b.lo)),
            std::max(productUp(a.lo, b.lo), productUp(a.hi, b.hi)), partial};
}

inline Interval operator*(double factor, const Interval& a)
{
    return Interval(factor) * a;
}

/// Where the divisor may be 0 there may be no value.
inline Interval operator/(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing() || b.isZero())
        return Interval::nothing();
    const bool partial = a.partial || b.partial;
    if (b.hi < 0.0 || (b.hi == 0.0 && b.lo < 0.0))
        return -(a / -b);
    if (b.lo > 0.0) {
        return {quotientDown(a.lo, a.lo >= 0.0 ? b.hi : b.lo), quotientUp(a.hi, a.hi >= 0.0 ? b.lo : b.hi),
                partial};
    }
    if (a.isZero())
        return {0.0, 0.0, true};
    if (b.lo == 0.0 && a.lo >= 0.0)
        return {quotientDown(a.lo, b.hi), kUnbounded, true};
    if (b.lo == 0.0 && a.hi <= 0.0)
        return {-kUnbounded, quotientUp(a.hi, b.hi), true};
    return Interval::everything();
}

// --- Sets ----------------------------------------------------------------------------

inline Interval hull(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing()) {
        Interval left = a.isNothing() ? b : a;
        left.partial = true;
        return left;
    }
    return {std::min(a.lo, b.lo), std::max(a.hi, b.hi), a.partial || b.partial};
}

/// The intersection. Both intervals contain the same result, so it is not empty.
inline Interval common(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return a.isNothing() ? a : b;
    return {std::max(a.lo, b.lo), std::min(a.hi, b.hi), a.partial && b.partial};
}

}  // namespace mf::engine
