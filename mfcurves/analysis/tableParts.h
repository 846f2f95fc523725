// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

#include "mfcurves/analysis/boxes.h"
#include "mfcurves/analysis/parts.h"

namespace mf::analysis {

/// The share of the tolerance of a table for the error of exact rows. The rest is for the rounding of their
/// values, which is added to the bounds.
constexpr double kShareForRounding = 0.999;

/// The largest magnitude in an interval; infinite if it is not known to be finite.
inline double largestOf(const engine::Interval& y)
{
    return y.isFinite() ? y.largest() : engine::kUnbounded;
}

/// The larger one of two bounds; infinite if the second is NaN.
inline double larger(double bound, double other)
{
    return other <= bound ? bound : std::isnan(other) ? engine::kUnbounded : other;
}

/// The smooth parts of any curve; of a curve through points, each polynomial between two points.
std::vector<Part> smoothParts(const Curve& curve);

/// Enclosures of `count` orders of a part, from the order `lowest` on. Refers to the part.
class PartOrders {
public:
    PartOrders(const Part& part, std::size_t lowest, std::size_t count);

    struct InBox {
        Enclosures from, middle, to;  // at these x
        Enclosures over;              // over the whole box
    };
    /// All orders in the box [from, to]; unbounded where they are not known.
    InBox in(double from, double to);

    /// Whether every further box is unbounded: no order is known, or the operations of this part are spent.
    bool knowsNoMore() const { return !evaluator_ || budget_.isSpent(); }

private:
    static constexpr std::size_t kOperations = 20'000'000;  // for all rows of a part

    Budget budget_;
    std::optional<BoxEvaluator> evaluator_;
};

}  // namespace mf::analysis
