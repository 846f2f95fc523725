// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// The row of a table that a curve has at x, seen from that side, from 1; 0 for other curves.
int rowAt(const mf::Curve& curve, double x, mf::Side side);

}  // namespace mfcurve
