// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

/// A segment function as the host sees it. See mfFunctionSegments_c, which is the only
/// class that has this interface, for units, errors and ownership.
///
/// Threads: one at a time for each function.
class MFCURVES_API IFunctionSegments_c {
public:
    virtual ~IFunctionSegments_c();
    /// Removes all rows and resets the quantities, the variable and its motion result.
    virtual void clearSegments() = 0;
    /// The value (order 0) or derivative (1 to 3) at x; 0.0 if it does not exist.
    /// mfFunctionData_c::evaluate documents seams, x beyond the ends and rows that were
    /// not sampled.
    virtual double evaluate(double x, int order) = 0;
    /// Sets which quantity of a motor the curve gives, and so how many derivatives are
    /// sampled. Used while motionObjectType is 0.
    virtual void setMotorDependentVar(mf::MotorDriveType_e quantity) = 0;
    /// The quantity of a motor, as it was set.
    virtual mf::MotorDriveType_e getMotorDependentVar() = 0;
    /// Sets whether the curve gives a force or a torque. Used while motionObjectType is
    /// not 0, so set that too.
    virtual void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) = 0;
    /// Whether the curve gives a force or a torque, as it was set.
    virtual mf::ForceTorqueType_e getForceTorqueDependentVar() = 0;
    /// Sets what X means. For a motion result, setMotionResult sets its name. While X is
    /// time or the cycle angle, edits do not push rows below 0.
    virtual void setIndependentVar(mf::IndependentVariableType_e variable) = 0;
    /// What X means: time in s, the cycle angle in degrees, or a motion result.
    virtual mf::IndependentVariableType_e getIndependentVar() = 0;
    /// Sets the name of the motion result used as X; empty for time and cycle angle.
    /// The name is not checked.
    virtual void setMotionResult(const CString& name) = 0;
    /// The name of the motion result used as X; empty for time and cycle angle.
    virtual CString getMotionResult() = 0;
    /// Does nothing; read rows through mfFunctionSegments_c::selectSegment.
    virtual void getSegmentsData(std::vector<CString>& data) = 0;
    /// Does nothing; add rows through mfFunctionSegments_c::addSegment.
    virtual void setSegmentsData(const std::vector<CString>& data) = 0;

protected:
    IFunctionSegments_c() = default;
    IFunctionSegments_c(const IFunctionSegments_c&) = default;
    IFunctionSegments_c& operator=(const IFunctionSegments_c&) = default;
};
