// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

/// An expression function as the host sees it. See mfFunctionExpression_c, which is the
/// only class that has this interface, for units, errors and ownership.
///
/// Threads: one at a time for each function.
class MFCURVES_API IFunctionExpression_c {
public:
    virtual ~IFunctionExpression_c();
    /// Clears the math expression, the variable, the domain and the samples. The parse
    /// expression stays.
    virtual void clearExpression() = 0;
    /// Sets the text that gives the value of a single point. Any text is stored; one that
    /// does not compile evaluates to 0.0 (mf::Curve says what is wrong with it). Derivatives
    /// and samples come from the parse expression: set both to the same text.
    virtual void setMathExpression(const CString& expression) = 0;
    /// The text that gives the value of a single point, as it was set.
    virtual CString getMathExpression() = 0;
    /// The name of the independent variable, as it was set.
    virtual CString getIndepVar() = 0;
    /// Sets by name what X means: time, the cycle angle, or the motion result of that
    /// name. Case does not matter.
    virtual void setIndepVar(const CString& text) = 0;
    /// The quantity of a motor, as it was set.
    virtual mf::MotorDriveType_e getMotorDependentVar() = 0;
    /// Sets which quantity of a motor the curve gives; None makes it a force or a torque
    /// in documents.
    virtual void setMotorDependentVar(mf::MotorDriveType_e quantity) = 0;
    /// Whether the curve gives a force or a torque, as it was set.
    virtual mf::ForceTorqueType_e getForceTorqueDependentVar() = 0;
    /// Sets whether the curve gives a force or a torque.
    virtual void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) = 0;
    /// Sets the range of X that is sampled and stored in documents. Single points may lie
    /// outside it. Neither the order of the ends nor NaN is checked.
    virtual void setDomain(double minX, double maxX) = 0;
    /// The start of the sampled range.
    virtual double getMinX() = 0;
    /// The end of the sampled range.
    virtual double getMaxX() = 0;

protected:
    IFunctionExpression_c() = default;
    IFunctionExpression_c(const IFunctionExpression_c&) = default;
    IFunctionExpression_c& operator=(const IFunctionExpression_c&) = default;
};
