// SPDX-License-Identifier: MIT

#include "tests/curve/randomCurves.h"

#include <algorithm>
#include <cmath>

namespace curve_test {
namespace {

constexpr const char* kLaws[] = {
    "Cubic",       "Quarter-Sine",         "Quarter-Cosine",
    "Half-Cosine", "3-4-5-Polynomial",     "4-5-6-7-Polynomial",
    "Cycloidal",   "5-6-7-8-9-Polynomial", "Quadratic",
    "Linear",      "Cubic (Default)",      "Two-Parabolas",
};

}  // namespace

const mf::LawText kTwoParabolas = {"Two-Parabolas",
                                   "SegmentType(\"Two-Parabolas\", x, x1, y1, x2, y2)\n"
                                   "  xbar = (x-x1)/(x2-x1);\n"
                                   "  ybar = if(xbar-0.5: 2*xbar^2, 0.5, 1-2*(1-xbar)^2);\n"
                                   "  y = y1+(y2-y1)*ybar;\n"
                                   "  return y;\n"
                                   "endSegmentType"};

// A number with at most six decimals, as tables store them, often a round one.
double RandomCurves::number(double from, double to)
{
    const double any = uniform(from, to);
    switch (whole(0, 3)) {
        case 0:
            return std::round(any);
        case 1:
            return std::round(any * 10.0) / 10.0;
        default:
            return std::round(any * 1e6) / 1e6;
    }
}

// Some rows have length 0: they are jumps.
mf::CurveDefinition RandomCurves::segments()
{
    mf::SegmentShape shape;
    shape.startX = number(-100.0, 100.0);
    shape.startValue = number(-50.0, 50.0);
    shape.sixDecimals = true;
    shape.laws = {kTwoParabolas};
    double end = shape.startX;
    const int rows = whole(1, 6);
    for (int i = 0; i < rows; ++i) {
        const bool isJump = rows > 1 && i > 0 && whole(0, 5) == 0;
        end += isJump ? 0.0 : std::max(0.001, std::fabs(number(0.0, 100.0)));
        const auto law = static_cast<std::size_t>(whole(0, static_cast<int>(std::size(kLaws)) - 1));
        const double value = whole(0, 3) == 0 && i > 0 ? shape.rows.back().value : number(-50.0, 50.0);
        shape.rows.push_back({end, value, kLaws[law]});
    }
    mf::CurveDefinition definition;
    definition.shape = shape;
    definition.over = mf::Over::CycleAngle;
    return definition;
}

mf::CurveDefinition RandomCurves::points()
{
    mf::PointShape shape;
    shape.interpolation = static_cast<mf::Interpolation>(whole(0, 2));
    double x = number(-100.0, 100.0);
    const int count = whole(1, 12);
    for (int i = 0; i < count; ++i) {
        shape.x.push_back(x);
        shape.y.push_back(number(-50.0, 50.0));
        x += uniform(0.01, 30.0);
    }
    mf::CurveDefinition definition;
    definition.shape = shape;
    return definition;
}

mf::CurveDefinition RandomCurves::expression()
{
    mf::ExpressionShape shape;
    shape.text = random_.text(random_.tree(3));
    shape.from = number(-5.0, 5.0);
    shape.to = shape.from + uniform(0.0, 5.0);
    mf::CurveDefinition definition;
    definition.shape = shape;
    return definition;
}

mf::CurveDefinition RandomCurves::any()
{
    switch (whole(0, 2)) {
        case 0:
            return segments();
        case 1:
            return points();
        default:
            return expression();
    }
}

const mf::SegmentShape& segmentsOf(const mf::CurveDefinition& definition)
{
    return std::get<mf::SegmentShape>(definition.shape);
}

std::vector<double> seamsOf(const mf::CurveDefinition& definition)
{
    if (const auto* points = std::get_if<mf::PointShape>(&definition.shape))
        return points->x;
    if (const auto* expression = std::get_if<mf::ExpressionShape>(&definition.shape))
        return {expression->from, expression->to};
    std::vector<double> seams = {segmentsOf(definition).startX};
    for (const mf::CurveRow& row : segmentsOf(definition).rows) {
        if (row.endX > seams.back())
            seams.push_back(row.endX);
    }
    return seams;
}

}  // namespace curve_test
