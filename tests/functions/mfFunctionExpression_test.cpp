// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfFunctionExpression.h"

#include <gmock/gmock.h>
#include <limits>
#include <type_traits>

#include "mfcurves/platform/resources.h"
#include "tests/functions/mfFunctionExpressionTest.h"
#include "tests/support/FakeHost.h"
#include "tests/support/virtualSlot.h"

namespace {

using mf::platform::ResourceModule;
using mf::test::Expression;
using mf::test::Resources;

TEST_F(Expression, StartsEmptyOverTimeWithACountOfOne)
{
    EXPECT_EQ(function_.getMathExpression(), L"");
    EXPECT_EQ(function_.getIndepVar(), L"");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_Time);
    EXPECT_EQ(function_.motionObjectType, 0);
    EXPECT_EQ(function_.getMotorDependentVar(), mf::MotorDriveType_None);
    EXPECT_EQ(function_.getForceTorqueDependentVar(), mf::ForceTorqueType_None);
    EXPECT_EQ(function_.getMinX(), 0.0);
    EXPECT_EQ(function_.getMaxX(), 0.0);
    EXPECT_EQ(function_.getPlottingPointCount(), 1);
    EXPECT_FALSE(function_.isValidForPlotting());
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(function_.getPlottingData(order), nullptr);
    EXPECT_TRUE(host_.calls.empty());
}

TEST_F(Expression, StoresWithoutACheck)
{
    function_.setMathExpression(L"(((");
    function_.setDomain(5.0, -5.0);
    function_.setMotorDependentVar(mf::MotorDriveType_e(77));
    function_.setForceTorqueDependentVar(mf::ForceTorqueType_e(-7));
    function_.setPlottingPointCount(-3);
    EXPECT_EQ(function_.getMathExpression(), L"(((");
    EXPECT_EQ(function_.getMinX(), 5.0);
    EXPECT_EQ(function_.getMaxX(), -5.0);
    EXPECT_EQ(function_.getMotorDependentVar(), 77);
    EXPECT_EQ(function_.getForceTorqueDependentVar(), -7);
    EXPECT_EQ(function_.getPlottingPointCount(), -3);
    EXPECT_FALSE(function_.isValidForPlotting());
}

TEST_F(Expression, IsOfItsKind)
{
    EXPECT_FALSE(function_.IsSegements());
    EXPECT_FALSE(function_.IsDataPoints());
    EXPECT_TRUE(function_.IsExpression());
}

TEST_F(Expression, HasAnEnumUnlessTheVariableIsNotSet)
{
    EXPECT_TRUE(function_.HasEnumForIndependentVariable());
    EXPECT_TRUE(function_.isXValueTime());
    EXPECT_FALSE(function_.isXValueCycleAngle());
    function_.independentVar = mf::IndependentVariableType_CycleAngle;
    EXPECT_FALSE(function_.isXValueTime());
    EXPECT_TRUE(function_.isXValueCycleAngle());
    function_.independentVar = mf::IndependentVariableType_None;
    EXPECT_FALSE(function_.HasEnumForIndependentVariable());
}

TEST_F(Expression, IsValidByItsQuantityAlone)
{
    EXPECT_FALSE(function_.IsValid());
    function_.setMotorDependentVar(mf::MotorDriveType_Displacment);
    EXPECT_TRUE(function_.IsValid());
    function_.independentVar = mf::IndependentVariableType_None;
    EXPECT_TRUE(function_.IsValid()) << "the number of a variable that is named by text is not checked";
    function_.motionObjectType = 1;
    EXPECT_FALSE(function_.IsValid());
    function_.setForceTorqueDependentVar(mf::ForceTorqueType_Force);
    EXPECT_TRUE(function_.IsValid());
}

TEST_F(Expression, TakesEveryTextForAnExpression)
{
    EXPECT_TRUE(function_.isAValidADAMSExpression(L""));
    EXPECT_TRUE(function_.isAValidADAMSExpression(L"((("));
}

TEST_F(Expression, ReturnsNullForAnOrderOutOfRange)
{
    ASSERT_TRUE(sample(L"time"));
    for (int order = 0; order <= 3; ++order)
        EXPECT_NE(function_.getPlottingData(order), nullptr);
    EXPECT_EQ(function_.getPlottingData(0), function_.getPlottingData0());
    EXPECT_EQ(function_.getPlottingData(1), function_.getPlottingData1());
    EXPECT_EQ(function_.getPlottingData(2), function_.getPlottingData2());
    EXPECT_EQ(function_.getPlottingData(3), function_.getPlottingData3());
    EXPECT_EQ(function_.getPlottingData(-1), nullptr);
    EXPECT_EQ(function_.getPlottingData(4), nullptr);
}

TEST(ExpressionClass, CannotBeCopiedButByCopy)
{
    EXPECT_FALSE(std::is_copy_constructible_v<mfFunctionExpression_c>);
    EXPECT_FALSE(std::is_copy_assignable_v<mfFunctionExpression_c>);
}

TEST(ExpressionClass, HasTheInterfacesTableFirst)
{
    mfFunctionExpression_c function;
    EXPECT_EQ(static_cast<void*>(static_cast<IFunctionExpression_c*>(&function)), &function);
    using E = mfFunctionExpression_c;
    EXPECT_EQ(mf::test::slotsOf(&E::clearExpression, &E::setMathExpression, &E::getMathExpression,
                                &E::getIndepVar, &E::setIndepVar, &E::getMotorDependentVar,
                                &E::setMotorDependentVar, &E::getForceTorqueDependentVar,
                                &E::setForceTorqueDependentVar, &E::setDomain, &E::getMinX, &E::getMaxX),
              mf::test::slotsFrom(mf::test::kBehindTheDestructor, 12));
}

// setIndepVar

struct VariableCase {
    const char* name;
    const wchar_t* text;
    mf::IndependentVariableType_e type;
    const wchar_t* motionResult;
};

const VariableCase kVariableCases[] = {
    {"Empty", L"", mf::IndependentVariableType_Time, L""},
    {"Time", L"Time", mf::IndependentVariableType_Time, L""},
    {"TimeInAnyCase", L"tIME", mf::IndependentVariableType_Time, L""},
    {"CycleAngle", L"CycleAngle", mf::IndependentVariableType_CycleAngle, L""},
    {"CycleAngleInAnyCase", L"CYCLEangle", mf::IndependentVariableType_CycleAngle, L""},
    {"Result", L"Angle1", mf::IndependentVariableType_MotionResult, L"Angle1"},
    {"NearlyTime", L"Time ", mf::IndependentVariableType_MotionResult, L"Time "},
    {"Blank", L" ", mf::IndependentVariableType_MotionResult, L" "},
};

class SetIndepVar : public Expression, public testing::WithParamInterface<VariableCase> {};

TEST_P(SetIndepVar, SetsTheMeaningOfXByName)
{
    const VariableCase& c = GetParam();
    function_.setIndepVar(L"another result");
    function_.setIndepVar(c.text);
    EXPECT_EQ(function_.independentVar, c.type);
    EXPECT_EQ(function_.getIndepVar(), c.text);
    EXPECT_EQ(function_.GetIndependentVarName(), c.text);
    EXPECT_EQ(function_.motionResult, c.motionResult);
}

INSTANTIATE_TEST_SUITE_P(Names, SetIndepVar, testing::ValuesIn(kVariableCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(Expression, UsesTheNamesOfTheCurrentResources)
{
    const ResourceModule german({{1033, L"Zeit"}, {1034, L"Zykluswinkel"}});
    const Resources resources(&german);
    function_.setIndepVar(L"ZEIT");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_Time);
    function_.setIndepVar(L"zykluswinkel");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_CycleAngle);
    function_.setIndepVar(L"Time");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_MotionResult);
}

TEST_F(Expression, KnowsNoNamesWithoutResources)
{
    const Resources resources(nullptr);
    function_.setIndepVar(L"Time");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_MotionResult);
    function_.setIndepVar(L"");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_Time);
}

TEST_F(Expression, TakesItsOwnMotionResultAsAName)
{
    function_.setIndepVar(L"Angle1");
    function_.setIndepVar(function_.motionResult);
    EXPECT_EQ(function_.getIndepVar(), L"Angle1");
    EXPECT_EQ(function_.motionResult, L"Angle1");
}

// initializePlottingData

struct ArrayCase {
    const char* name;
    int objectType;
    int quantity;
    int derivatives;
    bool result;
};

const ArrayCase kArrayCases[] = {
    {"Displacement", 0, 1, 3, true},   {"Velocity", 0, 2, 2, true},
    {"Acceleration", 0, 3, 1, true},   {"NoQuantity", 0, 0, 0, false},
    {"QuantityAbove", 0, 4, 0, false}, {"QuantityBelow", 0, -1, 0, false},
    {"Force", 1, 0, 1, true},          {"ForceWithAMotorsQuantity", 1, 1, 1, true},
    {"AnotherObject", 2, 1, 0, true},  {"ObjectBelow", -1, 1, 0, true},
};

void PrintTo(const ArrayCase& c, std::ostream* os)
{
    *os << "object " << c.objectType << ", quantity " << c.quantity;
}

class InitializePlottingData : public Expression, public testing::WithParamInterface<ArrayCase> {};

TEST_P(InitializePlottingData, MakesTheArraysOfTheQuantity)
{
    const ArrayCase& c = GetParam();
    ASSERT_TRUE(sample(L"time"));     // arrays of an earlier sampling go first
    function_.motionObjectType = 99;  // the argument is used, not this field
    function_.setMotorDependentVar(mf::MotorDriveType_e(c.quantity));
    EXPECT_EQ(function_.initializePlottingData(5, c.objectType), c.result);
    for (int order = 0; order <= 3; ++order) {
        const mfPoint2D_c* const points = function_.getPlottingData(order);
        ASSERT_EQ(points != nullptr, order <= c.derivatives) << "order " << order;
        for (int i = 0; points != nullptr && i < 5; ++i) {
            EXPECT_EQ(points[i].x(), 0.0);
            EXPECT_EQ(points[i].y(), 0.0);
        }
    }
    EXPECT_EQ(function_.getPlottingPointCount(), 100) << "the count does not change here";
}

TEST_P(InitializePlottingData, MakesNoPointsForACountBelowOne)
{
    const ArrayCase& c = GetParam();
    for (const int count : {0, -1, std::numeric_limits<int>::min()}) {
        ASSERT_TRUE(sample(L"time"));
        function_.setMotorDependentVar(mf::MotorDriveType_e(c.quantity));
        EXPECT_EQ(function_.initializePlottingData(count, c.objectType), c.result);
        for (int order = 0; order <= 3; ++order)
            EXPECT_EQ(function_.getPlottingData(order), nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(Arrays, InitializePlottingData, testing::ValuesIn(kArrayCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

// Clearing and copying

TEST_F(Expression, KeepsParseTextFlagAndObjectTypeWhenCleared)
{
    function_.motionObjectType = 1;
    function_.setForceTorqueDependentVar(mf::ForceTorqueType_Force);
    function_.setMathExpression(L"time");
    ASSERT_TRUE(sample(L"2*{Angle1}", 3.0, 4.0));
    function_.clearExpression();
    EXPECT_EQ(function_.getMathExpression(), L"");
    EXPECT_EQ(function_.getIndepVar(), L"");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_Time);
    EXPECT_EQ(function_.motionResult, L"");
    EXPECT_EQ(function_.getMotorDependentVar(), mf::MotorDriveType_None);
    EXPECT_EQ(function_.getForceTorqueDependentVar(), mf::ForceTorqueType_None);
    EXPECT_EQ(function_.getMinX(), 0.0);
    EXPECT_EQ(function_.getMaxX(), 0.0);
    EXPECT_EQ(function_.getPlottingPointCount(), 1);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(function_.getPlottingData(order), nullptr);

    EXPECT_TRUE(function_.isValidForPlotting());
    EXPECT_EQ(function_.motionObjectType, 1);
    EXPECT_TRUE(function_.calculateValue()) << "the parse expression stays";
    EXPECT_EQ(function_.getIndepVar(), L"Angle1");
}

TEST_F(Expression, CopiesTextVariableQuantitiesAndDomain)
{
    function_.setMathExpression(L"time");
    function_.setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    ASSERT_TRUE(sample(L"2*{Angle1}", 3.0, 4.0));
    function_.motionObjectType = 1;

    mfFunctionExpression_c copy;
    EXPECT_TRUE(copy.Copy(&function_));
    EXPECT_EQ(copy.getMathExpression(), L"time");
    EXPECT_EQ(copy.getIndepVar(), L"Angle1");
    EXPECT_EQ(copy.independentVar, mf::IndependentVariableType_MotionResult);
    EXPECT_EQ(copy.motionResult, L"Angle1");
    EXPECT_EQ(copy.getMotorDependentVar(), mf::MotorDriveType_Displacment);
    EXPECT_EQ(copy.getForceTorqueDependentVar(), mf::ForceTorqueType_Torque);
    EXPECT_EQ(copy.getMinX(), 3.0);
    EXPECT_EQ(copy.getMaxX(), 4.0);

    EXPECT_EQ(copy.motionObjectType, 0);
    EXPECT_EQ(copy.getPlottingPointCount(), 1);
    EXPECT_EQ(copy.getPlottingData0(), nullptr);
    EXPECT_FALSE(copy.isValidForPlotting());
    EXPECT_FALSE(copy.calculateValue()) << "the parse expression does not come along";
}

// Records which of its virtual operations are used.
class RecordingExpression : public mfFunctionExpression_c {
public:
    explicit RecordingExpression(mf::test::Calls& calls) : calls_(calls) {}

    void ClearFunction() override { calls_.emplace_back("ClearFunction"); }
    void setMathExpression(const CString& expression) override
    {
        calls_.emplace_back("set text");
        mfFunctionExpression_c::setMathExpression(expression);
    }
    CString getMathExpression() override
    {
        calls_.emplace_back("get text");
        return mfFunctionExpression_c::getMathExpression();
    }
    void setIndepVar(const CString& text) override
    {
        calls_.emplace_back("set variable");
        mfFunctionExpression_c::setIndepVar(text);
    }
    CString getIndepVar() override
    {
        calls_.emplace_back("get variable");
        return mfFunctionExpression_c::getIndepVar();
    }
    void setMotorDependentVar(mf::MotorDriveType_e quantity) override
    {
        calls_.emplace_back("set motor");
        mfFunctionExpression_c::setMotorDependentVar(quantity);
    }
    mf::MotorDriveType_e getMotorDependentVar() override
    {
        calls_.emplace_back("get motor");
        return mfFunctionExpression_c::getMotorDependentVar();
    }
    void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) override
    {
        calls_.emplace_back("set force");
        mfFunctionExpression_c::setForceTorqueDependentVar(quantity);
    }
    mf::ForceTorqueType_e getForceTorqueDependentVar() override
    {
        calls_.emplace_back("get force");
        return mfFunctionExpression_c::getForceTorqueDependentVar();
    }
    void setDomain(double minX, double maxX) override
    {
        calls_.emplace_back("set domain");
        mfFunctionExpression_c::setDomain(minX, maxX);
    }
    double getMinX() override
    {
        calls_.emplace_back("get minimum");
        return mfFunctionExpression_c::getMinX();
    }
    double getMaxX() override
    {
        calls_.emplace_back("get maximum");
        return mfFunctionExpression_c::getMaxX();
    }

private:
    mf::test::Calls& calls_;
};

TEST_F(Expression, CopiesThroughTheVirtualOperationsInOrder)
{
    mf::test::Calls calls;
    RecordingExpression source(calls);
    RecordingExpression target(calls);
    EXPECT_TRUE(target.Copy(&source));
    EXPECT_THAT(calls, testing::ElementsAre("get text", "set text", "get variable", "set variable",
                                            "get motor", "set motor", "get force", "set force", "get minimum",
                                            "get maximum", "set domain"));
}

TEST_F(Expression, IsClearedByTheVirtualOperation)
{
    mf::test::Calls calls;
    RecordingExpression function(calls);
    function.clearExpression();
    EXPECT_THAT(calls, testing::ElementsAre("ClearFunction"));
}

TEST_F(Expression, GivesItsVariableThroughTheVirtualOperationWhenSampled)
{
    mf::test::Calls calls;
    RecordingExpression function(calls);
    function.setParseExpression(L"time");
    EXPECT_FALSE(function.calculateValue()) << "there is no quantity";
    EXPECT_THAT(calls, testing::ElementsAre("set variable"));
}

TEST_F(Expression, WorksItsVariableOutAgainWhenCopied)
{
    const ResourceModule german({{1033, L"Zeit"}, {1034, L"Zykluswinkel"}});
    function_.setIndepVar(L"Time");
    mfFunctionExpression_c copy;
    {
        const Resources resources(&german);
        EXPECT_TRUE(copy.Copy(&function_));
    }
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_Time);
    EXPECT_EQ(copy.independentVar, mf::IndependentVariableType_MotionResult);
}

TEST_F(Expression, ChangesNothingWhenItCopiesItselfOrNull)
{
    function_.setMathExpression(L"time");
    function_.setIndepVar(L"Angle1");
    function_.independentVar = mf::IndependentVariableType_None;
    EXPECT_FALSE(function_.Copy(nullptr));
    EXPECT_TRUE(function_.Copy(&function_));
    EXPECT_EQ(function_.getMathExpression(), L"time");
    EXPECT_EQ(function_.getIndepVar(), L"Angle1");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_None);
}

TEST_F(Expression, IsReachedThroughItsBasesAlike)
{
    function_.setMathExpression(L"time");
    IFunctionExpression_c& byInterface = function_;
    mfFunctionBase_c& byBase = function_;
    EXPECT_TRUE(byBase.IsExpression());
    byInterface.setIndepVar(L"Angle1");
    EXPECT_EQ(byBase.GetIndependentVarName(), L"Angle1");
    byBase.ClearFunction();
    EXPECT_EQ(byInterface.getMathExpression(), L"");
}

}  // namespace
