// SPDX-License-Identifier: MIT

// A force pulse of 20 ms on a mass of 1 kg in Simbody. An integrator that does not know the curve's
// breaks steps over the pulse; one that stops at them does not.
//
//     pulse        prints both velocities; exit status 1 unless the first misses the pulse and
//                  the second is within 1e-6 of the exact 1 m/s

#include <cmath>
#include <cstdio>

#include "adapters/simbody/CurveBreaks.h"
#include "adapters/simbody/CurveFunction.h"

namespace {

mf::Curve pulseForce()
{
    mf::CurveDefinition definition;
    definition.shape = mf::ExpressionShape{"if(x-3.33: 0, 50, if(x-3.35: 50, 0, 0))", 0.0, 10.0};
    definition.quantity = mf::Quantity::Force;
    return mf::Curve(definition);
}

// A force along the one coordinate of a slider, from a function of time.
class TimedForce : public SimTK::Force::Custom::Implementation {
public:
    TimedForce(const SimTK::MobilizedBody& body, const mf::Curve& curve) : body_(body), force_(curve) {}

    void calcForce(const SimTK::State& state, SimTK::Vector_<SimTK::SpatialVec>&,
                   SimTK::Vector_<SimTK::Vec3>&, SimTK::Vector& mobilityForces) const override
    {
        body_.applyOneMobilityForce(state, 0, force_.calcValue(SimTK::Vector(1, state.getTime())),
                                    mobilityForces);
    }
    SimTK::Real calcPotentialEnergy(const SimTK::State&) const override { return 0.0; }

private:
    SimTK::MobilizedBody body_;
    mf::simbody::CurveFunction force_;
};

double velocityAfter(const mf::Curve& force, bool withBreaks)
{
    using namespace SimTK;
    MultibodySystem system;
    SimbodyMatterSubsystem matter(system);
    GeneralForceSubsystem forces(system);
    const Body::Rigid body(MassProperties(1.0, Vec3(0), UnitInertia(0.01)));
    MobilizedBody::Slider mass(matter.Ground(), Transform(), body, Transform());
    Force::Custom applied(forces, new TimedForce(mass, force));
    if (withBreaks)
        system.addEventHandler(new mf::simbody::CurveBreaks(force, 0));

    RungeKuttaMersonIntegrator integrator(system);
    integrator.setAccuracy(1e-9);
    TimeStepper stepper(system, integrator);
    stepper.initialize(system.realizeTopology());
    stepper.stepTo(10.0);
    return mass.getOneU(stepper.getState(), 0);
}

// True when the function object has the curve's values and derivatives.
bool hasTheDerivatives()
{
    mf::CurveDefinition definition;
    definition.shape = mf::ExpressionShape{"sin(2*x)", 0.0, 3.0};
    const mf::Curve curve(definition);
    const mf::simbody::CurveFunction function(curve);
    const SimTK::Vector x(1, 0.7);
    bool same = function.calcValue(x) == curve(0.7) && function.getMaxDerivativeOrder() == 3;
    for (int order = 1; order <= 3; ++order)
        same &= function.calcDerivative(SimTK::Array_<int>(order, 0), x) == curve(0.7, order);
    return same;
}

}  // namespace

int main()
{
    constexpr double kExact = 1.0;
    const mf::Curve force = pulseForce();
    const double without = velocityAfter(force, false);
    const double with = velocityAfter(force, true);
    std::printf("without breaks: %.9f\nwith breaks: %.9f\n", without, with);
    const bool good = std::fabs(without - kExact) > 0.5 && std::fabs(with - kExact) <= 1e-6;
    return good && hasTheDerivatives() ? 0 : 1;
}
