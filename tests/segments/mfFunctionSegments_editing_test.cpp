// SPDX-License-Identifier: MIT

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"
#include "tests/support/virtualSlot.h"

using namespace mf::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr auto kTime = mf::IndependentVariableType_Time;
constexpr auto kCycleAngle = mf::IndependentVariableType_CycleAngle;
constexpr auto kMotionResult = mf::IndependentVariableType_MotionResult;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// An edit that reports row 2, so that a test sees whether the next edit clears it.
void reportSomething(mfFunctionSegments_c& table)
{
    fill(table, "0:0 0:1 1:2");
    table.modifySegment(1, kValueColumn, 0.0, 0.0, 1.0, L"");
    ASSERT_THAT(reported(table), ElementsAre(2));
}

// ---------------------------------------------------------------- moving ends

struct MoveCase {
    const char* name;
    const char* before;
    int row;
    double x;
    const char* after;
    std::vector<int> reported;
    mf::IndependentVariableType_e variable = kTime;
};

void PrintTo(const MoveCase& c, std::ostream* os)
{
    *os << c.before << ", row " << c.row << " to " << c.x;
}

const MoveCase kMoveEndCases[] = {
    {"NextRowGivesWay", "0:0 0:2 2:5", 1, 3.0, "0:0 0:3 3:5", {2, 1}},
    {"NextRowIsPushedOn", "0:0 0:2 2:5", 1, 6.0, "0:0 0:6 6:7", {2, 1}},
    {"PushRunsOn", "0:0 0:2 2:3 3:4", 1, 6.0, "0:0 0:6 6:7 7:8", {2, 3, 1}},
    {"PushEndsAtFirstRowWithRoom", "0:0 0:2 2:3 3:9 9:10", 1, 6.0, "0:0 0:6 6:7 7:9 9:10", {2, 3, 1}},
    {"EqualEndsLeaveRoom", "0:0 0:2 2:5", 1, 5.0, "0:0 0:5 5:5", {2, 1}},
    {"NoLengthIsRoomEnough", "0:0 0:2 2:5", 2, 2.0, "0:0 0:2 2:2", {2}},
    {"LastRowGrows", "0:0 0:2 2:5", 2, 7.0, "0:0 0:2 2:7", {2}},
    {"RowZeroStays", "1:1 1:2 2:5", 1, 0.5, "1:1 0:0.5 0.5:5", {2, 1}},
    {"EndOfRowZeroMovesForward", "0:0 0:2 2:5", 0, 3.0, "0:3 3:4 4:5", {1, 2}},
    {"StartOfRowZeroIsNoObstacle", "1:1 1:2", 0, 0.5, "1:0.5 0.5:2", {1}},
    // Time has no negative range: both rows end up with no length at 0.
    {"RowsPileUpAtZero", "0:0 0:2 2:4 4:6", 3, 1.0, "0:0 0:0 0:0 0:1", {3, 2, 2, 1, 1}},
    {"CycleAngleStopsAtZero", "0:0 0:2 2:4 4:6", 3, 1.0, "0:0 0:0 0:0 0:1", {3, 2, 2, 1, 1}, kCycleAngle},
    {"MotionResultGoesNegative",
     "0:0 0:2 2:4 4:6",
     3,
     1.0,
     "0:0 -2:-1 -1:0 0:1",
     {3, 2, 2, 1, 1},
     kMotionResult},
    {"UnsetVariableGoesNegative",
     "0:0 0:2 2:4 4:6",
     3,
     1.0,
     "0:0 -2:-1 -1:0 0:1",
     {3, 2, 2, 1, 1},
     mf::IndependentVariableType_None},
    {"GivenEndMayBeNegative", "0:0 0:2", 1, -3.0, "0:0 0:-3", {1}},
    // After row 2, x is 4, which is not below the start of row 1; 3 would be.
    {"WalkBackGoesOnFromWalkForward", "0:0 4:5 1:2 2:9", 1, 3.0, "0:0 4:3 3:4 4:9", {2, 3, 1}},
    {"NaNStopsBothWalks", "0:0 0:2 2:5", 1, kNaN, "0:0 0:nan nan:5", {2, 1}},
    {"InfinityPushesToInfinity", "0:0 0:2 2:5", 1, kInfinity, "0:0 0:inf inf:inf", {2, 1}},
    {"RowBelowTheTable", "0:0 0:2", -1, 3.0, "0:0 0:2", {}},
    {"RowAtTheCount", "0:0 0:2", 2, 3.0, "0:0 0:2", {}},
    {"EmptyTable", "", 0, 3.0, "", {}},
};

class MoveEnd : public testing::TestWithParam<MoveCase> {};

TEST_P(MoveEnd, MovesNeighboursAndReportsThem)
{
    const MoveCase& c = GetParam();
    mfFunctionSegments_c table;
    table.setIndependentVar(c.variable);
    fill(table, c.before);

    // The other arguments are ignored.
    EXPECT_TRUE(table.modifySegment(c.row, kEndXColumn, 77.0, c.x, 88.0, L"other"));

    EXPECT_EQ(show(table), c.after);
    EXPECT_EQ(reported(table), c.reported);  // in the order found, duplicates kept
}

INSTANTIATE_TEST_SUITE_P(Segments, MoveEnd, testing::ValuesIn(kMoveEndCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(MoveEnd, ComparesExactly)
{
    mfFunctionSegments_c table;
    fill(table, "0:0 0:2 2:5");
    const double below = std::nextafter(5.0, 0.0);
    table.modifySegment(1, kEndXColumn, 0.0, below, 0.0, L"");
    EXPECT_EQ(rowOf(table, 2).getStartX(), below);
    EXPECT_EQ(rowOf(table, 2).getEndX(), 5.0);

    const double above = std::nextafter(5.0, 9.0);
    table.modifySegment(1, kEndXColumn, 0.0, above, 0.0, L"");
    EXPECT_EQ(rowOf(table, 2).getStartX(), above);
    EXPECT_EQ(rowOf(table, 2).getEndX(), above + 1.0);
}

const MoveCase kMoveStartCases[] = {
    {"PreviousRowGivesWay", "0:0 0:2 2:5", 2, 1.0, "0:0 0:1 1:5", {1}},
    {"EqualStartsLeaveRoom", "0:0 0:2 2:5", 2, 0.0, "0:0 0:0 0:5", {1}},
    {"EqualStartsLeaveRoomAboveZero", "0:0 2:4 4:6", 2, 2.0, "0:0 2:2 2:6", {1}},
    {"PreviousRowIsPushedBack", "0:0 2:4 4:6", 2, 1.0, "0:0 0:1 1:6", {1}},
    {"PushRunsOn", "0:0 3:4 4:5 5:9", 3, 2.0, "0:0 0:1 1:2 2:9", {2, 1}},
    {"PushEndsAtFirstRowWithRoom", "0:0 0:4 4:5 5:9", 3, 2.0, "0:0 0:1 1:2 2:9", {2, 1}},
    {"TimeAboveZeroIsKept", "0:0 3:4 4:5 5:9", 3, 2.5, "0:0 0.5:1.5 1.5:2.5 2.5:9", {2, 1}},
    {"TimeStopsAtZero", "0:0 0:2 2:4 4:6", 3, 0.5, "0:0 0:0 0:0.5 0.5:6", {2, 1}},
    {"CycleAngleStopsAtZero", "0:0 0:2 2:4 4:6", 3, 0.5, "0:0 0:0 0:0.5 0.5:6", {2, 1}, kCycleAngle},
    {"MotionResultGoesNegative",
     "0:0 0:2 2:4 4:6",
     3,
     0.5,
     "0:0 -1.5:-0.5 -0.5:0.5 0.5:6",
     {2, 1},
     kMotionResult},
    {"GivenStartMayBeNegative", "0:0 0:2", 1, -3.0, "0:0 -3:2", {}},
    {"StartAfterTheEndPushesOn", "0:0 0:2 2:5", 1, 3.0, "0:0 3:4 4:5", {1, 2}},
    {"PushForwardRunsOn", "0:0 0:2 2:3 3:4", 1, 6.0, "0:0 6:7 7:8 8:9", {1, 2, 2, 3, 3}},
    {"LastRowIsPushedAlone", "0:0 0:2 2:5", 2, 6.0, "0:0 0:6 6:7", {1, 2}},
    {"EqualEndStopsUnreported", "0:0 0:2 2:5", 1, 2.0, "0:0 2:2 2:5", {}},
    {"RowZeroMoves", "0:0 0:2 2:5", 0, 1.0, "1:2 2:2 2:5", {0, 1}},
    {"RowZeroWithRoom", "0:0 0:2", 0, -1.0, "-1:0 0:2", {}},
    // After the walk back, x is 2.5, which is not above the end of row 2; 3.5 would be.
    {"WalkForwardGoesOnFromWalkBack", "0:0 4:5 5:3", 2, 3.5, "0:0 2.5:3.5 3.5:3", {1}},
    {"NaNStopsBothWalks", "0:0 0:2 2:5", 2, kNaN, "0:0 0:nan nan:5", {1}},
    {"MinusInfinityPushesBack", "0:0 0:2 2:5", 2, -kInfinity, "0:0 -inf:-inf -inf:5", {1}, kMotionResult},
    {"MinusInfinityOfTimeEndsAtZero", "0:0 1:2 2:5", 2, -kInfinity, "0:0 0:-inf -inf:5", {1}},
    {"RowBelowTheTable", "0:0 0:2", -1, 3.0, "0:0 0:2", {}},
    {"RowAtTheCount", "0:0 0:2", 2, 3.0, "0:0 0:2", {}},
};

class MoveStart : public testing::TestWithParam<MoveCase> {};

TEST_P(MoveStart, MovesNeighboursAndReportsThem)
{
    const MoveCase& c = GetParam();
    mfFunctionSegments_c table;
    table.setIndependentVar(c.variable);
    fill(table, c.before);

    EXPECT_TRUE(table.modifySegment(c.row, kStartXColumn, c.x, 77.0, 88.0, L"other"));

    EXPECT_EQ(show(table), c.after);
    EXPECT_EQ(reported(table), c.reported);
}

INSTANTIATE_TEST_SUITE_P(Segments, MoveStart, testing::ValuesIn(kMoveStartCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(MoveStart, ComparesExactly)
{
    mfFunctionSegments_c table;
    table.setIndependentVar(kMotionResult);
    fill(table, "0:0 2:4 4:6");
    const double above = std::nextafter(2.0, 9.0);
    table.modifySegment(2, kStartXColumn, above, 0.0, 0.0, L"");
    EXPECT_EQ(rowOf(table, 1).getStartX(), 2.0);
    EXPECT_EQ(rowOf(table, 1).getEndX(), above);

    const double below = std::nextafter(2.0, 0.0);
    table.modifySegment(2, kStartXColumn, below, 0.0, 0.0, L"");
    EXPECT_EQ(rowOf(table, 1).getStartX(), below - 1.0);
    EXPECT_EQ(rowOf(table, 1).getEndX(), below);
}

// ------------------------------------------------------------- other columns

struct ColumnCase {
    const char* name;
    int row;
    int column;
    const char* after;
    std::vector<int> reported;
};

void PrintTo(const ColumnCase& c, std::ostream* os)
{
    *os << "row " << c.row << ", column " << c.column;
}

const ColumnCase kColumnCases[] = {
    {"ValueReportsNextRow", 1, kValueColumn, "0:0=1/A 0:2=9/B 2:5=3/C", {2}},
    {"ValueOfRowZero", 0, kValueColumn, "0:0=9/A 0:2=2/B 2:5=3/C", {1}},
    {"ValueOfLastRowReportsNothing", 2, kValueColumn, "0:0=1/A 0:2=2/B 2:5=9/C", {}},
    {"NameReportsNothing", 1, kNameColumn, "0:0=1/A 0:2=2/New 2:5=3/C", {}},
    {"ColumnBelow", 1, -1, "0:0=1/A 0:2=2/B 2:5=3/C", {}},
    {"ColumnAbove", 1, 4, "0:0=1/A 0:2=2/B 2:5=3/C", {}},
    {"ValueOfRowBelow", -1, kValueColumn, "0:0=1/A 0:2=2/B 2:5=3/C", {}},
    {"NameOfRowAbove", 3, kNameColumn, "0:0=1/A 0:2=2/B 2:5=3/C", {}},
};

class ModifyColumn : public testing::TestWithParam<ColumnCase> {};

TEST_P(ModifyColumn, ChangesThatColumn)
{
    const ColumnCase& c = GetParam();
    mfFunctionSegments_c table;
    fill(table, "0:0=1/A 0:2=2/B 2:5=3/C");
    table.modifySegment(0, kEndXColumn, 0.0, 0.0, 0.0, L"");
    ASSERT_THAT(reported(table), ElementsAre(1));

    EXPECT_TRUE(table.modifySegment(c.row, c.column, 7.0, 8.0, 9.0, L"New"));

    EXPECT_EQ(showAll(table), c.after);
    EXPECT_EQ(reported(table), c.reported);
}

INSTANTIATE_TEST_SUITE_P(Segments, ModifyColumn, testing::ValuesIn(kColumnCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(ModifyColumn, NameDoesNotChangeKeyAndProfile)
{
    const FakeHost host;
    mfProfile_c profile;
    mfProfileKey_c key;
    key.name = L"Cubic";
    mfFunctionSegments_c table;
    fill(table, "0:0 0:1/Cubic");
    rowOf(table, 1).setProfileKey(key);
    rowOf(table, 1).setProfile(&profile);

    table.modifySegment(1, kNameColumn, 0.0, 0.0, 0.0, L"Linear");

    EXPECT_EQ(rowOf(table, 1).getProfileName(), L"Linear");
    EXPECT_TRUE(*rowOf(table, 1).getProfileKey() == key);
    EXPECT_EQ(rowOf(table, 1).getProfile(), &profile);
}

// ------------------------------------------------------------------- adding

struct AddCase {
    const char* name;
    const char* before;
    const char* added;
    const char* after;
};

void PrintTo(const AddCase& c, std::ostream* os)
{
    *os << c.before << " and " << c.added;
}

const AddCase kAddCases[] = {
    {"FirstRowIsMovedToZero", "", "3:7=5/A", "0:0=5/A"},
    {"SecondRowKeepsItsNumbers", "0:0=1/A", "3:7=5/B", "0:0=1/A 3:7=5/B"},
    {"ThirdRowIsFitted", "0:0=1/A 0:2=3/B", "3:7=5/C", "0:0=1/A 0:2=3/B 2:3=0/B"},
    {"ThirdRowThatFitsKeepsItsNumbers", "0:0=1/A 0:2=3/B", "2:7=5/C", "0:0=1/A 0:2=3/B 2:7=5/C"},
    {"RowThatFitsMayBeReversed", "0:0=1/A 0:2=3/B", "2:1=5/C", "0:0=1/A 0:2=3/B 2:1=5/C"},
    {"NaNNeverFits", "0:0=1/A 0:nan=3/B", "nan:7=5/C", "0:0=1/A 0:nan=3/B nan:nan=0/B"},
    {"InfinityFits", "0:0=1/A 0:inf=3/B", "inf:7=5/C", "0:0=1/A 0:inf=3/B inf:7=5/C"},
};

class AddSegment : public testing::TestWithParam<AddCase> {};

TEST_P(AddSegment, FitsTheRow)
{
    const AddCase& c = GetParam();
    mfFunctionSegments_c table;
    fill(table, c.before);

    mfSegment_c* added = makeSegment(c.added).release();
    table.addSegment(added);

    EXPECT_EQ(showAll(table), c.after);
    EXPECT_EQ(&rowOf(table, table.getSegmentCount() - 1), added);
    EXPECT_THAT(reported(table), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Segments, AddSegment, testing::ValuesIn(kAddCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(AddSegment, ComparesExactly)
{
    mfFunctionSegments_c table;
    fill(table, "0:0 0:2");
    table.addSegment(new mfSegment_c(std::nextafter(2.0, 9.0), 7.0, 5.0, L"C"));
    EXPECT_EQ(showAll(table), "0:0=0/ 0:2=0/ 2:3=0/");
    EXPECT_EQ(rowOf(table, 2).getStartX(), 2.0);
}

TEST(AddSegment, ForgetsWhatTheLastEditReported)
{
    mfFunctionSegments_c table;
    reportSomething(table);
    table.addSegment(new mfSegment_c);
    EXPECT_THAT(reported(table), IsEmpty());
}

TEST(AddSegment, NullIsIgnored)
{
    mfFunctionSegments_c table;
    reportSomething(table);
    table.addSegment(nullptr);
    EXPECT_EQ(show(table), "0:0 0:1 1:2");
    EXPECT_THAT(reported(table), IsEmpty());
}

// ----------------------------------------------------------------- inserting

struct InsertCase {
    const char* name;
    const char* before;
    int row;
    const char* inserted;
    const char* after;
};

void PrintTo(const InsertCase& c, std::ostream* os)
{
    *os << c.inserted << " at " << c.row << " into " << c.before;
}

const InsertCase kInsertCases[] = {
    {"AtZeroHasNoLength", "0.5:1=4/A 1:2=3/B", 0, "3:7=5/C", "0.5:0.5=4/C 0.5:1=4/A 1:2=3/B"},
    {"AtOneHasNoLength", "0.5:1=4/A 1.5:2=3/B", 1, "3:7=5/C", "0.5:1=4/A 1.5:1.5=4/C 1.5:2=3/B"},
    {"AtOneIsMovedEvenIfItFits", "0:1=4/A 2:3=3/B", 1, "1:2=5/C", "0:1=4/A 2:2=4/C 2:3=3/B"},
    {"AtTheCountIsAdded", "0:0=4/A 0:2=3/B", 2, "3:7=5/C", "0:0=4/A 0:2=3/B 2:3=0/B"},
    {"AtTheCountOfOneRow", "0:0=4/A", 1, "3:7=5/C", "0:0=4/A 3:7=5/C"},
    {"IntoAnEmptyTable", "", 0, "3:7=5/C", "0:0=5/C"},
    {"RowThatFillsTheGapIsKept", "0:0=0/A 0:2=1/B 3:4=2/D", 2, "2:3=9/C", "0:0=0/A 0:2=1/B 2:3=9/C 3:4=2/D"},
    {"RowThatFitsNowhereIsFitted", "0:0=0/A 0:2=1/B 2:4=2/D", 2, "5:6=9/C",
     "0:0=0/A 0:2=1/B 2:2=1/B 2:4=2/D"},
    {"StartAloneDoesNotFit", "0:0=0/A 0:2=1/B 3:4=2/D", 2, "2.5:3=9/C", "0:0=0/A 0:2=1/B 2:3=1/B 3:4=2/D"},
    {"EndAloneDoesNotFit", "0:0=0/A 0:2=1/B 3:4=2/D", 2, "2:2.5=9/C", "0:0=0/A 0:2=1/B 2:3=1/B 3:4=2/D"},
    {"NaNNeverFits", "0:0=0/A 0:nan=1/B 3:4=2/D", 2, "nan:3=9/C", "0:0=0/A 0:nan=1/B nan:3=1/B 3:4=2/D"},
    {"NameOfInitialRowIsNotInherited", "0:0=0/A 0:2=1/Initial 2:4=2/D", 2, "5:6=9/C",
     "0:0=0/A 0:2=1/Initial 2:2=1/C 2:4=2/D"},
    {"InitialCountsWithCase", "0:0=0/A 0:2=1/initial 2:4=2/D", 2, "5:6=9/C",
     "0:0=0/A 0:2=1/initial 2:2=1/initial 2:4=2/D"},
    {"InitialAfterIsInherited", "0:0=0/A 0:2=1/Initials 2:4=2/D", 2, "5:6=9/C",
     "0:0=0/A 0:2=1/Initials 2:2=1/Initials 2:4=2/D"},
};

class InsertSegment : public testing::TestWithParam<InsertCase> {};

TEST_P(InsertSegment, FitsTheRowAndReportsIt)
{
    const InsertCase& c = GetParam();
    mfFunctionSegments_c table;
    fill(table, c.before);

    mfSegment_c* inserted = makeSegment(c.inserted).release();
    table.insertSegment(c.row, inserted);

    EXPECT_EQ(showAll(table), c.after);
    EXPECT_EQ(&rowOf(table, c.row), inserted);
    EXPECT_THAT(reported(table), ElementsAre(c.row));
}

INSTANTIATE_TEST_SUITE_P(Segments, InsertSegment, testing::ValuesIn(kInsertCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(InsertSegment, OutsideTheTableStaysWithTheCaller)
{
    for (const int row : {-1, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        mfFunctionSegments_c table;
        reportSomething(table);
        const auto kept = makeSegment("3:7=5/C");
        table.insertSegment(row, kept.get());
        EXPECT_EQ(show(table), "0:0 0:1 1:2");
        EXPECT_EQ(kept->getStartX(), 3.0);
        EXPECT_THAT(reported(table), IsEmpty());
    }
}

TEST(InsertSegment, NullIsIgnored)
{
    for (const int row : {0, 1, 2, 3}) {
        mfFunctionSegments_c table;
        reportSomething(table);
        table.insertSegment(row, nullptr);
        EXPECT_EQ(show(table), "0:0 0:1 1:2");
        EXPECT_THAT(reported(table), IsEmpty());
    }
}

// ------------------------------------------------------------------ deleting

struct DeleteCase {
    const char* name;
    const char* before;
    int row;
    const char* after;
    std::vector<int> reported;
};

void PrintTo(const DeleteCase& c, std::ostream* os)
{
    *os << "row " << c.row << " of " << c.before;
}

const DeleteCase kDeleteCases[] = {
    {"RowOneOfTwo", "0:0 0:2", 1, "0:0", {}},
    {"RowOneOfThree", "0:0 0:2 2:5", 1, "0:0 2:5", {1}},
    {"NextRowClosesTheGap", "0:0 0:2 2:5 5:6", 2, "0:0 0:2 2:6", {2}},
    {"NextRowMeetsAlready", "0:0 0:2 2:2 2:6", 2, "0:0 0:2 2:6", {}},
    {"NaNNeverMeets", "0:0 0:nan 2:5 nan:6", 2, "0:0 0:nan nan:6", {2}},
    {"LastRow", "0:0 0:2 2:5", 2, "0:0 0:2", {}},
    {"RowZero", "0:0 0:2 2:5", 0, "0:2 2:5", {}},
    {"OnlyRow", "0:0", 0, "", {}},
    {"RowBelowTheTable", "0:0 0:2", -1, "0:0 0:2", {}},
    {"RowAtTheCount", "0:0 0:2", 2, "0:0 0:2", {}},
    {"EmptyTable", "", 0, "", {}},
};

class DeleteSegment : public testing::TestWithParam<DeleteCase> {};

TEST_P(DeleteSegment, ClosesTheGap)
{
    const DeleteCase& c = GetParam();
    mfFunctionSegments_c table;
    fill(table, c.before);
    table.modifySegment(0, kValueColumn, 0.0, 0.0, 1.0, L"");  // reports row 1 if it exists

    table.deleteSegment(c.row);

    EXPECT_EQ(show(table), c.after);
    EXPECT_EQ(reported(table), c.reported);
}

INSTANTIATE_TEST_SUITE_P(Segments, DeleteSegment, testing::ValuesIn(kDeleteCases),
                         [](const auto& tested) { return tested.param.name; });

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

// Records which of its virtual operations a copy uses.
class RecordingTable : public mfFunctionSegments_c {
public:
    explicit RecordingTable(std::vector<std::string>& calls) : calls_(calls) {}

    void clearSegments() override
    {
        calls_.emplace_back("clearSegments");
        mfFunctionSegments_c::clearSegments();
    }
    void ClearFunction() override
    {
        calls_.emplace_back("ClearFunction");
        mfFunctionSegments_c::ClearFunction();
    }
    void setMotorDependentVar(mf::MotorDriveType_e quantity) override
    {
        calls_.emplace_back("set motor");
        mfFunctionSegments_c::setMotorDependentVar(quantity);
    }
    mf::MotorDriveType_e getMotorDependentVar() override
    {
        calls_.emplace_back("get motor");
        return mfFunctionSegments_c::getMotorDependentVar();
    }
    void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) override
    {
        calls_.emplace_back("set force");
        mfFunctionSegments_c::setForceTorqueDependentVar(quantity);
    }
    mf::ForceTorqueType_e getForceTorqueDependentVar() override
    {
        calls_.emplace_back("get force");
        return mfFunctionSegments_c::getForceTorqueDependentVar();
    }
    void setIndependentVar(mf::IndependentVariableType_e variable) override
    {
        calls_.emplace_back("set variable");
        mfFunctionSegments_c::setIndependentVar(variable);
    }
    mf::IndependentVariableType_e getIndependentVar() override
    {
        calls_.emplace_back("get variable");
        return mfFunctionSegments_c::getIndependentVar();
    }
    void setMotionResult(const CString& name) override
    {
        calls_.emplace_back("set result");
        mfFunctionSegments_c::setMotionResult(name);
    }
    CString getMotionResult() override
    {
        calls_.emplace_back("get result");
        return mfFunctionSegments_c::getMotionResult();
    }

private:
    std::vector<std::string>& calls_;
};

TEST(CopyTable, CallsTheVirtualOperationsInOrder)
{
    std::vector<std::string> calls;
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

// --------------------------------------------------------- tokens and profiles

struct ReplaceCase {
    const char* name;
    std::vector<CString> before;
    const wchar_t* from;
    const wchar_t* to;
    std::vector<CString> after;
};

void PrintTo(const ReplaceCase& c, std::ostream* os)
{
    *os << c.name;
}

const ReplaceCase kReplaceCases[] = {
    {"EachEqualToken", {L"a", L"+", L"b", L"*", L"a"}, L"a", L"-1", {L"(-1)", L"+", L"b", L"*", L"(-1)"}},
    {"PartsOfTokensStay", {L"a1", L"xa", L"A"}, L"a", L"2", {L"a1", L"xa", L"A"}},
    {"BracketedTokenIsNotLookedAtAgain", {L"(2)", L"2"}, L"(2)", L"2", {L"(2)", L"2"}},
    {"NameThatGivesItself", {L"a"}, L"a", L"a", {L"(a)"}},
    {"EmptyNameIsNowhere", {L"", L"a"}, L"", L"2", {L"", L"a"}},
    {"EmptyNumber", {L"a"}, L"a", L"", {L"()"}},
    {"NoTokens", {}, L"a", L"2", {}},
};

class Replace : public testing::TestWithParam<ReplaceCase> {};

TEST_P(Replace, BracketsWholeTokens)
{
    const ReplaceCase& c = GetParam();
    mfFunctionSegments_c table;
    std::vector<CString> tokens = c.before;
    table.replace(tokens, c.from, c.to);
    EXPECT_EQ(tokens, c.after);
}

INSTANTIATE_TEST_SUITE_P(Segments, Replace, testing::ValuesIn(kReplaceCases),
                         [](const auto& tested) { return tested.param.name; });

class ProfilesToSave : public testing::Test {
protected:
    void giveKey(int row, const wchar_t* name, mfProfile_c* profile)
    {
        mfProfileKey_c key;
        key.name = name;
        key.source = L" (User)";
        rowOf(table, row).setProfileKey(key);
        rowOf(table, row).setProfile(profile);
    }

    const FakeHost host;
    mfFunctionSegments_c table;
    mfProfile_c cubic;
    mfProfile_c linear;
    std::vector<CString> names = {L"is emptied"};
    std::vector<mfProfile_c*> profiles = {nullptr};
};

TEST_F(ProfilesToSave, EmptyTableHasNone)
{
    EXPECT_TRUE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, IsEmpty());
    EXPECT_THAT(profiles, IsEmpty());
}

TEST_F(ProfilesToSave, EachNameOnceInOrderOfRows)
{
    fill(table, "0:0 0:1 1:2");
    giveKey(0, L"Linear", &linear);
    giveKey(1, L"Cubic", &cubic);
    giveKey(2, L"Linear", &cubic);  // the first record is used
    EXPECT_TRUE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L"Linear (User)"), CString(L"Cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&linear, &cubic));
}

TEST_F(ProfilesToSave, NamesCountWithCase)
{
    fill(table, "0:0 0:1");
    giveKey(0, L"Cubic", &cubic);
    giveKey(1, L"cubic", &cubic);
    EXPECT_TRUE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L"Cubic (User)"), CString(L"cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&cubic, &cubic));
}

TEST_F(ProfilesToSave, NameWithoutARecordFails)
{
    fill(table, "0:0 0:1");
    giveKey(0, L"Gone", nullptr);
    giveKey(1, L"Cubic", &cubic);
    EXPECT_FALSE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L"Gone (User)"), CString(L"Cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&cubic));
}

TEST_F(ProfilesToSave, RowsWithoutAKeyAreOneEmptyName)
{
    fill(table, "0:0 0:1 1:2");
    giveKey(1, L"Cubic", &cubic);
    EXPECT_FALSE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L""), CString(L"Cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&cubic));
}

}  // namespace
