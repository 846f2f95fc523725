// SPDX-License-Identifier: MIT
#include "tools/mfcurve/violations.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "mfcurves/analysis/requirements.h"
#include "tools/mfcurve/failure.h"

namespace mfcurve {

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

int orderOf(const mf::CurveDefinition& definition, int derivative, const std::string& place)
{
    constexpr const char* kNames[] = {"", "velocity", "acceleration", "jerk"};
    const std::optional<int> order = mf::analysis::motionOrder(definition.quantity, derivative);
    if (!order)
        throwWrong(place, std::string("the curve has no ") + kNames[derivative]);
    return *order;
}

mf::analysis::Limits limitOf(int derivative, double magnitude)
{
    mf::analysis::Limits limits;
    (derivative == 1 ? limits.velocity : derivative == 2 ? limits.acceleration : limits.jerk) = magnitude;
    return limits;
}

// One limit, range or continuity, in units of the curve. The numbers of its violations are multiplied by
// `factor`.
struct Demand {
    mf::analysis::Requirements required;
    double factor = 1.0;
    std::optional<double> limit;  // exactly as given, not divided and multiplied
};

std::vector<Demand> listOf(const mf::Curve& curve, const Demands& demands, double rate,
                           const std::string& place)
{
    std::vector<Demand> list;
    if (demands.values)
        list.push_back({{{}, demands.values, {}, false}, 1.0, {}});
    const std::optional<double> limits[] = {demands.velocity, demands.acceleration, demands.jerk};
    for (int derivative = 1; derivative <= 3; ++derivative) {
        const std::optional<double> limit = limits[derivative - 1];
        if (!limit)
            continue;
        const double factor = std::pow(rate, orderOf(curve.definition(), derivative, place));
        list.push_back({{limitOf(derivative, *limit / factor), {}, {}, false}, factor, limit});
    }
    if (demands.continuity)
        list.push_back({{{}, {}, demands.continuity, false}, 1.0, {}});
    else if (demands.isCyclic)
        list.push_back({{{}, {}, {}, true}, 1.0, {}});
    return list;
}

void addBroken(std::vector<Violation>& violations, const mf::Curve& curve, const Demand& demand)
{
    for (const mf::analysis::Violation& broken : mf::analysis::violations(curve, demand.required)) {
        Violation violation{broken.order,    kNoNumber, broken.where.from,
                            broken.where.to, kNoNumber, kNoNumber};
        if (broken.limit)
            violation.limit = demand.limit.value_or(*broken.limit);
        if (broken.worst) {
            violation.worst = broken.worst->y * demand.factor;
            violation.worstX = broken.worst->x;
        }
        violations.push_back(violation);
    }
}

}  // namespace

bool areAllFound(const mf::Curve& curve, const Demands& demands, double rate, const std::string& place)
{
    const std::vector<Demand> list = listOf(curve, demands, rate, place);
    return std::all_of(list.begin(), list.end(), [&](const Demand& demand) {
        return mf::analysis::areAllViolationsFound(curve, demand.required);
    });
}

std::vector<Violation> violationsOf(const mf::Curve& curve, const Demands& demands, double rate,
                                    const std::string& place)
{
    std::vector<Violation> violations;
    for (const Demand& demand : listOf(curve, demands, rate, place))
        addBroken(violations, curve, demand);
    if (demands.areDerivativesChecked) {
        const mf::analysis::DerivativeCheck check = mf::analysis::checkDerivatives(curve);
        if (!check.ok)
            violations.push_back({check.worstOrder, kNoNumber, check.worstX, check.worstX,
                                  check.stated * std::pow(rate, check.worstOrder), check.worstX});
    }
    return violations;
}

}  // namespace mfcurve
