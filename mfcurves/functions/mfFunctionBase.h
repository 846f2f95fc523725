// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

// The base below has a fixed, non-virtual destructor. Curves are never deleted through
// it, so the warning is turned off here and where a class derives from it.
#if defined(__GNUC__)
#define MFCURVES_FIXED_BASE_BEGIN \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wnon-virtual-dtor\"")
#define MFCURVES_FIXED_BASE_END _Pragma("GCC diagnostic pop")
#else
#define MFCURVES_FIXED_BASE_BEGIN
#define MFCURVES_FIXED_BASE_END
#endif

MFCURVES_FIXED_BASE_BEGIN

/// The base of all kinds of curves: the quantity that the curve gives, its
/// independent variable, the rule for validity, and the kind of the curve.
///
/// Errors: fields take any number, including one outside its enumeration.
class MFCURVES_API mfFunctionBase_c {
public:
    /// 0 for a motor, whose quantity is motorDependentVar; any other number for a
    /// force or torque. Not a mf::MotionObjectType_e.
    int motionObjectType = 0;
    /// The quantity of a motor that the curve gives.
    mf::MotorDriveType_e motorDependentVar = mf::MotorDriveType_None;
    /// Whether the curve gives a force or a torque, when motionObjectType is not 0.
    mf::ForceTorqueType_e forceTorqueDependentVar = mf::ForceTorqueType_None;
    /// What X means.
    mf::IndependentVariableType_e independentVar = mf::IndependentVariableType_None;
    CString motionResult;  ///< the motion result used as X; empty for time and cycle angle

    mfFunctionBase_c() = default;
    mfFunctionBase_c(const mfFunctionBase_c&) = default;
    mfFunctionBase_c& operator=(const mfFunctionBase_c&) = default;
    ~mfFunctionBase_c() = default;

    /// True when independentVar says what X means, which is so for every kind that
    /// does not name its variable by a text.
    virtual bool HasEnumForIndependentVariable() const { return true; }
    /// The text that names the independent variable, for kinds that keep one.
    virtual CString GetIndependentVarName() const { return {}; }
    /// True for a table of segments.
    virtual bool IsSegements() const { return false; }  // spelling is exported
    /// True for a table of data points.
    virtual bool IsDataPoints() const { return false; }
    /// True for an expression.
    virtual bool IsExpression() const { return false; }

    /// True when both the meaning of X and the quantity of the curve are set.
    virtual bool IsValid();
    /// Resets quantities, independent variable and motion result.
    /// motionObjectType stays.
    virtual void ClearFunction();
};

MFCURVES_FIXED_BASE_END
