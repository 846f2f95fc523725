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
/// One program computes all orders at one x, so the first calculator that is evaluated
/// there does the work for the others. The program of the value alone is shorter. It runs
/// when no derivative was requested at the previous x, because callers mostly request the
/// same orders at each x.
class Family {
public:
    explicit Family(std::shared_ptr<CompiledText> text);

    /// Compiles an order and makes room for it; false if the derivative exceeds the limits.
    bool addOrder(int order);

    std::size_t parameterCount() const { return parameterCount_; }
    /// The register that holds the value of an order.
    std::uint32_t resultOf(int order) const { return programs_.upTo(order).result(order); }
    const Programs& programs() const { return programs_; }

    /// Sets `value` to that of an order at x; `result` is resultOf(order). Returns false,
    /// with `value` unchanged, where it is not finite, and for several parameters. Without
    /// parameters x has no influence.
    ///
    /// Three cases, the usual ones first:
    ///   the registers hold this order at this x            the value is read
    ///   x is new, and the wanted orders are the same       the same steps run again
    ///   any other: more or fewer orders are wanted, or     the steps are chosen anew and run
    ///   there is not exactly one parameter
    /// Points are compared by their bits: a division distinguishes 0.0 from -0.0.
    bool evaluate(double x, int order, std::uint32_t result, double& value)
    {
        double* const registers = registers_.data();
        if (order <= computedOrder_ && isAt(x)) {
            requestedOrder_ = order;
            return isFiniteInto(registers[result], value);
        }
        if (order != computedOrder_) {
            if (order > computedOrder_ || requestedOrder_ != computedOrder_) [[unlikely]]
                return iEvaluateAnew(x, order, result, value);
            requestedOrder_ = order;
        }
        registers[0] = x;
        return run_(x, steps_, registers, result, value);
    }
    /// The same for several parameters; `numbers` has parameterCount() elements.
    bool evaluate(const MMEP_Data* numbers, std::uint32_t result, double& value);

    /// Sets values[k] to the order k at x, for k = 0 to `order`. Returns the number of orders
    /// before the first that is not finite or that exceeds the limits; the rest of `values` has
    /// no meaning.
    int evaluateOrders(double x, int order, double* values);

private:
    bool isAt(double x) const
    {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(registers_[0]);
    }
    [[gnu::noinline]] bool iEvaluateAnew(double x, int order, std::uint32_t result, double& value);

    std::vector<double> registers_;  // register 0 holds the x of the others
    int requestedOrder_ = 0;         // the order that was requested last at that x
    int computedOrder_ = -1;         // the highest order computed at each x; -1 without x
    std::span<const Step> steps_;    // compute the orders up to computedOrder_
    RunProgram run_ = nullptr;       // runs steps_
    Programs programs_;
    const std::size_t parameterCount_;
    const std::shared_ptr<CompiledText> text_;
};

}  // namespace mf::engine
