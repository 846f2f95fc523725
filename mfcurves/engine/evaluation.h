#pragma once

#include "mfcurves/engine/program.h"

#include <cstddef>

namespace mf::engine
{

/// Points that are computed side by side. A hundred, the usual number of samples
/// of a curve, fit in.
constexpr std::size_t kBlock = 128;

/// Runs a section on one point: register r is registers[r].
void run(const Section& section, double* registers);

/// Runs a section on `count` points, at most kBlock: register r of point i is
/// registers[r * kBlock + i]. The results have the bits that `run` gives.
void runBlock(const Section& section, double* registers, std::size_t count);

}  // namespace mf::engine
