// SPDX-License-Identifier: MIT

// A crank that a curve drives, its rod and a slider, in Simbody; compared with the closed form.
//
//     slider_crank        prints the largest differences over 3 s, for a curve of each kind;
//                         exit status 1 if one is above 1e-8

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "adapters/simbody/CurveBreaks.h"
#include "adapters/simbody/CurveMotion.h"

namespace {

constexpr double kCrank = 0.1;  // metres
constexpr double kRod = 0.35;
constexpr double kEnd = 3.0;  // seconds

mf::Curve rows()
{
    mf::CurveDefinition definition;
    definition.shape = mf::SegmentShape{
        0.0,
        0.0,
        {{1.0, 2.0, "3-4-5-Polynomial"}, {1.5, 2.0, "Linear"}, {3.0, -1.0, "4-5-6-7-Polynomial"}},
        {},
        false};
    return mf::Curve(definition);
}

mf::Curve points()
{
    mf::CurveDefinition definition;
    definition.shape =
        mf::PointShape{{0.0, 0.5, 1.2, 2.0, 3.0}, {0.0, 0.8, 0.3, 1.5, 0.2}, mf::Interpolation::Cubic};
    return mf::Curve(definition);
}

mf::Curve expression()
{
    mf::CurveDefinition definition;
    definition.shape = mf::ExpressionShape{"1.5*sin(2*t)+0.4*t^2", 0.0, kEnd};
    return mf::Curve(definition);
}

struct Slider {
    double x, v, a;
};

// x = r cos(q) + sqrt(l^2 - r^2 sin(q)^2) and its time derivatives.
Slider closedForm(const mf::Curve& angle, double t)
{
    const mf::CurveValues q = angle.at(t, t < kEnd ? mf::Side::Plain : mf::Side::Left);
    const double s = std::sin(q.y);
    const double c = std::cos(q.y);
    const double root = std::sqrt(kRod * kRod - kCrank * kCrank * s * s);
    const double slope = -kCrank * s - kCrank * kCrank * s * c / root;
    const double bend = -kCrank * c - kCrank * kCrank * (c * c - s * s) / root -
                        std::pow(kCrank, 4) * s * s * c * c / (root * root * root);
    return {kCrank * c + root, slope * q.d1, slope * q.d2 + bend * q.d1 * q.d1};
}

double largestDifference(const mf::Curve& angle)
{
    using namespace SimTK;
    MultibodySystem system;
    SimbodyMatterSubsystem matter(system);
    const Body::Rigid body(MassProperties(1.0, Vec3(0), UnitInertia(0.01)));
    MobilizedBody::Pin crank(matter.Ground(), Transform(), body, Transform());
    MobilizedBody::Pin rod(crank, Transform(Vec3(kCrank, 0, 0)), body, Transform());
    const Vec3 tip(kRod, 0, 0);
    Constraint::PointInPlane guide(matter.Ground(), UnitVec3(YAxis), 0.0, rod, tip);
    mf::simbody::CurveMotion drive(crank, angle);
    system.addEventHandler(new mf::simbody::CurveBreaks(angle, 2));

    State state = system.realizeTopology();
    system.realizeModel(state);
    system.realize(state, Stage::Instance);
    RungeKuttaMersonIntegrator integrator(system);
    integrator.setAccuracy(1e-10);
    integrator.setConstraintTolerance(1e-11);
    TimeStepper stepper(system, integrator);
    stepper.initialize(state);

    double largest = 0.0;
    constexpr int kSteps = 300;
    for (int i = 1; i <= kSteps; ++i) {
        stepper.stepTo(kEnd * i / kSteps);
        const State& now = stepper.getState();
        system.realize(now, Stage::Acceleration);
        const Slider expected = closedForm(angle, now.getTime());
        largest = std::max({largest, std::fabs(rod.findStationLocationInGround(now, tip)[0] - expected.x),
                            std::fabs(rod.findStationVelocityInGround(now, tip)[0] - expected.v),
                            std::fabs(rod.findStationAccelerationInGround(now, tip)[0] - expected.a)});
    }
    return largest;
}

}  // namespace

int main()
{
    constexpr double kLimit = 1e-8;
    const struct {
        const char* name;
        mf::Curve curve;
    } drives[] = {{"rows", rows()}, {"points", points()}, {"expression", expression()}};
    bool good = true;
    for (const auto& drive : drives) {
        const double difference = largestDifference(drive.curve);
        std::printf("%s: %.2g\n", drive.name, difference);
        good &= difference <= kLimit;
    }
    return good ? 0 : 1;
}
