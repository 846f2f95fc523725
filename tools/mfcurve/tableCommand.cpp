// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <memory>

#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/progress.h"
#include "tools/mfcurve/samples.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/steps.h"
#include "tools/mfcurve/tableText.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr std::size_t kMostSamples = 10'000'000;
constexpr std::size_t kBlock = 4096;

enum class TableFormat { Csv, Json };

struct TableOptions {
    CurveOptions curve;
    std::optional<std::size_t> samples;
    std::optional<double> step;
    bool isOpen = false;
    TableStyle style;
    std::optional<std::vector<Column>> columns;
    bool hasHeader = true;
    TableFormat format = TableFormat::Csv;
    std::string output = "-";
};

Steps stepsOf(const TableOptions& options, mf::Range range)
{
    constexpr std::size_t kUsualCount = 101;
    if (options.step && options.samples)
        throw UsageError("--step and --samples exclude each other");
    if (options.step)
        return Steps::byStep(range, *options.step, options.isOpen, kMostSamples);
    return Steps::byCount(range, options.samples.value_or(kUsualCount), options.isOpen);
}

std::vector<Column> columnsOf(const TableOptions& options, const mf::CurveDefinition& definition)
{
    if (options.columns)
        return *options.columns;
    const auto all = allColumns();
    return {all.begin(), all.begin() + 1 + mf::drawing::namedOrders(definition)};
}

// Prints the samples of curves one after the other, in one of the two formats.
class TablePrinter {
public:
    explicit TablePrinter(const TableOptions& options) : options_(options) {}

    void add(const Input& input)
    {
        const mf::CurveDefinition& definition = input.curve.definition();
        const mf::Range range = chosenRange(options_.curve, domainOf(input.curve));
        warnOutside(range, input);
        const Steps steps = stepsOf(options_, range);
        const std::vector<Column> columns = columnsOf(options_, definition);
        addHead(input, columns);
        addLines(input, steps, columns, rateOf(options_.curve, definition, input.place));
        if (isJson())
            text_ += "\n]}";
        isFirst_ = false;
    }

    // Closes what is open and returns the exit status.
    int finish()
    {
        if (isJson())
            text_ += isFirst_ ? "" : "\n]\n";
        if (isStandardStream(options_.output))
            print(text_);
        else
            writeOutput(options_.output, text_);
        return status_;
    }

private:
    bool isJson() const { return options_.format == TableFormat::Json; }

    void addHead(const Input& input, const std::vector<Column>& columns)
    {
        if (isJson())
            text_ +=
                fmt::format("{}{{\"file\": {}, \"samples\": [", isFirst_ ? "[\n" : ",\n", jsonFile(input));
        else if (options_.curve.files.size() > 1)
            text_ += "# " + input.file + "\n";
        if (!isJson() && options_.hasHeader)
            text_ += tableHeader(columns, options_.style);
    }

    void addLines(const Input& input, const Steps& steps, const std::vector<Column>& columns, double rate)
    {
        Progress progress("table", steps.count());
        std::vector<double> x(std::min(kBlock, steps.count()));
        std::vector<mf::CurveValues> values(x.size());
        const int orders = mf::drawing::namedOrders(input.curve.definition());
        std::size_t undefined = 0;
        double firstUndefined = 0.0;
        for (std::size_t done = 0; done < steps.count(); done += kBlock) {
            const std::size_t count = std::min(kBlock, steps.count() - done);
            for (std::size_t i = 0; i < count; ++i)
                x[i] = steps.at(done + i);
            input.curve.evaluate(x.data(), count, values.data());
            for (std::size_t i = 0; i < count; ++i) {
                const mf::CurveValues sample = atRate(values[i], rate);
                if (!isFinite(sample, orders) && undefined++ == 0)
                    firstUndefined = x[i];
                if (isJson())
                    addJsonLine(text_, x[i], sample, columns, done + i == 0);
                else
                    addTableLine(text_, x[i], sample, columns, options_.style);
            }
            flush();
            progress.update(done);
        }
        if (undefined == 0)
            return;
        status_ = kFailed;
        warn(input.place,
             fmt::format("the curve has no finite value or derivative at {} of the samples, first at x = {}",
                         undefined, numberText(firstUndefined)));
    }

    // A file is written whole, standard output as it comes.
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
    const Inputs inputs = readInputs(options.curve);
    TablePrinter printer(options);
    for (const Input& input : inputs.curves)
        printer.add(input);
    return std::max(printer.finish(), inputs.status);
}

void declareLayout(CLI::App& command, TableOptions& options)
{
    addText(command, "--columns", "NAME,NAME",
            "those of x, value, d1, d2, d3 that are printed, in that order",
            [&options](const std::string& text) { options.columns = readColumns(text); });
    addText(command, "--fixed", "N", "decimals of every number, 0 to 17",
            [&options](const std::string& text) {
                options.style.decimals = static_cast<int>(wholeNumber(text, "--fixed", 0, 17));
            });
    addText(command, "--delimiter", "CHARACTER", "what separates the columns: one character, or tab [,]",
            [&options](const std::string& text) { options.style.delimiter = readDelimiter(text); });
    addChoice<char>(command, "--decimal", "the decimal mark of numbers [point]",
                    {{"point", '.'}, {"comma", ','}, {".", '.'}, {",", ','}}, options.style.decimalMark);
    command.add_flag_callback(
        "--no-header", [&options] { options.hasHeader = false; }, "no line of column names");
    addChoice<TableFormat>(command, "--format", "how the table is printed [csv]",
                           {{"csv", TableFormat::Csv}, {"json", TableFormat::Json}}, options.format);
    addText(command, "-o,--output", "FILE", "where the table is written [standard output]",
            [&options](const std::string& text) { options.output = text; });
}

}  // namespace

void declareTable(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<TableOptions>();
    CLI::App& command = *app.add_subcommand("table", "Prints evenly spaced samples as CSV or JSON");
    command.add_option("FILE", options->curve.files, "documents; '-' is standard input");
    addText(command, "--samples", "N", "how many samples, both ends included [101]",
            [options](const std::string& text) {
                options->samples = static_cast<std::size_t>(wholeNumber(text, "--samples", 1, kMostSamples));
            });
    addText(command, "--step", "H", "the distance of samples, in place of their number",
            [options](const std::string& text) {
                options->step = finiteNumber(text, "--step");
                if (!(*options->step > 0.0))
                    throw UsageError("--step takes a number above 0, not \"" + text + "\"");
            });
    command.add_flag("--open-end", options->isOpen,
                     "the end is left out, as it is the start of the next cycle");
    declareLayout(command, *options);
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    command.footer(
        "The columns are x,value,d1,d2,d3, with as many derivatives as the curve has names for: three of a\n"
        "displacement, two of a velocity, one of an acceleration, a force or a torque. Examples:\n"
        "  mfcurve table cam.xml --samples 361 > cam.csv\n"
        "  mfcurve table cam.xml --step 0.1 --open-end --columns value --fixed 4 --decimal comma --delimiter "
        "';'\n"
        "  mfcurve table --expression 'sin(x)' --from 0 --to 3.14 --samples 5 --format json");
    command.callback([options, &action] { action = [options] { return runTable(*options); }; });
}

}  // namespace mfcurve
