// SPDX-License-Identifier: MIT
#include <cmath>
#include <memory>

#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/samples.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"
#include "tools/mfcurve/violations.h"

namespace mfcurve {

namespace {

struct CheckOptions {
    CurveOptions curve;
    Demands demands;
    Format format = Format::Text;
};

std::string jsonViolation(const Violation& violation)
{
    return jsonObject({{"order", std::to_string(violation.order)},
                       {"limit", jsonNumber(violation.limit)},
                       {"from", jsonNumber(violation.from)},
                       {"to", jsonNumber(violation.to)},
                       {"worst", jsonNumber(violation.worst)},
                       {"worst_x", jsonNumber(violation.worstX)}});
}

std::string sentence(const mf::CurveDefinition& definition, const Violation& violation)
{
    const std::string quantity = mf::drawing::quantityName(definition, violation.order);
    const std::string place = violation.from == violation.to
                                  ? "at " + shortNumberText(violation.from, 9)
                                  : fmt::format("from {} to {}", shortNumberText(violation.from, 9),
                                                shortNumberText(violation.to, 9));
    if (violation.order >= kOrders)
        return fmt::format("order {} jumps {}", violation.order, place);
    if (std::isnan(violation.limit))
        return fmt::format(
            "{}: order {} {} {}", quantity, violation.order,
            std::isnan(violation.worst) ? "jumps" : "differs from differences of the order below it", place);
    if (std::isnan(violation.worst))
        return fmt::format("{}: an impulse {} breaks the limit {}", quantity, place,
                           shortNumberText(violation.limit, 9));
    return fmt::format("{}: beyond {} {}, worst {} at {}", quantity, shortNumberText(violation.limit, 9),
                       place, shortNumberText(violation.worst, 9), shortNumberText(violation.worstX, 9));
}

int runCheck(CheckOptions& options)
{
    checkNoStretch(options.curve);
    if (options.curve.isPeriodic && !options.demands.continuity && options.demands.isEmpty())
        options.demands.continuity = 0;
    options.demands.isCyclic = options.curve.isPeriodic;
    if (options.demands.isEmpty())
        throw UsageError("check needs something to check, such as --max-velocity 100 or --continuity 2");
    const Inputs inputs = readInputs(options.curve);
    int status = inputs.status;
    std::vector<std::string> objects;
    for (const Input& input : inputs.curves) {
        const mf::CurveDefinition& definition = input.curve.definition();
        const double rate = rateOf(options.curve, definition, input.place);
        const std::vector<Violation> violations =
            violationsOf(input.curve, options.demands, rate, input.place);
        std::vector<std::string> list;
        if (options.format == Format::Text) {
            printSection(options.curve, input);
            print(violations.empty() ? "ok\n" : "");
        }
        for (const Violation& violation : violations) {
            if (options.format == Format::Text)
                print(sentence(definition, violation) + "\n");
            list.push_back(jsonViolation(violation));
        }
        if (!violations.empty())
            status = kFailed;
        else if (!areAllFound(input.curve, options.demands, rate, input.place))
            warn(input.place, "no violation was found, but it is not proved that there is none");
        objects.push_back(jsonObject({{"file", jsonFile(input)},
                                      {"ok", jsonTruth(violations.empty())},
                                      {"violations", jsonArray(list)}}));
    }
    if (options.format == Format::Json)
        print(jsonDocument(objects));
    return status;
}

double limit(const std::string& text, const std::string& option)
{
    const double number = finiteNumber(text, option);
    if (!(number >= 0.0))
        throw UsageError(option + " takes a number that is not below 0, not \"" + text + "\"");
    return number;
}

mf::Range valueRange(const std::string& text)
{
    const std::vector<std::string> ends = splitText(text, ',');
    if (ends.size() != 2)
        throw UsageError("--range takes the least and the greatest value, such as 0,25, not \"" + text +
                         "\"");
    const mf::Range range{finiteNumber(ends[0], "--range"), finiteNumber(ends[1], "--range")};
    if (range.from > range.to)
        throw UsageError("--range takes the least value first, not \"" + text + "\"");
    return range;
}

}  // namespace

void declareCheck(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<CheckOptions>();
    Demands& demands = options->demands;
    CLI::App& command = addCommand(app, "check", "Checks limits and continuity of curves");
    addArguments(command, "FILE", options->curve.files, "documents; '-' is standard input");
    const auto addLimit = [&](const std::string& name, const char* help, std::optional<double>& target) {
        addText(command, name, "NUMBER", help,
                [&target, name](const std::string& text) { target = limit(text, name); });
    };
    addLimit("--max-velocity", "the largest magnitude of the velocity", demands.velocity);
    addLimit("--max-acceleration", "that of the acceleration", demands.acceleration);
    addLimit("--max-jerk", "that of the jerk", demands.jerk);
    addText(command, "--range", "LO,HI", "the least and the greatest value",
            [&demands](const std::string& text) { demands.values = valueRange(text); });
    addText(command, "--continuity", "N", "orders 0 to N do not jump, N from 0 to 4",
            [&demands](const std::string& text) {
                demands.continuity = static_cast<int>(wholeNumber(text, "--continuity", 0, 4));
            });
    addFlag(command, "--derivatives", demands.areDerivativesChecked,
            "each derivative agrees with differences of the next lower order");
    addFormat(command, options->format);
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    declareCyclicOption(command, options->curve);
    addNotes(
        command,
        "Prints every stretch that violates a limit; the exit status is then 1. --cyclic includes the step "
        "from the\n"
        "end to the start; alone it checks continuity 0. An impulse violates every limit. A warning says "
        "where\n"
        "the result is not proved, for example because the curve has a pole. Examples:\n"
        "  mfcurve check cam.xml --max-velocity 1e6 --max-acceleration 1e9 --rpm 120\n"
        "  mfcurve check cam.xml --continuity 1 --cyclic");
    whenChosen(command, [options, &action] { action = [options] { return runCheck(*options); }; });
}

}  // namespace mfcurve
