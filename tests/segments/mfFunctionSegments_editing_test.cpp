// SPDX-License-Identifier: MIT

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <vector>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/mfFunctionSegmentsTest.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"

using namespace mf::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr auto kTime = mf::IndependentVariableType_Time;
constexpr auto kCycleAngle = mf::IndependentVariableType_CycleAngle;
constexpr auto kMotionResult = mf::IndependentVariableType_MotionResult;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

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

}  // namespace
