#pragma once

#include <cstddef>
#include <span>

#include "mfcurves/engine/program.h"

namespace mf::engine {

/// Points that are computed side by side. A hundred, the usual number of samples
/// of a curve, fit in.
constexpr std::size_t kBlock = 128;

/// The function that runs a step on one point: register r is registers[r].
Instruction::Run runFor(const Instruction& step);

/// The function that runs all of these steps, at least one, on one point, given the
/// first.
Instruction::Run runForAll(std::span<const Instruction> code);

/// Runs steps on `count` points, at most kBlock: register r of point i is
/// registers[r * kBlock + i]. The results have the bits that `run` gives. What
/// stands behind the last point of a register may be overwritten.
void runBlock(std::span<const Instruction> code, double* registers, std::size_t count);

}  // namespace mf::engine
