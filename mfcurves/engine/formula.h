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

namespace mf::engine {

/// A text whose value and first derivatives are compiled for good.
///
/// Threads: constant. Any number of threads may evaluate it, each with registers of
/// its own.
/// Registers: memory that one evaluation needs. What it holds before does not matter,
/// and what it holds after has no meaning, so different formulas may use the same.
class Formula {
public:
    using Result = std::variant<std::shared_ptr<const Formula>, ParseError>;

    /// Compiles a text under the rules of MotionMEParser::parse, with the orders 0 (the
    /// value) to `highestOrder`. With `variableName` the text may use that name alone;
    /// without one its free names are its parameters, and with two or more of them it
    /// has no value.
    static Result compile(std::wstring_view text, const std::optional<std::wstring_view>& variableName,
                          int highestOrder = 3);

    /// How many names the text has for its argument, at most 1 with a variable name.
    std::size_t parameterCount() const;

    /// The doubles that one point needs.
    std::size_t registerCount() const;

    /// Computes values[k], the derivative of order k at x, for k = 0 to `order`. NaN where
    /// it is not finite, where the derivative outgrew the limits, above the highest order
    /// compiled, and for two or more parameters.
    void evaluate(double x, int order, double* registers, double* values) const noexcept;

    /// The same at `count` points, at most kBlock, with the very same bits. `registers` are
    /// registerCount() * kBlock doubles; values[k] has room for `count` doubles, and none
    /// of them overlaps `x`.
    void evaluateBlock(const double* x, std::size_t count, int order, double* registers,
                       double* const* values) const noexcept;

    /// Whether some operation chooses between branches or jumps, so that the limits from
    /// the two sides of an x may differ.
    bool hasBranches() const { return hasBranches_; }

    /// The same as `evaluate` for a formula with branches, as a limit from one side: where an
    /// operation is at the edge of a branch at x, it takes the branch that it is on at `beside`,
    /// a point near x on that side. False when some operation is at an edge there as well, so
    /// that its branch at x decided. `registers` are 2 * registerCount() doubles.
    bool evaluateBeside(double x, double beside, int order, double* registers, double* values) const noexcept;

    /// The program of all orders.
    const Program& program() const { return *programs_.all; }

    /// Bytes that the formula holds.
    std::size_t bytes() const;

private:
    Programs programs_;
    RunProgram runValue_ = nullptr;  // the quickest for each program
    RunOrders runAll_ = nullptr;
    int highestOrder_ = -1;  // that has values, -1 where none has
    bool hasBranches_ = false;
};

}  // namespace mf::engine
