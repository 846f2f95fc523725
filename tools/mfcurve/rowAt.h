// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// The row of a curve at x, seen from that side, or the last of its points up to x, both counted from 1; 0
/// for an expression.
int rowAt(const mf::Curve& curve, double x, mf::Side side);

}  // namespace mfcurve
