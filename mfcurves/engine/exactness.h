// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

/// Whether operations on numbers are exact.
namespace mf::engine {

/// Whether `number` is plus or minus a power of two. A product with it is exact
/// unless it over- or underflows.
inline bool isPowerOfTwo(double number)
{
    constexpr std::uint64_t kFraction = (std::uint64_t{1} << 52) - 1;
    return (std::bit_cast<std::uint64_t>(number) & kFraction) == 0 && std::isnormal(number);
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
