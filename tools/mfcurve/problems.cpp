// SPDX-License-Identifier: MIT

#include "tools/mfcurve/problems.h"

#include <algorithm>
#include <cmath>

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/curve.h"
#include "tools/mfcurve/expressionProblem.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

bool compiles(mfSegment_c& segment)
{
    // A row of no length needs no law.
    return segment.getStartX() == segment.getEndX() || segment.getCalculator(0) != nullptr;
}

// A number as it stands in a formula.
double inFormula(double number)
{
    return mf::platform::readNumber(fixedText(number, 6));
}

std::string rowProblem(mfFunctionSegments_c& table, int row, double span)
{
    mfSegment_c& segment = rowOf(table, row);
    if (segment.getProfile() == nullptr)
        return "its profile is not known";
    if (row == 0)
        return roundingProblem(table, row, span);
    if (!compiles(segment)) {
        const auto problem = lawProblem(segment);
        return "its law does not compile" + (problem ? "; " + *problem : "");
    }
    if (!(segment.getStartX() <= segment.getEndX()))
        return "it ends before it starts";
    if (row > 1 && segment.getStartX() != rowOf(table, row - 1).getEndX())
        return "it does not start where the row before it ends";
    return roundingProblem(table, row, span);
}

}  // namespace

double valueSpan(mfFunctionSegments_c& table)
{
    double low = 0.0;
    double high = 0.0;
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        const double value = rowOf(table, row).getValue();
        low = row == 0 ? value : std::min(low, value);
        high = row == 0 ? value : std::max(high, value);
    }
    return high > low ? high - low : std::fabs(low);
}

// A value is measured by the span, so that 1e-17 for 0 is no loss where a curve
// rises by 25.
std::string roundingProblem(mfFunctionSegments_c& table, int row, double span)
{
    constexpr const char* kReason = " in its law, which takes six decimals; a smaller unit keeps more digits";
    const mfSegment_c& segment = rowOf(table, row);
    const double length = segment.getEndX() - segment.getStartX();
    const double lengthInFormula = inFormula(segment.getEndX()) - inFormula(segment.getStartX());
    if (std::fabs(lengthInFormula - length) > kMostLoss * std::fabs(length))
        return "its length of " + shortNumberText(length) + " is " + shortNumberText(lengthInFormula) +
               kReason;
    const double value = segment.getValue();
    if (std::fabs(inFormula(value) - value) > kMostLoss * span)
        return "its value of " + shortNumberText(value) + " is " + shortNumberText(inFormula(value)) +
               kReason;
    return "";
}

std::vector<std::string> problems(Curve& curve)
{
    std::vector<std::string> found = curve.remarks();
    if (!curve.base().IsValid())
        found.emplace_back("it does not say what it drives over what");
    if (curve.function().getMotionObjectType() == mf::MotionObjectType_None)
        found.emplace_back("it is for neither a motor nor a force nor a torque");
    if (curve.kind() == mf::FunctionType_Expression) {
        if (const auto problem = expressionProblem(curve.expression().getMathExpression()))
            found.push_back(*problem);
        if (curve.domain().from > curve.domain().to)
            found.emplace_back("its range ends before it starts");
    }
    if (curve.kind() == mf::FunctionType_DataPoints && curve.points().isEmpty())
        found.emplace_back("it has no points");
    if (curve.kind() != mf::FunctionType_Segments)
        return found;
    mfFunctionSegments_c& table = curve.segments();
    if (table.getSegmentCount() < 2)
        found.emplace_back("it has no row behind the start");
    const double span = valueSpan(table);
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        const std::string problem = rowProblem(table, row, span);
        if (!problem.empty())
            found.push_back("row " + std::to_string(row) + ": " + problem);
    }
    return found;
}

}  // namespace mfcurve
