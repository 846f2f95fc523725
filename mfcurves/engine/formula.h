#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/parseError.h"

namespace mf::engine {

class CompiledText;
struct Section;

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
    std::size_t parameterCount() const { return parameterCount_; }

    /// The doubles that one point needs.
    std::size_t registerCount() const { return registerCount_; }

    /// Computes values[k], the derivative of order k at x, for k = 0 to `order`. NaN where
    /// it is not finite, where the derivative outgrew the limits, above the highest order
    /// compiled, and for two or more parameters.
    void evaluate(double x, int order, double* registers, double* values) const noexcept;

    /// The same at `count` points, at most kBlock, with the very same bits. `registers` are
    /// registerCount() * kBlock doubles; values[k] has room for `count` doubles.
    void evaluateBlock(const double* x, std::size_t count, int order, double* registers,
                       double* const* values) const noexcept;

    /// Bytes that the formula holds.
    std::size_t bytes() const;

private:
    std::shared_ptr<CompiledText> text_;
    std::vector<const Section*> sections_;  // of the orders that have values
    std::size_t parameterCount_ = 0;
    std::size_t registerCount_ = 0;
};

}  // namespace mf::engine
