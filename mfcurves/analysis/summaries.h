// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>

#include "mfcurves/analysis/integrals.h"
#include "mfcurves/analysis/parts.h"

namespace mf::analysis {

/// The extremes of one order, part after part. Of equal ones the first counts.
struct Extremes {
    struct Place {
        double x = std::nan("");
        double y = std::nan("");
        Side side = Side::Plain;
    };
    Place least;
    Place greatest;
    double lowest = engine::kUnbounded;  // bounds of all values
    double highest = -engine::kUnbounded;

    /// Offers a place that may hold the extreme.
    void offer(double x, double y, Side side)
    {
        constexpr double kSame = 0x1p-50;
        if (y > least.y && y < greatest.y)
            return;
        if (!std::isfinite(y))
            return;
        const double same = kSame * std::fabs(y);
        if (!(y >= least.y - same))
            least = {x, y, side};
        if (!(y <= greatest.y + same))
            greatest = {x, y, side};
    }
    void bound(double from, double to)
    {
        lowest = std::min(lowest, from);
        highest = std::max(highest, to);
    }
};

/// What summarize returns for a curve through points.
std::array<Summary, 4> summarizePoints(const Curve& curve, Range range);

/// Combines extremes and integrals, whose orders are divided by `scale`, on a range.
Summary summaryOf(const Extremes& extremes, const Integrals& integrals, double scale, Range range);

}  // namespace mf::analysis
