// SPDX-License-Identifier: MIT

#pragma once

#include <Simbody.h>
#include <limits>
#include <optional>

#include "mfcurves/analysis/analysis.h"

namespace mf::simbody {

/// Stops an integrator at the breaks of a curve over time, so that no step passes over one.
/// A step that does may miss a pulse completely.
///
///     system.addEventHandler(new mf::simbody::CurveBreaks(force, 0));   // the system owns it
///
/// `upToOrder` is the highest order of the curve that enters the equations: 0 for a force, 2
/// for a prescribed position.
class CurveBreaks : public SimTK::ScheduledEventHandler {
public:
    CurveBreaks(const Curve& curve, int upToOrder) : curve_(curve), upToOrder_(upToOrder) {}

    SimTK::Real getNextEventTime(const SimTK::State& state, bool includeCurrentTime) const override
    {
        const double now = state.getTime();
        const double after = includeCurrentTime ? std::nextafter(now, -SimTK::Infinity) : now;
        return analysis::nextBreak(curve_, after, upToOrder_).value_or(SimTK::Infinity);
    }
    /// Changes nothing; the integrator restarts with the values on the right.
    void handleEvent(SimTK::State&, SimTK::Real, bool&) const override {}

private:
    Curve curve_;
    int upToOrder_;
};

}  // namespace mf::simbody
