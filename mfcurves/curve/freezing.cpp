// SPDX-License-Identifier: MIT

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/RowFreezer.h"
#include "mfcurves/curve/problems.h"
#include "mfcurves/engine/parser.h"
#include "mfcurves/platform/encoding.h"

namespace mf::curve {
namespace {

// The variables of an expression that compiles, as a list for a message.
std::string variablesOf(const std::string& text)
{
    constexpr std::size_t kMostNames = 5;
    const auto parsed = engine::parseText(platform::widen(text), std::nullopt);
    const auto& names = std::get<engine::ParsedText>(parsed).parameters.list();
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kMostNames); ++i)
        list += (i == 0 ? "" : ", ") + platform::toUtf8(names[i]);
    return list + (names.size() > kMostNames ? ", ..." : "");
}

}  // namespace

FrozenCurve::FrozenCurve(CurveDefinition definition, std::vector<Problem> warnings)
    : definition_(std::move(definition)), warnings_(std::move(warnings))
{
    std::vector<Problem> problems;
    if (definition_.over == Over::MotionResult && definition_.motionResult.empty())
        report(problems, "", "the curve runs over a motion result, whose name is missing");
    std::visit([&](const auto& shape) { iFreeze(shape, problems); }, definition_.shape);
    if (!problems.empty())
        throw CurveError(std::move(problems));
}

void FrozenCurve::iFreeze(const SegmentShape& shape, std::vector<Problem>& problems)
{
    RowFreezer freezer(shape, problems);
    FrozenRows rows = freezer.freeze();
    if (!problems.empty())
        return;
    firstX_ = rows.starts.first();
    lastX_ = rows.starts.last();
    pieces_ = std::move(rows);
    for (LawText& text : freezer.borrowedTexts())
        std::get<SegmentShape>(definition_.shape).laws.push_back(std::move(text));
}

void FrozenCurve::iFreeze(const PointShape& shape, std::vector<Problem>& problems)
{
    if (shape.x.size() != shape.y.size())
        report(problems, "",
               "there are " + std::to_string(shape.x.size()) + " x and " + std::to_string(shape.y.size()) +
                   " y");
    else if (shape.x.empty())
        report(problems, "", "the curve has no points");
    for (std::size_t i = 0; i < shape.x.size(); ++i) {
        const Place where = {"point", i + 1};
        checkNumber(problems, where, "x", shape.x[i]);
        if (i < shape.y.size())
            checkNumber(problems, where, "y", shape.y[i]);
        if (i > 0 && shape.x[i] <= shape.x[i - 1])
            report(problems, where,
                   "x is " + shortNumber(shape.x[i]) + ", which is not above " + shortNumber(shape.x[i - 1]) +
                       " of the previous point");
    }
    if (!problems.empty())
        return;
    const int kind = shape.interpolation == Interpolation::Akima   ? 0
                     : shape.interpolation == Interpolation::Cubic ? 1
                                                                   : 2;
    firstX_ = shape.x.front();
    lastX_ = shape.x.back();
    pieces_ = host::SplinePieces(shape.x, shape.y, kind);
}

void FrozenCurve::iFreeze(const ExpressionShape& shape, std::vector<Problem>& problems)
{
    checkNumber(problems, Place{}, "the start of the range", shape.from);
    checkNumber(problems, Place{}, "the end of the range", shape.to);
    if (shape.from > shape.to)
        report(
            problems, "",
            "the range starts at " + shortNumber(shape.from) + ", above its end at " + shortNumber(shape.to));
    engine::Formula::Result formula = engine::Formula::compile(platform::widen(shape.text), std::nullopt);
    if (const auto* error = std::get_if<engine::ParseError>(&formula)) {
        if (shape.text.empty())
            report(problems, "", "the expression is empty");
        else
            report(problems, Place{"character", error->offset + 1}, messageOf(*error));
    } else if (std::get<0>(formula)->parameterCount() > 1) {
        report(problems, "",
               "the expression has " + std::to_string(std::get<0>(formula)->parameterCount()) +
                   " variables, " + variablesOf(shape.text) + "; a curve has one");
    }
    if (!problems.empty())
        return;
    firstX_ = shape.from;
    lastX_ = shape.to;
    pieces_ = FrozenExpression{std::get<0>(std::move(formula))};
}

}  // namespace mf::curve
