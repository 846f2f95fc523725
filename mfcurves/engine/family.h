// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "mfcurves/engine/compiledText.h"
#include "mfcurves/engine/evaluation.h"
#include "mfcurves/interfaces/MMEP_Data.h"

namespace mf::engine {

/// What a calculator and everything differentiated from it share: the registers,
/// and which orders they hold for which x.
///
/// One program computes all orders of one x, so whichever calculator is asked first, the
/// others find their values. A program of the value alone is shorter: whoever asked for
/// derivatives at the last x will want them at the next, and who did not will not.
class Family {
public:
    explicit Family(std::shared_ptr<CompiledText> text);

    /// Makes room for an order; false when the derivative outgrows the limits.
    bool addOrder(int order);

    std::size_t parameterCount() const { return parameterCount_; }
    /// The register that holds the value of an order.
    std::uint32_t resultOf(int order) const { return programs_.upTo(order).result(order); }
    const Programs& programs() const { return programs_; }

    /// Sets `value` to that of an order at x, whose register is `result`; false, with
    /// `value` untouched, where it is not finite, and for several parameters. Without
    /// parameters any x will do.
    ///
    /// Three cases, the usual ones first:
    ///   the registers hold this order at this x           it is in its register
    ///   x is new, and the orders wanted are the same       the steps run again
    ///   x is new, or its higher orders are, and others     other steps are chosen, and run
    ///   are wanted; or there is not exactly one parameter
    /// Points are told apart by their bits: a division distinguishes 0.0 from -0.0.
    bool evaluate(double x, int order, std::uint32_t result, double& value)
    {
        double* const registers = registers_.data();
        if (order <= held_ && isAt(x)) {
            asked_ = order;
            return isFiniteInto(registers[result], value);
        }
        if (order != held_) {
            if (order > held_ || asked_ != held_) [[unlikely]]
                return iEvaluateAnew(x, order, result, value);
            asked_ = order;
        }
        registers[0] = x;
        return run_(x, steps_, registers, result, value);
    }
    /// The same for as many numbers as there are parameters, of which there are several.
    bool evaluate(const MMEP_Data* numbers, std::uint32_t result, double& value);

    /// Sets values[k] to the order k at x, from 0 up to `order`, and returns how many there
    /// are before the first that is not finite or that outgrows the limits.
    int evaluateOrders(double x, int order, double* values);

private:
    bool isAt(double x) const
    {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(registers_[0]);
    }
    [[gnu::noinline]] bool iEvaluateAnew(double x, int order, std::uint32_t result, double& value);

    std::vector<double> registers_;  // the first holds the x that the others are for
    int asked_ = 0;                  // the order asked for last at that x
    int held_ = -1;                  // the highest order computed at each x; -1 without x
    std::span<const Step> steps_;    // that compute the orders up to it
    RunProgram run_ = nullptr;       // runs them
    Programs programs_;
    const std::size_t parameterCount_;
    const std::shared_ptr<CompiledText> text_;
};

}  // namespace mf::engine
