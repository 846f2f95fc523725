// SPDX-License-Identifier: MIT

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/version.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/text.h"

namespace {

constexpr const char* kDescription =
    "Evaluates, tabulates, draws, checks and converts motion functions: curves made of segments, of data\n"
    "points or of one expression, each with a value and three derivatives.";

constexpr const char* kFooter =
    "A curve is a document (a file, or '-' for standard input), or is described by options:\n"
    "  mfcurve eval cam.xml 0 45 90\n"
    "  mfcurve eval --expression '10*sin(2*pi*x)' 0.125\n"
    "  mfcurve table --expression 'step5(x,0,0,1,20)' --from 0 --to 1 --samples 11\n"
    "  mfcurve plot --row '120,40,3-4-5-Polynomial' --row '180,40,Cubic' --row '360,0,Cycloidal' \\\n"
    "               --over angle -o cam.svg\n"
    "  mfcurve plot --points lift.csv --interpolation akima -o lift.svg\n"
    "  mfcurve profiles --check\n"
    "  mfcurve info cam.xml\n"
    "\n"
    "Exit status: 0 when all went well; 1 when a file cannot be used or written, a document is not sound,\n"
    "a law fails its check or a point has no finite value; 2 for wrong usage and for a wrong expression,\n"
    "row or list of points.";

// The arguments, last one first, as the parser takes them. A number such as -.5
// would be taken for an option, and a "--" would only be taken before the first
// number or file: what stands behind it is spelt as no option can be.
std::vector<std::string> reversedArguments(int argc, char** argv)
{
    std::vector<std::string> arguments;
    bool areOptionsOver = false;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        const bool isNumber = mfcurve::readNumber(argument).has_value();
        if (!areOptionsOver && argument == "--") {
            areOptionsOver = true;
            continue;
        }
        if (argument.starts_with("-.") && isNumber)
            argument.insert(1, "0");
        else if (areOptionsOver && !isNumber && argument.size() > 1 && argument.front() == '-')
            argument.insert(0, "./");
        arguments.push_back(std::move(argument));
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

std::string usageProblem(CLI::App& app, const CLI::ParseError& error, int argc, char** argv)
{
    const auto isNamed = [&](const CLI::App* command) { return command->get_name() == argv[1]; };
    if (argc > 1 && argv[1][0] != '-' && app.get_subcommands(isNamed).empty())
        return "there is no command \"" + std::string(argv[1]) + "\"";
    return error.what();
}

int run(int argc, char** argv)
{
    CLI::App app(kDescription, "mfcurve");
    app.footer(kFooter);
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("mfcurve ") + mf::version());
    mfcurve::Action action;
    mfcurve::declareEval(app, action);
    mfcurve::declareTable(app, action);
    mfcurve::declarePlot(app, action);
    mfcurve::declareProfiles(app, action);
    mfcurve::declareInfo(app, action);
    mfcurve::declareConvert(app, action);
    try {
        app.parse(reversedArguments(argc, argv));
    } catch (const CLI::Success& shown) {
        std::ostringstream text;
        const int status = app.exit(shown, text);
        mfcurve::print(text.str());
        mfcurve::finishOutput();
        return status;
    } catch (const CLI::ParseError& error) {
        mfcurve::warn(usageProblem(app, error, argc, argv) + "; see mfcurve --help");
        return mfcurve::kWrong;
    }
    const int status = action();
    mfcurve::finishOutput();
    return status;
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const mfcurve::Failure& failure) {
        mfcurve::warn(failure.what());
        return failure.status();
    } catch (const std::bad_alloc&) {
        mfcurve::warn("there is not enough memory");
    } catch (const std::exception& error) {
        mfcurve::warn(error.what());
    }
    return mfcurve::kFailed;
}
