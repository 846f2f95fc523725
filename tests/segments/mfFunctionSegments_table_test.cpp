// SPDX-License-Identifier: MIT

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <type_traits>
#include <vector>

#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/mfFunctionSegmentsTest.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"
#include "tests/support/RecordingFunction.h"
#include "tests/support/virtualSlot.h"

using namespace mf::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr auto kTime = mf::IndependentVariableType_Time;
constexpr auto kMotionResult = mf::IndependentVariableType_MotionResult;

// ----------------------------------------------------------------- checking

struct CheckCase {
    const char* name;
    const char* table;
    int row;
    bool passes;
};

void PrintTo(const CheckCase& c, std::ostream* os)
{
    *os << "row " << c.row << " of " << c.table;
}

const CheckCase kCheckCases[] = {
    {"RowZeroPassesUnnamed", "0:0 3:2 9:5", 0, true},
    {"RowOnePassesUnnamed", "0:0 3:2 9:5", 1, true},
    {"RowOnePassesAsLast", "0:0 3:2", 1, true},
    {"LastRow", "0:0 0:2 2:5/A", 2, true},
    {"LastRowUnnamed", "0:0 0:2 2:5", 2, false},
    {"LastRowReversed", "0:0 0:2 2:1/A", 2, false},
    {"LastRowWithoutLength", "0:0 0:2 2:2/A", 2, true},
    {"LastRowAfterAGap", "0:0 0:2 3:5/A", 2, false},
    {"InnerRow", "0:0 0:2 2:5/A 5:6/A", 2, true},
    {"InnerRowUnnamed", "0:0 0:2 2:5 5:6/A", 2, false},
    {"InnerRowReversed", "0:0 0:2 2:1/A 1:6/A", 2, false},
    {"InnerRowAfterAGap", "0:0 0:2 3:5/A 5:6/A", 2, false},
    {"InnerRowBeforeAGap", "0:0 0:2 2:5/A 6:7/A", 2, false},
    {"NaNStartMeetsNothing", "0:0 0:nan nan:5/A", 2, false},
    {"NaNEndIsNotBelowTheStart", "0:0 0:2 2:nan/A", 2, true},
    {"NaNEndMeetsNothing", "0:0 0:2 2:nan/A nan:5/A", 2, false},
};

class CheckInvalid : public testing::TestWithParam<CheckCase> {};

// The flag means the opposite of its name.
TEST_P(CheckInvalid, FlagsARowThatPasses)
{
    const CheckCase& c = GetParam();
    mfFunctionSegments_c table;
    fill(table, c.table);
    EXPECT_FALSE(rowOf(table, c.row).isInvalid());

    table.checkInvalid(c.row);

    for (int row = 0; row < table.getSegmentCount(); ++row)
        EXPECT_EQ(rowOf(table, row).isInvalid(), row == c.row && c.passes) << "row " << row;
}

INSTANTIATE_TEST_SUITE_P(Segments, CheckInvalid, testing::ValuesIn(kCheckCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(CheckInvalid, FailedRowLosesItsFlag)
{
    mfFunctionSegments_c table;
    fill(table, "0:0 0:2 2:5/A");
    table.checkInvalid(2);
    ASSERT_TRUE(rowOf(table, 2).isInvalid());
    rowOf(table, 2).setStartX(std::nextafter(2.0, 3.0));
    table.checkInvalid(2);
    EXPECT_FALSE(rowOf(table, 2).isInvalid());
}

TEST(CheckInvalid, RowsOutsideTheTableAreIgnored)
{
    mfFunctionSegments_c table;
    for (const int row : {-1, 0, 1, 7})
        table.checkInvalid(row);
    fill(table, "0:0");
    table.checkInvalid(-1);
    table.checkInvalid(1);
    EXPECT_FALSE(rowOf(table, 0).isInvalid());
}

struct SeamCase {
    const char* name;
    const char* table;
    int row;
};

void PrintTo(const SeamCase& c, std::ostream* os)
{
    *os << c.table;
}

constexpr int kUntouched = -7;

const SeamCase kSeamCases[] = {
    {"EmptyTable", "", kUntouched},           {"OneRow", "0:1", kUntouched},
    {"AllClosed", "0:0 0:2 2:5", kUntouched}, {"SeamOfRowsZeroAndOneCounts", "0:0 1:2 2:5", 1},
    {"FirstOpenSeam", "0:0 0:2 3:5 6:7", 2},  {"LastSeam", "0:0 0:2 2:5 6:7", 3},
    {"NaNIsOpen", "0:0 0:nan nan:5", 2},
};

class CheckUpdate : public testing::TestWithParam<SeamCase> {};

TEST_P(CheckUpdate, FindsTheFirstOpenSeam)
{
    mfFunctionSegments_c table;
    fill(table, GetParam().table);
    int row = kUntouched;
    table.checkUpdate(row);
    EXPECT_EQ(row, GetParam().row);
}

INSTANTIATE_TEST_SUITE_P(Segments, CheckUpdate, testing::ValuesIn(kSeamCases),
                         [](const auto& tested) { return tested.param.name; });

// -------------------------------------------------------------- whole tables

TEST(SegmentTable, StartsEmptyAndInvalid)
{
    mfFunctionSegments_c table;
    EXPECT_TRUE(table.isEmpty());
    EXPECT_EQ(table.getSegmentCount(), 0);
    EXPECT_THAT(reported(table), IsEmpty());
    EXPECT_FALSE(table.IsValid());
    EXPECT_TRUE(table.IsSegements());
    EXPECT_FALSE(table.IsDataPoints());
    EXPECT_FALSE(table.IsExpression());
    EXPECT_TRUE(table.HasEnumForIndependentVariable());
    EXPECT_EQ(table.GetIndependentVarName(), L"");
}

TEST(SegmentTable, BeginsWithTheInterfaceThatTheHostUses)
{
    mfFunctionSegments_c table;
    EXPECT_EQ(static_cast<void*>(static_cast<IFunctionSegments_c*>(&table)), &table);
    using T = mfFunctionSegments_c;
    EXPECT_EQ(slotsOf(&T::clearSegments, &T::evaluate, &T::setMotorDependentVar, &T::getMotorDependentVar,
                      &T::setForceTorqueDependentVar, &T::getForceTorqueDependentVar, &T::setIndependentVar,
                      &T::getIndependentVar, &T::setMotionResult, &T::getMotionResult, &T::getSegmentsData,
                      &T::setSegmentsData),
              slotsFrom(kBehindTheDestructor, 12));
    EXPECT_FALSE(std::is_final_v<T>);
}

TEST(SegmentTable, IsValidWithAQuantityAVariableAndARow)
{
    mfFunctionSegments_c table;
    table.setIndependentVar(kTime);
    table.setMotorDependentVar(mf::MotorDriveType_Velocity);
    EXPECT_FALSE(table.IsValid());
    table.addSegment(new mfSegment_c);
    EXPECT_TRUE(table.IsValid());
    table.setIndependentVar(mf::IndependentVariableType_None);
    EXPECT_FALSE(table.IsValid());
    table.setIndependentVar(kTime);
    table.motionObjectType = 1;
    EXPECT_FALSE(table.IsValid());
    table.setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    EXPECT_TRUE(table.IsValid());
}

TEST(SegmentTable, StoresWhatTheHostSets)
{
    mfFunctionSegments_c table;
    IFunctionSegments_c& host = table;
    host.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    host.setForceTorqueDependentVar(mf::ForceTorqueType_Force);
    host.setIndependentVar(kMotionResult);
    host.setMotionResult(L"Angle");
    EXPECT_EQ(host.getMotorDependentVar(), mf::MotorDriveType_Acceleration);
    EXPECT_EQ(host.getForceTorqueDependentVar(), mf::ForceTorqueType_Force);
    EXPECT_EQ(host.getIndependentVar(), kMotionResult);
    EXPECT_EQ(host.getMotionResult(), L"Angle");

    std::vector<CString> data = {L"kept"};
    host.getSegmentsData(data);
    host.setSegmentsData(data);
    EXPECT_THAT(data, ElementsAre(CString(L"kept")));
    EXPECT_TRUE(table.isEmpty());
}

TEST(SegmentTable, RowsOutsideAreNull)
{
    mfFunctionSegments_c table;
    fill(table, "0:0 0:1");
    for (const int row : {-1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        mfSegment_c anything;
        mfSegment_c* segment = &anything;
        table.selectSegment(row, segment);
        EXPECT_EQ(segment, nullptr) << row;
    }
}

TEST(SegmentTable, ClearingKeepsMotionObjectTypeAndOlderProfiles)
{
    mfFunctionSegments_c table;
    table.motionObjectType = 1;
    table.setIndependentVar(kTime);
    table.setMotionResult(L"Angle");
    table.initializeSegment({L"Linear"}, {{L"x", L"+", L"y"}}, {L"x"}, {L"x1"}, {L"y1"}, {L"x2"}, {L"y2"});
    reportSomething(table);

    table.clearSegments();

    EXPECT_TRUE(table.isEmpty());
    EXPECT_THAT(reported(table), IsEmpty());
    EXPECT_EQ(table.getIndependentVar(), mf::IndependentVariableType_None);
    EXPECT_EQ(table.getMotionResult(), L"");
    EXPECT_EQ(table.motionObjectType, 1);
    EXPECT_THAT(table.getProfileExpr(L"Linear"), ElementsAre(CString(L"x"), CString(L"+"), CString(L"y")));
}

TEST(CopyTable, ReplacesRowsAndSettings)
{
    const FakeHost host;
    mfFunctionSegments_c source;
    fill(source, "0:0=1/A 3:2=2/B 7:9=3/");
    source.setMotorDependentVar(mf::MotorDriveType_Velocity);
    source.setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    source.setIndependentVar(kMotionResult);
    source.setMotionResult(L"Angle");
    source.motionObjectType = 1;
    source.modifySegment(0, kValueColumn, 0.0, 0.0, 1.0, L"");
    mfProfileKey_c key;
    key.name = L"Cubic";
    rowOf(source, 1).setProfileKey(key);
    source.checkInvalid(1);
    source.initializeSegment({L"Linear"}, {{L"x"}}, {L"x"}, {L"x1"}, {L"y1"}, {L"x2"}, {L"y2"});

    mfFunctionSegments_c target;
    reportSomething(target);
    EXPECT_TRUE(target.Copy(&source));

    EXPECT_EQ(showAll(target), "0:0=1/A 3:2=2/B 7:9=3/");  // nothing is fitted
    EXPECT_EQ(target.getMotorDependentVar(), mf::MotorDriveType_Velocity);
    EXPECT_EQ(target.getForceTorqueDependentVar(), mf::ForceTorqueType_Torque);
    EXPECT_EQ(target.getIndependentVar(), kMotionResult);
    EXPECT_EQ(target.getMotionResult(), L"Angle");
    EXPECT_EQ(target.motionObjectType, 0);
    EXPECT_THAT(reported(target), IsEmpty());
    EXPECT_THAT(target.getProfileExpr(L"Linear"), IsEmpty());
    EXPECT_NE(&rowOf(target, 1), &rowOf(source, 1));
    EXPECT_NE(rowOf(target, 1).getProfileKey(), rowOf(source, 1).getProfileKey());
    EXPECT_TRUE(*rowOf(target, 1).getProfileKey() == key);
    EXPECT_EQ(rowOf(target, 2).getProfileKey(), nullptr);
    EXPECT_TRUE(rowOf(target, 1).isInvalid());
}

class RecordingTable : public RecordingFunction<mfFunctionSegments_c> {
public:
    using RecordingFunction::RecordingFunction;

    void clearSegments() override
    {
        record("clearSegments");
        mfFunctionSegments_c::clearSegments();
    }
};

TEST(CopyTable, CallsTheVirtualOperationsInOrder)
{
    Calls calls;
    RecordingTable source(calls);
    RecordingTable target(calls);
    EXPECT_TRUE(target.Copy(&source));
    EXPECT_THAT(calls, ElementsAre("clearSegments", "ClearFunction", "get motor", "set motor", "get force",
                                   "set force", "get variable", "set variable", "get result", "set result"));
}

TEST(CopyTable, OfNullChangesNothing)
{
    mfFunctionSegments_c table;
    reportSomething(table);
    EXPECT_FALSE(table.Copy(nullptr));
    EXPECT_EQ(show(table), "0:0 0:1 1:2");
    EXPECT_THAT(reported(table), ElementsAre(2));
}

TEST(CopyTable, OfItselfChangesNothing)
{
    mfFunctionSegments_c table;
    reportSomething(table);
    EXPECT_TRUE(table.Copy(&table));
    EXPECT_EQ(show(table), "0:0 0:1 1:2");
    EXPECT_THAT(reported(table), ElementsAre(2));
}

TEST(CopyTable, OfAnEmptyTableEmptiesTheTarget)
{
    mfFunctionSegments_c source;
    mfFunctionSegments_c target;
    reportSomething(target);
    EXPECT_TRUE(target.Copy(&source));
    EXPECT_TRUE(target.isEmpty());
}

// Only one of two such tables may be destroyed, so an empty one is assigned to the copy,
// which then shares nothing.
TEST(CopyTable, CopyConstructionAndAssignmentShareRows)
{
    const mfFunctionSegments_c bare;
    mfFunctionSegments_c source;
    reportSomething(source);
    source.motionObjectType = 1;
    source.initializeSegment({L"Linear"}, {{L"x"}}, {L"x"}, {L"x1"}, {L"y1"}, {L"x2"}, {L"y2"});

    mfFunctionSegments_c shared(source);
    EXPECT_EQ(&rowOf(shared, 1), &rowOf(source, 1));
    EXPECT_EQ(shared.motionObjectType, 1);
    EXPECT_THAT(reported(shared), ElementsAre(2));
    EXPECT_THAT(shared.getProfileExpr(L"Linear"), ElementsAre(CString(L"x")));

    shared = bare;
    EXPECT_TRUE(shared.isEmpty());
    EXPECT_EQ(show(source), "0:0 0:1 1:2");
}

}  // namespace
