// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/interval.h"

/// How far computed values of the functions are from the exact ones.
namespace mf::engine::intervals {

/// Bounds the difference between a computed value of a function and the exact value at
/// the exact argument. x contains the argument and y = f(x) the value; the computed
/// argument differs from the exact one by at most `error`. Infinite without a bound.
double errorOf(FunctionId function, const Interval& x, const Interval& y, double error);
/// The same for two arguments.
double errorOf(FunctionId function, const Interval& a, const Interval& b, const Interval& y, double errorOfA,
               double errorOfB);

}  // namespace mf::engine::intervals
