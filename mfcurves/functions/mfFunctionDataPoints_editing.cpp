// SPDX-License-Identifier: MIT

#include <algorithm>
#include <memory>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/interfaces/ISimSplineData.h"

namespace {

constexpr int kXColumn = 0;
constexpr int kYColumn = 1;
constexpr double kDistanceBeyondEnds = 1.0;  // from an end of the table to a row that had to give way there

bool holds(const mfDataPoints_c& row, double x)
{
    return x >= row.getStartX() && x <= row.getEndX();
}

}  // namespace

void mfFunctionDataPoints_c::ClearFunction()
{
    mfFunctionBase_c::ClearFunction();
    interpolationType_ = mf::DataPointInterpolationType_Linear;
    iDeleteRows();
    if (splineData_ != nullptr)
        splineData_->clearPoints();
    updateRows_.clear();
}

bool mfFunctionDataPoints_c::Copy(mfFunctionDataPoints_c* source)
{
    if (source == nullptr)
        return false;
    if (source == this)
        return true;

    clearDataPoints();
    setIndependentVar(source->getIndependentVar());
    setMotionResult(source->getMotionResult());
    setMotorDependentVar(source->getMotorDependentVar());
    setForceTorqueDependentVar(source->getForceTorqueDependentVar());
    setInterpolationType(source->getInterpolationType());
    if (splineData_ != nullptr && source->splineData_ != nullptr)
        splineData_->copyFrom(source->splineData_);

    dataPoints_.reserve(source->dataPoints_.size());
    for (mfDataPoints_c* row : source->dataPoints_) {
        dataPoints_.push_back(new mfDataPoints_c);
        dataPoints_.back()->copy(row);
    }
    return true;
}

bool mfFunctionDataPoints_c::insertDataPoint(int row, mfDataPoints_c* points)
{
    const int countBefore = getDataPointsCount();
    const bool isTaken = iStore(row, points);
    if (!isTaken)
        return false;
    try {
        RegenSplineData();
    } catch (...) {
        // The caller cannot know whether the table has taken the list, so the
        // ownership goes back to the caller.
        if (getDataPointsCount() > countBefore)
            dataPoints_.erase(dataPoints_.begin() + row);
        updateRows_.clear();
        throw;
    }
    return true;
}

bool mfFunctionDataPoints_c::appendDataPoint(mfDataPoints_c* points)
{
    return iStore(getDataPointsCount(), points);
}

// Inserts without rebuilding the spline. On a clash the list keeps the row that the
// caller asked for, and its X changes to a free one.
bool mfFunctionDataPoints_c::iStore(int row, mfDataPoints_c* points)
{
    updateRows_.clear();
    if (row < 0 || row > getDataPointsCount() || points == nullptr)
        return false;

    updateRows_.reserve(1);
    bool fits = !iClashes(row, *points);
    if (!fits)
        fits = points->setPoint(0, iFreeX(row), points->getY(0));
    if (fits)
        dataPoints_.insert(dataPoints_.begin() + row, points);
    updateRows_.push_back(row);
    return true;
}

// Between two rows, the list may overlap the next row as long as it ends before that
// row's end.
bool mfFunctionDataPoints_c::iClashes(int row, const mfDataPoints_c& points) const
{
    if (isEmpty())
        return false;
    if (row == 0)
        return points.getEndX() >= iRow(0).getStartX();
    if (row == getDataPointsCount())
        return iRow(row - 1).getEndX() >= points.getStartX();
    return !(points.getStartX() > iRow(row - 1).getEndX() && points.getEndX() < iRow(row).getEndX());
}

double mfFunctionDataPoints_c::iFreeX(int row) const
{
    if (row == getDataPointsCount())
        return iRow(row - 1).getEndX() + kDistanceBeyondEnds;
    if (row == 0)
        return iRow(0).getStartX() - kDistanceBeyondEnds;
    return (iRow(row - 1).getEndX() + iRow(row).getStartX()) * 0.5;
}

bool mfFunctionDataPoints_c::modifyDataPoint(int row, int column, double x, double y)
{
    updateRows_.clear();
    if (!iHolds(row))
        return false;
    if (column == kXColumn)
        return iModifyX(row, x);
    if (column == kYColumn) {
        iRow(row).setY(0, y);
        RegenSplineData();
    }
    return true;
}

// Removes the row from the table, sets its new X and inserts it where that fits; on a
// clash, restores its old X and its old place. All memory is reserved first, so that
// no exception can lose the row while it is outside the table.
bool mfFunctionDataPoints_c::iModifyX(int row, double x)
{
    std::vector<std::size_t> overlapping;
    overlapping.reserve(dataPoints_.size());
    updateRows_.reserve(2);

    mfDataPoints_c* moved = &iRow(row);
    const double oldX = moved->getStartX();
    dataPoints_.erase(dataPoints_.begin() + row);
    moved->setX(0, x);

    int position = 0;
    updateRows_.push_back(row);
    if (IsRangeOverlap(moved, position, overlapping)) {
        moved->setX(0, oldX);
        dataPoints_.insert(dataPoints_.begin() + row, moved);
        return false;
    }
    updateRows_.push_back(position);
    dataPoints_.insert(dataPoints_.begin() + position, moved);
    RegenSplineData();
    return true;
}

bool mfFunctionDataPoints_c::deleteDataPoint(int row)
{
    if (!iHolds(row))
        return false;
    updateRows_.assign(1, row);
    delete &iRow(row);
    dataPoints_.erase(dataPoints_.begin() + row);
    RegenSplineData();
    return true;
}

// The vector is taken by value because the signature is exported.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool mfFunctionDataPoints_c::deleteDataPoints(std::vector<std::size_t> rows)
{
    for (const std::size_t row : rows) {
        if (row >= dataPoints_.size())
            continue;
        delete dataPoints_[row];
        dataPoints_[row] = nullptr;
    }
    std::erase(dataPoints_, nullptr);
    RegenSplineData();
    return true;
}

// Inserts the rows of one point before the row that they come from, then removes
// that row.
void mfFunctionDataPoints_c::expandDataPoints(int row)
{
    if (!iHolds(row))
        return;
    const mfDataPoints_c& expanded = iRow(row);
    const int count = expanded.getPointCount();

    std::vector<std::unique_ptr<mfDataPoints_c>> rows;
    for (int i = 0; i < count; ++i) {
        rows.push_back(std::make_unique<mfDataPoints_c>());
        rows.back()->addPoint(expanded.getX(i), expanded.getY(i));
    }
    auto place = dataPoints_.insert(dataPoints_.begin() + row, rows.size(), nullptr);
    for (std::unique_ptr<mfDataPoints_c>& single : rows)
        *place++ = single.release();

    delete *place;
    dataPoints_.erase(place);
}

bool mfFunctionDataPoints_c::selectDataPoint(int row, mfDataPoints_c*& out)
{
    out = iHolds(row) ? &iRow(row) : nullptr;
    return out != nullptr;
}

// Stops at the first row whose successor starts above the range. So each row visited
// starts within or below the range, and overlaps it unless it also ends below it. The
// last row gets a successor 1.0 above the range, so that the loop stops there. If 1.0
// is too small to change the end of the range, the loop runs one row further.
bool mfFunctionDataPoints_c::IsRangeOverlap(mfDataPoints_c* points, int& position,
                                            std::vector<std::size_t>& rows)
{
    position = 0;
    if (isEmpty() || points == nullptr)
        return false;

    const double start = points->getStartX();
    const double end = points->getEndX();
    if (end < iRow(0).getStartX())
        return false;

    const int count = getDataPointsCount();
    for (; position < count; ++position) {
        const double next = position == count - 1 ? end + 1.0 : iRow(position + 1).getStartX();
        if (iRow(position).getEndX() >= start)
            rows.push_back(static_cast<std::size_t>(position));
        if (end < next)
            break;
    }
    position = std::min(position + 1 - static_cast<int>(rows.size()), count);
    return !rows.empty();
}

// A bisection that ends on two rows. It returns the upper one even for an x in the
// lower one.
int mfFunctionDataPoints_c::findDataPonts(double x)
{
    if (isEmpty())
        return 0;
    int low = 0;
    int high = getDataPointsCount() - 1;
    int middle = getDataPointsCount() / 2;
    while (high - low > 1) {
        if (holds(iRow(middle), x))
            return middle;
        if (x >= iRow(middle).getStartX()) {
            low = middle;
            middle = (middle + high) / 2;
        } else {
            high = middle;
            middle = (middle + low) / 2;
        }
    }
    if (holds(iRow(high), x))
        return high;
    return holds(iRow(low), x) ? high : middle;
}

int mfFunctionDataPoints_c::getTotalPoints() const
{
    int total = 0;
    for (const mfDataPoints_c* row : dataPoints_)
        total += row->getPointCount();
    return total;
}

void mfFunctionDataPoints_c::getDomian(double& start, double& end) const
{
    start = isEmpty() ? 0.0 : dataPoints_.front()->getStartX();
    end = isEmpty() ? 0.0 : dataPoints_.back()->getEndX();
}

void mfFunctionDataPoints_c::iDeleteRows()
{
    for (mfDataPoints_c*& row : dataPoints_) {
        delete row;
        row = nullptr;
    }
    dataPoints_.clear();
}
