// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/requirements.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include "mfcurves/analysis/parts.h"
#include "mfcurves/curve/laws.h"

namespace mf::analysis {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// How often a displacement is differentiated to give the values of a curve. Quantities that
// are not motions count as displacements.
int derivedOrders(Quantity quantity)
{
    switch (quantity) {
        case Quantity::Velocity:
            return 1;
        case Quantity::Acceleration:
            return 2;
        default:
            return 0;
    }
}

// An order of a curve and the limit of its magnitude.
struct LimitedOrder {
    int order;
    double magnitude;
};

std::vector<LimitedOrder> limitedOrders(const Curve& curve, const Limits& limits)
{
    const double magnitudes[] = {limits.velocity, limits.acceleration, limits.jerk};
    std::vector<LimitedOrder> orders;
    for (int i = 0; i < 3; ++i) {
        const int order = i + 1 - derivedOrders(curve.definition().quantity);
        if (magnitudes[i] < kInfinity && order >= 0)
            orders.push_back({order, magnitudes[i]});
    }
    return orders;
}

class Checking {
public:
    explicit Checking(const Curve& curve) : curve_(curve) {}

    // Where an order is above `high` or below `low`, one of which is infinite. The limit is
    // reported as `limit`.
    void limit(int order, double low, double high, double limit)
    {
        for (const Range& where : beyond(curve_, order, low, high)) {
            Violation violation{order, limit, where, {}};
            const double y = curve_(where.from, order);
            if (where.from == where.to && (y < low || y > high)) {
                violation.worst = Peak{where.from, y, Side::Plain, 0.0};
            } else if (where.from < where.to) {
                const Summary summary = summarize(curve_, where)[order];
                violation.worst = high < kInfinity && (low == -kInfinity || isFarther(summary, low, high))
                                      ? summary.greatest
                                      : summary.least;
            }
            found_.push_back(violation);
        }
    }

    void jumps(int highest, bool alsoInside)
    {
        for (const Break& found : breaks(curve_, highest)) {
            if (alsoInside || found.cause == Cause::CycleEnd)
                found_.push_back({found.lowest, {}, {found.x, found.x}, {}});
        }
    }

    std::vector<Violation> take() { return std::move(found_); }

private:
    static bool isFarther(const Summary& summary, double low, double high)
    {
        return summary.greatest.y - high >= low - summary.least.y;
    }

    const Curve& curve_;
    std::vector<Violation> found_;
};

}  // namespace

std::optional<int> motionOrder(Quantity quantity, int derivative)
{
    const int order = derivative - derivedOrders(quantity);
    const bool isMotion = quantity != Quantity::Force && quantity != Quantity::Torque;
    if (!isMotion || derivative < 1 || derivative > 3 || order < 0)
        return {};
    return order;
}

std::vector<Violation> violations(const Curve& curve, const Requirements& required)
{
    const Curve asked = required.isCyclic ? curve.with(Outside::Repeat) : curve;
    Checking checking(asked);
    if (required.values) {
        checking.limit(0, required.values->from, kInfinity, required.values->from);
        checking.limit(0, -kInfinity, required.values->to, required.values->to);
    }
    for (const LimitedOrder& limited : limitedOrders(curve, required.limits))
        checking.limit(limited.order, -limited.magnitude, limited.magnitude, limited.magnitude);
    if (required.continuity)
        checking.jumps(*required.continuity, true);
    else if (required.isCyclic)
        checking.jumps(0, false);
    return checking.take();
}

namespace {

// Whether the peaks prove that an order keeps its limits. A difference below that of a jump does not count.
bool staysWithin(const Summary& order, double low, double high)
{
    const double jump = kJump * std::max(std::fabs(order.least.y), std::fabs(order.greatest.y));
    return order.greatest.y + order.greatest.error <= high + jump &&
           order.least.y - order.least.error >= low - jump;
}

// Whether an order may be beyond a limit by the error of a peak that is not.
bool mayHide(const Summary& order, double low, double high)
{
    return (order.greatest.y <= high && !staysWithin(order, -kInfinity, high)) ||
           (order.least.y >= low && !staysWithin(order, low, kInfinity));
}

}  // namespace

bool areAllViolationsFound(const Curve& curve, const Requirements& required)
{
    const std::array<Summary, 4> summaries = summarize(curve);
    const auto isFound = [&](int order, double low, double high) {
        const Summary& summary = summaries[static_cast<std::size_t>(order)];
        if (!summary.guaranteed || mayHide(summary, low, high))
            return false;
        return staysWithin(summary, low, high) ||
               (isEachBoxDecided(curve, order, low, all) && isEachBoxDecided(curve, order, high, all));
    };
    if (required.values && !isFound(0, required.values->from, required.values->to))
        return false;
    for (const LimitedOrder& limited : limitedOrders(curve, required.limits)) {
        if (!isFound(limited.order, -limited.magnitude, limited.magnitude))
            return false;
    }
    const int highest = required.continuity ? std::min(*required.continuity, 3) : required.isCyclic ? 0 : -1;
    return std::all_of(summaries.begin(), summaries.begin() + highest + 1,
                       [](const Summary& summary) { return summary.guaranteed; });
}

namespace {

// Where an order jumps, the next one has an impulse. The orders that have limits must not have
// one; acceleration counts as limited in any case.
bool isWithoutImpulse(const LawFactors& law, const Limits& limits)
{
    const int needed = limits.jerk < kInfinity ? 2 : 1;
    return std::min({law.startContinuity, law.innerContinuity, law.endContinuity}) >= needed;
}

Move moveBy(const std::string& profile, const LawFactors& law, double stroke, const Limits& limits)
{
    const double duration = shortestDuration(law, stroke, limits);
    const auto needs = [&](const Limits& one) { return shortestDuration(law, stroke, one) == duration; };
    const Move::Limit limitedBy = needs({limits.velocity, kInfinity, kInfinity}) ? Move::Limit::Velocity
                                  : needs({kInfinity, limits.acceleration, kInfinity})
                                      ? Move::Limit::Acceleration
                                      : Move::Limit::Jerk;
    return {profile, duration, limitedBy};
}

}  // namespace

std::vector<Move> fastest(double stroke, const Limits& limits)
{
    return fastest(stroke, limits, laws());
}

std::vector<Move> fastest(double stroke, const Limits& limits, const std::vector<Law>& laws)
{
    std::vector<Move> moves;
    if (stroke == 0.0 || std::min({limits.velocity, limits.acceleration, limits.jerk}) == kInfinity)
        return moves;
    std::set<std::string> seen;  // of laws with one name the first counts
    for (const Law& law : laws) {
        if (!seen.insert(law.name).second)
            continue;
        const LawFactors known = factors({law.name, law.text});
        if (!isWithoutImpulse(known, limits))
            continue;
        const Move move = moveBy(law.name, known, stroke, limits);
        if (std::isfinite(move.duration) && move.duration > 0.0)
            moves.push_back(move);
    }
    std::ranges::stable_sort(moves, {}, &Move::duration);
    return moves;
}

}  // namespace mf::analysis
