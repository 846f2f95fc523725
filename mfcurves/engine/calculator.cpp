#include "mfcurves/engine/calculator.h"

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/engine/evaluation.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace mf::engine
{
namespace
{

// A block of more registers would not stay in the processor's cache, and point by
// point is as quick.
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
        iFill(*section);
    }
    return true;
}

void Family::iFill(const Section& section)
{
    registers_.resize(section.registers);
    for (const auto& [target, number] : section.constants)
        registers_[target] = number;
}

void Family::iFillBlock(const Section& section)
{
    block_.resize(section.registers * kBlock);
    for (const auto& [target, number] : section.constants)
        std::fill_n(&block_[target * kBlock], kBlock, number);
}

// 0.0 and -0.0 are two points: atan2 and divisions tell them apart.
double Family::at(double x, std::size_t order)
{
    if (parameterCount_ != 0 && (std::bit_cast<std::uint64_t>(x) != xBits_ || x != x)) {
        xBits_ = std::bit_cast<std::uint64_t>(x);
        registers_[0] = x;
        done_ = 0;
    }
    for (; done_ <= order; ++done_)
        run(*sections_[done_], registers_.data());
    return registers_[sections_[order]->result];
}

double Family::at(const MMEP_Data* numbers)
{
    for (std::size_t i = 0; i < parameterCount_; ++i)
        registers_[i] = *numbers[i].getValue();
    run(*sections_[0], registers_.data());
    return registers_[sections_[0]->result];
}

void Family::at(const double* x, double* y, std::size_t count, std::size_t order)
{
    if (sections_.back()->registers > kMostBlockRegisters || parameterCount_ != 1) {
        for (std::size_t i = 0; i < count; ++i)
            y[i] = at(x[i], order);
        return;
    }
    for (; blockSections_ < sections_.size(); ++blockSections_)
        iFillBlock(*sections_[blockSections_]);
    if (count != blockPoints_ || std::memcmp(block_.data(), x, count * sizeof(double)) != 0) {
        std::copy_n(x, count, block_.begin());
        blockPoints_ = count;
        blockDone_ = 0;
    }
    for (; blockDone_ <= order; ++blockDone_)
        runBlock(*sections_[blockDone_], block_.data(), count);
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
    const std::size_t parameters = family_.parameterCount();
    if (parameters != 0 &&
        (arguments == nullptr || count < 0 || static_cast<std::size_t>(count) != parameters))
        return false;
    const double value = parameters > 1 ? family_.at(arguments)
                                        : family_.at(parameters == 1 ? *arguments->getValue() : 0.0, order_);
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

std::size_t evaluateMany(ICalculator& calculator, const double* x, double* y, std::size_t count)
{
    auto* own = dynamic_cast<Calculator*>(&calculator);
    for (std::size_t done = 0; done < count;) {
        std::size_t finite = 0;
        std::size_t points = std::min(count - done, kBlock);
        if (own != nullptr && own->family().parameterCount() == 1) {
            own->family().at(x + done, y + done, points, own->order());
            finite = static_cast<std::size_t>(
                std::find_if_not(y + done, y + done + points, [](double v) { return std::isfinite(v); }) -
                (y + done));
        } else {
            points = 1;
            MMEP_Data argument(x[done]);
            MMEP_Data result;
            if (calculator.Evaluate(1, &argument, result)) {
                y[done] = *result.getValue();
                finite = 1;
            }
        }
        done += finite;
        if (finite < points)
            return done;
    }
    return count;
}

}  // namespace mf::engine
