// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "tests/functions/dataPointTables.h"
#include "tests/functions/mfFunctionDataPointsTest.h"
#include "tests/support/FakeHost.h"
#include "tests/support/RecordingFunction.h"
#include "tests/support/virtualSlot.h"

namespace {

using mf::test::Calls;
using mf::test::DataPointTable;
using mf::test::fill;
using mf::test::RecordingFunction;
using mf::test::rowOf;
using mf::test::show;
using mf::test::updateRowsOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Overlap test

struct OverlapCase {
    const char* name;
    const char* table;
    const char* range;
    bool overlaps;
    int position;
    std::vector<std::size_t> rows;
};

const OverlapCase kOverlapCases[] = {
    {"EmptyTable", "", "1,2", false, 0, {}},
    {"BeforeTheTable", "1 2 3", "0,0.5", false, 0, {}},
    {"AroundOneRow", "1 2 3", "1.5,2.5", true, 1, {1}},
    {"BetweenRows", "1 2 3", "1.25,1.75", false, 1, {}},
    {"AfterTheTable", "1 2 3", "4", false, 3, {}},
    {"EndAtTheFirst", "1 2 3", "0,1", true, 0, {0}},
    {"StartAtTheLast", "1 2 3", "3,9", true, 2, {2}},
    {"OverAll", "1 2 3", "0,9", true, 0, {0, 1, 2}},
    {"OverTheLastTwo", "1 2 3", "1.5,9", true, 1, {1, 2}},
    {"InsideARowOfSeveralPoints", "1 2,4 6", "3", true, 1, {1}},
    {"AtTheEndOfARowOfSeveralPoints", "1 2,4 6", "4,5", true, 1, {1}},
    {"AfterARowOfSeveralPoints", "1 2,4 6", "5", false, 2, {}},
    {"NaN", "1 2 3", "nan", false, 3, {}},
    {"Infinity", "1 2 3", "inf", false, 3, {}},
    {"AfterTheTableWhereAddingOneChangesNothing", "1 2 3", "1e300", false, 3, {}},
    {"LastRowWhereOneMoreIsNoMore", "1 2 1e+300", "1e300", true, 3, {2}},
    {"LastRowWhereOneMoreIsNoMoreButTwoAre", "1 2 9.0072e+15", "9.0072e15", true, 3, {2}},
};

void PrintTo(const OverlapCase& c, std::ostream* os)
{
    *os << '"' << c.range << "\" over \"" << c.table << '"';
}

class Overlap : public DataPointTable, public testing::WithParamInterface<OverlapCase> {};

TEST_P(Overlap, ListsTheOverlappingRowsAndFindsThePlace)
{
    const OverlapCase& c = GetParam();
    start(c.table);
    int position = -9;
    std::vector<std::size_t> rows;
    EXPECT_EQ(table.IsRangeOverlap(rowOf(c.range).get(), position, rows), c.overlaps);
    EXPECT_EQ(position, c.position);
    EXPECT_EQ(rows, c.rows);
    EXPECT_THAT(spline().calls, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(DataPoints, Overlap, testing::ValuesIn(kOverlapCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(DataPointTable, OverlapCountsRowsAlreadyInTheList)
{
    start("1 2 3");
    int position = -9;
    std::vector<std::size_t> rows{8};
    EXPECT_TRUE(table.IsRangeOverlap(rowOf("1.5").get(), position, rows));
    EXPECT_EQ(position, 0);
    EXPECT_THAT(rows, ElementsAre(8));
    EXPECT_FALSE(
        table.IsRangeOverlap(rowOf("0.5").get(), position, rows));  // before all rows: returns at once
    EXPECT_THAT(rows, ElementsAre(8));
}

TEST_F(DataPointTable, NullOverlapsNoRow)
{
    start("1 2 3");
    int position = -9;
    std::vector<std::size_t> rows;
    EXPECT_FALSE(table.IsRangeOverlap(nullptr, position, rows));
    EXPECT_EQ(position, 0);
    EXPECT_THAT(rows, IsEmpty());
}

// Search

struct FindCase {
    const char* name;
    const char* table;
    double x;
    int row;
};

const FindCase kFindCases[] = {
    {"EmptyTable", "", 1.0, 0},
    {"OnlyRow", "1", 1.0, 0},
    {"OnlyRowFromOutside", "1", 5.0, 0},
    {"FirstOfTwoGivesTheSecond", "1 2", 1.0, 1},
    {"SecondOfTwo", "1 2", 2.0, 1},
    {"BeforeTwo", "1 2", -3.0, 1},
    {"AfterTwo", "1 2", 9.0, 1},
    {"MiddleOfThree", "1 2 3", 2.0, 1},
    {"LastOfThree", "1 2 3", 3.0, 2},
    {"FirstOfThreeGivesTheSecond", "1 2 3", 1.0, 1},
    {"AfterThree", "1 2 3", 9.0, 1},   // the last middle
    {"BeforeThree", "1 2 3", 0.0, 0},  // the last middle
    {"BetweenThree", "1 2 3", 2.5, 1},
    {"LowerHalfOfFive", "1 2 3 4 5", 2.0, 1},
    {"UpperHalfOfFive", "1 2 3 4 5", 4.0, 3},
    {"FirstOfFiveGivesTheSecond", "1 2 3 4 5", 1.0, 1},
    {"AfterFive", "1 2 3 4 5", 9.0, 3},
    {"InsideARowOfSeveralPoints", "1 2,4 6", 3.0, 1},
    {"StartOfAReversedRow", "1 5,3 9", 5.0, 1},
    {"NaNGoesDown", "1 2 3 4 5", kNaN, 0},
};

class Find : public DataPointTable, public testing::WithParamInterface<FindCase> {};

TEST_P(Find, BisectsByRange)
{
    const FindCase& c = GetParam();
    start(c.table);
    EXPECT_EQ(table.findDataPonts(c.x), c.row);
}

INSTANTIATE_TEST_SUITE_P(DataPoints, Find, testing::ValuesIn(kFindCases),
                         [](const auto& tested) { return tested.param.name; });

// Reading

TEST_F(DataPointTable, SelectOutsideTheTableGivesNull)
{
    start("1 2 3");
    mfDataPoints_c* row = &rowAt(0);
    EXPECT_FALSE(table.selectDataPoint(-1, row));
    EXPECT_EQ(row, nullptr);
    row = &rowAt(0);
    EXPECT_FALSE(table.selectDataPoint(3, row));
    EXPECT_EQ(row, nullptr);
    EXPECT_TRUE(table.selectDataPoint(2, row));
    EXPECT_EQ(show(*row), "3");
}

TEST_F(DataPointTable, CountsPointsAndRows)
{
    EXPECT_TRUE(table.isEmpty());
    EXPECT_EQ(table.getTotalPoints(), 0);
    EXPECT_EQ(table.getDataPointsCount(), 0);
    start("1 2,3,4 5");
    EXPECT_FALSE(table.isEmpty());
    EXPECT_EQ(table.getTotalPoints(), 5);
    EXPECT_EQ(table.getDataPointsCount(), 3);
}

TEST_F(DataPointTable, UpdateRowsMayBeReadAgain)
{
    start("1 2 3");
    ASSERT_TRUE(table.modifyDataPoint(1, 0, 9.0, 0.0));
    EXPECT_THAT(updateRowsOf(table), ElementsAre(1, 2));
    EXPECT_THAT(updateRowsOf(table), ElementsAre(1, 2));
}

TEST_F(DataPointTable, BeginsWithTheInterfaceThatTheHostUses)
{
    EXPECT_EQ(static_cast<void*>(static_cast<IFunctionDataPoints_c*>(&table)), &table);
    using T = mfFunctionDataPoints_c;
    EXPECT_EQ(mf::test::slotsOf(&T::getSplineData, &T::setSplineData, &T::clearDataPoints,
                                &T::setMotorDependentVar, &T::getMotorDependentVar,
                                &T::setForceTorqueDependentVar, &T::getForceTorqueDependentVar,
                                &T::getIndependentVar, &T::setIndependentVar, &T::setInterpolationType,
                                &T::getInterpolationType, &T::setMotionResult, &T::getMotionResult),
              mf::test::slotsFrom(mf::test::kBehindTheDestructor, 13));
    EXPECT_FALSE(std::is_final_v<T>);
}

TEST_F(DataPointTable, DirectUseOfARowIsUnchecked)
{
    start("1 2 3");
    EXPECT_TRUE(rowAt(0).setX(0, 9.0));
    rowAt(1).addPoint(50.0, 0.0);
    EXPECT_EQ(show(table), "9 2,50 3");
    EXPECT_THAT(spline().calls, IsEmpty());
}

TEST_F(DataPointTable, IsValidWhenEmpty)
{
    EXPECT_FALSE(table.IsValid());
    table.setIndependentVar(mf::IndependentVariableType_Time);
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    EXPECT_TRUE(table.IsValid());
    EXPECT_TRUE(table.IsDataPoints());
    EXPECT_FALSE(table.IsSegements());
    EXPECT_FALSE(table.IsExpression());
}

// Clearing and copying

TEST_F(DataPointTable, ClearingForgetsTableAndInterpolationAndKeepsThePlots)
{
    start("1 2,3");
    table.setInterpolationType(mf::DataPointInterpolationType_Akima);
    table.setMotionResult(L"force");
    table.setIndependentVar(mf::IndependentVariableType_MotionResult);
    table.motionObjectType = 1;
    table.calculateValue();
    const mfPoint2D_c* plot = table.getPlottingData0();
    spline().calls.clear();

    table.clearDataPoints();

    EXPECT_TRUE(table.isEmpty());
    EXPECT_EQ(table.getInterpolationType(), mf::DataPointInterpolationType_Linear);
    EXPECT_THAT(updateRowsOf(table), IsEmpty());
    EXPECT_TRUE(table.getMotionResult().IsEmpty());
    EXPECT_EQ(table.independentVar, mf::IndependentVariableType_None);
    EXPECT_EQ(table.motionObjectType, 1);
    EXPECT_EQ(table.getPlottingDataCount(), 100);
    EXPECT_EQ(table.getPlottingData0(), plot);
    EXPECT_THAT(spline().calls, ElementsAre("clearPoints"));  // its kind stays
    EXPECT_EQ(spline().kind, 0);
}

TEST_F(DataPointTable, CopyIsDeepAndCallsTheSplineOnce)
{
    start("1:9 2:8,3:7");
    table.setInterpolationType(mf::DataPointInterpolationType_Akima);
    table.setIndependentVar(mf::IndependentVariableType_MotionResult);
    table.setMotionResult(L"force");
    table.setMotorDependentVar(mf::MotorDriveType_Velocity);
    table.setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    table.motionObjectType = 1;
    table.calculateValue();

    mfFunctionDataPoints_c copy;
    fill(copy, "5");
    mf::test::RecordingSpline& spline = *host.services.lent.back();
    spline.calls.clear();
    EXPECT_TRUE(copy.Copy(&table));

    EXPECT_EQ(show(copy), "1:9 2:8,3:7");
    EXPECT_THAT(spline.calls, ElementsAre("clearPoints", "setKind 0", "copyFrom"));
    EXPECT_THAT(spline.points, ElementsAre(testing::Pair(1, 9), testing::Pair(2, 8), testing::Pair(3, 7)));
    EXPECT_EQ(copy.getInterpolationType(), mf::DataPointInterpolationType_Akima);
    EXPECT_EQ(copy.getIndependentVar(), mf::IndependentVariableType_MotionResult);
    EXPECT_TRUE(copy.getMotionResult() == L"force");
    EXPECT_EQ(copy.getMotorDependentVar(), mf::MotorDriveType_Velocity);
    EXPECT_EQ(copy.getForceTorqueDependentVar(), mf::ForceTorqueType_Torque);
    EXPECT_EQ(copy.motionObjectType, 0);
    EXPECT_THAT(updateRowsOf(copy), IsEmpty());
    EXPECT_EQ(copy.getPlottingData0(), nullptr);

    ASSERT_TRUE(rowAt(0).setX(0, 0.5));
    EXPECT_EQ(show(copy), "1:9 2:8,3:7");
}

class RecordingDataPoints : public RecordingFunction<mfFunctionDataPoints_c> {
public:
    using RecordingFunction::RecordingFunction;

    void clearDataPoints() override
    {
        record("clearDataPoints");
        mfFunctionDataPoints_c::clearDataPoints();
    }
    void setInterpolationType(mf::DataPointInterpolationType_e type) override
    {
        record("set interpolation");
        mfFunctionDataPoints_c::setInterpolationType(type);
    }
    mf::DataPointInterpolationType_e getInterpolationType() override
    {
        record("get interpolation");
        return mfFunctionDataPoints_c::getInterpolationType();
    }
};

TEST_F(DataPointTable, CopyCallsTheVirtualOperationsInOrder)
{
    Calls calls;
    RecordingDataPoints source(calls);
    RecordingDataPoints target(calls);
    EXPECT_TRUE(target.Copy(&source));
    EXPECT_THAT(calls, ElementsAre("clearDataPoints", "ClearFunction", "get variable", "set variable",
                                   "get result", "set result", "get motor", "set motor", "get force",
                                   "set force", "get interpolation", "set interpolation"));
}

TEST_F(DataPointTable, CopyLeavesThePlotsOfTheTarget)
{
    start("1:9 2");
    mfFunctionDataPoints_c source;
    table.calculateValue();
    const mfPoint2D_c* plot = table.getPlottingData0();
    EXPECT_TRUE(table.Copy(&source));
    EXPECT_TRUE(table.isEmpty());
    EXPECT_EQ(table.getPlottingData0(), plot);
    EXPECT_EQ(table.getPlottingDataCount(), 100);
}

TEST_F(DataPointTable, CopyOfNullIsRefusedAndOfItselfDoesNothing)
{
    start("1:9 2");
    EXPECT_FALSE(table.Copy(nullptr));
    EXPECT_TRUE(table.Copy(&table));
    EXPECT_EQ(show(table), "1:9 2");
    EXPECT_THAT(updateRowsOf(table), ElementsAre(1));
    EXPECT_THAT(spline().calls, IsEmpty());
}

TEST_F(DataPointTable, CopyConstructionAndAssignmentShareAllPointers)
{
    start("1:9 2");
    table.calculateValue();
    host.servicesAnswer = nullptr;
    const mfFunctionDataPoints_c bare;
    host.servicesAnswer = &host.services;

    mfFunctionDataPoints_c copy(table);
    mfDataPoints_c* row = nullptr;
    ASSERT_TRUE(copy.selectDataPoint(1, row));
    EXPECT_EQ(row, &rowAt(1));
    EXPECT_EQ(copy.getSplineData(), table.getSplineData());
    EXPECT_EQ(copy.getPlottingData3(), table.getPlottingData3());
    EXPECT_THAT(updateRowsOf(copy), ElementsAre(1));

    copy = bare;  // frees nothing that it shared; otherwise it could not be destroyed
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_EQ(copy.getSplineData(), nullptr);
    EXPECT_EQ(show(table), "1:9 2");
}

}  // namespace
