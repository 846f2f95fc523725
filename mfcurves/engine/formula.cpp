// SPDX-License-Identifier: MIT

#include "mfcurves/engine/formula.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "mfcurves/engine/blocks.h"
#include "mfcurves/engine/branches.h"
#include "mfcurves/engine/compilation.h"
#include "mfcurves/engine/evaluation.h"
#include "mfcurves/engine/parser.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

// A plain loop: a call of a library function would take longer than the few orders.
void fillAbove(int highest, int order, double* values)
{
    for (int k = highest + 1; k <= order; ++k)
        values[k] = kNaN;
}

}  // namespace

Formula::Result Formula::compile(std::wstring_view text, const std::optional<std::wstring_view>& variableName,
                                 int highestOrder)
{
    auto result = parseText(text, variableName);
    if (auto* error = std::get_if<ParseError>(&result))
        return std::move(*error);

    auto& parsed = std::get<ParsedText>(result);
    const std::size_t parameterCount = parsed.parameters.list().size();
    Compilation compilation(std::move(parsed));
    auto formula = std::make_shared<Formula>();
    formula->programs_.value = compilation.program();
    if (parameterCount <= 1) {
        while (compilation.highestOrder() < highestOrder && compilation.addOrder()) {
        }
    }
    formula->programs_.all =
        compilation.highestOrder() == 0 ? formula->programs_.value : std::move(compilation).program();
    const Program& all = *formula->programs_.all;
    formula->runValue_ = runFor(*formula->programs_.value, 0);
    formula->runAll_ = ordersFor(all);
    formula->registerCount_ = std::max<std::size_t>(all.registerCount(), 1);
    formula->highestOrder_ = parameterCount > 1 ? -1 : all.highestOrder();
    formula->hasBranches_ = std::ranges::any_of(all.steps(all.highestOrder()), mayBranch);
    return formula;
}

std::size_t Formula::parameterCount() const
{
    return programs_.all->parameterCount();
}

void Formula::iEvaluateSome(double x, int order, double* registers, double* values) const noexcept
{
    const int highest = std::min(order, highestOrder_);
    fillAbove(highest, order, values);
    if (highest < 0)
        return;
    if (highest == 0) {
        values[0] = value(x, registers);
        return;
    }
    const Program& program = programs_.upTo(highest);
    registers[0] = x;
    fillConstants(program, registers);
    run(program.steps(highest), registers);
    takeValues(program, highest, registers, values);
}

bool Formula::evaluateBeside(double x, double beside, int order, double* registers,
                             double* values) const noexcept
{
    const int highest = std::min(order, highestOrder_);
    fillAbove(highest, order, values);
    if (highest < 0)
        return true;
    const Program& program = programs_.upTo(highest);
    double* const registersBeside = registers + registerCount();
    registers[0] = x;
    registersBeside[0] = beside;
    fillConstants(program, registers);
    fillConstants(program, registersBeside);
    bool isSettled = true;
    for (const Step& step : program.steps(highest)) {
        step.run(step, registers);
        step.run(step, registersBeside);
        isSettled = takeBranchBeside(step, registers, registersBeside) && isSettled;
    }
    takeValues(program, highest, registers, values);
    return isSettled;
}

void Formula::evaluateBlock(const double* x, std::size_t count, int order, double* registers,
                            double* const* values) const noexcept
{
    const int highest = std::min(order, highestOrder_);
    for (int k = highest + 1; k <= order; ++k)
        std::fill_n(values[k], count, kNaN);
    if (highest < 0)
        return;
    const Program& program = programs_.upTo(highest);
    fillConstantRows(program, registers);
    if (runBlock(program, highest, x, count, registers, values))
        return;
    const auto isBad = [](double value) { return !std::isfinite(value); };
    for (int k = 0; k <= highest; ++k) {
        if (!areFinite(values[k], count))
            std::replace_if(values[k], values[k] + count, isBad, kNaN);
    }
}

}  // namespace mf::engine
