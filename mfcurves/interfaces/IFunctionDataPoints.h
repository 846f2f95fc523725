// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class ISimSplineData_c;

/// A data-point function as the host sees it. See mfFunctionDataPoints_c, which is the
/// only class that has this interface, for units, errors and ownership.
///
/// Threads: one at a time for each function.
class MFCURVES_API IFunctionDataPoints_c {
public:
    virtual ~IFunctionDataPoints_c();
    /// The spline that joins the points, lent by the host's services; null when the
    /// function has no spline.
    virtual ISimSplineData_c* getSplineData() = 0;
    /// Replaces the spline and returns the former one to the host's services. The new
    /// one does not receive the table's points: call RegenSplineData for that.
    virtual void setSplineData(ISimSplineData_c* spline) = 0;
    /// Removes all points and resets the quantities, the variable and its motion result.
    virtual void clearDataPoints() = 0;
    /// Sets which quantity of a motor the curve gives. Used while motionObjectType is 0.
    virtual void setMotorDependentVar(mf::MotorDriveType_e quantity) = 0;
    /// The quantity of a motor, as it was set.
    virtual mf::MotorDriveType_e getMotorDependentVar() = 0;
    /// Sets whether the curve gives a force or a torque. Used while motionObjectType is
    /// not 0, so set that too.
    virtual void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) = 0;
    /// Whether the curve gives a force or a torque, as it was set.
    virtual mf::ForceTorqueType_e getForceTorqueDependentVar() = 0;
    /// What X means: time in s, the cycle angle in degrees, or a motion result.
    virtual mf::IndependentVariableType_e getIndependentVar() = 0;
    /// Sets what X means. For a motion result, setMotionResult sets its name.
    virtual void setIndependentVar(mf::IndependentVariableType_e variable) = 0;
    /// Sets how the points are joined. Any number is stored; only the three known types
    /// are passed to the spline.
    virtual void setInterpolationType(mf::DataPointInterpolationType_e type) = 0;
    /// How the points are joined, as it was set.
    virtual mf::DataPointInterpolationType_e getInterpolationType() = 0;
    /// Sets the name of the motion result used as X; empty for time and cycle angle.
    /// The name is not checked.
    virtual void setMotionResult(const CString& name) = 0;
    /// The name of the motion result used as X; empty for time and cycle angle.
    virtual CString getMotionResult() = 0;

protected:
    IFunctionDataPoints_c() = default;
    IFunctionDataPoints_c(const IFunctionDataPoints_c&) = default;
    IFunctionDataPoints_c& operator=(const IFunctionDataPoints_c&) = default;
};
