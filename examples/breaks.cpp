// SPDX-License-Identifier: MIT

// Why an integrator must know the breaks of a curve.
//
// A force pulse of 20 ms acts on a mass of 1 kg at rest. The final velocity is the integral of the
// force. An adaptive Runge-Kutta method takes long steps where nothing happens and steps over the
// pulse, unless it stops at the breaks of the curve.

#include <cmath>
#include <cstdio>
#include <optional>

#include "mfcurves/mfcurves.h"

namespace {

// The force in newtons over time in seconds: 0, then 50 N from 3.33 s to 3.35 s, then 0.
mf::Curve pulse()
{
    mf::CurveDefinition definition;
    definition.shape = mf::ExpressionShape{"if(x-3.33: 0, 50, if(x-3.35: 50, 0, 0))", 0.0, 10.0};
    definition.quantity = mf::Quantity::Force;
    return mf::Curve(definition);
}

struct State {
    double velocity = 0.0;
    int steps = 0;
};

// One step of the method of Bogacki and Shampine (Appl. Math. Lett. 2 (1989)) for v' = F(t) / 1 kg:
// the increment of third order, and its distance from that of second order. At both ends the force is
// evaluated from the side of the step.
double increment(const mf::Curve& force, double t, double h, double& error)
{
    const double k1 = force.at(t, mf::Side::Right).y;
    const double k2 = force(t + 0.5 * h);
    const double k3 = force(t + 0.75 * h);
    const double k4 = force.at(t + h, mf::Side::Left).y;
    const double third = h * (2.0 * k1 + 3.0 * k2 + 4.0 * k3) / 9.0;
    const double second = h * (7.0 * k1 + 6.0 * k2 + 8.0 * k3 + 3.0 * k4) / 24.0;
    error = std::fabs(third - second);
    return third;
}

void integrate(const mf::Curve& force, double from, double to, State& state)
{
    constexpr double kTolerance = 1e-9;
    double h = 0.1 * (to - from);
    for (double t = from; t < to;) {
        const bool isLast = t + h >= to;
        if (isLast)
            h = to - t;
        double error = 0.0;
        const double gained = increment(force, t, h, error);
        if (error <= kTolerance || h < 1e-12) {
            state.velocity += gained;
            t = isLast ? to : t + h;
            ++state.steps;
        }
        h *= error > 0.0 ? std::fmin(5.0, 0.9 * std::cbrt(kTolerance / error)) : 5.0;
    }
}

}  // namespace

int main()
{
    constexpr double kExact = 1.0;  // 50 N for 20 ms on 1 kg, in m/s
    const mf::Curve force = pulse();

    State withoutBreaks;
    integrate(force, 0.0, 10.0, withoutBreaks);

    State withBreaks;
    double t = 0.0;
    while (t < 10.0) {
        const std::optional<double> next = mf::analysis::nextBreak(force, t, 0);
        const double stop = std::fmin(next.value_or(10.0), 10.0);
        integrate(force, t, stop, withBreaks);
        t = stop;
    }

    std::printf("exact         %.9f m/s\n", kExact);
    std::printf("without breaks %.9f m/s in %d steps\n", withoutBreaks.velocity, withoutBreaks.steps);
    std::printf("with breaks    %.9f m/s in %d steps\n", withBreaks.velocity, withBreaks.steps);
    const bool missed = std::fabs(withoutBreaks.velocity - kExact) > 0.5;
    const bool met = std::fabs(withBreaks.velocity - kExact) <= 1e-6;
    return missed && met ? 0 : 1;
}
