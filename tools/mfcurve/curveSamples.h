// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/steps.h"

namespace mfcurve {

/// Some samples of a curve, ascending in x.
struct SampleBlock {
    std::vector<double> x;
    std::vector<mf::CurveValues> values;  ///< one for each x
};

/// Evaluates a curve at all places and calls `take` with each block in turn. The derivative of order k is
/// multiplied by the k-th power of `rate`. Shows progress under the name of the command. Returns the exit
/// status: if a value is not finite, warns and returns kFailed.
int sampleCurve(const Input& input, const Steps& steps, double rate, const char* command,
                const std::function<void(const SampleBlock&)>& take);

}  // namespace mfcurve
