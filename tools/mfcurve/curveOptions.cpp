// SPDX-License-Identifier: MIT
#include "tools/mfcurve/curveOptions.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/mfcurve/files.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr const char* kGroup = "Curve";

Start readStart(const std::string& text)
{
    const std::vector<std::string> fields = splitText(text, ',');
    if (fields.size() > 2)
        throw UsageError("--start takes \"value\" or \"x, value\", not \"" + text + "\"");
    Start start;
    if (fields.size() == 2)
        start.x = finiteNumber(fields.front(), "--start");
    start.value = finiteNumber(fields.back(), "--start");
    return start;
}

Variable readVariable(const std::string& text)
{
    if (text.empty())
        throw UsageError("--over takes time, angle or the name of a motion result, not \"\"");
    if (text == "time" || text == "angle")
        return {text == "time" ? mf::Over::Time : mf::Over::CycleAngle, ""};
    return {mf::Over::MotionResult, text};
}

bool isName(const std::string& text)
{
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    if (text.empty() || !isLetter(text.front()))
        return false;
    for (char c : text) {
        if (!isLetter(c) && !(c >= '0' && c <= '9'))
            return false;
    }
    return true;
}

Constant readConstant(const std::string& text)
{
    const std::size_t sign = text.find('=');
    const std::string name(trimmed(std::string_view(text).substr(0, sign)));
    if (sign == std::string::npos || !isName(name))
        throw UsageError("--let takes a name and a number, such as k=12.5, not \"" + text + "\"");
    return {name, finiteNumber(std::string_view(text).substr(sign + 1), "--let " + name)};
}

void addConstant(std::vector<Constant>& constants, Constant constant)
{
    const auto isSame = [&](const Constant& other) { return isSameName(other.name, constant.name); };
    if (std::ranges::any_of(constants, isSame))
        throw UsageError("--let " + constant.name + ": the name has a number already");
    constants.push_back(std::move(constant));
}

void declareShapeOptions(CLI::App& command, CurveOptions& options)
{
    addText(command, "--expression", "TEXT", "a formula of one variable, such as 'sin(2*pi*x)'",
            options.expression)
        .group(kGroup);
    addTexts(command, "--let", "NAME=NUMBER", "a constant of the expression; may be repeated",
             [&options](const std::vector<std::string>& texts) {
                 for (const std::string& text : texts)
                     addConstant(options.constants, readConstant(text));
             })
        .group(kGroup);
    addTexts(command, "--row", "ROW",
             "a segment: 'end x, value, profile'; may be repeated, each starts where the previous one ends",
             options.rows)
        .group(kGroup);
    addText(command, "--rows", "FILE", "the same rows from a text file", options.rowsFile).group(kGroup);
    addText(command, "--start", "START", "where the rows start: 'value' or 'x, value' [0, 0]",
            [&options](const std::string& text) { options.start = readStart(text); })
        .group(kGroup);
    addText(command, "--points", "FILE", "points 'x, y' from a text file", options.pointsFile).group(kGroup);
    addText(command, "--csv-columns", "COLUMN,COLUMN",
            "the columns of a file of rows or points: numbers from 1 or names in its header",
            [&options](const std::string& text) { options.columns.columns = splitText(text, ','); })
        .group(kGroup);
    addText(command, "--csv-skip", "N", "how many lines to skip at its start",
            [&options](const std::string& text) {
                options.columns.skippedLines =
                    static_cast<int>(wholeNumber(text, "--csv-skip", 0, 1'000'000'000));
            })
        .group(kGroup);
    addChoice<mf::Interpolation>(command, "--interpolation", "how the points are joined [linear]",
                                 {{"linear", mf::Interpolation::Linear},
                                  {"cubic", mf::Interpolation::Cubic},
                                  {"akima", mf::Interpolation::Akima}},
                                 options.interpolation)
        .group(kGroup);
}

}  // namespace

void declareLibraryOption(CLI::App& command, std::vector<std::string>& folders)
{
    addText(command, "--library", "DIR;DIR",
            "folders with a SegmentTypes.txt, separated by ';'; their laws come before the built-in and "
            "shipped ones",
            [&folders](const std::string& text) {
                for (const std::string& folder : splitText(text, ';')) {
                    if (!folder.empty())
                        folders.push_back(folder);
                }
            })
        .group("Host");
}

void declareSpeedOptions(CLI::App& command, CurveOptions& options)
{
    const Option time =
        addText(command, "--cycle-time", "SECONDS",
                "for an angle curve: the time for 360 degrees; derivatives are then by seconds, x stays in "
                "degrees",
                [&options](const std::string& text) { options.cycleTime = positive(text, "--cycle-time"); })
            .group(kGroup);
    addText(command, "--rpm", "N", "the same in turns per minute",
            [&options](const std::string& text) { options.cycleTime = 60.0 / positive(text, "--rpm"); })
        .excludes(time)
        .group(kGroup);
}

void declareCyclicOption(CLI::App& command, CurveOptions& options)
{
    addFlag(command, "--cyclic", options.isPeriodic, "the curve starts again where it ends").group(kGroup);
}

void declareCurveOptions(CLI::App& command, CurveOptions& options)
{
    declareShapeOptions(command, options);
    addChoice<mf::Quantity>(command, "--drive", "what the curve drives [displacement]",
                            {{"displacement", mf::Quantity::Displacement},
                             {"velocity", mf::Quantity::Velocity},
                             {"acceleration", mf::Quantity::Acceleration},
                             {"force", mf::Quantity::Force},
                             {"torque", mf::Quantity::Torque}},
                            options.quantity)
        .group(kGroup);
    addFlag(command, "--rotary", options.isRotary, "values are in degrees, not in millimetres").group(kGroup);
    addText(command, "--over", "VARIABLE",
            "the meaning of x for rows and points [time]: time, angle or the name of a motion result",
            [&options](const std::string& text) { options.variable = readVariable(text); })
        .group(kGroup);
    addNumber(command, "--from", "X",
              "start of the range of x for table, plot and peaks, or of the expression [that of the curve]",
              options.from)
        .group(kGroup);
    addNumber(command, "--to", "X", "end of that range", options.to).group(kGroup);
    addText(command, "--name", "TEXT", "name of the curve", options.name).group(kGroup);
    declareLibraryOption(command, options.libraryFolders);
    addTexts(command, "--result", "NAME", "name of a motion result that exists; may be repeated",
             options.motionResults)
        .group("Host");
}

void checkOneSource(const CurveOptions& options)
{
    const int described = options.expression.has_value() + options.hasRows() + options.pointsFile.has_value();
    if (described == 0 && options.files.empty())
        throw UsageError("no curve: give a document, --expression, --row, --rows or --points");
    if (described > 1 || (described == 1 && !options.files.empty()))
        throw UsageError("more than one curve: give documents, --expression, rows or --points alone");
    const auto onlyWith = [](bool isGiven, bool fits, const char* message) {
        if (isGiven && !fits)
            throw UsageError(message);
    };
    onlyWith(!options.columns.columns.empty() || options.columns.skippedLines > 0,
             options.rowsFile.has_value() || options.pointsFile.has_value(),
             "--csv-columns and --csv-skip go with --rows or --points");
    onlyWith(!options.constants.empty(), options.expression.has_value(), "--let goes with --expression");
    onlyWith(options.interpolation.has_value(), options.pointsFile.has_value(),
             "--interpolation goes with --points");
    onlyWith(options.start.has_value(), options.hasRows(), "--start goes with --row or --rows");
    onlyWith(options.quantity.has_value(), described == 1,
             "--drive does not go with a document, which says it itself");
    onlyWith(options.isRotary, described == 1, "--rotary does not go with a document, which says it itself");
    onlyWith(options.variable.has_value(), options.hasRows() || options.pointsFile.has_value(),
             "--over goes with rows and points; the others say it themselves");
    onlyWith(options.isRotary, options.quantity != mf::Quantity::Force,
             "--rotary goes with --drive displacement, velocity and acceleration");
    if (std::ranges::count_if(options.files, isStandardStream) > 1)
        throw UsageError("standard input can be read only once");
}

void checkNoStretch(const CurveOptions& options)
{
    const int given = options.from.has_value() + options.to.has_value();
    if (given > 0 && !options.expression)
        throw UsageError("--from and --to go with table, plot and peaks, and with an expression");
    if (given == 1)
        throw UsageError("an expression takes both --from and --to here, or neither");
}

void checkOutput(const CurveOptions& options, const std::string& output)
{
    std::vector<std::string> inputs = options.files;
    for (const std::optional<std::string>& file : {options.rowsFile, options.pointsFile})
        inputs.push_back(file.value_or(""));
    for (const std::string& input : inputs) {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(input, ignored) &&
            std::filesystem::equivalent(input, output, ignored))
            throw UsageError("the output \"" + output + "\" is the input, which it would replace");
    }
}

mf::Range chosenRange(const CurveOptions& options, mf::Range domain)
{
    if (domain.from == domain.to && (!options.from || !options.to))
        throw UsageError("the curve does not say where it starts and ends: give --from and --to");
    const mf::Range range{options.from.value_or(domain.from), options.to.value_or(domain.to)};
    if (range.from > range.to)
        throw UsageError(fmt::format("the stretch runs from {} to {}: its start is above its end",
                                     numberText(range.from), numberText(range.to)));
    return range;
}

double rateOf(const CurveOptions& options, const mf::CurveDefinition& definition, const std::string& place)
{
    if (!options.cycleTime)
        return 1.0;
    if (definition.over != mf::Over::CycleAngle)
        throwWrong(place,
                   "--cycle-time and --rpm go with curves over the cycle angle, and this one is over " +
                       mf::drawing::variableName(definition));
    return 360.0 / *options.cycleTime;
}

mf::drawing::Units unitsOf(const CurveOptions& options, const mf::CurveDefinition& definition)
{
    mf::drawing::Units units = mf::drawing::usualUnits(definition);
    if (!options.cycleTime)
        return units;
    units.rate = "s";
    return units;
}

}  // namespace mfcurve
