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

// A law as one step of a program.
template <std::uint32_t terms, unsigned lowest, Stretch stretch>
void runLaw(const Step& step, double* registers)
{
    const double u = stretched<stretch>(registers[step.a], step.before);
    if constexpr (stretch != Stretch::None)
        registers[step.moved] = u;
    const double value = lawValue<terms, lowest>(u, step.constants);
    registers[step.value] = value;
    if (step.output != Stage::None)
        registers[step.target] = throughStage<Stage::Linear>(value, step.after);
    keepDerivatives<terms, lowest>(u, step.constants, step.list, step.derivatives, registers);
}

// The neutral constants of a missing output stage change no bit.
template <std::uint32_t terms, unsigned lowest>
[[gnu::always_inline]] inline double lawResult(double u, const Step& law)
{
    return throughStage<Stage::Linear>(lawValue<terms, lowest>(u, law.constants), law.after);
}

// The value of a program that has no other order.
template <std::uint32_t terms, unsigned lowest, Stretch stretch>
bool runValueOfLaw(double x, std::span<const Step> steps, double* registers, std::uint32_t result,
                   double& value)
{
    const Step& law = steps.front();
    registers[result] = lawResult<terms, lowest>(stretched<stretch>(x, law.before), law);
    return isFiniteInto(registers[result], value);
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
[[gnu::always_inline]] inline Orders ordersOfLaw(double x, const Step& law)
{
    constexpr PolynomialForm first = PolynomialForm{terms, lowest}.derivative();
    constexpr PolynomialForm second = first.derivative();
    constexpr PolynomialForm third = second.derivative();
    const double* const c1 = law.constants + terms;
    const double* const c2 = c1 + first.terms;
    const double* const c3 = c2 + second.terms;
    const double u = stretched<stretch>(x, law.before);
    return {lawResult<terms, lowest>(u, law), lawValue<first.terms, first.lowest>(u, c1),
            lawValue<second.terms, second.lowest>(u, c2), lawValue<third.terms, third.lowest>(u, c3)};
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
bool runOrdersOfLaw(double x, std::span<const Step> steps, double* registers, std::uint32_t result,
                    double& value)
{
    const Step& law = steps.front();
    const Orders orders = ordersOfLaw<terms, lowest, stretch>(x, law);
    registers[law.target] = orders.value;
    registers[law.list[0]] = orders.first;
    registers[law.list[1]] = orders.second;
    registers[law.list[2]] = orders.third;
    return isFiniteInto(registers[result], value);
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
void runAllOfLaw(const Program& program, double x, double*, double* values)
{
    ordersOfLaw<terms, lowest, stretch>(x, program.steps(kUsualOrder).front()).storeTo(values);
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

// Long laws are rare in longer programs, but their last derivatives, which begin with a constant,
// are not. A parabola has no function for all its orders, because its last derivatives are constant.
template <Stretch stretch, std::size_t index>
constexpr Step::Run lawStepAt()
{
    constexpr PolynomialForm form = formAt(index);
    constexpr bool isShort = stretch == Stretch::None ? form.terms <= 3 || form.lowest == 0 : form.terms == 1;
    if constexpr (isLawForm(form) && isShort)
        return runLaw<form.terms, form.lowest, stretch>;
    return nullptr;
}

// A law is nearly always a whole program, and then has no constant term. Without an input stage
// the x is scaled by 1, which changes no bit.
struct RunsOfLaw {
    RunProgram value = nullptr;
    RunProgram orders = nullptr;  // to registers: with three derivatives, none of which is 0
    RunOrders all = nullptr;      // to an array: the same
};

template <Stretch stretch, std::size_t index>
constexpr RunsOfLaw lawProgramAt()
{
    constexpr PolynomialForm form = formAt(index);
    RunsOfLaw runs;
    if constexpr (isLawForm(form) && form.lowest != 0)
        runs.value = runValueOfLaw<form.terms, form.lowest, stretch>;
    if constexpr (isLawForm(form) && form.lowest > 1 && form.terms + form.lowest > 3) {
        runs.orders = runOrdersOfLaw<form.terms, form.lowest, stretch>;
        runs.all = runAllOfLaw<form.terms, form.lowest, stretch>;
    }
    return runs;
}

using LawIndices = std::make_index_sequence<std::size_t{kMostTerms} * (kMostTerms + 1)>;

template <Stretch stretch, std::size_t... i>
constexpr auto lawSteps(std::index_sequence<i...>)
{
    return std::array{lawStepAt<stretch, i>()...};
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

// --- Sines, and values of one call ---------------------------------------------------------------

// A sine or cosine whose derivatives are multiples of it and of the other function.
template <Code code, bool divides>
struct Sine {
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

bool isSineWithDerivatives(const Program& program)
{
    if (program.highestOrder() != kUsualOrder)
        return false;
    const auto steps = program.steps(kUsualOrder);
    if (steps.size() != kUsualOrder + 1)
        return false;
    const Step& both = steps.front();
    if ((both.code != Code::SinCos && both.code != Code::CosSin) || both.a != 0 ||
        both.output == Stage::General || program.result(0) != both.target)
        return false;
    for (int order = 1; order <= kUsualOrder; ++order) {
        const Step& step = steps[order];
        const bool isMultiple = step.code == Code::Move && step.input == Stage::Linear &&
                                step.output == Stage::None && (step.a == both.value || step.a == both.b);
        if (!isMultiple || program.result(order) != step.moved)
            return false;
    }
    return true;
}

struct RunsOfSine {
    RunProgram orders;  // to registers
    RunOrders all;      // to an array
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

template <Stage input, Stage output>
bool runValueOfCall(double x, std::span<const Step> steps, double* registers, std::uint32_t result,
                    double& value)
{
    const Step& call = steps.front();
    const double called = call.value1(throughStage<input>(x, call.before));
    registers[result] = throughStage<output>(called, call.after);
    return isFiniteInto(registers[result], value);
}

template <Stage input>
RunProgram valueOfCall(Stage output)
{
    return output == Stage::None ? runValueOfCall<input, Stage::None> : runValueOfCall<input, Stage::Shifted>;
}

RunProgram valueOfCall(const Step& call)
{
    if (call.output == Stage::General)
        return nullptr;
    if (call.input == Stage::None)
        return valueOfCall<Stage::None>(call.output);
    return call.input == Stage::General ? valueOfCall<Stage::General>(call.output)
                                        : valueOfCall<Stage::Shifted>(call.output);
}

// Whether a program is one step on x that computes one number, which is every order, as for exp(x).
bool hasOneResult(const Program& program)
{
    const auto steps = program.steps(program.highestOrder());
    if (steps.size() != 1 || steps.front().a != 0)
        return false;
    for (int order = 0; order <= program.highestOrder(); ++order) {
        if (program.result(order) != steps.front().target)
            return false;
    }
    return true;
}

RunProgram valueOf(const Step& step)
{
    return step.code == Code::Call1 ? valueOfCall(step) : runsOfLaw(step).value;
}

}  // namespace

Step::Run runOfLaw(const Step& step)
{
    static constexpr auto kUnstretched = lawSteps<Stretch::None>(LawIndices());
    static constexpr auto kDivided = lawSteps<Stretch::Divided>(LawIndices());
    static constexpr auto kScaled = lawSteps<Stretch::Scaled>(LawIndices());
    if (!isLaw(step))
        return nullptr;
    const std::size_t index = indexOf({step.terms, step.lowest});
    if (step.input == Stage::None)
        return kUnstretched[index];
    return step.input == Stage::General ? kDivided[index] : kScaled[index];
}

bool isLawWithDerivatives(const Program& program)
{
    if (program.highestOrder() != 3 || program.steps(kUsualOrder).size() != 1)
        return false;
    const Step& law = program.steps(kUsualOrder).front();
    return isLaw(law) && law.a == 0 && law.derivatives == 3 && program.result(0) == law.target &&
           program.result(1) == law.list[0] && program.result(2) == law.list[1] &&
           program.result(3) == law.list[2];
}

RunProgram runOfShortProgram(const Program& program, int highest)
{
    const auto steps = program.steps(highest);
    if (hasOneResult(program))
        return valueOf(steps.front());
    if (isLawWithDerivatives(program))
        return runsOfLaw(steps.front()).orders;
    return isSineWithDerivatives(program) && highest == kUsualOrder ? runsOfSine(steps.front()).orders
                                                                    : nullptr;
}

RunOrders ordersOfShortProgram(const Program& program)
{
    if (isLawWithDerivatives(program))
        return runsOfLaw(program.steps(kUsualOrder).front()).all;
    return isSineWithDerivatives(program) ? runsOfSine(program.steps(kUsualOrder).front()).all : nullptr;
}

}  // namespace mf::engine
