// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

/// A column of a table: x or an order.
struct Column {
    const char* name;
    int order;  ///< -1: x
};

/// How numbers and columns are written.
struct TableStyle {
    char delimiter = ',';
    char decimalMark = '.';
    std::optional<int> decimals;  ///< without: the fewest digits that read back as the same number
};

/// x, value, d1, d2, d3.
std::array<Column, 5> allColumns();

/// x, the value and as many derivatives as the curve has names for.
std::vector<Column> namedColumns(const mf::CurveDefinition& definition);

/// "value,d1". Throws UsageError for a name that is not a column.
std::vector<Column> readColumns(const std::string& text);
/// One character, or "tab". Throws UsageError for more.
char readDelimiter(const std::string& text);

/// The lines of a table.
class TableLines {
public:
    TableLines(const std::vector<Column>& columns, const TableStyle& style);

    /// The names of the columns.
    std::string header() const;
    /// Adds the line of one x to the end of a text.
    void add(std::string& text, double x, const mf::CurveValues& values);

private:
    // A column and its last number with its text, which is reused while the number stays the same.
    struct Cell {
        Column column;
        double number;
        std::size_t size;
        char text[kLongestNumber];
    };

    void write(Cell& cell, double number) const;

    TableStyle style_;
    std::vector<Cell> cells_;
};

/// Adds an object with a key for each column, on its own line.
void addJsonLine(std::string& text, double x, const mf::CurveValues& values,
                 const std::vector<Column>& columns, bool isFirst);

}  // namespace mfcurve
