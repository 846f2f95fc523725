// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/CString.h"
#include "tests/support/FakeHost.h"

namespace mf::test {

/// A table function that records which of its virtual operations a copy uses: those that
/// the tables of segments and of data points have in common.
template <typename Function>
class RecordingFunction : public Function {
public:
    explicit RecordingFunction(Calls& calls) : calls_(calls) {}

    void ClearFunction() override
    {
        record("ClearFunction");
        Function::ClearFunction();
    }
    void setMotorDependentVar(MotorDriveType_e quantity) override
    {
        record("set motor");
        Function::setMotorDependentVar(quantity);
    }
    MotorDriveType_e getMotorDependentVar() override
    {
        record("get motor");
        return Function::getMotorDependentVar();
    }
    void setForceTorqueDependentVar(ForceTorqueType_e quantity) override
    {
        record("set force");
        Function::setForceTorqueDependentVar(quantity);
    }
    ForceTorqueType_e getForceTorqueDependentVar() override
    {
        record("get force");
        return Function::getForceTorqueDependentVar();
    }
    void setIndependentVar(IndependentVariableType_e variable) override
    {
        record("set variable");
        Function::setIndependentVar(variable);
    }
    IndependentVariableType_e getIndependentVar() override
    {
        record("get variable");
        return Function::getIndependentVar();
    }
    void setMotionResult(const CString& name) override
    {
        record("set result");
        Function::setMotionResult(name);
    }
    CString getMotionResult() override
    {
        record("get result");
        return Function::getMotionResult();
    }

protected:
    void record(const char* call) { calls_.emplace_back(call); }

private:
    Calls& calls_;
};

}  // namespace mf::test
