// SPDX-License-Identifier: MIT

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/functions/calculators.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/functions/textForEngine.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/interfaces/hostAnswers.h"

namespace {

// By the bits: a division distinguishes 0.0 from -0.0.
bool isSame(double x, double other)
{
    return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(other);
}

}  // namespace

// Makes point_ hold the value at x and the derivatives up to `order`, as far as a point has them.
// Returns how many of them precede the first failure, the value included.
//
// By default each point compiles the math expression again. The previous calculator is
// reused when another compile would give the same one and have no side effect: the text is
// unchanged and ASCII, the host has set no encoder, the process is already at the locale
// "C", and the calculator is the engine's own. The resources can change the meaning of a
// name, but that does not matter for a point.
int mfFunctionExpression_c::iEvaluate(double x, int order)
{
    const int highest = order == 0 ? 0 : iDerivativesOfAPoint();
    if (!isReusable_ || !mf::narrowingLeavesNoTrace())
        return iEvaluateAfresh(x, highest);
    const int wanted = std::min(order, highest);
    if (wanted < point_.computed && isSame(x, point_.x))
        point_.asked = std::max(point_.asked, wanted);
    else
        iMoveTo(x, wanted);
    return std::min(point_.finite, wanted + 1);
}

// Computes the orders at a new x: up to `order`, and as many as were requested at the previous x, because
// a solver mostly requests the same orders at each x.
void mfFunctionExpression_c::iMoveTo(double x, int order)
{
    const int highest = std::max(order, point_.asked);
    point_.computed = 0;  // in case an allocation fails
    point_.finite = mf::engine::evaluateOrders(*calculator_, x, highest, point_.values);
    point_.x = x;
    point_.asked = order;
    point_.computed = highest + 1;
    lastPointFailed_ = point_.finite == 0;
}

// An int thrown before the value is known counts as a failed evaluation. A failure
// releases the calculator unless it can be reused; lastPointFailed_ marks both cases.
int mfFunctionExpression_c::iEvaluateAfresh(double x, int highest)
{
    const std::wstring text = mf::throughNarrow(mathExpression_);
    iReleaseCalculator();
    bool evaluated = false;
    try {
        MotionMEParser().parse(text.c_str(), nullptr, &calculator_);
        isReusable_ = calculator_ != nullptr && mf::engine::isOwnCalculator(*calculator_) &&
                      mf::isSameThroughNarrow(mathExpression_);
        evaluated = mf::evaluateAt(calculator_, x, point_.values[0]);
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
        if (!mf::evaluateAt(below, x, point_.values[order]))
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
    if (iEvaluate(x, 0) == 0)
        return false;
    y = point_.values[0];
    return true;
}

bool mfFunctionExpression_c::calculateValue(double x, double& y, double& d1, double& d2, double& d3)
{
    const int done = iEvaluate(x, kOrderCount - 1);
    if (done == 0)
        return false;
    const bool isComplete = done > iDerivativesOfAPoint();
    double* const outputs[kOrderCount] = {&y, &d1, &d2, &d3};
    for (int order = 0; order < kOrderCount; ++order) {
        if (order < done)
            *outputs[order] = point_.values[order];
        else if (isComplete)
            *outputs[order] = 0.0;
    }
    return true;
}

double mfFunctionExpression_c::evaluate(double x, int order)
{
    if (order < 0 || order >= kOrderCount)
        return 0.0;
    const int done = iEvaluate(x, order);
    if (done == 0)
        return 0.0;
    const double value = order < done ? point_.values[order] : 0.0;
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
