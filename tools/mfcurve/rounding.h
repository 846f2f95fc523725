// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/Problem.h"

namespace mfcurve {

/// The part of its span by which the digits of a law or a document may change a curve.
constexpr double kMostLoss = 1e-3;

/// One problem for each row whose numbers change by more than that in its law, which has six decimals.
std::vector<mf::Problem> roundingProblems(const mf::CurveDefinition& definition);

}  // namespace mfcurve
