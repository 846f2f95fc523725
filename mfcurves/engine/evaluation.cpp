// SPDX-License-Identifier: MIT

#include "mfcurves/engine/evaluation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "mfcurves/engine/operations.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

// --- One function for each operation and its stages ----------------------------------------

template <Stage input>
[[gnu::always_inline]] inline double operand(double a, const Step& step, double* registers)
{
    a = throughStage<input>(a, step.before);
    if constexpr (input != Stage::None)
        registers[step.moved] = a;
    return a;
}

// Returns what is in the target.
template <Stage output>
[[gnu::always_inline]] inline double keep(double value, const Step& step, double* registers)
{
    registers[step.value] = value;
    if constexpr (output != Stage::None)
        registers[step.target] = value = throughStage<output>(value, step.after);
    return value;
}

template <class Operation, Stage input, Stage output>
void runUnary(const Step& step, double* registers)
{
    keep<output>(Operation(step)(operand<input>(registers[step.a], step, registers)), step, registers);
}

template <class Operation, Stage output>
void runBinary(const Step& step, double* registers)
{
    keep<output>(Operation(step)(registers[step.a], registers[step.b]), step, registers);
}

template <class Operation, Stage output>
void runListed(const Step& step, double* registers)
{
    const double value = [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return Operation(step)(registers[step.list[i]]...);
    }
    (std::make_index_sequence<Operation::kOperands>());
    keep<output>(value, step, registers);
}

template <Stage input, Stage output>
void runSinCos(const Step& step, double* registers)
{
    double sine;
    sineAndCosine(operand<input>(registers[step.a], step, registers), sine, registers[step.b]);
    keep<output>(sine, step, registers);
}

template <Stage input, Stage output>
void runCosSin(const Step& step, double* registers)
{
    double cosine;
    sineAndCosine(operand<input>(registers[step.a], step, registers), registers[step.b], cosine);
    keep<output>(cosine, step, registers);
}

// A polynomial of any number of terms, and its derivatives. Stages that a step lacks have
// constants that change no bit.
void runPolynomial(const Step& step, double* registers)
{
    const double u = step.input == Stage::None ? registers[step.a]
                                               : operand<Stage::General>(registers[step.a], step, registers);
    PolynomialForm form = {step.terms, step.lowest};
    const double* c = step.constants;
    keep<Stage::General>(polynomialValue(u, form.lowest, std::span(c, form.terms)), step, registers);
    for (unsigned i = 0; i < step.derivatives; ++i) {
        c += form.terms;
        form = form.derivative();
        registers[step.list[i]] = polynomialValue(u, form.lowest, std::span(c, form.terms));
    }
}

// --- Laws: polynomials whose form the compiler knows ----------------------------------------

// The normalised laws of motion begin at the power of the number of their terms or one
// below: 3-4-5 has three terms from the third power on, 5-6-7-8-9 five from the fifth.
// Their derivatives, as parts of longer programs, are here as well.
constexpr std::uint32_t kMostTerms = 5;

constexpr bool isLawForm(PolynomialForm form)
{
    return form.terms <= kMostTerms && (form.lowest == form.terms || form.lowest == form.terms - 1 ||
                                        form.lowest == 0 || form == PolynomialForm{1, 2});
}

// What happens to the x of a law: nothing, (x + first) / divisor, or (x + first) * factor + last,
// which is what is left of a stretch whose length is a power of two.
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

// The derivatives from the next one on, until there are no more.
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

// --- A whole program -------------------------------------------------------------------------

// These are what an integrator waits for at every step: x comes in a register of the
// processor, and they end where the result is known.

bool runInTurn(double, std::span<const Step> steps, double* registers, std::uint32_t result, double& value)
{
    run(steps, registers);
    return isFiniteInto(registers[result], value);
}

// A sine or an exponential with its derivatives is one step and multiples of its results.
bool isMultiple(const Step& step)
{
    return step.code == Code::Move && step.input == Stage::Linear && step.output == Stage::None;
}

[[gnu::always_inline]] inline void runMultiples(std::span<const Step> steps, double* registers)
{
    const Step& first = steps.front();
    first.run(first, registers);
    for (const Step& step : steps.subspan(1))
        registers[step.moved] = throughStage<Stage::Linear>(registers[step.a], step.before);
}

bool runWithMultiples(double, std::span<const Step> steps, double* registers, std::uint32_t result,
                      double& value)
{
    runMultiples(steps, registers);
    return isFiniteInto(registers[result], value);
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
bool runOnlyLaw(double x, std::span<const Step> steps, double* registers, std::uint32_t result, double& value)
{
    const Step& step = steps.front();
    const double target = keepLaw<terms, lowest>(lawOperand<stretch>(x, step, registers), step, registers);
    return isFiniteInto(result == step.target ? target : registers[result], value);
}

template <class Operation, Stage input, Stage output>
bool runOnly(double x, std::span<const Step> steps, double* registers, std::uint32_t result, double& value)
{
    const Step& step = steps.front();
    const double target = keep<output>(Operation(step)(operand<input>(x, step, registers)), step, registers);
    return isFiniteInto(result == step.target ? target : registers[result], value);
}

// --- All orders of a point -------------------------------------------------------------------

// What is not finite has no difference from itself.
double zeroWhereFinite(double value)
{
    return value - value;
}

[[gnu::cold, gnu::noinline]] void markBad(double* values, int highest)
{
    const auto isBad = [](double value) { return !std::isfinite(value); };
    std::replace_if(values, values + highest + 1, isBad, kNaN);
}

void runAllInTurn(const Program& program, double x, double* registers, double* values)
{
    const int highest = program.highestOrder();
    registers[0] = x;
    fillConstants(program, registers);
    run(program.steps(highest), registers);
    takeValues(program, highest, registers, values);
}

void runAllWithMultiples(const Program& program, double x, double* registers, double* values)
{
    const int highest = program.highestOrder();
    registers[0] = x;
    fillConstants(program, registers);
    runMultiples(program.steps(highest), registers);
    takeValues(program, highest, registers, values);
}

template <std::uint32_t terms, unsigned lowest, int order>
[[gnu::always_inline]] inline void takeLaw(double u, const double* c, double* values)
{
    values[order] = lawValue<terms, lowest>(u, c);
    constexpr PolynomialForm next = PolynomialForm{terms, lowest}.derivative();
    if constexpr (order < 3)
        takeLaw<next.terms, next.lowest, order + 1>(u, c + terms, values);
}

template <std::uint32_t terms, unsigned lowest, Stretch stretch>
void runAllOfLaw(const Program& program, double x, double*, double* values)
{
    const Step& law = program.steps(0).front();
    double orders[4];
    takeLaw<terms, lowest, 0>(stretched<stretch>(x, law.before), law.constants, orders);
    orders[0] = throughStage<Stage::Linear>(orders[0], law.after);
    std::copy_n(orders, 4, values);
    const double zeros = (zeroWhereFinite(orders[0]) + zeroWhereFinite(orders[1])) +
                         (zeroWhereFinite(orders[2]) + zeroWhereFinite(orders[3]));
    if (zeros != 0.0) [[unlikely]]
        markBad(values, 3);
}

// --- The choice ---------------------------------------------------------------------------

// Calls `of` with the stage as a constant of the compiler.
auto withStage(Stage stage, auto of)
{
    switch (stage) {
        case Stage::None:
            return of.template operator()<Stage::None>();
        case Stage::Linear:
            return of.template operator()<Stage::Linear>();
        case Stage::Shifted:
            return of.template operator()<Stage::Shifted>();
        default:
            return of.template operator()<Stage::General>();
    }
}

// The same where a division more does not count.
auto withAnyStage(Stage stage, auto of)
{
    return stage == Stage::None ? of.template operator()<Stage::None>()
                                : of.template operator()<Stage::General>();
}

template <class Operation>
Step::Run unary(const Step& step)
{
    return withStage(step.input, [&]<Stage input>() {
        return withStage(step.output,
                         []<Stage output>() { return Step::Run(runUnary<Operation, input, output>); });
    });
}

Step::Run move(const Step& step)
{
    return withStage(step.input, [&]<Stage input>() {
        return withAnyStage(step.output,
                            []<Stage output>() { return Step::Run(runUnary<Move, input, output>); });
    });
}

template <class Operation>
Step::Run rareUnary(const Step& step)
{
    return withAnyStage(step.input, [&]<Stage input>() {
        return withAnyStage(step.output,
                            []<Stage output>() { return Step::Run(runUnary<Operation, input, output>); });
    });
}

template <class Operation>
Step::Run binary(const Step& step)
{
    return withStage(step.output, []<Stage output>() { return Step::Run(runBinary<Operation, output>); });
}

template <class Operation>
Step::Run listed(const Step& step)
{
    return withAnyStage(step.output, []<Stage output>() { return Step::Run(runListed<Operation, output>); });
}

Step::Run sineWithCosine(const Step& step)
{
    return withStage(step.input, [&]<Stage input>() {
        return withStage(step.output, [&]<Stage output>() {
            return step.code == Code::SinCos ? Step::Run(runSinCos<input, output>) : runCosSin<input, output>;
        });
    });
}

// The functions of the laws in order of their forms, null where there is none.
constexpr std::size_t indexOf(PolynomialForm form)
{
    return (form.terms - 1) * (kMostTerms + 1) + form.lowest;
}
constexpr PolynomialForm formAt(std::size_t index)
{
    return {static_cast<std::uint32_t>(index / (kMostTerms + 1) + 1),
            static_cast<unsigned>(index % (kMostTerms + 1))};
}

// Among other steps the x of a law is that of the text.
template <std::size_t index>
constexpr Step::Run lawStepAt()
{
    constexpr PolynomialForm form = formAt(index);
    if constexpr (isLawForm(form))
        return runLaw<form.terms, form.lowest, Stretch::None>;
    return nullptr;
}

// A law is nearly always a program of its own, and then no polynomial with a constant term. An
// x that nothing happens to is scaled by 1, which changes no bit.
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

Step::Run runOfLaw(const Step& step)
{
    static constexpr auto kRuns = lawSteps(LawIndices());
    return isLaw(step) && step.input == Stage::None ? kRuns[indexOf({step.terms, step.lowest})] : nullptr;
}

// Nulls for a step that is not a law.
RunsOfLaw runsOfLaw(const Step& step)
{
    static constexpr auto kDivided = lawPrograms<Stretch::Divided>(LawIndices());
    static constexpr auto kScaled = lawPrograms<Stretch::Scaled>(LawIndices());
    if (!isLaw(step))
        return {};
    return (step.input == Stage::General ? kDivided : kScaled)[indexOf({step.terms, step.lowest})];
}

Step::Run polynomial(const Step& step)
{
    const Step::Run law = runOfLaw(step);
    return law != nullptr ? law : runPolynomial;
}

Step::Run runFor(const Step& step)
{
    switch (step.code) {
        case Code::Move:
            return move(step);
        case Code::Sum:
            return binary<Sum>(step);
        case Code::Product:
            return binary<Product>(step);
        case Code::Quotient:
            return binary<Quotient>(step);
        case Code::Polynomial:
            return polynomial(step);
        case Code::Chebyshev:
            return rareUnary<Chebyshev>(step);
        case Code::Call1:
            return unary<Call1>(step);
        case Code::Call2:
            return binary<Call2>(step);
        case Code::SinCos:
        case Code::CosSin:
            return sineWithCosine(step);
        case Code::ProductPlus:
            return listed<ProductPlus>(step);
        case Code::TwoProducts:
            return listed<TwoProducts>(step);
        case Code::ProductOver:
            return listed<ProductOver>(step);
        case Code::ProductPlusOver:
            return listed<ProductPlusOver>(step);
        case Code::ChooseLess:
            return listed<ChooseLess>(step);
        case Code::ChooseSign:
            return listed<ChooseSign>(step);
        case Code::ChooseStep:
            return listed<ChooseStep>(step);
    }
    return nullptr;
}

}  // namespace

std::shared_ptr<const Program> programOf(Draft draft)
{
    for (Draft::Entry& entry : draft.entries)
        entry.step.run = runFor(entry.step);
    return std::make_shared<const Program>(draft);
}

void takeValues(const Program& program, int highest, const double* registers, double* values)
{
    double zeros = 0.0;
    for (int k = 0; k <= highest; ++k) {
        const double value = registers[program.result(k)];
        zeros += zeroWhereFinite(value);
        values[k] = value;
    }
    if (zeros != 0.0) [[unlikely]]
        markBad(values, highest);
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

RunOrders ordersFor(const Program& program)
{
    const auto steps = program.steps(program.highestOrder());
    if (steps.size() > 1 && std::ranges::all_of(steps.subspan(1), isMultiple))
        return runAllWithMultiples;
    if (!isLawWithDerivatives(program))
        return runAllInTurn;
    const RunOrders law = runsOfLaw(steps.front()).asOrders;
    return law != nullptr ? law : runAllInTurn;
}

RunProgram runFor(std::span<const Step> steps)
{
    if (steps.size() > 1 && std::ranges::all_of(steps.subspan(1), isMultiple))
        return runWithMultiples;
    if (steps.size() != 1 || steps.front().a != 0)
        return runInTurn;
    const Step& step = steps.front();
    if (const RunProgram law = runsOfLaw(step).asProgram)
        return law;
    if (step.code != Code::Call1)
        return runInTurn;
    return withStage(step.input, [&]<Stage input>() {
        return withStage(step.output,
                         []<Stage output>() { return RunProgram(runOnly<Call1, input, output>); });
    });
}

}  // namespace mf::engine
