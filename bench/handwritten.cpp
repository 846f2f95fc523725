// SPDX-License-Identifier: MIT

#include "bench/handwritten.h"

#include <cmath>
#include <numbers>

namespace bench {
namespace {

constexpr double kX1 = 0.5;
constexpr double kY1 = 3.0;
constexpr double kRise = -5.0 - kY1;
constexpr double kPerLength = 1.0 / (2.25 - kX1);

double polynomialValue(double x)
{
    const double u = (x - kX1) * kPerLength;
    return kY1 + kRise * (u * u * u) * (10.0 + u * (-15.0 + u * 6.0));
}

inline Orders polynomial(double x)
{
    constexpr double c1 = kRise * kPerLength;
    constexpr double c2 = c1 * kPerLength;
    constexpr double c3 = c2 * kPerLength;
    const double u = (x - kX1) * kPerLength;
    const double uu = u * u;
    return {kY1 + kRise * (u * uu) * (10.0 + u * (-15.0 + u * 6.0)), 30.0 * c1 * uu * (1.0 + u * (-2.0 + u)),
            60.0 * c2 * u * (1.0 + u * (-3.0 + u * 2.0)), 60.0 * c3 * (1.0 + u * (-6.0 + u * 6.0))};
}

constexpr double kTurn = std::numbers::pi / 2 * kPerLength;

double quarterCosineValue(double x)
{
    return kY1 + kRise * (1.0 - std::cos(kTurn * (x - kX1)));
}

inline Orders quarterCosine(double x)
{
    constexpr double c1 = kRise * kTurn;
    constexpr double c2 = c1 * kTurn;
    constexpr double c3 = c2 * kTurn;
    const double angle = kTurn * (x - kX1);
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    return {kY1 + kRise * (1.0 - c), c1 * s, c2 * c, -c3 * s};
}

constexpr double kFullTurn = 2 * std::numbers::pi;

double generalValue(double x)
{
    return 10.0 * std::sin(kFullTurn * x) + x * x * std::exp(-x) / (1.0 + x);
}

inline Orders general(double x)
{
    constexpr double c1 = 10.0 * kFullTurn;
    constexpr double c2 = c1 * kFullTurn;
    constexpr double c3 = c2 * kFullTurn;
    const double angle = kFullTurn * x;
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    // x^2 / (1 + x) = x - 1 + q with q = 1 / (1 + x), whose derivatives are powers of q.
    const double e = std::exp(-x);
    const double q = 1.0 / (1.0 + x);
    const double qq = q * q;
    const double r = x * x * q;
    const double r1 = 1.0 - qq;
    const double r2 = 2.0 * qq * q;
    const double r3 = -6.0 * qq * qq;
    return {10.0 * s + e * r, c1 * c + e * (r1 - r), -c2 * s + e * (r2 - 2.0 * r1 + r),
            -c3 * c + e * (r3 - 3.0 * r2 + 3.0 * r1 - r)};
}

template <Orders function(double)>
Orders ordersAt(double x)
{
    return function(x);
}

template <Orders function(double)>
void sample(const double* __restrict x, int count, Samples samples)
{
    double* __restrict value = samples.value;
    double* __restrict first = samples.first;
    double* __restrict second = samples.second;
    double* __restrict third = samples.third;
    for (int i = 0; i < count; ++i) {
        const Orders orders = function(x[i]);
        value[i] = orders.value;
        first[i] = orders.first;
        second[i] = orders.second;
        third[i] = orders.third;
    }
}

}  // namespace

const Handwritten kPolynomial = {polynomialValue, ordersAt<polynomial>, sample<polynomial>};
const Handwritten kQuarterCosine = {quarterCosineValue, ordersAt<quarterCosine>, sample<quarterCosine>};
const Handwritten kGeneral = {generalValue, ordersAt<general>, sample<general>};

}  // namespace bench
