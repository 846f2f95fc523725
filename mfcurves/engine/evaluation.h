#pragma once

#include <cmath>
#include <cstddef>
#include <span>

#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {

/// The function that runs a step on one point: register r is registers[r].
Instruction::Run runFor(const Instruction& step);

/// Sets `answer` to a value; false, with `answer` untouched, if it is not finite.
[[gnu::always_inline]] inline bool answerWith(double value, double& answer)
{
    // What is not finite has no difference from itself.
    if (std::isnan(value - value)) [[unlikely]]
        return false;
    answer = value;
    return true;
}

/// The function that runs a program, of at least one step, for the number in a
/// register. Of the registers of a program of one step it may fill that one alone.
RunProgram runForProgram(std::span<const Instruction> code, std::uint32_t result);

/// Runs steps on `count` points, at most kBlock: register r of point i is
/// registers[r * kBlock + i]. The results have the bits that `run` gives. What
/// stands behind the last point of a register may be overwritten.
void runBlock(std::span<const Instruction> code, double* registers, std::size_t count);

}  // namespace mf::engine
