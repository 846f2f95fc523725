// SPDX-License-Identifier: MIT

#include "mfcurves/engine/lawForm.h"

#include <bit>
#include <cstddef>
#include <optional>
#include <span>

#include "mfcurves/engine/formula.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {
namespace {

bool isNeutralAddend(double number)
{
    return std::bit_cast<std::uint64_t>(number) == std::bit_cast<std::uint64_t>(kNeutralAddend);
}

// The number that a register holds from the start.
std::optional<double> constantIn(const Program& program, std::uint32_t number)
{
    for (const auto& constant : program.constants()) {
        if (constant.target == number)
            return constant.number;
    }
    return {};
}

LawArgument argumentOf(const Step& step)
{
    const StageConstants& c = step.before;
    return {c.first, c.divisor, c.factor, c.last};
}

bool isZero(const Program& program, int order)
{
    const std::optional<double> constant = constantIn(program, program.result(order));
    return constant && std::bit_cast<std::uint64_t>(*constant) == 0;
}

bool isFlat(const Program& program)
{
    return isZero(program, 1) && isZero(program, 2) && isZero(program, 3);
}

// --- Polynomials -------------------------------------------------------------------------

// The factor of a register that holds a multiple of the operand of the first step.
std::optional<double> multipleIn(std::span<const Step> steps, std::uint32_t number)
{
    const std::uint32_t operand = steps.front().operand();
    if (number == operand)
        return 1.0;
    for (const Step& step : steps.subspan(1)) {
        const bool isMultiple = step.code == Code::Move && step.output == Stage::None && step.a == operand &&
                                step.before.divisor == 1.0 && isNeutralAddend(step.before.first) &&
                                isNeutralAddend(step.before.last);
        if (isMultiple && step.moved == number)
            return step.before.factor;
    }
    return {};
}

// Each derivative is computed by the law's own step, or is a multiple of u, a constant or 0.
bool addDerivatives(const Program& program, PolynomialLaw& law)
{
    const auto steps = program.steps(kUsualOrder);
    const Step& step = steps.front();
    law.isFlat = isFlat(program);
    if (law.isFlat)
        return true;
    const double* coefficients = step.constants;
    PolynomialForm form = {law.terms, law.lowest};
    for (int k = 1; k <= kUsualOrder; ++k) {
        coefficients += form.terms;
        form = form.derivative();
        if (form.terms == 0)
            return isZero(program, k) && isZero(program, kUsualOrder);
        const std::uint32_t result = program.result(k);
        const std::optional<double> constant = constantIn(program, result);
        const std::optional<double> multiple = multipleIn(steps, result);
        const bool isComputed = step.code == Code::Polynomial && k <= step.derivatives;
        if (isComputed && step.list[k - 1] == result)
            law.coefficients.insert(law.coefficients.end(), coefficients, coefficients + form.terms);
        else if (constant && form == PolynomialForm{1, 0})
            law.coefficients.push_back(*constant);
        else if (multiple && form == PolynomialForm{1, 1})
            law.coefficients.push_back(*multiple);
        else
            return false;
    }
    return true;
}

// The law u^1. Its program only moves x through constants, which are all in one input stage.
std::optional<PolynomialLaw> lineOf(const Program& program)
{
    const Step& step = program.steps(kUsualOrder).front();
    if (step.code != Code::Move || step.output != Stage::None || program.result(0) != step.moved)
        return {};
    const LawArgument whole = argumentOf(step);
    PolynomialLaw law = {
        {whole.shift, whole.divisor, 1.0, kNeutralAddend}, whole.scale, whole.offset, 1, 1, {1.0}, false};
    return addDerivatives(program, law) ? std::optional(law) : std::nullopt;
}

std::optional<PolynomialLaw> polynomialOf(const Program& program)
{
    const Step& step = program.steps(kUsualOrder).front();
    const bool isScaled = isNeutralAddend(step.after.first) && step.after.divisor == 1.0;
    if (step.code != Code::Polynomial || !isScaled || program.result(0) != step.target)
        return {};
    PolynomialLaw law = {argumentOf(step),
                         step.after.factor,
                         step.after.last,
                         step.terms,
                         step.lowest,
                         {step.constants, step.constants + step.terms},
                         false};
    return addDerivatives(program, law) ? std::optional(law) : std::nullopt;
}

// --- Sines -------------------------------------------------------------------------------

// The content of a register in terms of the sine and cosine that the first step computes.
struct ScaledSine {
    bool isFirst;  // the step's own value, not the other function of its operand
    SineLaw::Order numbers;
};

std::optional<ScaledSine> scaled(bool isFirst, const StageConstants& c)
{
    if (c.divisor != 1.0)
        return {};
    return ScaledSine{isFirst, {c.first, c.factor, c.last}};
}

std::optional<ScaledSine> scaledIn(std::span<const Step> steps, std::uint32_t number)
{
    const Step& both = steps.front();
    const bool hasOther = both.code != Code::Call1;
    if (number == both.target)
        return scaled(true, both.after);
    if (number == both.value)
        return scaled(true, {});
    if (hasOther && number == both.b)
        return scaled(false, {});
    for (const Step& step : steps.subspan(1)) {
        const bool isOfBoth = step.a == both.value || (hasOther && step.a == both.b);
        if (step.moved == number && step.code == Code::Move && step.output == Stage::None && isOfBoth)
            return scaled(step.a == both.value, step.before);
    }
    return {};
}

std::optional<bool> beginsWithCosine(const Step& step)
{
    if (step.code == Code::SinCos || step.code == Code::CosSin)
        return step.code == Code::CosSin;
    if (step.code == Code::Call1 && (step.function == FunctionId::Sin || step.function == FunctionId::Cos))
        return step.function == FunctionId::Cos;
    return {};
}

std::optional<SineLaw> sineOf(const Program& program)
{
    const auto steps = program.steps(kUsualOrder);
    const std::optional<bool> cosine = beginsWithCosine(steps.front());
    if (!cosine)
        return {};
    SineLaw law = {argumentOf(steps.front()), *cosine, {}, isFlat(program)};
    for (int k = 0; k < (law.isFlat ? 1 : kUsualOrder + 1); ++k) {
        const std::optional<ScaledSine> order = scaledIn(steps, program.result(k));
        if (!order || order->isFirst != (k % 2 == 0))
            return {};
        law.orders[static_cast<std::size_t>(k)] = order->numbers;
    }
    return law;
}

}  // namespace

LawForm lawFormOf(const Formula& formula)
{
    const Program& program = formula.program();
    if (program.parameterCount() != 1 || program.highestOrder() != kUsualOrder)
        return {};
    const auto steps = program.steps(kUsualOrder);
    if (steps.empty() || steps.front().a != 0)
        return {};
    if (const auto law = lineOf(program))
        return *law;
    if (const auto law = polynomialOf(program))
        return *law;
    if (const auto law = sineOf(program))
        return *law;
    return {};
}

}  // namespace mf::engine
