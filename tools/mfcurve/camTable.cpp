// SPDX-License-Identifier: MIT
#include "tools/mfcurve/camTable.h"

#include <cmath>
#include <fmt/format.h>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// The start of the message when a form of a table cannot have one x twice; null when it can. In the Modelica
// standard library only a table over time can.
const char* stoppedByJump(mf::analysis::Form form, const mf::CurveDefinition& definition)
{
    if (form == mf::analysis::Form::Points)
        return "points cannot follow";
    if (form == mf::analysis::Form::Linear && definition.over != mf::Over::Time)
        return "only a table over time can follow";
    return nullptr;
}

}  // namespace

mf::analysis::CamTable provedTable(const mf::Curve& curve, mf::analysis::Form form, double tolerance,
                                   const std::string& place)
{
    if (const char* follower = stoppedByJump(form, curve.definition())) {
        for (const mf::analysis::Break& jump : mf::analysis::breaks(curve, 0))
            throw Failure(
                kFailed, place,
                fmt::format("{} the jump of the value at x = {}", follower, shortNumberText(jump.x, 9)));
    }
    mf::analysis::CamTable table = mf::analysis::toTable(curve, form, {tolerance});
    if (table.guaranteed)
        return table;
    const std::string found =
        std::isfinite(table.bound)
            ? fmt::format("{} rows are proved to keep {}", table.x.size(), shortNumberText(table.bound, 3))
            : "nothing is proved of its formula";
    throw Failure(kFailed, place,
                  fmt::format("no table is proved to keep {}: {}", shortNumberText(tolerance), found));
}

std::string xyvaText(const mf::analysis::CamTable& table, double rate)
{
    std::string text = "x,y,v,a\n";
    for (std::size_t i = 0; i < table.x.size(); ++i) {
        for (double number : {table.x[i], table.y[i], table.d1[i] * rate, table.d2[i] * rate * rate}) {
            addNumberText(text, number);
            text += ',';
        }
        text.back() = '\n';
    }
    return text;
}

std::string modelicaText(const mf::analysis::CamTable& table)
{
    std::string text = fmt::format("#1\ndouble curve({},2)\n", table.x.size());
    for (std::size_t i = 0; i < table.x.size(); ++i)
        text += fmt::format("{} {}\n", numberText(table.x[i]), numberText(table.y[i]));
    return text;
}

}  // namespace mfcurve
