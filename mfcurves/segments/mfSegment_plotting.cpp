// SPDX-License-Identifier: MIT

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/functions/calculators.h"
#include "mfcurves/functions/motorDerivatives.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

constexpr int kMotor = 0;

constexpr int kPointsOfStretch = 100;
constexpr int kPointsOfPointRow = 1;

std::unique_ptr<mfPoint2D_c[]> newPoints(int count)
{
    return std::make_unique<mfPoint2D_c[]>(static_cast<std::size_t>(count));
}

// Evaluates at `count` points. From the first failure on, evaluates the points one by one;
// a point that fails gets 0.0.
void evaluateAll(ICalculator& calculator, const double* x, double* y, int count)
{
    const auto done = static_cast<int>(mf::engine::evaluateMany(calculator, x, y, count));
    for (int i = done; i < count; ++i)
        y[i] = mf::valueAt(calculator, x[i]);
}

// Sets `count` points to the X of `at` and the calculator's values there; 0.0 where a value
// is missing.
void sampleAt(ICalculator* calculator, const mfPoint2D_c* at, mfPoint2D_c* points, int count)
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

// X is computed by repeated addition, except the last, which is set to the end so that
// accumulated rounding does not change it.
void sampleStretch(ICalculator& calculator, double start, double end, mfPoint2D_c* points, int count)
{
    const double step = (end - start) / (count - 1.0);
    double x = start;
    for (int i = 0; i < count - 1; ++i) {
        points[i] = mfPoint2D_c(x, 0.0);
        x += step;
    }
    points[count - 1] = mfPoint2D_c(end, 0.0);
    sampleAt(&calculator, points, points, count);
}

}  // namespace

mfSegment_c::PlottingArrays::~PlottingArrays()
{
    for (mfPoint2D_c* points : points_)
        delete[] points;
}

void mfSegment_c::PlottingArrays::drop(int derivatives)
{
    sampling_.reset();
    derivatives_ = derivatives;
    length_ = 0;
    for (int order = 0; order <= derivatives; ++order) {
        delete[] points_[order];
        points_[order] = nullptr;
    }
}

// If memory runs out, the missing arrays are null and the length is 0.
void mfSegment_c::PlottingArrays::build(int length, int derivatives)
{
    drop(derivatives);
    if (length < 1)
        return;
    for (int order = 0; order <= derivatives; ++order)
        points_[order] = newPoints(length).release();
    length_ = length;
}

void mfSegment_c::PlottingArrays::sample(const Sampling& sampling, int length, int derivatives)
{
    drop(derivatives);
    length_ = length;
    sampling_ = sampling;
}

// If memory runs out, the samples stay pending.
void mfSegment_c::PlottingArrays::compute(Formula& present)
{
    if (!sampling_)
        return;
    const auto& [startX, endX, endValue, expression, variable] = *sampling_;
    std::unique_ptr<mfPoint2D_c[]> points[4];
    for (int order = 0; order <= derivatives_; ++order)
        points[order] = newPoints(length_);

    Formula former(expression, variable);
    Formula& formula = present.isKnown() && present.hasTexts(expression, variable) ? present : former;
    ICalculator* value = formula.calculator(0);
    if (value != nullptr && length_ == kPointsOfPointRow) {
        points[0][0] = mfPoint2D_c(startX, endValue);
        for (int order = 1; order <= derivatives_; ++order)
            points[order][0] = mfPoint2D_c(startX, 0.0);
    } else if (value != nullptr) {
        sampleStretch(*value, startX, endX, points[0].get(), length_);
        const std::array calculators = {formula.calculator(1), formula.calculator(2), formula.calculator(3)};
        for (int order = 1; ICalculator* const derivative : calculators) {
            if (order <= derivatives_)
                sampleAt(derivative, points[0].get(), points[order].get(), length_);
            ++order;
        }
    }

    for (int order = 0; order <= derivatives_; ++order)
        points_[order] = points[order].release();
    sampling_.reset();
}

mfPoint2D_c* mfSegment_c::getPlottingData(int order) const
{
    if (order < 0 || order > 3)
        return nullptr;
    iCompute();
    return arrays_.points(order);
}

void mfSegment_c::iCompute() const
{
    arrays_.compute(calculator_.formula_);
}

void mfSegment_c::initializePlottingData(int motionObjectType, mf::MotorDriveType_e kind)
{
    const int derivatives = mf::plottedDerivatives(motionObjectType, kind);
    if (derivatives < arrays_.derivatives())
        iCompute();  // the arrays above those of this build keep their samples
    arrays_.build(plottingDataCount_, derivatives);
}

// The samples are computed at their first use, from the row as it is now. They are computed
// at once if compiling later could have another effect. If compiling throws, the samples
// are zeros, as without a formula.
void mfSegment_c::iSample(int motionObjectType, mf::MotorDriveType_e kind)
{
    plottingDataCount_ = startX_ != endX_ ? kPointsOfStretch : kPointsOfPointRow;
    const int derivatives = mf::plottedDerivatives(motionObjectType, kind);
    if (derivatives < arrays_.derivatives())
        iCompute();
    arrays_.sample({startX_, endX_, value_, {}, {}}, plottingDataCount_, derivatives);
    const bool mayWait = calculator_.iPrepare();
    const Formula& formula = calculator_.formula_;
    arrays_.sample({startX_, endX_, value_, formula.expression(), formula.variable()}, plottingDataCount_,
                   derivatives);
    if (!mayWait)
        iCompute();
}

// A stretch gets the derivatives of the motor quantity, at least one, even if the curve
// does not drive a motor; only a row of one point checks motionObjectType. In both cases
// only arrays of the last build are written.
void mfSegment_c::iDerive(int motionObjectType, mf::MotorDriveType_e kind)
{
    iCompute();
    const int count = std::min(plottingDataCount_, arrays_.length());
    if (count < 1)
        return;
    const mfPoint2D_c* values = arrays_.points(0);

    if (plottingDataCount_ == kPointsOfPointRow) {
        const int wanted = motionObjectType == kMotor ? mf::motorDerivatives(kind) : 1;
        for (int order = 1; order <= std::min(wanted, arrays_.derivatives()); ++order)
            arrays_.points(order)[0] = mfPoint2D_c(values[0].x(), 0.0);
        return;
    }

    ICalculator* const calculators[] = {nullptr, getCalculator(1), getCalculator(2), getCalculator(3)};
    const int wanted = std::max(1, mf::motorDerivatives(kind));
    for (int order = 1; order <= std::min(wanted, arrays_.derivatives()); ++order)
        sampleAt(calculators[order], values, arrays_.points(order), count);
}
