// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "mfcurves/analysis/boxes.h"

namespace mf::analysis {

/// What a function does on a stretch: its extremes, and bounds that no value leaves.
struct OrderRange {
    struct End {
        double x;
        engine::Interval y;  // the exact value at x
    };
    End least;
    End greatest;
    // Of exact and computed values; infinite where nothing is proved.
    double lowest = -engine::kUnbounded;
    double highest = engine::kUnbounded;
    double rounding = engine::kUnbounded;  // of computed values; infinite where no bound is known
    bool isSeen = false;                   // what `cuts` promise holds
};

/// What the orders of a function do on a stretch.
struct StretchRanges {
    std::array<OrderRange, kHighestOrder> orders;
    /// Ascending, from end to end. Between neighbours no order moves much more than it does from
    /// one to the middle and to the other, so that values there do not miss what it does.
    std::vector<double> cuts;
};

/// Orders 0 to `orders - 1` of a smooth function on [from, to].
StretchRanges rangesOf(BoxEvaluator& function, int orders, double from, double to);

}  // namespace mf::analysis
