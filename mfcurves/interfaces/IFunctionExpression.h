#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

/// An expression function as the host sees it. See mfFunctionExpression_c.
class MFCURVES_API IFunctionExpression_c {
public:
    virtual ~IFunctionExpression_c();
    virtual void clearExpression() = 0;
    virtual void setMathExpression(const CString& expression) = 0;
    virtual CString getMathExpression() = 0;
    virtual CString getIndepVar() = 0;
    virtual void setIndepVar(const CString& text) = 0;
    virtual mf::MotorDriveType_e getMotorDependentVar() = 0;
    virtual void setMotorDependentVar(mf::MotorDriveType_e quantity) = 0;
    virtual mf::ForceTorqueType_e getForceTorqueDependentVar() = 0;
    virtual void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) = 0;
    virtual void setDomain(double minX, double maxX) = 0;
    virtual double getMinX() = 0;
    virtual double getMaxX() = 0;

protected:
    IFunctionExpression_c() = default;
    IFunctionExpression_c(const IFunctionExpression_c&) = default;
    IFunctionExpression_c& operator=(const IFunctionExpression_c&) = default;
};
