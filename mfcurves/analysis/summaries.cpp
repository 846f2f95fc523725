// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/summaries.h"

#include <algorithm>

#include "mfcurves/analysis/extremes.h"
#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;

namespace {

// Gauss-Legendre with 10 points: the positive nodes and their weights.
constexpr std::array<double, 5> kNodes = {0.14887433898163121088, 0.43339539412924719080,
                                          0.67940956829902440623, 0.86506336668898451073,
                                          0.97390652851717172008};
constexpr std::array<double, 5> kWeights = {0.29552422471475287017, 0.26926671930999635509,
                                            0.21908636251598204400, 0.14945134915058059315,
                                            0.06667134430868813759};

using AllIntegrals = std::array<Integrals, kOrders>;

AllIntegrals gauss(const Curve& curve, double from, double to, const std::array<double, kOrders>& scales)
{
    constexpr std::size_t kPoints = 2 * kNodes.size();
    const double middle = 0.5 * from + 0.5 * to;
    const double half = 0.5 * to - 0.5 * from;
    std::array<double, kPoints> x;
    for (std::size_t i = 0; i < kNodes.size(); ++i) {
        x[kNodes.size() - 1 - i] = middle - half * kNodes[i];
        x[kNodes.size() + i] = middle + half * kNodes[i];
    }
    std::array<CurveValues, kPoints> values;
    curve.evaluate(x.data(), kPoints, values.data());
    AllIntegrals sums{};
    for (std::size_t i = 0; i < kPoints; ++i) {
        const double weight = half * kWeights[i < kNodes.size() ? kNodes.size() - 1 - i : i - kNodes.size()];
        for (int k = 0; k < kOrders; ++k) {
            const double y = values[i][k] / scales[static_cast<std::size_t>(k)];
            sums[static_cast<std::size_t>(k)].value += weight * y;
            sums[static_cast<std::size_t>(k)].square += weight * (y * y);
        }
    }
    return sums;
}

// Whether two halves agree with the whole, for each order that has values at all.
bool agree(const AllIntegrals& whole, const AllIntegrals& halves)
{
    constexpr double kSame = 1e-13;
    for (std::size_t k = 0; k < kOrders; ++k) {
        if (std::isfinite(whole[k].square) &&
            std::fabs(whole[k].square - halves[k].square) > kSame * halves[k].square)
            return false;
    }
    return true;
}

AllIntegrals refined(const Curve& curve, double from, double to, const std::array<double, kOrders>& scales,
                     const AllIntegrals& whole, int depth)
{
    const double middle = 0.5 * from + 0.5 * to;
    AllIntegrals left = gauss(curve, from, middle, scales);
    AllIntegrals right = gauss(curve, middle, to, scales);
    AllIntegrals halves = left;
    for (std::size_t k = 0; k < kOrders; ++k) {
        halves[k].value += right[k].value;
        halves[k].square += right[k].square;
    }
    if (depth == 0 || agree(whole, halves))
        return halves;
    left = refined(curve, from, middle, scales, left, depth - 1);
    right = refined(curve, middle, to, scales, right, depth - 1);
    for (std::size_t k = 0; k < kOrders; ++k)
        left[k] = {left[k].value + right[k].value, left[k].square + right[k].square};
    return left;
}

Side sideAtStart(const Part& part)
{
    return part.beginsPiece ? Side::Right : Side::Plain;
}

Side sideAtEnd(const Part& part)
{
    return part.endsPiece ? Side::Left : Side::Plain;
}

// The extremes of the formula curves, order by order.
class FormulaSummary {
public:
    FormulaSummary(const Curve& curve, Range range) : curve_(curve), range_(range) {}

    std::array<Summary, 4> run()
    {
        const std::vector<Part> parts = partsOf(curve_, range_);
        for (const Part& part : parts)
            examine(part);
        for (const Part& part : parts) {
            offerOwnValue(part.from);
            offerOwnValue(part.to);
        }
        for (std::size_t k = 0; k < kOrders; ++k) {
            const Extremes& found = extremes_[k];
            const double size = std::max(std::fabs(found.least.y), std::fabs(found.greatest.y));
            scales_[k] = size > 0.0 && std::isfinite(size) ? size : 1.0;
        }
        AllIntegrals totals{};
        for (const Part& part : parts)
            add(totals, integrate(curve_, part.from, part.to, scales_));
        std::array<Summary, 4> summaries;
        for (std::size_t k = 0; k < kOrders; ++k)
            summaries[k] = summaryOf(extremes_[k], totals[k], scales_[k], range_);
        noteImpulses(summaries);
        return summaries;
    }

private:
    static void add(AllIntegrals& totals, const AllIntegrals& part)
    {
        for (std::size_t k = 0; k < kOrders; ++k) {
            totals[k].value += part[k].value;
            totals[k].square += part[k].square;
        }
    }

    void examine(const Part& part)
    {
        BoxEvaluator evaluator = part.evaluator();
        const int orders = std::min(kOrders, evaluator.highest() + 1);
        const auto ranges = rangesOf(evaluator, orders, part.from, part.to);
        for (std::size_t k = 0; k < kOrders; ++k) {
            const bool known = static_cast<int>(k) < orders;
            if (known) {
                offer(part, k, sharpened(part, evaluator, k, ranges[k].least));
                offer(part, k, sharpened(part, evaluator, k, ranges[k].greatest));
            }
            const bool proved = known && part.smooth().isSmooth && ranges[k].highest < kUnbounded;
            if (proved)
                extremes_[k].bound(ranges[k].lowest, ranges[k].highest);
            else
                sample(part, k);
        }
        if (part.beginsAtKink)
            examineKink(part);
        starts_.push_back(startOf(part, evaluator));
        ends_.push_back(endOf(part, evaluator));
    }

    // A condition may have a value of its own in one x, such as sign(0).
    void offerOwnValue(double x)
    {
        const CurveValues itself = curve_.at(x);
        for (std::size_t k = 0; k < kOrders; ++k) {
            const double y = itself[static_cast<int>(k)];
            if (!std::isfinite(y))
                continue;
            extremes_[k].offer(x, y, Side::Plain);
            extremes_[k].bound(y, y);
        }
    }

    // Where an extreme is so flat that rounding hides its place, the slope has a multiple
    // zero, which is a simple one of some higher derivative.
    static OrderRange::End sharpened(const Part& part, BoxEvaluator& evaluator, std::size_t k,
                                     const OrderRange::End& end)
    {
        constexpr double kFlat = 1e-6;
        constexpr std::size_t kHigher = 8;
        if (end.x == part.from || end.x == part.to || static_cast<int>(k) + 2 > evaluator.highest())
            return end;
        const double length = part.to - part.from;
        const double bend = evaluator.at(end.x)[k + 2].middle() * length * length;
        if (!(std::fabs(bend) < kFlat * end.y.largest()))
            return end;
        std::vector<engine::NodeId> orders(part.smooth().orders.begin() + static_cast<std::ptrdiff_t>(k),
                                           part.smooth().orders.end());
        part.piece->formula().differentiate(orders, kHigher);
        for (std::size_t j = 1; j + 1 < orders.size(); ++j) {
            const std::array<engine::NodeId, 2> pair{orders[j], orders[j + 1]};
            BoxEvaluator slope(part.piece->formula().graph(), pair, part.piece->budget());
            const double x = simpleZero(slope, end.x, kFlat, length);
            if (std::isnan(x))
                continue;
            const Interval y = evaluator.at(x)[k];
            return y.lo <= end.y.hi && y.hi >= end.y.lo ? OrderRange::End{x, y} : end;
        }
        return end;
    }

    // The zero near x by Newton's method; NaN where it is no simple one.
    static double simpleZero(BoxEvaluator& slope, double x, double flat, double length)
    {
        constexpr int kSteps = 20;
        const double start = x;
        for (int i = 0; i < kSteps; ++i) {
            const Enclosures at = slope.at(x);
            if (!at[1].excludesZero())
                return std::nan("");
            const double next = x - at[0].middle() / at[1].middle();
            if (!(std::fabs(next - start) < 1e-2 * length))
                return std::nan("");
            if (std::fabs(next - x) <= 4.0 * 0x1p-52 * std::fabs(x)) {
                const double reach = flat * length;
                return slope.plainly(x - reach, x + reach)[1].excludesZero() ? next : std::nan("");
            }
            x = next;
        }
        return std::nan("");
    }

    void offer(const Part& part, std::size_t k, const OrderRange::End& end)
    {
        const Side side = end.x == part.from ? sideAtStart(part)
                          : end.x == part.to ? sideAtEnd(part)
                                             : Side::Plain;
        const double computed = curve_.at(end.x, side)[static_cast<int>(k)];
        extremes_[k].offer(end.x, end.y.contains(computed) ? computed : end.y.middle(), side);
    }

    // The best there is where nothing could be proved.
    void sample(const Part& part, std::size_t k)
    {
        constexpr std::size_t kSamples = 256;
        std::array<double, kSamples> x;
        std::array<double, kSamples> y;
        const double step = (part.to - part.from) / (kSamples + 1);
        for (std::size_t i = 0; i < kSamples; ++i)
            x[i] = part.from + static_cast<double>(i + 1) * step;
        curve_.evaluate(x.data(), kSamples, static_cast<int>(k), y.data());
        for (std::size_t i = 0; i < kSamples; ++i)
            extremes_[k].offer(x[i], y[i], Side::Plain);
        extremes_[k].bound(-kUnbounded, kUnbounded);
    }

    // Near a kink, whose place is known to rounding, either branch may be the one.
    void examineKink(const Part& part)
    {
        BoxEvaluator whole = part.piece->wholeEvaluator();
        const double reach = 2.0 * part.smooth().kinkError + 4.0 * 0x1p-52 * std::fabs(part.from);
        const Enclosures near = whole.plainly(part.from - reach, part.from + reach);
        for (std::size_t k = 0; k < kOrders; ++k) {
            const bool known = static_cast<int>(k) <= whole.highest() && near[k].isFinite();
            extremes_[k].bound(known ? near[k].lo : -kUnbounded, known ? near[k].hi : kUnbounded);
        }
    }

    void noteImpulses(std::array<Summary, 4>& summaries) const
    {
        for (std::size_t i = 1; i < starts_.size(); ++i)
            noteImpulses(ends_[i - 1], starts_[i], starts_[i].part->from, summaries);
        const bool closes = curve_.outside() == Outside::Repeat && !starts_.empty() &&
                            range_.from <= curve_.firstX() && range_.to >= curve_.lastX();
        if (closes)
            noteImpulses(ends_.back(), starts_.front(), curve_.lastX(), summaries);
    }

    static void noteImpulses(const EndValues& left, const EndValues& right, double x,
                             std::array<Summary, 4>& summaries)
    {
        for (int k = 1; k < kOrders; ++k) {
            if (jumps(left, right, k - 1))
                summaries[static_cast<std::size_t>(k)].impulses.push_back(x);
        }
    }

    const Curve& curve_;
    Range range_;
    std::array<Extremes, kOrders> extremes_;
    std::array<double, kOrders> scales_;
    std::vector<EndValues> starts_;  // of each part
    std::vector<EndValues> ends_;
};

}  // namespace

std::array<Integrals, kOrders> integrate(const Curve& curve, double from, double to,
                                         const std::array<double, kOrders>& scales)
{
    constexpr int kDeepest = 8;
    return refined(curve, from, to, scales, gauss(curve, from, to, scales), kDeepest);
}

Summary summaryOf(const Extremes& found, const Integrals& integrals, double scale, Range range)
{
    const double length = range.to - range.from;
    Summary summary;
    summary.least = {found.least.x, found.least.y, found.least.side,
                     std::max(found.least.y - found.lowest, 0.0)};
    summary.greatest = {found.greatest.x, found.greatest.y, found.greatest.side,
                        std::max(found.highest - found.greatest.y, 0.0)};
    const bool isPoint = length == 0.0;
    summary.mean = isPoint ? found.least.y : scale * (integrals.value / length);
    summary.rms = isPoint ? std::fabs(found.least.y) : scale * std::sqrt(integrals.square / length);
    summary.guaranteed = std::isfinite(summary.least.error) && std::isfinite(summary.greatest.error);
    return summary;
}

std::array<Summary, 4> summarize(const Curve& curve, Range range)
{
    const Range inside = cutToCurve(curve, range);
    if (inside.from > inside.to) {
        std::array<Summary, 4> nothing;
        nothing.fill(summaryOf({}, {}, std::nan(""), {0.0, 1.0}));
        return nothing;
    }
    if (curve.frozen().spline() != nullptr)
        return summarizePoints(curve, inside);
    return FormulaSummary(curve, inside).run();
}

}  // namespace mf::analysis
