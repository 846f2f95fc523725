// SPDX-License-Identifier: MIT
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <tuple>

#include "mfcurves/drawing/diagram.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/expressionText.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/pictureFile.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

namespace fs = std::filesystem;

struct PlotOptions {
    CurveOptions curve;
    std::string output;
    bool isOverlay = false;
    std::optional<mf::drawing::Units> units;
    std::vector<int> orders;
    mf::drawing::Style style;
};

mf::drawing::Units readUnits(const std::string& text)
{
    const std::vector<std::string> units = splitText(text, ',');
    if (units.size() != 2)
        throw UsageError("--units takes \"x unit, value unit\", not \"" + text + "\"");
    return {units[0], units[1], ""};
}

std::vector<int> readOrders(const std::string& text)
{
    std::vector<int> orders;
    for (const std::string& order : splitText(text, ','))
        orders.push_back(static_cast<int>(wholeNumber(order, "--orders", 0, 3)));
    std::sort(orders.begin(), orders.end());
    orders.erase(std::unique(orders.begin(), orders.end()), orders.end());
    return orders;
}

void readSize(const std::string& text, mf::drawing::Style& style)
{
    const std::size_t sign = text.find('x');
    if (sign == std::string::npos)
        throw UsageError("--size takes a width and a height in pixels, such as 1200x900, not \"" + text +
                         "\"");
    style.width = static_cast<int>(wholeNumber(text.substr(0, sign), "--size", 300, 10000));
    style.height = static_cast<int>(wholeNumber(text.substr(sign + 1), "--size", 200, 10000));
}

// The common range of the curves, changed by --from and --to.
mf::Range rangeOf(const PlotOptions& options, const std::vector<Input>& inputs)
{
    mf::Range range = domainOf(inputs.front().curve);
    for (const Input& input : inputs) {
        const mf::Range domain = domainOf(input.curve);
        range = {std::min(range.from, domain.from), std::max(range.to, domain.to)};
    }
    range = chosenRange(options.curve, range);
    for (const Input& input : inputs)
        warnOutside(range, input);
    return range;
}

// Gives each curve a distinct name: its own, followed by its file if several curves have the same name.
std::vector<mf::Curve> distinct(const std::vector<Input>& inputs)
{
    std::map<std::string, int> count;
    for (const Input& input : inputs)
        ++count[input.curve.definition().name];
    std::vector<mf::Curve> curves;
    for (const Input& input : inputs) {
        mf::CurveDefinition definition = input.curve.definition();
        if (inputs.size() > 1 && (count[definition.name] > 1 || definition.name.empty()))
            definition.name += (definition.name.empty() ? "" : ", ") + input.file;
        curves.push_back(definition.name == input.curve.definition().name ? input.curve
                                                                          : mf::Curve(definition));
    }
    return curves;
}

// All curves of a picture share the axes, units and speed of the first one. --rpm fits each of them or none;
// other differences are left to the user.
void checkAxes(const PlotOptions& options, const std::vector<Input>& inputs)
{
    const auto axes = [](const mf::CurveDefinition& definition) {
        return std::tie(definition.quantity, definition.rotary, definition.over, definition.motionResult);
    };
    const auto named = [](const mf::CurveDefinition& definition) {
        const mf::drawing::Units units = mf::drawing::usualUnits(definition);
        return fmt::format("{} in {} over {}", mf::drawing::quantityName(definition, 0), units.value,
                           mf::drawing::variableName(definition));
    };
    const mf::CurveDefinition& first = inputs.front().curve.definition();
    for (const Input& input : inputs) {
        const mf::CurveDefinition& definition = input.curve.definition();
        rateOf(options.curve, definition, input.place);
        if (axes(definition) != axes(first))
            warn(input.place, fmt::format("{} is drawn on the axes of {}, which are {}", named(definition),
                                          inputs.front().place, named(first)));
    }
}

void draw(const PlotOptions& options, const std::vector<Input>& inputs, const std::string& path)
{
    const Input& first = inputs.front();
    checkAxes(options, inputs);
    mf::drawing::Contents contents;
    contents.range = rangeOf(options, inputs);
    contents.units = options.units.value_or(unitsOf(options.curve, first.curve.definition()));
    contents.orders = options.orders;
    contents.rate = rateOf(options.curve, first.curve.definition(), first.place);
    contents.title = options.curve.name.value_or("");
    const mf::drawing::Diagram diagram = mf::drawing::diagramOf(distinct(inputs), contents);
    const auto isEmpty = [](const mf::drawing::Panel& panel) {
        return std::none_of(panel.traces.begin(), panel.traces.end(),
                            [](const mf::drawing::Trace& trace) { return !trace.lines.empty(); });
    };
    if (std::all_of(diagram.panels.begin(), diagram.panels.end(), isEmpty))
        throw Failure(kFailed, first.place,
                      fmt::format("the curve has no finite value from {} to {}{}; nothing is drawn",
                                  numberText(contents.range->from), numberText(contents.range->to),
                                  zeroDivisor(first.curve, contents.range->from)));
    writePicture(path, mf::drawing::toSvg(diagram, options.style));
    if (!isStandardStream(path))
        print(path + "\n");
}

std::string pictureName(const std::string& file)
{
    return (isStandardStream(file) ? "curve" : fs::path(file).stem().string()) + ".svg";
}

// A second picture of the same name would overwrite the first. Naming a document twice is allowed: it gives
// the same picture.
void checkPictureNames(const std::vector<std::string>& files)
{
    std::map<std::string, std::string> fileOfPicture;
    for (const std::string& file : files) {
        const auto [other, isNew] = fileOfPicture.emplace(pictureName(file), file);
        if (!isNew && other->second != file)
            throw UsageError("the pictures of " + other->second + " and " + file + " would both be called " +
                             other->first);
    }
}

// Several documents are drawn into a folder, unless they share one picture.
int runPlot(const PlotOptions& options)
{
    const bool isFolder = options.curve.files.size() > 1 && !options.isOverlay;
    if (isFolder && !fs::is_directory(options.output))
        throw UsageError("several documents are drawn into a folder, which " + options.output +
                         " is not; --overlay draws them into one picture");
    if (isFolder)
        checkPictureNames(options.curve.files);
    else if (fs::is_directory(options.output))
        throw Failure(kFailed, options.output, "cannot write: it is a folder");
    else
        checkPictureName(options.output);
    checkOutput(options.curve, options.output);
    const Inputs inputs = readInputs(options.curve);
    int status = inputs.status;
    if (!isFolder) {
        if (status == kDone || !inputs.curves.empty())
            draw(options, inputs.curves, options.output);
        return status;
    }
    for (const Input& input : inputs.curves)
        draw(options, {input}, (fs::path(options.output) / pictureName(input.file)).string());
    return status;
}

}  // namespace

void declarePlot(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<PlotOptions>();
    CLI::App& command = addCommand(app, "plot", "Draws the stacked diagrams of curves as SVG, PNG or PDF");
    addArguments(command, "FILE", options->curve.files, "documents; '-' is standard input");
    addText(command, "-o,--output", "OUT",
            "the picture, .svg, .png or .pdf; '-' is SVG on standard output; an existing "
            "folder for several documents",
            [options](const std::string& text) { options->output = text; })
        .required();
    addFlag(command, "--overlay", options->isOverlay, "draws all documents into one picture");
    addText(command, "--orders", "N,N", "the orders to draw, such as 0,2; 0 is the value",
            [options](const std::string& text) { options->orders = readOrders(text); });
    addText(command, "--size", "WxH", "width and height in pixels [920 and the height needed]",
            [options](const std::string& text) { readSize(text, options->style); });
    addChoice<bool>(command, "--theme", "colours [light]", {{"light", false}, {"dark", true}},
                    options->style.isDark);
    addText(command, "--units", "X,VALUE", "labels for x and value, such as 's, mm/s'; nothing is converted",
            [options](const std::string& text) { options->units = readUnits(text); });
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    addNotes(
        command,
        "Draws the value and its derivatives down to the jerk, seams of segments as vertical lines, data\n"
        "points as markers, impulses as arrows, and prints the name of each picture. Examples:\n"
        "  mfcurve plot cam.xml -o cam.svg\n"
        "  mfcurve plot cam.xml old.xml --overlay --orders 0,2 --theme dark -o both.svg\n"
        "  mfcurve plot --expression '5*time^2' --from 0 --to 2 -o fall.svg\n"
        "  mfcurve plot --rows rows.csv --over angle --name 'Gripper cam' -o gripper.svg");
    whenChosen(command, [options, &action] { action = [options] { return runPlot(*options); }; });
}

}  // namespace mfcurve
