// SPDX-License-Identifier: MIT
#include "tools/mfcurve/sources.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "tools/mfcurve/caret.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/nearest.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// Replaces "row 3" or "point 3", a place in the definition, by the place in the user's file or option.
mf::Problem placed(const Description& description, mf::Problem problem)
{
    const std::size_t blank = problem.place.rfind(' ');
    const auto number =
        blank == std::string::npos ? std::nullopt : readNumber(problem.place.substr(blank + 1));
    const bool isPart = problem.place.starts_with("row ") || problem.place.starts_with("point ");
    if (isPart && number && *number < static_cast<double>(description.places.size()))
        problem.place = description.places[static_cast<std::size_t>(*number)];
    else if (!description.place.empty())
        problem.place = description.place + (problem.place.empty() ? "" : ", ") + problem.place;
    const auto* expression = std::get_if<mf::CurveDefinition::Expression>(&description.definition.shape);
    if (expression != nullptr && number && *number >= 1.0)
        problem.message += caretBelow(expression->text, static_cast<std::size_t>(*number));
    return problem;
}

// A motion result may have any name, so a slip in "angle" is only a warning.
void warnOfSlip(const CurveOptions& options)
{
    if (!options.variable || options.variable->over != mf::Over::MotionResult)
        return;
    const std::string& name = options.variable->motionResult;
    const std::string advice = nearestAdvice(name, {"time", "angle"});
    if (!advice.empty() && std::ranges::find(options.motionResults, name) == options.motionResults.end())
        warn("--over", "\"" + name + "\" is the name of a motion result" + advice);
}

Description describe(const CurveOptions& options)
{
    warnOfSlip(options);
    Description description = options.expression  ? describedExpression(options)
                              : options.hasRows() ? describedRows(options)
                                                  : describedPoints(options);
    mf::CurveDefinition& definition = description.definition;
    definition.quantity = options.quantity.value_or(mf::Quantity::Displacement);
    definition.rotary = options.isRotary;
    if (options.variable) {
        definition.over = options.variable->over;
        definition.motionResult = options.variable->motionResult;
    }
    if (options.name)
        definition.name = *options.name;
    return description;
}

mf::Curve named(const mf::Curve& curve, const std::optional<std::string>& name)
{
    if (!name)
        return curve;
    mf::CurveDefinition definition = curve.definition();
    definition.name = *name;
    return mf::Curve(definition);
}

void reportAll(const Failure& failure)
{
    for (const mf::Problem& problem : failure.problems())
        report(problem);
}

}  // namespace

std::vector<mf::Problem> placed(const std::string& path, std::vector<mf::Problem> problems)
{
    const std::string name = inputName(path);
    for (mf::Problem& problem : problems) {
        if (!problem.place.starts_with(name))
            problem.place = name + (problem.place.empty() ? "" : ": ") + problem.place;
    }
    return problems;
}

mf::Curve makeCurve(const Description& description)
{
    try {
        return mf::Curve(description.definition);
    } catch (const mf::CurveError& error) {
        std::vector<mf::Problem> problems;
        for (const mf::Problem& problem : error.problems())
            problems.push_back(placed(description, problem));
        throw Failure(kWrong, problems);
    }
}

Inputs readInputs(const CurveOptions& options)
{
    checkOneSource(options);
    Inputs inputs;
    const auto cyclic = [&](const mf::Curve& curve) {
        return options.isPeriodic ? curve.with(mf::Outside::Repeat) : curve;
    };
    if (options.files.empty()) {
        inputs.curves.push_back({cyclic(makeCurve(describe(options))), "", ""});
        return inputs;
    }
    for (const std::string& file : options.files) {
        try {
            const mf::Curve curve = named(readDocument(file, options), options.name);
            inputs.curves.push_back({cyclic(curve), file, inputName(file)});
        } catch (const Failure& failure) {
            reportAll(failure);
            inputs.status = failure.status();
        }
    }
    return inputs;
}

void printSection(const CurveOptions& options, const Input& input)
{
    if (options.files.size() > 1)
        print("# " + input.file + "\n");
}

std::string jsonFile(const Input& input)
{
    return input.file.empty() ? "null" : jsonText(input.file);
}

mf::Range domainOf(const mf::Curve& curve)
{
    return {curve.firstX(), curve.lastX()};
}

void warnOutside(mf::Range range, const Input& input)
{
    const mf::Range domain = domainOf(input.curve);
    if (domain.from < domain.to && (range.from < domain.from || range.to > domain.to))
        warn(input.place,
             fmt::format("the stretch from {} to {} goes beyond the curve, which runs from {} to {}",
                         numberText(range.from), numberText(range.to), numberText(domain.from),
                         numberText(domain.to)));
}

}  // namespace mfcurve
