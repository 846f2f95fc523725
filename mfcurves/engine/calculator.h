#pragma once

#include "mfcurves/engine/compiledText.h"
#include "mfcurves/interfaces/ICalculator.h"

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace mf::engine
{

/// What a calculator and everything differentiated from it share: the registers,
/// and how far they are filled for which x.
///
/// The orders of one x build on each other, so whichever calculator is asked
/// first, each section runs once.
class Family
{
public:
    explicit Family(std::shared_ptr<CompiledText> text);

    /// Makes room for an order; false when the derivative outgrows the limits.
    bool addOrder(std::size_t order);

    std::size_t parameterCount() const { return parameterCount_; }

    /// Value of an order at x, for families of one parameter or none.
    double at(double x, std::size_t order);

    /// Value of order 0 for `numbers`, one for each parameter.
    double at(const MMEP_Data* numbers);

    /// Values of an order at `count` points; bit for bit those of `at`.
    void at(const double* x, double* y, std::size_t count, std::size_t order);

    void keep() { users_.fetch_add(1, std::memory_order_relaxed); }
    void release();

private:
    ~Family() = default;
    void iFill(const Section& section);
    void iFillBlock(const Section& section);

    std::vector<double> registers_;
    std::uint64_t xBits_ = 0;
    std::size_t done_ = 0;  // sections that have run for that x
    std::vector<const Section*> sections_;
    const std::size_t parameterCount_;

    std::vector<double> block_;      // the registers of a block of points
    std::size_t blockPoints_ = 0;    // points of the block computed last
    std::size_t blockDone_ = 0;      // sections that have run for it
    std::size_t blockSections_ = 0;  // sections whose constants stand in the block

    std::shared_ptr<CompiledText> text_;
    std::atomic<int> users_{0};
};

/// The engine's own kind of calculator: one order of a family.
class Calculator final : public ICalculator
{
public:
    Calculator(Family& family, std::size_t order) : family_(family), order_(order) { family_.keep(); }

    ICalculator* differentiate(int unused) override;
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override;
    bool Release() override;

    Family& family() const { return family_; }
    std::size_t order() const { return order_; }

private:
    ~Calculator() override { family_.release(); }

    Family& family_;
    const std::size_t order_;
};

}  // namespace mf::engine
