// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfFunctionBase.h"

#include <gtest/gtest.h>

#include "tests/support/FakeHost.h"

namespace {

// A kind that names its variable by a text if independentVar is not set.
class NamedKind : public mfFunctionBase_c {
public:
    bool HasEnumForIndependentVariable() const override { return independentVar != 0; }
};

TEST(FunctionBase, StartsWithNothingSet)
{
    const mfFunctionBase_c function;
    EXPECT_EQ(function.motionObjectType, 0);
    EXPECT_EQ(function.motorDependentVar, mf::MotorDriveType_None);
    EXPECT_EQ(function.forceTorqueDependentVar, mf::ForceTorqueType_None);
    EXPECT_EQ(function.independentVar, mf::IndependentVariableType_None);
    EXPECT_TRUE(function.motionResult.IsEmpty());
}

TEST(FunctionBase, IsOfNoKind)
{
    const mfFunctionBase_c function;
    EXPECT_TRUE(function.HasEnumForIndependentVariable());
    EXPECT_TRUE(function.GetIndependentVarName().IsEmpty());
    EXPECT_FALSE(function.IsSegements());
    EXPECT_FALSE(function.IsDataPoints());
    EXPECT_FALSE(function.IsExpression());
}

struct ValidCase {
    const char* name;
    int motionObjectType;
    int motor;
    int force;
    int independent;
    bool valid;
    bool validWithoutEnum;  // for a kind that names its variable by text
};

const ValidCase kValidCases[] = {
    {"New", 0, 0, 0, 0, false, false},
    {"NoVariable", 0, 1, 0, 0, false, true},
    {"Motor", 0, 1, 0, 1, true, true},
    {"MotorWithForceOnly", 0, 0, 1, 1, false, false},
    {"Force", 1, 0, 1, 1, true, true},
    {"ForceWithMotorOnly", 1, 1, 0, 1, false, false},
    {"ForceByAnyOtherNumber", 7, 0, 2, 3, true, true},
    {"ForceByANegativeNumber", -1, 1, 0, 3, false, false},
    {"NumbersOutsideTheEnumerations", 0, 99, 0, -5, true, true},
};

class FunctionIsValid : public testing::TestWithParam<ValidCase> {};

TEST_P(FunctionIsValid, WhenVariableAndQuantityAreSet)
{
    const ValidCase& c = GetParam();
    mfFunctionBase_c function;
    NamedKind named;
    for (mfFunctionBase_c* const f : {&function, static_cast<mfFunctionBase_c*>(&named)}) {
        f->motionObjectType = c.motionObjectType;
        f->motorDependentVar = static_cast<mf::MotorDriveType_e>(c.motor);
        f->forceTorqueDependentVar = static_cast<mf::ForceTorqueType_e>(c.force);
        f->independentVar = static_cast<mf::IndependentVariableType_e>(c.independent);
    }
    EXPECT_EQ(function.IsValid(), c.valid);
    EXPECT_EQ(named.IsValid(), c.validWithoutEnum);
}

INSTANTIATE_TEST_SUITE_P(FunctionBase, FunctionIsValid, testing::ValuesIn(kValidCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ClearFunction, ForgetsAllButTheMotionObjectType)
{
    mfFunctionBase_c function;
    function.motionObjectType = 1;
    function.motorDependentVar = mf::MotorDriveType_Velocity;
    function.forceTorqueDependentVar = mf::ForceTorqueType_Torque;
    function.independentVar = mf::IndependentVariableType_MotionResult;
    function.motionResult = L"Angle1";
    function.ClearFunction();
    EXPECT_EQ(function.motionObjectType, 1);
    EXPECT_EQ(function.motorDependentVar, mf::MotorDriveType_None);
    EXPECT_EQ(function.forceTorqueDependentVar, mf::ForceTorqueType_None);
    EXPECT_EQ(function.independentVar, mf::IndependentVariableType_None);
    EXPECT_TRUE(function.motionResult.IsEmpty());
}

TEST(FunctionBase, IsCopiedFieldByField)
{
    mfFunctionBase_c function;
    function.motionObjectType = 1;
    function.motorDependentVar = mf::MotorDriveType_Velocity;
    function.forceTorqueDependentVar = mf::ForceTorqueType_Torque;
    function.independentVar = mf::IndependentVariableType_MotionResult;
    function.motionResult = L"Angle1";
    const mfFunctionBase_c constructed(function);
    mfFunctionBase_c assigned;
    assigned = function;
    for (const mfFunctionBase_c* const copy :
         {&constructed, static_cast<const mfFunctionBase_c*>(&assigned)}) {
        EXPECT_EQ(copy->motionObjectType, 1);
        EXPECT_EQ(copy->motorDependentVar, mf::MotorDriveType_Velocity);
        EXPECT_EQ(copy->forceTorqueDependentVar, mf::ForceTorqueType_Torque);
        EXPECT_EQ(copy->independentVar, mf::IndependentVariableType_MotionResult);
        EXPECT_EQ(copy->motionResult, L"Angle1");
    }
}

}  // namespace
