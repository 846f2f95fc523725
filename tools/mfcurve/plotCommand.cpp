// SPDX-License-Identifier: MIT

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <memory>

#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/diagram.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/progress.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr int kSamplesOfRow = 201;       // odd, so that the middle of a law is among them
constexpr int kCellsOfExpression = 800;  // even, so that the middle of the range is an end of one
constexpr int kSamplesOfPoints = 1600;   // spread over the pieces, two to a piece at least

struct PlotOptions {
    CurveOptions curve;
    std::string output;
};

// Takes samples in ascending x and turns them into the lines of each order, with a
// gap where an order has no finite value.
class LineBuilder {
public:
    explicit LineBuilder(std::vector<Panel>& panels) : panels_(panels), isOpen_(panels.size(), false) {}

    void add(const Sample& sample)
    {
        for (std::size_t order = 0; order < panels_.size(); ++order) {
            const double y = sample.y[order];
            if (std::isfinite(y) && !isOpen_[order])
                panels_[order].lines.emplace_back();
            isOpen_[order] = std::isfinite(y);
            if (isOpen_[order])
                panels_[order].lines.back().emplace_back(sample.x, y);
        }
    }

private:
    std::vector<Panel>& panels_;
    std::vector<bool> isOpen_;
};

// `count` samples from one end to the other, both included.
template <class At>
void addStretch(LineBuilder& lines, double from, double to, int count, At at)
{
    for (int i = 0; i < count; ++i) {
        const double x = i + 1 == count ? to : std::lerp(from, to, static_cast<double>(i) / (count - 1));
        lines.add(at(x));
    }
}

// Each row is drawn from end to end by its own law, so that a jump at a seam is
// upright.
void drawSegments(Curve& curve, const Range& range, Diagram& diagram, LineBuilder& lines)
{
    mfFunctionSegments_c& table = curve.segments();
    const int count = table.getSegmentCount();
    const char* constantName = quantityName(curve, 0) == "Displacement" ? "Dwell" : "Constant";
    Progress progress("plot", static_cast<std::size_t>(count));
    for (int row = 1; row < count; ++row) {
        mfSegment_c& segment = rowOf(table, row);
        const double from = std::max(segment.getStartX(), range.from);
        const double to = std::min(segment.getEndX(), range.to);
        if (!(from <= to))
            continue;
        bool isConstant = true;
        addStretch(lines, from, to, kSamplesOfRow, [&](double x) {
            const Sample sample = curve.atRow(row, x);
            isConstant = isConstant && sample.y[0] == segment.getValue();
            return sample;
        });
        diagram.segments.push_back({from, to, isConstant ? constantName : profileName(segment)});
        if (row > 1)
            diagram.seams.push_back(segment.getStartX());
        progress.update(static_cast<std::size_t>(row));
    }
}

void drawPoints(Curve& curve, const Range& range, Diagram& diagram, LineBuilder& lines)
{
    diagram.knots = knotsOf(curve.points());
    std::vector<double> ends{range.from};
    for (const mfPoint2D_c& knot : diagram.knots) {
        if (knot.x() > ends.back() && knot.x() < range.to)
            ends.push_back(knot.x());
    }
    ends.push_back(range.to);
    // At a knot the piece to its right answers, so each piece ends just short of it.
    const int samples = std::max(2, kSamplesOfPoints / static_cast<int>(ends.size()));
    const auto at = [&](double x) { return curve.at(x); };
    for (std::size_t i = 1; i < ends.size(); ++i)
        addStretch(lines, ends[i - 1], std::nextafter(ends[i], ends[i - 1]), samples, at);
    lines.add(curve.at(range.to));
}

// Evenly spaced samples alone would show a vibration faster than they are as a slow
// wave. So each cell has one more at a place of its own: the multiples of the golden
// ratio, less their whole parts, never come near a pattern.
void drawExpression(Curve& curve, const Range& range, LineBuilder& lines)
{
    constexpr double kGoldenRatio = 0.6180339887498949;
    const auto add = [&](double cells) {
        lines.add(curve.at(std::lerp(range.from, range.to, cells / kCellsOfExpression)));
    };
    for (int cell = 0; cell < kCellsOfExpression; ++cell) {
        const double multiple = cell * kGoldenRatio;
        add(cell);
        add(cell + multiple - std::floor(multiple));
    }
    add(kCellsOfExpression);
}

void draw(Curve& curve, const Range& range, Diagram& diagram)
{
    LineBuilder lines(diagram.panels);
    switch (curve.kind()) {
        case mf::FunctionType_Segments:
            drawSegments(curve, range, diagram, lines);
            break;
        case mf::FunctionType_DataPoints:
            drawPoints(curve, range, diagram, lines);
            break;
        default:
            drawExpression(curve, range, lines);
    }
}

Diagram diagramOf(Curve& curve, const Range& range, const CurveOptions& options)
{
    const Units units = chosenUnits(options, curve);
    Diagram diagram;
    diagram.title = curve.title();
    diagram.variable = variableName(curve);
    diagram.variableUnit = units.variable;
    diagram.from = range.from;
    diagram.to = range.to;
    for (int order = 0; order < curve.orderCount(); ++order)
        diagram.panels.push_back({quantityName(curve, order), derivativeUnit(units, order), {}});
    draw(curve, range, diagram);
    return diagram;
}

std::string pictureName(const std::string& file)
{
    return (isStandardStream(file) ? "curve" : std::filesystem::path(file).stem().string()) + ".svg";
}

// One document goes to the output itself, several into the folder of that name.
std::string outputPath(const PlotOptions& options, const std::string& section)
{
    namespace fs = std::filesystem;
    if (section.empty())
        return options.output;
    if (!fs::is_directory(options.output))
        throw Failure(kWrong,
                      "several documents are drawn into a folder, which " + options.output + " is not");
    return (fs::path(options.output) / pictureName(section)).string();
}

// A second picture of one name would take the place of the first. The same document
// twice is the same picture.
void checkPictureNames(const std::vector<std::string>& files)
{
    std::map<std::string, std::string> fileOfPicture;
    for (const std::string& file : files) {
        const auto [other, isNew] = fileOfPicture.emplace(pictureName(file), file);
        if (!isNew && other->second != file)
            throw Failure(kWrong, "the pictures of " + other->second + " and " + file +
                                      " would both be called " + other->first);
    }
}

int runPlot(const PlotOptions& options)
{
    checkPictureNames(options.curve.files);
    return forEachCurve(options.curve, [&](Curve& curve, const std::string& section) {
        const std::string path = outputPath(options, section);
        const Range range = chosenRange(options.curve, curve.domain());
        warnOutside(range, curve.domain(), sectionPlace(section));
        writeOutput(path, toSvg(diagramOf(curve, range, options.curve)));
        if (!isStandardStream(path))
            print(path + "\n");
    });
}

}  // namespace

void declarePlot(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<PlotOptions>();
    CLI::App& command = *app.add_subcommand("plot", "Draws the stacked diagrams of a curve as SVG");
    command.add_option("FILE", options->curve.files, "documents; '-' is standard input");
    command
        .add_option("-o,--output", options->output,
                    "the picture; '-' is standard output; an existing folder for several documents")
        ->type_name("OUT.svg")
        ->required();
    command
        .add_option("--units", options->curve.units,
                    "labels for x and value, such as 's, mm/s'; nothing is converted")
        ->type_name("X,VALUE");
    declareCurveOptions(command, options->curve);
    command.footer(
        "Draws the value and its derivatives down to the jerk, seams of segments as vertical lines, data\n"
        "points as markers, and prints the name of each picture. Examples:\n"
        "  mfcurve plot cam.xml -o cam.svg\n"
        "  mfcurve plot --expression '5*time^2' --from 0 --to 2 -o fall.svg\n"
        "  mfcurve plot --rows rows.csv --over angle --name 'Gripper cam' -o gripper.svg");
    command.callback([options, &action] { action = [options] { return runPlot(*options); }; });
}

}  // namespace mfcurve
