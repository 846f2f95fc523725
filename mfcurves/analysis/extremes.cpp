// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/extremes.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "mfcurves/analysis/zeros.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;

namespace {

struct Box {
    double from, to;
    Enclosures atFrom, atTo;
    unsigned open;  // bit k: the extremes of order k may lie in it
};

// Below this, relative to the largest value, rounding is not worth a closer look.
constexpr double kFineRounding = 1e-12;

// An order as small as this, relative to the others, is 0 but for rounding.
constexpr double kNothing = 1e-9;

// Branch and bound, for all orders at once: a box is done for an order when the order
// cannot leave the values seen so far, when it rises or falls throughout, or when its
// one stationary point in the box was found.
class RangeSearch {
public:
    RangeSearch(BoxEvaluator& function, int orders, double from, double to)
        : function_(function), orders_(static_cast<std::size_t>(orders)), from_(from), to_(to)
    {
    }

    std::array<OrderRange, kHighestOrder> run()
    {
        const Box whole{from_, to_, function_.at(from_), function_.at(to_), (1u << orders_) - 1u};
        for (std::size_t k = 0; k < orders_; ++k) {
            Found& found = found_[k];
            found.least = found.greatest = {from_, whole.atFrom[k]};
            see(k, from_, whole.atFrom[k]);
            offer(k, to_, whole.atTo[k]);
        }
        rounding_ = function_.rounding(from_, to_);

        std::vector<Box> open{whole};
        while (!open.empty() && !function_.budget().isSpent()) {
            const Box box = open.back();
            open.pop_back();
            cut(box, open);
        }
        std::array<OrderRange, kHighestOrder> ranges;
        for (std::size_t k = 0; k < orders_; ++k) {
            polish(k);
            ranges[k] = {found_[k].least, found_[k].greatest};
            const bool isOpen = std::any_of(open.begin(), open.end(),
                                            [&](const Box& box) { return (box.open >> k & 1u) != 0; });
            if (isOpen || found_[k].failed)
                continue;
            ranges[k].lowest = found_[k].bound.lo;
            ranges[k].highest = found_[k].bound.hi;
        }
        return ranges;
    }

private:
    struct Found {
        OrderRange::End least;
        OrderRange::End greatest;
        Interval seen{kUnbounded, -kUnbounded};   // from the least to the greatest value seen
        Interval bound{kUnbounded, -kUnbounded};  // of all boxes that are done, as computed
        bool failed = false;                      // some box has no bound
        double seenLowAt = std::nan("");
        double seenHighAt = std::nan("");
    };

    void cut(const Box& box, std::vector<Box>& open)
    {
        const double middle = 0.5 * box.from + 0.5 * box.to;
        const Enclosures atMiddle = function_.at(middle);
        const Enclosures over = function_.over(box.from, box.to, box.atFrom, middle, atMiddle, box.atTo);
        const bool narrow = isNarrow(box.from, box.to, to_ - from_);
        unsigned left = 0;
        hasBoxRounding_ = false;
        for (std::size_t k = orders_; k-- > 0;) {
            if ((box.open >> k & 1u) == 0)
                continue;
            see(k, middle, atMiddle[k]);
            if (isDone(k, box, atMiddle[k], over))
                continue;
            if (!narrow)
                left |= 1u << k;
            else if (!over[k].isFinite() || !settle(k, box, over[k].lo, over[k].hi))
                found_[k].failed = true;
        }
        if (left == 0)
            return;
        open.push_back({middle, box.to, atMiddle, box.atTo, left});
        open.push_back({box.from, middle, box.atFrom, atMiddle, left});
    }

    bool isDone(std::size_t k, const Box& box, const Interval& atMiddle, const Enclosures& over)
    {
        Found& found = found_[k];
        if (!over[k].isFinite())
            return false;
        // Nor does what rounding cannot tell apart in the middle of the box.
        const double room = std::max(tolerance(k), 4.0 * atMiddle.width());
        if (over[k].lo >= found.seen.lo - room && over[k].hi <= found.seen.hi + room)
            return settle(k, box, over[k].lo, over[k].hi);
        if (isNoise(k, box, over[k]))
            return settle(k, box, over[k].lo, over[k].hi);
        if (static_cast<int>(k) + 1 > function_.highest() || !over[k + 1].isFinite())
            return false;
        const Interval ends = hull(box.atFrom[k], box.atTo[k]);
        if (over[k + 1].lo >= 0.0 || over[k + 1].hi <= 0.0) {
            offer(k, box.from, box.atFrom[k]);
            offer(k, box.to, box.atTo[k]);
            return settle(k, box, ends.lo, ends.hi);
        }
        if (static_cast<int>(k) + 2 > function_.highest() || !over[k + 2].isFinite() ||
            !over[k + 2].excludesZero())
            return false;
        return hasOneExtreme(k, box, over, ends);
    }

    // The slope rises or falls throughout, so that it is 0 once at most.
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
            offer(k, zero.x, there[k]);
            // The function is flat there: it moves by less than slope times distance.
            const double beyond = there[k + 1].largest() * zero.error;
            return settle(k, box, std::min(ends.lo, there[k].lo - beyond),
                          std::max(ends.hi, there[k].hi + beyond));
        }
        // A slope at an end that rounding cannot tell from 0 has its zero next to it.
        double beyond = 0.0;
        for (const Interval* slope : {&first, &last}) {
            if (!slope->excludesZero())
                beyond = std::max(beyond, slope->largest() * (slope->largest() / bend));
        }
        if (!(beyond <= tolerance(k)))
            return false;
        offer(k, box.from, box.atFrom[k]);
        offer(k, box.to, box.atTo[k]);
        return settle(k, box, ends.lo - beyond, ends.hi + beyond);
    }

    // A box where an order moves no more than its rounding, as where it is 0 but for that.
    bool isNoise(std::size_t k, const Box& box, const Interval& over)
    {
        constexpr double kSmall = 1e-3;
        return box.to - box.from < kSmall * (to_ - from_) &&
               over.width() <= 4.0 * function_.rounding(box.from, box.to)[k];
    }

    // A difference that does not matter: what rounding makes of a value anyway.
    double tolerance(std::size_t k) const
    {
        const double size = found_[k].seen.largest();
        const double usual = std::max(0x1p-51 * size, std::min(rounding_[k], kFineRounding * size));
        const double scale = scaleOf(k);
        return size < kNothing * scale ? std::max(usual, kFineRounding * scale) : usual;
    }

    // How large an order would be if it mattered: as the other derivatives have it over the
    // length of the stretch. Beside it an order that is 0 but for rounding shows.
    double scaleOf(std::size_t k) const
    {
        double scale = 0.0;
        for (std::size_t j = 1; k > 0 && j < orders_; ++j) {
            const double size = found_[j].seen.largest();
            if (size < kUnbounded)
                scale = std::max(
                    scale, size * std::pow(to_ - from_, static_cast<double>(j) - static_cast<double>(k)));
        }
        return scale;
    }

    // The rounding of computed values in a box. That of the whole stretch will do, unless it
    // is large somewhere else.
    double roundingIn(std::size_t k, const Box& box)
    {
        if (rounding_[k] <= kFineRounding * found_[k].seen.largest())
            return rounding_[k];
        if (!hasBoxRounding_) {
            boxRounding_ = function_.rounding(box.from, box.to);
            hasBoxRounding_ = true;
        }
        return std::min(rounding_[k], boxRounding_[k]);
    }

    // Adds what an order may be in a box to its bound. False where rounding has none.
    bool settle(std::size_t k, const Box& box, double lo, double hi)
    {
        const double rounding = roundingIn(k, box);
        if (!(rounding < kUnbounded))
            return false;
        found_[k].bound.lo = std::min(found_[k].bound.lo, engine::sumDown(lo, -rounding));
        found_[k].bound.hi = std::max(found_[k].bound.hi, engine::sumUp(hi, rounding));
        return true;
    }

    void see(std::size_t k, double x, const Interval& y)
    {
        Found& found = found_[k];
        if (!y.isFinite())
            return;
        if (!(y.middle() >= found.seen.lo)) {
            found.seen.lo = y.middle();
            found.seenLowAt = x;
        }
        if (!(y.middle() <= found.seen.hi)) {
            found.seen.hi = y.middle();
            found.seenHighAt = x;
        }
    }

    // Of equal ones the first counts.
    void offer(std::size_t k, double x, const Interval& y)
    {
        Found& found = found_[k];
        if (!y.isFinite())
            return;
        const double same = 0x1p-51 * y.largest();
        const bool unknown = !found.least.y.isFinite();
        if (unknown || y.middle() < found.least.y.middle() - same)
            found.least = {x, y};
        if (unknown || y.middle() > found.greatest.y.middle() + same)
            found.greatest = {x, y};
        see(k, x, y);
    }

    // A value in the middle of some box may be nearest to an extreme.
    void polish(std::size_t k)
    {
        Found& found = found_[k];
        const double same = 0x1p-50 * found.seen.largest();
        if (!std::isnan(found.seenLowAt) && found.seen.lo < found.least.y.middle() - same)
            polish(k, found.seenLowAt);
        if (!std::isnan(found.seenHighAt) && found.seen.hi > found.greatest.y.middle() + same)
            polish(k, found.seenHighAt);
    }

    void polish(std::size_t k, double x)
    {
        constexpr int kSteps = 8;
        offer(k, x, function_.at(x)[k]);
        if (static_cast<int>(k) + 2 > function_.highest())
            return;
        for (int i = 0; i < kSteps; ++i) {
            const Enclosures at = function_.at(x);
            const double next = x - at[k + 1].middle() / at[k + 2].middle();
            if (!(next > from_ && next < to_) || next == x)
                return;
            x = next;
        }
        replaceIfAsGood(k, x, function_.at(x)[k]);
    }

    void replaceIfAsGood(std::size_t k, double x, const Interval& y)
    {
        Found& found = found_[k];
        if (y.middle() <= found.least.y.middle())
            found.least = {x, y};
        if (y.middle() >= found.greatest.y.middle())
            found.greatest = {x, y};
    }

    BoxEvaluator& function_;
    std::size_t orders_;
    double from_;
    double to_;
    std::array<Found, kHighestOrder> found_;
    std::array<double, kHighestOrder + 1> rounding_{};     // on the whole stretch
    std::array<double, kHighestOrder + 1> boxRounding_{};  // in the box at hand
    bool hasBoxRounding_ = false;
};

}  // namespace

std::array<OrderRange, kHighestOrder> rangesOf(BoxEvaluator& function, int orders, double from, double to)
{
    return RangeSearch(function, orders, from, to).run();
}

}  // namespace mf::analysis
