// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveSamples.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/stepOptions.h"
#include "tools/mfcurve/tableText.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

enum class TableFormat { Csv, Json };

struct TableOptions {
    CurveOptions curve;
    StepOptions steps;
    TableStyle style;
    std::optional<std::vector<Column>> columns;
    bool hasHeader = true;
    TableFormat format = TableFormat::Csv;
    std::string output = "-";
};

// Prints the samples of the curves, in one of the two formats.
class TablePrinter {
public:
    explicit TablePrinter(const TableOptions& options) : options_(options) {}

    void add(const Input& input)
    {
        const mf::CurveDefinition& definition = input.curve.definition();
        const mf::Range range = chosenRange(options_.curve, domainOf(input.curve));
        warnOutside(range, input);
        const Steps steps = stepsOf(options_.steps, range);
        const std::vector<Column> columns = options_.columns.value_or(namedColumns(definition));
        const double rate = rateOf(options_.curve, definition, input.place);
        if (isJson())
            addJson(input, steps, columns, rate);
        else
            addCsv(input, steps, columns, rate);
        isFirst_ = false;
    }

    // Completes the output and returns the exit status.
    int finish()
    {
        if (isJson())
            text_ += "\n]\n";
        if (isStandardStream(options_.output))
            print(text_);
        else
            writeOutput(options_.output, text_);
        return status_;
    }

private:
    bool isJson() const { return options_.format == TableFormat::Json; }

    void addCsv(const Input& input, const Steps& steps, const std::vector<Column>& columns, double rate)
    {
        TableLines lines(columns, options_.style);
        if (options_.curve.files.size() > 1)
            text_ += "# " + input.file + "\n";
        if (options_.hasHeader)
            text_ += lines.header();
        sample(input, steps, rate,
               [&](double x, const mf::CurveValues& values) { lines.add(text_, x, values); });
    }

    void addJson(const Input& input, const Steps& steps, const std::vector<Column>& columns, double rate)
    {
        text_ += fmt::format("{}{{\"file\": {}, \"samples\": [", isFirst_ ? "[\n" : ",\n", jsonFile(input));
        bool isFirst = true;
        sample(input, steps, rate, [&](double x, const mf::CurveValues& values) {
            addJsonLine(text_, x, values, columns, std::exchange(isFirst, false));
        });
        text_ += "\n]}";
    }

    template <class AddLine>
    void sample(const Input& input, const Steps& steps, double rate, AddLine addLine)
    {
        const int status = sampleCurve(input, steps, rate, "table", [&](const SampleBlock& block) {
            for (std::size_t i = 0; i < block.x.size(); ++i)
                addLine(block.x[i], block.values[i]);
            flush();
        });
        status_ = std::max(status_, status);
    }

    // A file is written at the end, as a whole; standard output block by block.
    void flush()
    {
        if (!isStandardStream(options_.output))
            return;
        print(text_);
        text_.clear();
    }

    const TableOptions& options_;
    std::string text_;
    bool isFirst_ = true;
    int status_ = kDone;
};

int runTable(const TableOptions& options)
{
    if (options.style.decimalMark == options.style.delimiter)
        throw UsageError("--decimal and --delimiter take two different characters");
    checkOutput(options.curve, options.output);
    const Inputs inputs = readInputs(options.curve);
    if (inputs.curves.empty())
        return inputs.status;
    TablePrinter printer(options);
    for (const Input& input : inputs.curves)
        printer.add(input);
    return std::max(printer.finish(), inputs.status);
}

void declareLayout(CLI::App& command, TableOptions& options)
{
    addText(command, "--columns", "NAME,NAME",
            "the columns to print, in that order, out of x, value, d1, d2, d3",
            [&options](const std::string& text) { options.columns = readColumns(text); });
    addText(command, "--fixed", "N", "decimals of every number, 0 to 17",
            [&options](const std::string& text) {
                options.style.decimals = static_cast<int>(wholeNumber(text, "--fixed", 0, 17));
            });
    addText(command, "--delimiter", "CHARACTER", "the separator of the columns: one character, or tab [,]",
            [&options](const std::string& text) { options.style.delimiter = readDelimiter(text); });
    addChoice<char>(command, "--decimal", "the decimal mark of numbers [point]",
                    {{"point", '.'}, {"comma", ','}, {".", '.'}, {",", ','}}, options.style.decimalMark);
    addFlag(
        command, "--no-header", [&options] { options.hasHeader = false; }, "no line of column names");
    addChoice<TableFormat>(command, "--format", "how the table is printed [csv]",
                           {{"csv", TableFormat::Csv}, {"json", TableFormat::Json}}, options.format);
    addText(command, "-o,--output", "FILE", "where the table is written [standard output]",
            [&options](const std::string& text) { options.output = text; });
}

}  // namespace

void declareTable(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<TableOptions>();
    CLI::App& command = addCommand(app, "table", "Prints evenly spaced samples as CSV or JSON");
    addArguments(command, "FILE", options->curve.files, "documents; '-' is standard input");
    declareStepOptions(command, options->steps);
    declareLayout(command, *options);
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    addNotes(
        command,
        "The columns are x,value,d1,d2,d3, with as many derivatives as the curve has names for: three of a\n"
        "displacement, two of a velocity, one of an acceleration, a force or a torque. Examples:\n"
        "  mfcurve table cam.xml --samples 361 > cam.csv\n"
        "  mfcurve table cam.xml --step 0.1 --open-end --columns value --fixed 4 --decimal comma --delimiter "
        "';'\n"
        "  mfcurve table --expression 'sin(x)' --from 0 --to 3.14 --samples 5 --format json");
    whenChosen(command, [options, &action] { action = [options] { return runTable(*options); }; });
}

}  // namespace mfcurve
