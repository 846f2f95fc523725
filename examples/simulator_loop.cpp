// SPDX-License-Identifier: MIT

// A mass on a spring whose other end follows a motion function: the loop of a
// simulator that evaluates the value and velocity of a curve at each step of an
// integrator.
//
// The support moves by a smooth step. A spring (N/mm) and a damper (N s/mm) connect
// the mass (kg) to it. Long after the step, the mass is at rest at the position of
// the support.

#include <cmath>
#include <cstdio>

#include "mfcurves/mfcurves.h"

namespace {

constexpr double kMass = 2.0;
constexpr double kSpring = 200.0;
constexpr double kDamper = 20.0;
constexpr double kStroke = 25.0;
constexpr double kTimeStep = 1e-3;
constexpr int kSteps = 4000;

struct State {
    double position = 0.0;
    double velocity = 0.0;
};

double acceleration(const mf::Curve& support, double time, const State& state)
{
    const mf::CurveValues at = support.at(time);  // all orders in one call
    const double stretch = at.y - state.position;
    const double speed = at.d1 - state.velocity;
    return (kSpring * stretch + kDamper * speed) / kMass;
}

// One step of the midpoint rule.
State advanced(const mf::Curve& support, double time, const State& state)
{
    const double half = kTimeStep / 2.0;
    const State middle{state.position + half * state.velocity,
                       state.velocity + half * acceleration(support, time, state)};
    return {state.position + kTimeStep * middle.velocity,
            state.velocity + kTimeStep * acceleration(support, time + half, middle)};
}

}  // namespace

int main()
{
    mf::CurveDefinition definition;
    definition.shape =
        mf::CurveDefinition::Expression{"step5(time, 0.5, 0, 1.5, 25)", 0.0, kSteps * kTimeStep};
    const mf::Curve support(definition);

    State state;
    std::printf("time support mass\n");
    for (int i = 0; i < kSteps; ++i) {
        const double time = i * kTimeStep;
        if (i % 500 == 0)
            std::printf("%4.2f %8.4f %8.4f\n", time, support(time), state.position);
        state = advanced(support, time, state);
    }
    return std::fabs(state.position - kStroke) < 1e-3 ? 0 : 1;
}
