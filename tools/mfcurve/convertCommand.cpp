// SPDX-License-Identifier: MIT

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <memory>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/problems.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// The last argument is where the document goes to.
struct ConvertOptions {
    CurveOptions curve;
    std::vector<std::string> files;
};

void sortFiles(ConvertOptions& options)
{
    const bool isDescribed = options.files.size() == 1;
    if (options.files.empty() || options.files.size() > 2)
        throw Failure(kWrong, "convert takes IN and OUT, or OUT alone with a curve described by options");
    if (!isDescribed)
        options.curve.files = {options.files.front()};
}

// Where a curve that was read back misses a point of the table; empty when it meets all.
std::string missedPoint(const std::vector<mfPoint2D_c>& knots, Curve& read)
{
    const auto below = [](const mfPoint2D_c& a, const mfPoint2D_c& b) { return a.y() < b.y(); };
    const auto [low, high] = std::minmax_element(knots.begin(), knots.end(), below);
    // A constant is measured by itself.
    const double size = high->y() > low->y() ? high->y() - low->y() : std::fabs(high->y());
    for (const mfPoint2D_c& knot : knots) {
        const double value = read.at(knot.x()).y[0];
        if (!(std::fabs(value - knot.y()) <= kMostLoss * size))
            return "its value at x = " + shortNumberText(knot.x(), 9) + " would be " +
                   shortNumberText(value, 9) + " and not " + shortNumberText(knot.y(), 9);
    }
    return "";
}

std::string movedRange(const Range& range, const Range& read)
{
    const double most = kMostLoss * (range.to - range.from);
    if (std::fabs(read.from - range.from) <= most && std::fabs(read.to - range.to) <= most)
        return "";
    return "its range would run from " + shortNumberText(read.from) + " to " + shortNumberText(read.to);
}

// A document has fewer digits than a curve: points that lie close become one, or
// part from each other.
void checkReadsBack(Curve& curve, const std::string& text, const std::string& output)
{
    Curve read = readDocumentText(text, output);
    std::string problem;
    if (!read.remarks().empty())
        problem = read.remarks().front();
    else if (curve.kind() == mf::FunctionType_DataPoints)
        problem = missedPoint(knotsOf(curve.points()), read);
    else if (curve.kind() == mf::FunctionType_Expression)
        problem = movedRange(curve.domain(), read.domain());
    if (!problem.empty())
        throw Failure(kFailed, output + ": the document would be another curve: " + problem);
}

int runConvert(ConvertOptions& options)
{
    sortFiles(options);
    checkNoStretch(options.curve);
    const std::string& output = options.files.back();
    return forEachCurve(options.curve, [&](Curve& curve, const std::string&) {
        curve.function().createXMLData(toCString(curve.title()), false, L"");
        const char* text = curve.function().getXMLData();
        if (text == nullptr)
            throw Failure(kFailed, "the library could not write the curve as a document");
        checkReadsBack(curve, text, output);
        writeOutput(output, text);
    });
}

}  // namespace

void declareConvert(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ConvertOptions>();
    CLI::App& command = *app.add_subcommand("convert", "Reads a curve and writes it as a document");
    command.add_option("FILE", options->files, "IN and OUT, or OUT alone; '-' is standard input or output");
    declareCurveOptions(command, options->curve);
    command.footer(
        "Numbers of segments are written with six decimals, all others with six digits; a curve that these\n"
        "digits make another is refused. Examples:\n"
        "  mfcurve convert old.xml new.xml\n"
        "  mfcurve convert --rows rows.csv --over angle --name 'Gripper cam' gripper.xml");
    command.callback([options, &action] { action = [options] { return runConvert(*options); }; });
}

}  // namespace mfcurve
