#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class IFunctionDataPoints_c;
class IFunctionExpression_c;
class IFunctionSegments_c;

/// A motion function as the host sees it. See mfFunctionData_c.
class MFCURVES_API IMotionFunctionData_c {
public:
    IMotionFunctionData_c() = default;
    IMotionFunctionData_c(const IMotionFunctionData_c&) = delete;
    IMotionFunctionData_c& operator=(const IMotionFunctionData_c&) = delete;

    virtual ~IMotionFunctionData_c();
    virtual bool initialize() = 0;
    virtual CString getName() = 0;
    virtual void setName(CString& name) = 0;
    virtual void setFunctionType(mf::FunctionType_e type) = 0;
    virtual mf::FunctionType_e getFunctionType() = 0;
    virtual void setMotorDriveType(mf::MotorDriveType_e quantity) = 0;
    virtual mf::MotorDriveType_e getMotorDriveType() = 0;
    virtual void setXYDataType(mf::MotFuncXYDataType_e type) = 0;
    virtual mf::MotFuncXYDataType_e getXYDataType() = 0;
    virtual bool isXValueTimeOrCycleAngle() = 0;
    virtual bool isXValueCycleAngle() = 0;
    virtual bool getCanUseElseWhere() = 0;
    virtual void setCanUseElseWhere(bool usable) = 0;
    virtual void setMotionObjectType(mf::MotionObjectType_e type) = 0;
    virtual mf::MotionObjectType_e getMotionObjectType() = 0;
    virtual bool isMotorData() = 0;
    virtual bool isForceData() = 0;
    virtual bool isTorqueData() = 0;
    virtual IFunctionSegments_c* getFunctionSegments() = 0;
    virtual IFunctionDataPoints_c* getFunctionDataPoints() = 0;
    virtual IFunctionExpression_c* getFunctionExpression() = 0;
    virtual const char* getXMLData() = 0;
    virtual void setXMLData(char* text) = 0;
    virtual double evaluate(double x, int order) = 0;
    /// Does nothing unless a function overrides it.
    virtual void updateForLegacyData(bool pointPerRow);
};
