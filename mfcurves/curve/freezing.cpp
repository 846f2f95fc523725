// SPDX-License-Identifier: MIT

#include "mfcurves/curve/freezing.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "mfcurves/curve/FrozenCurve.h"
#include "mfcurves/curve/problems.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/segments/lawText.h"

namespace mf::curve {
namespace {

using engine::Formula;

std::string place(const char* what, std::size_t number)
{
    return std::string(what) + ' ' + std::to_string(number);
}

void report(std::vector<Problem>& problems, std::string where, std::string message)
{
    problems.push_back({Problem::Level::Error, std::move(where), std::move(message)});
}

void checkNumber(std::vector<Problem>& problems, const std::string& where, const char* what, double number)
{
    if (!std::isfinite(number))
        report(problems, where,
               std::string(what) + " is " + shortNumber(number) + ", which is not a finite number");
}

// A parser's reason as the message of a problem.
std::string sentence(const engine::ParseError& error)
{
    const std::string message = messageOf(error.message);
    return error.expected.empty() ? message : message + "; expected " + error.expected;
}

}  // namespace

std::string allDigits(double number)
{
    char buffer[std::numeric_limits<double>::max_exponent10 + 1100];
    const auto result = std::to_chars(std::begin(buffer), std::end(buffer), number, std::chars_format::fixed);
    return {buffer, result.ptr};
}

bool lawFormula(const Law& law, double startX, double startValue, const CurveRow& row, bool sixDecimals,
                FormulaText& formula)
{
    const auto written = [&](double number) {
        return platform::widen(sixDecimals ? platform::sixDecimals(number) : allDigits(number));
    };
    const segments::EndPoints numbers = {written(startX), written(startValue), written(row.endX),
                                         written(row.value)};
    formula.hasVariable = true;
    formula.variable = platform::widen(law.record.independentVariable.c_str());
    return segments::enterNumbers(law.record, numbers, formula.text);
}

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
    FrozenRows frozen;
    LawFinder laws(shape.laws);
    checkNumber(problems, "row 0", "the start x", shape.startX);
    checkNumber(problems, "row 0", "the start value", shape.startValue);
    if (shape.rows.empty())
        report(problems, "", "the curve has no rows");

    double startX = shape.startX;
    double startValue = shape.startValue;
    for (std::size_t i = 0; i < shape.rows.size(); ++i) {
        const CurveRow& row = shape.rows[i];
        const std::string where = place("row", i + 1);
        checkNumber(problems, where, "the end x", row.endX);
        checkNumber(problems, where, "the value", row.value);
        if (row.endX < startX)
            report(
                problems, where,
                "the row ends at " + shortNumber(row.endX) + ", before it starts at " + shortNumber(startX));
        const LawFinder::Found& entry = laws.named(row.profile);
        if (!entry.problem.empty()) {
            report(problems, where, entry.problem);
        } else if (row.endX > startX) {
            FormulaText text;
            if (!lawFormula(*entry.law, startX, startValue, row, shape.sixDecimals, text)) {
                report(problems, where,
                       "the formula of \"" + row.profile + "\" is longer than the engine takes");
            } else {
                Formula::Result formula = Formula::compile(text.text, text.variable);
                if (const auto* error = std::get_if<engine::ParseError>(&formula))
                    report(problems, where,
                           "the law \"" + row.profile + "\" does not compile: " + sentence(*error));
                else {
                    frozen.starts.push_back(startX);
                    frozen.rows.push_back({row.endX, static_cast<int>(i) + 1,
                                           std::get<std::shared_ptr<const Formula>>(std::move(formula))});
                }
            }
        }
        startX = row.endX;
        startValue = row.value;
    }
    if (problems.empty() && frozen.rows.empty())
        report(problems, "", "no row has a length");
    if (!problems.empty())
        return;
    firstX_ = frozen.starts.front();
    lastX_ = frozen.rows.back().end;
    pieces_ = std::move(frozen);
    for (LawText& text : laws.borrowedTexts())
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
        checkNumber(problems, place("point", i + 1), "x", shape.x[i]);
        if (i < shape.y.size())
            checkNumber(problems, place("point", i + 1), "y", shape.y[i]);
        if (i > 0 && shape.x[i] <= shape.x[i - 1])
            report(problems, place("point", i + 1),
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
    checkNumber(problems, "", "the start of the range", shape.from);
    checkNumber(problems, "", "the end of the range", shape.to);
    if (shape.from > shape.to)
        report(
            problems, "",
            "the range starts at " + shortNumber(shape.from) + ", above its end at " + shortNumber(shape.to));
    Formula::Result formula = Formula::compile(platform::widen(shape.text), std::nullopt);
    if (const auto* error = std::get_if<engine::ParseError>(&formula)) {
        if (shape.text.empty())
            report(problems, "", "the expression is empty");
        else
            report(problems, place("character", error->offset + 1), sentence(*error));
    } else if (std::get<0>(formula)->parameterCount() > 1) {
        report(problems, "",
               "the expression has " + std::to_string(std::get<0>(formula)->parameterCount()) +
                   " variables; a curve has one");
    }
    if (!problems.empty())
        return;
    firstX_ = shape.from;
    lastX_ = shape.to;
    pieces_ = FrozenExpression{shape.from, shape.to, std::get<0>(std::move(formula))};
}

}  // namespace mf::curve
