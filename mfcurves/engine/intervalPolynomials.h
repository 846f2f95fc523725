// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "mfcurves/engine/interval.h"

/// Ranges of polynomials, and how far computed values are from the exact ones. `c` holds the
/// coefficients in ascending order, at least one.
namespace mf::engine::intervals {

/// The rounding error of one operation, relative to its result.
constexpr double kHalfUlp = 0x1p-53;

/// Contains the exact and the computed value of (c[0] + c[1] u + ...) u^lowest for each u.
Interval polynomialRange(const Interval& u, unsigned lowest, std::span<const double> c);
/// Bounds the difference between a computed value of that polynomial and the exact value at
/// the exact u. The computed u differs from the exact one by at most `error`.
double errorOfPolynomial(const Interval& u, unsigned lowest, std::span<const double> c, double error);

/// The same for the Chebyshev series c[0] + c[1] T1(h) + c[2] T2(h) + ...
Interval chebyshevRange(const Interval& h, std::span<const double> c);
double errorOfChebyshev(const Interval& h, std::span<const double> c, double error);

}  // namespace mf::engine::intervals
