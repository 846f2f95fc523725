// SPDX-License-Identifier: MIT
#include <algorithm>
#include <fmt/format.h>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/interfaces/MMEP_WString.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/platform/encoding.h"
#include "tools/mfcurve/expressionText.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// Replaces each name of --let by its number. A name before a bracket is a function and is not replaced.
std::string withConstants(std::string_view text, const std::vector<Constant>& constants)
{
    std::string result;
    std::vector<bool> isUsed(constants.size(), false);
    while (!text.empty()) {
        const std::string_view word = text.substr(0, wordLength(text));
        text.remove_prefix(word.size());
        const auto found = std::find_if(constants.begin(), constants.end(),
                                        [&](const Constant& c) { return isSameName(c.name, word); });
        const bool isCall = trimmed(text).starts_with('(');
        if (found == constants.end() || isCall) {
            result += word;
            continue;
        }
        isUsed[static_cast<std::size_t>(found - constants.begin())] = true;
        result += "(" + numberText(found->value) + ")";
    }
    for (std::size_t i = 0; i < constants.size(); ++i) {
        if (!isUsed[i])
            throw UsageError("--let " + constants[i].name + ": the expression has no such name");
    }
    return result;
}

// The name in the text decides what x means; an unknown name, such as x, means the time.
Variable variableOf(const std::string& text)
{
    MotionMEParser parser;
    if (!parser.parse(CString(mf::platform::widen(text)), nullptr, nullptr) || parser.getParamsNum() != 1)
        return {};
    const MMEP_WString& parameter = parser.getParam(0);
    if (parameter.isCycleAngle())
        return {mf::Over::CycleAngle, ""};
    if (!parameter.isResultObject())
        return {};
    CString name = parameter.text;
    name.TrimLeft(L'{');
    name.TrimRight(L'}');
    return {mf::Over::MotionResult, mf::platform::toUtf8(name.View())};
}

}  // namespace

Description describedExpression(const CurveOptions& options)
{
    Description description;
    mf::CurveDefinition::Expression shape;
    shape.text = withConstants(*options.expression, options.constants);
    if (options.from && options.to) {
        const mf::Range range = chosenRange(options, {0.0, 0.0});
        shape.from = range.from;
        shape.to = range.to;
    }
    const Variable variable = variableOf(shape.text);
    description.definition.shape = shape;
    description.definition.over = variable.over;
    description.definition.motionResult = variable.motionResult;
    description.definition.name = *options.expression;
    description.place = "--expression";
    return description;
}

}  // namespace mfcurve
