// SPDX-License-Identifier: MIT

#include <CLI/CLI.hpp>
#include <cmath>
#include <memory>

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/problems.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr std::size_t kLabelWidth = 15;
constexpr std::size_t kColumnWidth = 14;

std::string labelled(std::string label, const std::string& text)
{
    label.resize(kLabelWidth, ' ');
    return label + text + "\n";
}

// A column is filled up to its width and one blank at least.
std::string column(std::string text, std::size_t width = kColumnWidth)
{
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

std::string numberColumn(double number)
{
    return column(shortNumberText(number));
}

std::string kindText(Curve& curve)
{
    static constexpr const char* kInterpolations[] = {"linear", "cubic", "akima"};
    switch (curve.kind()) {
        case mf::FunctionType_Segments:
            return "segments, " + std::to_string(curve.segments().getSegmentCount()) + " rows with the start";
        case mf::FunctionType_DataPoints: {
            const std::size_t type = curve.points().getInterpolationType();
            return "data points, " + std::to_string(curve.points().getTotalPoints()) + " points joined " +
                   (type < std::size(kInterpolations) ? kInterpolations[type]
                                                      : "by an unknown interpolation");
        }
        default:
            return "expression";
    }
}

std::string driveText(Curve& curve)
{
    const std::string unit = usualUnits(curve).value;
    return quantityName(curve, 0) + (unit.empty() ? "" : ", usually in " + unit);
}

std::string variableText(Curve& curve)
{
    if (curve.base().independentVar == mf::IndependentVariableType_MotionResult)
        return "motion result {" + variableName(curve) + "}";
    return variableName(curve);
}

std::string rowLines(mfFunctionSegments_c& table)
{
    std::string text = "rows           " + column("row", 6) + column("from") + column("to") +
                       column("value") + column("profile", 34) + "resolves\n";
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        mfSegment_c& segment = rowOf(table, row);
        const bool hasKey = segment.getProfileKey() != nullptr;
        text += labelled("", column(std::to_string(row), 6) + numberColumn(segment.getStartX()) +
                                 numberColumn(segment.getEndX()) + numberColumn(segment.getValue()) +
                                 column(hasKey ? toUtf8(segment.getDisplayName()) : "none", 34) +
                                 (segment.getProfile() != nullptr ? "yes" : "no"));
    }
    return text;
}

// The mean slope of a row, to the power that an order asks for: the measure of what
// rounding may leave in that order. A row of no length is a jump and leaves none.
double sizeOf(mfFunctionSegments_c& table, int row, int order)
{
    const mfSegment_c& segment = rowOf(table, row);
    const double length = segment.getEndX() - segment.getStartX();
    const double rise = segment.getValue() - rowOf(table, row - 1).getValue();
    return length > 0.0 ? std::fabs(rise) / std::pow(length, order) : 0.0;
}

// The jump of each order where one row ends and the next starts, right less left.
std::string seamLine(Curve& curve, int row)
{
    constexpr double kRounding = 1e-10;
    mfFunctionSegments_c& table = curve.segments();
    const double x = rowOf(table, row).getStartX();
    const Sample left = curve.atRow(row - 1, rowOf(table, row - 1).getEndX());
    const Sample right = curve.atRow(row, x);
    std::string text = numberColumn(x);
    for (int order = 0; order < kOrders; ++order) {
        const double jump = right.y[order] - left.y[order];
        const double size = sizeOf(table, row - 1, order) + sizeOf(table, row, order);
        text += numberColumn(std::fabs(jump) <= kRounding * size ? 0.0 : jump);
    }
    return labelled("", text.substr(0, text.find_last_not_of(' ') + 1));
}

std::string seamLines(Curve& curve)
{
    const int count = curve.segments().getSegmentCount();
    if (count < 3)
        return "";
    std::string text =
        "jumps at seams " + column("x") + column("value") + column("d1") + column("d2") + "d3\n";
    for (int row = 2; row < count; ++row)
        text += seamLine(curve, row);
    return text;
}

bool lacksKey(mfFunctionSegments_c& table)
{
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        if (rowOf(table, row).getProfileKey() == nullptr)
            return true;
    }
    return false;
}

std::string describe(Curve& curve, const std::vector<std::string>& found)
{
    const Range domain = curve.domain();
    std::string text = labelled("name", curve.title()) + labelled("kind", kindText(curve)) +
                       labelled("drives", driveText(curve)) + labelled("variable", variableText(curve)) +
                       labelled("domain", shortNumberText(domain.from) + " to " + shortNumberText(domain.to));
    if (curve.kind() == mf::FunctionType_Expression)
        text += labelled("expression", toUtf8(curve.expression().getMathExpression()));
    text += labelled("valid", found.empty() ? "yes" : "no");
    for (const std::string& problem : found)
        text += labelled("", problem);
    if (curve.kind() == mf::FunctionType_Segments)
        text += rowLines(curve.segments()) + seamLines(curve);
    return text;
}

int runInfo(const CurveOptions& options)
{
    checkNoStretch(options);
    bool isFirst = true;
    int status = kDone;
    const auto show = [&](Curve& curve, const std::string& section) {
        if (!section.empty())
            print((isFirst ? "" : "\n") + section + "\n");
        isFirst = false;
        const std::vector<std::string> found = problems(curve);
        print(describe(curve, found));
        if (!found.empty())
            status = kFailed;
        if (curve.kind() == mf::FunctionType_Segments && lacksKey(curve.segments()))
            warn(
                "a row has no profile of its own; a document written from this curve would lose its "
                "definitions");
    };
    const int read = forEachCurve(options, show, Unsound::Taken);
    return std::max(status, read);
}

}  // namespace

void declareInfo(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<CurveOptions>();
    CLI::App& command = *app.add_subcommand("info", "Tells what a document holds and whether it is sound");
    command.add_option("FILE", options->files, "documents; '-' is standard input");
    declareCurveOptions(command, *options);
    command.footer(
        "Prints name, kind, variables, domain, what is wrong, rows with their profiles and, at each seam, "
        "the\n"
        "jump of the value and of each derivative. A curve that is not valid makes the exit status 1; the "
        "other\n"
        "commands refuse its document. Examples:\n"
        "  mfcurve info cam.xml\n"
        "  mfcurve info *.xml");
    command.callback([options, &action] { action = [options] { return runInfo(*options); }; });
}

}  // namespace mfcurve
