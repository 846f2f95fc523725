// SPDX-License-Identifier: MIT

#include "mfcurves/engine/shortPrograms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "mfcurves/engine/operations.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

constexpr std::size_t kOrders = kUsualOrder + 1;

// The orders of one point, which the compiler keeps in registers of the processor.
struct Orders {
    double value, first, second, third;

    [[gnu::always_inline]] void storeTo(double* values) const
    {
        values[0] = value;
        values[1] = first;
        values[2] = second;
        values[3] = third;
        const double zeros =
            (zeroIfFinite(value) + zeroIfFinite(first)) + (zeroIfFinite(second) + zeroIfFinite(third));
        if (zeros != 0.0) [[unlikely]]
            markBad(values, kUsualOrder);
    }
};

// --- Laws: polynomials whose form the compiler knows ----------------------------------------

// The lowest power of a normalised motion law is the number of its terms or one less: 3-4-5
// has three terms from the third power on, 5-6-7-8-9 five from the fifth. The forms of their
// derivatives are included, because these occur in longer programs.
constexpr std::uint32_t kMostTerms = 5;

constexpr bool isLawForm(PolynomialForm form)
{
    return form.terms <= kMostTerms && (form.lowest == form.terms || form.lowest == form.terms - 1 ||
                                        form.lowest == 0 || form == PolynomialForm{1, 2});
}

// The argument of a law: x, (x + first) / divisor, or (x + first) * factor + last, as for a segment
// whose length is a power of two.
enum class Stretch { None, Divided, Scaled };

bool isLaw(const Step& step)
{
    const StageConstants& c = step.before;
    const bool isOnlyDivided = c.factor == 1.0 && c.last == 0.0 && std::signbit(c.last);
    return step.code == Code::Polynomial && isLawForm({step.terms, step.lowest}) &&
           (step.input != Stage::General || isOnlyDivided) &&
           (step.output == Stage::None || step.output == Stage::Linear);
}

template <Stretch stretch>
[[gnu::always_inline]] inline double stretched(double x, const StageConstants& c)
{
    if constexpr (stretch == Stretch::None)
        return x;
    else if constexpr (stretch == Stretch::Scaled)
        return throughStage<Stage::Shifted>(x, c);
    else
        return (x + c.first) / c.divisor;
}

template <Stretch stretch>
[[gnu::always_inline]] inline double lawOperand(double x, const Step& step, double* registers)
{
    x = stretched<stretch>(x, step.before);
    if constexpr (stretch != Stretch::None)
        registers[step.moved] = x;
    return x;
}

template <std::uint32_t terms, unsigned lowest>
[[gnu::always_inline]] inline double lawValue(double u, const double* c)
{
    return polynomialValue(u, lowest, std::span<const double, terms>(c, terms));
}

// Stores the derivatives of this form, until `count` of them are done or the next one is 0.
template <std::uint32_t terms, unsigned lowest>
[[gnu::always_inline]] inline void keepDerivatives(double u, const double* c, const std::uint32_t* list,
                                                   unsigned count, double* registers)
{
    constexpr PolynomialForm form = PolynomialForm{terms, lowest}.derivative();
    if constexpr (form.terms > 0) {
        if (count == 0)
            return;
        c += terms;
        registers[*list] = lawValue<form.terms, form.lowest>(u, c);
        keepDerivatives<form.terms, form.lowest>(u, c, list + 1, count - 1, registers);
    }
}

template <std::uint32_t terms, unsigned lowest>
[[gnu::always_inline]] inline double keepLaw(double u, const Step& step, double* registers)
{
    double target = lawValue<terms, lowest>(u, step.constants);
    registers[step.value] = target;
    if (step.output != Stage::None)
        registers[step.target] = target = throughStage<Stage::Linear>(target, step.after);
    if (step.derivatives != 0)
        keepDerivatives<terms, lowest>(u, step.constants, step.list, step.derivatives, registers);
    return target;
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
void runLaw(const Step& step, double* registers)
{
    keepLaw<terms, lowest>(lawOperand<stretch>(registers[step.a], step, registers), step, registers);
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
bool runOnlyLaw(double x, std::span<const Step> steps, double* registers, std::uint32_t result, double& value)
{
    const Step& step = steps.front();
    const double target = keepLaw<terms, lowest>(lawOperand<stretch>(x, step, registers), step, registers);
    return isFiniteInto(result == step.target ? target : registers[result], value);
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
void runAllOfLaw(const Program& program, double x, double*, double* values)
{
    constexpr PolynomialForm first = PolynomialForm{terms, lowest}.derivative();
    constexpr PolynomialForm second = first.derivative();
    constexpr PolynomialForm third = second.derivative();
    const Step& law = program.steps(kUsualOrder).front();
    const double* const c0 = law.constants;
    const double* const c1 = c0 + terms;
    const double* const c2 = c1 + first.terms;
    const double* const c3 = c2 + second.terms;
    const double u = stretched<stretch>(x, law.before);
    Orders{throughStage<Stage::Linear>(lawValue<terms, lowest>(u, c0), law.after),
           lawValue<first.terms, first.lowest>(u, c1), lawValue<second.terms, second.lowest>(u, c2),
           lawValue<third.terms, third.lowest>(u, c3)}
        .storeTo(values);
}

// The functions of the laws are in tables in order of their forms, null for a form without one.
constexpr std::size_t indexOf(PolynomialForm form)
{
    return (form.terms - 1) * (kMostTerms + 1) + form.lowest;
}
constexpr PolynomialForm formAt(std::size_t index)
{
    return {static_cast<std::uint32_t>(index / (kMostTerms + 1) + 1),
            static_cast<unsigned>(index % (kMostTerms + 1))};
}

// In a longer program the law has no input stage. Long laws are rare there, but their last
// derivatives, which begin with a constant, are not.
template <std::size_t index>
constexpr Step::Run lawStepAt()
{
    constexpr PolynomialForm form = formAt(index);
    if constexpr (isLawForm(form) && (form.terms <= 3 || form.lowest == 0))
        return runLaw<form.terms, form.lowest, Stretch::None>;
    return nullptr;
}

// A law is nearly always a whole program, and then has no constant term. Without an input stage
// the x is scaled by 1, which changes no bit.
struct RunsOfLaw {
    RunProgram asProgram = nullptr;
    RunOrders asOrders = nullptr;  // with three derivatives, none of which is 0
};

template <Stretch stretch, std::size_t index>
constexpr RunsOfLaw lawProgramAt()
{
    constexpr PolynomialForm form = formAt(index);
    RunsOfLaw runs;
    if constexpr (isLawForm(form) && form.lowest != 0)
        runs.asProgram = runOnlyLaw<form.terms, form.lowest, stretch>;
    if constexpr (isLawForm(form) && form.lowest > 1 && form.terms + form.lowest > 3)
        runs.asOrders = runAllOfLaw<form.terms, form.lowest, stretch>;
    return runs;
}

using LawIndices = std::make_index_sequence<std::size_t{kMostTerms} * (kMostTerms + 1)>;

template <std::size_t... i>
constexpr auto lawSteps(std::index_sequence<i...>)
{
    return std::array{lawStepAt<i>()...};
}

template <Stretch stretch, std::size_t... i>
constexpr auto lawPrograms(std::index_sequence<i...>)
{
    return std::array{lawProgramAt<stretch, i>()...};
}

// Both are null for a step that is not a law.
RunsOfLaw runsOfLaw(const Step& step)
{
    static constexpr auto kDivided = lawPrograms<Stretch::Divided>(LawIndices());
    static constexpr auto kScaled = lawPrograms<Stretch::Scaled>(LawIndices());
    if (!isLaw(step))
        return {};
    return (step.input == Stage::General ? kDivided : kScaled)[indexOf({step.terms, step.lowest})];
}

// --- Sines ---------------------------------------------------------------------------------

// A sine or cosine whose derivatives are multiples of it and of the other function.
template <Code code, bool divides>
struct Sine {
    // The value, then the multiples.
    [[gnu::always_inline]] static Orders at(double x, std::span<const Step> steps)
    {
        const Step& both = steps.front();
        double sine;
        double cosine;
        sineAndCosine(throughStage < divides ? Stage::General : Stage::Shifted > (x, both.before), sine,
                      cosine);
        const double first = code == Code::SinCos ? sine : cosine;
        const double other = code == Code::SinCos ? cosine : sine;
        const auto multiple = [&](const Step& step) {
            return throughStage<Stage::Linear>(step.a == both.b ? other : first, step.before);
        };
        return {throughStage<Stage::Shifted>(first, both.after), multiple(steps[1]), multiple(steps[2]),
                multiple(steps[3])};
    }

    static bool run(double x, std::span<const Step> steps, double* registers, std::uint32_t result,
                    double& value)
    {
        const Orders orders = at(x, steps);
        registers[steps[0].target] = orders.value;
        registers[steps[1].moved] = orders.first;
        registers[steps[2].moved] = orders.second;
        registers[steps[3].moved] = orders.third;
        return isFiniteInto(registers[result], value);
    }

    static void runAll(const Program& program, double x, double*, double* values)
    {
        at(x, program.steps(kUsualOrder)).storeTo(values);
    }
};

// Whether the steps are a sine and cosine of x and three multiples of them. Then only these four
// are needed: a program has no multiple that is not an order.
bool isSine(std::span<const Step> steps)
{
    const Step& both = steps.front();
    const auto isMultiple = [&](const Step& step) {
        return step.code == Code::Move && step.input == Stage::Linear && step.output == Stage::None &&
               (step.a == both.value || step.a == both.b);
    };
    return steps.size() == kOrders && (both.code == Code::SinCos || both.code == Code::CosSin) &&
           both.a == 0 && both.output != Stage::General && std::ranges::all_of(steps.subspan(1), isMultiple);
}

bool isSineWithDerivatives(const Program& program)
{
    if (program.highestOrder() != kUsualOrder || !isSine(program.steps(kUsualOrder)))
        return false;
    const auto steps = program.steps(kUsualOrder);
    return program.result(0) == steps[0].target && program.result(1) == steps[1].moved &&
           program.result(2) == steps[2].moved && program.result(3) == steps[3].moved;
}

struct RunsOfSine {
    RunProgram asProgram;
    RunOrders asOrders;
};

template <Code code>
RunsOfSine runsOfSine(Stage input)
{
    if (input == Stage::General)
        return {Sine<code, true>::run, Sine<code, true>::runAll};
    return {Sine<code, false>::run, Sine<code, false>::runAll};
}

RunsOfSine runsOfSine(const Step& both)
{
    return both.code == Code::SinCos ? runsOfSine<Code::SinCos>(both.input)
                                     : runsOfSine<Code::CosSin>(both.input);
}

}  // namespace

Step::Run runOfLaw(const Step& step)
{
    static constexpr auto kRuns = lawSteps(LawIndices());
    return isLaw(step) && step.input == Stage::None ? kRuns[indexOf({step.terms, step.lowest})] : nullptr;
}

bool isLawWithDerivatives(const Program& program)
{
    if (program.highestOrder() != 3 || program.steps(3).size() != 1)
        return false;
    const Step& law = program.steps(3).front();
    return isLaw(law) && law.a == 0 && law.derivatives == 3 && program.result(0) == law.target &&
           program.result(1) == law.list[0] && program.result(2) == law.list[1] &&
           program.result(3) == law.list[2];
}

RunProgram runOfShortProgram(std::span<const Step> steps)
{
    if (steps.size() == 1 && steps.front().a == 0)
        return runsOfLaw(steps.front()).asProgram;
    return isSine(steps) ? runsOfSine(steps.front()).asProgram : nullptr;
}

RunOrders ordersOfShortProgram(const Program& program)
{
    if (isLawWithDerivatives(program))
        return runsOfLaw(program.steps(kUsualOrder).front()).asOrders;
    return isSineWithDerivatives(program) ? runsOfSine(program.steps(kUsualOrder).front()).asOrders : nullptr;
}

}  // namespace mf::engine
