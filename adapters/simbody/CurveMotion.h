// SPDX-License-Identifier: MIT

#pragma once

#include <Simbody.h>

#include "mfcurves/curve/Curve.h"

namespace mf::simbody {

/// Drives a mobilizer of one coordinate by a curve over time: position, velocity and
/// acceleration are those of the curve, in its own units (radians or metres for SimTK).
///
/// A curve whose velocity jumps, such as straight lines through points, has impulses of
/// acceleration, which no drive can follow. mf::analysis::summarize lists them.
class CurveMotion : public SimTK::Motion::Custom {
public:
    CurveMotion(SimTK::MobilizedBody& body, const Curve& curve) : Custom(body, new Drive(curve)) {}

private:
    class Drive : public Implementation {
    public:
        explicit Drive(const Curve& curve) : curve_(curve) {}

        Implementation* clone() const override { return new Drive(*this); }
        SimTK::Motion::Level getLevel(const SimTK::State&) const override { return SimTK::Motion::Position; }
        void calcPrescribedPosition(const SimTK::State& state, int, SimTK::Real* q) const override
        {
            q[0] = curve_(state.getTime());
        }
        void calcPrescribedPositionDot(const SimTK::State& state, int, SimTK::Real* qdot) const override
        {
            qdot[0] = curve_(state.getTime(), 1);
        }
        void calcPrescribedPositionDotDot(const SimTK::State& state, int, SimTK::Real* qdotdot) const override
        {
            qdotdot[0] = curve_(state.getTime(), 2);
        }

    private:
        Curve curve_;
    };
};

}  // namespace mf::simbody
