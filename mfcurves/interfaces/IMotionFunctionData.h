// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class IFunctionDataPoints_c;
class IFunctionExpression_c;
class IFunctionSegments_c;

/// A motion function as the host sees it. See mfFunctionData_c, which is the only class
/// that has this interface, for errors and ownership.
///
/// Threads: one at a time for each function.
class MFCURVES_API IMotionFunctionData_c {
public:
    IMotionFunctionData_c() = default;
    IMotionFunctionData_c(const IMotionFunctionData_c&) = delete;
    IMotionFunctionData_c& operator=(const IMotionFunctionData_c&) = delete;

    virtual ~IMotionFunctionData_c();
    /// Makes the segments, the data points and the expression of this function. Call it
    /// once, before anything else, while the host's context is set. False when the host
    /// has no services.
    virtual bool initialize() = 0;
    /// The name of the function; empty at first.
    virtual CString getName() = 0;
    /// Sets the name of the function. createXMLData writes the name passed to it, not this
    /// one.
    virtual void setName(CString& name) = 0;
    /// Selects the active kind: the one that evaluate, isXValueCycleAngle and the drive
    /// type refer to. The others keep their data. Any number is stored; one outside the
    /// enumeration selects no kind.
    virtual void setFunctionType(mf::FunctionType_e type) = 0;
    /// The kind that is active, as it was set.
    virtual mf::FunctionType_e getFunctionType() = 0;
    /// Sets which quantity of a motor the active kind gives. Set the function type before
    /// this.
    virtual void setMotorDriveType(mf::MotorDriveType_e quantity) = 0;
    /// The quantity of a motor that the active kind gives; None when no kind is active.
    virtual mf::MotorDriveType_e getMotorDriveType() = 0;
    /// Sets the kind of the X-Y data, which a document stores as its unit and quantity. It
    /// does not change any value.
    virtual void setXYDataType(mf::MotFuncXYDataType_e type) = 0;
    /// The kind of the X-Y data, as it was set.
    virtual mf::MotFuncXYDataType_e getXYDataType() = 0;
    /// Always true, whatever X means. The getIndependentVar of each kind returns what X
    /// means.
    virtual bool isXValueTimeOrCycleAngle() = 0;
    /// True when X of the active kind is the cycle angle.
    virtual bool isXValueCycleAngle() = 0;
    /// The host's flag that the function may be used in several places.
    virtual bool getCanUseElseWhere() = 0;
    /// Sets that flag. The library does not read it.
    virtual void setCanUseElseWhere(bool usable) = 0;
    /// Sets what the function drives. Documents store it, and a document in a file can be
    /// read only into a function that drives the same object. It is not passed on to the
    /// kinds: for a force or a torque, set their motionObjectType to 1 too
    /// (mfFunctionData_c shows how).
    virtual void setMotionObjectType(mf::MotionObjectType_e type) = 0;
    /// What the function drives, as it was set.
    virtual mf::MotionObjectType_e getMotionObjectType() = 0;
    /// True when the function drives a motor.
    virtual bool isMotorData() = 0;
    /// True when the function drives a force.
    virtual bool isForceData() = 0;
    /// True when the function drives a torque.
    virtual bool isTorqueData() = 0;
    /// The table of segments, active or not; owned by this function, null before
    /// initialize. It is a mfFunctionSegments_c.
    virtual IFunctionSegments_c* getFunctionSegments() = 0;
    /// The table of data points, active or not; owned by this function, null before
    /// initialize. It is a mfFunctionDataPoints_c.
    virtual IFunctionDataPoints_c* getFunctionDataPoints() = 0;
    /// The expression, active or not; owned by this function, null before initialize. It
    /// is a mfFunctionExpression_c.
    virtual IFunctionExpression_c* getFunctionExpression() = 0;
    /// The document that the host keeps with the function, in the narrow encoding; null
    /// when it is empty. The pointer is valid until the text changes.
    virtual const char* getXMLData() = 0;
    /// Stores a copy of a zero-terminated text; null clears it. The text is not parsed.
    virtual void setXMLData(char* text) = 0;
    /// The value (order 0) or derivative (1 to 3) of the active kind at x; 0.0 if it does
    /// not exist. See mfFunctionData_c::evaluate.
    virtual double evaluate(double x, int order) = 0;
    /// Does nothing unless a function overrides it.
    virtual void updateForLegacyData(bool pointPerRow);
};
