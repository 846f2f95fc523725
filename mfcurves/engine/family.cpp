// SPDX-License-Identifier: MIT

#include "mfcurves/engine/family.h"

#include <algorithm>
#include <utility>

namespace mf::engine {

Family::Family(std::shared_ptr<CompiledText> text)
    : parameterCount_(text->parameterCount()), text_(std::move(text))
{
    addOrder(0);
}

// steps_ points into programs_. When that changes, computedOrder_ = -1 makes the next evaluation
// choose the steps again.
bool Family::addOrder(int order)
{
    if (programs_.all != nullptr && order <= programs_.all->highestOrder())
        return true;
    auto programs = text_->programs(order);
    if (!programs)
        return false;
    registers_.resize(std::max(registers_.size(), std::size_t{programs->all->registerCount()}));
    fillConstants(*programs->all, registers_.data());
    programs_ = *std::move(programs);
    computedOrder_ = -1;
    return true;
}

bool Family::iEvaluateAnew(double x, int order, std::uint32_t result, double& value)
{
    if (parameterCount_ > 1)
        return false;
    const int highest = std::max(order, requestedOrder_);
    const Program& program = programs_.upTo(highest);
    steps_ = program.steps(highest);
    run_ = runFor(program, highest);
    if (parameterCount_ == 1) {
        computedOrder_ = highest;
        requestedOrder_ = order;
        registers_[0] = x;
    }
    return run_(x, steps_, registers_.data(), result, value);
}

bool Family::evaluate(const MMEP_Data* numbers, std::uint32_t result, double& value)
{
    for (std::size_t i = 0; i < parameterCount_; ++i)
        registers_[i] = *numbers[i].getValue();
    run(programs_.value->steps(0), registers_.data());
    return isFiniteInto(registers_[result], value);
}

// The program of the highest order computes the lower ones as well.
int Family::evaluateOrders(double x, int order, double* values)
{
    if (parameterCount_ > 1)
        return 0;
    while (programs_.all->highestOrder() < order && !addOrder(order))
        --order;
    double unused = 0.0;  // the registers have all orders
    evaluate(x, order, resultOf(order), unused);
    if (copyOrders(programs_.upTo(order), order, registers_.data(), values)) [[likely]]
        return order + 1;
    return countFinite(values, order);
}

}  // namespace mf::engine
