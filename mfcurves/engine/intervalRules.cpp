// SPDX-License-Identifier: MIT

#include "mfcurves/engine/intervalRules.h"

#include <algorithm>
#include <iterator>

#include "mfcurves/engine/values.h"

namespace mf::engine::intervals {
namespace {

// Errors of the functions of the standard library in units in the last place, with
// some room: glibc lists up to 1 for most and up to 4 for these.
constexpr double kUlps = 2.0;
constexpr double kUlpsOfHyperbolic = 4.0;
constexpr double kUlpsOfCbrt = 5.0;

using Value = double (*)(double);

// A zero is exact: the functions here return 0 where the result is 0. See `positive` for those
// that may underflow to 0.
double below(double value, double ulps)
{
    return value == 0.0 ? 0.0 : lowered(value, ulps);
}

double above(double value, double ulps)
{
    return value == 0.0 ? 0.0 : raised(value, ulps);
}

Interval rising(Value f, const Interval& x, double ulps = kUlps)
{
    return {below(f(x.lo), ulps), above(f(x.hi), ulps), x.partial};
}

Interval falling(Value f, const Interval& x, double ulps = kUlps)
{
    return {below(f(x.hi), ulps), above(f(x.lo), ulps), x.partial};
}

// For results above 0, which may be so small that they are computed as 0.
Interval positive(Interval y)
{
    if (y.lo < 0.0)
        y.lo = 0.0;
    if (y.hi == 0.0)
        y.hi = std::numeric_limits<double>::denorm_min();
    return y;
}

// For results that may be so small that they are computed as 0, and have the signs of `lowest` and `highest`.
Interval withUnderflow(Interval y, double lowest, double highest)
{
    if (y.lo == 0.0 && lowest < 0.0)
        y.lo = -std::numeric_limits<double>::denorm_min();
    if (y.hi == 0.0 && highest > 0.0)
        y.hi = std::numeric_limits<double>::denorm_min();
    return y;
}

// The part of x between lo and hi. Outside of them the function has no value.
Interval within(const Interval& x, double lo, double hi)
{
    if (x.isNothing() || x.hi < lo || x.lo > hi)
        return Interval::nothing();
    // A bound of 0 is +0, whose powers with negative exponents are positive.
    return {std::max(lo, x.lo), std::min(hi, x.hi), x.partial || x.lo < lo || x.hi > hi};
}

Interval clamped(Interval y, double lo, double hi)
{
    y.lo = std::max(y.lo, lo);
    y.hi = std::min(y.hi, hi);
    return y;
}

// The whole numbers k from first to last for which (k + offset) pi may lie in x. Without such
// a k, last < first.
struct Multiples {
    double first = 0.0;
    double last = -1.0;
    bool tooMany = false;

    Multiples(const Interval& x, double offset)
    {
        constexpr double kMany = 1e6;
        const double from = x.lo / kPi - offset;
        const double to = x.hi / kPi - offset;
        const double error = x.largest() * 0x1p-51 + 0x1p-52;
        tooMany = !(x.largest() < 1e9) || !(to - from < kMany);
        if (!tooMany) {
            first = std::ceil(from - error);
            last = std::floor(to + error);
        }
    }
    bool any() const { return tooMany || first <= last; }
    bool anyEven() const { return tooMany || last > first || (any() && std::fmod(first, 2.0) == 0.0); }
    bool anyOdd() const { return tooMany || last > first || (any() && std::fmod(first, 2.0) != 0.0); }
};

// A sine or cosine with its maxima at the even multiples and its minima at the odd ones.
Interval wave(Value f, const Interval& x, double offset)
{
    if (x.isNothing())
        return x;
    if (x.largest() == kUnbounded)
        return {-1.0, 1.0, true};
    const double fLo = f(x.lo);
    const double fHi = f(x.hi);
    Interval y(below(std::min(fLo, fHi), kUlps), above(std::max(fLo, fHi), kUlps), x.partial);
    if (!x.isPoint()) {
        const Multiples extremes(x, offset);
        if (extremes.anyEven())
            y.hi = 1.0;
        if (extremes.anyOdd())
            y.lo = -1.0;
    }
    return clamped(y, -1.0, 1.0);
}

// The interval of the absolute values.
Interval magnitude(const Interval& x)
{
    return {x.smallest(), x.largest(), x.partial};
}

}  // namespace

Interval ofSin(const Interval& x)
{
    return wave(std::sin, x, 0.5);
}

Interval ofCos(const Interval& x)
{
    if (x.isZero())
        return {1.0, 1.0, x.partial};
    return wave(std::cos, x, 0.0);
}

Interval ofTan(const Interval& x)
{
    if (x.isNothing() || (x.isPoint() && std::isfinite(x.lo)))
        return rising(std::tan, x);
    if (Multiples(x, 0.5).any())
        return Interval::everything();
    return rising(std::tan, x);
}

Interval ofAsin(const Interval& x)
{
    return rising(std::asin, within(x, -1.0, 1.0));
}

Interval ofAcos(const Interval& x)
{
    return falling(std::acos, within(x, -1.0, 1.0));
}

Interval ofAtan(const Interval& x)
{
    return rising(std::atan, x);
}

Interval ofSinh(const Interval& x)
{
    return rising(std::sinh, x, kUlpsOfHyperbolic);
}

Interval ofCosh(const Interval& x)
{
    Interval y = rising(std::cosh, magnitude(x), kUlpsOfHyperbolic);
    y.lo = std::max(y.lo, 1.0);
    if (x.isZero())
        y.hi = 1.0;
    return x.isNothing() ? x : y;
}

Interval ofTanh(const Interval& x)
{
    const Interval y = rising(std::tanh, x, kUlpsOfHyperbolic);
    return x.isNothing() ? x : clamped(y, -1.0, 1.0);
}

Interval ofSech(const Interval& x)
{
    return Interval(1.0) / ofCosh(x);
}

Interval ofExp(const Interval& x)
{
    if (x.isZero())
        return {1.0, 1.0, x.partial};
    return positive(rising(std::exp, x));
}

Interval ofLog(const Interval& x)
{
    Interval inside = within(x, 0.0, kUnbounded);
    inside.partial |= inside.lo == 0.0;
    return rising(std::log, inside);
}

Interval ofLog10(const Interval& x)
{
    Interval inside = within(x, 0.0, kUnbounded);
    inside.partial |= inside.lo == 0.0;
    return rising(std::log10, inside, kUlpsOfHyperbolic);
}

// The square root is rounded correctly, so one step is enough. If it is exact, no step is needed.
Interval ofSqrt(const Interval& x)
{
    const Interval inside = within(x, 0.0, kUnbounded);
    const double lo = std::sqrt(inside.lo);
    const double hi = std::sqrt(inside.hi);
    return {isExactQuotient(inside.lo, lo, lo) || lo == 0.0 ? lo : stepDown(lo),
            isExactQuotient(inside.hi, hi, hi) || hi == 0.0 ? hi : stepUp(hi), inside.partial};
}

Interval ofCbrt(const Interval& x)
{
    return rising(std::cbrt, x, kUlpsOfCbrt);
}

Interval ofAbs(const Interval& x)
{
    return x.isNothing() ? x : magnitude(x);
}

Interval ofSign(const Interval& x)
{
    return x.isNothing() ? x : Interval(signValue(x.lo), signValue(x.hi), x.partial);
}

Interval ofInt(const Interval& x)
{
    return {std::trunc(x.lo), std::trunc(x.hi), x.partial};
}

Interval ofNint(const Interval& x)
{
    return {std::round(x.lo), std::round(x.hi), x.partial};
}

Interval ofFloor(const Interval& x)
{
    return {std::floor(x.lo), std::floor(x.hi), x.partial};
}

Interval ofCeil(const Interval& x)
{
    return {std::ceil(x.lo), std::ceil(x.hi), x.partial};
}

// Away from the cut, which is the left half of the x axis, the angle is greatest and
// least in corners. The cut itself belongs to the upper half.
Interval ofAtan2(const Interval& y, const Interval& x)
{
    if (y.isNothing() || x.isNothing())
        return Interval::nothing();
    const bool partial = y.partial || x.partial;
    const bool crossesCut = x.lo < 0.0 && y.lo < 0.0 && y.hi >= 0.0;
    const bool holdsOrigin = x.contains(0.0) && y.contains(0.0);
    if (y.isZero() && x.lo >= 0.0)
        return {0.0, 0.0, partial || holdsOrigin};
    // The angle has no limit at the origin, and a derivative with respect to x need not show that.
    if (crossesCut || (holdsOrigin && y.lo < 0.0))
        return {lowered(-kPi, kUlps), raised(kPi, kUlps), partial || holdsOrigin};
    if (holdsOrigin)
        return {0.0, raised(kPi, kUlps), true};
    const double corners[] = {angleValue(y.lo, x.lo), angleValue(y.lo, x.hi), angleValue(y.hi, x.lo),
                              angleValue(y.hi, x.hi)};
    const auto [least, greatest] = std::minmax_element(std::begin(corners), std::end(corners));
    return withUnderflow({below(*least, kUlps), above(*greatest, kUlps), partial}, y.lo, y.hi);
}

Interval ofHypot(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return Interval::nothing();
    const Interval p = magnitude(a);
    const Interval q = magnitude(b);
    return {below(std::hypot(p.lo, q.lo), kUlps), above(std::hypot(p.hi, q.hi), kUlps),
            a.partial || b.partial};
}

Interval ofSignOf(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return Interval::nothing();
    Interval size = magnitude(a);
    size.partial |= b.partial;
    if (b.lo >= 0.0)
        return size;
    return b.hi < 0.0 ? -size : hull(-size, size);
}

Interval ofMin(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return Interval::nothing();
    return {std::min(a.lo, b.lo), std::min(a.hi, b.hi), a.partial || b.partial};
}

Interval ofMax(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return Interval::nothing();
    return {std::max(a.lo, b.lo), std::max(a.hi, b.hi), a.partial || b.partial};
}

// If k = int(a / b) is the same everywhere, the result is a - k b. Otherwise it has the
// sign of a, and is no farther from 0 than a and b.
Interval ofMod(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing() || b.isZero())
        return Interval::nothing();
    const bool partial = a.partial || b.partial || b.contains(0.0) || a.largest() == kUnbounded;
    Interval range(a.lo < 0.0 ? -std::min(-a.lo, b.largest()) : 0.0,
                   a.hi > 0.0 ? std::min(a.hi, b.largest()) : 0.0, partial);
    if (!b.contains(0.0)) {
        const Interval k = ofInt(a / b);
        if (k.isPoint() && std::fabs(k.lo) < 0x1p53)
            range = common(range, k.lo == 0.0 ? a : a - k * b);
    }
    range.partial = partial;
    return range;
}

Interval ofDim(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return Interval::nothing();
    const Interval d = a - b;
    return {std::max(d.lo, 0.0), std::max(d.hi, 0.0), d.partial};
}

Interval wholePower(const Interval& u, unsigned exponent)
{
    if (exponent == 1 || u.isNothing())
        return u;
    // Covers plain products, which round once per multiplication, compensated ones and `pow`.
    constexpr double kUlpsOfProducts = 4.0;
    const bool even = exponent % 2 == 0;
    const Interval base = even ? magnitude(u) : u;
    if (exponent == 2)
        return {productDown(base.lo, base.lo), productUp(base.hi, base.hi), u.partial};
    const auto n = static_cast<double>(exponent);
    const auto exactOrStepped = [&](double b, auto step) {
        const double p = std::pow(b, n);
        return b == 0.0 || b == 1.0 || b == -1.0 ? p : step(p, kUlpsOfProducts);
    };
    return {exactOrStepped(base.lo, lowered), exactOrStepped(base.hi, raised), u.partial};
}

// Where the base is above 0, the power is monotonic in each argument, so its extremes are
// in corners. A base below 0 has only powers with whole exponents.
Interval ofPower(const Interval& a, const Interval& b)
{
    if (a.isNothing() || b.isNothing())
        return Interval::nothing();
    const bool partial = a.partial || b.partial;
    if (b.isZero())
        return {1.0, 1.0, partial};
    if (b.isPoint() && a.lo < 0.0 && b.lo == std::trunc(b.lo)) {
        const double n = b.lo;
        const bool even = std::fmod(n, 2.0) == 0.0;
        if (n < 0.0 && a.contains(0.0))
            return even ? Interval(0.0, kUnbounded, true) : Interval::everything();
        const Interval base = even ? magnitude(a) : a;
        const auto [least, greatest] = std::minmax({std::pow(base.lo, n), std::pow(base.hi, n)});
        return withUnderflow({below(least, kUlps), above(greatest, kUlps), partial}, base.lo, base.hi);
    }
    if (a.lo < 0.0 && !b.isPoint())
        return Interval::everything();  // a base below 0 has powers at the whole exponents in b
    Interval base = within(a, 0.0, kUnbounded);
    if (base.isNothing())
        return base;
    const double corners[] = {std::pow(base.lo, b.lo), std::pow(base.lo, b.hi), std::pow(base.hi, b.lo),
                              std::pow(base.hi, b.hi)};
    const auto [least, greatest] = std::minmax_element(std::begin(corners), std::end(corners));
    if (base.hi == 0.0 && b.lo > 0.0)
        return {0.0, 0.0, base.partial || partial};
    Interval y = positive({below(*least, kUlps), above(*greatest, kUlps), base.partial || partial});
    if (base.lo == 0.0 && b.lo <= 0.0) {
        y.partial |= b.lo < 0.0;
        y = hull(y, Interval(0.0, 1.0));  // 0^b jumps at b = 0
    }
    if (base.lo <= 1.0 && base.hi >= 1.0)
        y = hull(y, Interval(1.0));
    return y;
}

}  // namespace mf::engine::intervals
