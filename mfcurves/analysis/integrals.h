// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "mfcurves/analysis/boxes.h"
#include "mfcurves/curve/Curve.h"

namespace mf::analysis {

constexpr int kOrders = 4;

/// Integrals of one order and of its square, both divided by powers of a scale that keeps
/// the square from overflowing.
struct Integrals {
    double value = 0.0;
    double square = 0.0;
};
using AllIntegrals = std::array<Integrals, kOrders>;

/// The integrals of a smooth part, by the Gauss-Legendre formula with 10 points, which is exact
/// for polynomials up to degree 9 and their squares.
///
/// `cuts`: see StretchRanges. If the sum over the intervals between them differs from the formula
/// for the whole, each interval is halved until its halves agree with it.
/// `noise`: the rounding error of each order, divided by its scale. Differences up to its square
/// do not count.
/// `cost`: of one x. Once `budget` is spent, intervals are no longer halved.
AllIntegrals integrate(const Curve& curve, const std::vector<double>& cuts,
                       const std::array<double, kOrders>& scales, const std::array<double, kOrders>& noise,
                       std::size_t cost, Budget& budget);

}  // namespace mf::analysis
