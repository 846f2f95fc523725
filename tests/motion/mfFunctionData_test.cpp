// SPDX-License-Identifier: MIT

#include "mfcurves/motion/mfFunctionData.h"

#include <gmock/gmock.h>
#include <string>
#include <type_traits>
#include <vector>

#include "mfcurves/functions/mfFunctionBase.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/motion/mfFunctionDataTest.h"
#include "tests/support/virtualSlot.h"

// Runs twice: with the library as it is, and with the one in which each curve has its
// own start-up profiles.
namespace {

using mf::test::FunctionData;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(FunctionDataClass, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<mfFunctionData_c>);
    EXPECT_FALSE(std::is_copy_assignable_v<mfFunctionData_c>);
    EXPECT_TRUE(std::is_default_constructible_v<mfFunctionData_c>);
}

TEST(FunctionDataClass, KeepsThe26OperationsOfItsInterfaceInOrder)
{
    using D = mfFunctionData_c;
    EXPECT_EQ(
        mf::test::slotsOf(&D::initialize, &D::getName, &D::setName, &D::setFunctionType, &D::getFunctionType,
                          &D::setMotorDriveType, &D::getMotorDriveType, &D::setXYDataType, &D::getXYDataType,
                          &D::isXValueTimeOrCycleAngle, &D::isXValueCycleAngle, &D::getCanUseElseWhere,
                          &D::setCanUseElseWhere, &D::setMotionObjectType, &D::getMotionObjectType,
                          &D::isMotorData, &D::isForceData, &D::isTorqueData, &D::getFunctionSegments,
                          &D::getFunctionDataPoints, &D::getFunctionExpression, &D::getXMLData,
                          &D::setXMLData, &D::evaluate, &D::updateForLegacyData),
        mf::test::slotsFrom(mf::test::kBehindTheDestructor, 25));
}

// Before initialize

TEST_F(FunctionData, StartsWithoutKinds)
{
    EXPECT_EQ(data_->getFunctionType(), mf::FunctionType_Segments);
    EXPECT_EQ(data_->getName(), L"");
    EXPECT_EQ(data_->getXYDataType(), mf::MfXY_None);
    EXPECT_EQ(data_->getMotionObjectType(), mf::MotionObjectType_None);
    EXPECT_FALSE(data_->getCanUseElseWhere());
    EXPECT_EQ(data_->getXMLData(), nullptr);
    EXPECT_EQ(data_->getFunctionSegments(), nullptr);
    EXPECT_EQ(data_->getFunctionDataPoints(), nullptr);
    EXPECT_EQ(data_->getFunctionExpression(), nullptr);
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(FunctionData, ReturnsNeutralValuesWithoutKinds)
{
    for (const int type : {1, 2, 3, 7, 0, -1}) {
        data_->setFunctionType(mf::FunctionType_e(type));
        EXPECT_EQ(data_->evaluate(1.0, 0), 0.0);
        data_->setMotorDriveType(mf::MotorDriveType_Velocity);
        EXPECT_EQ(data_->getMotorDriveType(), mf::MotorDriveType_None);
        EXPECT_FALSE(data_->isXValueCycleAngle());
        EXPECT_TRUE(data_->isXValueTimeOrCycleAngle());
        data_->updateForLegacyData(true);
    }
}

// Dispatch

struct KindCase {
    const char* name;
    mf::FunctionType_e type;
};

const KindCase kKindCases[] = {
    {"Segments", mf::FunctionType_Segments},
    {"DataPoints", mf::FunctionType_DataPoints},
    {"Expression", mf::FunctionType_Expression},
};

class Dispatch : public FunctionData, public testing::WithParamInterface<KindCase> {
protected:
    Dispatch() { EXPECT_TRUE(data_->initialize()); }

    std::vector<mfFunctionBase_c*> kinds() { return {&segments(), &dataPoints(), &expression()}; }
    mfFunctionBase_c& active() { return *kinds().at(GetParam().type - 1); }
};

TEST_P(Dispatch, SetsTheDriveTypeOfOnlyTheActiveKind)
{
    data_->setFunctionType(GetParam().type);
    data_->setMotorDriveType(mf::MotorDriveType_Velocity);
    EXPECT_EQ(data_->getMotorDriveType(), mf::MotorDriveType_Velocity);
    for (const mfFunctionBase_c* kind : kinds())
        EXPECT_EQ(kind->motorDependentVar,
                  kind == &active() ? mf::MotorDriveType_Velocity : mf::MotorDriveType_None);
}

TEST_P(Dispatch, ChecksTheActiveKindForTheCycleAngle)
{
    data_->setFunctionType(GetParam().type);
    EXPECT_FALSE(data_->isXValueCycleAngle());
    for (mfFunctionBase_c* kind : kinds())
        kind->independentVar = mf::IndependentVariableType_CycleAngle;
    EXPECT_TRUE(data_->isXValueCycleAngle());
    active().independentVar = mf::IndependentVariableType_MotionResult;
    EXPECT_FALSE(data_->isXValueCycleAngle());
    EXPECT_TRUE(data_->isXValueTimeOrCycleAngle());
}

INSTANTIATE_TEST_SUITE_P(Kinds, Dispatch, testing::ValuesIn(kKindCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(FunctionData, GivesTheDriveTypeToTheKindThatIsActiveThen)
{
    EXPECT_TRUE(data_->initialize());
    data_->setMotorDriveType(mf::MotorDriveType_Acceleration);
    data_->setFunctionType(mf::FunctionType_Expression);
    EXPECT_EQ(data_->getMotorDriveType(), mf::MotorDriveType_None) << "the value is not carried over";
    EXPECT_EQ(segments().getMotorDependentVar(), mf::MotorDriveType_Acceleration);
}

TEST_F(FunctionData, ReturnsTheKindsWhicheverIsActive)
{
    EXPECT_TRUE(data_->initialize());
    for (const int type : {1, 2, 3, 7}) {
        data_->setFunctionType(mf::FunctionType_e(type));
        EXPECT_TRUE(segments().IsSegements());
        EXPECT_TRUE(dataPoints().IsDataPoints());
        EXPECT_TRUE(expression().IsExpression());
    }
}

TEST_F(FunctionData, HasNoActiveKindForAnUnknownType)
{
    EXPECT_TRUE(data_->initialize());
    expression().setMathExpression(L"5");
    for (const int type : {7, 0, -1}) {
        data_->setFunctionType(mf::FunctionType_e(type));
        EXPECT_EQ(data_->getFunctionType(), type);
        EXPECT_EQ(data_->evaluate(1.0, 0), 0.0);
        data_->setMotorDriveType(mf::MotorDriveType_Velocity);
        EXPECT_EQ(data_->getMotorDriveType(), mf::MotorDriveType_None);
        EXPECT_FALSE(data_->isXValueCycleAngle());
    }
    EXPECT_EQ(expression().getMotorDependentVar(), mf::MotorDriveType_None);
}

TEST_F(FunctionData, EvaluatesTheExpression)
{
    EXPECT_TRUE(data_->initialize());
    data_->setFunctionType(mf::FunctionType_Expression);
    expression().setMathExpression(L"time^3");
    expression().setPlottingPointCount(100);
    const double expected[] = {8.0, 12.0, 12.0, 6.0};
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(data_->evaluate(2.0, order), expected[order]);
    EXPECT_EQ(data_->evaluate(2.0, 4), 0.0);
}

TEST_F(FunctionData, EvaluatesTheDataPoints)
{
    EXPECT_TRUE(data_->initialize());
    data_->setFunctionType(mf::FunctionType_DataPoints);
    host_.services.spline().answer = [](double x, int order) { return x + 10.0 * order; };
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(data_->evaluate(2.0, order), 2.0 + 10.0 * order);
    EXPECT_EQ(data_->evaluate(2.0, 4), 0.0);
}

// The three values at x = 1 are 5, before a factor of 2 divides one of them.
TEST_F(FunctionData, DividesOnlyTheExpressionByTheUnitFactor)
{
    mfProfileManager_c manager;
    host_.managerAnswer = &manager;
    EXPECT_TRUE(manager.rebuildUserProfileMap());
    EXPECT_TRUE(data_->initialize());
    host_.services.unitFactor = 2.0;

    auto* const row = new mfSegment_c(0.0, 2.0, 7.0, L"Linear");
    row->setProfileKey(manager.getProfileKeyFromDisplayName(L"Linear"));
    segments().addSegment(new mfSegment_c(0.0, 0.0, 3.0, L""));
    segments().addSegment(row);
    segments().parseExpression(1);
    host_.services.spline().answer = [](double, int) { return 5.0; };
    expression().setMathExpression(L"5*time");

    data_->setFunctionType(mf::FunctionType_Segments);
    EXPECT_EQ(data_->evaluate(1.0, 0), 5.0);
    data_->setFunctionType(mf::FunctionType_DataPoints);
    EXPECT_EQ(data_->evaluate(1.0, 0), 5.0);
    EXPECT_THAT(host_.calls, testing::Not(testing::Contains(testing::StartsWith("getUnitFactor"))));
    data_->setFunctionType(mf::FunctionType_Expression);
    EXPECT_EQ(data_->evaluate(1.0, 0), 2.5);
    data_.reset();  // before the manager, whose record its row uses
}

// updateForLegacyData

TEST_F(FunctionData, OfAnotherHostNeedsNoLegacyUpdate)
{
    EXPECT_TRUE(data_->initialize());
    host_.calls.clear();
    data_->IMotionFunctionData_c::updateForLegacyData(true);
    EXPECT_THAT(host_.calls, IsEmpty());
    EXPECT_EQ(expression().getPlottingPointCount(), 1);
}

TEST_F(FunctionData, BringsTheDataPointsUpToDateWhicheverKindIsActive)
{
    EXPECT_TRUE(data_->initialize());
    host_.services.spline().points = {{1.0, 2.0}, {3.0, 4.0}};
    data_->setFunctionType(mf::FunctionType_Expression);
    expression().setParseExpression(L"time");
    expression().setMotorDependentVar(mf::MotorDriveType_Displacment);
    data_->updateForLegacyData(true);
    EXPECT_EQ(dataPoints().getDataPointsCount(), 2);
    EXPECT_EQ(expression().getPlottingData0(), nullptr) << "the expression is left alone";
    data_->updateForLegacyData(false);
    EXPECT_EQ(dataPoints().getDataPointsCount(), 1) << "the flag is handed on";
}

// Settings

TEST_F(FunctionData, KeepsItsSettings)
{
    CString name(L"lift");
    data_->setName(name);
    name = L"changed";
    EXPECT_EQ(data_->getName(), L"lift");

    data_->setXYDataType(mf::MfXY_Torque);
    EXPECT_EQ(data_->getXYDataType(), mf::MfXY_Torque);
    data_->setXYDataType(mf::MotFuncXYDataType_e(15));
    EXPECT_EQ(data_->getXYDataType(), 15);

    data_->setCanUseElseWhere(true);
    EXPECT_TRUE(data_->getCanUseElseWhere());
    data_->setCanUseElseWhere(false);
    EXPECT_FALSE(data_->getCanUseElseWhere());

    data_->setXTime(true);
    data_->setXCycleAngle(true);
    EXPECT_FALSE(data_->isXValueCycleAngle()) << "nothing reads the two flags";
}

struct ObjectCase {
    const char* name;
    int type;
    bool motor;
    bool force;
    bool torque;
};

const ObjectCase kObjectCases[] = {
    {"None", 0, false, false, false},    {"Motor", 1, true, false, false},
    {"Force", 2, false, true, false},    {"Torque", 3, false, false, true},
    {"Another", 4, false, false, false}, {"Below", -1, false, false, false},
};

class MotionObject : public FunctionData, public testing::WithParamInterface<ObjectCase> {};

TEST_P(MotionObject, IsWhatWasSet)
{
    const ObjectCase& c = GetParam();
    data_->setMotionObjectType(mf::MotionObjectType_e(c.type));
    EXPECT_EQ(data_->getMotionObjectType(), c.type);
    EXPECT_EQ(data_->isMotorData(), c.motor);
    EXPECT_EQ(data_->isForceData(), c.force);
    EXPECT_EQ(data_->isTorqueData(), c.torque);
}

INSTANTIATE_TEST_SUITE_P(Settings, MotionObject, testing::ValuesIn(kObjectCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(FunctionData, CopiesItsDocumentText)
{
    std::string text = "<Curve/>";
    data_->setXMLData(text.data());
    text[1] = '#';
    EXPECT_STREQ(data_->getXMLData(), "<Curve/>");
    data_->setXMLData(const_cast<char*>(data_->getXMLData()) + 1);
    EXPECT_STREQ(data_->getXMLData(), "Curve/>") << "a piece of the text itself may be set";
}

TEST_F(FunctionData, HasNoDocumentTextWhenItIsEmptied)
{
    std::string text = "<Curve/>";
    data_->setXMLData(text.data());
    data_->setXMLData(nullptr);
    EXPECT_EQ(data_->getXMLData(), nullptr);
    data_->setXMLData(text.data());
    text.clear();
    data_->setXMLData(text.data());
    EXPECT_EQ(data_->getXMLData(), nullptr);
}

// The lists of start-up profiles

TEST_F(FunctionData, AppendsItsListsToTheCallersVectors)
{
    data_->setDefaultProfile();
    std::vector<CString> list{L"before"};
    data_->getProfileName(list);
    data_->getProfileName(list);
    EXPECT_THAT(list, ElementsAre(CString(L"before"), CString(L"Linear"), CString(L"Linear")));
}

TEST_F(FunctionData, KeepsItsListsSeparate)
{
    data_->setDefaultProfile();
    std::vector<CString> names;
    data_->getProfileIndependentVar(names);
    data_->getStartX(names);
    data_->getStartY(names);
    data_->getEndX(names);
    data_->getEndY(names);
    EXPECT_THAT(names,
                ElementsAre(CString(L"x"), CString(L"x1"), CString(L"y1"), CString(L"x2"), CString(L"y2")));

    std::vector<CString> expressions;
    data_->getProfileExpr(expressions);
    ASSERT_EQ(expressions.size(), 1u);
    std::vector<std::vector<CString>> tokens(1);
    data_->getProfileEleExpr(tokens);
    ASSERT_EQ(tokens.size(), 2u);
    CString joined;
    for (const CString& token : tokens[1])
        joined += token;
    EXPECT_EQ(joined, expressions[0]) << "the tokens are those of the expression";
}

}  // namespace
