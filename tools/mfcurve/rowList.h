#pragma once

#include <string>
#include <vector>

#include "tools/mfcurve/curveOptions.h"

namespace mfcurve {

/// One segment as a user writes it.
struct Row {
    double end;
    double value;  ///< at the end
    std::string profile;
    std::string where;  ///< for messages: "cam.csv:7"
};

/// A curve in rows: each starts where the one before it ends.
struct RowList {
    double startX = 0.0;
    double startValue = 0.0;
    std::vector<Row> rows;
};

/// The rows of the command line: those of --rows, then those of --row. Fails with
/// the place when one of them is not of the form "end x, value, profile" or does
/// not end behind its start, and when there are none.
///
/// A file of rows may have a header line, blank lines and comments from "#" on. A
/// first line of x and value alone states the start.
RowList readRows(const CurveOptions& options);

}  // namespace mfcurve
