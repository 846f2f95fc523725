#include "mfcurves/engine/evaluation.h"

#include <array>
#include <cmath>
#include <utility>

#include "mfcurves/engine/smallPolynomials.h"
#include "mfcurves/engine/stages.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

// --- One point ---------------------------------------------------------------------------

// One function for each operation: its value for operand a, the other operands
// being in registers.

double move(double a, const Instruction&, double*)
{
    return a;
}

double sum(double a, const Instruction& step, double* registers)
{
    return step.constants[0] * a + step.constants[1] * registers[step.b];
}

double product(double a, const Instruction& step, double* registers)
{
    return a * registers[step.b];
}

double quotient(double a, const Instruction& step, double* registers)
{
    return a / (registers[step.b] + step.constants[0]);
}

double polynomial(double a, const Instruction& step, double*)
{
    return polynomialValue(a, step.lowest, {step.constants, step.count});
}

double chebyshev(double a, const Instruction& step, double*)
{
    return chebyshevValue(a, {step.constants, step.count});
}

double call1(double a, const Instruction& step, double*)
{
    return step.value1(a);
}

double call2(double a, const Instruction& step, double* registers)
{
    return step.value2(a, registers[step.b]);
}

double sinCos(double a, const Instruction& step, double* registers)
{
    double sine;
    sineAndCosine(a, sine, registers[step.b]);
    return sine;
}

double cosSin(double a, const Instruction& step, double* registers)
{
    double cosine;
    sineAndCosine(a, registers[step.b], cosine);
    return cosine;
}

double chooseLess(double, const Instruction& step, double* registers)
{
    const auto at = [&](std::size_t i) { return registers[step.list[i]]; };
    return chooseLessValue(at(0), at(1), at(2), at(3));
}

double chooseSign(double, const Instruction& step, double* registers)
{
    const auto at = [&](std::size_t i) { return registers[step.list[i]]; };
    return chooseSignValue(at(0), at(1), at(2), at(3));
}

double chooseStep(double, const Instruction& step, double* registers)
{
    const auto at = [&](std::size_t i) { return registers[step.list[i]]; };
    return chooseStepValue(at(0), at(1), at(2), at(3), at(4), at(5));
}

// The operations of polynomialValue, with counts that the compiler knows.
template <std::size_t count, unsigned lowest>
[[gnu::always_inline]] inline double smallPolynomial(double a, const Instruction& step, double*)
{
    return polynomialValue(a, lowest, std::span<const double, count>(step.constants, count));
}

using Operation = double (*)(double a, const Instruction& step, double* registers);

// The compiler makes one function of a whole step for each operation and each pair
// of stages.
template <Operation operation, Stage input, Stage output>
void runStep(const Instruction& step, double* registers)
{
    double a = registers[step.a];
    if constexpr (input != Stage::None)
        registers[step.moved] = a = throughStage<input>(a, step.inputConstants());
    const double value = operation(a, step, registers);
    registers[step.value] = value;
    if constexpr (output != Stage::None)
        registers[step.target] = throughStage<output>(value, step.outputConstants());
}

template <Operation operation, Stage input>
Instruction::Run runWithInput(Stage output)
{
    switch (output) {
        case Stage::None:
            return runStep<operation, input, Stage::None>;
        case Stage::Scale:
            return runStep<operation, input, Stage::Scale>;
        case Stage::Shift:
            return runStep<operation, input, Stage::Shift>;
        default:
            return runStep<operation, input, Stage::General>;
    }
}

template <Operation operation>
Instruction::Run runOf(const Instruction& step)
{
    switch (step.input) {
        case Stage::None:
            return runWithInput<operation, Stage::None>(step.output);
        case Stage::Times:
            return runWithInput<operation, Stage::Times>(step.output);
        case Stage::Shift:
            return runWithInput<operation, Stage::Shift>(step.output);
        case Stage::Divide:
            return runWithInput<operation, Stage::Divide>(step.output);
        default:
            return runWithInput<operation, Stage::General>(step.output);
    }
}

template <std::size_t... i>
constexpr auto runsOfSmallPolynomials(std::index_sequence<i...>)
{
    return std::array{&runOf<smallPolynomial<termsAt(i), lowestAt(i)>>...};
}

Instruction::Run runOfPolynomial(const Instruction& step)
{
    static constexpr auto kSmall = runsOfSmallPolynomials(SmallPolynomialIndices());
    return isSmallPolynomial(step) ? kSmall[smallPolynomialIndex(step)](step) : runOf<polynomial>(step);
}

// --- A whole program at one point -----------------------------------------------------------

// These are what an integrator waits for at every step: they end where the answer is
// known, and x comes in a register of the processor.

bool runInTurn(double, const Instruction& first, double* registers, double& result, double& answer)
{
    const Instruction* step = &first;
    step->run(*step, registers);
    while (!step->isLast) {
        ++step;
        step->run(*step, registers);
    }
    return answerWith(result, answer);
}

template <std::size_t count>
bool runSteps(double, const Instruction& first, double* registers, double& result, double& answer)
{
    const Instruction* step = &first;
    [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        (step[i].run(step[i], registers), ...);
    }
    (std::make_index_sequence<count>());
    return answerWith(result, answer);
}

constexpr std::size_t kMostStepsAtOnce = 12;

template <std::size_t... i>
RunProgram runForSteps(std::size_t count, std::index_sequence<i...>)
{
    static constexpr RunProgram kRuns[] = {runSteps<i + 1>...};
    return count <= kMostStepsAtOnce ? kRuns[count - 1] : runInTurn;
}

// A program of one step on x, which is there for what that step comes to.
template <Operation operation, Stage input, Stage output>
bool runAlone(double x, const Instruction& step, double* registers, double& result, double& answer)
{
    if constexpr (input != Stage::None)
        x = throughStage<input>(x, step.inputConstants());
    double value = operation(x, step, registers);
    if constexpr (output != Stage::None)
        value = throughStage<output>(value, step.outputConstants());
    result = value;
    return answerWith(value, answer);
}

template <Operation operation, Stage input>
RunProgram runAloneWithInput(Stage output)
{
    return output == Stage::None    ? runAlone<operation, input, Stage::None>
           : output == Stage::Scale ? runAlone<operation, input, Stage::Scale>
                                    : nullptr;
}

template <Operation operation>
RunProgram runAloneOf(const Instruction& step)
{
    switch (step.input) {
        case Stage::None:
            return runAloneWithInput<operation, Stage::None>(step.output);
        case Stage::Times:
            return runAloneWithInput<operation, Stage::Times>(step.output);
        case Stage::Shift:
            return runAloneWithInput<operation, Stage::Shift>(step.output);
        case Stage::Divide:
            return runAloneWithInput<operation, Stage::Divide>(step.output);
        default:
            return runAloneWithInput<operation, Stage::General>(step.output);
    }
}

// What an integrator asks for at each x: a scaled polynomial and, in the steps
// behind it, its first derivatives. Their shapes follow from its own, so that the
// compiler makes one function of all of them.
template <std::size_t terms, unsigned lowestPower>
struct Shape {
    static constexpr std::size_t count = terms;
    static constexpr unsigned lowest = lowestPower;
    static constexpr std::size_t degree = terms - 1 + lowestPower;
    using Derivative = Shape<lowestPower == 0 ? terms - 1 : terms, lowestPower == 0 ? 0 : lowestPower - 1>;
};

// Whether the steps are a polynomial of this shape and its derivatives.
template <typename S>
bool areDerivatives(std::span<const Instruction> steps, std::uint32_t operand)
{
    if (steps.empty())
        return true;
    const Instruction& step = steps.front();
    if (step.code != Code::Polynomial || step.a != operand || step.input != Stage::None ||
        step.output != Stage::None || step.count != S::count || step.lowest != S::lowest)
        return false;
    if constexpr (S::degree == 0)
        return steps.size() == 1;
    else
        return areDerivatives<typename S::Derivative>(steps.subspan(1), operand);
}

template <typename S, std::size_t count>
[[gnu::always_inline]] inline void doDerivatives(double a, const Instruction* step, double* registers)
{
    registers[step->value] = smallPolynomial<S::count, S::lowest>(a, *step, registers);
    if constexpr (count > 1)
        doDerivatives<typename S::Derivative, count - 1>(a, step + 1, registers);
}

template <typename S, Stage input, std::size_t derivatives>
bool runLaw(double x, const Instruction& law, double* registers, double& result, double& answer)
{
    if constexpr (input != Stage::None)
        registers[law.moved] = x = throughStage<input>(x, law.inputConstants());
    const double value = smallPolynomial<S::count, S::lowest>(x, law, registers);
    registers[law.value] = value;
    registers[law.target] = throughStage<Stage::Scale>(value, law.outputConstants());
    doDerivatives<typename S::Derivative, derivatives>(x, &law + 1, registers);
    return answerWith(result, answer);
}

template <typename S, Stage input>
RunProgram runForLaw(std::span<const Instruction> code)
{
    if constexpr (S::degree > 0) {
        if (!areDerivatives<typename S::Derivative>(code.subspan(1),
                                                    input == Stage::None ? code[0].a : code[0].moved))
            return nullptr;
        if (code.size() == 2)
            return runLaw<S, input, 1>;
        if constexpr (S::degree > 1) {
            if (code.size() == 3)
                return runLaw<S, input, 2>;
        }
        if constexpr (S::degree > 2) {
            if (code.size() == 4)
                return runLaw<S, input, 3>;
        }
    }
    return nullptr;
}

template <typename S>
RunProgram runForLawOf(std::span<const Instruction> code)
{
    switch (code.front().input) {
        case Stage::None:
            return runForLaw<S, Stage::None>(code);
        case Stage::Times:
            return runForLaw<S, Stage::Times>(code);
        case Stage::Shift:
            return runForLaw<S, Stage::Shift>(code);
        case Stage::Divide:
            return runForLaw<S, Stage::Divide>(code);
        default:
            return runForLaw<S, Stage::General>(code);
    }
}

// What there is for programs that begin with a polynomial of this shape.
struct RunsOfShape {
    RunProgram (*alone)(const Instruction& step);
    RunProgram (*law)(std::span<const Instruction> code);
};

template <std::size_t... i>
constexpr auto runsOfShapes(std::index_sequence<i...>)
{
    constexpr auto of = []<typename S>(S) {
        return RunsOfShape{runAloneOf<smallPolynomial<S::count, S::lowest>>, runForLawOf<S>};
    };
    return std::array{of(Shape<termsAt(i), lowestAt(i)>())...};
}

// For programs that begin with an operation on x; null for most.
RunProgram runForOperation(std::span<const Instruction> code, std::uint32_t result)
{
    static constexpr auto kShapes = runsOfShapes(SmallPolynomialIndices());
    const Instruction& first = code.front();
    if (first.a != 0)
        return nullptr;
    const bool isAlone =
        code.size() == 1 && result == (first.output == Stage::None ? first.value : first.target);
    if (isAlone && first.code == Code::Call1)
        return runAloneOf<call1>(first);
    if (!isSmallPolynomial(first))
        return nullptr;
    const RunsOfShape& shape = kShapes[smallPolynomialIndex(first)];
    if (isAlone)
        return shape.alone(first);
    return first.output == Stage::Scale ? shape.law(code) : nullptr;
}

}  // namespace

Instruction::Run runFor(const Instruction& step)
{
    switch (step.code) {
        case Code::Move:
            return runOf<move>(step);
        case Code::Sum:
            return runOf<sum>(step);
        case Code::Product:
            return runOf<product>(step);
        case Code::Quotient:
            return runOf<quotient>(step);
        case Code::Polynomial:
            return runOfPolynomial(step);
        case Code::Chebyshev:
            return runOf<chebyshev>(step);
        case Code::Call1:
            return runOf<call1>(step);
        case Code::Call2:
            return runOf<call2>(step);
        case Code::SinCos:
            return runOf<sinCos>(step);
        case Code::CosSin:
            return runOf<cosSin>(step);
        case Code::ChooseLess:
            return runOf<chooseLess>(step);
        case Code::ChooseSign:
            return runOf<chooseSign>(step);
        case Code::ChooseStep:
            return runOf<chooseStep>(step);
    }
    return nullptr;
}

RunProgram runForProgram(std::span<const Instruction> code, std::uint32_t result)
{
    const RunProgram run = runForOperation(code, result);
    return run != nullptr ? run : runForSteps(code.size(), std::make_index_sequence<kMostStepsAtOnce>());
}

}  // namespace mf::engine
