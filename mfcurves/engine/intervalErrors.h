// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/interval.h"

/// How far computed values of the functions are from the exact ones.
namespace mf::engine::intervals {

/// y = f(x) over an interval, and an argument that may be wrong by `error`: by how
/// much the computed value may differ from the exact value at the exact argument.
double errorOf(FunctionId function, const Interval& x, const Interval& y, double error);
double errorOf(FunctionId function, const Interval& a, const Interval& b, const Interval& y, double errorOfA,
               double errorOfB);

}  // namespace mf::engine::intervals
