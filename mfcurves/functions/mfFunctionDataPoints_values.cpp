// SPDX-License-Identifier: MIT

#include <map>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/interfaces/hostAnswers.h"

namespace {

constexpr int kFewestSamples = 100;
// 1/99 rounded to a double, for the step of 100 samples. Multiplying by it rounds
// differently from a division by 99.
constexpr double kStepOfFewestSamples = 0.010101010101010102;

// The spline numbers its kinds in reverse: linear 2, cubic 1, Akima 0. The same
// formula converts a type to its kind and back.
bool isTypeOrKind(int number)
{
    return number >= 0 && number <= 2;
}

int fromOtherEnd(int number)
{
    return 2 - number;
}

}  // namespace

mfFunctionDataPoints_c::mfFunctionDataPoints_c()
{
    if (IMotionServices_c* services = mf::interfaces::motionServices())
        splineData_ = services->createSplineData();
}

mfFunctionDataPoints_c::~mfFunctionDataPoints_c()
{
    mfFunctionDataPoints_c::setSplineData(nullptr);
    iDeleteRows();
    iDeletePlottingData();
}

void mfFunctionDataPoints_c::setSplineData(ISimSplineData_c* spline)
{
    if (splineData_ != nullptr && splineData_ != spline) {
        if (IMotionServices_c* services = mf::interfaces::motionServices())
            services->releaseSplineData(splineData_);
    }
    splineData_ = spline;
}

void mfFunctionDataPoints_c::setInterpolationType(mf::DataPointInterpolationType_e type)
{
    interpolationType_ = type;
    if (splineData_ != nullptr && isTypeOrKind(type))
        splineData_->setKind(fromOtherEnd(type));
}

void mfFunctionDataPoints_c::RegenSplineData()
{
    if (splineData_ == nullptr)
        return;
    splineData_->clearPoints();
    for (const mfDataPoints_c* row : dataPoints_) {
        const int count = row->getPointCount();
        for (int i = 0; i < count; ++i)
            splineData_->addPoint(row->getX(i), row->getY(i));
    }
}

double mfFunctionDataPoints_c::evaluate(double x, int order)
{
    if (splineData_ == nullptr)
        return 0.0;
    switch (order) {
        case 0:
            return splineData_->getValue(x);
        case 1:
            return splineData_->getFirstDerivative(x);
        case 2:
            return splineData_->getSecondDerivative(x);
        case 3:
            return splineData_->getThirdDerivative(x);
        default:
            return 0.0;
    }
}

void mfFunctionDataPoints_c::calculateValue(double x, double& y0, double& y1, double& y2, double& y3)
{
    y0 = evaluate(x, 0);
    y1 = evaluate(x, 1);
    y2 = evaluate(x, 2);
    y3 = evaluate(x, 3);
}

// X is computed by repeated addition, so the last sample may miss the end of the
// domain by rounding.
void mfFunctionDataPoints_c::calculateValue()
{
    setPlottingDataCount();
    double x = 0.0;
    double end = 0.0;
    getDomian(x, end);

    iDeletePlottingData();
    for (mfPoint2D_c*& samples : plottingData_)
        samples = new mfPoint2D_c[static_cast<std::size_t>(plottingCount_)];

    for (int i = 0; i < plottingCount_; ++i) {
        for (int order = 0; order <= 3; ++order)
            plottingData_[order][i] = mfPoint2D_c(x, evaluate(x, order));
        x += plottingStep_;
    }
}

void mfFunctionDataPoints_c::setPlottingDataCount()
{
    double start = 0.0;
    double end = 0.0;
    getDomian(start, end);

    const int points = getTotalPoints();
    if (points == 0) {
        plottingCount_ = 0;
        plottingStep_ = 0.0;
    } else if (points <= kFewestSamples) {
        plottingCount_ = kFewestSamples;
        plottingStep_ = (end - start) * kStepOfFewestSamples;
    } else {
        plottingCount_ = points;
        plottingStep_ = (end - start) / (points - 1);
    }
}

mfPoint2D_c* mfFunctionDataPoints_c::getPlottingData(int order) const
{
    return order >= 0 && order <= 3 ? plottingData_[order] : nullptr;
}

void mfFunctionDataPoints_c::updateForLegacyData(bool pointPerRow)
{
    iDeleteRows();
    if (splineData_ == nullptr)
        return;

    const std::map<double, double>& points = splineData_->getPointMap();
    dataPoints_.reserve(pointPerRow ? points.size() : 1);
    if (!pointPerRow)
        dataPoints_.push_back(new mfDataPoints_c);
    for (const auto& [x, y] : points) {
        if (pointPerRow)
            dataPoints_.push_back(new mfDataPoints_c);
        dataPoints_.back()->addPoint(x, y);
    }

    const int kind = splineData_->getKind();
    if (isTypeOrKind(kind))
        interpolationType_ = static_cast<mf::DataPointInterpolationType_e>(fromOtherEnd(kind));
    calculateValue();
}

void mfFunctionDataPoints_c::iDeletePlottingData()
{
    for (mfPoint2D_c*& samples : plottingData_) {
        delete[] samples;
        samples = nullptr;
    }
}
