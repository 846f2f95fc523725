// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/zeros.h"

#include <algorithm>
#include <cmath>

namespace mf::analysis {

using engine::Interval;

namespace {

Interval shifted(const Interval& y, double value)
{
    return value == 0.0 ? y : y - Interval(value);
}

// A bound of the distance between x and the zero, in a box within [from, to] where the function
// rises or falls throughout by `slope`. `size` bounds the function at x. The slope near x often
// gives a smaller bound than that of the whole box, which may be close to 0 elsewhere.
double reachOf(BoxEvaluator& function, std::size_t k, double x, double size, const Interval& slope,
               double from, double to)
{
    const double reach = size / slope.smallest();
    const double guess = 2.0 * size / function.pairAt(x, k)[k + 1].smallest();
    if (!(guess < reach))
        return reach;
    const Interval beside = function.plainly(std::max(x - guess, from), std::min(x + guess, to))[k + 1];
    const double near = size / beside.smallest();
    return near <= guess ? near : reach;
}

class ZeroSearch {
public:
    ZeroSearch(BoxEvaluator& function, int k, double value, double from, double to)
        : function_(function), k_(static_cast<std::size_t>(k)), value_(value), from_(from), to_(to)
    {
    }

    Zeros run()
    {
        struct Box {
            double from, to;
            Enclosures atFrom, atTo;
        };
        std::vector<Box> open;
        open.push_back({from_, to_, function_.at(from_), function_.at(to_)});
        double scale = std::max({sizeOf(open[0].atFrom), sizeOf(open[0].atTo), std::fabs(value_)});
        double mostScale = engine::kUnbounded;
        while (!open.empty()) {
            const Box box = open.back();
            open.pop_back();
            const double middle = 0.5 * box.from + 0.5 * box.to;
            const Enclosures atMiddle = function_.at(middle);
            const Enclosures over = function_.over(box.from, box.to, box.atFrom, middle, atMiddle, box.atTo);
            scale = std::max(scale, sizeOf(atMiddle));
            if (!atMiddle[k_].isFinite())
                add(zeros_.unsure, middle, middle);
            if (box.from == from_ && box.to == to_ && !over[k_].isFinite())
                mostScale = usualSize();
            noise_ = 1e-15 * std::min(scale, mostScale) + 2.0 * atMiddle[k_].width();
            if (isSettled(box.from, box.to, box.atFrom, box.atTo, over))
                continue;
            if (function_.budget().isSpent()) {
                zeros_.complete = false;
                add(zeros_.unsure, box.from, box.to);
                for (; !open.empty(); open.pop_back())
                    add(zeros_.unsure, open.back().from, open.back().to);
                break;
            }
            open.push_back({middle, box.to, atMiddle, box.atTo});
            open.push_back({box.from, middle, box.atFrom, atMiddle});
        }
        join();
        return std::move(zeros_);
    }

private:
    double sizeOf(const Enclosures& values) const
    {
        return values[k_].isFinite() ? values[k_].largest() : 0.0;
    }

    // The median size at a few places: beside a pole the largest says nothing about the others.
    double usualSize()
    {
        constexpr int kPlaces = 33;
        std::vector<double> sizes;
        for (int i = 1; i <= kPlaces; ++i) {
            const Interval y = function_.at(from_ + (to_ - from_) * i / (kPlaces + 1))[k_];
            if (y.isFinite())
                sizes.push_back(y.largest());
        }
        if (sizes.empty())
            return engine::kUnbounded;
        const auto median = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
        std::nth_element(sizes.begin(), median, sizes.end());
        return std::max(*median, std::fabs(value_));
    }

    // Whether all is known about the zeros in a box, which are then noted.
    bool isSettled(double from, double to, const Enclosures& atFrom, const Enclosures& atTo,
                   const Enclosures& over)
    {
        const Interval y = shifted(over[k_], value_);
        if (y.excludesZero() && !y.partial)
            return true;
        const bool narrow = isNarrow(from, to, to_ - from_);
        if (y.isNothing() || (y.excludesZero() && narrow)) {
            zeros_.hasGap |= !narrow;
            add(zeros_.unsure, from, to);
            return true;
        }
        if (y.isZero() && !y.partial) {
            add(zeros_.flat, from, to);
            return true;
        }
        const bool hasSlope = static_cast<int>(k_) < function_.highest();
        if (hasSlope && over[k_ + 1].isFinite() && over[k_ + 1].excludesZero() && !y.partial) {
            noteCrossing(from, to, shifted(atFrom[k_], value_), shifted(atTo[k_], value_), over[k_ + 1]);
            return true;
        }
        if (y.isFinite() && (y.largest() <= noise_ || isNarrow(from, to, to_ - from_))) {
            note(from, to);
            return true;
        }
        if (!isNarrow(from, to, to_ - from_))
            return false;
        zeros_.complete = false;
        add(zeros_.unsure, from, to);
        return true;
    }

    // Boxes that touch are one.
    static void add(std::vector<Range>& boxes, double from, double to)
    {
        if (!boxes.empty() && boxes.back().to == from)
            boxes.back().to = to;
        else
            boxes.push_back({from, to});
    }

    // In a box where the function rises or falls throughout.
    void noteCrossing(double from, double to, const Interval& first, const Interval& last,
                      const Interval& slope)
    {
        if (first.excludesZero() && last.excludesZero()) {
            if ((first.lo > 0.0) != (last.lo > 0.0)) {
                const Zero zero = zeroBetween(function_, static_cast<int>(k_), value_, from, to, slope);
                note(zero.x - zero.error, zero.x + zero.error, zero.x);
            }
            return;
        }
        const bool atFrom =
            !first.excludesZero() && (last.excludesZero() || first.largest() <= last.largest());
        const double x = atFrom ? from : to;
        const double size = (atFrom ? first : last).largest();
        const double reach = reachOf(function_, k_, x, size, slope, from, to);
        if (reach < to - from || !(atFrom ? last : first).excludesZero())
            return note(std::max(x - reach, from), std::min(x + reach, to), x);
        // The slope is 0 next to x, or nearly.
        const double beyond = nearestNonzero(x, atFrom ? to : from);
        note(std::min(x, beyond), std::max(x, beyond), x);
    }

    // The function rises or falls from a zero at x, but for rounding, to a far place where it is not 0.
    // Returns a place where it is not 0 either, and which is not much further from x than necessary.
    double nearestNonzero(double x, double far)
    {
        constexpr double kFactor = 4.0;
        double near = x;
        while (std::fabs(far - x) > kFactor * std::fabs(near - x)) {
            const double middle = 0.5 * near + 0.5 * far;
            if (middle == near || middle == far || isNarrow(std::min(near, far), std::max(near, far), 0.0))
                break;
            (shifted(function_.at(middle)[k_], value_).excludesZero() ? far : near) = middle;
        }
        return far;
    }

    void note(double from, double to) { note(from, to, std::nan("")); }

    void note(double from, double to, double x)
    {
        found_.push_back({std::max(from, from_), std::min(to, to_), x});
    }

    // Finds that touch are one zero. A single find is where it was computed; others are at the
    // end of the range that they reach, or inside.
    void join()
    {
        std::sort(found_.begin(), found_.end(),
                  [](const Found& a, const Found& b) { return a.from < b.from; });
        for (std::size_t i = 0; i < found_.size();) {
            Found all = found_[i];
            std::size_t next = i + 1;
            for (; next < found_.size() && found_[next].from <= all.to + touching(all.to); ++next) {
                all.to = std::max(all.to, found_[next].to);
                all.x = std::isnan(all.x) ? found_[next].x : all.x;
            }
            const bool one = next == i + 1;
            i = next;
            if (liesInFlat(all))
                continue;
            double x = one ? all.x : std::nan("");
            if (std::isnan(x))
                x = all.from <= from_ ? from_ : all.to >= to_ ? to_ : innermost(all);
            zeros_.places.push_back({x, std::max(x - all.from, all.to - x)});
        }
    }

    struct Found {
        double from, to;
        double x;  // where it was computed; NaN: not known
    };

    static double touching(double x) { return 8.0 * 0x1p-52 * std::fabs(x); }

    bool liesInFlat(const Found& found) const
    {
        return std::any_of(zeros_.flat.begin(), zeros_.flat.end(), [&](const Range& flat) {
            return found.to >= flat.from - touching(flat.from) && found.from <= flat.to + touching(flat.to);
        });
    }

    // A multiple zero, hidden by rounding: the zero of the highest derivative that has one.
    double innermost(const Found& found)
    {
        const double middle = 0.5 * found.from + 0.5 * found.to;
        const Enclosures over = function_.plainly(found.from, found.to);
        std::size_t slope = k_ + 2;
        while (static_cast<int>(slope) <= function_.highest() && !over[slope].excludesZero())
            ++slope;
        if (static_cast<int>(slope) > function_.highest())
            return std::isnan(found.x) ? middle : found.x;
        double x = middle;
        for (int i = 0; i < 4; ++i) {
            const Enclosures at = function_.at(x);
            const double next = x - at[slope - 1].middle() / at[slope].middle();
            if (!(next >= found.from && next <= found.to))
                return middle;
            x = next;
        }
        return x;
    }

    BoxEvaluator& function_;
    std::size_t k_;
    double value_;
    double from_;
    double to_;
    double noise_ = 0.0;  // values up to this size count as 0
    Zeros zeros_;
    std::vector<Found> found_;
};

}  // namespace

Zeros zerosOf(BoxEvaluator& function, int k, double value, double from, double to)
{
    return ZeroSearch(function, k, value, from, to).run();
}

// Newton's method, with a halving step where it would leave the bracket.
Zero zeroBetween(BoxEvaluator& function, int k, double value, double from, double to, const Interval& slope)
{
    constexpr int kMostSteps = 100;
    const auto order = static_cast<std::size_t>(k);
    const bool rises = slope.lo > 0.0;
    const double first = from;
    const double last = to;
    double x = 0.5 * from + 0.5 * to;
    double best = x;
    double least = engine::kUnbounded;
    bool isClose = false;
    for (int i = 0; i < kMostSteps; ++i) {
        const Enclosures at = function.pairAt(x, order);
        const Interval y = shifted(at[order], value);
        if (!(y.largest() >= least)) {
            least = y.largest();
            best = x;
        } else if (isClose) {
            break;
        }
        if (y.isZero() || (isClose && !y.excludesZero()))
            break;
        if (y.excludesZero())
            ((y.lo > 0.0) == rises ? to : from) = x;
        isClose = !y.excludesZero();
        double next = x - y.middle() / at[order + 1].middle();
        if (!(next > from && next < to))
            next = 0.5 * from + 0.5 * to;
        if (next == x || next <= from || next >= to)
            break;
        x = next;
    }

    const double reach =
        std::min(reachOf(function, order, best, least, slope, first, last), std::max(best - from, to - best));
    return {best, reach + std::fabs(best) * 0x1p-52};
}

}  // namespace mf::analysis
