// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "mfcurves/analysis/FormulaGraph.h"
#include "mfcurves/engine/enclosure.h"

namespace mf::analysis {

/// Enclosures of a function and its derivatives, from order 0 on.
using Enclosures = std::array<engine::Interval, kHighestOrder + 1>;

/// How much work an analysis may do for one piece, counted in operations on
/// intervals, so that the result does not depend on the clock.
class Budget {
public:
    explicit Budget(std::size_t operations) : left_(operations) {}

    /// False once everything is spent.
    bool spend(std::size_t operations)
    {
        left_ = operations < left_ ? left_ - operations : 0;
        return left_ > 0;
    }
    bool isSpent() const { return left_ == 0; }
    std::size_t left() const { return left_; }

private:
    std::size_t left_;
};

/// Enough for some ten thousand boxes of a law, and 50 ms at most.
constexpr std::size_t kOperationsPerPiece = 1'000'000;

/// Whether a box is too narrow to be cut again, in a search on a range of length `searchLength`.
inline bool isNarrow(double from, double to, double searchLength)
{
    constexpr double kUlps = 4.0;
    constexpr double kShare = 1e-17;
    const double ulp = std::max(std::fabs(from), std::fabs(to)) * 0x1p-52;
    const double middle = 0.5 * from + 0.5 * to;
    return to - from <= std::max(kUlps * ulp, kShare * searchLength) || middle <= from || middle >= to;
}

/// Evaluates a function and its derivatives on boxes of x.
class BoxEvaluator {
public:
    /// `orders`: the function and its derivatives, one at least.
    BoxEvaluator(const engine::Graph& graph, std::span<const engine::NodeId> orders, Budget& budget)
        : enclosure_(graph, orders), budget_(budget)
    {
        budget_.spend(cost());
    }

    /// The highest derivative.
    int highest() const { return static_cast<int>(enclosure_.rootCount()) - 1; }

    Enclosures at(double x)
    {
        Enclosures values;
        evaluate({x, x}, values);
        return values;
    }

    /// One order and the next at x; the other enclosures have no meaning.
    Enclosures pairAt(double x, std::size_t order)
    {
        Enclosures values;
        evaluate({x, x}, values, 3u << order);
        return values;
    }

    /// Enclosures of the exact values over [from, to], given those at both ends and in the
    /// middle. The function must be smooth between the ends.
    Enclosures over(double from, double to, const Enclosures& atFrom, double middle,
                    const Enclosures& atMiddle, const Enclosures& atTo);

    /// Enclosures of the exact and the computed values over [from, to], smooth or not.
    Enclosures plainly(double from, double to)
    {
        Enclosures values;
        evaluate({from, to}, values);
        return values;
    }

    /// Bounds of the rounding errors of computed values over [from, to], for each order.
    std::array<double, kHighestOrder + 1> rounding(double from, double to);

    Budget& budget() { return budget_; }
    /// The cost of an evaluation, in operations on intervals.
    std::size_t cost() const { return enclosure_.cost() + 4; }

private:
    void evaluate(const engine::Interval& x, Enclosures& values, unsigned wanted = ~0u)
    {
        budget_.spend(cost());
        enclosure_.evaluate(x, values.data(), wanted);
    }

    engine::Enclosure enclosure_;
    Budget& budget_;
};

}  // namespace mf::analysis
