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

bool Family::addOrder(int order)
{
    while (std::ssize(sections_) <= order) {
        const Section* section = text_->section(sections_.size());
        if (section == nullptr)
            return false;
        registers_.resize(section->registers);
        sections_.push_back(section);
        for (const auto& [target, number] : section->constants)
            registers_[target] = number;
    }
    return true;
}

// The first time, and where other orders are asked for than at the x before.
bool Family::iComputeAnew(double x, int order)
{
    if (parameterCount_ > 1)
        return false;
    if (parameterCount_ == 0) {
        const Section& section = *sections_[order];
        section.runWhole(section.whole.front(), registers_.data());
        return true;
    }
    if (std::bit_cast<std::uint64_t>(x) != xBits_ || held_ < 0) {
        iHold(std::max(order, asked_));
        return compute(x, order);
    }
    while (held_ < order) {
        for (const Instruction& step : sections_[held_ + 1]->code)
            step.run(step, registers_.data());
        iHold(held_ + 1);
    }
    asked_ = order;
    return true;
}

void Family::iHold(int order)
{
    const Section& section = *sections_[order];
    held_ = order;
    runWhole_ = section.runWhole;
    firstStep_ = &section.whole.front();
}

void Family::compute(const MMEP_Data* numbers)
{
    for (std::size_t i = 0; i < parameterCount_; ++i)
        registers_[i] = *numbers[i].getValue();
    const Section& section = *sections_[0];
    section.runWhole(section.whole.front(), registers_.data());
}

bool Family::takesBlocks() const
{
    return parameterCount_ == 1 && sections_.back()->registers <= kMostBlockRegisters;
}

void Family::iMoveBlockTo(const double* x, std::size_t count, int orders)
{
    std::copy_n(x, count, block_.begin());
    blockPoints_ = count;
    blockDone_ = std::max(orders, blockAsked_);
    blockAsked_ = orders;
    runBlock(sections_[blockDone_ - 1]->whole, block_.data(), count);
}

void Family::computeBlock(const double* x, double* y, std::size_t count, int order)
{
    for (; blockFilled_ < std::ssize(sections_); ++blockFilled_) {
        const Section& section = *sections_[blockFilled_];
        block_.resize(section.registers * kBlock);
        for (const auto& [target, number] : section.constants)
            std::fill_n(&block_[target * kBlock], kBlock, number);
    }
    if (count != blockPoints_ || std::memcmp(block_.data(), x, count * sizeof(double)) != 0)
        iMoveBlockTo(x, count, order + 1);
    blockAsked_ = std::max(blockAsked_, order + 1);
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

namespace {

bool answer(double value, MMEP_Data& result)
{
    // What is not finite has no difference from itself.
    if (std::isnan(value - value)) [[unlikely]]
        return false;
    *result.getValue() = value;
    return true;
}

}  // namespace

bool Calculator::iEvaluateAt(double x, MMEP_Data& result)
{
    return family_.compute(x, order_) && answer(family_[result_], result);
}

bool Calculator::iEvaluateOther(int count, const MMEP_Data* arguments, MMEP_Data& result)
{
    const auto parameters = static_cast<int>(family_.parameterCount());
    if (parameters == 0)
        return iEvaluateAt(0.0, result);
    if (parameters == 1 || parameters != count || arguments == nullptr)
        return false;
    family_.compute(arguments);
    return answer(family_[result_], result);
}

// An integrator calls this at every step: the usual case goes first, and what takes
// longer is done by functions of its own, so that little is set up here.
bool Calculator::Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result)
{
    if (count != 1) [[unlikely]]
        return iEvaluateOther(count, arguments, result);
    if (arguments == nullptr) [[unlikely]]
        return iEvaluateOther(count, arguments, result);
    const double x = *arguments->getValue();
    if (family_.holds(x, order_))
        return answer(family_[result_], result);
    return iEvaluateAt(x, result);
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
