// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/functions/mfPoint2D.h"
#include "mfcurves/platform/mfExport.h"

/// A list of points with the X of its first and its last point: one row of a
/// data-point table. Nearly every row holds one point.
///
/// Errors: for an index outside the list, operations return false and leave their
/// outputs unchanged; getX and getY return 0.0.
/// Ownership: the list owns its points.
/// Copying: copy construction and assignment share the points, so only one of
/// the two lists may be destroyed. Use copy.
class MFCURVES_API mfDataPoints_c {
public:
    mfDataPoints_c() = default;  ///< no points; the range is 0.0 to 0.0
    /// A list of one point. Takes ownership of `point`, a single heap object; a null
    /// point leaves the list empty.
    explicit mfDataPoints_c(mfPoint2D_c* point);
    mfDataPoints_c(const mfDataPoints_c&) = default;
    mfDataPoints_c& operator=(const mfDataPoints_c&) = default;
    ~mfDataPoints_c();

    /// Appends a point, whatever its X: the list never sorts.
    void addPoint(double x, double y);

    /// The number of points.
    int getPointCount() const { return static_cast<int>(points_.size()); }
    /// Both coordinates of a point, counted from 0.
    bool getPoint(int index, double& x, double& y) const;
    /// X of a point, counted from 0.
    double getX(int index) const;
    /// Y of a point, counted from 0.
    double getY(int index) const;

    double getStartX() const { return startX_; }  ///< X of the first point
    double getEndX() const { return endX_; }      ///< X of the last point
    /// X of the first and of the last point.
    void getRangeX(double& start, double& end) const;

    /// Moves a point. False, changing nothing, when the first point would pass the
    /// second, or the last point the one before it; equal X are allowed. The points
    /// between are not checked and may pass their neighbours.
    bool setPoint(int index, double x, double y);
    /// The same for X alone.
    bool setX(int index, double x);
    /// Changes Y, without any check.
    bool setY(int index, double y);

    /// Appends a copy of each point of `source` and returns true; false, changing
    /// nothing, for null. If this list already has points, the end of its range
    /// becomes its X at the last index of the source, not at its own last index.
    bool copy(mfDataPoints_c* source);

private:
    bool iHolds(int index) const { return index >= 0 && index < getPointCount(); }
    MFCURVES_LOCAL bool iKeepsOrder(int index, double x) const;
    MFCURVES_LOCAL void iReadRange();
    mfPoint2D_c& iAt(int index) { return *points_[static_cast<std::size_t>(index)]; }
    const mfPoint2D_c& iAt(int index) const { return *points_[static_cast<std::size_t>(index)]; }

    std::vector<mfPoint2D_c*> points_;  // owned
    double startX_ = 0.0;
    double endX_ = 0.0;
};
