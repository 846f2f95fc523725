// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

class ICalculator;

namespace mf::engine {

/// Evaluates a calculator of one argument at `count` points: y[i] at x[i], bit for
/// bit as ICalculator::Evaluate does.
///
/// Returns the number of points before the first failure; from there on the content
/// of y has no meaning. The engine's own calculators work on many points at a time,
/// and orders of one family that are evaluated at the same points share their work.
/// Any other calculator is called point by point.
std::size_t evaluateMany(ICalculator& calculator, const double* x, double* y, std::size_t count);

/// Whether this is one of the engine's own calculators, whose values depend on nothing but
/// the text and the arguments.
bool isOwnCalculator(const ICalculator& calculator);

/// Sets values[k] to the order k at x, for k = 0 to `order`, of one of the engine's own
/// calculators, which has order 0. Returns the number of orders before the first that is not
/// finite or that exceeds the limits; the rest of values[0] to values[order] has no meaning.
int evaluateOrders(ICalculator& calculator, double x, int order, double* values);

}  // namespace mf::engine
