// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <utility>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {

/// The constants of a stage while a step is built, neutral until they are set.
struct OpenStage {
    StageConstants constants;
    bool isNone = true;

    void addFirst(double number) { set(constants.first, number); }
    void divide(double number) { set(constants.divisor, number); }
    void multiply(double number) { set(constants.factor, number); }
    void addLast(double number) { set(constants.last, number); }

    /// The shortest form for the constants. A stage that only adds a number adds it last.
    Stage form()
    {
        auto& [first, divisor, factor, last] = constants;
        if (isNone)
            return Stage::None;
        if (!differ(divisor, 1.0) && !differ(factor, 1.0) && !differ(last, kNeutralAddend))
            std::swap(first, last);
        if (differ(divisor, 1.0))
            return Stage::General;
        return differ(first, kNeutralAddend) ? Stage::Shifted : Stage::Linear;
    }

    /// For an angle, joins the division and the factor after it into one factor, which
    /// rounds as often. It does so only if a law's angle keeps its bits at the end of the
    /// segment, where the shifted x equals the divisor.
    void joinFactors()
    {
        auto& [first, divisor, factor, last] = constants;
        const double joined = factor / divisor;
        if (differ(divisor, 1.0) && differ(factor, 1.0) && divisor * joined == factor) {
            divisor = 1.0;
            factor = joined;
        }
    }

private:
    static bool differ(double a, double b)
    {
        return std::bit_cast<std::uint64_t>(a) != std::bit_cast<std::uint64_t>(b);
    }
    void set(double& constant, double number)
    {
        constant = number;
        isNone = false;
    }
};

/// A step that is not written yet: its place in the program is open. The registers are those
/// of the step.
struct PendingStep {
    NodeId node;  ///< whose operation it is
    Code code = Code::Move;
    FunctionId function{};
    std::uint32_t moved = 0;
    std::uint32_t value = 0;
    std::uint32_t target = 0;
    OpenStage input;
    OpenStage output;
};

}  // namespace mf::engine
