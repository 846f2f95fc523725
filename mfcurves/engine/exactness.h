// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

/// Which operations on two numbers round nothing away.
namespace mf::engine {

/// A factor by which every product is exact, as long as nothing over- or
/// underflows: plus or minus a power of two.
inline bool isPowerOfTwo(double number)
{
    int exponent = 0;
    return std::isnormal(number) && std::fabs(std::frexp(number, &exponent)) == 0.5;
}

/// Of numbers whose product is normal.
inline bool isExactProduct(double a, double b)
{
    return std::fma(a, b, -(a * b)) == 0.0;
}

inline bool isExactSum(double a, double b)
{
    const double s = a + b;
    const double bPart = s - a;
    return std::isfinite(s) && (a - (s - bPart)) + (b - bPart) == 0.0;
}

}  // namespace mf::engine
