// SPDX-License-Identifier: MIT

#include "mfcurves/engine/intervalPolynomials.h"

#include <cmath>

#include "mfcurves/engine/intervalRules.h"

namespace mf::engine::intervals {
namespace {

// Horner's rule with u not below 0, where the sign of the sum alone decides which bound of u
// it is multiplied by.
Interval hornerAboveZero(const Interval& u, std::span<const double> c)
{
    double lo = c.back();
    double hi = c.back();
    for (std::size_t i = c.size() - 1; i-- > 0;) {
        lo = sumDown(productDown(lo, lo >= 0.0 ? u.lo : u.hi), c[i]);
        hi = sumUp(productUp(hi, hi >= 0.0 ? u.hi : u.lo), c[i]);
    }
    return {lo, hi, u.partial};
}

Interval horner(const Interval& u, std::span<const double> c)
{
    if (u.lo >= 0.0 && u.hi < kUnbounded)
        return hornerAboveZero(u, c);
    Interval r(c.back());
    for (std::size_t i = c.size() - 1; i-- > 0;)
        r = r * u + Interval(c[i]);
    return r;
}

Interval hornerTimesPower(const Interval& u, unsigned lowest, std::span<const double> c)
{
    const Interval r = horner(u, c);
    return lowest == 0 ? r : r * wholePower(u, lowest);
}

// (|c0| + |c1| u + ...) u^lowest, which the rounding error of a polynomial is proportional to.
double sumOfSizes(double u, unsigned lowest, std::span<const double> c)
{
    double r = std::fabs(c.back());
    for (std::size_t i = c.size() - 1; i-- > 0;)
        r = r * u + std::fabs(c[i]);
    return r * std::pow(u, lowest);
}

double roundingOfPolynomial(double u, unsigned lowest, std::span<const double> c)
{
    const auto operations = static_cast<double>(2 * c.size() + lowest + 4);
    return 2.0 * operations * kHalfUlp * sumOfSizes(u, lowest, c);
}

// The derivative of the bracket c0 + c1 u + ...: c1 + 2 c2 u + ...
Interval hornerOfSlope(const Interval& u, std::span<const double> c)
{
    Interval r = static_cast<double>(c.size() - 1) * Interval(c.back());
    for (std::size_t i = c.size() - 1; i-- > 1;)
        r = r * u + static_cast<double>(i) * Interval(c[i]);
    return r;
}

}  // namespace

// Horner's rule treats each u as another number, which makes the range too wide. On a wide
// box the value of the bracket in the middle plus slope times half the width is a tighter
// range. Where the slope has one sign, the bracket lies between its values at the ends.
// A computed value may be outside this range by its rounding error.
Interval polynomialRange(const Interval& u, unsigned lowest, std::span<const double> c)
{
    constexpr double kWide = 1e-10;
    const Interval plain = hornerTimesPower(u, lowest, c);
    if (c.size() < 2 || !(u.width() > kWide * u.largest()) || !plain.isFinite())
        return plain;
    const Interval slope = hornerOfSlope(u, c);
    const Interval middle(u.middle());
    const Interval bracket = slope.excludesZero() ? hull(horner(Interval(u.lo), c), horner(Interval(u.hi), c))
                                                  : horner(middle, c) + slope * (u - middle);
    const Interval exact = lowest == 0 ? bracket : bracket * wholePower(u, lowest);
    const double rounding = roundingOfPolynomial(u.largest(), lowest, c);
    Interval tight = common(plain, {exact.lo - rounding, exact.hi + rounding, exact.partial});
    tight.partial = u.partial;
    return tight;
}

double errorOfPolynomial(const Interval& u, unsigned lowest, std::span<const double> c, double error)
{
    const double size = u.largest();
    double slope = 0.0;
    if (error != 0.0) {
        const auto highest = static_cast<double>(c.size() - 1 + lowest);
        slope = size > 0.0 ? highest * sumOfSizes(size, lowest, c) / size : sumOfSizes(1.0, 0, c);
    }
    return slope * error + roundingOfPolynomial(size, lowest, c);
}

Interval chebyshevRange(const Interval& h, std::span<const double> c)
{
    Interval b1(0.0);
    Interval b2(0.0);
    for (std::size_t i = c.size() - 1; i > 0; --i) {
        const Interval b = Interval(c[i]) + ((2.0 * h) * b1 - b2);
        b2 = b1;
        b1 = b;
    }
    Interval range = Interval(c[0]) + (h * b1 - b2);
    range.partial = h.partial;
    return range;
}

// The recurrence of chebyshevRange, with bounds b of the sizes and e of the errors.
double errorOfChebyshev(const Interval& h, std::span<const double> c, double error)
{
    const double size = h.largest();
    double b1 = 0.0, b2 = 0.0, e1 = 0.0, e2 = 0.0;
    for (std::size_t i = c.size(); i-- > 0;) {
        const double b = std::fabs(c[i]) + 2.0 * size * b1 + b2;
        const double e = 2.0 * size * e1 + 2.0 * b1 * error + e2 + 8.0 * kHalfUlp * b;
        b2 = b1;
        b1 = b;
        e2 = e1;
        e1 = e;
    }
    return e1;
}

}  // namespace mf::engine::intervals
