// SPDX-License-Identifier: MIT
#include <cmath>
#include <memory>

#include "mfcurves/analysis/analysis.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/samples.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

struct BreaksOptions {
    CurveOptions curve;
    int order = 3;
    Format format = Format::Text;
};

const char* causeName(mf::analysis::Cause cause)
{
    constexpr const char* kNames[] = {"seam", "knot", "kink", "cycle end"};
    return kNames[static_cast<int>(cause)];
}

std::string jsonBreak(const mf::analysis::Break& found, double rate)
{
    return jsonObject({{"x", jsonNumber(found.x)},
                       {"lowest", std::to_string(found.lowest)},
                       {"cause", jsonText(causeName(found.cause))},
                       {"row", std::to_string(found.row)},
                       {"left", jsonValues(atRate(found.left, rate))},
                       {"right", jsonValues(atRate(found.right, rate))}});
}

// The change of each order from left to right.
std::string textLine(const mf::analysis::Break& found, double rate)
{
    const mf::CurveValues left = atRate(found.left, rate);
    const mf::CurveValues right = atRate(found.right, rate);
    std::string line = fmt::format("{:<13} {:<7} {:<10} {:<4}", shortNumberText(found.x, 9), found.lowest,
                                   causeName(found.cause), found.row);
    for (int order = 0; order < kOrders; ++order)
        line +=
            fmt::format(" {:>13}", order < found.lowest ? "0" : shortNumberText(right[order] - left[order]));
    return line + "\n";
}

int runBreaks(const BreaksOptions& options)
{
    checkNoStretch(options.curve);
    const Inputs inputs = readInputs(options.curve);
    std::vector<std::string> objects;
    for (const Input& input : inputs.curves) {
        const double rate = rateOf(options.curve, input.curve.definition(), input.place);
        std::vector<std::string> list;
        if (options.format == Format::Text) {
            printSection(options.curve, input);
            print(fmt::format("{:<13} {:<7} {:<10} {:<4} {:>13} {:>13} {:>13} {:>13}\n", "x", "lowest",
                              "cause", "row", "value", "d1", "d2", "d3"));
        }
        for (const mf::analysis::Break& found : mf::analysis::breaks(input.curve, options.order)) {
            if (options.format == Format::Text)
                print(textLine(found, rate));
            list.push_back(jsonBreak(found, rate));
        }
        if (!mf::analysis::areAllBreaksFound(input.curve, options.order))
            warn(input.place, "there may be further breaks: not all of the curve is proved to be smooth");
        objects.push_back(jsonObject({{"file", jsonFile(input)}, {"breaks", jsonArray(list)}}));
    }
    if (options.format == Format::Json)
        print(jsonDocument(objects));
    return inputs.status;
}

}  // namespace

void declareBreaks(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<BreaksOptions>();
    CLI::App& command = addCommand(app, "breaks", "Lists where the value or a derivative jumps");
    addArguments(command, "FILE", options->curve.files, "documents; '-' is standard input");
    addText(command, "--order", "N", "the highest order to examine, 0 to 4 [3]",
            [options](const std::string& text) {
                options->order = static_cast<int>(wholeNumber(text, "--order", 0, 4));
            });
    addFormat(command, options->format);
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    declareCyclicOption(command, options->curve);
    addNotes(
        command,
        "Prints the lowest order that jumps, what causes it (a seam of rows, a knot of points, a kink inside "
        "a formula,\n"
        "the end of a cycle), the row that begins there, and the jump of each order. Examples:\n"
        "  mfcurve breaks cam.xml --order 2 --cyclic\n"
        "  mfcurve breaks --expression 'abs(x)' --from -1 --to 1 --format json");
    whenChosen(command, [options, &action] { action = [options] { return runBreaks(*options); }; });
}

}  // namespace mfcurve
