// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

// The destructor of the base below is fixed as it is. Nobody deletes a curve through
// that base, so the warning about it is of no use, also where a class derives from it.
#if defined(__GNUC__)
#define MFCURVES_FIXED_BASE_BEGIN \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wnon-virtual-dtor\"")
#define MFCURVES_FIXED_BASE_END _Pragma("GCC diagnostic pop")
#else
#define MFCURVES_FIXED_BASE_BEGIN
#define MFCURVES_FIXED_BASE_END
#endif

MFCURVES_FIXED_BASE_BEGIN

/// What every kind of curve says of what it drives, the validity rule that this
/// implies, and the questions that tell the kinds apart.
///
/// Errors: fields take any number, one outside its enumeration included.
class MFCURVES_API mfFunctionBase_c {
public:
    /// 0 when the curve drives a motor, so that motorDependentVar governs; any
    /// other number when it is a force or torque. Not a mf::MotionObjectType_e.
    int motionObjectType = 0;
    /// The quantity of a motor that the curve gives.
    mf::MotorDriveType_e motorDependentVar = mf::MotorDriveType_None;
    /// Whether the curve gives a force or a torque, where motionObjectType is not 0.
    mf::ForceTorqueType_e forceTorqueDependentVar = mf::ForceTorqueType_None;
    /// What X stands for.
    mf::IndependentVariableType_e independentVar = mf::IndependentVariableType_None;
    CString motionResult;  ///< the motion result that X stands for; empty for time and cycle angle

    mfFunctionBase_c() = default;
    mfFunctionBase_c(const mfFunctionBase_c&) = default;
    mfFunctionBase_c& operator=(const mfFunctionBase_c&) = default;
    ~mfFunctionBase_c() = default;

    /// True when independentVar tells what X stands for; true for a kind that has
    /// no other way to tell.
    virtual bool HasEnumForIndependentVariable() const { return true; }
    /// The text that names the independent variable, for kinds that keep one.
    virtual CString GetIndependentVarName() const { return {}; }
    /// True for a table of segments.
    virtual bool IsSegements() const { return false; }  // spelling is exported
    /// True for a table of data points.
    virtual bool IsDataPoints() const { return false; }
    /// True for an expression.
    virtual bool IsExpression() const { return false; }

    /// True when the function says what X stands for and which quantity it gives.
    virtual bool IsValid();
    /// Forgets quantities, independent variable and motion result.
    /// motionObjectType stays.
    virtual void ClearFunction();
};

MFCURVES_FIXED_BASE_END
