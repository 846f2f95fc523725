// SPDX-License-Identifier: MIT
#include "tools/mfcurve/violations.h"

#include <cmath>
#include <limits>

#include "mfcurves/analysis/requirements.h"
#include "tools/mfcurve/failure.h"

namespace mfcurve {

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// The order of a curve that is its velocity (motionOrder 1), acceleration (2) or jerk (3).
int orderOf(const mf::CurveDefinition& definition, int motionOrder, const std::string& place)
{
    constexpr const char* kNames[] = {"", "velocity", "acceleration", "jerk"};
    const bool isMotion =
        definition.quantity != mf::Quantity::Force && definition.quantity != mf::Quantity::Torque;
    const int order = motionOrder - (definition.quantity == mf::Quantity::Velocity       ? 1
                                     : definition.quantity == mf::Quantity::Acceleration ? 2
                                                                                         : 0);
    if (!isMotion || order < 0)
        throwWrong(place, std::string("the curve has no ") + kNames[motionOrder]);
    return order;
}

mf::analysis::Limits limitOf(int motionOrder, double magnitude)
{
    mf::analysis::Limits limits;
    (motionOrder == 1 ? limits.velocity : motionOrder == 2 ? limits.acceleration : limits.jerk) = magnitude;
    return limits;
}

// Adds the ranges where a requirement is violated. The requirement is in units of the curve; the stored
// numbers are multiplied by `factor`.
void addBroken(std::vector<Violation>& violations, const mf::Curve& curve,
               const mf::analysis::Requirements& required, double factor = 1.0)
{
    for (const mf::analysis::Violation& broken : mf::analysis::violations(curve, required)) {
        Violation violation{broken.order,    kNoNumber, broken.where.from,
                            broken.where.to, kNoNumber, kNoNumber};
        if (broken.limit)
            violation.limit = *broken.limit * factor;
        if (broken.worst) {
            violation.worst = broken.worst->y * factor;
            violation.worstX = broken.worst->x;
        }
        violations.push_back(violation);
    }
}

}  // namespace

bool areAllFound(const mf::Curve& curve, const Demands& demands)
{
    // Only which orders have a limit matters here.
    const mf::analysis::Limits none;
    const mf::analysis::Limits limits{demands.velocity.value_or(none.velocity),
                                      demands.acceleration.value_or(none.acceleration),
                                      demands.jerk.value_or(none.jerk)};
    return mf::analysis::areAllViolationsFound(curve, {limits, demands.values, demands.continuity, false});
}

std::vector<Violation> violationsOf(const mf::Curve& curve, const Demands& demands, double rate,
                                    const std::string& place)
{
    std::vector<Violation> violations;
    if (demands.values)
        addBroken(violations, curve, {{}, demands.values, {}, false});
    const std::optional<double> limits[] = {demands.velocity, demands.acceleration, demands.jerk};
    for (int motionOrder = 1; motionOrder <= 3; ++motionOrder) {
        const std::optional<double> limit = limits[motionOrder - 1];
        if (!limit)
            continue;
        const double factor = std::pow(rate, orderOf(curve.definition(), motionOrder, place));
        const std::size_t first = violations.size();
        addBroken(violations, curve, {limitOf(motionOrder, *limit / factor), {}, {}, false}, factor);
        for (std::size_t i = first; i < violations.size(); ++i)
            violations[i].limit = *limit;  // exactly as given, not divided and multiplied
    }
    if (demands.continuity)
        addBroken(violations, curve, {{}, {}, demands.continuity, false});
    if (demands.areDerivativesChecked) {
        const mf::analysis::DerivativeCheck check = mf::analysis::checkDerivatives(curve);
        if (!check.ok)
            violations.push_back({check.worstOrder, kNoNumber, check.worstX, check.worstX,
                                  check.stated * std::pow(rate, check.worstOrder), check.worstX});
    }
    return violations;
}

}  // namespace mfcurve
