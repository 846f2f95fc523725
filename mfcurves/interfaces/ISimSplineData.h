#pragma once

#include <map>

#include "mfcurves/platform/mfExport.h"

/// The interpolator of a data-point function, made by the host's services.
class MFCURVES_API ISimSplineData_c {
public:
    virtual ~ISimSplineData_c();

    /// Chooses the interpolation: 0 Akima, 1 cubic, 2 linear.
    virtual void setKind(int kind) = 0;
    /// The kind set last.
    virtual int getKind() = 0;
    /// Takes over the content of `source`.
    virtual void copyFrom(ISimSplineData_c* source) = 0;
    /// All points, ascending in x.
    virtual const std::map<double, double>& getPointMap() = 0;
    virtual void clearPoints() = 0;
    virtual void addPoint(double x, double y) = 0;
    virtual double getValue(double x) = 0;
    virtual double getFirstDerivative(double x) = 0;
    virtual double getSecondDerivative(double x) = 0;
    virtual double getThirdDerivative(double x) = 0;
};
