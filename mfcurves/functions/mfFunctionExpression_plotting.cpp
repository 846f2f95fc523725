// SPDX-License-Identifier: MIT

#include <algorithm>
#include <vector>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/functions/calculators.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/functions/motorDerivatives.h"
#include "mfcurves/interfaces/IMotionStudy.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/platform/resources.h"

namespace {

constexpr int kSampleCount = 100;

// Sets ys to the values at xs, up to the first that cannot be computed, and returns
// their number.
int evaluateEach(ICalculator* calculator, const std::vector<double>& xs, std::vector<double>& ys)
{
    ys.resize(xs.size());
    return calculator == nullptr
               ? 0
               : static_cast<int>(mf::engine::evaluateMany(*calculator, xs.data(), ys.data(), xs.size()));
}

// Sets `name` to the independent variable that a parameter means. False when it cannot
// be one. A cycle angle that is not available may still be a motion result.
bool independentVariableOf(const MMEP_WString& parameter, IMotionStudy_c* study, CString& name)
{
    if (parameter.isTime()) {
        name.LoadString(mf::platform::kTimeName);
        return true;
    }
    if (parameter.isCycleAngle() && study != nullptr && study->isCycleAngleAvailable()) {
        name.LoadString(mf::platform::kCycleAngleName);
        return true;
    }
    if (!parameter.isResultObject())
        return false;
    name = parameter.text;
    name.Trim().TrimLeft(L'{').TrimRight(L'}');
    return true;
}

}  // namespace

// An empty text counts as plottable, with 0 points. A text that does not compile
// clears the plotting flag; the result is still true.
bool mfFunctionExpression_c::calculateValue()
{
    validForPlotting_ = false;
    if (parseExpression_.IsEmpty()) {
        validForPlotting_ = true;
        plottingPointCount_ = 0;
        return false;
    }
    IMotionStudy_c* const study = mf::interfaces::motionStudy();
    iReleaseCalculator();
    MotionMEParser parser;
    parser.parse(parseExpression_, nullptr, &calculator_);

    const int parameterCount = parser.getParamsNum();
    CString name;
    name.LoadString(mf::platform::kTimeName);
    for (int i = 0; i < parameterCount; ++i) {
        if (!independentVariableOf(parser.getParam(i), study, name))
            return false;
    }
    // A curve of several variables is accepted but not plotted.
    if (parameterCount > 1)
        return true;
    setIndepVar(name);
    validForPlotting_ = parser.parseSucceeded;
    return validForPlotting_ ? iSample() : true;
}

// Each x is the previous one plus the step, so the last one may miss the end of the
// domain by rounding.
bool mfFunctionExpression_c::iSample()
{
    plottingPointCount_ = kSampleCount;
    if (!initializePlottingData(kSampleCount, motionObjectType))
        return false;
    const double step = (maxX_ - minX_) / (kSampleCount - 1);
    std::vector<double> xs(kSampleCount);
    double x = minX_;
    for (double& sampleX : xs) {
        sampleX = x;
        x += step;
    }

    std::vector<double> ys;
    const int done = evaluateEach(calculator_, xs, ys);
    for (int i = 0; i < done; ++i)
        plottingData_[0][i] = mfPoint2D_c(xs[i], ys[i]);
    if (done < kSampleCount) {
        plottingData_[0][done] = mfPoint2D_c(xs[done], 0.0);  // the failed sample keeps its x
        iReleaseCalculator();
        return false;
    }
    calculateDerivatives();
    validForPlotting_ = true;
    return true;
}

// Makes all three derivatives, whichever arrays exist. The result is the same as that
// of one loop over x that computes every order at each sample and stops at the first
// failure: the orders below the failing one have that sample too.
bool mfFunctionExpression_c::calculateDerivatives()
{
    const int count = std::min(plottingPointCount_, plottingDataLength_);
    if (calculator_ == nullptr || lastPointFailed_ || count < 1)
        return false;
    const mf::CalculatorHolder first = mf::derivativeOf(calculator_);
    const mf::CalculatorHolder second = mf::derivativeOf(first.get());
    const mf::CalculatorHolder third = mf::derivativeOf(second.get());
    ICalculator* const derivatives[kOrderCount] = {nullptr, first.get(), second.get(), third.get()};
    const int highest = motionObjectType == 0 ? std::max(1, mf::motorDerivatives(motorDependentVar)) : 1;

    const int last = count - 1;
    std::vector<double> xs;
    xs.reserve(static_cast<std::size_t>(last));
    for (int i = 0; i < last; ++i)
        xs.push_back(plottingData_[0][i].x());
    std::vector<double> ys[kOrderCount];
    int end = last;  // the sample at which that loop stops
    int failing = kOrderCount;
    for (int order = 1; order <= highest; ++order) {
        if (plottingData_[order] == nullptr)
            continue;
        const int done = evaluateEach(derivatives[order], xs, ys[order]);
        if (done < end) {
            end = done;
            failing = order;
        }
    }

    for (int order = 1; order <= highest; ++order) {
        mfPoint2D_c* const points = plottingData_[order];
        if (points == nullptr)
            continue;
        const int written = order < failing && end < last ? end + 1 : end;
        for (int i = 0; i < written; ++i)
            points[i] = mfPoint2D_c(xs[i], ys[order][i]);
        if (end == last)
            points[last] = mfPoint2D_c(plottingData_[0][last].x(), last == 0 ? 0.0 : points[last - 1].y());
    }
    return end == last;
}

bool mfFunctionExpression_c::initializePlottingData(int count, int objectType)
{
    iFreePlottingData();
    const int derivatives = mf::plottedDerivatives(objectType, motorDependentVar);
    if (count >= 1) {
        for (int order = 0; order <= derivatives; ++order)
            plottingData_[order] = new mfPoint2D_c[static_cast<std::size_t>(count)];
        plottingDataLength_ = count;
    }
    return objectType != 0 || derivatives != 0;
}

mfPoint2D_c* mfFunctionExpression_c::getPlottingData(int order) const
{
    return order < 0 || order >= kOrderCount ? nullptr : plottingData_[order];
}

void mfFunctionExpression_c::iFreePlottingData()
{
    for (mfPoint2D_c*& points : plottingData_) {
        delete[] points;
        points = nullptr;
    }
    plottingDataLength_ = 0;
}
