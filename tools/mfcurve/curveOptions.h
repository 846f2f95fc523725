// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/columnText.h"

namespace CLI {
class App;
}

namespace mfcurve {

/// Where rows begin: --start.
struct Start {
    double x = 0.0;
    double value = 0.0;
};

/// What x is: --over.
struct Variable {
    mf::Over over = mf::Over::Time;
    std::string motionResult;
};

/// A name in an expression and its value: --let.
struct Constant {
    std::string name;
    double value;
};

/// What the command line says of the curves: an expression, rows, points, or the documents in `files`.
struct CurveOptions {
    std::optional<std::string> expression;
    std::vector<Constant> constants;
    std::vector<std::string> rows;
    std::optional<std::string> rowsFile;
    std::optional<Start> start;
    std::optional<std::string> pointsFile;
    ColumnSettings columns;
    std::optional<mf::Interpolation> interpolation;
    std::optional<mf::Quantity> quantity;
    bool isRotary = false;
    std::optional<Variable> variable;
    std::optional<double> from;
    std::optional<double> to;
    std::optional<std::string> name;
    std::optional<double> cycleTime;  ///< seconds for 360 degrees
    bool isPeriodic = false;
    std::vector<std::string> libraryFolders;
    std::vector<std::string> motionResults;
    std::vector<std::string> files;

    bool hasRows() const { return !rows.empty() || rowsFile.has_value(); }
};

/// Declares the options on a subcommand.
void declareCurveOptions(CLI::App& command, CurveOptions& options);
/// Those that say where laws are.
void declareLibraryOption(CLI::App& command, std::vector<std::string>& folders);
/// --cycle-time and --rpm.
void declareSpeedOptions(CLI::App& command, CurveOptions& options);
/// --cyclic.
void declareCyclicOption(CLI::App& command, CurveOptions& options);

/// Throws UsageError unless the options name one curve, or documents and nothing else.
void checkOneSource(const CurveOptions& options);
/// Throws UsageError when --from or --to does nothing: a command without a stretch takes both, as the range
/// of an expression.
void checkNoStretch(const CurveOptions& options);

/// The stretch of a curve that --from and --to choose. Throws UsageError when it ends before it starts, or
/// when there is nothing to choose from.
mf::Range chosenRange(const CurveOptions& options, mf::Range domain);

/// What the order-th derivative of an angle curve by degrees is multiplied by to be one by seconds; 1 without
/// --cycle-time. Throws Failure for a curve that is not over the cycle angle.
double rateOf(const CurveOptions& options, const mf::CurveDefinition& definition, const std::string& place);

/// The usual units of a curve, by seconds where --cycle-time says so.
mf::drawing::Units unitsOf(const CurveOptions& options, const mf::CurveDefinition& definition);

}  // namespace mfcurve
