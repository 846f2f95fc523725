// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/extremes.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "mfcurves/analysis/foundRange.h"
#include "mfcurves/analysis/zeros.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;

namespace {

struct Box {
    double from, to;
    Enclosures atFrom, atTo;
    Enclosures around;  // over a box that contains this one
    unsigned open;      // bit k: an extreme of order k may be in the box
    unsigned unseen;    // bit k: order k may vary in the box more than its values show
};

// Rounding below this, relative to the largest value, is not examined more closely.
constexpr double kFineRounding = 1e-12;

// A bound this close to the values seen, relative to the largest value, counts as a proof if no
// closer one was found. It is enough once most of the budget is spent.
constexpr double kLoose = 1e-6;

// Branch and bound, for all orders at once: a box is done for an order when the order
// cannot leave the values seen so far, when it rises or falls throughout, or when its
// one stationary point in the box was found. Boxes are cut level by level, so that an order
// that needs all the budget does not keep easier ones from being done.
class RangeSearch {
public:
    RangeSearch(BoxEvaluator& function, int orders, double from, double to)
        : function_(function),
          orders_(static_cast<std::size_t>(orders)),
          from_(from),
          to_(to),
          budgetAtStart_(function.budget().left())
    {
    }

    StretchRanges run()
    {
        const unsigned all = (1u << orders_) - 1u;
        Box whole{from_, to_, function_.at(from_), function_.at(to_), {}, all, all};
        whole.around.fill(Interval::everything());
        for (std::size_t k = 0; k < orders_; ++k) {
            FoundRange& found = found_[k];
            found.least = found.greatest = {from_, whole.atFrom[k]};
            found.see(from_, whole.atFrom[k]);
            found.offer(to_, whole.atTo[k]);
        }
        rounding_ = function_.rounding(from_, to_);

        std::vector<Box> level{whole};
        std::vector<Box> next;
        while (!level.empty() && !function_.budget().isSpent()) {
            next.clear();
            for (const Box& box : level) {
                if (function_.budget().isSpent())
                    next.push_back(box);
                else
                    cut(box, next);
            }
            level.swap(next);
        }
        for (const Box& box : level)
            leave(box, kLoose);
        return ranges();
    }

private:
    StretchRanges ranges()
    {
        StretchRanges all;
        for (std::size_t k = 0; k < orders_; ++k) {
            polish(k);
            const FoundRange& found = found_[k];
            all.orders[k] = {found.least, found.greatest, -kUnbounded,
                             kUnbounded,  rounding_[k],   !found.unseen};
            if (!found.failed && !found.undefined) {
                all.orders[k].lowest = found.bound.lo;
                all.orders[k].highest = found.bound.hi;
            }
        }
        all.cuts = std::move(cuts_);
        all.cuts.push_back(from_);
        std::sort(all.cuts.begin(), all.cuts.end());
        return all;
    }

    void cut(const Box& box, std::vector<Box>& next)
    {
        const double middle = 0.5 * box.from + 0.5 * box.to;
        const Enclosures atMiddle = function_.at(middle);
        const Enclosures over = function_.over(box.from, box.to, box.atFrom, middle, atMiddle, box.atTo);
        const bool narrow = isNarrow(box.from, box.to, to_ - from_);
        unsigned open = 0;
        unsigned unseen = 0;
        hasBoxRounding_ = false;
        for (std::size_t k = orders_; k-- > 0;) {
            const unsigned bit = 1u << k;
            if ((box.open & bit) != 0 && !found_[k].failed) {
                found_[k].see(middle, atMiddle[k]);
                if (!isDone(k, box, atMiddle[k], over))
                    open |= bit;
            }
            if ((box.unseen & bit) != 0 && !isSeen(k, box, atMiddle[k], over))
                unseen |= bit;
        }
        if (box.unseen != 0 && (narrow || unseen == 0))
            cuts_.push_back(box.to);
        if (narrow)
            return leave({box.from, box.to, box.atFrom, box.atTo, over, open, 0}, kUnbounded);
        if (open == 0 && unseen == 0)
            return;
        next.push_back({box.from, middle, box.atFrom, atMiddle, over, open, unseen});
        next.push_back({middle, box.to, atMiddle, box.atTo, over, open, unseen});
    }

    // Gives up a box. For its open orders only bounds are known. They count as a proof if they
    // exceed the values seen by no more than a share of them.
    void leave(const Box& box, double share)
    {
        hasBoxRounding_ = false;
        for (std::size_t k = 0; k < orders_; ++k) {
            FoundRange& found = found_[k];
            found.unseen |= (box.unseen >> k & 1u) != 0;
            if ((box.open >> k & 1u) == 0)
                continue;
            const Interval& y = box.around[k];
            const bool isProof = y.isFinite() && isWithin(k, y, share) && settle(k, box, y.lo, y.hi);
            found.failed |= !isProof;
        }
        if (box.unseen != 0)
            cuts_.push_back(box.to);
    }

    bool isWithin(std::size_t k, const Interval& y, double share) const
    {
        const Interval& seen = found_[k].seen;
        const double room = isNothing(k) ? smallOf(k) : share * seen.largest();
        return share == kUnbounded || (y.lo >= seen.lo - room && y.hi <= seen.hi + room);
    }

    // Whether the values at the ends and in the middle show how an order varies in a box: they
    // span most of its range, and its slope is too small for further turns; or what they miss is
    // too small for the integrals of the order and of its square.
    bool isSeen(std::size_t k, const Box& box, const Interval& atMiddle, const Enclosures& all)
    {
        const Interval& over = all[k];
        constexpr double kMost = 2.0;
        constexpr double kMostTurning = 4.0;
        constexpr double kLittle = 1e-20;
        if (!over.isFinite())
            return found_[k].failed || over.isNothing() || hasNoValue(k, box, atMiddle);
        const double first = box.atFrom[k].middle();
        const double last = box.atTo[k].middle();
        const double middle = atMiddle.middle();
        const double moved = std::max({first, middle, last}) - std::min({first, middle, last});
        const bool hasSlope = static_cast<int>(k) < function_.highest();
        const double most = hasSlope ? all[k + 1].largest() * (box.to - box.from) : 0.0;
        if (over.width() <= kMost * moved && most <= kMostTurning * over.width())
            return true;
        const double unseen = over.width() / found_[k].seen.largest();
        return over.width() == 0.0 || unseen * unseen * (box.to - box.from) <= kLittle * (to_ - from_) ||
               (isNothing(k) && over.largest() <= smallOf(k)) || isNoise(k, box, over);
    }

    bool isDone(std::size_t k, const Box& box, const Interval& atMiddle, const Enclosures& over)
    {
        FoundRange& found = found_[k];
        if (!over[k].isFinite()) {
            const bool isUndefined = over[k].isNothing() || hasNoValue(k, box, atMiddle);
            found.undefined |= isUndefined;
            return isUndefined;
        }
        // Differences within the rounding of the value in the middle do not count, either.
        const double room =
            std::max(tolerance(k), 4.0 * atMiddle.width()) + looseness() * found.seen.largest();
        if (over[k].lo >= found.seen.lo - room && over[k].hi <= found.seen.hi + room)
            return settle(k, box, over[k].lo, over[k].hi);
        if (isNoise(k, box, over[k]))
            return settle(k, box, over[k].lo, over[k].hi);
        if (static_cast<int>(k) + 1 > function_.highest() || !over[k + 1].isFinite())
            return false;
        const Interval ends = hull(box.atFrom[k], box.atTo[k]);
        if (over[k + 1].lo >= 0.0 || over[k + 1].hi <= 0.0) {
            found.offer(box.from, box.atFrom[k]);
            found.offer(box.to, box.atTo[k]);
            return settle(k, box, ends.lo, ends.hi);
        }
        if (static_cast<int>(k) + 2 > function_.highest() || !over[k + 2].isFinite() ||
            !over[k + 2].excludesZero())
            return false;
        return hasOneExtreme(k, box, over, ends);
    }

    // Whether no value of an order is known at the ends and in the middle of a short box. Then its halves
    // have no bound, either.
    bool hasNoValue(std::size_t k, const Box& box, const Interval& atMiddle) const
    {
        constexpr double kShort = 1.0 / 64.0;
        return box.to - box.from <= kShort * (to_ - from_) && !atMiddle.isFinite() &&
               !box.atFrom[k].isFinite() && !box.atTo[k].isFinite();
    }

    // The slope rises or falls throughout, so it is 0 at most once.
    bool hasOneExtreme(std::size_t k, const Box& box, const Enclosures& over, const Interval& ends)
    {
        const Interval& first = box.atFrom[k + 1];
        const Interval& last = box.atTo[k + 1];
        const double bend = over[k + 2].smallest();
        if (!first.isFinite() || !last.isFinite())
            return false;
        if (first.excludesZero() && last.excludesZero()) {
            if ((first.lo > 0.0) == (last.lo > 0.0))
                return settle(k, box, ends.lo, ends.hi);
            const Zero zero =
                zeroBetween(function_, static_cast<int>(k) + 1, 0.0, box.from, box.to, over[k + 2]);
            const Enclosures there = function_.at(zero.x);
            found_[k].offer(zero.x, there[k]);
            // The function is flat there: it moves by less than slope times distance.
            const double beyond = there[k + 1].largest() * zero.error;
            return settle(k, box, std::min(ends.lo, there[k].lo - beyond),
                          std::max(ends.hi, there[k].hi + beyond));
        }
        // If the slope at an end is 0 within rounding, its zero is next to that end.
        double beyond = 0.0;
        for (const Interval* slope : {&first, &last}) {
            if (!slope->excludesZero())
                beyond = std::max(beyond, slope->largest() * (slope->largest() / bend));
        }
        if (!(beyond <= tolerance(k)))
            return false;
        found_[k].offer(box.from, box.atFrom[k]);
        found_[k].offer(box.to, box.atTo[k]);
        return settle(k, box, ends.lo - beyond, ends.hi + beyond);
    }

    // Whether an order varies in a box no more than by rounding, such as an order that is 0.
    bool isNoise(std::size_t k, const Box& box, const Interval& over)
    {
        constexpr double kSmall = 1e-3;
        return box.to - box.from < kSmall * (to_ - from_) && over.width() <= 4.0 * boxRounding(box)[k];
    }

    double looseness() const
    {
        constexpr double kLessLoose = 1e-9;
        const std::size_t left = function_.budget().left();
        return left > budgetAtStart_ / 2 ? 0.0 : left > budgetAtStart_ / 4 ? kLessLoose : kLoose;
    }

    // A difference that does not matter, because the rounding of values is as large.
    double tolerance(std::size_t k) const
    {
        const double size = found_[k].seen.largest();
        return isNothing(k) ? rounding_[k]
                            : std::max(0x1p-51 * size, std::min(rounding_[k], kFineRounding * size));
    }

    // Whether all values of an order that were seen are 0 except for rounding.
    bool isNothing(std::size_t k) const
    {
        return found_[k].seen.largest() <= rounding_[k] && rounding_[k] <= smallOf(k);
    }

    // Up to this size an order is negligible compared with the lower orders, given the length of
    // the stretch.
    double smallOf(std::size_t k) const
    {
        constexpr double kNothing = 1e-8;
        double scale = 0.0;
        for (std::size_t j = 0; j < k; ++j) {
            const double size = found_[j].seen.largest();
            if (size < kUnbounded)
                scale = std::max(scale, size / std::pow(to_ - from_, static_cast<double>(k - j)));
        }
        return kNothing * scale;
    }

    // A bound of the rounding of computed values in a box. The bound for the whole stretch is
    // good enough unless it is large.
    double roundingIn(std::size_t k, const Box& box)
    {
        if (rounding_[k] <= kFineRounding * found_[k].seen.largest())
            return rounding_[k];
        return std::min(rounding_[k], boxRounding(box)[k]);
    }

    const std::array<double, kHighestOrder + 1>& boxRounding(const Box& box)
    {
        if (!hasBoxRounding_) {
            boxRounding_ = function_.rounding(box.from, box.to);
            hasBoxRounding_ = true;
        }
        return boxRounding_;
    }

    // Extends the bound of an order by its range in a box. False if rounding has no bound.
    bool settle(std::size_t k, const Box& box, double lo, double hi)
    {
        const double rounding = roundingIn(k, box);
        if (!(rounding < kUnbounded))
            return false;
        found_[k].bound.lo = std::min(found_[k].bound.lo, engine::sumDown(lo, -rounding));
        found_[k].bound.hi = std::max(found_[k].bound.hi, engine::sumUp(hi, rounding));
        return true;
    }

    // Improves the extremes by values that were seen in the middle of a box.
    void polish(std::size_t k)
    {
        FoundRange& found = found_[k];
        const double same = 0x1p-50 * found.seen.largest();
        if (!std::isnan(found.seenLowAt) && found.seen.lo < found.least.y.middle() - same)
            polish(k, found.seenLowAt);
        if (!std::isnan(found.seenHighAt) && found.seen.hi > found.greatest.y.middle() + same)
            polish(k, found.seenHighAt);
    }

    void polish(std::size_t k, double x)
    {
        constexpr int kSteps = 8;
        found_[k].offer(x, function_.at(x)[k]);
        if (static_cast<int>(k) + 2 > function_.highest())
            return;
        for (int i = 0; i < kSteps; ++i) {
            const Enclosures at = function_.at(x);
            const double next = x - at[k + 1].middle() / at[k + 2].middle();
            if (!(next > from_ && next < to_) || next == x)
                return;
            x = next;
        }
        found_[k].replaceIfAsGood(x, function_.at(x)[k]);
    }

    BoxEvaluator& function_;
    std::size_t orders_;
    double from_;
    double to_;
    std::size_t budgetAtStart_;
    std::array<FoundRange, kHighestOrder> found_;
    std::array<double, kHighestOrder + 1> rounding_{};     // on the whole stretch
    std::array<double, kHighestOrder + 1> boxRounding_{};  // in the current box
    bool hasBoxRounding_ = false;
    std::vector<double> cuts_;
};

}  // namespace

StretchRanges rangesOf(BoxEvaluator& function, int orders, double from, double to)
{
    return RangeSearch(function, orders, from, to).run();
}

}  // namespace mf::analysis
