// SPDX-License-Identifier: MIT

// Compares every edit with a slow and obvious version of its rule: on all small tables
// over a coarse grid, and along a long random sequence.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/editingOracle.h"
#include "tests/segments/segmentTables.h"

using namespace mf::test;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

constexpr mf::IndependentVariableType_e kVariables[] = {
    mf::IndependentVariableType_None, mf::IndependentVariableType_Time,
    mf::IndependentVariableType_CycleAngle, mf::IndependentVariableType_MotionResult};

bool endsAtZero(mf::IndependentVariableType_e variable)
{
    return variable == mf::IndependentVariableType_Time || variable == mf::IndependentVariableType_CycleAngle;
}

std::unique_ptr<mfSegment_c> segmentOf(const PlainRow& row)
{
    return std::make_unique<mfSegment_c>(row.startX, row.endX, row.value, row.name);
}

void fill(mfFunctionSegments_c& table, const PlainTable& plain)
{
    while (table.getSegmentCount() > plain.count())
        table.deleteSegment(table.getSegmentCount() - 1);
    while (table.getSegmentCount() < plain.count())
        table.addSegment(new mfSegment_c);
    for (int row = 0; row < plain.count(); ++row) {
        const PlainRow& wanted = plain.rows[static_cast<std::size_t>(row)];
        mfSegment_c& segment = rowOf(table, row);
        segment.setStartX(wanted.startX);
        segment.setEndX(wanted.endX);
        segment.setValue(wanted.value);
        segment.setProfileName(wanted.name);
    }
}

bool same(const mfFunctionSegments_c& table, const PlainTable& plain)
{
    static std::vector<int> updateRows;
    table.getUpdateRow(updateRows);
    if (table.getSegmentCount() != plain.count() || updateRows != plain.updateRows)
        return false;
    for (int row = 0; row < plain.count(); ++row) {
        const mfSegment_c& segment = rowOf(table, row);
        const PlainRow& wanted = plain.rows[static_cast<std::size_t>(row)];
        if (segment.getStartX() != wanted.startX || segment.getEndX() != wanted.endX ||
            segment.getValue() != wanted.value || segment.getProfileName() != wanted.name)
            return false;
    }
    return true;
}

std::string show(const PlainTable& plain)
{
    mfFunctionSegments_c table;
    fill(table, plain);
    return showAll(table) + " " + testing::PrintToString(plain.updateRows);
}

std::string got(const mfFunctionSegments_c& table)
{
    return showAll(table) + " " + testing::PrintToString(reported(table));
}

// Calls `visit` with each table of `count` rows whose ends are on the grid. Values and
// names differ between rows; in every second table, row 1 has the name that is not
// inherited.
template <typename Visit>
void forEachTable(int count, Visit visit)
{
    constexpr double kGrid[] = {-0.5, 0.0, 1.0};
    const CString kNames[] = {L"A", L"", L"Initial"};
    int tables = 1;
    for (int i = 0; i < 2 * count; ++i)
        tables *= 3;
    for (int number = 0; number < tables; ++number) {
        PlainTable plain;
        int rest = number;
        for (int row = 0; row < count; ++row) {
            const double startX = kGrid[rest % 3];
            const double endX = kGrid[rest / 3 % 3];
            const CString& name = kNames[row == 1 && number % 2 == 1 ? 2 : row % 2];
            plain.rows.push_back({startX, endX, 10.0 + row, name});
            rest /= 9;
        }
        visit(plain);
    }
}

class EveryTable : public testing::TestWithParam<mf::IndependentVariableType_e> {
protected:
    EveryTable() { table.setIndependentVar(GetParam()); }

    template <typename Edit, typename PlainEdit>
    void compare(const PlainTable& before, Edit edit, PlainEdit plainEdit, const std::string& what)
    {
        PlainTable plain = before;
        plain.endsAtZero = endsAtZero(GetParam());
        fill(table, plain);
        edit(table);
        plainEdit(plain);
        ASSERT_TRUE(same(table, plain))
            << what << " of " << show(before) << "\nexpected " << show(plain) << "\ngot      " << got(table);
        ++edits;
    }

    mfFunctionSegments_c table;
    long edits = 0;
};

TEST_P(EveryTable, FollowsTheRulesOfMovingEnds)
{
    for (int count = 1; count <= 4; ++count) {
        forEachTable(count, [&](const PlainTable& before) {
            for (int row = 0; row < count && !HasFatalFailure(); ++row) {
                for (const double x : {-2.5, -0.5, 0.25, 1.0, 3.0}) {
                    compare(
                        before, [&](auto& t) { t.modifySegment(row, kStartXColumn, x, 9.0, 9.0, L"N"); },
                        [&](auto& p) { p.setStart(row, x); }, "start of row " + std::to_string(row));
                    compare(
                        before, [&](auto& t) { t.modifySegment(row, kEndXColumn, 9.0, x, 9.0, L"N"); },
                        [&](auto& p) { p.setEnd(row, x); }, "end of row " + std::to_string(row));
                }
            }
        });
    }
    // 9^n tables of n rows, n rows each, 5 x, 2 columns
    EXPECT_EQ(edits, 10 * (9 + 2 * 81 + 3 * 729 + 4 * 6561));
}

TEST_P(EveryTable, FollowsTheRulesOfTheOtherEdits)
{
    for (int count = 0; count <= 4; ++count) {
        forEachTable(count, [&](const PlainTable& before) {
            for (int row = 0; row < count && !HasFatalFailure(); ++row) {
                compare(
                    before, [&](auto& t) { t.modifySegment(row, kValueColumn, 9.0, 9.0, 7.0, L"N"); },
                    [&](auto& p) { p.setValue(row, 7.0); }, "value of row " + std::to_string(row));
                compare(
                    before, [&](auto& t) { t.modifySegment(row, kNameColumn, 9.0, 9.0, 7.0, L"N"); },
                    [&](auto& p) { p.setName(row, L"N"); }, "name of row " + std::to_string(row));
            }
            for (int row = -1; row <= count && !HasFatalFailure(); ++row) {
                compare(
                    before, [&](auto& t) { t.deleteSegment(row); }, [&](auto& p) { p.remove(row); },
                    "deletion of row " + std::to_string(row));
            }
            for (int row = 0; row < count && !HasFatalFailure(); ++row) {
                fill(table, before);
                table.checkInvalid(row);
                ASSERT_EQ(rowOf(table, row).isInvalid(), before.passes(row))
                    << show(before) << " row " << row;
            }
        });
    }
    // 9^n tables of n rows: two edits of each row, and n + 2 deletions
    EXPECT_EQ(edits, 2 + (2 + 3) * 9 + (4 + 4) * 81 + (6 + 5) * 729 + (8 + 6) * 6561);
}

TEST_P(EveryTable, FollowsTheRulesOfNewRows)
{
    for (int count = 0; count <= 4; ++count) {
        forEachTable(count, [&](const PlainTable& before) {
            for (const double startX : {0.0, 1.0}) {
                for (const double endX : {-0.5, 1.0}) {
                    if (HasFatalFailure())
                        return;
                    const PlainRow added = {startX, endX, 5.0, L"New"};
                    compare(
                        before, [&](auto& t) { t.addSegment(segmentOf(added).release()); },
                        [&](auto& p) { p.add(added); }, "addition");
                    for (int row = -1; row <= count + 1 && !HasFatalFailure(); ++row) {
                        auto inserted = segmentOf(added);
                        compare(
                            before,
                            [&](auto& t) {
                                t.insertSegment(row, inserted.get());
                                if (t.getSegmentCount() > before.count())
                                    inserted.release();
                            },
                            [&](auto& p) { p.insert(row, added); }, "insertion at " + std::to_string(row));
                    }
                }
            }
        });
    }
    // 9^n tables, four rows, one addition and n + 3 insertions
    EXPECT_EQ(edits, 4 * (4 + 5 * 9 + 6 * 81 + 7 * 729 + 8 * 6561));
}

// Tables with gaps, overlaps and reversed rows among them.
TEST(EveryTableSearched, ReturnsTheRowOfTheBisectionAndTheFirstOpenSeam)
{
    mfFunctionSegments_c table;
    long questions = 0;
    for (int count = 1; count <= 5; ++count) {
        forEachTable(count, [&](const PlainTable& plain) {
            if (testing::Test::HasFatalFailure())
                return;
            fill(table, plain);
            for (const double x : {-kInfinity, -1.0, -0.5, -0.25, 0.0, 0.5, 1.0, 2.0, kInfinity, kNaN}) {
                ASSERT_EQ(table.findSegment(x), plain.find(x)) << show(plain) << " at " << x;
                ++questions;
            }
            int seam = -1;
            table.checkUpdate(seam);
            ASSERT_EQ(seam, plain.seam()) << show(plain);
        });
    }
    EXPECT_EQ(questions, 10 * (9 + 81 + 729 + 6561 + 59049));
}

INSTANTIATE_TEST_SUITE_P(Segments, EveryTable, testing::ValuesIn(kVariables), [](const auto& tested) {
    return "Variable" + std::to_string(static_cast<int>(tested.param));
});

// ------------------------------------------------------------ a long sequence

// A host that edits a table as it likes, with X that are not negative. All numbers
// are quarters of moderate size, so sums are exact.
class LongSequence : public testing::TestWithParam<mf::IndependentVariableType_e> {
protected:
    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    double anyX() { return below(80) * 0.25; }

    std::unique_ptr<mfSegment_c> anySegment()
    {
        plainNew = {anyX(), anyX(), anyX(), below(3) == 0 ? L"Initial" : L"Cubic"};
        return segmentOf(plainNew);
    }

    // One edit on both tables. Tables stay below 13 rows.
    void editOnce()
    {
        const int n = plain.count();
        const int row = n == 0 ? 0 : below(n);
        const int edit = below(8);
        if (edit == 0 && n < 12) {
            table.addSegment(anySegment().release());
            plain.add(plainNew);
        } else if (edit == 1 && n < 12) {
            const int at = below(n + 1);
            table.insertSegment(at, anySegment().release());
            plain.insert(at, plainNew);
        } else if (edit == 2) {
            table.deleteSegment(row);
            plain.remove(row);
        } else if (edit == 3 && n > 0) {
            const double value = anyX();
            table.modifySegment(row, kValueColumn, 0.0, 0.0, value, L"");
            plain.setValue(row, value);
        } else if (edit == 4 && n > 0) {
            table.modifySegment(row, kNameColumn, 0.0, 0.0, 0.0, L"Linear");
            plain.setName(row, L"Linear");
        } else if (edit <= 6 && n > 0) {
            const double x = anyX();
            table.modifySegment(row, kEndXColumn, 0.0, x, 0.0, L"");
            plain.setEnd(row, x);
        } else if (n > 0) {
            const double x = anyX();
            table.modifySegment(row, kStartXColumn, x, 0.0, 0.0, L"");
            plain.setStart(row, x);
        }
    }

    // From row 2 on, neighbours meet exactly. A row inserted before row 0 makes a seam
    // between rows that did not meet before; checkUpdate finds it, and the host has to
    // close it.
    void closeSeamBehindRowOne()
    {
        if (plain.count() < 3 || plain.end(1) == plain.start(2))
            return;
        int seam = -1;
        table.checkUpdate(seam);
        ASSERT_TRUE(seam == 1 || seam == 2) << seam;
        const double x = plain.end(1);
        table.modifySegment(2, kStartXColumn, x, 0.0, 0.0, L"");
        plain.setStart(2, x);
    }

    void checkPromises()
    {
        ASSERT_TRUE(same(table, plain)) << "expected " << show(plain) << "\ngot      " << got(table);
        for (int row = 0; row < table.getSegmentCount(); ++row) {
            const mfSegment_c& segment = rowOf(table, row);
            if (endsAtZero(GetParam())) {
                ASSERT_GE(segment.getStartX(), 0.0) << got(table);
                ASSERT_GE(segment.getEndX(), 0.0) << got(table);
            }
            if (row >= 2) {
                ASSERT_EQ(segment.getStartX(), rowOf(table, row - 1).getEndX()) << got(table);
            }
        }
        for (const int row : plain.updateRows) {
            ASSERT_GE(row, 0);
            ASSERT_LT(row, table.getSegmentCount());
        }
    }

    std::mt19937 random{20240229};
    mfFunctionSegments_c table;
    PlainTable plain;
    PlainRow plainNew;
};

TEST_P(LongSequence, KeepsThePromisesOfTheTable)
{
    table.setIndependentVar(GetParam());
    plain.endsAtZero = endsAtZero(GetParam());
    // A million edits over the four independent variables.
    for (int i = 0; i < 250'000 && !HasFatalFailure(); ++i) {
        editOnce();
        closeSeamBehindRowOne();
        checkPromises();
    }
}

INSTANTIATE_TEST_SUITE_P(Segments, LongSequence, testing::ValuesIn(kVariables), [](const auto& tested) {
    return "Variable" + std::to_string(static_cast<int>(tested.param));
});

}  // namespace
