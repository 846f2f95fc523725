// SPDX-License-Identifier: MIT

#include <algorithm>
#include <string>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/functions/calculators.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/functions/textForEngine.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/interfaces/hostAnswers.h"

// Computes the value at x and the derivatives up to `order`, as far as a point has them,
// and returns how many there are from the value on before the first that fails.
//
// A point compiles the math expression afresh. Where a second compile would give the same
// and leave no trace, the calculator of the first one serves again: the text is the same and
// ASCII, no encoder of the host's is to be asked, the process is at the locale "C" already,
// and the calculator is the engine's own. What the names in the text stand for, which
// depends on the resources, does not matter to a point. Then the orders above the one asked
// for are left out, too.
int mfFunctionExpression_c::iEvaluate(double x, int order, double* values)
{
    const int highest = order == 0 ? 0 : iDerivativesOfAPoint();
    if (!isReusable_ || !mf::narrowingLeavesNoTrace())
        return iEvaluateAfresh(x, highest, values);
    const int done = mf::engine::evaluateOrders(*calculator_, x, std::min(order, highest), values);
    lastPointFailed_ = done == 0;
    return done;
}

// An int thrown on the way to the value is a failed evaluation. A failed one leaves no
// calculator to derive the samples from; one that can serve again is only marked.
int mfFunctionExpression_c::iEvaluateAfresh(double x, int highest, double* values)
{
    const std::wstring text = mf::throughNarrow(mathExpression_);
    iReleaseCalculator();
    bool evaluated = false;
    try {
        MotionMEParser().parse(text.c_str(), nullptr, &calculator_);
        isReusable_ = calculator_ != nullptr && mf::engine::isOwnCalculator(*calculator_) &&
                      mf::isSameThroughNarrow(mathExpression_);
        evaluated = mf::evaluateAt(calculator_, x, values[0]);
    } catch (int) {
        evaluated = false;
    }
    if (!evaluated) {
        if (!isReusable_)
            iReleaseCalculator();
        lastPointFailed_ = true;
        return 0;
    }

    mf::CalculatorHolder derivatives[kOrderCount];
    ICalculator* below = calculator_;
    for (int order = 1; order <= highest; ++order) {
        derivatives[order] = mf::derivativeOf(below);
        below = derivatives[order].get();
        if (!mf::evaluateAt(below, x, values[order]))
            return order;
    }
    return highest + 1;
}

// How many derivatives a point has depends on how many points there are to plot.
int mfFunctionExpression_c::iDerivativesOfAPoint() const
{
    return plottingPointCount_ == 1 ? 0 : plottingPointCount_ == 2 ? 1 : kOrderCount - 1;
}

bool mfFunctionExpression_c::calculateValue(double x, double& y)
{
    double value = 0.0;
    if (iEvaluate(x, 0, &value) == 0)
        return false;
    y = value;
    return true;
}

bool mfFunctionExpression_c::calculateValue(double x, double& y, double& d1, double& d2, double& d3)
{
    double values[kOrderCount] = {};
    const int done = iEvaluate(x, kOrderCount - 1, values);
    if (done == 0)
        return false;
    const bool isComplete = done > iDerivativesOfAPoint();
    double* const outputs[kOrderCount] = {&y, &d1, &d2, &d3};
    for (int order = 0; order < kOrderCount; ++order) {
        if (order < done || isComplete)
            *outputs[order] = values[order];
    }
    return true;
}

double mfFunctionExpression_c::evaluate(double x, int order)
{
    double values[kOrderCount] = {};
    if (order < 0 || order >= kOrderCount || iEvaluate(x, order, values) == 0)
        return 0.0;
    const double factor = iUnitFactor();
    return factor == 1.0 ? values[order] : values[order] / factor;  // mostly there is nothing to convert
}

// A host without services takes the values as they are.
double mfFunctionExpression_c::iUnitFactor() const
{
    IMotionServices_c* const services = mf::interfaces::motionServices();
    if (services == nullptr)
        return 1.0;
    const int unitKind = motionObjectType == 0 ? services->getMotorUnitKind(motorDependentVar)
                                               : services->getForceTorqueUnitKind(forceTorqueDependentVar);
    return services->getUnitFactor(unitKind);
}
