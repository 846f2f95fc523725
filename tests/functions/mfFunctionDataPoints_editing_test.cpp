// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "tests/functions/dataPointTables.h"
#include "tests/functions/mfFunctionDataPointsTest.h"
#include "tests/support/FakeHost.h"

namespace {

using mf::test::Calls;
using mf::test::DataPointTable;
using mf::test::rowOf;
using mf::test::show;
using mf::test::updateRowsOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The calls by which an edit passes the points to the spline again.
Calls regenerationOf(mfFunctionDataPoints_c& table)
{
    Calls calls{"clearPoints"};
    for (int i = 0; i < table.getDataPointsCount(); ++i) {
        mfDataPoints_c* row = nullptr;
        table.selectDataPoint(i, row);
        for (int j = 0; j < row->getPointCount(); ++j) {
            std::ostringstream call;
            call << "addPoint " << row->getX(j) << ' ' << row->getY(j);
            calls.push_back(call.str());
        }
    }
    return calls;
}

// Insertion

struct InsertCase {
    const char* name;
    const char* before;
    int row;
    const char* points;
    const char* after;
};

const InsertCase kInsertCases[] = {
    {"FirstRowNeverClashes", "", 0, "7:9", "7:9"},
    {"AfterTheLast", "1 2 3", 3, "10:9", "1 2 3 10:9"},
    {"EqualToTheLastMovesBeyondIt", "1 2 3", 3, "3:9", "1 2 3 4:9"},
    {"BelowTheLastMovesBeyondIt", "1 2 3", 3, "-5:9", "1 2 3 4:9"},
    {"JustAboveTheLastStays", "1 2 4", 3, "4.000001:9", "1 2 4 4:9"},  // shown with six digits
    {"BeforeTheFirst", "1 2 3", 0, "0.5:9", "0.5:9 1 2 3"},
    {"EqualToTheFirstMovesBeforeIt", "1 2 3", 0, "1:9", "0:9 1 2 3"},
    {"AboveTheFirstMovesBeforeIt", "1 2 3", 0, "8:9", "0:9 1 2 3"},
    {"IntoTheGap", "1 2 3", 1, "1.5:9", "1 1.5:9 2 3"},
    {"BeyondTheGapMovesToItsMiddle", "1 2 3", 1, "7:9", "1 1.5:9 2 3"},
    {"EqualToTheNextMovesToTheMiddle", "1 2 3", 1, "2:9", "1 1.5:9 2 3"},
    {"EqualToThePreviousMovesToTheMiddle", "1 2 3", 1, "1:9", "1 1.5:9 2 3"},
    {"SecondRowAtTheSameX", "5", 1, "5:9", "5 6:9"},
    {"InsideARowOfSeveralPointsPasses", "1 2,4 6", 1, "3:9", "1 3:9 2,4 6"},
    {"AtTheEndOfARowOfSeveralPointsMoves", "1 2,4 6", 1, "4:9", "1 1.5:9 2,4 6"},
    {"GapCountsFromTheEndOfTheRowBefore", "1,3 6", 1, "2:9", "1,3 4.5:9 6"},
    {"ListOfSeveralFits", "1 6", 1, "2:8,3:9", "1 2:8,3:9 6"},
    {"ListOfSeveralIsMovedByItsFirstPoint", "1 4", 1, "3,6:9", "1 2.5,6:9 4"},
    {"ListOfSeveralThatReachesTheLast", "1 4", 2, "4,9", "1 4 5,9"},
    {"ListThatCannotBeMovedIsLeftOut", "1 4", 2, "3,4.5", "1 4"},
    {"ListWithoutPointsThatClashesIsLeftOut", "1 4", 2, "-", "1 4"},
    {"ListWithoutPointsThatFitsIsTaken", "1 4", 0, "-", "- 1 4"},
    {"NaNAtTheEndIsNoClash", "1 4", 2, "nan:9", "1 4 nan:9"},
    {"NaNBeforeIsNoClash", "1 4", 0, "nan:9", "nan:9 1 4"},
    {"NaNBetweenMovesToTheMiddle", "1 4", 1, "nan:9", "1 2.5:9 4"},
    {"InfinityAtTheEndStays", "1 4", 2, "inf:9", "1 4 inf:9"},
    {"InfinityBetweenMovesToTheMiddle", "1 4", 1, "-inf:9", "1 2.5:9 4"},
};

void PrintTo(const InsertCase& c, std::ostream* os)
{
    *os << '"' << c.points << "\" at row " << c.row << " of \"" << c.before << '"';
}

class Insert : public DataPointTable, public testing::WithParamInterface<InsertCase> {};

TEST_P(Insert, MovesAClashingRowAndReportsIt)
{
    const InsertCase& c = GetParam();
    start(c.before);

    EXPECT_TRUE(insert(c.row, c.points));

    EXPECT_EQ(show(table), c.after);
    EXPECT_THAT(updateRowsOf(table), ElementsAre(c.row));
    EXPECT_EQ(spline().calls, regenerationOf(table));
}

INSTANTIATE_TEST_SUITE_P(DataPoints, Insert, testing::ValuesIn(kInsertCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(DataPointTable, InsertOutsideTheTableIsRefused)
{
    start("1 2 3");
    for (const int row : {-1, 4}) {
        ASSERT_TRUE(table.modifyDataPoint(0, 0, 1.0, 0.0));  // leaves update rows
        spline().calls.clear();
        EXPECT_FALSE(insert(row, "9")) << row;
        EXPECT_THAT(updateRowsOf(table), IsEmpty()) << row;
        EXPECT_THAT(spline().calls, IsEmpty()) << row;
        EXPECT_EQ(show(table), "1 2 3");
    }
}

TEST_F(DataPointTable, InsertOfNullIsRefused)
{
    start("1 2 3");
    EXPECT_FALSE(table.insertDataPoint(1, nullptr));
    EXPECT_THAT(updateRowsOf(table), IsEmpty());
    EXPECT_THAT(spline().calls, IsEmpty());
}

TEST_F(DataPointTable, InsertBetweenMovesExactlyToTheMiddle)
{
    start("1 2");
    EXPECT_TRUE(insert(1, "7:9"));
    EXPECT_EQ(rowAt(1).getStartX(), 1.5);
}

TEST_F(DataPointTable, InsertBeyondTheLargestXCannotLeaveIt)
{
    start("1e+300");
    EXPECT_TRUE(insert(1, "1e300:9"));  // 1.0 vanishes in the sum, so X come out equal
    EXPECT_EQ(show(table), "1e+300 1e+300:9");
}

TEST_F(DataPointTable, AppendFollowsTheRulesOfInsertionAndLeavesTheSpline)
{
    start("1 2");
    mfDataPoints_c* clashing = rowOf("2:9").release();
    EXPECT_TRUE(table.appendDataPoint(clashing));
    EXPECT_EQ(show(table), "1 2 3:9");
    EXPECT_THAT(updateRowsOf(table), ElementsAre(2));
    EXPECT_FALSE(table.appendDataPoint(nullptr));
    EXPECT_THAT(updateRowsOf(table), IsEmpty());
    EXPECT_THAT(spline().calls, IsEmpty());

    table.RegenSplineData();
    EXPECT_THAT(spline().calls, ElementsAre("clearPoints", "addPoint 1 0", "addPoint 2 0", "addPoint 3 9"));
}

// Modification

struct ModifyXCase {
    const char* name;
    const char* before;
    int row;
    double x;
    bool accepted;
    const char* after;
    std::vector<int> reported;
};

const ModifyXCase kModifyXCases[] = {
    {"KeepsItsPlace", "1 2:9 3", 1, 2.5, true, "1 2.5:9 3", {1, 1}},
    {"MovesToTheEnd", "1 2:9 3", 1, 5.0, true, "1 3 5:9", {1, 2}},
    {"MovesToTheFront", "1 2:9 3", 1, 0.0, true, "0:9 1 3", {1, 0}},
    {"MeetsTheNext", "1 2:9 3", 1, 3.0, false, "1 2:9 3", {1}},
    {"MeetsTheFirst", "1 2:9 3", 1, 1.0, false, "1 2:9 3", {1}},
    {"MeetsItselfOnly", "1 2:9 3", 1, 2.0, true, "1 2:9 3", {1, 1}},
    {"OnlyRowGoesAnywhere", "1:9", 0, -40.0, true, "-40:9", {0, 0}},
    {"FirstAfterTheLast", "1:9 2 3", 0, 4.0, true, "2 3 4:9", {0, 2}},
    {"LastBeforeTheFirst", "1 2 3:9", 2, 0.5, true, "0.5:9 1 2", {2, 0}},
    {"JustBelowTheNext", "1 2:9 3", 1, 2.9999999999999996, true, "1 3:9 3", {1, 1}},  // shown with six digits
    {"IntoARowOfSeveralPoints", "1:9 2,4 6", 0, 3.0, false, "1:9 2,4 6", {0}},
    {"BetweenRowsOfSeveralPoints", "1:9 2,4 6,7", 0, 5.0, true, "2,4 5:9 6,7", {0, 1}},
    {"RowOfSeveralPointsGrows", "1 4,6 8", 1, 2.0, true, "1 2,6 8", {1, 1}},
    {"RowOfSeveralPointsGrowsInto", "1 4,6 8", 1, 1.0, false, "1 4,6 8", {1}},
    {"RowOfSeveralPointsKeepsItsOrder", "1 4,6 8", 1, 7.0, true, "1 4,6 8", {1, 1}},
    {"NaNGoesToTheEnd", "1 2:9 3", 1, kNaN, true, "1 3 nan:9", {1, 2}},
    {"InfinityGoesToTheEnd", "1 2:9 3", 1, kInfinity, true, "1 3 inf:9", {1, 2}},
    {"MinusInfinityGoesToTheFront", "1 2:9 3", 1, -kInfinity, true, "-inf:9 1 3", {1, 0}},
    {"WhereOneMoreIsNoMore", "1 2:9 3", 1, 1e300, true, "1 3 1e+300:9", {1, 2}},
};

void PrintTo(const ModifyXCase& c, std::ostream* os)
{
    *os << "X of row " << c.row << " of \"" << c.before << "\" to " << c.x;
}

class ModifyX : public DataPointTable, public testing::WithParamInterface<ModifyXCase> {};

TEST_P(ModifyX, MovesTheRowOrRefuses)
{
    const ModifyXCase& c = GetParam();
    start(c.before);

    EXPECT_EQ(table.modifyDataPoint(c.row, 0, c.x, 77.0), c.accepted);  // the Y that comes along is ignored

    EXPECT_EQ(show(table), c.after);
    EXPECT_EQ(updateRowsOf(table), c.reported);
    EXPECT_EQ(spline().calls, c.accepted ? regenerationOf(table) : Calls());
}

INSTANTIATE_TEST_SUITE_P(DataPoints, ModifyX, testing::ValuesIn(kModifyXCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(DataPointTable, ModifyYChangesYOnlyAndReportsNothing)
{
    start("1 2:5 3");
    EXPECT_TRUE(table.modifyDataPoint(1, 1, 0.0, 9.0));
    EXPECT_EQ(show(table), "1 2:9 3");
    EXPECT_THAT(updateRowsOf(table), IsEmpty());
    EXPECT_EQ(spline().calls, regenerationOf(table));
}

TEST_F(DataPointTable, ModifyOfAnotherColumnChangesNothing)
{
    start("1 2:5 3");
    for (const int column : {2, -1}) {
        EXPECT_TRUE(table.modifyDataPoint(1, column, 0.0, 9.0)) << column;
        EXPECT_EQ(show(table), "1 2:5 3");
        EXPECT_THAT(updateRowsOf(table), IsEmpty());
        EXPECT_THAT(spline().calls, IsEmpty());
    }
}

TEST_F(DataPointTable, ModifyOutsideTheTableIsRefusedAndForgetsTheUpdateRows)
{
    start("1 2 3");
    for (const int row : {-1, 3}) {
        for (const int column : {0, 1, 2}) {
            ASSERT_TRUE(table.modifyDataPoint(0, 0, 0.0, 0.0));
            spline().calls.clear();
            EXPECT_FALSE(table.modifyDataPoint(row, column, 9.0, 9.0));
            EXPECT_THAT(updateRowsOf(table), IsEmpty());
            EXPECT_THAT(spline().calls, IsEmpty());
            EXPECT_EQ(show(table), "0 2 3");
        }
    }
}

TEST_F(DataPointTable, ModifyOfARowWithoutPointsFindsItAPlaceByItsZeroRange)
{
    ASSERT_TRUE(insert(0, "-"));
    ASSERT_TRUE(insert(1, "4"));
    EXPECT_TRUE(table.modifyDataPoint(0, 0, 9.0, 0.0));
    EXPECT_EQ(show(table), "- 4");
    EXPECT_TRUE(table.modifyDataPoint(0, 1, 0.0, 9.0));
    EXPECT_EQ(show(table), "- 4");
}

// Deletion

TEST_F(DataPointTable, DeleteClosesTheGapAndReportsTheRow)
{
    start("1 2 3");
    EXPECT_TRUE(table.deleteDataPoint(1));
    EXPECT_EQ(show(table), "1 3");
    EXPECT_THAT(updateRowsOf(table), ElementsAre(1));
    EXPECT_EQ(spline().calls, regenerationOf(table));
}

TEST_F(DataPointTable, DeleteOutsideTheTableIsRefusedAndKeepsTheUpdateRows)
{
    start("1 2 3");
    for (const int row : {-1, 3}) {
        EXPECT_FALSE(table.deleteDataPoint(row));
        EXPECT_THAT(updateRowsOf(table), ElementsAre(2));  // of the last insertion
        EXPECT_THAT(spline().calls, IsEmpty());
        EXPECT_EQ(show(table), "1 2 3");
    }
}

struct DeleteRowsCase {
    const char* name;
    std::vector<std::size_t> rows;
    const char* after;
};

const DeleteRowsCase kDeleteRowsCases[] = {
    {"None", {}, "1 2 3 4,5 6"},
    {"OneTwice", {0, 0}, "2 3 4,5 6"},
    {"InAnyOrder", {4, 0, 2}, "2 4,5"},
    {"All", {0, 1, 2, 3, 4}, ""},
    {"OutsideIsIgnored", {5, 1, static_cast<std::size_t>(-1)}, "1 3 4,5 6"},
};

class DeleteRows : public DataPointTable, public testing::WithParamInterface<DeleteRowsCase> {};

TEST_P(DeleteRows, ByTheirIndexAtTheTimeOfTheCall)
{
    const DeleteRowsCase& c = GetParam();
    start("1 2 3 4,5 6");
    EXPECT_TRUE(table.deleteDataPoints(c.rows));
    EXPECT_EQ(show(table), c.after);
    EXPECT_THAT(updateRowsOf(table), ElementsAre(4));  // of the last insertion
    EXPECT_EQ(spline().calls, regenerationOf(table));
}

INSTANTIATE_TEST_SUITE_P(DataPoints, DeleteRows, testing::ValuesIn(kDeleteRowsCases),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
