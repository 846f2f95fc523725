// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfDataPoints.h"

#include <memory>

mfDataPoints_c::mfDataPoints_c(mfPoint2D_c* point)
{
    if (point == nullptr)
        return;
    std::unique_ptr<mfPoint2D_c> taken(point);
    points_.push_back(taken.get());
    static_cast<void>(taken.release());
    iReadRange();
}

mfDataPoints_c::~mfDataPoints_c()
{
    for (mfPoint2D_c*& point : points_) {
        delete point;
        point = nullptr;
    }
}

void mfDataPoints_c::addPoint(double x, double y)
{
    auto point = std::make_unique<mfPoint2D_c>(x, y);
    points_.push_back(point.get());
    static_cast<void>(point.release());
    iReadRange();
}

bool mfDataPoints_c::getPoint(int index, double& x, double& y) const
{
    if (!iHolds(index))
        return false;
    x = iAt(index).x();
    y = iAt(index).y();
    return true;
}

double mfDataPoints_c::getX(int index) const
{
    return iHolds(index) ? iAt(index).x() : 0.0;
}

double mfDataPoints_c::getY(int index) const
{
    return iHolds(index) ? iAt(index).y() : 0.0;
}

void mfDataPoints_c::getRangeX(double& start, double& end) const
{
    start = startX_;
    end = endX_;
}

bool mfDataPoints_c::setPoint(int index, double x, double y)
{
    if (!iHolds(index) || !iKeepsOrder(index, x))
        return false;
    iAt(index) = mfPoint2D_c(x, y);
    iReadRange();
    return true;
}

bool mfDataPoints_c::setX(int index, double x)
{
    return iHolds(index) && setPoint(index, x, getY(index));
}

bool mfDataPoints_c::setY(int index, double y)
{
    if (!iHolds(index))
        return false;
    iAt(index) = mfPoint2D_c(iAt(index).x(), y);
    return true;
}

bool mfDataPoints_c::copy(mfDataPoints_c* source)
{
    if (source == nullptr)
        return false;
    const int count = source->getPointCount();
    for (int i = 0; i < count; ++i)
        addPoint(source->getX(i), source->getY(i));
    if (count > 0)
        endX_ = getX(count - 1);
    return true;
}

// Only the first and the last point are compared with their neighbour. A NaN passes
// the test of the first point and fails that of the last.
bool mfDataPoints_c::iKeepsOrder(int index, double x) const
{
    const int last = getPointCount() - 1;
    if (last == 0)
        return true;
    if (index == 0)
        return !(x > getX(1));
    if (index == last)
        return x >= getX(last - 1);
    return true;
}

void mfDataPoints_c::iReadRange()
{
    startX_ = points_.front()->x();
    endX_ = points_.back()->x();
}
