#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "mfcurves/engine/compiledText.h"
#include "mfcurves/engine/evaluation.h"
#include "mfcurves/interfaces/ICalculator.h"

namespace mf::engine {

/// What a calculator and everything differentiated from it share: the registers,
/// and how many orders they hold for which x.
///
/// The orders of one x build on each other, so whichever calculator is asked
/// first, each section runs once. Whoever asked for the derivatives at the last x
/// will want them at the next, so a new x is computed up to the order that was
/// asked for last at the one before.
class Family {
public:
    explicit Family(std::shared_ptr<CompiledText> text);

    /// Makes room for an order; false when the derivative outgrows the limits.
    bool addOrder(int order);

    std::size_t parameterCount() const { return parameterCount_; }
    /// The register that holds the value of an order.
    std::uint32_t resultOf(int order) const { return sections_[order]->result; }

    /// Sets `value` to that of an order at x, whose register is `result`; false, with
    /// `value` untouched, where it is not finite, and for several parameters. Without
    /// parameters any x will do.
    ///
    /// Points are told apart by their bits: a division tells 0.0 from -0.0.
    bool evaluate(double x, int order, std::uint32_t result, double& value)
    {
        double* registers = registers_.data();
        if (isAt(x) && order <= held_) {
            asked_ = order;
            return answerWith(registers[result], value);
        }
        if (order != held_) {
            if (order > held_ || asked_ != held_) [[unlikely]]
                return iEvaluateAnew(x, order, result, value);
            asked_ = order;
        }
        registers[0] = x;
        return runWhole_(x, *firstStep_, registers, registers[result], value);
    }
    /// The same for as many numbers as there are parameters, of which there are several.
    bool evaluate(const MMEP_Data* numbers, std::uint32_t result, double& value);

    /// Sets values[k] to the order k at x, from 0 up to `order`, and returns how many there
    /// are before the first that is not finite or that outgrows the limits.
    int evaluateOrders(double x, int order, double* values);

    /// Whether computeBlock may be asked: with one parameter, and few enough
    /// registers that a block of them stays close to the processor.
    bool takesBlocks() const;

    /// The values of an order at `count` points, at most kBlock, bit for bit those of
    /// single points. They stand until other points are asked for.
    const double* computeBlock(const double* x, std::size_t count, int order);

    void keep() { users_.fetch_add(1, std::memory_order_relaxed); }
    void release();

private:
    ~Family() = default;
    bool isAt(double x) const
    {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(registers_[0]);
    }
    [[gnu::noinline]] bool iEvaluateAnew(double x, int order, std::uint32_t result, double& value);
    void iMoveBlockTo(const double* x, std::size_t count, int orders);

    std::vector<double> registers_;           // the first holds the x that the others are for
    int asked_ = 0;                           // the order asked for last at that x
    int held_ = -1;                           // the highest order computed at each x; -1 without x
    RunProgram runWhole_ = nullptr;           // computes the orders up to it
    const Instruction* firstStep_ = nullptr;  // from this step on
    std::vector<const Section*> sections_;
    const std::size_t parameterCount_;

    std::vector<double> block_;  // the same for a block of points
    std::size_t blockPoints_ = 0;
    int blockDone_ = 0;
    int blockAsked_ = 0;
    int blockFilled_ = 0;  // orders whose constants stand in the block

    std::shared_ptr<CompiledText> text_;
    std::atomic<int> users_{0};
};

/// The engine's own kind of calculator: one order of a family.
class Calculator final : public ICalculator {
public:
    Calculator(Family& family, int order) : family_(family), order_(order), result_(family.resultOf(order))
    {
        family_.keep();
    }

    ICalculator* differentiate(int unused) override;
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override;
    bool Release() override;

    Family& family() const { return family_; }
    int order() const { return order_; }

private:
    ~Calculator() override { family_.release(); }
    [[gnu::noinline]] bool iEvaluateOther(int count, const MMEP_Data* arguments, MMEP_Data& result);

    Family& family_;
    const int order_;
    const std::uint32_t result_;  // the register of its value
};

}  // namespace mf::engine
