// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <memory>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/writeDocument.h"

namespace mfcurve {

namespace {

// The last argument is the path that the document is written to.
struct ConvertOptions {
    CurveOptions curve;
    std::vector<std::string> files;
};

void sortFiles(ConvertOptions& options)
{
    const CurveOptions& curve = options.curve;
    const bool isDescribed = curve.expression || curve.hasRows() || curve.pointsFile;
    if (options.files.empty() || options.files.size() > 2)
        throw UsageError("convert takes IN and OUT, or OUT alone with a curve described by options");
    if (options.files.size() == 1 && !isDescribed)
        throw UsageError("OUT is missing: convert takes IN and OUT, and \"" + options.files.front() +
                         "\" is IN");
    if (options.files.size() == 2)
        options.curve.files = {options.files.front()};
    else
        checkOutput(curve, options.files.front());
}

int runConvert(ConvertOptions& options)
{
    sortFiles(options);
    checkNoStretch(options.curve);
    const Inputs inputs = readInputs(options.curve);
    for (const Input& input : inputs.curves)
        writeDocument(input.curve, options.files.back());
    return inputs.status;
}

}  // namespace

void declareConvert(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ConvertOptions>();
    CLI::App& command = addCommand(app, "convert", "Reads a curve and writes it as a document");
    addArguments(command, "FILE", options->files,
                 "IN and OUT, or OUT alone; '-' is standard input or output");
    declareCurveOptions(command, options->curve);
    addNotes(
        command,
        "Numbers of segments are written with six decimals, all others with six digits. A warning says what "
        "that\n"
        "changes; a curve that it moves by more than a thousandth of its span is refused. Examples:\n"
        "  mfcurve convert old.xml new.xml\n"
        "  mfcurve convert --rows rows.csv --over angle --name 'Gripper cam' gripper.xml");
    whenChosen(command, [options, &action] { action = [options] { return runConvert(*options); }; });
}

}  // namespace mfcurve
