#include "mfcurves/engine/evaluation.h"

#include <array>
#include <cmath>
#include <utility>

#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

// Sine and cosine by one call, which shares the reduction of the argument.
void sineAndCosine(double x, double& sine, double& cosine)
{
#ifdef __GLIBC__
    ::sincos(x, &sine, &cosine);
#else
    sine = std::sin(x);
    cosine = std::cos(x);
#endif
}

// --- One point ---------------------------------------------------------------------------

template <Stage stage>
inline double throughStage(double v, const double* c)
{
    switch (stage) {
        case Stage::None:
            return v;
        case Stage::Scale:
            return v * c[2] + c[3];
        case Stage::Times:
            return (v + c[0]) * c[2];
        case Stage::Shift:
            return (v + c[0]) * c[2] + c[3];
        case Stage::Divide:
            return (v + c[0]) / c[1];
        case Stage::General:
            return (v + c[0]) / c[1] * c[2] + c[3];
    }
}

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

// Polynomials of a few terms, which laws of motion and their derivatives are: the
// operations of polynomialValue, with counts that the compiler knows.
template <std::size_t count, unsigned lowest>
[[gnu::always_inline]] inline double smallPolynomial(double a, const Instruction& step, double*)
{
    return polynomialValue(a, lowest, std::span<const double, count>(step.constants, count));
}

using Operation = double (*)(double a, const Instruction& step, double* registers);

template <Operation operation, Stage input, Stage output>
[[gnu::always_inline]] inline void doStep(const Instruction& step, double* registers)
{
    double a = registers[step.a];
    if constexpr (input != Stage::None)
        registers[step.moved] = a = throughStage<input>(a, step.inputConstants());
    const double value = operation(a, step, registers);
    registers[step.value] = value;
    if constexpr (output != Stage::None)
        registers[step.target] = throughStage<output>(value, step.outputConstants());
}

// The compiler makes one function of a whole step for each operation and each pair
// of stages.
template <Operation operation, Stage input, Stage output>
void runStep(const Instruction& step, double* registers)
{
    doStep<operation, input, output>(step, registers);
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

constexpr std::size_t kMostTerms = 4;
constexpr std::size_t kHighestLowest = 4;

bool isSmallPolynomial(const Instruction& step)
{
    return step.code == Code::Polynomial && step.count <= kMostTerms && step.lowest < kHighestLowest;
}

std::size_t smallPolynomialIndex(const Instruction& step)
{
    return (step.count - 1) * kHighestLowest + step.lowest;
}

using SmallPolynomialIndices = std::make_index_sequence<kMostTerms * kHighestLowest>;

template <std::size_t... i>
constexpr auto runsOfSmallPolynomials(std::index_sequence<i...>)
{
    return std::array{
        &runOf<smallPolynomial<i / kHighestLowest + 1, static_cast<unsigned>(i % kHighestLowest)>>...};
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
    return std::array{of(Shape<i / kHighestLowest + 1, static_cast<unsigned>(i % kHighestLowest)>())...};
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

// --- Points side by side -------------------------------------------------------------------

// A register is a row of kBlock numbers.
double* rowOf(double* registers, std::uint32_t number)
{
    return registers + number * kBlock;
}

// y[i] = value(i) for each point, a loop that the compiler turns into vector
// instructions where the operation allows it.
void each(std::size_t count, double* __restrict y, auto value)
{
    for (std::size_t i = 0; i < count; ++i)
        y[i] = value(i);
}

template <Stage stage>
void rowThrough(std::size_t count, const double* c, const double* from, double* to)
{
    const double k[kStageConstants] = {c[0], c[1], c[2], c[3]};
    each(count, to, [&](std::size_t i) { return throughStage<stage>(from[i], k); });
}

void rowThroughStage(std::size_t count, Stage stage, const double* c, const double* from, double* to)
{
    switch (stage) {
        case Stage::None:
            break;
        case Stage::Scale:
            return rowThrough<Stage::Scale>(count, c, from, to);
        case Stage::Times:
            return rowThrough<Stage::Times>(count, c, from, to);
        case Stage::Shift:
            return rowThrough<Stage::Shift>(count, c, from, to);
        case Stage::Divide:
            return rowThrough<Stage::Divide>(count, c, from, to);
        case Stage::General:
            return rowThrough<Stage::General>(count, c, from, to);
    }
}

// The operations of polynomialValue on a few points at a time, which stay in the
// registers of the processor.
void rowOfPolynomial(std::size_t count, const Instruction& step, const double* a, double* value)
{
    constexpr std::size_t kWidth = 8;
    static_assert(kBlock % kWidth == 0, "the last few points end where the row does");
    if (step.lowest > largestPlainPower(step.count)) {
        each(count, value, [&](std::size_t i) {
            return polynomialValue(a[i], step.lowest, {step.constants, step.count});
        });
        return;
    }
    for (std::size_t first = 0; first < count; first += kWidth) {
        double u[kWidth];
        double r[kWidth];
        for (std::size_t i = 0; i < kWidth; ++i) {
            u[i] = a[first + i];
            r[i] = step.constants[step.count - 1];
        }
        for (std::uint32_t j = step.count - 1; j-- > 0;) {
            const double k = step.constants[j];
            for (std::size_t i = 0; i < kWidth; ++i)
                r[i] = r[i] * u[i] + k;
        }
        for (unsigned exponent = step.lowest; exponent != 0; exponent >>= 1) {
            for (std::size_t i = 0; i < kWidth; ++i) {
                r[i] = (exponent & 1) != 0 ? r[i] * u[i] : r[i];
                u[i] *= u[i];
            }
        }
        for (std::size_t i = 0; i < kWidth; ++i)
            value[first + i] = r[i];
    }
}

void rowOfOperation(std::size_t count, const double* a, const Instruction& step, double* registers)
{
    const double* b = rowOf(registers, step.b);
    double* value = rowOf(registers, step.value);
    const auto listed = [&](std::size_t i) { return rowOf(registers, step.list[i]); };
    switch (step.code) {
        case Code::Move:
            break;
        case Code::Sum: {
            const double k0 = step.constants[0], k1 = step.constants[1];
            each(count, value, [=](std::size_t i) { return k0 * a[i] + k1 * b[i]; });
            break;
        }
        case Code::Product:
            each(count, value, [=](std::size_t i) { return a[i] * b[i]; });
            break;
        case Code::Quotient: {
            const double k0 = step.constants[0];
            each(count, value, [=](std::size_t i) { return a[i] / (b[i] + k0); });
            break;
        }
        case Code::Polynomial:
            rowOfPolynomial(count, step, a, value);
            break;
        case Code::Chebyshev:
            each(count, value, [&](std::size_t i) {
                return chebyshevValue(a[i], {step.constants, step.count});
            });
            break;
        case Code::Call1:
            each(count, value, [&](std::size_t i) { return step.value1(a[i]); });
            break;
        case Code::Call2:
            each(count, value, [&](std::size_t i) { return step.value2(a[i], b[i]); });
            break;
        case Code::SinCos:
            for (std::size_t i = 0; i < count; ++i)
                sineAndCosine(a[i], value[i], rowOf(registers, step.b)[i]);
            break;
        case Code::CosSin:
            for (std::size_t i = 0; i < count; ++i)
                sineAndCosine(a[i], rowOf(registers, step.b)[i], value[i]);
            break;
        case Code::ChooseLess: {
            const double *p = listed(0), *q = listed(1), *r = listed(2), *s = listed(3);
            each(count, value, [=](std::size_t i) { return chooseLessValue(p[i], q[i], r[i], s[i]); });
            break;
        }
        case Code::ChooseSign: {
            const double *c = listed(0), *n = listed(1), *z = listed(2), *p = listed(3);
            each(count, value, [=](std::size_t i) { return chooseSignValue(c[i], n[i], z[i], p[i]); });
            break;
        }
        case Code::ChooseStep: {
            const double *x = listed(0), *x0 = listed(1), *x1 = listed(2);
            const double *before = listed(3), *between = listed(4), *after = listed(5);
            each(count, value, [=](std::size_t i) {
                return chooseStepValue(x[i], x0[i], x1[i], before[i], between[i], after[i]);
            });
            break;
        }
    }
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

void runBlock(std::span<const Instruction> code, double* registers, std::size_t count)
{
    for (const Instruction& step : code) {
        const double* a = rowOf(registers, step.a);
        if (step.input != Stage::None) {
            double* moved = rowOf(registers, step.moved);
            rowThroughStage(count, step.input, step.inputConstants(), a, moved);
            a = moved;
        }
        rowOfOperation(count, a, step, registers);
        if (step.output != Stage::None)
            rowThroughStage(count, step.output, step.outputConstants(), rowOf(registers, step.value),
                            rowOf(registers, step.target));
    }
}

}  // namespace mf::engine
