#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class ISimSplineData_c;

/// A data-point function as the host sees it. See mfFunctionDataPoints_c.
class MFCURVES_API IFunctionDataPoints_c {
public:
    virtual ~IFunctionDataPoints_c();
    virtual ISimSplineData_c* getSplineData() = 0;
    virtual void setSplineData(ISimSplineData_c* spline) = 0;
    virtual void clearDataPoints() = 0;
    virtual void setMotorDependentVar(mf::MotorDriveType_e quantity) = 0;
    virtual mf::MotorDriveType_e getMotorDependentVar() = 0;
    virtual void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) = 0;
    virtual mf::ForceTorqueType_e getForceTorqueDependentVar() = 0;
    virtual mf::IndependentVariableType_e getIndependentVar() = 0;
    virtual void setIndependentVar(mf::IndependentVariableType_e variable) = 0;
    virtual void setInterpolationType(mf::DataPointInterpolationType_e type) = 0;
    virtual mf::DataPointInterpolationType_e getInterpolationType() = 0;
    virtual void setMotionResult(const CString& name) = 0;
    virtual CString getMotionResult() = 0;

protected:
    IFunctionDataPoints_c() = default;
    IFunctionDataPoints_c(const IFunctionDataPoints_c&) = default;
    IFunctionDataPoints_c& operator=(const IFunctionDataPoints_c&) = default;
};
