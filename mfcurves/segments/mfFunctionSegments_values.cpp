// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cstddef>
#include <vector>

#include "mfcurves/functions/calculators.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

// Both ends belong to the row. The comparisons are negated so that a NaN is in every row.
bool contains(const mfSegment_c& segment, double x)
{
    return !(x < segment.getStartX()) && !(x > segment.getEndX());
}

// A bisection. Where two rows meet, the row probed first is returned; for an x in a gap,
// the row probed last. A NaN is neither before nor after any row, so the first probe
// contains it. Inline, because it is half of what an evaluation does outside the engine.
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

// True only between the ends of a reversed row. Elsewhere a row evaluates its formula,
// however far x is outside the row.
bool refuses(const mfSegment_c& segment, double x)
{
    return x < segment.getStartX() && x > segment.getEndX();
}

// The number of plotting points decides how many derivatives a row has. A row of no
// length, or one that was never sampled, has one point and no derivatives.
int highestDerivative(const mfSegment_c& segment)
{
    const int points = segment.getPlottingDataCount();
    return points > 2 ? 3 : points == 2 ? 1 : 0;
}

}  // namespace

// Returns what calculateValue gives for this order when all orders are requested, but
// does not evaluate the lower orders.
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
    return calculator == nullptr ? 0.0 : mf::valueAt(*calculator, x);
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
    y = mf::valueAt(*calculator, x);
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
        *derivatives[k] = mf::valueAt(*calculator, x);
    }
    return true;
}

void mfFunctionSegments_c::calculateValue(int row)
{
    if (iHolds(row))
        iAt(row).iSample(motionObjectType, motorDependentVar);
}

// Row 0 only states where the curve begins.
void mfFunctionSegments_c::calculateValue()
{
    for (int row = 1; row < getSegmentCount(); ++row)
        calculateValue(row);
}

void mfFunctionSegments_c::calculateDerivatives(int row)
{
    if (iHolds(row))
        iAt(row).iDerive(motionObjectType, motorDependentVar);
}
