// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/program.h"

/// The operations that choose between branches or jump, and what they are on one side of an
/// x that is at such an edge.
namespace mf::engine {

/// Whether the limits of a step from two sides can differ.
bool mayBranch(const Step& step);

/// To be called after a step has run on the registers of an x and on those of a point beside
/// it. Where the step is at an edge, gives it the value that it has at x on the branch of that
/// point. False when the point is at an edge of the step, too.
bool takeBranchBeside(const Step& step, double* registers, const double* beside);

}  // namespace mf::engine
