// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/Problem.h"

namespace mfcurve {

/// What a curve may lose of its span to the digits of a law or a document.
constexpr double kMostLoss = 1e-3;

/// The rows whose numbers their laws, which write them with six decimals, make others by more than that.
std::vector<mf::Problem> roundingProblems(const mf::CurveDefinition& definition);

}  // namespace mfcurve
