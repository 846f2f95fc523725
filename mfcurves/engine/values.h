// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

/// The values of functions that the standard library does not have. Constant folding
/// and evaluation share them, so a folded constant has the bits that evaluation
/// would have given.
namespace mf::engine {

constexpr double kPi = 3.14159265358979323846;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Sine and cosine by one call, which shares the reduction of the argument.
inline void sineAndCosine(double x, double& sine, double& cosine)
{
    ::sincos(x, &sine, &cosine);
}

/// `pow`, except that NaN stays NaN: pow(NaN, 0) and pow(1, NaN) are NaN.
inline double powerValue(double a, double b)
{
    return a != a || b != b ? a + b : std::pow(a, b);
}

/// `atan2` without the signs of zeros: the angle of a point on the left half of the x
/// axis is pi, even if its y is -0.0.
inline double angleValue(double y, double x)
{
    return std::atan2(y + 0.0, x + 0.0);
}

inline double signValue(double x)
{
    return x > 0.0 ? 1.0 : x < 0.0 ? -1.0 : x == 0.0 ? 0.0 : kNaN;
}

inline double signOfValue(double a, double b)
{
    return b != b ? kNaN : b < 0.0 ? -std::fabs(a) : std::fabs(a);
}

/// The smaller one, the first of two equal ones; NaN if either is NaN. maxValue likewise.
inline double minValue(double a, double b)
{
    return b < a || b != b ? b : a;
}

inline double maxValue(double a, double b)
{
    return b > a || b != b ? b : a;
}

inline double dimValue(double a, double b)
{
    return a < b ? 0.0 : a - b;
}

inline double chooseLessValue(double p, double q, double ifLess, double otherwise)
{
    return p < q ? ifLess : otherwise;
}

inline double chooseSignValue(double c, double negative, double zero, double positive)
{
    return c < 0.0 ? negative : c > 0.0 ? positive : c == 0.0 ? zero : kNaN;
}

inline double chooseStepValue(double x, double x0, double x1, double before, double between, double after)
{
    if (!(x0 < x1) || x != x)
        return kNaN;
    return x <= x0 ? before : x >= x1 ? after : between;
}

}  // namespace mf::engine
