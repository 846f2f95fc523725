// SPDX-License-Identifier: MIT

#pragma once

#include <Simbody.h>
#include <cmath>
#include <limits>

#include "mfcurves/curve/Curve.h"

namespace mf::simbody {

/// A curve as a function object of one argument, for everything that takes a
/// SimTK::Function: prescribed motions, springs, actuators.
///
/// Derivatives: up to the third. The result is NaN where the curve has no value.
/// Threads: constant, so any number of threads may use it.
class CurveFunction : public SimTK::Function {
public:
    explicit CurveFunction(const Curve& curve) : curve_(curve) {}

    SimTK::Real calcValue(const SimTK::Vector& x) const override { return curve_(x[0]); }
    SimTK::Real calcDerivative(const SimTK::Array_<int>& components, const SimTK::Vector& x) const override
    {
        return curve_(x[0], static_cast<int>(components.size()));
    }
    int getArgumentSize() const override { return 1; }
    int getMaxDerivativeOrder() const override { return 3; }
    CurveFunction* clone() const override { return new CurveFunction(*this); }

private:
    Curve curve_;
};

}  // namespace mf::simbody
