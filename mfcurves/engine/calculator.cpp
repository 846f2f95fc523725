#include "mfcurves/engine/calculator.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/engine/evaluation.h"

namespace mf::engine {
namespace {

constexpr std::size_t kMostBlockRegisters = 512;

}  // namespace

Family::Family(std::shared_ptr<CompiledText> text)
    : parameterCount_(text->parameterCount()), text_(std::move(text))
{
    sections_.reserve(4);
    addOrder(0);
}

bool Family::addOrder(std::size_t order)
{
    while (sections_.size() <= order) {
        const Section* section = text_->section(sections_.size());
        if (section == nullptr)
            return false;
        sections_.push_back(section);
        registers_.resize(section->registers);
        for (const auto& [target, number] : section->constants)
            registers_[target] = number;
    }
    return true;
}

void Family::iMoveTo(double x, std::size_t order)
{
    if (parameterCount_ != 0)
        registers_[0] = x;
    xBits_ = std::bit_cast<std::uint64_t>(x);
    const std::size_t highest = std::max(order, asked_);
    asked_ = order;
    run(sections_[highest]->whole, registers_.data());
    done_ = highest + 1;
}

void Family::iContinueTo(std::size_t order)
{
    for (; done_ <= order; ++done_)
        run(sections_[done_]->code, registers_.data());
}

const double* Family::computed(const MMEP_Data* numbers)
{
    for (std::size_t i = 0; i < parameterCount_; ++i)
        registers_[i] = *numbers[i].getValue();
    run(sections_[0]->code, registers_.data());
    return registers_.data();
}

bool Family::takesBlocks() const
{
    return parameterCount_ == 1 && sections_.back()->registers <= kMostBlockRegisters;
}

void Family::iMoveBlockTo(const double* x, std::size_t count, std::size_t order)
{
    std::copy_n(x, count, block_.begin());
    blockPoints_ = count;
    const std::size_t highest = std::max(order, blockAsked_);
    blockAsked_ = order;
    runBlock(sections_[highest]->whole, block_.data(), count);
    blockDone_ = highest + 1;
}

void Family::computeBlock(const double* x, double* y, std::size_t count, std::size_t order)
{
    for (; blockSections_ < sections_.size(); ++blockSections_) {
        const Section& section = *sections_[blockSections_];
        block_.resize(section.registers * kBlock);
        for (const auto& [target, number] : section.constants)
            std::fill_n(&block_[target * kBlock], kBlock, number);
    }
    if (count != blockPoints_ || std::memcmp(block_.data(), x, count * sizeof(double)) != 0)
        iMoveBlockTo(x, count, order);
    blockAsked_ = std::max(blockAsked_, order);
    for (; blockDone_ <= order; ++blockDone_)
        runBlock(sections_[blockDone_]->code, block_.data(), count);
    std::copy_n(&block_[sections_[order]->result * kBlock], count, y);
}

void Family::release()
{
    if (users_.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

ICalculator* Calculator::differentiate(int)
{
    if (family_.parameterCount() > 1 || !family_.addOrder(order_ + 1))
        return nullptr;
    return new Calculator(family_, order_ + 1);
}

bool Calculator::Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result)
{
    const double* registers = nullptr;
    if (parameters_ == 0)
        registers = family_.computed(0.0, order_);
    else if (arguments == nullptr || count < 0 || static_cast<std::size_t>(count) != parameters_)
        return false;
    else if (parameters_ == 1)
        registers = family_.computed(*arguments->getValue(), order_);
    else
        registers = family_.computed(arguments);
    const double value = registers[result_];
    if (!std::isfinite(value))
        return false;
    *result.getValue() = value;
    return true;
}

bool Calculator::Release()
{
    delete this;
    return true;
}

namespace {

// How many numbers stand before the first that is not finite.
std::size_t finiteCount(const double* y, std::size_t count)
{
    // Zero times a number is zero unless the number is not finite.
    double zeros[4] = {};
    for (std::size_t i = 0; i + 4 <= count; i += 4) {
        for (std::size_t j = 0; j < 4; ++j)
            zeros[j] += y[i + j] * 0.0;
    }
    for (std::size_t i = count & ~std::size_t{3}; i < count; ++i)
        zeros[0] += y[i] * 0.0;
    if (zeros[0] + zeros[1] + zeros[2] + zeros[3] == 0.0)
        return count;
    return static_cast<std::size_t>(
        std::find_if_not(y, y + count, [](double v) { return std::isfinite(v); }) - y);
}

std::size_t evaluateOneByOne(ICalculator& calculator, const double* x, double* y, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        MMEP_Data argument(x[i]);
        MMEP_Data result;
        if (!calculator.Evaluate(1, &argument, result))
            return i;
        y[i] = *result.getValue();
    }
    return count;
}

}  // namespace

std::size_t evaluateMany(ICalculator& calculator, const double* x, double* y, std::size_t count)
{
    auto* own = dynamic_cast<Calculator*>(&calculator);
    if (own == nullptr || !own->family().takesBlocks())
        return evaluateOneByOne(calculator, x, y, count);
    for (std::size_t done = 0; done < count;) {
        const std::size_t points = std::min(count - done, kBlock);
        own->family().computeBlock(x + done, y + done, points, own->order());
        const std::size_t finite = finiteCount(y + done, points);
        done += finite;
        if (finite < points)
            return done;
    }
    return count;
}

}  // namespace mf::engine
