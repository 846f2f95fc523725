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
double smallPolynomial(double a, const Instruction& step, double*)
{
    return polynomialValue(a, lowest, std::span<const double, count>(step.constants, count));
}

using Operation = double (*)(double a, const Instruction& step, double* registers);

// A whole step. The compiler makes one function of it for each operation and each
// pair of stages.
template <Operation operation, Stage input, Stage output>
double runStep(const Instruction& step, double* registers)
{
    double a = registers[step.a];
    if constexpr (input != Stage::None)
        registers[step.moved] = a = throughStage<input>(a, step.inputConstants());
    const double value = operation(a, step, registers);
    registers[step.value] = value;
    if constexpr (output == Stage::None)
        return value;
    return registers[step.target] = throughStage<output>(value, step.outputConstants());
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

// runOf for each small polynomial, found by (count - 1) * kHighestLowest + lowest.
template <std::size_t... i>
constexpr auto runsOfSmallPolynomials(std::index_sequence<i...>)
{
    return std::array{
        &runOf<smallPolynomial<i / kHighestLowest + 1, static_cast<unsigned>(i % kHighestLowest)>>...};
}

Instruction::Run runOfPolynomial(const Instruction& step)
{
    static constexpr auto kSmall =
        runsOfSmallPolynomials(std::make_index_sequence<kMostTerms * kHighestLowest>());
    if (step.count > kMostTerms || step.lowest >= kHighestLowest)
        return runOf<polynomial>(step);
    return kSmall[(step.count - 1) * kHighestLowest + step.lowest](step);
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
