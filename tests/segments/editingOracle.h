// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/interfaces/CString.h"

// A slow and obvious segment table: rows by value, and every rule written out step by step
// without code shared between rules.
namespace mf::test {

struct PlainRow {
    double startX = 0.0;
    double endX = 0.0;
    double value = 0.0;
    CString name;

    bool operator==(const PlainRow&) const = default;
};

struct PlainTable {
    std::vector<PlainRow> rows;
    std::vector<int> updateRows;
    bool endsAtZero = false;  // time and cycle angle

    int count() const { return static_cast<int>(rows.size()); }
    double& start(int row) { return rows[static_cast<std::size_t>(row)].startX; }
    double& end(int row) { return rows[static_cast<std::size_t>(row)].endX; }
    void report(int row) { updateRows.push_back(row); }

    double floored(double x) const
    {
        if (endsAtZero) {
            if (x < 0.0)
                return 0.0;
        }
        return x;
    }

    void add(PlainRow added)
    {
        updateRows = {};
        const int n = count();
        if (n == 0) {
            added.startX = 0.0;
            added.endX = 0.0;
        }
        if (n >= 2) {
            const PlainRow last = rows.back();
            if (last.endX != added.startX)
                added = {last.endX, last.endX + 1.0, 0.0, last.name};
        }
        rows.push_back(added);
    }

    // False when the row is not inserted.
    bool insert(int row, PlainRow inserted)
    {
        updateRows = {};
        const int n = count();
        if (row < 0 || row > n)
            return false;
        if (row == n) {
            add(inserted);
            updateRows = {row};
            return true;
        }
        if (row == 0) {
            inserted.startX = rows[0].startX;
            inserted.endX = rows[0].startX;
            inserted.value = rows[0].value;
        } else if (row == 1) {
            inserted.startX = rows[1].startX;
            inserted.endX = rows[1].startX;
            inserted.value = rows[0].value;
        } else {
            const PlainRow previous = rows.at(static_cast<std::size_t>(row - 1));
            const PlainRow next = rows.at(static_cast<std::size_t>(row));
            const bool startMeets = previous.endX == inserted.startX;
            const bool endMeets = inserted.endX == next.startX;
            if (!startMeets || !endMeets) {
                inserted.startX = previous.endX;
                inserted.endX = next.startX;
                inserted.value = previous.value;
                if (previous.name != L"Initial")
                    inserted.name = previous.name;
            }
        }
        updateRows = {row};
        rows.insert(rows.begin() + row, inserted);
        return true;
    }

    void setStart(int row, double x)
    {
        updateRows = {};
        start(row) = x;
        int i = row - 1;
        while (i > 0) {
            end(i) = x;
            if (!(x < start(i))) {
                report(i);
                break;
            }
            x = x - 1.0;
            x = floored(x);
            start(i) = x;
            report(i);
            i = i - 1;
        }
        int j = row;
        while (j < count()) {
            if (!(x > end(j)))
                break;
            x = x + 1.0;
            end(j) = x;
            report(j);
            if (j != count() - 1) {
                start(j + 1) = x;
                report(j + 1);
            }
            j = j + 1;
        }
    }

    void setEnd(int row, double x)
    {
        updateRows = {};
        end(row) = x;
        int i = row + 1;
        while (i < count()) {
            start(i) = x;
            if (!(x > end(i))) {
                report(i);
                break;
            }
            x = x + 1.0;
            end(i) = x;
            report(i);
            i = i + 1;
        }
        int j = row;
        while (j > 0) {
            if (!(x < start(j))) {
                report(j);
                return;
            }
            x = x - 1.0;
            x = floored(x);
            start(j) = x;
            report(j);
            if (j > 1) {
                end(j - 1) = x;
                report(j - 1);
            }
            j = j - 1;
        }
    }

    void setValue(int row, double value)
    {
        updateRows = {};
        rows.at(static_cast<std::size_t>(row)).value = value;
        if (row != count() - 1)
            report(row + 1);
    }

    void setName(int row, const CString& name)
    {
        updateRows = {};
        rows.at(static_cast<std::size_t>(row)).name = name;
    }

    void remove(int row)
    {
        updateRows = {};
        const int n = count();
        if (row < 0 || row >= n)
            return;
        if (row == 1 && n >= 3)
            report(1);
        if (row >= 2 && row != n - 1) {
            const double previousEnd = end(row - 1);
            if (previousEnd != start(row + 1)) {
                start(row + 1) = previousEnd;
                report(row);
            }
        }
        rows.erase(rows.begin() + row);
    }

    bool contains(int row, double x) const
    {
        const PlainRow& own = rows.at(static_cast<std::size_t>(row));
        return !(x < own.startX) && !(x > own.endX);
    }

    // For a table that has rows.
    int find(double x) const
    {
        int low = 0;
        int high = count() - 1;
        int middle = count() / 2;
        while (high - low > 1) {
            if (contains(middle, x))
                return middle;
            if (!(x < rows.at(static_cast<std::size_t>(middle)).startX)) {
                low = middle;
                middle = (middle + high) / 2;
            } else {
                high = middle;
                middle = (middle + low) / 2;
            }
        }
        if (contains(low, x))
            return low;
        if (contains(high, x))
            return high;
        if (x > rows.at(static_cast<std::size_t>(high)).endX)
            return high;
        if (!(x < rows.at(static_cast<std::size_t>(low)).startX))
            return middle;
        return low;
    }

    // -1 when all rows meet.
    int seam() const
    {
        for (std::size_t row = 1; row < rows.size(); ++row) {
            if (rows[row - 1].endX != rows[row].startX)
                return static_cast<int>(row);
        }
        return -1;
    }

    bool passes(int row) const
    {
        if (row == 0 || row == 1)
            return true;
        const auto at = static_cast<std::size_t>(row);
        const PlainRow& own = rows[at];
        const bool named = !own.name.IsEmpty();
        const bool inOrder = !(own.startX > own.endX);
        const bool meetsPrevious = own.startX == rows[at - 1].endX;
        if (row == count() - 1)
            return named && meetsPrevious && inOrder;
        const bool meetsNext = own.endX == rows[at + 1].startX;
        return named && inOrder && meetsPrevious && meetsNext;
    }
};

}  // namespace mf::test
