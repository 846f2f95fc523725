// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <memory>

#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/camTable.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveSamples.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/pointsFit.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/stepOptions.h"
#include "tools/mfcurve/tableText.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

enum class ExportForm { Csv, Xyva, Modelica, Points };

const Choices<ExportForm>& exportForms()
{
    static const Choices<ExportForm> forms = {{"csv", ExportForm::Csv},
                                              {"xyva", ExportForm::Xyva},
                                              {"modelica", ExportForm::Modelica},
                                              {"points", ExportForm::Points}};
    return forms;
}

struct ExportOptions {
    CurveOptions curve;
    ExportForm form = ExportForm::Csv;
    std::optional<double> tolerance;
    StepOptions steps;
    std::string output;
    Format format = Format::Text;
};

// The text to write, and the facts to print about it.
struct Exported {
    std::string text;
    std::size_t rows = 0;
    double bound = std::numeric_limits<double>::infinity();
    int status = kDone;
};

std::string nameOf(ExportForm form)
{
    return exportForms()[static_cast<std::size_t>(form)].first;
}

void checkOptions(const ExportOptions& options)
{
    const bool isCsv = options.form == ExportForm::Csv;
    const bool hasDerivatives = isCsv || options.form == ExportForm::Xyva;
    if (options.curve.files.size() > 1)
        throw UsageError("export takes one curve");
    if (isCsv && options.tolerance)
        throw UsageError(
            "--tolerance goes with --as xyva, modelica and points; csv takes --step or --samples");
    if (!isCsv && !options.tolerance)
        throw UsageError(
            fmt::format("--as {} needs --tolerance, how far it may be from the curve", nameOf(options.form)));
    if (!isCsv && options.steps.isGiven())
        throw UsageError("--samples, --step and --open-end go with --as csv");
    if (!hasDerivatives && options.curve.cycleTime)
        throw UsageError("--cycle-time and --rpm go with --as csv and xyva, which have derivatives");
    if (options.format == Format::Json && isStandardStream(options.output))
        throw UsageError("--format json goes with an output file");
    checkOutput(options.curve, options.output);
}

Exported sampled(const ExportOptions& options, const Input& input, double rate)
{
    const Steps steps = stepsOf(options.steps, chosenRange(options.curve, domainOf(input.curve)));
    TableLines lines(namedColumns(input.curve.definition()), {});
    Exported result;
    result.rows = steps.count();
    result.text = lines.header();
    result.status = sampleCurve(input, steps, rate, "export", [&](const SampleBlock& block) {
        for (std::size_t i = 0; i < block.x.size(); ++i)
            lines.add(result.text, block.x[i], block.values[i]);
    });
    return result;
}

Exported tabulated(const ExportOptions& options, const Input& input, double rate)
{
    if (options.form == ExportForm::Points) {
        const PointsFit fit = fitPoints(input.curve, *options.tolerance, input.place);
        return {fit.curve.toXml(), fit.points, fit.bound};
    }
    const bool isXyva = options.form == ExportForm::Xyva;
    const auto form = isXyva ? mf::analysis::Form::Xyva : mf::analysis::Form::Linear;
    const mf::analysis::CamTable table = provedTable(input.curve, form, *options.tolerance, input.place);
    return {isXyva ? xyvaText(table, rate) : modelicaText(table), table.x.size(), table.bound};
}

void printReport(const ExportOptions& options, const Input& input, const Exported& exported)
{
    if (options.format == Format::Json)
        print(jsonDocument({jsonObject({{"file", jsonFile(input)},
                                        {"output", jsonText(options.output)},
                                        {"as", jsonText(nameOf(options.form))},
                                        {"rows", std::to_string(exported.rows)},
                                        {"bound", jsonNumber(exported.bound)}})}));
    else if (!isStandardStream(options.output))
        print(fmt::format("{}: {} rows{}\n", options.output, exported.rows,
                          std::isfinite(exported.bound) ? fmt::format(", proved within {} of the curve",
                                                                      shortNumberText(exported.bound, 3))
                                                        : ""));
}

int runExport(const ExportOptions& options)
{
    checkOptions(options);
    checkNoStretch(options.curve);
    const Inputs inputs = readInputs(options.curve);
    int status = inputs.status;
    for (const Input& input : inputs.curves) {
        chosenRange(options.curve, domainOf(input.curve));
        const double rate = rateOf(options.curve, input.curve.definition(), input.place);
        const Exported exported =
            options.form == ExportForm::Csv ? sampled(options, input, rate) : tabulated(options, input, rate);
        writeOutput(options.output, exported.text);
        printReport(options, input, exported);
        status = std::max(status, exported.status);
    }
    return status;
}

}  // namespace

void declareExport(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ExportOptions>();
    CLI::App& command = addCommand(app, "export", "Writes a curve for controllers and other programs");
    addArguments(command, "FILE", options->curve.files, "a document; '-' is standard input");
    addText(command, "-o,--output", "OUT", "where it is written; '-' is standard output",
            [options](const std::string& text) { options->output = text; })
        .required();
    addChoice<ExportForm>(command, "--as", "what is written", exportForms(), options->form).required();
    addText(command, "--tolerance", "T", "how far the output may be from the curve, in its unit; not for csv",
            [options](const std::string& text) { options->tolerance = positive(text, "--tolerance"); });
    declareStepOptions(command, options->steps);
    addFormat(command, options->format);
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    addNotes(
        command,
        "csv: the samples that table prints. xyva: columns x, y, v, a; the quintics between the rows keep "
        "the\n"
        "tolerance. modelica: a text file with the table \"curve\", for linear interpolation. points: a\n"
        "document of points for cubic interpolation. Prints the number of rows and the proved bound of the "
        "error;\n"
        "without a proof nothing is written. Examples:\n"
        "  mfcurve export cam.xml -o cam.csv --as xyva --tolerance 1e-4\n"
        "  mfcurve export cam.xml -o points.xml --as points --tolerance 0.01");
    whenChosen(command, [options, &action] { action = [options] { return runExport(*options); }; });
}

}  // namespace mfcurve
