// SPDX-License-Identifier: MIT

#include "mfcurves/engine/shortPrograms.h"

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

// --- Powers by fused multiplications and additions ---------------------------------------------

#if defined(__x86_64__)
#define MFCURVES_FUSED [[gnu::target("fma")]]

bool hasFusedOperations()
{
    return __builtin_cpu_supports("fma");
}
#else
#define MFCURVES_FUSED

bool hasFusedOperations()
{
#if defined(__FP_FAST_FMA)
    return true;
#else
    return false;
#endif
}
#endif

[[gnu::cold, gnu::noinline]] double powerOfAnySize(double u, unsigned exponent)
{
    return compensatedPower(u, exponent);
}

// The same bits as compensatedPower, because the rounding errors are exact in both, unless they are
// too small for that, or halves overflow.
struct FusedPowers {
    [[gnu::always_inline]] static double of(double u, unsigned exponent)
    {
        constexpr double kLeast = 0x1p-900;
        constexpr double kMost = 0x1p+900;
        const Compensated<double> power = powerWithError<Undivided>(u, exponent);
        const double size = std::fabs(power.product);
        if (!(size >= kLeast && size <= kMost)) [[unlikely]]
            return powerOfAnySize(u, exponent);
        return power.product + power.error;
    }
};

// --- The functions of laws -----------------------------------------------------------------------

template <std::uint32_t terms, unsigned lowest, class Powers = CompensatedPowers>
[[gnu::always_inline]] inline double lawValue(double u, const double* c)
{
    return polynomialValue<Powers>(u, lowest, std::span<const double, terms>(c, terms));
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

// The value of a program that is one law. The neutral constants of a missing output stage change no bit.
template <std::uint32_t terms, unsigned lowest, Stretch stretch, class Powers>
[[gnu::always_inline]] inline double valueOfLaw(double x, const Step& law)
{
    const double u = stretched<stretch>(x, law.before);
    return throughStage<Stage::Linear>(lawValue<terms, lowest, Powers>(u, law.constants), law.after);
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch, class Powers>
[[gnu::always_inline]] inline Orders ordersOfLaw(double x, const Step& law)
{
    constexpr PolynomialForm first = PolynomialForm{terms, lowest}.derivative();
    constexpr PolynomialForm second = first.derivative();
    constexpr PolynomialForm third = second.derivative();
    const double* const c1 = law.constants + terms;
    const double* const c2 = c1 + first.terms;
    const double* const c3 = c2 + second.terms;
    const double u = stretched<stretch>(x, law.before);
    return {throughStage<Stage::Linear>(lawValue<terms, lowest, Powers>(u, law.constants), law.after),
            lawValue<first.terms, first.lowest, Powers>(u, c1),
            lawValue<second.terms, second.lowest, Powers>(u, c2),
            lawValue<third.terms, third.lowest, Powers>(u, c3)};
}

[[gnu::always_inline]] inline bool keepValue(double computed, double* registers, std::uint32_t result,
                                             double& value)
{
    registers[result] = computed;
    return isFiniteInto(computed, value);
}

[[gnu::always_inline]] inline bool keepOrders(const Orders& orders, const Step& law, double* registers,
                                              std::uint32_t result, double& value)
{
    registers[law.target] = orders.value;
    registers[law.list[0]] = orders.first;
    registers[law.list[1]] = orders.second;
    registers[law.list[2]] = orders.third;
    return isFiniteInto(registers[result], value);
}

// The value alone, all orders to registers, and all orders to an array: with powers that any processor
// computes, or by fused operations.
template <std::uint32_t terms, unsigned lowest, Stretch stretch>
struct PlainLaw {
    using Powers = CompensatedPowers;

    static bool value(double x, std::span<const Step> steps, double* registers, std::uint32_t result,
                      double& y)
    {
        return keepValue(valueOfLaw<terms, lowest, stretch, Powers>(x, steps.front()), registers, result, y);
    }
    static bool orders(double x, std::span<const Step> steps, double* registers, std::uint32_t result,
                       double& y)
    {
        const Step& law = steps.front();
        return keepOrders(ordersOfLaw<terms, lowest, stretch, Powers>(x, law), law, registers, result, y);
    }
    static void all(const Program& program, double x, double*, double* values)
    {
        const Step& law = program.steps(kUsualOrder).front();
        ordersOfLaw<terms, lowest, stretch, Powers>(x, law).storeTo(values);
    }
};

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
struct FusedLaw {
    using Powers = FusedPowers;

    MFCURVES_FUSED static bool value(double x, std::span<const Step> steps, double* registers,
                                     std::uint32_t result, double& y)
    {
        return keepValue(valueOfLaw<terms, lowest, stretch, Powers>(x, steps.front()), registers, result, y);
    }
    MFCURVES_FUSED static bool orders(double x, std::span<const Step> steps, double* registers,
                                      std::uint32_t result, double& y)
    {
        const Step& law = steps.front();
        return keepOrders(ordersOfLaw<terms, lowest, stretch, Powers>(x, law), law, registers, result, y);
    }
    MFCURVES_FUSED static void all(const Program& program, double x, double*, double* values)
    {
        const Step& law = program.steps(kUsualOrder).front();
        ordersOfLaw<terms, lowest, stretch, Powers>(x, law).storeTo(values);
    }
};

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

// Long laws are rare in longer programs, but their last derivatives, which begin with a constant, are
// not. With an input stage only a parabola runs as a step: its last derivatives are constant, so that it
// has no function for all its orders.
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

constexpr bool needsPowers(PolynomialForm form)
{
    return form.lowest > largestPlainPower(form.terms);
}

template <class Law, PolynomialForm form>
constexpr RunsOfLaw runsOf()
{
    RunsOfLaw runs;
    runs.value = Law::value;
    if constexpr (form.lowest > 1 && form.terms + form.lowest > 3) {
        runs.orders = Law::orders;
        runs.all = Law::all;
    }
    return runs;
}

// A law that needs powers has functions of its own only by fused operations.
template <Stretch stretch, std::size_t index>
constexpr RunsOfLaw lawProgramAt()
{
    constexpr PolynomialForm form = formAt(index);
    if constexpr (!isLawForm(form) || form.lowest == 0)
        return {};
    else if constexpr (needsPowers(form))
        return runsOf<FusedLaw<form.terms, form.lowest, stretch>, form>();
    else
        return runsOf<PlainLaw<form.terms, form.lowest, stretch>, form>();
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

// All are null for a step without functions of its own.
RunsOfLaw runsOfLaw(const Step& step)
{
    static constexpr auto kDivided = lawPrograms<Stretch::Divided>(LawIndices());
    static constexpr auto kScaled = lawPrograms<Stretch::Scaled>(LawIndices());
    const PolynomialForm form = {step.terms, step.lowest};
    if (!isLaw(step) || (needsPowers(form) && !hasFusedOperations()))
        return {};
    return (step.input == Stage::General ? kDivided : kScaled)[indexOf(form)];
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

// Whether a program is a single step on x whose result is every order of the program: a value alone, or
// exp(x) with its derivatives.
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
    if (program.highestOrder() != kUsualOrder || program.steps(kUsualOrder).size() != 1)
        return false;
    const Step& law = program.steps(kUsualOrder).front();
    return isLaw(law) && law.a == 0 && law.derivatives == kUsualOrder && program.result(0) == law.target &&
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
    if (highest == kUsualOrder && isSineWithDerivatives(program))
        return runsOfSine(steps.front()).orders;
    return nullptr;
}

RunOrders ordersOfShortProgram(const Program& program)
{
    if (isLawWithDerivatives(program))
        return runsOfLaw(program.steps(kUsualOrder).front()).all;
    return isSineWithDerivatives(program) ? runsOfSine(program.steps(kUsualOrder).front()).all : nullptr;
}

}  // namespace mf::engine
