#pragma once

#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

/// A segment function as the host sees it. See mfFunctionSegments_c.
class MFCURVES_API IFunctionSegments_c {
public:
    virtual ~IFunctionSegments_c();
    virtual void clearSegments() = 0;
    virtual double evaluate(double x, int order) = 0;
    virtual void setMotorDependentVar(mf::MotorDriveType_e quantity) = 0;
    virtual mf::MotorDriveType_e getMotorDependentVar() = 0;
    virtual void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) = 0;
    virtual mf::ForceTorqueType_e getForceTorqueDependentVar() = 0;
    virtual void setIndependentVar(mf::IndependentVariableType_e variable) = 0;
    virtual mf::IndependentVariableType_e getIndependentVar() = 0;
    virtual void setMotionResult(const CString& name) = 0;
    virtual CString getMotionResult() = 0;
    virtual void getSegmentsData(std::vector<CString>& data) = 0;
    virtual void setSegmentsData(const std::vector<CString>& data) = 0;

protected:
    IFunctionSegments_c() = default;
    IFunctionSegments_c(const IFunctionSegments_c&) = default;
    IFunctionSegments_c& operator=(const IFunctionSegments_c&) = default;
};
