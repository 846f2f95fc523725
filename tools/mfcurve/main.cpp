// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "mfcurves/version.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/usage.h"

namespace {

constexpr const char* kDescription =
    "Evaluates, tabulates, draws, checks and converts motion functions: curves made of segments, of data\n"
    "points or of one expression, each with a value and three derivatives.";

constexpr const char* kFooter =
    "A curve is a document (a file, or '-' for standard input), or is described by options:\n"
    "  mfcurve eval cam.xml 0 45 90\n"
    "  mfcurve eval --expression '10*sin(2*pi*x)' 0.125\n"
    "  mfcurve table --expression 'step5(x,0,0,1,20)' --from 0 --to 1 --samples 11\n"
    "  mfcurve plot --row '120,40,3-4-5-Polynomial' --row '180,40,Cubic' --row '360,0,4-5-6-7-Polynomial' "
    "\\\n"
    "               --over angle -o cam.svg\n"
    "  mfcurve plot --points lift.csv --interpolation akima -o lift.svg\n"
    "  mfcurve profiles --check\n"
    "  mfcurve info cam.xml\n"
    "\n"
    "Exit status: 0 when all went well; 1 when a file cannot be used or written, a document is not sound,\n"
    "a check fails or a point has no finite value; 2 for wrong usage and for a wrong expression, row or "
    "list\n"
    "of points.";

int reportUsage(const CLI::App& app, const std::string& problem, const std::vector<std::string>& arguments)
{
    mfcurve::report({mf::Problem::Level::Error, "", problem + "; see " + mfcurve::helpOf(app, arguments)});
    return mfcurve::kWrong;
}

int run(int argc, char** argv)
{
    CLI::App app(kDescription, "mfcurve");
    app.footer(kFooter);
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("mfcurve ") + mf::version());
    mfcurve::Action action;
    mfcurve::declareCommands(app, action);
    const std::vector<std::string> arguments = mfcurve::reversedArguments(argc, argv);
    try {
        std::vector<std::string> parsed = arguments;
        app.parse(parsed);
        const int status = action();
        mfcurve::finishOutput();
        return status;
    } catch (const CLI::Success& shown) {
        std::ostringstream text;
        const int status = app.exit(shown, text);
        mfcurve::print(text.str());
        mfcurve::finishOutput();
        return status;
    } catch (const CLI::ParseError& error) {
        return reportUsage(app, mfcurve::usageProblem(app, error, arguments), arguments);
    } catch (const mfcurve::UsageError& error) {
        return reportUsage(app, error.what(), arguments);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const mfcurve::Failure& failure) {
        for (const mf::Problem& problem : failure.problems())
            mfcurve::report(problem);
        return failure.status();
    } catch (const std::bad_alloc&) {
        mfcurve::report({mf::Problem::Level::Error, "", "there is not enough memory"});
    } catch (const std::exception& error) {
        mfcurve::report({mf::Problem::Level::Error, "", error.what()});
    }
    return mfcurve::kFailed;
}
