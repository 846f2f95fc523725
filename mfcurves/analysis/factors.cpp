// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/extremes.h"
#include "mfcurves/analysis/parts.h"
#include "mfcurves/engine/term.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;
using engine::NodeId;

namespace {

Curve normalised(const LawText& law)
{
    CurveDefinition definition;
    definition.shape = SegmentShape{0.0, 0.0, {{1.0, 1.0, law.name}}, {law}, false};
    return Curve(definition);
}

// The first place of the largest magnitude; infinite at the first impulse.
void largest(const Summary& order, double& factor, double& at)
{
    if (!order.impulses.empty()) {
        factor = kUnbounded;
        at = order.impulses.front();
        return;
    }
    const Peak& low = order.least;
    const Peak& high = order.greatest;
    const double l = std::fabs(low.y);
    const double h = std::fabs(high.y);
    const bool equal = std::fabs(l - h) <= low.error + high.error;
    const Peak& peak = equal ? (low.x < high.x ? low : high) : l > h ? low : high;
    factor = std::max(l, h);
    at = peak.x;
}

struct Power {
    double largest = 0.0;
    bool proved = true;
};

// The largest magnitude of f' f''.
Power powerOf(const std::vector<Part>& parts)
{
    Power power;
    for (const Part& part : parts) {
        const Stretch& smooth = part.smooth();
        if (smooth.orders.size() < 3) {
            power.proved = false;
            continue;
        }
        engine::Graph& graph = part.piece->formula().graph();
        engine::TermMaker maker(graph, engine::Folding::Free);
        const engine::Term product = maker.term(smooth.orders[1]) * maker.term(smooth.orders[2]);
        std::vector<NodeId> orders{product.id()};
        part.piece->formula().differentiate(orders, 4);
        BoxEvaluator evaluator(graph, orders, part.piece->budget());
        const OrderRange range = rangesOf(evaluator, 1, part.from, part.to).orders[0];
        power.largest = std::max({power.largest, -range.least.y.middle(), range.greatest.y.middle()});
        power.proved &= smooth.isSmooth && range.highest < kUnbounded;
    }
    return power;
}

EndValues atRest(double value)
{
    EndValues rest;
    rest.values.fill(Interval(0.0));
    rest.values[0] = Interval(value);
    rest.size.fill(0.0);
    return rest;
}

}  // namespace

LawFactors factors(const LawText& law)
{
    const Curve curve = normalised(law);
    const std::array<Summary, 4> summary = summarize(curve);
    const std::vector<Part> parts = partsOf(curve, all);
    const Power power = powerOf(parts);

    LawFactors found;
    largest(summary[1], found.cv, found.cvAt);
    largest(summary[2], found.ca, found.caAt);
    largest(summary[3], found.cj, found.cjAt);
    found.power = power.largest;
    found.rmsAcceleration = summary[2].rms;

    constexpr int kUpTo = kOrdersOfBreaks - 1;
    found.startContinuity = lowestJump(atRest(0.0), startOf(parts.front()), kUpTo) - 1;
    found.endContinuity = lowestJump(endOf(parts.back()), atRest(1.0), kUpTo) - 1;
    found.innerContinuity = kUpTo;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const int lowest = lowestJump(endOf(parts[i - 1]), startOf(parts[i]), kUpTo);
        found.innerContinuity = std::min(found.innerContinuity, lowest - 1);
    }

    found.guaranteed = power.proved;
    for (std::size_t k = 1; k < summary.size(); ++k)
        found.guaranteed &= summary[k].guaranteed || !summary[k].impulses.empty();
    return found;
}

double shortestDuration(const LawFactors& factors, double stroke, const Limits& limits)
{
    const double size = std::fabs(stroke);
    const auto share = [&](double factor, double limit) {
        return std::isinf(limit) || size == 0.0 ? 0.0 : factor * size / limit;
    };
    return std::max({share(factors.cv, limits.velocity), std::sqrt(share(factors.ca, limits.acceleration)),
                     std::cbrt(share(factors.cj, limits.jerk))});
}

}  // namespace mf::analysis
