#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include "mfcurves/engine/evaluation.h"
#include "mfcurves/engine/smallPolynomials.h"
#include "mfcurves/engine/stages.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

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

template <std::size_t terms, unsigned lowest>
void rowOfSmallPolynomial(std::size_t count, const double* constants, const double* a, double* value)
{
    std::array<double, terms> k;
    std::copy_n(constants, terms, k.begin());
    each(count, value,
         [&](std::size_t i) { return polynomialValue(a[i], lowest, std::span<const double, terms>(k)); });
}

template <std::size_t... i>
constexpr auto rowsOfSmallPolynomials(std::index_sequence<i...>)
{
    return std::array{&rowOfSmallPolynomial<termsAt(i), lowestAt(i)>...};
}

// The operations of polynomialValue on a few points at a time, which stay in the
// registers of the processor.
void rowOfPolynomial(std::size_t count, const Instruction& step, const double* a, double* value)
{
    static constexpr auto kSmall = rowsOfSmallPolynomials(SmallPolynomialIndices());
    if (isSmallPolynomial(step))
        return kSmall[smallPolynomialIndex(step)](count, step.constants, a, value);
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
