#include "mfcurves/engine/evaluation.h"

#include <cmath>
#include <type_traits>

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

// One point: every register is one number.
struct Point {
    double* registers;

    double* at(std::uint32_t number) const { return registers + number; }
    static constexpr std::size_t count() { return 1; }
};

// Points side by side: every register is a row of numbers.
struct Block {
    double* registers;
    std::size_t points;

    double* at(std::uint32_t number) const { return registers + number * kBlock; }
    std::size_t count() const { return points; }
};

// y[i] = value(i) for each point. The loop vanishes for one point; for many the
// compiler turns it into vector instructions.
template <class Lanes>
inline void each(Lanes lanes, double* __restrict y, auto value)
{
    for (std::size_t i = 0; i < lanes.count(); ++i)
        y[i] = value(i);
}

template <class Lanes>
inline void runStage(Lanes lanes, std::uint8_t parts, const double* c, const double* from, double* to)
{
    if constexpr (std::is_same_v<Lanes, Point>) {
        double v = *from;
        if ((parts & kAddFirst) != 0)
            v += c[0];
        if ((parts & kDivide) != 0)
            v /= c[1];
        if ((parts & kMultiply) != 0)
            v *= c[2];
        if ((parts & kAddLast) != 0)
            v += c[3];
        *to = v;
    } else {
        const double c0 = (parts & kAddFirst) != 0 ? c[0] : kNothing;
        const double c2 = (parts & kMultiply) != 0 ? c[2] : 1.0;
        const double c3 = (parts & kAddLast) != 0 ? c[3] : kNothing;
        if ((parts & kDivide) != 0) {
            const double c1 = c[1];
            each(lanes, to, [=](std::size_t i) { return (from[i] + c0) / c1 * c2 + c3; });
        } else {
            each(lanes, to, [=](std::size_t i) { return (from[i] + c0) * c2 + c3; });
        }
    }
}

// Small polynomials, which the laws of motion are, without a loop.
inline double hornerOf(double u, const double* k, std::uint32_t count)
{
    switch (count) {
        case 1:
            return k[0];
        case 2:
            return k[1] * u + k[0];
        case 3:
            return (k[2] * u + k[1]) * u + k[0];
        case 4:
            return ((k[3] * u + k[2]) * u + k[1]) * u + k[0];
        default: {
            double r = k[count - 1];
            for (std::uint32_t i = count - 1; i-- > 0;)
                r = r * u + k[i];
            return r;
        }
    }
}

inline double polynomialOf(double u, const double* k, std::uint32_t count, unsigned lowest)
{
    return timesPower(hornerOf(u, k, count), count, u, lowest);
}

// The same operations for each point, a few points at a time in the registers of
// the processor.
template <class Lanes>
inline void runPolynomial(Lanes lanes, const Instruction& step, const double* a, double* value)
{
    if constexpr (std::is_same_v<Lanes, Point>) {
        *value = polynomialOf(*a, step.constants, step.count, step.lowest);
    } else {
        constexpr std::size_t kWidth = 8;
        static_assert(kBlock % kWidth == 0);
        for (std::size_t first = 0; first < lanes.count(); first += kWidth) {
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
            if (step.lowest > largestPlainPower(step.count)) {
                for (std::size_t i = 0; i < kWidth; ++i)
                    value[first + i] = timesPower(r[i], step.count, u[i], step.lowest);
                continue;
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
}

template <class Lanes>
inline void runSteps(const std::vector<Instruction>& code, Lanes lanes)
{
    for (const Instruction& step : code) {
        const double* a = lanes.at(step.a);
        const double* b = lanes.at(step.b);
        double* value = lanes.at(step.value);
        if (step.input != 0) {
            double* moved = lanes.at(step.moved);
            runStage(lanes, step.input, step.inputConstants(), a, moved);
            a = moved;
        }
        const auto listed = [&](std::size_t i) { return lanes.at(step.list[i]); };

        switch (step.code) {
            case Code::Move:
                value = const_cast<double*>(a);
                break;
            case Code::Sum: {
                const double k0 = step.constants[0], k1 = step.constants[1];
                each(lanes, value, [=](std::size_t i) { return k0 * a[i] + k1 * b[i]; });
                break;
            }
            case Code::Product:
                each(lanes, value, [=](std::size_t i) { return a[i] * b[i]; });
                break;
            case Code::Quotient:
                each(lanes, value, [=](std::size_t i) { return a[i] / b[i]; });
                break;
            case Code::Polynomial:
                runPolynomial(lanes, step, a, value);
                break;
            case Code::Chebyshev:
                each(lanes, value, [=, &step](std::size_t i) {
                    return chebyshevValue(a[i], {step.constants, step.count});
                });
                break;
            case Code::Call1:
                each(lanes, value, [=, &step](std::size_t i) { return step.value1(a[i]); });
                break;
            case Code::Call2:
                each(lanes, value, [=, &step](std::size_t i) { return step.value2(a[i], b[i]); });
                break;
            case Code::SinCos: {
                double* cosine = lanes.at(step.b);
                for (std::size_t i = 0; i < lanes.count(); ++i)
                    sineAndCosine(a[i], value[i], cosine[i]);
                break;
            }
            case Code::CosSin: {
                double* sine = lanes.at(step.b);
                for (std::size_t i = 0; i < lanes.count(); ++i)
                    sineAndCosine(a[i], sine[i], value[i]);
                break;
            }
            case Code::ChooseLess: {
                const double *p = listed(0), *q = listed(1), *r = listed(2), *s = listed(3);
                each(lanes, value, [=](std::size_t i) { return chooseLessValue(p[i], q[i], r[i], s[i]); });
                break;
            }
            case Code::ChooseSign: {
                const double *c = listed(0), *n = listed(1), *z = listed(2), *p = listed(3);
                each(lanes, value, [=](std::size_t i) { return chooseSignValue(c[i], n[i], z[i], p[i]); });
                break;
            }
            case Code::ChooseStep: {
                const double *x = listed(0), *x0 = listed(1), *x1 = listed(2);
                const double *before = listed(3), *between = listed(4), *after = listed(5);
                each(lanes, value, [=](std::size_t i) {
                    return chooseStepValue(x[i], x0[i], x1[i], before[i], between[i], after[i]);
                });
                break;
            }
        }
        if (step.output != 0)
            runStage(lanes, step.output, step.outputConstants(), step.code == Code::Move ? a : value,
                     lanes.at(step.target));
    }
}

}  // namespace

void run(const std::vector<Instruction>& code, double* registers)
{
    runSteps(code, Point{registers});
}

void runBlock(const std::vector<Instruction>& code, double* registers, std::size_t count)
{
    runSteps(code, Block{registers, count});
}

}  // namespace mf::engine
