// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfFunctionBase.h"

bool mfFunctionBase_c::IsValid()
{
    if (HasEnumForIndependentVariable() && independentVar == mf::IndependentVariableType_None)
        return false;
    if (motionObjectType == 0)
        return motorDependentVar != mf::MotorDriveType_None;
    return forceTorqueDependentVar != mf::ForceTorqueType_None;
}

void mfFunctionBase_c::ClearFunction()
{
    motorDependentVar = mf::MotorDriveType_None;
    forceTorqueDependentVar = mf::ForceTorqueType_None;
    independentVar = mf::IndependentVariableType_None;
    motionResult = CString();
}
