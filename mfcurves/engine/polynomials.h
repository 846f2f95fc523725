// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstddef>
#include <span>

/// Polynomials, for one point (`Number` is double) and for several side by side (a
/// `Strip`). Constant folding and evaluation share them, so a folded constant has the
/// bits that evaluation would have given.
namespace mf::engine {

/// Up to this exponent plain multiplications err little more than `pow`. A cube
/// errs more, which shows where it is the only term.
constexpr unsigned largestPlainPower(std::size_t terms)
{
    return terms == 1 ? 2 : 3;
}
/// Up to this exponent compensated multiplications are quicker than `pow`.
constexpr unsigned kLargestCompensatedPower = 7;

/// Returns sum + error. Returns `sum` alone if the error is NaN because the halves of its
/// factors overflowed, and if the sum is zero, which keeps its sign.
inline double withError(double sum, double error)
{
    return error == error && sum != 0.0 ? sum + error : sum;
}

inline double libraryPower(double u, unsigned exponent)
{
    return std::pow(u, exponent);
}

/// A factor split in two halves, whose products with other halves are exact; Dekker,
/// Numer. Math. 18 (1971).
template <class Number>
struct Halves {
    Number high;
    Number low;

    [[gnu::always_inline]] explicit Halves(Number x) : high(x), low(x)
    {
        constexpr double kSplitter = 134217729.0;  // 2^27 + 1
        const Number scaled = x * kSplitter;
        high = scaled - (scaled - x);
        low = x - high;
    }
};

/// The rounding error of product = a * b.
template <class Number>
[[gnu::always_inline]] inline Number roundingError(const Halves<Number>& a, const Halves<Number>& b,
                                                   Number product)
{
    return ((a.high * b.high - product) + a.high * b.low + a.low * b.high) + a.low * b.low;
}

/// A factor of which a fused multiplication and addition gives the rounding error of a product.
struct Undivided {
    double number;

    [[gnu::always_inline]] explicit Undivided(double x) : number(x) {}
};

[[gnu::always_inline]] inline double roundingError(const Undivided& a, const Undivided& b, double product)
{
    return __builtin_fma(a.number, b.number, -product);
}

/// A product and the sum of its rounding errors.
template <class Number>
struct Compensated {
    Number product;
    Number error;
};

template <class Factor, class Number>
[[gnu::always_inline]] inline Compensated<Number> squared(Compensated<Number> a)
{
    const Factor factor(a.product);
    const Number square = a.product * a.product;
    const Number twice = a.product + a.product;
    return {square, twice * a.error + roundingError(factor, factor, square)};
}

template <class Factor, class Number>
[[gnu::always_inline]] inline Compensated<Number> times(Compensated<Number> a, Number u,
                                                        const Factor& factorOfU)
{
    const Number product = a.product * u;
    return {product, a.error * u + roundingError(Factor(a.product), factorOfU, product)};
}

/// u^exponent for exponents from 2 to kLargestCompensatedPower by squaring and multiplying.
/// The rounding errors are added up separately, so that their sum with the product is as accurate
/// as `pow`; Graillat, IEEE Trans. Comput. 58 (2009).
template <class Factor, class Number>
[[gnu::always_inline]] inline Compensated<Number> powerWithError(Number u, unsigned exponent)
{
    static_assert(kLargestCompensatedPower <= 7, "one squaring of the square or the cube");
    const Factor factor(u);
    const Number square = u * u;
    Compensated<Number> power = {square, roundingError(factor, factor, square)};
    if (exponent >= 4) {
        if (exponent & 2)
            power = times(power, u, factor);
        power = squared<Factor>(power);
    }
    if (exponent & 1)
        power = times(power, u, factor);
    return power;
}

/// The power on any processor.
template <class Number>
[[gnu::always_inline]] inline Number compensatedPower(Number u, unsigned exponent)
{
    const Compensated<Number> power = powerWithError<Halves<Number>>(u, exponent);
    return withError(power.product, power.error);
}

struct CompensatedPowers {
    template <class Number>
    [[gnu::always_inline]] static Number of(Number u, unsigned exponent)
    {
        return compensatedPower(u, exponent);
    }
};

/// r * u^exponent, where r is a sum of `terms` terms. `Powers` computes the powers that plain
/// multiplications would not compute well enough.
template <class Powers, class Number>
[[gnu::always_inline]] inline Number timesPower(Number r, std::size_t terms, Number u, unsigned exponent)
{
    if (exponent > largestPlainPower(terms)) [[unlikely]]
        return r *
               (exponent > kLargestCompensatedPower ? libraryPower(u, exponent) : Powers::of(u, exponent));
    if (exponent & 1)
        r = r * u;
    if (exponent & 2)
        r = r * (u * u);
    return r;
}

/// u^lowest * (c[0] + c[1] u + c[2] u^2 + ...) by Horner's rule.
template <class Powers = CompensatedPowers, class Number, std::size_t count>
[[gnu::always_inline]] inline Number polynomialValue(Number u, unsigned lowest,
                                                     std::span<const double, count> c)
{
    Number r(c.back());
    for (std::size_t i = c.size() - 1; i-- > 0;)
        r = r * u + c[i];
    return timesPower<Powers>(r, c.size(), u, lowest);
}

/// c[0] T0(h) + c[1] T1(h) + ... by Clenshaw's recurrence; Clenshaw, Math. Tables Aids
/// Comput. 9 (1955).
inline double chebyshevValue(double h, std::span<const double> c)
{
    double b1 = 0.0;
    double b2 = 0.0;
    for (std::size_t i = c.size() - 1; i > 0; --i) {
        const double b = c[i] + (2.0 * h * b1 - b2);
        b2 = b1;
        b1 = b;
    }
    return c[0] + (h * b1 - b2);
}

}  // namespace mf::engine
