// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <utility>

#include "mfcurves/engine/program.h"

namespace mf::engine {

/// The constants of a stage while a step is put together, neutral until they are set.
struct OpenStage {
    StageConstants constants;
    bool isNone = true;

    void addFirst(double number) { set(constants.first, number); }
    void divide(double number) { set(constants.divisor, number); }
    void multiply(double number) { set(constants.factor, number); }
    void addLast(double number) { set(constants.last, number); }

    /// What is only added may be added last.
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

    /// For an angle one factor does for the division and the factor after it, which
    /// have as many roundings. A law's angle must keep its bits at the end of the
    /// stretch, where its x has come to be the divisor.
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

}  // namespace mf::engine
