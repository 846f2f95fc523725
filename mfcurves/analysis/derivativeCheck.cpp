// SPDX-License-Identifier: MIT

#include <algorithm>
#include <array>
#include <cmath>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/parts.h"
#include "mfcurves/analysis/splineParts.h"
#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {
namespace {

struct Estimate {
    double value;
    double error;
};

// Central differences of an order with ever smaller steps, extrapolated to a step of 0;
// Ridders, Adv. Eng. Softw. 4 (1982).
Estimate slopeOf(const Curve& curve, int order, double x, double step)
{
    constexpr int kSteps = 10;
    constexpr double kShrink = 1.4;
    constexpr double kShrinkSquared = kShrink * kShrink;
    const auto difference = [&](double h) {
        const double up = x + h;
        const double down = x - h;
        return (curve(up, order) - curve(down, order)) / (up - down);
    };
    std::array<std::array<double, kSteps>, kSteps> table;
    Estimate best{difference(step), std::numeric_limits<double>::infinity()};
    table[0][0] = best.value;
    for (std::size_t i = 1; i < kSteps; ++i) {
        step /= kShrink;
        table[0][i] = difference(step);
        double factor = kShrinkSquared;
        for (std::size_t j = 1; j <= i; ++j) {
            table[j][i] = (table[j - 1][i] * factor - table[j - 1][i - 1]) / (factor - 1.0);
            factor *= kShrinkSquared;
            const double error = std::max(std::fabs(table[j][i] - table[j - 1][i]),
                                          std::fabs(table[j][i] - table[j - 1][i - 1]));
            if (error <= best.error)
                best = {table[j][i], error};
        }
        if (std::fabs(table[i][i] - table[i - 1][i - 1]) >= 2.0 * best.error)
            break;
    }
    return best;
}

// The places inside a smooth stretch that are compared, as shares of its length.
constexpr std::array<double, 5> kShares = {0.11, 0.31, 0.53, 0.71, 0.93};

class Comparison {
public:
    explicit Comparison(const Curve& curve) : curve_(curve) {}

    void examine(double from, double to)
    {
        for (int order = 1; order <= 3; ++order) {
            const double size = sizeOf(order, from, to);
            for (const double share : kShares)
                compare(order, from + share * (to - from), std::min(share, 1.0 - share) * (to - from), size);
        }
    }

    DerivativeCheck result() const { return worst_; }

private:
    double sizeOf(int order, double from, double to) const
    {
        constexpr int kPlaces = 16;
        double size = 0.0;
        for (int i = 0; i < kPlaces; ++i) {
            const double y = curve_(from + (i + 0.5) / kPlaces * (to - from), order);
            if (std::isfinite(y))
                size = std::max(size, std::fabs(y));
        }
        return size;
    }

    // Tries smaller first steps until the differences settle. If they never do, this x does
    // not count.
    void compare(int order, double x, double room, double size)
    {
        constexpr double kSettled = 1e-8;
        constexpr double kLimit = 1e-6;
        constexpr int kMostTries = 6;
        const double stated = curve_(x, order);
        if (!std::isfinite(stated))
            return;
        Estimate estimate{0.0, std::numeric_limits<double>::infinity()};
        double step = 0.9 * room;
        for (int i = 0; i < kMostTries && !(estimate.error <= kSettled * size); ++i, step /= 8.0)
            estimate = slopeOf(curve_, order - 1, x, step);
        const double scale = std::max(size, std::fabs(estimate.value));
        if (!(estimate.error <= kSettled * scale))
            return;
        const double error = scale == 0.0 ? 0.0 : std::fabs(stated - estimate.value) / scale;
        if (worst_.worstOrder != 0 && error <= worst_.error)
            return;
        worst_ = {error <= kLimit, order, x, stated, estimate.value, error};
    }

    const Curve& curve_;
    DerivativeCheck worst_{true, 0, 0.0, 0.0, 0.0, 0.0};
};

}  // namespace

DerivativeCheck checkDerivatives(const Curve& curve, Range range)
{
    constexpr std::size_t kMostPieces = 1000;  // of a spline, spread evenly
    Comparison comparison(curve);
    const Range inside = cutToCurve(curve, range);
    if (inside.from > inside.to)
        return comparison.result();
    if (const host::SplinePieces* spline = curve.frozen().spline()) {
        const PointRange points = pointsIn(*spline, inside);
        const std::size_t stride = (points.last - points.first) / kMostPieces + 1;
        for (std::size_t i = points.first; i <= points.last; i += stride) {
            const SplinePart part = splinePart(*spline, i, inside);
            comparison.examine(part.knot + part.from, part.knot + part.to);
        }
        return comparison.result();
    }
    for (const Part& part : partsOf(curve, inside))
        comparison.examine(part.from, part.to);
    return comparison.result();
}

}  // namespace mf::analysis
