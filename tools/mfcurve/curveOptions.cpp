// SPDX-License-Identifier: MIT

#include "tools/mfcurve/curveOptions.h"

#include <CLI/CLI.hpp>
#include <cmath>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

std::optional<double> givenNumber(const std::string& text, const std::string& option)
{
    if (text.empty())
        return std::nullopt;
    return finiteNumber(text, option);
}

}  // namespace

void declareHostOptions(CLI::App& command, CurveOptions& options)
{
    command
        .add_option("--library", options.library,
                    "folders with a SegmentTypes.txt, separated by ';'; the first readable one replaces the "
                    "built-in profiles")
        ->type_name("DIR;DIR")
        ->group("Host");
    command.add_option("--result", options.results, "name of a motion result that exists; may be repeated")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->group("Host");
}

void declareCurveOptions(CLI::App& command, CurveOptions& options)
{
    const auto text = [&](const char* name, std::string& target, const char* help, const char* type) {
        return command.add_option(name, target, help)->type_name(type)->group("Curve");
    };
    text("--expression", options.expression, "a formula of one variable, such as 'sin(2*pi*x)'", "TEXT");
    command
        .add_option("--row", options.rows,
                    "a segment: 'end x, value, profile'; may be repeated, each starts where the last one "
                    "ends; numbers "
                    "count with six decimals")
        ->type_name("ROW")
        ->allow_extra_args(false)
        ->group("Curve");
    text("--rows", options.rowsFile, "the same rows from a text file", "FILE");
    text("--start", options.start, "where the rows start: 'value' or 'x, value' [0, 0]", "START");
    text("--points", options.pointsFile, "points 'x, y' from a text file", "FILE");
    command
        .add_option("--csv-columns", options.columns.columns,
                    "the columns of a file of rows or points: numbers from 1 or names in its header")
        ->type_name("COLUMN,COLUMN")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->group("Curve");
    command.add_option("--csv-skip", options.columns.skippedLines, "lines at its start that do not count")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber)
        ->group("Curve");
    text("--interpolation", options.interpolation, "how the points are joined [linear]", "KIND")
        ->check(CLI::IsMember({"linear", "cubic", "akima"}));
    text("--drive", options.drive, "what the curve drives [displacement]", "QUANTITY")
        ->check(CLI::IsMember({"displacement", "velocity", "acceleration", "force", "torque"}));
    text("--over", options.variable, "what x of rows and points is [time]", "VARIABLE")
        ->check(CLI::IsMember({"time", "angle"}));
    text("--from", options.from, "start of the stretch that is looked at [that of the curve]", "X");
    text("--to", options.to, "its end", "X");
    text("--name", options.name, "name of the curve", "TEXT");
    declareHostOptions(command, options);
}

void checkOneSource(const CurveOptions& options)
{
    const int described = !options.expression.empty() + options.hasRows() + !options.pointsFile.empty();
    if (described == 0 && options.files.empty())
        throw Failure(kWrong, "no curve: give a document, --expression, --row, --rows or --points");
    if (described > 1 || (described == 1 && !options.files.empty()))
        throw Failure(kWrong, "more than one curve: give documents, --expression, rows or --points alone");
    if ((!options.columns.columns.empty() || options.columns.skippedLines > 0) && options.rowsFile.empty() &&
        options.pointsFile.empty())
        throw Failure(kWrong, "--csv-columns and --csv-skip go with --rows or --points");
    const auto onlyWith = [](const std::string& given, bool fits, const char* message) {
        if (!given.empty() && !fits)
            throw Failure(kWrong, message);
    };
    onlyWith(options.interpolation, !options.pointsFile.empty(), "--interpolation goes with --points");
    onlyWith(options.start, options.hasRows(), "--start goes with --row or --rows");
    onlyWith(options.drive, described == 1, "--drive does not go with a document, which says it itself");
    onlyWith(options.variable, options.hasRows() || !options.pointsFile.empty(),
             "--over goes with rows and points; the others say it themselves");
}

void checkNoStretch(const CurveOptions& options)
{
    const int given = !options.from.empty() + !options.to.empty();
    if (given > 0 && options.expression.empty())
        throw Failure(kWrong, "--from and --to go with table, with plot and with an expression");
    if (given == 1)
        throw Failure(kWrong, "an expression takes both --from and --to here, or neither");
}

Range chosenRange(const CurveOptions& options, Range domain)
{
    const std::optional<double> from = givenNumber(options.from, "--from");
    const std::optional<double> to = givenNumber(options.to, "--to");
    if (domain.from == domain.to && (!from || !to))
        throw Failure(kWrong, "the curve does not say where it starts and ends: give --from and --to");
    const Range range{from.value_or(domain.from), to.value_or(domain.to)};
    if (range.from > range.to)
        throw Failure(kWrong, "the stretch runs from " + numberText(range.from) + " to " +
                                  numberText(range.to) + ": its start lies above its end");
    return range;
}

void warnOutside(Range range, Range domain, const std::string& place)
{
    if (domain.from < domain.to && (range.from < domain.from || range.to > domain.to))
        warn(place + "the stretch from " + numberText(range.from) + " to " + numberText(range.to) +
             " goes beyond the curve, which runs from " + numberText(domain.from) + " to " +
             numberText(domain.to));
}

Units chosenUnits(const CurveOptions& options, Curve& curve)
{
    if (options.units.empty())
        return usualUnits(curve);
    const std::vector<std::string> units = splitText(options.units, ',');
    if (units.size() != 2)
        throw Failure(kWrong, "--units takes \"x unit, value unit\", not \"" + options.units + "\"");
    return {units[0], units[1]};
}

double finiteNumber(const std::string& text, const std::string& what)
{
    const std::optional<double> number = readNumber(text);
    if (!number || !std::isfinite(*number))
        throw Failure(kWrong, what + " takes a finite number, not \"" + text + "\"");
    return *number;
}

}  // namespace mfcurve
