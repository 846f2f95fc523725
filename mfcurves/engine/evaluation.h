// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <memory>
#include <span>

#include "mfcurves/engine/program.h"

namespace mf::engine {

/// The program of a draft, ready to run.
std::shared_ptr<const Program> programOf(Draft draft);

/// Runs steps at the point x, which is also in register 0, and sets `value` to the content
/// of register `result`. Returns false, with `value` unchanged, if that is not finite. Afterwards only
/// the registers of the orders that the steps compute have a meaning.
using RunProgram = bool (*)(double x, std::span<const Step> steps, double* registers, std::uint32_t result,
                            double& value);

/// The fastest function that runs the steps of a program that compute the orders up to `highest`.
RunProgram runFor(const Program& program, int highest);

/// Sets values[k] to the order k at x, for all orders of a program with at most one parameter;
/// NaN where it is not finite.
using RunOrders = void (*)(const Program& program, double x, double* registers, double* values);

/// The fastest function that runs this program.
RunOrders ordersFor(const Program& program);

/// Runs steps at one point. The loop is unrolled by four because the processor predicts
/// the target of each call instruction separately.
[[gnu::always_inline]] inline void run(std::span<const Step> steps, double* registers)
{
    const Step* step = steps.data();
    const Step* const end = step + steps.size();
    for (; end - step >= 4; step += 4) {
        step[0].run(step[0], registers);
        step[1].run(step[1], registers);
        step[2].run(step[2], registers);
        step[3].run(step[3], registers);
    }
    for (; step != end; ++step)
        step->run(*step, registers);
}

/// Stores the constants of a program in the registers of one point.
inline void fillConstants(const Program& program, double* registers)
{
    for (const auto& [number, target] : program.constants())
        registers[target] = number;
}

/// Returns 0 for a finite value, else NaN.
[[gnu::always_inline]] inline double zeroIfFinite(double value)
{
    return value - value;
}

/// Replaces each of values[0] to values[highest] that is not finite by NaN.
[[gnu::cold]] void markBad(double* values, int highest);

/// The number of values before the first that is not finite.
[[gnu::cold]] int countFinite(const double* values, int highest);

/// Sets values[k] to the order k, up to `highest`, from registers that a program has computed. Returns
/// whether all are finite.
[[gnu::always_inline]] inline bool copyOrders(const Program& program, int highest, const double* registers,
                                              double* values)
{
    double zeros = 0.0;
    for (int k = 0; k <= highest; ++k) {
        const double value = registers[program.result(k)];
        zeros += zeroIfFinite(value);
        values[k] = value;
    }
    return zeros == 0.0;
}

/// The same, with NaN in place of what is not finite.
[[gnu::always_inline]] inline void takeValues(const Program& program, int highest, const double* registers,
                                              double* values)
{
    if (!copyOrders(program, highest, registers, values)) [[unlikely]]
        markBad(values, highest);
}

/// Sets `result` to a value. Returns false, with `result` unchanged, if it is not finite.
[[gnu::always_inline]] inline bool isFiniteInto(double value, double& result)
{
    if (std::isnan(zeroIfFinite(value))) [[unlikely]]
        return false;
    result = value;
    return true;
}

}  // namespace mf::engine
