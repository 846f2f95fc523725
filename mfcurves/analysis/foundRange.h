// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

#include "mfcurves/analysis/extremes.h"

namespace mf::analysis {

/// What the search for the range of one order has found so far.
struct FoundRange {
    OrderRange::End least;
    OrderRange::End greatest;
    /// From the least to the greatest value seen, and where these are.
    engine::Interval seen{engine::kUnbounded, -engine::kUnbounded};
    double seenLowAt = std::nan("");
    double seenHighAt = std::nan("");
    /// Of all boxes that are done, as computed.
    engine::Interval bound{engine::kUnbounded, -engine::kUnbounded};
    bool failed = false;     ///< a box has no bound
    bool undefined = false;  ///< the order has no value at all in a box
    bool unseen = false;     ///< in a box it may vary more than its values show

    /// Takes note of a value, unless it is not finite.
    void see(double x, const engine::Interval& y);
    /// Takes note of a value that may be an extreme. Of equal ones the one at the lowest x counts.
    void offer(double x, const engine::Interval& y);
    /// Makes a value an extreme if none found is further out.
    void replaceIfAsGood(double x, const engine::Interval& y);
};

}  // namespace mf::analysis
