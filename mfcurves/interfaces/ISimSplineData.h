// SPDX-License-Identifier: MIT
#pragma once

#include <map>

#include "mfcurves/platform/mfExport.h"

/// The interpolator of a data-point function, made by the host's services. A host may
/// provide its own; mf::host::Spline is the one in mf::host.
///
/// X and Y have the units of the function; nothing is converted. A function calls its
/// spline from the thread that uses the function.
class MFCURVES_API ISimSplineData_c {
public:
    virtual ~ISimSplineData_c();

    /// Sets the interpolation: 0 Akima, 1 cubic, 2 linear.
    virtual void setKind(int kind) = 0;
    /// The kind set last.
    virtual int getKind() = 0;
    /// Replaces kind and points by those of `source`.
    virtual void copyFrom(ISimSplineData_c* source) = 0;
    /// All points, ascending in x.
    virtual const std::map<double, double>& getPointMap() = 0;
    /// Removes all points; the kind stays.
    virtual void clearPoints() = 0;
    /// Adds a point; a point with the same x is replaced.
    virtual void addPoint(double x, double y) = 0;
    /// The value at x. Outside the points, the spline decides how the curve continues.
    virtual double getValue(double x) = 0;
    /// The first derivative at x.
    virtual double getFirstDerivative(double x) = 0;
    /// The second derivative at x.
    virtual double getSecondDerivative(double x) = 0;
    /// The third derivative at x.
    virtual double getThirdDerivative(double x) = 0;
};
