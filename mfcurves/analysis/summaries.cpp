// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/summaries.h"

#include <algorithm>
#include <optional>

#include "mfcurves/analysis/extremes.h"
#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;

namespace {

Side sideAtStart(const Part& part)
{
    return part.beginsPiece ? Side::Right : Side::Plain;
}

Side sideAtEnd(const Part& part)
{
    return part.endsPiece ? Side::Left : Side::Plain;
}

// Summarizes all orders of a curve of rows or of an expression.
class FormulaSummary {
public:
    FormulaSummary(const Curve& curve, Range range) : curve_(curve), range_(range) {}

    std::array<Summary, 4> run()
    {
        const std::vector<Part> parts = partsOf(curve_, range_);
        for (const Part& part : parts)
            examine(part);
        const FormulaPiece* piece = nullptr;
        std::optional<BoxEvaluator> whole;
        for (const Part& part : parts) {
            offerOwnValue(part.from);
            offerOwnValue(part.to);
            if (part.piece.get() != piece) {
                piece = part.piece.get();
                const std::vector<Range> undecided = undecidedBoxes(*piece);
                if (!undecided.empty())
                    whole.emplace(part.piece->wholeEvaluator());
                for (const Range& box : undecided)
                    boundOver(box, *whole);
                for (const Touch& touch : piece->touches())
                    offerOwnValue(touch.x);
            }
        }
        const AllIntegrals totals = integrals();
        std::array<Summary, 4> summaries;
        for (std::size_t k = 0; k < kOrders; ++k) {
            summaries[k] = summaryOf(extremes_[k], totals[k], scales_[k], range_);
            summaries[k].guaranteed &= isSeen_[k];
        }
        noteImpulses(summaries);
        return summaries;
    }

private:
    // A part that was examined.
    struct Examined {
        const Part& part;
        StretchRanges ranges;
        std::size_t cost;  // of an evaluation with intervals
        EndValues start;
        EndValues end;
    };

    AllIntegrals integrals()
    {
        constexpr std::size_t kOperations = kOperationsPerPiece / 4;
        constexpr std::size_t kCheaper = 4;  // an evaluation with numbers than with intervals
        for (std::size_t k = 0; k < kOrders; ++k) {
            const Extremes& found = extremes_[k];
            const double size = std::max(std::fabs(found.least.y), std::fabs(found.greatest.y));
            scales_[k] = size > 0.0 && std::isfinite(size) ? size : 1.0;
        }
        AllIntegrals totals{};
        Budget budget(kOperations);
        const FormulaPiece* piece = nullptr;
        for (const Examined& examined : examined_) {
            if (examined.part.piece.get() != piece)
                budget = Budget(kOperations);
            piece = examined.part.piece.get();
            std::array<double, kOrders> noise;
            for (std::size_t k = 0; k < kOrders; ++k) {
                const double rounding = examined.ranges.orders[k].rounding / scales_[k];
                noise[k] = std::isfinite(rounding) ? std::min(rounding, 1.0) : 0.0;
            }
            const AllIntegrals part =
                integrate(curve_, examined.ranges.cuts, scales_, noise, examined.cost / kCheaper, budget);
            for (std::size_t k = 0; k < kOrders; ++k) {
                totals[k].value += part[k].value;
                totals[k].square += part[k].square;
            }
        }
        return totals;
    }

    // Examines a part whose piece has already spent its budget.
    void examineBySamples(const Part& part)
    {
        isSeen_.fill(false);
        sample(part, {});
        StretchRanges unknown;
        unknown.cuts = {part.from, part.to};
        const EndValues start = computedEnd(part, part.from, Side::Right);
        const std::size_t cost = part.piece->formula().nodesOfOrders();
        examined_.push_back({part, std::move(unknown), cost, start, computedEnd(part, part.to, Side::Left)});
    }

    // The computed values at x, taken as exact.
    EndValues computedEnd(const Part& part, double x, Side side) const
    {
        EndValues end;
        end.values.fill(Interval::nothing());
        const CurveValues at = curve_.at(x, side);
        const CurveValues inside = curve_.at(0.5 * part.from + 0.5 * part.to);
        for (std::size_t k = 0; k < kOrders; ++k) {
            const double y = at[static_cast<int>(k)];
            if (std::isfinite(y))
                end.values[k] = {y, y};
            end.size[k] = std::max(std::fabs(y), std::fabs(inside[static_cast<int>(k)]));
        }
        return end;
    }

    void examine(const Part& part)
    {
        if (part.piece->budget().isSpent())
            return examineBySamples(part);
        BoxEvaluator evaluator = part.evaluator();
        const int orders = std::min(kOrders, evaluator.highest() + 1);
        StretchRanges found;
        if (part.smooth().isSmooth)
            found = rangesOf(evaluator, orders, part.from, part.to);
        else
            found.cuts = {part.from, part.to};
        const auto& ranges = found.orders;
        std::array<bool, kOrders> isProved{};
        for (std::size_t k = 0; k < kOrders; ++k) {
            const bool known = static_cast<int>(k) < orders;
            if (known && part.smooth().isSmooth) {
                offer(part, k, sharpened(part, evaluator, k, ranges[k].least));
                offer(part, k, sharpened(part, evaluator, k, ranges[k].greatest));
            }
            isProved[k] = known && part.smooth().isSmooth && ranges[k].highest < kUnbounded &&
                          hasValues(part, evaluator, k, isProved);
            if (isProved[k])
                extremes_[k].bound(ranges[k].lowest, ranges[k].highest);
            isSeen_[k] &= ranges[k].isSeen;
        }
        if (!std::all_of(isProved.begin(), isProved.end(), [](bool proved) { return proved; }))
            sample(part, isProved);
        examined_.push_back(
            {part, std::move(found), evaluator.cost(), startOf(part, evaluator), endOf(part, evaluator)});
    }

    // An order has no value where a lower one has none, also if its own formula has one.
    static bool hasValues(const Part& part, BoxEvaluator& evaluator, std::size_t k,
                          const std::array<bool, kOrders>& isProved)
    {
        for (std::size_t lower = 0; lower < k; ++lower) {
            if (!isProved[lower] && !evaluator.plainly(part.from, part.to)[lower].isFinite())
                return false;
        }
        return true;
    }

    // At a single x the curve may have a value of its own, such as sign(0).
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

    // The zero near x by Newton's method; NaN if it is not a simple one.
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
        if (std::isnan(computed))
            return;
        extremes_[k].offer(end.x, end.y.contains(computed) ? computed : end.y.middle(), side);
    }

    // Extremes of samples, for the orders for which nothing could be proved.
    void sample(const Part& part, const std::array<bool, kOrders>& isProved)
    {
        constexpr std::size_t kSamples = 256;
        constexpr std::size_t kSamplesOfPiece = 8 * kSamples;
        const std::size_t count =
            std::clamp<std::size_t>(kSamplesOfPiece / part.piece->stretches().size(), 1, kSamples);
        std::array<double, kSamples> x;
        std::array<CurveValues, kSamples> y;
        const double step = (part.to - part.from) / static_cast<double>(count + 1);
        for (std::size_t i = 0; i < count; ++i)
            x[i] = part.from + static_cast<double>(i + 1) * step;
        curve_.evaluate(x.data(), count, y.data());
        for (std::size_t k = 0; k < kOrders; ++k) {
            if (isProved[k])
                continue;
            for (std::size_t i = 0; i < count; ++i)
                extremes_[k].offer(x[i], y[i][static_cast<int>(k)], Side::Plain);
            extremes_[k].bound(-kUnbounded, kUnbounded);
        }
    }

    // Where rounding may decide a condition, all branches count. An order has no value where a lower one has
    // none.
    void boundOver(Range box, BoxEvaluator& whole)
    {
        Enclosures near;
        near.fill(Interval::everything());
        if (!whole.budget().isSpent())
            near = whole.plainly(box.from, box.to);
        bool known = true;
        for (std::size_t k = 0; k < kOrders; ++k) {
            known = known && static_cast<int>(k) <= whole.highest() && near[k].isFinite();
            extremes_[k].bound(known ? near[k].lo : -kUnbounded, known ? near[k].hi : kUnbounded);
        }
    }

    void noteImpulses(std::array<Summary, 4>& summaries) const
    {
        for (std::size_t i = 1; i < examined_.size(); ++i) {
            noteImpulses(examined_[i - 1].end, examined_[i].start, examined_[i].part.from, summaries);
        }
        const bool closes = curve_.outside() == Outside::Repeat && !examined_.empty() &&
                            range_.from <= curve_.firstX() && range_.to >= curve_.lastX();
        if (closes)
            noteImpulses(examined_.back().end, examined_.front().start, curve_.lastX(), summaries);
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
    std::array<bool, kOrders> isSeen_{true, true, true, true};
    std::vector<Examined> examined_;
};

}  // namespace

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

bool areAllBreaksFound(const Curve& curve, int upToOrder, Range range)
{
    const std::array<Summary, 4> summaries = summarize(curve, range);
    return std::all_of(summaries.begin(), summaries.begin() + std::clamp(upToOrder, 0, kOrders - 1) + 1,
                       [](const Summary& summary) { return summary.guaranteed; });
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
