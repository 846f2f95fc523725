#include "tools/mfcurve/problems.h"

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/curve.h"
#include "tools/mfcurve/expressionProblem.h"

namespace mfcurve {

namespace {

bool compiles(mfSegment_c& segment)
{
    // A row of no length needs no law.
    return segment.getStartX() == segment.getEndX() || segment.getCalculator(0) != nullptr;
}

std::string rowProblem(mfFunctionSegments_c& table, int row)
{
    mfSegment_c& segment = rowOf(table, row);
    if (segment.getProfile() == nullptr)
        return "its profile is not known";
    if (row == 0)
        return "";
    if (!compiles(segment)) {
        const auto problem = lawProblem(segment);
        return "its law does not compile" + (problem ? "; " + *problem : "");
    }
    if (!(segment.getStartX() <= segment.getEndX()))
        return "it ends before it starts";
    if (row > 1 && segment.getStartX() != rowOf(table, row - 1).getEndX())
        return "it does not start where the row before it ends";
    return "";
}

}  // namespace

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
    }
    if (curve.kind() == mf::FunctionType_DataPoints && curve.points().isEmpty())
        found.emplace_back("it has no points");
    if (curve.kind() != mf::FunctionType_Segments)
        return found;
    mfFunctionSegments_c& table = curve.segments();
    if (table.getSegmentCount() < 2)
        found.emplace_back("it has no row behind the start");
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        const std::string problem = rowProblem(table, row);
        if (!problem.empty())
            found.push_back("row " + std::to_string(row) + ": " + problem);
    }
    return found;
}

}  // namespace mfcurve
