// SPDX-License-Identifier: MIT

// Compares the table's edits with a slow and simple version of each, which treats rows
// as closed ranges and checks all of them.

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "tests/functions/dataPointTables.h"

namespace {

using mf::test::show;
using mf::test::updateRowsOf;

using Row = std::vector<double>;  // the X of its points
using Table = std::vector<Row>;

constexpr int kGrid = 6;  // the X of tables are 0, 1, ... 5

std::unique_ptr<mfDataPoints_c> listOf(const Row& row)
{
    auto list = std::make_unique<mfDataPoints_c>();
    for (const double x : row)
        list->addPoint(x, 0.0);
    return list;
}

void fill(mfFunctionDataPoints_c& function, const Table& table)
{
    function.ClearFunction();
    for (const Row& row : table)
        function.insertDataPoint(function.getDataPointsCount(), listOf(row).release());
}

Table read(mfFunctionDataPoints_c& function)
{
    Table table;
    for (int i = 0; i < function.getDataPointsCount(); ++i) {
        mfDataPoints_c* row = nullptr;
        function.selectDataPoint(i, row);
        table.emplace_back();
        for (int j = 0; j < row->getPointCount(); ++j)
            table.back().push_back(row->getX(j));
    }
    return table;
}

// Every table whose rows of one or two points have ascending X of the grid.
std::vector<Table> allTables()
{
    std::vector<Table> tables{{}};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        const Table table = tables[i];
        const int next = table.empty() ? 0 : static_cast<int>(table.back().back()) + 1;
        for (int start = next; start < kGrid; ++start) {
            for (int end = start; end < kGrid; ++end) {
                tables.push_back(table);
                tables.back().push_back(start == end ? Row{1.0 * start} : Row{1.0 * start, 1.0 * end});
            }
        }
    }
    return tables;
}

// Lists of one and two points on, between and beyond the X of the grid.
std::vector<Row> allLists()
{
    std::vector<Row> lists;
    for (double start = -1.0; start <= kGrid; start += 0.5) {
        lists.push_back({start});
        for (double end = start + 0.5; end <= kGrid; end += 0.5)
            lists.push_back({start, end});
    }
    return lists;
}

bool meet(const Row& a, const Row& b)
{
    return a.front() <= b.back() && b.front() <= a.back();
}

std::vector<std::size_t> rowsMet(const Table& table, const Row& list)
{
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (meet(table[i], list))
            rows.push_back(i);
    }
    return rows;
}

// How many rows end before the list: its index if it overlaps no row, otherwise the
// first overlapping row.
int rowsAhead(const Table& table, const Row& list)
{
    return static_cast<int>(
        std::count_if(table.begin(), table.end(), [&](const Row& row) { return row.back() < list.front(); }));
}

TEST(AllSmallTables, OverlapMeetsTheRowsThatShareAnX)
{
    mfFunctionDataPoints_c function;
    for (const Table& table : allTables()) {
        fill(function, table);
        for (const Row& list : allLists()) {
            int position = -1;
            std::vector<std::size_t> rows;
            const bool overlaps = function.IsRangeOverlap(listOf(list).get(), position, rows);
            ASSERT_EQ(rows, rowsMet(table, list)) << show(function) << " with " << show(*listOf(list));
            ASSERT_EQ(overlaps, !rows.empty());
            ASSERT_EQ(position, rowsAhead(table, list)) << show(function) << " with " << show(*listOf(list));
        }
    }
}

// The steps of the search as documented, for a table that has rows.
int search(const Table& table, double x)
{
    const auto isInRow = [&](int row) {
        const Row& range = table.at(static_cast<std::size_t>(row));
        return range.front() <= x && x <= range.back();
    };
    int low = 0;
    int high = static_cast<int>(table.size()) - 1;
    int middle = static_cast<int>(table.size()) / 2;
    while (high - low > 1) {
        if (isInRow(middle))
            return middle;
        const bool isAtOrBehind = x >= table.at(static_cast<std::size_t>(middle)).front();
        (isAtOrBehind ? low : high) = middle;
        middle = (middle + (isAtOrBehind ? high : low)) / 2;
    }
    if (isInRow(high))
        return high;
    if (!isInRow(low))
        return middle;
    return high;
}

TEST(AllSmallTables, SearchFollowsItsSteps)
{
    mfFunctionDataPoints_c function;
    for (const Table& table : allTables()) {
        fill(function, table);
        for (double x = -1.0; x <= kGrid && !table.empty(); x += 0.5)
            ASSERT_EQ(function.findDataPonts(x), search(table, x)) << show(function) << " at " << x;
    }
}

// When a list is not moved: below the first row, above the last, or between two rows
// with its end below the end of the second.
bool fits(const Table& table, std::size_t row, const Row& list)
{
    const bool aboveTheRowBefore = row == 0 || table[row - 1].back() < list.front();
    if (row == table.size())
        return aboveTheRowBefore;
    const double limit = row == 0 ? table[row].front() : table[row].back();
    return aboveTheRowBefore && list.back() < limit;
}

double freeX(const Table& table, std::size_t row)
{
    const double before = row == 0 ? table.front().front() - 2.0 : table[row - 1].back();
    const double after = row == table.size() ? table.back().back() + 2.0 : table[row].front();
    return (before + after) / 2.0;
}

TEST(AllSmallTables, InsertionStaysAtTheRequestedRow)
{
    mfFunctionDataPoints_c function;
    for (const Table& table : allTables()) {
        for (const Row& list : allLists()) {
            for (std::size_t row = 0; row <= table.size(); ++row) {
                fill(function, table);
                Table expected = table;
                Row placed = list;
                if (!fits(table, row, list))
                    placed.front() = freeX(table, row);
                if (placed.front() <= placed.back())
                    expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(row), placed);

                std::unique_ptr<mfDataPoints_c> points = listOf(list);
                const std::string what =
                    show(function) + " with " + show(*points) + " at " + std::to_string(row);
                ASSERT_TRUE(function.insertDataPoint(static_cast<int>(row), points.get())) << what;
                if (function.getDataPointsCount() > static_cast<int>(table.size()))
                    static_cast<void>(points.release());  // the table's now
                ASSERT_EQ(read(function), expected) << what;
                ASSERT_EQ(updateRowsOf(function), std::vector<int>{static_cast<int>(row)}) << what;
            }
        }
    }
}

TEST(AllSmallTables, ModificationOfAnXKeepsTheOrderOrRefuses)
{
    mfFunctionDataPoints_c function;
    for (const Table& table : allTables()) {
        for (std::size_t row = 0; row < table.size(); ++row) {
            for (double x = -1.0; x <= kGrid; x += 0.5) {
                fill(function, table);
                Table others = table;
                others.erase(others.begin() + static_cast<std::ptrdiff_t>(row));
                Row moved = table[row];
                if (moved.size() == 1 || x <= moved[1])
                    moved.front() = x;
                const bool isRefused = !rowsMet(others, moved).empty();
                Table expected = table;
                std::vector<int> reported{static_cast<int>(row)};
                if (!isRefused) {
                    expected = others;
                    expected.push_back(moved);
                    std::sort(expected.begin(), expected.end());
                    reported.push_back(rowsAhead(others, moved));
                }

                const std::string what =
                    show(function) + ", row " + std::to_string(row) + " to " + std::to_string(x);
                ASSERT_EQ(function.modifyDataPoint(static_cast<int>(row), 0, x, 0.0), !isRefused) << what;
                ASSERT_EQ(read(function), expected) << what;
                ASSERT_EQ(updateRowsOf(function), reported) << what;
            }
        }
    }
}

}  // namespace
