// SPDX-License-Identifier: MIT
#include "tools/mfcurve/rounding.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <string>

#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// A number as rounded in a formula.
double inFormula(double number)
{
    return readNumber(fixedText(number, 6)).value_or(number);
}

// The distance of the least and the greatest value; if all are equal, their distance from 0. Changes of a
// value are compared with this span, so that 1e-17 in place of 0 is not a loss for a curve that rises by 25.
double valueSpan(const mf::SegmentShape& shape)
{
    double low = shape.startValue;
    double high = shape.startValue;
    for (const mf::CurveRow& row : shape.rows) {
        low = std::min(low, row.value);
        high = std::max(high, row.value);
    }
    return high > low ? high - low : std::fabs(low);
}

std::string valueProblem(double value, double span)
{
    if (std::fabs(inFormula(value) - value) <= kMostLoss * span)
        return "";
    return fmt::format(
        "its value of {} is {} in its law, which has six decimals; a smaller unit keeps more digits",
        shortNumberText(value), shortNumberText(inFormula(value)));
}

std::string lengthProblem(double start, double end)
{
    const double length = end - start;
    const double rounded = inFormula(end) - inFormula(start);
    if (std::fabs(rounded - length) <= kMostLoss * std::fabs(length))
        return "";
    return fmt::format(
        "its length of {} is {} in its law, which has six decimals; a smaller unit keeps more digits",
        shortNumberText(length), shortNumberText(rounded));
}

}  // namespace

std::vector<mf::Problem> roundingProblems(const mf::CurveDefinition& definition)
{
    std::vector<mf::Problem> problems;
    const auto* shape = std::get_if<mf::CurveDefinition::Segments>(&definition.shape);
    if (shape == nullptr || !shape->sixDecimals)
        return problems;
    const auto add = [&](std::size_t row, const std::string& message) {
        if (!message.empty())
            problems.push_back({mf::Problem::Level::Error, fmt::format("row {}", row), message});
    };
    const double span = valueSpan(*shape);
    add(0, valueProblem(shape->startValue, span));
    double start = shape->startX;
    for (std::size_t i = 0; i < shape->rows.size(); ++i) {
        add(i + 1, lengthProblem(start, shape->rows[i].endX));
        add(i + 1, valueProblem(shape->rows[i].value, span));
        start = shape->rows[i].endX;
    }
    return problems;
}

}  // namespace mfcurve
