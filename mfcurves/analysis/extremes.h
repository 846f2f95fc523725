// SPDX-License-Identifier: MIT
#pragma once

#include <array>

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
};

/// Orders 0 to `orders - 1` of a smooth function on [from, to].
std::array<OrderRange, kHighestOrder> rangesOf(BoxEvaluator& function, int orders, double from, double to);

}  // namespace mf::analysis
