#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/functions/motorDerivatives.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

constexpr int kMotor = 0;
constexpr int kForceOrTorque = 1;

constexpr int kPointsOfStretch = 100;
constexpr int kPointsOfPointRow = 1;

int derivativeArrays(int motionObjectType, mf::MotorDriveType_e kind)
{
    if (motionObjectType == kMotor)
        return mf::motorDerivatives(kind);
    return motionObjectType == kForceOrTorque ? 1 : 0;
}

std::unique_ptr<mfPoint2D_c[]> newPoints(int count)
{
    return std::make_unique<mfPoint2D_c[]>(static_cast<std::size_t>(count));
}

// Evaluates at `count` points; one that fails is passed over like a point on its
// own.
void evaluateAll(ICalculator& calculator, const double* x, double* y, int count)
{
    const auto done = static_cast<int>(mf::engine::evaluateMany(calculator, x, y, count));
    for (int i = done; i < count; ++i) {
        MMEP_Data argument(x[i]);
        MMEP_Data result;
        calculator.Evaluate(1, &argument, result);
        y[i] = *result.getValue();
    }
}

// Sets the Y of `count` points to the calculator's answers at the X of `at`, 0.0
// where there is none.
void sample(ICalculator* calculator, const mfPoint2D_c* at, mfPoint2D_c* points, int count)
{
    std::array<double, kPointsOfStretch> x;
    std::array<double, kPointsOfStretch> y;
    for (int first = 0; first < count; first += kPointsOfStretch) {
        const int n = std::min(kPointsOfStretch, count - first);
        for (int i = 0; i < n; ++i)
            x[i] = at[first + i].x();
        y.fill(0.0);
        if (calculator != nullptr)
            evaluateAll(*calculator, x.data(), y.data(), n);
        for (int i = 0; i < n; ++i)
            points[first + i] = mfPoint2D_c(x[i], y[i]);
    }
}

// X runs by repeated addition; the last one is the end itself, so that the
// rounding that has gathered does not reach it.
void sampleStretch(ICalculator& calculator, double start, double end, mfPoint2D_c* points, int count)
{
    const double step = (end - start) / (count - 1.0);
    double x = start;
    for (int i = 0; i < count - 1; ++i) {
        points[i] = mfPoint2D_c(x, 0.0);
        x += step;
    }
    points[count - 1] = mfPoint2D_c(end, 0.0);
    sample(&calculator, points, points, count);
}

}  // namespace

mfPoint2D_c* mfSegment_c::getPlottingData(int order) const
{
    if (order < 0 || order > 3)
        return nullptr;
    iCompute();
    return plottingData_[order];
}

// When memory runs out, the arrays that are missing are null and the length says
// 0.
void mfSegment_c::initializePlottingData(int motionObjectType, mf::MotorDriveType_e kind)
{
    iDropPlottingData(motionObjectType, kind);
    if (plottingDataCount_ < 1)
        return;
    for (int order = 0; order <= plottingDataOrders_; ++order)
        plottingData_[order] = newPoints(plottingDataCount_).release();
    plottingDataLength_ = plottingDataCount_;
}

// Frees the arrays that a build makes anew. Those above them keep the samples that
// they have, or are still to get.
void mfSegment_c::iDropPlottingData(int motionObjectType, mf::MotorDriveType_e kind)
{
    const int orders = derivativeArrays(motionObjectType, kind);
    if (orders < plottingDataOrders_)
        iCompute();
    sampling_.reset();
    plottingDataOrders_ = orders;
    plottingDataLength_ = 0;
    for (int order = 0; order <= orders; ++order) {
        delete[] plottingData_[order];
        plottingData_[order] = nullptr;
    }
}

// Most rows are sampled and never drawn. So the samples are computed at the first
// look, from what the row is now, unless computing them later would show. A
// compile that throws leaves the samples of no formula, which are zeros.
void mfSegment_c::iSample(int motionObjectType, mf::MotorDriveType_e kind)
{
    plottingDataCount_ = startX_ != endX_ ? kPointsOfStretch : kPointsOfPointRow;
    iDropPlottingData(motionObjectType, kind);
    plottingDataLength_ = plottingDataCount_;
    sampling_ = Sampling{startX_, endX_, value_, {}};
    const bool mayWait = calculator_.iPostpone();
    sampling_->formula = calculator_.built_;
    if (!mayWait)
        iCompute();
}

// Computes the samples that were put off. When memory runs out, they stay put off.
void mfSegment_c::iCompute() const
{
    if (!sampling_)
        return;
    const auto& [startX, endX, endValue, formula] = *sampling_;
    std::unique_ptr<mfPoint2D_c[]> points[4];
    for (int order = 0; order <= plottingDataOrders_; ++order)
        points[order] = newPoints(plottingDataLength_);

    mfSegmentCalculator_c former(formula);
    mfSegmentCalculator_c& calculator = calculator_.iHas(formula) ? calculator_ : former;
    ICalculator* value = calculator.iValue();
    if (value != nullptr && plottingDataLength_ == kPointsOfPointRow) {
        points[0][0] = mfPoint2D_c(startX, endValue);
        for (int order = 1; order <= plottingDataOrders_; ++order)
            points[order][0] = mfPoint2D_c(startX, 0.0);
    } else if (value != nullptr) {
        sampleStretch(*value, startX, endX, points[0].get(), plottingDataLength_);
        ICalculator* const calculators[] = {value, calculator.iGetCalculator(1), calculator.iGetCalculator(2),
                                            calculator.iGetCalculator(3)};
        for (int order = 1; order <= plottingDataOrders_; ++order)
            sample(calculators[order], points[0].get(), points[order].get(), plottingDataLength_);
    }

    for (int order = 0; order <= plottingDataOrders_; ++order)
        plottingData_[order] = points[order].release();
    sampling_.reset();
}

// A stretch gets the derivatives of the motor's quantity, whatever the curve
// drives, and at least one; only a point row asks whether it is a motor at all.
// Either way only arrays that the last build made are written.
void mfSegment_c::iDerive(int motionObjectType, mf::MotorDriveType_e kind)
{
    iCompute();
    const int count = std::min(plottingDataCount_, plottingDataLength_);
    if (count < 1)
        return;
    const mfPoint2D_c* values = plottingData_[0];

    if (plottingDataCount_ == kPointsOfPointRow) {
        const int wanted = motionObjectType == kMotor ? mf::motorDerivatives(kind) : 1;
        for (int order = 1; order <= std::min(wanted, plottingDataOrders_); ++order)
            plottingData_[order][0] = mfPoint2D_c(values[0].x(), 0.0);
        return;
    }

    ICalculator* const calculators[] = {nullptr, getCalculator(1), getCalculator(2), getCalculator(3)};
    const int wanted = std::max(1, mf::motorDerivatives(kind));
    for (int order = 1; order <= std::min(wanted, plottingDataOrders_); ++order)
        sample(calculators[order], values, plottingData_[order], count);
}
