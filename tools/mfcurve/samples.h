// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

constexpr int kOrders = 4;  ///< the value and three derivatives

/// The derivative of order k times rate to the power of k.
mf::CurveValues atRate(mf::CurveValues values, double rate);

/// True when the value and its first `orders` - 1 derivatives are finite.
bool isFinite(const mf::CurveValues& values, int orders);

}  // namespace mfcurve
