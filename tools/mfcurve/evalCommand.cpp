// SPDX-License-Identifier: MIT

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

struct EvalOptions {
    CurveOptions curve;
    std::vector<std::string> arguments;
    std::vector<double> x;
};

// What reads as a number is an X, everything else a document.
void sortArguments(EvalOptions& options)
{
    for (const std::string& argument : options.arguments) {
        if (readNumber(argument))
            options.x.push_back(finiteNumber(argument, "x"));
        else
            options.curve.files.push_back(argument);
    }
    if (options.x.empty())
        throw Failure(kWrong, "eval needs at least one x, such as mfcurve eval cam.xml 0 45 90");
}

std::string line(const Sample& sample)
{
    std::string text = numberText(sample.x);
    for (double y : sample.y)
        text += " " + numberText(y);
    return text + "\n";
}

void checkInside(Curve& curve, double x, const std::string& place)
{
    const Range domain = curve.domain();
    if (domain.from < domain.to && (x < domain.from || x > domain.to))
        warn(place + "x = " + numberText(x) + " lies outside the curve, which runs from " +
             numberText(domain.from) + " to " + numberText(domain.to));
}

int evaluate(Curve& curve, const std::vector<double>& xs, const std::string& place)
{
    int status = kDone;
    for (double x : xs) {
        checkInside(curve, x, place);
        const Sample sample = curve.at(x);
        print(line(sample));
        if (!sample.isFinite(curve.orderCount())) {
            warn(place + "the curve has no finite value or derivative at x = " + numberText(x));
            status = kFailed;
        }
    }
    return status;
}

int runEval(EvalOptions& options)
{
    sortArguments(options);
    checkNoStretch(options.curve);
    int status = kDone;
    const int read = forEachCurve(options.curve, [&](Curve& curve, const std::string& section) {
        if (!section.empty())
            print("# " + section + "\n");
        status = std::max(status, evaluate(curve, options.x, sectionPlace(section)));
    });
    return std::max(status, read);
}

}  // namespace

void declareEval(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<EvalOptions>();
    CLI::App& command = *app.add_subcommand("eval", "Prints 'x value d1 d2 d3' at each x");
    command.add_option("ARGUMENT", options->arguments,
                       "documents ('-' is standard input) and the x to evaluate at");
    declareCurveOptions(command, options->curve);
    command.footer(
        "Prints one line an x, numbers with 17 significant digits. An order without a finite value is nan.\n"
        "Examples:\n"
        "  mfcurve eval cam.xml 0 45 90\n"
        "  mfcurve eval --expression 'x^2*exp(-x)' -- -1 0 1\n"
        "  mfcurve eval --row '90,10,Cubic' --start 2 45");
    command.callback([options, &action] { action = [options] { return runEval(*options); }; });
}

}  // namespace mfcurve
