// SPDX-License-Identifier: MIT
#include "tools/mfcurve/curveFacts.h"

#include <algorithm>
#include <fmt/format.h>

#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/seams.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr const char* kInterpolations[] = {"linear", "cubic", "akima"};

std::string labelled(std::string_view label, std::string_view text)
{
    return fmt::format("{:<15}{}\n", label, text);
}

// Pads a column with blanks to its width, with at least one blank.
std::string column(std::string text, std::size_t width = 14)
{
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

std::string numberColumn(double number)
{
    return column(shortNumberText(number));
}

std::string kindText(const mf::CurveDefinition& definition)
{
    if (const auto* rows = std::get_if<mf::CurveDefinition::Segments>(&definition.shape))
        return fmt::format("segments, {} rows with the start", rows->rows.size() + 1);
    if (const auto* points = std::get_if<mf::CurveDefinition::Points>(&definition.shape))
        return fmt::format("data points, {} points joined {}", points->x.size(),
                           kInterpolations[static_cast<int>(points->interpolation)]);
    return "expression";
}

const char* kindName(const mf::CurveDefinition& definition)
{
    constexpr const char* kNames[] = {"segments", "points", "expression"};
    return kNames[definition.shape.index()];
}

std::string driveText(const mf::CurveDefinition& definition)
{
    const std::string unit = mf::drawing::usualUnits(definition).value;
    return mf::drawing::quantityName(definition, 0) + (unit.empty() ? "" : ", usually in " + unit);
}

std::string variableText(const mf::CurveDefinition& definition)
{
    const std::string name = mf::drawing::variableName(definition);
    return definition.over == mf::Over::MotionResult ? "motion result {" + name + "}" : name;
}

std::string domainText(const mf::Curve& curve)
{
    if (curve.firstX() == curve.lastX() &&
        std::holds_alternative<mf::CurveDefinition::Expression>(curve.definition().shape))
        return "not stated";
    return shortNumberText(curve.firstX()) + " to " + shortNumberText(curve.lastX());
}

std::string withoutEndBlanks(const std::string& text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string rowLine(std::size_t row, double from, double to, double value, const std::string& profile)
{
    return labelled("", withoutEndBlanks(column(std::to_string(row), 6) + numberColumn(from) +
                                         numberColumn(to) + numberColumn(value) + profile));
}

std::string rowLines(const mf::SegmentShape& shape)
{
    std::string text =
        labelled("rows", column("row", 6) + column("from") + column("to") + column("value") + "profile");
    text += rowLine(0, shape.startX, shape.startX, shape.startValue, "");
    double start = shape.startX;
    for (std::size_t i = 0; i < shape.rows.size(); ++i) {
        const mf::CurveRow& row = shape.rows[i];
        text += rowLine(i + 1, start, row.endX, row.value, row.profile);
        start = row.endX;
    }
    return text;
}

std::string seamLine(const Seam& seam)
{
    std::string text = numberColumn(seam.x);
    for (int order = 0; order < 4; ++order)
        text += numberColumn(seam.jump[order]);
    return labelled(seam.isCycleEnd ? "end to start" : "", withoutEndBlanks(text));
}

std::string seamLines(const mf::Curve& curve)
{
    const std::vector<Seam> seams = seamsOf(curve);
    if (seams.empty())
        return "";
    std::string text =
        labelled("jumps at seams", column("x") + column("value") + column("d1") + column("d2") + "d3");
    for (const Seam& seam : seams)
        text += seamLine(seam);
    return text;
}

std::string problemText(const mf::Problem& problem)
{
    return problem.place + (problem.place.empty() ? "" : ": ") + problem.message;
}

std::string jsonProblems(const std::vector<mf::Problem>& problems)
{
    std::vector<std::string> list;
    list.reserve(problems.size());
    for (const mf::Problem& problem : problems)
        list.push_back(
            jsonObject({{"place", jsonText(problem.place)}, {"message", jsonText(problem.message)}}));
    return jsonArray(list);
}

std::string jsonRows(const mf::CurveDefinition& definition)
{
    const auto* shape = std::get_if<mf::CurveDefinition::Segments>(&definition.shape);
    if (shape == nullptr)
        return "[]";
    std::vector<std::string> rows;
    double start = shape->startX;
    for (std::size_t i = 0; i < shape->rows.size(); ++i) {
        const mf::CurveRow& row = shape->rows[i];
        rows.push_back(jsonObject({{"row", std::to_string(i + 1)},
                                   {"from", jsonNumber(start)},
                                   {"to", jsonNumber(row.endX)},
                                   {"value", jsonNumber(row.value)},
                                   {"profile", jsonText(row.profile)}}));
        start = row.endX;
    }
    return jsonArray(rows);
}

std::string jsonSeams(const mf::Curve& curve)
{
    std::vector<std::string> seams;
    for (const Seam& seam : seamsOf(curve))
        seams.push_back(jsonObject({{"x", jsonNumber(seam.x)},
                                    {"jump", jsonValues(seam.jump)},
                                    {"cycle_end", jsonTruth(seam.isCycleEnd)}}));
    return jsonArray(seams);
}

std::string jsonMissed(const mf::Curve& curve)
{
    std::vector<std::string> missed;
    for (const std::string& text : missedValues(curve))
        missed.push_back(jsonText(text));
    return jsonArray(missed);
}

}  // namespace

std::string factsAsText(const mf::Curve& curve, const std::vector<mf::Problem>& problems)
{
    const mf::CurveDefinition& definition = curve.definition();
    std::string text = labelled("name", definition.name) + labelled("kind", kindText(definition)) +
                       labelled("drives", driveText(definition)) +
                       labelled("variable", variableText(definition)) + labelled("domain", domainText(curve));
    if (const auto* expression = std::get_if<mf::CurveDefinition::Expression>(&definition.shape))
        text += labelled("expression", expression->text);
    text += labelled("valid", problems.empty() ? "yes" : "no");
    for (const mf::Problem& problem : problems)
        text += labelled("", problemText(problem));
    for (const std::string& missed : missedValues(curve))
        text += labelled("misses", missed);
    if (const auto* rows = std::get_if<mf::CurveDefinition::Segments>(&definition.shape))
        text += rowLines(*rows) + seamLines(curve);
    return text;
}

std::string factsAsJson(const Input& input, const std::vector<mf::Problem>& problems)
{
    const mf::CurveDefinition& definition = input.curve.definition();
    return jsonObject({{"file", jsonFile(input)},
                       {"name", jsonText(definition.name)},
                       {"kind", jsonText(kindName(definition))},
                       {"drives", jsonText(mf::drawing::quantityName(definition, 0))},
                       {"unit", jsonText(mf::drawing::usualUnits(definition).value)},
                       {"variable", jsonText(mf::drawing::variableName(definition))},
                       {"from", jsonNumber(input.curve.firstX())},
                       {"to", jsonNumber(input.curve.lastX())},
                       {"valid", jsonTruth(problems.empty())},
                       {"problems", jsonProblems(problems)},
                       {"rows", jsonRows(definition)},
                       {"seams", jsonSeams(input.curve)},
                       {"misses", jsonMissed(input.curve)}});
}

std::string unsoundAsText()
{
    return labelled("valid", "no");
}

std::string unsoundAsJson(const std::string& file, const std::vector<mf::Problem>& problems)
{
    return jsonObject({{"file", jsonText(file)}, {"valid", "false"}, {"problems", jsonProblems(problems)}});
}

}  // namespace mfcurve
