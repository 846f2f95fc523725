// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/interval.h"

/// The interval rules of the function table. For all arguments in the given intervals,
/// the result contains the exact and the computed value. Functions of the standard
/// library are taken to err by less than two units in the last place, hyperbolic
/// functions and log10 by less than four, cbrt by less than five.
namespace mf::engine::intervals {

Interval ofSin(const Interval& x);
Interval ofCos(const Interval& x);
Interval ofTan(const Interval& x);
Interval ofAsin(const Interval& x);
Interval ofAcos(const Interval& x);
Interval ofAtan(const Interval& x);
Interval ofSinh(const Interval& x);
Interval ofCosh(const Interval& x);
Interval ofTanh(const Interval& x);
Interval ofSech(const Interval& x);
Interval ofExp(const Interval& x);
Interval ofLog(const Interval& x);
Interval ofLog10(const Interval& x);
Interval ofSqrt(const Interval& x);
Interval ofCbrt(const Interval& x);
Interval ofAbs(const Interval& x);
Interval ofSign(const Interval& x);
Interval ofInt(const Interval& x);
Interval ofNint(const Interval& x);
Interval ofFloor(const Interval& x);
Interval ofCeil(const Interval& x);

Interval ofAtan2(const Interval& y, const Interval& x);
Interval ofHypot(const Interval& a, const Interval& b);
Interval ofSignOf(const Interval& a, const Interval& b);
Interval ofMin(const Interval& a, const Interval& b);
Interval ofMax(const Interval& a, const Interval& b);
Interval ofMod(const Interval& a, const Interval& b);
Interval ofDim(const Interval& a, const Interval& b);
Interval ofPower(const Interval& a, const Interval& b);

/// u^exponent, whether multiplications compute it or `pow`.
Interval wholePower(const Interval& u, unsigned exponent);

}  // namespace mf::engine::intervals
