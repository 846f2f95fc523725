// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>

#include "mfcurves/engine/evaluation.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/parseError.h"
#include "mfcurves/engine/program.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {

/// A compiled text that never changes: its value and first derivatives.
///
/// Threads: any number of threads may evaluate it, each with registers of its own.
/// Registers: scratch memory for one evaluation. Its content has no meaning before or
/// after, so different formulas may use the same registers.
class Formula {
public:
    using Result = std::variant<std::shared_ptr<const Formula>, ParseError>;

    /// Compiles a text under the rules of MotionMEParser::parse, with the orders 0 (the
    /// value) to `highestOrder`. With `variableName` the text may use that name alone;
    /// without one its free names are its parameters, and with two or more of them it
    /// has no value.
    static Result compile(std::wstring_view text, const std::optional<std::wstring_view>& variableName,
                          int highestOrder = 3);

    /// Number of parameters of the text, at most 1 with a variable name.
    std::size_t parameterCount() const;

    /// Number of doubles that one point needs as registers.
    std::size_t registerCount() const { return registerCount_; }

    /// Computes values[k], the derivative of order k at x, for k = 0 to `order`. NaN where
    /// it is not finite, where the derivative exceeds the limits, above the highest order
    /// compiled, and for two or more parameters.
    void evaluate(double x, int order, double* registers, double* values) const noexcept
    {
        if (order == highestOrder_ && order > 0) [[likely]]
            return runAll_(*programs_.all, x, registers, values);
        iEvaluateSome(x, order, registers, values);
    }

    /// The value alone: what `evaluate` computes as order 0.
    double value(double x, double* registers) const noexcept
    {
        double value = kNaN;
        if (highestOrder_ >= 0) {
            const Program& program = *programs_.value;
            registers[0] = x;
            fillConstants(program, registers);
            runValue_(x, program.steps(0), registers, program.result(0), value);
        }
        return value;
    }

    /// The same as `evaluate` at `count` points, at most kBlock, bit for bit. `registers` are
    /// registerCount() * kBlock doubles. values[k] has room for `count` doubles and does
    /// not overlap `x`.
    void evaluateBlock(const double* x, std::size_t count, int order, double* registers,
                       double* const* values) const noexcept;

    /// Whether an operation chooses between branches or jumps, so that the limits from
    /// the two sides of an x may differ.
    bool hasBranches() const { return hasBranches_; }

    /// The same as `evaluate`, but as a limit from one side. `beside` is a point near x on
    /// that side: an operation that is at the edge of a branch at x takes the branch that it
    /// is on at `beside`. Returns false if an operation is at an edge at `beside` as well, so
    /// that its side is not decided. `registers` are 2 * registerCount() doubles.
    bool evaluateBeside(double x, double beside, int order, double* registers, double* values) const noexcept;

    /// The program of all orders.
    const Program& program() const { return *programs_.all; }

private:
    void iEvaluateSome(double x, int order, double* registers, double* values) const noexcept;

    Programs programs_;
    RunProgram runValue_ = nullptr;  // the fastest function for each program
    RunOrders runAll_ = nullptr;
    std::size_t registerCount_ = 1;  // register 0 holds x, even if the text does not use it
    int highestOrder_ = -1;          // with values; -1 if no order has them
    bool hasBranches_ = false;
};

}  // namespace mf::engine
