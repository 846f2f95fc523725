// SPDX-License-Identifier: MIT
#include "tools/mfcurve/violations.h"

#include <cmath>
#include <limits>

#include "mfcurves/analysis/analysis.h"
#include "tools/mfcurve/failure.h"

namespace mfcurve {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// The order of a curve that is its velocity (1), acceleration (2) or jerk (3).
int orderOf(const mf::CurveDefinition& definition, int motionOrder, const std::string& place)
{
    constexpr const char* kNames[] = {"", "velocity", "acceleration", "jerk"};
    const bool isMotion =
        definition.quantity != mf::Quantity::Force && definition.quantity != mf::Quantity::Torque;
    const int order = motionOrder - (definition.quantity == mf::Quantity::Velocity       ? 1
                                     : definition.quantity == mf::Quantity::Acceleration ? 2
                                                                                         : 0);
    if (!isMotion || order < 0)
        throw Failure(kWrong, place, std::string("the curve has no ") + kNames[motionOrder]);
    return order;
}

// Where an order leaves [low, high], which are by the unit of the curve; what is stored is times `factor`.
void addBeyond(std::vector<Violation>& violations, const mf::Curve& curve, int order, mf::Range limits,
               double factor)
{
    for (const mf::Range& range : mf::analysis::beyond(curve, order, limits.from, limits.to)) {
        Violation violation{order, kNone, range.from, range.to, kNone, kNone};
        // An impulse alone is worse than any number.
        if (range.from < range.to) {
            const auto summary = mf::analysis::summarize(curve, range)[static_cast<std::size_t>(order)];
            const bool isLow = limits.from - summary.least.y > summary.greatest.y - limits.to;
            const mf::analysis::Peak& worst = isLow ? summary.least : summary.greatest;
            violation.limit = (isLow ? limits.from : limits.to) * factor;
            violation.worst = worst.y * factor;
            violation.worstX = worst.x;
        } else {
            violation.limit = limits.to * factor;
        }
        violations.push_back(violation);
    }
}

}  // namespace

std::vector<Violation> violationsOf(const mf::Curve& curve, const Demands& demands, double rate,
                                    const std::string& place)
{
    std::vector<Violation> violations;
    if (demands.values)
        addBeyond(violations, curve, 0, *demands.values, 1.0);
    const std::optional<double> limits[] = {demands.velocity, demands.acceleration, demands.jerk};
    for (int motionOrder = 1; motionOrder <= 3; ++motionOrder) {
        if (const auto limit = limits[motionOrder - 1]) {
            const int order = orderOf(curve.definition(), motionOrder, place);
            const double factor = std::pow(rate, order);
            addBeyond(violations, curve, order, {-*limit / factor, *limit / factor}, factor);
        }
    }
    if (demands.continuity) {
        for (const mf::analysis::Break& found : mf::analysis::breaks(curve, *demands.continuity))
            violations.push_back({found.lowest, kNone, found.x, found.x, kNone, kNone});
    }
    if (demands.areDerivativesChecked) {
        const mf::analysis::DerivativeCheck check = mf::analysis::checkDerivatives(curve);
        if (!check.ok)
            violations.push_back({check.worstOrder, kNone, check.worstX, check.worstX,
                                  check.stated * std::pow(rate, check.worstOrder), check.worstX});
    }
    return violations;
}

}  // namespace mfcurve
