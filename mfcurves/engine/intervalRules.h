// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/interval.h"

/// The rules of the rows of the function table: all values for
/// arguments of the intervals, as computed (a function of the standard library
/// errs by less than two units in the last place, a few of them by four) and exact.
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

/// u^exponent, by multiplications or by `pow`.
Interval wholePower(const Interval& u, unsigned exponent);

}  // namespace mf::engine::intervals
