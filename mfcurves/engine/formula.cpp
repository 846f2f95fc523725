#include "mfcurves/engine/formula.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "mfcurves/engine/branches.h"
#include "mfcurves/engine/compiledText.h"
#include "mfcurves/engine/evaluation.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

double finiteOrNaN(double value)
{
    return std::isfinite(value) ? value : kNaN;
}

}  // namespace

Formula::Result Formula::compile(std::wstring_view text, const std::optional<std::wstring_view>& variableName,
                                 int highestOrder)
{
    CompiledText::Answer answer = CompiledText::compile(text, variableName);
    if (auto* error = std::get_if<ParseError>(&answer))
        return std::move(*error);

    auto formula = std::make_shared<Formula>();
    formula->text_ = std::move(std::get<std::shared_ptr<CompiledText>>(answer));
    formula->parameterCount_ = formula->text_->parameterCount();
    if (formula->parameterCount_ > 1)
        return formula;
    for (int order = 0; order <= highestOrder; ++order) {
        const Section* section = formula->text_->section(static_cast<std::size_t>(order));
        if (section == nullptr)
            break;
        formula->sections_.push_back(section);
        formula->registerCount_ = section->registers;
    }
    formula->hasBranches_ =
        !formula->sections_.empty() && std::ranges::any_of(formula->sections_.back()->whole, mayBranch);
    // Register 0 takes x, also where the text does not use it.
    formula->registerCount_ = std::max<std::size_t>(formula->registerCount_, 1);
    return formula;
}

void Formula::evaluate(double x, int order, double* registers, double* values) const noexcept
{
    const int computed = std::min(order + 1, static_cast<int>(sections_.size()));
    std::fill(values + computed, values + order + 1, kNaN);
    if (computed == 0)
        return;
    registers[0] = x;
    iFillConstants(computed, registers);
    const Section& highest = *sections_[computed - 1];
    double unused = 0.0;
    highest.runWhole(registers[0], highest.whole.front(), registers, registers[highest.result], unused);
    for (int k = 0; k < computed; ++k)
        values[k] = finiteOrNaN(registers[sections_[k]->result]);
}

void Formula::iFillConstants(int orders, double* registers) const
{
    for (int k = 0; k < orders; ++k) {
        for (const auto& [target, number] : sections_[k]->constants)
            registers[target] = number;
    }
}

bool Formula::evaluateBeside(double x, double beside, int order, double* registers,
                             double* values) const noexcept
{
    const int computed = std::min(order + 1, static_cast<int>(sections_.size()));
    std::fill(values + computed, values + order + 1, kNaN);
    if (computed == 0)
        return true;
    double* const registersBeside = registers + registerCount_;
    registers[0] = x;
    registersBeside[0] = beside;
    iFillConstants(computed, registers);
    iFillConstants(computed, registersBeside);
    bool isSettled = true;
    for (const Instruction& step : sections_[computed - 1]->whole) {
        step.run(step, registers);
        step.run(step, registersBeside);
        isSettled = takeBranchBeside(step, registers, registersBeside) && isSettled;
    }
    for (int k = 0; k < computed; ++k)
        values[k] = finiteOrNaN(registers[sections_[k]->result]);
    return isSettled;
}

void Formula::evaluateBlock(const double* x, std::size_t count, int order, double* registers,
                            double* const* values) const noexcept
{
    const int computed = std::min(order + 1, static_cast<int>(sections_.size()));
    for (int k = computed; k <= order; ++k)
        std::fill_n(values[k], count, kNaN);
    if (computed == 0)
        return;
    std::copy_n(x, count, registers);
    for (int k = 0; k < computed; ++k) {
        for (const auto& [target, number] : sections_[k]->constants)
            std::fill_n(registers + target * kBlock, kBlock, number);
    }
    runBlock(sections_[computed - 1]->whole, registers, count);
    for (int k = 0; k < computed; ++k)
        std::transform(registers + sections_[k]->result * kBlock,
                       registers + sections_[k]->result * kBlock + count, values[k], finiteOrNaN);
}

std::size_t Formula::bytes() const
{
    return sizeof *this + sections_.capacity() * sizeof(const Section*) + text_->bytes();
}

}  // namespace mf::engine
