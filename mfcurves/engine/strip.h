// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>

#include "mfcurves/engine/polynomials.h"

namespace mf::engine {

/// Eight numbers side by side, in vector registers of the processor. Code that computes
/// one point from a double computes eight from a strip, with the same roundings.
struct Strip {
    using Pair [[gnu::vector_size(16)]] = double;

    static constexpr std::size_t kSize = 8;

    Strip() = default;
    [[gnu::always_inline]] explicit Strip(double x) : p0{x, x}, p1(p0), p2(p0), p3(p0) {}
    [[gnu::always_inline]] Strip(Pair q0, Pair q1, Pair q2, Pair q3) : p0(q0), p1(q1), p2(q2), p3(q3) {}

    [[gnu::always_inline]] static Strip of(const double* from)
    {
        return {pairOf(from), pairOf(from + 2), pairOf(from + 4), pairOf(from + 6)};
    }
    [[gnu::always_inline]] void storeTo(double* to) const
    {
        std::memcpy(to, &p0, sizeof p0);
        std::memcpy(to + 2, &p1, sizeof p1);
        std::memcpy(to + 4, &p2, sizeof p2);
        std::memcpy(to + 6, &p3, sizeof p3);
    }

    Pair p0, p1, p2, p3;

private:
    [[gnu::always_inline]] static Pair pairOf(const double* from)
    {
        Pair pair;
        std::memcpy(&pair, from, sizeof pair);
        return pair;
    }
};

[[gnu::always_inline]] inline Strip operator+(Strip a, Strip b)
{
    return {a.p0 + b.p0, a.p1 + b.p1, a.p2 + b.p2, a.p3 + b.p3};
}

[[gnu::always_inline]] inline Strip operator-(Strip a, Strip b)
{
    return {a.p0 - b.p0, a.p1 - b.p1, a.p2 - b.p2, a.p3 - b.p3};
}

[[gnu::always_inline]] inline Strip operator*(Strip a, Strip b)
{
    return {a.p0 * b.p0, a.p1 * b.p1, a.p2 * b.p2, a.p3 * b.p3};
}

[[gnu::always_inline]] inline Strip operator/(Strip a, Strip b)
{
    return {a.p0 / b.p0, a.p1 / b.p1, a.p2 / b.p2, a.p3 / b.p3};
}

[[gnu::always_inline]] inline Strip operator+(Strip a, double b)
{
    return a + Strip(b);
}

[[gnu::always_inline]] inline Strip operator*(Strip a, double b)
{
    return a * Strip(b);
}

[[gnu::always_inline]] inline Strip operator/(Strip a, double b)
{
    return a / Strip(b);
}

/// The sum of the pairs.
[[gnu::always_inline]] inline Strip::Pair sumOf(Strip a)
{
    return (a.p0 + a.p1) + (a.p2 + a.p3);
}

[[gnu::always_inline]] inline double sumOf(Strip::Pair a)
{
    return a[0] + a[1];
}

[[gnu::always_inline]] inline Strip::Pair withError(Strip::Pair sum, Strip::Pair error)
{
    return ((error == error) & (sum != Strip::Pair{})) ? sum + error : sum;
}

[[gnu::always_inline]] inline Strip withError(Strip sum, Strip error)
{
    return {withError(sum.p0, error.p0), withError(sum.p1, error.p1), withError(sum.p2, error.p2),
            withError(sum.p3, error.p3)};
}

/// One function for all exponents, not inlined: a call for eight points costs little.
Strip compensatedPower(Strip u, unsigned exponent);

inline Strip libraryPower(Strip u, unsigned exponent)
{
    double lanes[Strip::kSize];
    u.storeTo(lanes);
    for (double& lane : lanes)
        lane = std::pow(lane, exponent);
    return Strip::of(lanes);
}

}  // namespace mf::engine
