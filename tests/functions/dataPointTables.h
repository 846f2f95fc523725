// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"

// Small text forms of data-point tables. The points "x:y" of a row are separated by
// commas and the rows by blanks, so "1:10 2:20,3:30" is a row of one point and a row of
// two. A Y of 0 is left out, and "-" is a row without points.
namespace mf::test {

inline std::unique_ptr<mfDataPoints_c> rowOf(const std::string& text)
{
    auto row = std::make_unique<mfDataPoints_c>();
    std::istringstream points(text == "-" ? "" : text);
    for (std::string point; std::getline(points, point, ',');) {
        const std::size_t colon = point.find(':');
        const double y = colon == std::string::npos ? 0.0 : std::strtod(point.c_str() + colon + 1, nullptr);
        row->addPoint(std::strtod(point.c_str(), nullptr), y);
    }
    return row;
}

// Appends the rows of a text, whose X must ascend so that no row is moved.
inline void fill(mfFunctionDataPoints_c& table, const std::string& text)
{
    std::istringstream rows(text);
    for (std::string row; rows >> row;)
        table.insertDataPoint(table.getDataPointsCount(), rowOf(row).release());
}

inline std::string show(const mfDataPoints_c& row)
{
    std::ostringstream text;
    if (row.getPointCount() == 0)
        text << "-";
    for (int i = 0; i < row.getPointCount(); ++i) {
        text << (i == 0 ? "" : ",") << row.getX(i);
        if (row.getY(i) != 0.0)
            text << ":" << row.getY(i);
    }
    return text.str();
}

inline std::string show(mfFunctionDataPoints_c& table)
{
    std::string text;
    for (int i = 0; i < table.getDataPointsCount(); ++i) {
        mfDataPoints_c* row = nullptr;
        table.selectDataPoint(i, row);
        text += (i == 0 ? "" : " ") + show(*row);
    }
    return text;
}

inline std::vector<int> updateRowsOf(const mfFunctionDataPoints_c& table)
{
    std::vector<int> rows{-7};  // a former element, which must be removed
    table.getUpdateRows(rows);
    return rows;
}

}  // namespace mf::test
