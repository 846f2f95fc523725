#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
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
/// will want them at the next, so a new x is computed up to the highest order
/// that was asked for at the one before.
class Family {
public:
    explicit Family(std::shared_ptr<CompiledText> text);

    /// Makes room for an order; false when the derivative outgrows the limits.
    bool addOrder(std::uint32_t order);

    std::size_t parameterCount() const { return parameterCount_; }
    /// The register that holds the value of an order.
    std::uint32_t resultOf(std::uint32_t order) const { return sections_[order]->result; }

    /// Whether the registers hold an order at x, which counts as asking for it.
    /// Points are told apart by their bits: atan2 and divisions tell 0.0 from -0.0.
    bool holds(double x, std::uint32_t order)
    {
        if (std::bit_cast<std::uint64_t>(x) != xBits_ || order >= planned_)
            return false;
        if (order >= asked_)
            asked_ = order + 1;
        return true;
    }

    /// Value of an order at x, which the registers do not hold, for a family of one
    /// parameter.
    double computed(double x, std::uint32_t order)
    {
        if (asked_ != planned_ || order >= planned_) [[unlikely]]
            return iComputedAnew(x, order);
        registers_[0] = x;
        xBits_ = std::bit_cast<std::uint64_t>(x);
        asked_ = order + 1;
        // A law of motion is one step, which needs no loop.
        if (planFirst_ == planLast_)
            return planLast_->run(*planLast_, registers_.data());
        return iRunPlan(order);
    }
    /// Value of an order of a family without parameters.
    double computed(std::uint32_t order);
    /// Value of a family of several parameters: `numbers` has one for each.
    double computed(const MMEP_Data* numbers);

    double operator[](std::uint32_t registerNumber) const { return registers_[registerNumber]; }

    /// Whether computeBlock may be asked: with one parameter, and few enough
    /// registers that a block of them stays close to the processor.
    bool takesBlocks() const;

    /// Values of an order at `count` points, at most kBlock; bit for bit those of
    /// single points.
    void computeBlock(const double* x, double* y, std::size_t count, std::uint32_t order);

    void keep() { users_.fetch_add(1, std::memory_order_relaxed); }
    void release();

private:
    ~Family() = default;
    [[gnu::noinline]] double iComputedAnew(double x, std::uint32_t order);
    [[gnu::noinline]] double iRunPlan(std::uint32_t order);
    double iContinued(std::uint32_t order);
    void iPlan(std::uint32_t orders);
    void iMoveBlockTo(const double* x, std::size_t count, std::uint32_t orders);

    std::vector<double> registers_;
    std::uint64_t xBits_ = 0;                 // of the x that the registers are for
    std::uint32_t asked_ = 0;                 // how many orders were asked for at that x
    std::uint32_t planned_ = 0;               // how many are computed at each x
    const Instruction* planFirst_ = nullptr;  // the first
    const Instruction* planLast_ = nullptr;   // and the last of the steps that do so
    std::vector<const Section*> sections_;
    const std::size_t parameterCount_;

    std::vector<double> block_;  // the same for a block of points
    std::size_t blockPoints_ = 0;
    std::uint32_t blockDone_ = 0;
    std::uint32_t blockAsked_ = 0;
    std::uint32_t blockFilled_ = 0;  // orders whose constants stand in the block

    std::shared_ptr<CompiledText> text_;
    std::atomic<int> users_{0};
};

/// The engine's own kind of calculator: one order of a family.
class Calculator final : public ICalculator {
public:
    Calculator(Family& family, std::uint32_t order)
        : family_(family),
          order_(order),
          result_(family.resultOf(order)),
          parameters_(static_cast<int>(family.parameterCount()))
    {
        family_.keep();
    }

    ICalculator* differentiate(int unused) override;
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override;
    bool Release() override;

    Family& family() const { return family_; }
    std::uint32_t order() const { return order_; }

private:
    ~Calculator() override { family_.release(); }
    [[gnu::noinline]] bool iEvaluateAt(double x, MMEP_Data& result);
    [[gnu::noinline]] bool iEvaluateOther(int count, const MMEP_Data* arguments, MMEP_Data& result);

    Family& family_;
    const std::uint32_t order_;
    const std::uint32_t result_;  // the register of its value
    const int parameters_;
};

}  // namespace mf::engine
