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

/// Sine and cosine by one call, which shares the reduction of the argument.
inline void sineAndCosine(double x, double& sine, double& cosine)
{
#ifdef __GLIBC__
    ::sincos(x, &sine, &cosine);
#else
    sine = std::sin(x);
    cosine = std::cos(x);
#endif
}

/// `pow`, except that what is undefined stays undefined: pow(NaN, 0) is NaN.
inline double powerValue(double a, double b)
{
    return a != a || b != b ? a + b : std::pow(a, b);
}

/// Up to this exponent plain multiplications err little more than `pow`. A cube
/// errs more, which shows where it stands alone.
constexpr unsigned largestPlainPower(std::size_t terms)
{
    return terms == 1 ? 2 : 3;
}
/// Up to this exponent compensated multiplications are quicker than `pow`.
constexpr unsigned kLargestCompensatedPower = 7;

/// u^exponent by multiplications, with their roundings added up beside them, so
/// that it is as near as `pow`; Graillat, IEEE Trans. Comput. 58 (2009). Each
/// rounding is found by splitting the factors in two halves; Dekker, Numer. Math. 18 (1971).
inline double compensatedPower(double u, unsigned exponent)
{
    constexpr double kSplitter = 134217729.0;  // 2^27 + 1
    const auto upperHalf = [](double x) {
        const double scaled = kSplitter * x;
        return scaled - (scaled - x);
    };
    const double uHigh = upperHalf(u);
    const double uLow = u - uHigh;
    double power = u;
    double error = 0.0;
    for (unsigned i = 1; i < exponent; ++i) {
        const double high = upperHalf(power);
        const double low = power - high;
        power *= u;
        error = error * u + (((high * uHigh - power) + high * uLow + low * uHigh) + low * uLow);
    }
    // Where the halves overflow there is no error to speak of, and -0.0 stays what it is.
    return error == error && power != 0.0 ? power + error : power;
}

/// r * u^exponent, where r has so many terms.
[[gnu::always_inline]] inline double timesPower(double r, std::size_t terms, double u, unsigned exponent)
{
    if (exponent > kLargestCompensatedPower)
        return r * std::pow(u, exponent);
    if (exponent > largestPlainPower(terms))
        return r * compensatedPower(u, exponent);
    for (double square = u; exponent != 0; square *= square) {
        if (exponent & 1)
            r *= square;
        exponent >>= 1;
    }
    return r;
}

template <std::size_t count>
[[gnu::always_inline]] inline double polynomialValue(double u, unsigned lowest,
                                                     std::span<const double, count> c)
{
    double r = c.back();
    for (std::size_t i = c.size() - 1; i-- > 0;)
        r = r * u + c[i];
    return timesPower(r, c.size(), u, lowest);
}

inline double polynomialValue(double u, unsigned lowest, std::span<const double> c)
{
    return polynomialValue<std::dynamic_extent>(u, lowest, c);
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

/// Zero has no sign here: a point on the left half of the x axis is at pi, however
/// its zero came about.
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
