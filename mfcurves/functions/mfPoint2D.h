// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

/// A point (x, y), the element of every plotting array.
///
/// Between two points, `*` is the cross product and `%` the dot product, both numbers;
/// a point times a number is a point.
class MFCURVES_API mfPoint2D_c {
public:
    mfPoint2D_c() = default;                           ///< the point (0, 0)
    mfPoint2D_c(double x, double y) : x_(x), y_(y) {}  ///< the point (x, y)
    mfPoint2D_c(const mfPoint2D_c&) = default;
    mfPoint2D_c& operator=(const mfPoint2D_c&) = default;
    ~mfPoint2D_c() = default;

    double x() const { return x_; }  ///< value of the independent variable in a plotting array
    double y() const { return y_; }  ///< value or derivative at x in a plotting array

    /// Sum, coordinate by coordinate.
    mfPoint2D_c operator+(const mfPoint2D_c& q) const { return {x_ + q.x_, y_ + q.y_}; }
    /// Difference, coordinate by coordinate.
    mfPoint2D_c operator-(const mfPoint2D_c& q) const { return {x_ - q.x_, y_ - q.y_}; }
    /// Product with a number.
    mfPoint2D_c operator*(double s) const { return {x_ * s, y_ * s}; }

    /// Cross product, x * q.y - y * q.x.
    double operator*(const mfPoint2D_c& q) const { return x_ * q.y_ - y_ * q.x_; }
    /// Dot product, x * q.x + y * q.y.
    double operator%(const mfPoint2D_c& q) const { return x_ * q.x_ + y_ * q.y_; }

    /// Distance from (0, 0).
    double length() const;
    /// Square of the length.
    double sqrLength() const { return x_ * x_ + y_ * y_; }

private:
    double x_ = 0.0;
    double y_ = 0.0;
};

/// Product with a number.
inline mfPoint2D_c operator*(double s, const mfPoint2D_c& p)
{
    return p * s;
}
