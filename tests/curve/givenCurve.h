// SPDX-License-Identifier: MIT
#pragma once

// The motion function of a definition, made through the classes that a host uses.

#include <string>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/motion/mfFunctionData.h"

namespace curve_test {

class GivenCurve {
public:
    /// The session must have a context. Every row is compiled and sampled.
    explicit GivenCurve(const mf::CurveDefinition& definition);

    mfFunctionData_c& function() { return function_; }
    double evaluate(double x, int order) { return function_.evaluate(x, order); }

private:
    void iFill(const mf::SegmentShape& shape);
    void iFill(const mf::PointShape& shape);
    void iFill(const mf::ExpressionShape& shape);

    mfFunctionData_c function_;
};

}  // namespace curve_test
