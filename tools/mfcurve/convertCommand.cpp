#include <CLI/CLI.hpp>
#include <memory>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/host.h"
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

// A document has fewer digits than a curve: points that lie close become one.
void checkReadsBack(const std::string& text, const std::string& output)
{
    const Curve curve = readDocumentText(text, output);
    if (!curve.remarks().empty())
        throw Failure(kFailed, output + ": the document would be another curve: " + curve.remarks().front());
}

int runConvert(ConvertOptions& options)
{
    sortFiles(options);
    checkNoStretch(options.curve);
    const Host host(options.curve.library, options.curve.results);
    const std::string& output = options.files.back();
    return forEachCurve(options.curve, [&](Curve& curve, const std::string&) {
        curve.function().createXMLData(toCString(curve.title()), false, L"");
        const char* text = curve.function().getXMLData();
        if (text == nullptr)
            throw Failure(kFailed, "the library could not write the curve as a document");
        checkReadsBack(text, output);
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
        "Numbers of segments are written with six decimals, all others with six digits; points that these\n"
        "digits do not tell apart are refused. Examples:\n"
        "  mfcurve convert old.xml new.xml\n"
        "  mfcurve convert --rows rows.csv --over angle --name 'Gripper cam' gripper.xml");
    command.callback([options, &action] { action = [options] { return runConvert(*options); }; });
}

}  // namespace mfcurve
