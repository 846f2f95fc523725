// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class ISimSplineData_c;

/// The services of the host: design library, resources, splines, motion results, units.
class MFCURVES_API IMotionServices_c {
public:
    virtual ~IMotionServices_c();

    /// The folders of the design library as one text, separated by ";"; empty when the
    /// host has no design library.
    virtual CString getDesignLibraryPaths() = 0;
    /// The path of the resource library. `baseName` is always "mfres".
    virtual CString getResourceLibraryPath(const CString& baseName) = 0;
    /// Returns a new, empty spline, or null. The library gives it back through
    /// releaseSplineData.
    virtual ISimSplineData_c* createSplineData() = 0;
    /// Takes back a spline made by createSplineData.
    virtual void releaseSplineData(ISimSplineData_c* spline) = 0;
    /// Fills `names`, which is empty when passed in, with the names of the existing
    /// motion results.
    virtual void getMotionResultNames(std::vector<CString>& names) = 0;
    /// The number of motion results. With 0, names are not checked against a list.
    virtual int getMotionResultCount() = 0;
    /// The factor of a unit kind. The value of an expression is divided by it.
    virtual double getUnitFactor(int unitKind) = 0;
    /// The unit kind of a motor quantity, for getUnitFactor.
    virtual int getMotorUnitKind(mf::MotorDriveType_e quantity) = 0;
    /// The unit kind of a force or torque quantity, for getUnitFactor.
    virtual int getForceTorqueUnitKind(mf::ForceTorqueType_e quantity) = 0;
};
