#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "mfcurves/engine/compiledText.h"
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
    bool addOrder(std::size_t order);

    std::size_t parameterCount() const { return parameterCount_; }
    /// The register that holds the value of an order.
    std::uint32_t resultOf(std::size_t order) const { return sections_[order]->result; }

    /// Computes an order at x, for a family of one parameter or none, and answers
    /// the registers.
    const double* computed(double x, std::size_t order)
    {
        // By its bits: atan2 and divisions tell 0.0 from -0.0.
        if (std::bit_cast<std::uint64_t>(x) != xBits_)
            iMoveTo(x, order);
        else if (order >= done_)
            iContinueTo(order);
        asked_ = std::max(asked_, order);
        return registers_.data();
    }

    /// Computes the value for `numbers`, one for each parameter.
    const double* computed(const MMEP_Data* numbers);

    /// Whether computeBlock may be asked: with one parameter, and few enough
    /// registers that a block of them stays close to the processor.
    bool takesBlocks() const;

    /// Values of an order at `count` points, at most kBlock; bit for bit those of
    /// single points.
    void computeBlock(const double* x, double* y, std::size_t count, std::size_t order);

    void keep() { users_.fetch_add(1, std::memory_order_relaxed); }
    void release();

private:
    ~Family() = default;
    void iMoveTo(double x, std::size_t order);
    void iContinueTo(std::size_t order);
    void iMoveBlockTo(const double* x, std::size_t count, std::size_t order);

    std::vector<double> registers_;
    std::uint64_t xBits_ = 0;  // of the x that the registers are for
    std::size_t done_ = 0;     // how many orders they hold
    std::size_t asked_ = 0;    // the highest order asked for at that x
    std::vector<const Section*> sections_;
    const std::size_t parameterCount_;

    std::vector<double> block_;  // the same for a block of points
    std::size_t blockPoints_ = 0;
    std::size_t blockDone_ = 0;
    std::size_t blockAsked_ = 0;
    std::size_t blockSections_ = 0;  // orders whose constants stand in the block

    std::shared_ptr<CompiledText> text_;
    std::atomic<int> users_{0};
};

/// The engine's own kind of calculator: one order of a family.
class Calculator final : public ICalculator {
public:
    Calculator(Family& family, std::size_t order)
        : family_(family),
          order_(order),
          result_(family.resultOf(order)),
          parameters_(family.parameterCount())
    {
        family_.keep();
    }

    ICalculator* differentiate(int unused) override;
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override;
    bool Release() override;

    Family& family() const { return family_; }
    std::size_t order() const { return order_; }

private:
    ~Calculator() override { family_.release(); }

    Family& family_;
    const std::size_t order_;
    const std::uint32_t result_;  // the register of its value
    const std::size_t parameters_;
};

}  // namespace mf::engine
