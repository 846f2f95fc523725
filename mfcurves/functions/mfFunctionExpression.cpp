// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfFunctionExpression.h"

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/platform/resources.h"

namespace {

CString resourceText(unsigned number)
{
    CString text;
    text.LoadString(number);
    return text;
}

mf::IndependentVariableType_e independentVariableNamed(const CString& name)
{
    const CString time = resourceText(mf::platform::kTimeName);
    const CString cycleAngle = resourceText(mf::platform::kCycleAngleName);
    if (name.IsEmpty() || name.CompareNoCase(time) == 0)
        return mf::IndependentVariableType_Time;
    if (name.CompareNoCase(cycleAngle) == 0)
        return mf::IndependentVariableType_CycleAngle;
    return mf::IndependentVariableType_MotionResult;
}

}  // namespace

mfFunctionExpression_c::mfFunctionExpression_c()
{
    independentVar = mf::IndependentVariableType_Time;
}

mfFunctionExpression_c::~mfFunctionExpression_c()
{
    iFreePlottingData();
    iReleaseCalculator();
}

void mfFunctionExpression_c::clearExpression()
{
    ClearFunction();
}

void mfFunctionExpression_c::setMathExpression(const CString& expression)
{
    isReusable_ = isReusable_ && expression == mathExpression_;
    mathExpression_ = expression;
}

CString mfFunctionExpression_c::getMathExpression()
{
    return mathExpression_;
}

CString mfFunctionExpression_c::getIndepVar()
{
    return independentVariable_;
}

// `text` may be a field of this object, so it is read before any field changes.
void mfFunctionExpression_c::setIndepVar(const CString& text)
{
    independentVar = independentVariableNamed(text);
    independentVariable_ = text;
    motionResult = independentVar == mf::IndependentVariableType_MotionResult ? text : CString();
}

mf::MotorDriveType_e mfFunctionExpression_c::getMotorDependentVar()
{
    return motorDependentVar;
}

void mfFunctionExpression_c::setMotorDependentVar(mf::MotorDriveType_e quantity)
{
    motorDependentVar = quantity;
}

mf::ForceTorqueType_e mfFunctionExpression_c::getForceTorqueDependentVar()
{
    return forceTorqueDependentVar;
}

void mfFunctionExpression_c::setForceTorqueDependentVar(mf::ForceTorqueType_e quantity)
{
    forceTorqueDependentVar = quantity;
}

void mfFunctionExpression_c::setDomain(double minX, double maxX)
{
    minX_ = minX;
    maxX_ = maxX;
}

double mfFunctionExpression_c::getMinX()
{
    return minX_;
}

double mfFunctionExpression_c::getMaxX()
{
    return maxX_;
}

bool mfFunctionExpression_c::HasEnumForIndependentVariable() const
{
    return independentVar != mf::IndependentVariableType_None;
}

CString mfFunctionExpression_c::GetIndependentVarName() const
{
    return independentVariable_;
}

bool mfFunctionExpression_c::IsExpression() const
{
    return true;
}

void mfFunctionExpression_c::ClearFunction()
{
    mfFunctionBase_c::ClearFunction();
    independentVar = mf::IndependentVariableType_Time;
    minX_ = 0.0;
    maxX_ = 0.0;
    independentVariable_ = CString();
    mathExpression_ = CString();
    isReusable_ = false;
    iFreePlottingData();
    plottingPointCount_ = 1;
}

bool mfFunctionExpression_c::isAValidADAMSExpression(const CString& /*expression*/) const
{
    return true;
}

bool mfFunctionExpression_c::Copy(mfFunctionExpression_c* other)
{
    if (other == nullptr)
        return false;
    if (other == this)
        return true;
    setMathExpression(other->getMathExpression());
    setIndepVar(other->getIndepVar());
    setMotorDependentVar(other->getMotorDependentVar());
    setForceTorqueDependentVar(other->getForceTorqueDependentVar());
    const double minX = other->getMinX();
    const double maxX = other->getMaxX();
    setDomain(minX, maxX);
    return true;
}

void mfFunctionExpression_c::updateForLegacyData(bool /*pointPerRow*/)
{
    calculateValue();
}

void mfFunctionExpression_c::iReleaseCalculator()
{
    isReusable_ = false;
    lastPointFailed_ = false;
    point_ = {};
    if (calculator_ == nullptr)
        return;
    calculator_->Release();
    calculator_ = nullptr;
}
