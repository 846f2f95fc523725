// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/program.h"

/// The operations that choose between branches or jump, and their limits from one side of an
/// x where they do so. Such an x is an edge of the operation.
namespace mf::engine {

/// Whether the limits of a step from the two sides of an x can differ.
bool mayBranch(const Step& step);

/// Call this after a step has run on the registers of an x and on those of a nearby point.
/// If x is at an edge of the step, its value is replaced by the value at x of the branch that
/// the nearby point is on. Returns false if the nearby point is at an edge of the step as well.
bool takeBranchBeside(const Step& step, double* registers, const double* beside);

}  // namespace mf::engine
