// SPDX-License-Identifier: MIT
#include "tools/mfcurve/commands.h"

namespace mfcurve {

void declareCommands(CLI::App& app, Action& action)
{
    declareEval(app, action);
    declareTable(app, action);
    declarePlot(app, action);
    declarePeaks(app, action);
    declareBreaks(app, action);
    declareCheck(app, action);
    declareInfo(app, action);
    declareProfiles(app, action);
    declareFastest(app, action);
    declareConvert(app, action);
    declareExport(app, action);
    declareEdit(app, action);
}

}  // namespace mfcurve
