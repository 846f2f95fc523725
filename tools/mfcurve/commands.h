// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace mfcurve {

/// Runs a subcommand after the command line is read; returns the exit status.
using Action = std::function<int()>;

/// Each declares one subcommand and stores its action when that one is chosen.
void declareEval(CLI::App& app, Action& action);
void declareTable(CLI::App& app, Action& action);
void declarePlot(CLI::App& app, Action& action);
void declareProfiles(CLI::App& app, Action& action);
void declareInfo(CLI::App& app, Action& action);
void declareConvert(CLI::App& app, Action& action);
void declareExport(CLI::App& app, Action& action);
void declareEdit(CLI::App& app, Action& action);
void declarePeaks(CLI::App& app, Action& action);
void declareBreaks(CLI::App& app, Action& action);
void declareCheck(CLI::App& app, Action& action);
void declareFastest(CLI::App& app, Action& action);

/// Declares all subcommands, in the order of the help.
void declareCommands(CLI::App& app, Action& action);

}  // namespace mfcurve
