// SPDX-License-Identifier: MIT

#include "mfcurves/engine/evaluation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "mfcurves/engine/operations.h"
#include "mfcurves/engine/shortPrograms.h"
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

// Stores the value of an operation, applies the output stage, and returns the content of the
// target register.
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

// A polynomial with any number of terms, and its derivatives. The constants of a missing stage
// are neutral and change no bit.
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

// --- A whole program -------------------------------------------------------------------------

// An integrator waits for these functions at every step: x comes in a register of the
// processor, and they return as soon as the result is known.

bool runInTurn(double, std::span<const Step> steps, double* registers, std::uint32_t result, double& value)
{
    run(steps, registers);
    return isFiniteInto(registers[result], value);
}

void runAllInTurn(const Program& program, double x, double* registers, double* values)
{
    const int highest = program.highestOrder();
    registers[0] = x;
    fillConstants(program, registers);
    run(program.steps(highest), registers);
    takeValues(program, highest, registers, values);
}

// --- The choice ---------------------------------------------------------------------------

// Calls `of` with the stage as a compile-time constant.
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

// The same for operations where one more division does not matter.
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

void markBad(double* values, int highest)
{
    const auto isBad = [](double value) { return !std::isfinite(value); };
    std::replace_if(values, values + highest + 1, isBad, kNaN);
}

int countFinite(const double* values, int highest)
{
    const auto isFinite = [](double value) { return std::isfinite(value); };
    return static_cast<int>(std::find_if_not(values, values + highest + 1, isFinite) - values);
}

RunOrders ordersFor(const Program& program)
{
    const RunOrders quick = ordersOfShortProgram(program);
    return quick != nullptr ? quick : runAllInTurn;
}

RunProgram runFor(const Program& program, int highest)
{
    const RunProgram quick = runOfShortProgram(program, highest);
    return quick != nullptr ? quick : runInTurn;
}

}  // namespace mf::engine
