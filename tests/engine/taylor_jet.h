// SPDX-License-Identifier: MIT
#pragma once

// Dual numbers of order 3: a function's Taylor coefficients at one point, carried
// through arithmetic by the recurrences of automatic differentiation
// (Griewank and Walther, Evaluating Derivatives, chapter 13). They share nothing
// with the engine, which differentiates formulas.

#include <algorithm>
#include <array>
#include <cmath>

namespace engine_test {

using Real = long double;
constexpr int kOrders = 4;

/// Coefficient k is the k-th derivative divided by k!.
using Series = std::array<Real, kOrders>;

inline Series constant(Real value)
{
    return {value, 0, 0, 0};
}

inline Series operator+(const Series& a, const Series& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2], a[3] + b[3]};
}

inline Series operator*(const Series& a, const Series& b)
{
    Series product{};
    for (int k = 0; k < kOrders; ++k) {
        for (int i = 0; i <= k; ++i)
            product[k] += a[i] * b[k - i];
    }
    return product;
}

inline Series operator*(Real factor, const Series& a)
{
    return constant(factor) * a;
}

inline Series operator-(const Series& a)
{
    return -1 * a;
}

inline Series operator-(const Series& a, const Series& b)
{
    return a + -b;
}

inline Series operator/(const Series& a, const Series& b)
{
    Series quotient{};
    for (int k = 0; k < kOrders; ++k) {
        Real rest = a[k];
        for (int i = 0; i < k; ++i)
            rest -= quotient[i] * b[k - i];
        quotient[k] = rest / b[0];
    }
    return quotient;
}

/// The series that begins with `value` and whose derivative is `slope` times that of `u`.
inline Series integrate(Real value, const Series& slope, const Series& u)
{
    Series sum{value, 0, 0, 0};
    for (int k = 1; k < kOrders; ++k) {
        for (int i = 1; i <= k; ++i)
            sum[k] += static_cast<Real>(i) * u[i] * slope[k - i];
        sum[k] /= static_cast<Real>(k);
    }
    return sum;
}

inline Series exponential(const Series& u)
{
    // y' = y u', coefficient by coefficient, so that each is known when it is used.
    Series y = constant(std::exp(u[0]));
    for (int k = 1; k < kOrders; ++k)
        y[k] = integrate(y[0], y, u)[k];
    return y;
}

inline Series power(const Series& u, Real exponent)
{
    // y' = exponent y u' / u
    Series y = constant(std::pow(u[0], exponent));
    for (int k = 1; k < kOrders; ++k)
        y[k] = integrate(y[0], exponent * (y / u), u)[k];
    return y;
}

inline Series wholePower(const Series& u, int exponent)
{
    Series product = constant(1);
    for (int i = 0; i < std::abs(exponent); ++i)
        product = product * u;
    return exponent < 0 ? constant(1) / product : product;
}

inline Series sine(const Series& u);

inline Series cosine(const Series& u)
{
    const Real s = std::sin(u[0]);
    const Real c = std::cos(u[0]);
    // cos(u0 + d) with the Taylor coefficients of the cosine at u0.
    const Series d{0, u[1], u[2], u[3]};
    return constant(c) + -s * d + (-c / 2) * (d * d) + (s / 6) * (d * d * d);
}

inline Series sine(const Series& u)
{
    const Real s = std::sin(u[0]);
    const Real c = std::cos(u[0]);
    const Series d{0, u[1], u[2], u[3]};
    return constant(s) + c * d + (-s / 2) * (d * d) + (-c / 6) * (d * d * d);
}

/// A series and the size of its rounding errors: an evaluation in double
/// arithmetic, formula by formula, errs in coefficient k by a small multiple of
/// epsilon * size[k]. Sizes follow first-order error analysis: an operation adds the
/// sizes of its arguments, each times its partial derivative, and the magnitudes of
/// the terms that it sums itself.
struct Jet {
    Series value{};
    Series size{};
    bool defined = true;  ///< the function has a value at this point
    bool smooth = true;   ///< the point is not near a kink, a jump or the end of a domain
};

inline Series magnitudes(const Series& a)
{
    return {std::abs(a[0]), std::abs(a[1]), std::abs(a[2]), std::abs(a[3])};
}

inline Jet numberJet(Real value)
{
    return {constant(value), magnitudes(constant(value))};
}

inline Jet argumentJet(Real x)
{
    return {{x, 1, 0, 0}, {0, 0, 0, 0}};
}

inline Jet withFlagsOf(Jet result, const Jet& a)
{
    result.defined = result.defined && a.defined;
    result.smooth = result.smooth && a.smooth;
    return result;
}

inline Jet operator+(const Jet& a, const Jet& b)
{
    const Jet sum{a.value + b.value, a.size + b.size + magnitudes(a.value) + magnitudes(b.value)};
    return withFlagsOf(withFlagsOf(sum, a), b);
}

inline Jet operator-(const Jet& a)
{
    return {-a.value, a.size, a.defined, a.smooth};
}

inline Jet operator-(const Jet& a, const Jet& b)
{
    return a + -b;
}

inline Jet operator*(const Jet& a, const Jet& b)
{
    const Series sizeA = a.size + magnitudes(a.value);
    const Jet product{a.value * b.value, sizeA * magnitudes(b.value) + magnitudes(a.value) * b.size};
    return withFlagsOf(withFlagsOf(product, a), b);
}

/// The jet of f(u), from its series and the series of f'(u).
inline Jet chain(const Series& value, const Series& slope, const Jet& u)
{
    const Series handedOn = magnitudes(slope) * u.size;
    const Series own = integrate(std::abs(value[0]), magnitudes(slope), magnitudes(u.value));
    return withFlagsOf({value, handedOn + own}, u);
}

/// `result`, which is not smooth if `distance` is close to 0 compared with the rounding
/// errors of `size`.
inline Jet clearOf(Jet result, Real distance, Real size)
{
    constexpr Real kMargin = 1e-5L;
    result.smooth = result.smooth && std::abs(distance) > kMargin * std::max<Real>(1, size);
    return result;
}

inline Jet undefinedJet()
{
    Jet result;
    result.defined = false;
    return result;
}

}  // namespace engine_test
