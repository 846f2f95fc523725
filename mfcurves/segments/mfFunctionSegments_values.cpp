#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/functions/motorDerivatives.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

constexpr int kPointsOfStretch = 100;
constexpr int kPointsOfPointRow = 1;

// 0.0 where the formula has no finite value.
double valueAt(ICalculator& calculator, double x)
{
    MMEP_Data argument(x);
    MMEP_Data result;
    calculator.Evaluate(1, &argument, result);
    return *result.getValue();
}

// Both ends belong to the row. Written so that a NaN is in every row.
bool contains(const mfSegment_c& segment, double x)
{
    return !(x < segment.getStartX()) && !(x > segment.getEndX());
}

// A bisection whose probes decide who answers where two rows meet, and that ends
// on the row probed last for an x in a gap. A NaN is neither before nor behind a
// row. Inline, because it is half of what an evaluation does outside the engine.
inline int rowFor(const std::vector<mfSegment_c*>& segments, double x)
{
    if (segments.empty())
        return 0;
    std::size_t low = 0;
    std::size_t high = segments.size() - 1;
    std::size_t middle = segments.size() / 2;
    while (high - low > 1) {
        const mfSegment_c& probed = *segments[middle];
        if (x < probed.getStartX())
            high = middle;
        else if (x > probed.getEndX())
            low = middle;
        else
            return static_cast<int>(middle);
        middle = (low + high) / 2;
    }
    if (contains(*segments[low], x))
        return static_cast<int>(low);
    if (contains(*segments[high], x) || x > segments[high]->getEndX())
        return static_cast<int>(high);
    return static_cast<int>(!(x < segments[low]->getStartX()) ? middle : low);
}

// Only the space between the ends of a reversed row is refused; a row answers by
// its formula however far x is outside.
bool refuses(const mfSegment_c& segment, double x)
{
    return x < segment.getStartX() && x > segment.getEndX();
}

// The number of plotting points tells how many derivatives a row has. A row of no
// length has one point and no slope, and so has one that was never sampled.
int highestDerivative(const mfSegment_c& segment)
{
    const int points = segment.getPlottingDataCount();
    return points > 2 ? 3 : points == 2 ? 1 : 0;
}

// Evaluates at `count` points; one that fails is passed over like a point on its
// own.
void evaluateAll(ICalculator& calculator, const double* x, double* y, int count)
{
    const auto done = static_cast<int>(mf::engine::evaluateMany(calculator, x, y, count));
    for (int i = done; i < count; ++i)
        y[i] = valueAt(calculator, x[i]);
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

// The number that calculateValue gives for this order when it is asked for all of
// them. Those below are not evaluated: nobody would see them.
double mfFunctionSegments_c::evaluate(double x, int order)
{
    if (isEmpty())
        return 0.0;
    const int row = rowFor(segments_, x);
    mfSegment_c& segment = iAt(row);
    const int asked = order >= 0 && order <= 2 ? order : 3;
    if (refuses(segment, x) || (row == 0 && asked == 0) || asked > highestDerivative(segment))
        return 0.0;
    ICalculator* calculator = segment.getCalculator(asked);
    return calculator == nullptr ? 0.0 : valueAt(*calculator, x);
}

int mfFunctionSegments_c::findSegment(double x) const
{
    return rowFor(segments_, x);
}

bool mfFunctionSegments_c::calculateValue(int row, double x, double& y)
{
    if (!iHolds(row))
        return false;
    mfSegment_c& segment = iAt(row);
    if (refuses(segment, x))
        return false;
    if (row == 0) {
        y = 0.0;
        return true;
    }
    ICalculator* calculator = segment.getCalculator(0);
    if (calculator == nullptr)
        return false;
    y = valueAt(*calculator, x);
    return true;
}

bool mfFunctionSegments_c::calculateValue(int row, double x, double& y, double& d1, double& d2, double& d3,
                                          int order)
{
    y = d1 = d2 = d3 = 0.0;
    if (order < 0)
        order = 3;
    if (!calculateValue(row, x, y))
        return false;

    mfSegment_c& segment = iAt(row);
    const int highest = std::min(order, highestDerivative(segment));
    double* const derivatives[] = {&y, &d1, &d2, &d3};
    for (int k = 1; k <= highest; ++k) {
        ICalculator* calculator = segment.getCalculator(k);
        if (calculator == nullptr)
            return false;
        *derivatives[k] = valueAt(*calculator, x);
    }
    return true;
}

void mfFunctionSegments_c::calculateValue(int row)
{
    if (!iHolds(row))
        return;
    mfSegment_c& segment = iAt(row);
    const double start = segment.getStartX();
    const double end = segment.getEndX();
    const int count = start != end ? kPointsOfStretch : kPointsOfPointRow;
    segment.setPlottingDataCount(count);
    segment.initializePlottingData(motionObjectType, motorDependentVar);

    ICalculator* calculator = segment.getCalculator(0);
    if (calculator == nullptr)
        return;
    mfPoint2D_c* points = segment.getPlottingData0();
    if (count == kPointsOfPointRow)
        points[0] = mfPoint2D_c(start, segment.getValue());
    else
        sampleStretch(*calculator, start, end, points, count);
    calculateDerivatives(row);
}

// Row 0 only states where the curve begins.
void mfFunctionSegments_c::calculateValue()
{
    for (int row = 1; row < getSegmentCount(); ++row)
        calculateValue(row);
}

// A stretch gets the derivatives of the motor's quantity, whatever the curve
// drives, and at least one; only a point row asks whether it is a motor at all.
// Either way only arrays that the last build made are written.
void mfFunctionSegments_c::calculateDerivatives(int row)
{
    if (!iHolds(row))
        return;
    mfSegment_c& segment = iAt(row);
    const int count = std::min(segment.getPlottingDataCount(), segment.getPlottingDataLength());
    if (count < 1)
        return;
    const mfPoint2D_c* values = segment.getPlottingData0();
    const int orders = segment.getPlottingDataOrders();

    if (segment.getPlottingDataCount() == kPointsOfPointRow) {
        const int wanted = motionObjectType == 0 ? mf::motorDerivatives(motorDependentVar) : 1;
        for (int order = 1; order <= std::min(wanted, orders); ++order)
            segment.getPlottingData(order)[0] = mfPoint2D_c(values[0].x(), 0.0);
        return;
    }

    ICalculator* const calculators[] = {nullptr, segment.getCalculator(1), segment.getCalculator(2),
                                        segment.getCalculator(3)};
    const int wanted = std::max(1, mf::motorDerivatives(motorDependentVar));
    for (int order = 1; order <= std::min(wanted, orders); ++order)
        sample(calculators[order], values, segment.getPlottingData(order), count);
}
