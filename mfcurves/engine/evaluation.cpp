#include "mfcurves/engine/evaluation.h"

#include "mfcurves/engine/values.h"

#include <cmath>
#include <span>

namespace mf::engine
{
namespace
{

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

// Both shapes run the same operations on each point, in loops that vanish for one
// point and that the compiler turns into vector instructions for many.
template <class Lanes>
void runOn(const Section& section, Lanes lanes)
{
    for (const Instruction& step : section.code) {
        double* __restrict target = lanes.at(step.target);
        const double* a = lanes.at(step.a);
        const double* b = lanes.at(step.b);
        const auto each = [&](auto value) {
            for (std::size_t i = 0; i < lanes.count(); ++i)
                target[i] = value(i);
        };
        const auto listed = [&](std::size_t i) { return lanes.at(section.lists[step.first + i]); };

        switch (step.code) {
            case Code::Affine: {
                const double c0 = step.c[0], c1 = step.c[1], c2 = step.c[2];
                each([=](std::size_t i) { return (a[i] + c0) * c1 + c2; });
                break;
            }
            case Code::Sum: {
                const double c0 = step.c[0], c1 = step.c[1];
                each([=](std::size_t i) { return c0 * a[i] + c1 * b[i]; });
                break;
            }
            case Code::Product: {
                const double c0 = step.c[0];
                each([=](std::size_t i) { return a[i] * b[i] * c0; });
                break;
            }
            case Code::Quotient: {
                const double c0 = step.c[0];
                each([=](std::size_t i) { return a[i] / b[i] * c0; });
                break;
            }
            case Code::Polynomial: {
                const double c0 = step.c[0], c1 = step.c[1];
                const std::span<const double> k(&section.coefficients[step.first], step.count);
                each([=, &step](std::size_t i) { return c0 + c1 * polynomialValue(a[i], step.lowest, k); });
                break;
            }
            case Code::Chebyshev: {
                const std::span<const double> k(&section.coefficients[step.first], step.count);
                each([=](std::size_t i) { return chebyshevValue(a[i], k); });
                break;
            }
            case Code::Call1:
                each([=, &step](std::size_t i) { return step.value1(a[i]); });
                break;
            case Code::Call2:
                each([=, &step](std::size_t i) { return step.value2(a[i], b[i]); });
                break;
            case Code::SinCos: {
                double* cosine = lanes.at(step.b);
                for (std::size_t i = 0; i < lanes.count(); ++i)
                    sineAndCosine(a[i], target[i], cosine[i]);
                break;
            }
            case Code::ChooseLess: {
                const double *p = listed(0), *q = listed(1), *r = listed(2), *s = listed(3);
                each([=](std::size_t i) { return chooseLessValue(p[i], q[i], r[i], s[i]); });
                break;
            }
            case Code::ChooseSign: {
                const double *c = listed(0), *n = listed(1), *z = listed(2), *p = listed(3);
                each([=](std::size_t i) { return chooseSignValue(c[i], n[i], z[i], p[i]); });
                break;
            }
            case Code::ChooseStep: {
                const double *x = listed(0), *x0 = listed(1), *x1 = listed(2);
                const double *before = listed(3), *between = listed(4), *after = listed(5);
                each([=](std::size_t i) {
                    return chooseStepValue(x[i], x0[i], x1[i], before[i], between[i], after[i]);
                });
                break;
            }
        }
    }
}

}  // namespace

void run(const Section& section, double* registers)
{
    runOn(section, Point{registers});
}

void runBlock(const Section& section, double* registers, std::size_t count)
{
    runOn(section, Block{registers, count});
}

}  // namespace mf::engine
