// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class ISimSplineData_c;

/// The service object of the host.
class MFCURVES_API IMotionServices_c {
public:
    virtual ~IMotionServices_c();

    /// The design library directories as one text, separated by ";"; empty when
    /// there are none.
    virtual CString getDesignLibraryPaths() = 0;
    /// The path of the resource library of that base name, which is "mfres".
    virtual CString getResourceLibraryPath(const CString& baseName) = 0;
    /// A new, empty spline, which goes back through releaseSplineData.
    virtual ISimSplineData_c* createSplineData() = 0;
    /// Takes back a spline made by createSplineData.
    virtual void releaseSplineData(ISimSplineData_c* spline) = 0;
    /// Fills the vector, which arrives empty, with the names of the motion
    /// results that exist.
    virtual void getMotionResultNames(std::vector<CString>& names) = 0;
    /// Zero when there is no result list to check a name against.
    virtual int getMotionResultCount() = 0;
    /// The factor of a unit kind; the value of an expression is divided by it.
    virtual double getUnitFactor(int unitKind) = 0;
    /// The unit kind of a motor quantity, an argument of getUnitFactor.
    virtual int getMotorUnitKind(mf::MotorDriveType_e quantity) = 0;
    /// The unit kind of a force or torque quantity, likewise.
    virtual int getForceTorqueUnitKind(mf::ForceTorqueType_e quantity) = 0;
};
