// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/mfcurve/columnText.h"
#include "tools/mfcurve/curve.h"

namespace CLI {
class App;
}

namespace mfcurve {

/// What the command line says of the curve: an expression, rows, points or the
/// documents in `files`.
struct CurveOptions {
    std::string expression;
    std::vector<std::string> rows;
    std::string rowsFile;
    std::string start;
    std::string pointsFile;
    ColumnSettings columns;  ///< of rowsFile and pointsFile
    std::string interpolation;
    std::string drive;
    std::string variable;
    std::string from;
    std::string to;
    std::string name;
    std::string units;
    std::string library;
    std::vector<std::string> results;
    std::vector<std::string> files;

    bool hasRows() const { return !rows.empty() || !rowsFile.empty(); }
};

/// Declares the options on a subcommand.
void declareCurveOptions(CLI::App& command, CurveOptions& options);
/// The part of them that says what host a document meets.
void declareHostOptions(CLI::App& command, CurveOptions& options);

/// Fails unless the options name one curve, or documents and nothing else.
void checkOneSource(const CurveOptions& options);

/// Fails when there is a --from or --to that does nothing: a command without a stretch
/// to look at takes both, as the domain of an expression.
void checkNoStretch(const CurveOptions& options);

/// The stretch that --from and --to choose out of `domain`. Fails when they are no
/// numbers or in the wrong order, or when there is nothing to choose from.
Range chosenRange(const CurveOptions& options, Range domain);

/// Says so when a stretch goes beyond the curve; `place` is what the message begins with.
void warnOutside(Range range, Range domain, const std::string& place);

/// The units of --units, or else the usual ones of that curve.
Units chosenUnits(const CurveOptions& options, Curve& curve);

/// A finite number out of an option. Fails with the option's name otherwise.
double finiteNumber(const std::string& text, const std::string& what);

}  // namespace mfcurve
