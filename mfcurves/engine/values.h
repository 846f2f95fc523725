#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

/// The values of what is no function of the standard library. Constant folding
/// and evaluation share them, so a folded constant has the bits that evaluation
/// would have given.
namespace mf::engine {

constexpr double kPi = 3.14159265358979323846;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
/// x + kNothing is x for every x, -0.0 included.
constexpr double kNothing = -0.0;

/// `pow`, except that what is undefined stays undefined: pow(NaN, 0) is NaN.
inline double powerValue(double a, double b)
{
    return a != a || b != b ? a + b : std::pow(a, b);
}

/// r * u^exponent by squaring.
inline double timesPower(double r, double u, unsigned exponent)
{
    for (double square = u; exponent != 0; square *= square) {
        if (exponent & 1)
            r *= square;
        exponent >>= 1;
    }
    return r;
}

inline double polynomialValue(double u, unsigned lowest, std::span<const double> c)
{
    double r = c.back();
    for (std::size_t i = c.size() - 1; i-- > 0;)
        r = r * u + c[i];
    return timesPower(r, u, lowest);
}

/// Clenshaw's recurrence; Clenshaw, Math. Tables Aids Comput. 9 (1955).
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

inline double signValue(double x)
{
    return x > 0.0 ? 1.0 : x < 0.0 ? -1.0 : x == 0.0 ? 0.0 : kNaN;
}

inline double signOfValue(double a, double b)
{
    return b != b ? kNaN : b < 0.0 ? -std::fabs(a) : std::fabs(a);
}

/// The first of equal ones, and NaN when either is.
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
