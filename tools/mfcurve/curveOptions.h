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

/// The start of the rows: --start.
struct Start {
    double x = 0.0;
    double value = 0.0;
};

/// The meaning of x: --over.
struct Variable {
    mf::Over over = mf::Over::Time;
    std::string motionResult;
};

/// A name in an expression and its value: --let.
struct Constant {
    std::string name;
    double value;
};

/// The curves of the command line: an expression, rows, points, or the documents in `files`.
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
/// --library.
void declareLibraryOption(CLI::App& command, std::vector<std::string>& folders);
/// --cycle-time and --rpm.
void declareSpeedOptions(CLI::App& command, CurveOptions& options);
/// --cyclic.
void declareCyclicOption(CLI::App& command, CurveOptions& options);

/// Throws UsageError unless the options describe exactly one curve, or name only documents.
void checkOneSource(const CurveOptions& options);
/// Throws UsageError when --from or --to would have no effect: a command that has no stretch uses them only
/// together, as the range of an expression.
void checkNoStretch(const CurveOptions& options);

/// Throws UsageError if an output would replace a file that the options read.
void checkOutput(const CurveOptions& options, const std::string& output);

/// The part of a curve's domain that --from and --to choose. Throws UsageError when it ends before it starts,
/// or when an end is given neither by the options nor by the curve.
mf::Range chosenRange(const CurveOptions& options, mf::Range domain);

/// Degrees per second of --cycle-time or --rpm; 1 without them. Its k-th power converts the k-th derivative
/// of an angle curve from degrees to seconds. Throws Failure for a curve that is not over the cycle angle.
double rateOf(const CurveOptions& options, const mf::CurveDefinition& definition, const std::string& place);

/// The usual units of a curve; derivatives are by seconds with --cycle-time.
mf::drawing::Units unitsOf(const CurveOptions& options, const mf::CurveDefinition& definition);

}  // namespace mfcurve
