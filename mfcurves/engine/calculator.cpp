#include "mfcurves/engine/calculator.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <typeinfo>

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
bool Family::iEvaluateAnew(double x, int order, std::uint32_t result, double& value)
{
    if (parameterCount_ > 1)
        return false;
    const bool isSamePoint = held_ >= 0 && isAt(x);
    const int before = held_;
    const Section& section = *sections_[std::max(order, asked_)];
    runWhole_ = section.runWhole;
    firstStep_ = &section.whole.front();
    if (parameterCount_ == 0)
        return runWhole_(registers_[0], *firstStep_, registers_.data(), registers_[result], value);
    held_ = std::max(order, asked_);
    asked_ = order;
    // Higher orders build on what a program of several steps has left in its registers.
    if (isSamePoint && sections_[before]->whole.size() > 1) {
        for (int next = before + 1; next <= order; ++next) {
            for (const Instruction& step : sections_[next]->code)
                step.run(step, registers_.data());
        }
        return answerWith(registers_[result], value);
    }
    registers_[0] = x;
    return runWhole_(x, *firstStep_, registers_.data(), registers_[result], value);
}

bool Family::evaluate(const MMEP_Data* numbers, std::uint32_t result, double& value)
{
    for (std::size_t i = 0; i < parameterCount_; ++i)
        registers_[i] = *numbers[i].getValue();
    const Section& section = *sections_[0];
    return section.runWhole(registers_[0], section.whole.front(), registers_.data(), registers_[result],
                            value);
}

// The highest order goes first, as it computes the others on its way.
int Family::evaluateOrders(double x, int order, double* values)
{
    while (std::ssize(sections_) <= order && !addOrder(order))
        --order;
    double highest = 0.0;
    const bool isFinite = evaluate(x, order, sections_[order]->result, highest);
    for (int lower = 0; lower < order; ++lower) {
        if (parameterCount_ > 1 || !answerWith(registers_[sections_[lower]->result], values[lower]))
            return lower;
    }
    if (!isFinite)
        return order;
    values[order] = highest;
    return order + 1;
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

const double* Family::computeBlock(const double* x, std::size_t count, int order)
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
    return &block_[sections_[order]->result * kBlock];
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

bool Calculator::iEvaluateOther(int count, const MMEP_Data* arguments, MMEP_Data& result)
{
    const auto parameters = static_cast<int>(family_.parameterCount());
    if (parameters == 0)
        return family_.evaluate(0.0, order_, result_, *result.getValue());
    if (parameters == 1 || parameters != count || arguments == nullptr)
        return false;
    return family_.evaluate(arguments, result_, *result.getValue());
}

// An integrator calls this at every step: the usual case goes first, and what takes
// longer is done by functions of its own, so that little is set up here.
bool Calculator::Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result)
{
    if (count != 1) [[unlikely]]
        return iEvaluateOther(count, arguments, result);
    if (arguments == nullptr) [[unlikely]]
        return iEvaluateOther(count, arguments, result);
    return family_.evaluate(*arguments->getValue(), order_, result_, *result.getValue());
}

bool Calculator::Release()
{
    delete this;
    return true;
}

namespace {

// Answers how many numbers it copied until the first that is not finite.
std::size_t copyFinite(const double* __restrict from, std::size_t count, double* __restrict to)
{
    // Zero times a number is zero unless the number is not finite.
    double zeros[4] = {};
    for (std::size_t i = 0; i + 4 <= count; i += 4) {
        for (std::size_t j = 0; j < 4; ++j) {
            to[i + j] = from[i + j];
            zeros[j] += from[i + j] * 0.0;
        }
    }
    for (std::size_t i = count & ~std::size_t{3}; i < count; ++i) {
        to[i] = from[i];
        zeros[0] += from[i] * 0.0;
    }
    if (zeros[0] + zeros[1] + zeros[2] + zeros[3] == 0.0)
        return count;
    return static_cast<std::size_t>(
        std::find_if_not(from, from + count, [](double v) { return std::isfinite(v); }) - from);
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

bool isOwnCalculator(const ICalculator& calculator)
{
    return typeid(calculator) == typeid(Calculator);
}

int evaluateOrders(ICalculator& calculator, double x, int order, double* values)
{
    return static_cast<const Calculator&>(calculator).family().evaluateOrders(x, order, values);
}

std::size_t evaluateMany(ICalculator& calculator, const double* x, double* y, std::size_t count)
{
    if (!isOwnCalculator(calculator))
        return evaluateOneByOne(calculator, x, y, count);
    const auto& own = static_cast<const Calculator&>(calculator);
    if (!own.family().takesBlocks())
        return evaluateOneByOne(calculator, x, y, count);
    for (std::size_t done = 0; done < count;) {
        const std::size_t points = std::min(count - done, kBlock);
        const double* values = own.family().computeBlock(x + done, points, own.order());
        const std::size_t finite = copyFinite(values, points, y + done);
        done += finite;
        if (finite < points)
            return done;
    }
    return count;
}

}  // namespace mf::engine
