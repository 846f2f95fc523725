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

    /// Whether the registers hold an order at x, which counts as asking for it;
    /// never for a family that has not one parameter. Points are told apart by
    /// their bits: a division tells 0.0 from -0.0.
    bool holds(double x, int order)
    {
        if (std::bit_cast<std::uint64_t>(x) != xBits_ || order > held_)
            return false;
        asked_ = order;
        return true;
    }

    /// Computes an order at x, which the registers do not hold. Without parameters
    /// any x will do; false for several.
    bool compute(double x, int order)
    {
        if (std::max(order, asked_) != held_) [[unlikely]]
            return iComputeAnew(x, order);
        registers_[0] = x;
        xBits_ = std::bit_cast<std::uint64_t>(x);
        asked_ = order;
        runWhole_(*firstStep_, registers_.data());
        return true;
    }
    /// Computes the value for as many numbers as there are parameters.
    void compute(const MMEP_Data* numbers);

    double operator[](std::uint32_t registerNumber) const { return registers_[registerNumber]; }

    /// Whether computeBlock may be asked: with one parameter, and few enough
    /// registers that a block of them stays close to the processor.
    bool takesBlocks() const;

    /// Values of an order at `count` points, at most kBlock; bit for bit those of
    /// single points.
    void computeBlock(const double* x, double* y, std::size_t count, int order);

    void keep() { users_.fetch_add(1, std::memory_order_relaxed); }
    void release();

private:
    ~Family() = default;
    [[gnu::noinline]] bool iComputeAnew(double x, int order);
    void iHold(int order);
    void iMoveBlockTo(const double* x, std::size_t count, int orders);

    std::vector<double> registers_;
    std::uint64_t xBits_ = 0;                 // of the x that the registers are for
    int asked_ = 0;                           // the order asked for last at that x
    int held_ = -1;                           // the highest order that is computed at each x
    Instruction::Run runWhole_ = nullptr;     // computes the orders up to it
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
    [[gnu::noinline]] bool iEvaluateAt(double x, MMEP_Data& result);
    [[gnu::noinline]] bool iEvaluateOther(int count, const MMEP_Data* arguments, MMEP_Data& result);

    Family& family_;
    const int order_;
    const std::uint32_t result_;  // the register of its value
};

}  // namespace mf::engine
