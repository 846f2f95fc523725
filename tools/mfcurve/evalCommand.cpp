// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>

#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/expressionText.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/samples.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

struct EvalOptions {
    CurveOptions curve;
    std::vector<std::string> arguments;
    std::optional<std::string> placesFile;  // --at
    mf::Side side = mf::Side::Plain;
    Format format = Format::Text;
    std::vector<double> x;
};

// Adds the first column of a file, or its column x.
void addPlaces(EvalOptions& options, const std::string& path)
{
    const ColumnForm form{
        {"x"}, {"x"}, "a line is one x, such as \"12.5\"", "; a header may name the column x", {}};
    try {
        ColumnText text(readInput(path), form, {});
        for (const ColumnLine& line : text.lines())
            options.x.push_back(text.number(line, 0));
    } catch (const TextError& error) {
        throw Failure(kWrong, linePlace(path, error.line()), error.what());
    }
}

// An argument that is a number is an x; every other argument is a document.
void sortArguments(EvalOptions& options)
{
    for (const std::string& argument : options.arguments) {
        if (readNumber(argument))
            options.x.push_back(finiteNumber(argument, "x"));
        else if (readDecimal(argument))
            throw UsageError("x takes a number with a decimal point, not \"" + argument + "\"");
        else
            options.curve.files.push_back(argument);
    }
    const std::vector<std::string>& files = options.curve.files;
    if (options.placesFile && isStandardStream(*options.placesFile) &&
        std::any_of(files.begin(), files.end(), isStandardStream))
        throw UsageError("standard input can be read only once");
    if (options.placesFile)
        addPlaces(options, *options.placesFile);
    if (options.x.empty() && files.size() > 1)
        throw UsageError("eval needs at least one x, and \"" + files.back() + "\" is not a number");
    if (options.x.empty())
        throw UsageError("eval needs at least one x, such as mfcurve eval cam.xml 0 45 90");
}

void warnOutside(const Input& input, double x)
{
    const mf::Range domain = domainOf(input.curve);
    if (domain.from < domain.to && (x < domain.from || x > domain.to) &&
        input.curve.outside() != mf::Outside::Repeat)
        warn(input.place, fmt::format("x = {} is outside the curve, which runs from {} to {}", numberText(x),
                                      numberText(domain.from), numberText(domain.to)));
}

std::string textLine(double x, const mf::CurveValues& values)
{
    return fmt::format("{} {} {} {} {}\n", numberText(x), numberText(values.y), numberText(values.d1),
                       numberText(values.d2), numberText(values.d3));
}

std::string jsonPoint(double x, const mf::CurveValues& values)
{
    return jsonObject({{"x", jsonNumber(x)},
                       {"value", jsonNumber(values.y)},
                       {"d1", jsonNumber(values.d1)},
                       {"d2", jsonNumber(values.d2)},
                       {"d3", jsonNumber(values.d3)}});
}

// Prints the lines of a curve or returns its JSON.
std::string evaluate(const EvalOptions& options, const Input& input, int& status)
{
    const double rate = rateOf(options.curve, input.curve.definition(), input.place);
    std::vector<std::string> points;
    for (double x : options.x) {
        warnOutside(input, x);
        const mf::CurveValues values = atRate(input.curve.at(x, options.side), rate);
        if (options.format == Format::Json)
            points.push_back(jsonPoint(x, values));
        else
            print(textLine(x, values));
        if (isFinite(values, mf::drawing::namedOrders(input.curve.definition())))
            continue;
        warn(input.place, fmt::format("the curve has no finite value or derivative at x = {}{}",
                                      numberText(x), zeroDivisor(input.curve, x)));
        status = kFailed;
    }
    return jsonObject({{"file", jsonFile(input)}, {"points", jsonArray(points)}});
}

int runEval(EvalOptions& options)
{
    sortArguments(options);
    checkNoStretch(options.curve);
    const Inputs inputs = readInputs(options.curve);
    int status = inputs.status;
    std::vector<std::string> objects;
    for (const Input& input : inputs.curves) {
        if (options.format == Format::Text)
            printSection(options.curve, input);
        objects.push_back(evaluate(options, input, status));
    }
    if (options.format == Format::Json)
        print(jsonDocument(objects));
    return status;
}

}  // namespace

void declareEval(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<EvalOptions>();
    CLI::App& command = addCommand(app, "eval", "Prints 'x value d1 d2 d3' at each x");
    addArguments(command, "ARGUMENT", options->arguments,
                 "documents ('-' is standard input) and the x to evaluate at");
    addText(command, "--at", "FILE", "a file with one x in each line; '-' is standard input",
            options->placesFile);
    addChoice<mf::Side>(command, "--side", "limits from one side of x",
                        {{"left", mf::Side::Left}, {"right", mf::Side::Right}}, options->side);
    addFormat(command, options->format);
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    declareCyclicOption(command, options->curve);
    addNotes(
        command,
        "Prints one line per x with the fewest digits that read back as the same numbers. An order without a "
        "finite\n"
        "value is nan. Where rows meet, the row that begins there is used. Examples:\n"
        "  mfcurve eval cam.xml 0 45 90\n"
        "  mfcurve eval cam.xml 90 --side left --rpm 120\n"
        "  mfcurve eval --expression 'k*x^2*exp(-x)' --let k=12.5 -- -1 0 1\n"
        "  mfcurve eval --row '90,10,Cubic' --start 2 45");
    whenChosen(command, [options, &action] { action = [options] { return runEval(*options); }; });
}

}  // namespace mfcurve
