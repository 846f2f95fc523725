// SPDX-License-Identifier: MIT
#include "tools/mfcurve/seams.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr double kRounding = 1e-10;

struct RowEnds {
    double start;
    double end;
    double rise;
    double value;
    double endValue;
};

std::vector<RowEnds> rowsOf(const mf::Curve& curve)
{
    std::vector<RowEnds> rows;
    const auto* shape = std::get_if<mf::CurveDefinition::Segments>(&curve.definition().shape);
    if (shape == nullptr)
        return rows;
    double start = shape->startX;
    double value = shape->startValue;
    for (const mf::CurveRow& row : shape->rows) {
        rows.push_back({start, row.endX, row.value - value, value, row.value});
        start = row.endX;
        value = row.value;
    }
    return rows;
}

// The rise of a row divided by its length to the power of the order: the scale of the rounding errors in that
// order. 0 for a row of no length, which is a jump.
double sizeOf(const RowEnds& row, int order)
{
    const double length = row.end - row.start;
    return length > 0.0 ? std::fabs(row.rise) / std::pow(length, order) : 0.0;
}

double jumpOf(const mf::CurveValues& left, const mf::CurveValues& right, const RowEnds& before,
              const RowEnds& after, int order)
{
    const double jump = right[order] - left[order];
    return std::fabs(jump) <= kRounding * (sizeOf(before, order) + sizeOf(after, order)) ? 0.0 : jump;
}

// The values where a row begins or ends. A row of no length is constant.
mf::CurveValues sideOf(const mf::Curve& curve, const RowEnds& row, bool isStart)
{
    if (row.start == row.end)
        return {row.endValue, 0.0, 0.0, 0.0};
    return isStart ? curve.at(row.start, mf::Side::Right) : curve.at(row.end, mf::Side::Left);
}

Seam seamBetween(const mf::Curve& curve, const RowEnds& before, const RowEnds& after, bool isCycleEnd)
{
    const mf::CurveValues left = sideOf(curve, before, false);
    const mf::CurveValues right = sideOf(curve, after, true);
    return {before.end,
            {jumpOf(left, right, before, after, 0), jumpOf(left, right, before, after, 1),
             jumpOf(left, right, before, after, 2), jumpOf(left, right, before, after, 3)},
            isCycleEnd};
}

}  // namespace

std::vector<Seam> seamsOf(const mf::Curve& curve)
{
    std::vector<Seam> seams;
    const std::vector<RowEnds> rows = rowsOf(curve);
    for (std::size_t i = 1; i < rows.size(); ++i)
        seams.push_back(seamBetween(curve, rows[i - 1], rows[i], false));
    if (!rows.empty() && curve.definition().over == mf::Over::CycleAngle)
        seams.push_back(seamBetween(curve, rows.back(), rows.front(), true));
    return seams;
}

std::vector<std::string> missedValues(const mf::Curve& curve)
{
    constexpr double kMissed = 1e-6;  // relative to the rise: laws have six decimals
    std::vector<std::string> missed;
    const std::vector<RowEnds> rows = rowsOf(curve);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const RowEnds& row = rows[i];
        const double most = kMissed * std::max(std::fabs(row.rise), std::fabs(row.endValue)) + 1e-6;
        const double start = sideOf(curve, row, true).y;
        const double end = sideOf(curve, row, false).y;
        if (row.start < row.end && !(std::fabs(start - row.value) <= most))
            missed.push_back(fmt::format("row {}: its law begins at {} and not at {}", i + 1,
                                         shortNumberText(start), shortNumberText(row.value)));
        if (row.start < row.end && !(std::fabs(end - row.endValue) <= most))
            missed.push_back(fmt::format("row {}: its law ends at {} and not at {}", i + 1,
                                         shortNumberText(end), shortNumberText(row.endValue)));
    }
    return missed;
}

}  // namespace mfcurve
