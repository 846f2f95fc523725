// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

/// Whether operations on numbers are exact.
namespace mf::engine {

/// Whether `number` is plus or minus a power of two. A product with it is exact
/// unless it over- or underflows.
inline bool isPowerOfTwo(double number)
{
    int exponent = 0;
    return std::isnormal(number) && std::fabs(std::frexp(number, &exponent)) == 0.5;
}

/// Whether a * b, which is a normal number, is exact.
inline bool isExactProduct(double a, double b)
{
    return std::fma(a, b, -(a * b)) == 0.0;
}

/// Whether a + b is finite and exact; Knuth, The Art of Computer Programming 2, 4.2.2.
inline bool isExactSum(double a, double b)
{
    const double s = a + b;
    const double bPart = s - a;
    return std::isfinite(s) && (a - (s - bPart)) + (b - bPart) == 0.0;
}

}  // namespace mf::engine
