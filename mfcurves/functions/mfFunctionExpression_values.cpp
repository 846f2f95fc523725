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

// Computes the value at x and the derivatives up to `order`, as far as a point has them.
// Returns how many of them precede the first failure, the value included.
//
// By default each point compiles the math expression again. The previous calculator is
// reused when another compile would give the same one and have no side effect: the text is
// unchanged and ASCII, the host has set no encoder, the process is already at the locale
// "C", and the calculator is the engine's own. The resources can change the meaning of a
// name, but that does not matter for a point. With a reused calculator the orders above
// `order` are not computed.
int mfFunctionExpression_c::iEvaluate(double x, int order, double* values)
{
    const int highest = order == 0 ? 0 : iDerivativesOfAPoint();
    if (!isReusable_ || !mf::narrowingLeavesNoTrace())
        return iEvaluateAfresh(x, highest, values);
    const int done = mf::engine::evaluateOrders(*calculator_, x, std::min(order, highest), values);
    lastPointFailed_ = done == 0;
    return done;
}

// An int thrown before the value is known counts as a failed evaluation. A failure
// releases the calculator unless it can be reused; lastPointFailed_ marks both cases.
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

// The number of derivatives of a point follows from the plotting count.
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
    if (order < 0 || order >= kOrderCount)
        return 0.0;
    double values[kOrderCount];
    const int done = iEvaluate(x, order, values);
    if (done == 0)
        return 0.0;
    const double value = order < done ? values[order] : 0.0;
    const double factor = iUnitFactor();
    return factor == 1.0 ? value : value / factor;  // usually 1.0: saves the division
}

// 1.0 when the host has no services.
double mfFunctionExpression_c::iUnitFactor() const
{
    IMotionServices_c* const services = mf::interfaces::motionServices();
    if (services == nullptr)
        return 1.0;
    const int unitKind = motionObjectType == 0 ? services->getMotorUnitKind(motorDependentVar)
                                               : services->getForceTorqueUnitKind(forceTorqueDependentVar);
    return services->getUnitFactor(unitKind);
}
