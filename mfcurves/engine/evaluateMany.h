// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

class ICalculator;

namespace mf::engine {

/// Evaluates a calculator of one argument at `count` points: y[i] at x[i], with
/// the very bits that ICalculator::Evaluate gives.
///
/// Answers how many points were done before the first failure; what y holds from
/// there on means nothing. The engine's own calculators work on many points at a
/// time, and orders of one family that are asked for at the same points share
/// their work. Any other calculator is asked point by point.
std::size_t evaluateMany(ICalculator& calculator, const double* x, double* y, std::size_t count);

/// Whether this is one of the engine's own calculators, whose values depend on nothing but
/// the text and the arguments.
bool isOwnCalculator(const ICalculator& calculator);

/// The values of the orders 0 to `order` at x of such a calculator of order 0. Returns how
/// many there are before the first that is not finite or that cannot be derived; the rest of
/// `values` stays as it was.
int evaluateOrders(ICalculator& calculator, double x, int order, double* values);

}  // namespace mf::engine
