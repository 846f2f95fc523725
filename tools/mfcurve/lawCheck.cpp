// SPDX-License-Identifier: MIT
#include "tools/mfcurve/lawCheck.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "mfcurves/analysis/analysis.h"
#include "tools/mfcurve/samples.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// A smaller difference counts as zero: rounding over [0, 1] stays far below it.
constexpr double kNothing = 1e-9;

std::string vanishingOrders(const mf::CurveValues& values)
{
    std::string orders;
    for (int order = 1; order < kOrders; ++order) {
        if (std::fabs(values[order]) < kNothing)
            orders += " d" + std::to_string(order);
    }
    return orders.empty() ? " none" : orders;
}

std::string endText(const char* verb, double value, double wanted)
{
    if (std::fabs(value - wanted) < kNothing)
        return fmt::format("{} at {}", verb, shortNumberText(wanted));
    return fmt::format("{} at {} and not at {}", verb, shortNumberText(value), shortNumberText(wanted));
}

// What is wrong with a law; empty for a sound one.
std::string faultOf(const mf::Curve& curve, const mf::CurveValues& start, const mf::CurveValues& end)
{
    if (!(std::fabs(start.y) < kNothing) || !(std::fabs(end.y - 1.0) < kNothing))
        return "; it does not run from 0 to 1";
    if (!isFinite(start, kOrders) || !isFinite(end, kOrders))
        return "; an end has a derivative that is not finite";
    for (const mf::analysis::Break& found : mf::analysis::breaks(curve, 0))
        return fmt::format("; it jumps at {}", shortNumberText(found.x));
    return "";
}

// The state at an end of a law, given up to which order it agrees with rest.
const char* endState(int continuity)
{
    constexpr const char* kStates[] = {"a jump", "a velocity", "rest with an acceleration", "rest"};
    return kStates[std::clamp(continuity, -1, 2) + 1];
}

}  // namespace

std::string motionOf(const mf::Law& law)
{
    constexpr const char* kNames[] = {"value", "velocity", "acceleration"};
    const mf::analysis::LawFactors factors = mf::analysis::factors({law.name, law.text});
    std::string text =
        fmt::format("from {} to {}", endState(factors.startContinuity), endState(factors.endContinuity));
    if (factors.innerContinuity < 2)
        text += fmt::format("; the {} jumps inside", kNames[factors.innerContinuity + 1]);
    return text;
}

LawCheck checkLaw(const mf::Law& law)
{
    mf::CurveDefinition definition;
    definition.shape = mf::SegmentShape{0.0, 0.0, {{1.0, 1.0, law.name}}, {{law.name, law.text}}, false};
    try {
        const mf::Curve curve(definition);
        const mf::CurveValues start = curve.at(0.0, mf::Side::Right);
        const mf::CurveValues end = curve.at(1.0, mf::Side::Left);
        const std::string fault = faultOf(curve, start, end);
        return {fault.empty(), fmt::format("compiles, {}, {}; vanish at the start:{}, at the end:{}{}",
                                           endText("starts", start.y, 0.0), endText("ends", end.y, 1.0),
                                           vanishingOrders(start), vanishingOrders(end), fault)};
    } catch (const mf::CurveError& error) {
        return {false, error.problems().front().message};
    }
}

}  // namespace mfcurve
