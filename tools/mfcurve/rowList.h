// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "tools/mfcurve/curveOptions.h"

namespace mfcurve {

/// One segment and, for messages, its place: "cam.csv:7".
struct Row {
    double end;
    double value;  ///< at the end
    std::string profile;
    std::string where;
};

/// A curve in rows: each starts where the previous one ends.
struct CurveRows {
    double startX = 0.0;
    double startValue = 0.0;
    std::vector<Row> rows;
};

/// The rows of the command line: those of --rows, then those of --row. Fails with the place when one of them
/// is not of the form "end x, value, profile" or does not end after its start, and when a file has none.
CurveRows readRows(const CurveOptions& options);

}  // namespace mfcurve
