// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "mfcurves/analysis/boxes.h"

namespace mf::analysis {

/// The extremes of a function on a stretch, and bounds of all its values.
struct OrderRange {
    struct End {
        double x;
        engine::Interval y;  // the exact value at x
    };
    End least;
    End greatest;
    // Of exact and computed values; infinite if nothing is proved.
    double lowest = -engine::kUnbounded;
    double highest = engine::kUnbounded;
    double rounding = engine::kUnbounded;  // of computed values; infinite if no bound is known
    bool isSeen = false;                   // the promise of StretchRanges::cuts holds
};

/// The ranges of the orders of a function on a stretch.
struct StretchRanges {
    std::array<OrderRange, kHighestOrder> orders;
    /// Ascending, from end to end. Between neighbours no order varies much more than its values
    /// at the two and in the middle show, so that an integration does not miss a part of it.
    std::vector<double> cuts;
};

/// Orders 0 to `orders - 1` of a smooth function on [from, to].
StretchRanges rangesOf(BoxEvaluator& function, int orders, double from, double to);

}  // namespace mf::analysis
