// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

#include "mfcurves/analysis/splineParts.h"
#include "mfcurves/analysis/summaries.h"
#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {
namespace {

using engine::kUnbounded;

// The integral of (a + b t + c t^2 + d t^3)^2 and of the polynomial itself from 0 to h.
Integrals integralsOf(double a, double b, double c, double d, double h)
{
    const double h2 = h * h;
    Integrals sum;
    sum.value = h * (a + h * (b / 2.0 + h * (c / 3.0 + h * (d / 4.0))));
    sum.square = h * (a * a + h * (a * b) + h2 * ((b * b + 2.0 * a * c) / 3.0) +
                      h2 * h * ((a * d + b * c) / 2.0) + h2 * h2 * ((c * c + 2.0 * b * d) / 5.0) +
                      h2 * h2 * h * (c * d / 3.0) + h2 * h2 * h2 * (d * d / 7.0));
    return sum;
}

class PointSummary {
public:
    PointSummary(const Curve& curve, Range range)
        : curve_(curve), spline_(*curve.frozen().spline()), range_(range), points_(pointsIn(spline_, range))
    {
    }

    std::array<Summary, 4> run()
    {
        for (std::size_t i = points_.first; i <= points_.last; ++i)
            examine(i);
        std::array<Integrals, kOrders> totals = integrals({1.0, 1.0, 1.0, 1.0});
        std::array<double, kOrders> scales;
        scales.fill(1.0);
        if (isOutOfScale(totals)) {
            for (std::size_t k = 0; k < kOrders; ++k)
                scales[k] = size_[k] > 0.0 && std::isfinite(size_[k]) ? size_[k] : 1.0;
            totals = integrals(scales);
        }
        std::array<Summary, 4> summaries;
        for (std::size_t k = 0; k < kOrders; ++k) {
            settle(k);
            summaries[k] = summaryOf(extremes_[k], totals[k], scales[k], range_);
            summaries[k].impulses = std::move(impulses_[k]);
        }
        return summaries;
    }

private:
    void examine(std::size_t i)
    {
        const SplinePart part = splinePart(spline_, i, range_);
        if (i > points_.first)
            noteImpulses(part);
        const Side first = part.from == 0.0 ? Side::Right : Side::Plain;
        const bool endsAtPoint = part.knot + part.to < range_.to || range_.to == curve_.lastX();
        const Side last = endsAtPoint ? Side::Left : Side::Plain;
        for (int order = 0; order < kOrders; ++order) {
            const auto k = static_cast<std::size_t>(order);
            const double atFrom = part.at(order, part.from);
            const double atTo = part.at(order, part.to);
            seen(k, part, part.from, atFrom, first);
            seen(k, part, part.to, atTo, last);
            size_[k] = std::max(size_[k], part.size(order));
            if (order < 2)
                examineInside(part, order);
        }
        previous_ = part;
    }

    void examineInside(const SplinePart& part, int order)
    {
        // Only where the slope changes its sign, which a straight slope does between its ends.
        const double bendFrom = part.at(2, part.from);
        const double bendTo = part.at(2, part.to);
        const bool bends = (bendFrom < 0.0) != (bendTo < 0.0);
        const bool turns = (part.at(1, part.from) < 0.0) != (part.at(1, part.to) < 0.0);
        if (!bends && (order == 1 || !turns))
            return;
        std::array<double, 3> t;
        const int count = part.zeros(order + 1, 0.0, t);
        for (int i = 0; i < count; ++i) {
            const double at = t[static_cast<std::size_t>(i)];
            seen(static_cast<std::size_t>(order), part, at, part.at(order, at), Side::Plain);
        }
    }

    void seen(std::size_t k, const SplinePart& part, double t, double y, Side side)
    {
        if (!std::isfinite(y))
            finite_ = false;
        extremes_[k].offer(part.knot + t, y, side);
    }

    // Where the order below jumps. A value does not, as the pieces meet in the point.
    void noteImpulses(const SplinePart& part)
    {
        const double h = previous_.to;
        for (int order = 1; order < kOrders - 1; ++order) {
            const double left = previous_.at(order, h);
            const double right = part.at(order, 0.0);
            // Most knots are clear at once: a step that is small against the values beside it is
            // none, one that is large against bounds of both pieces is one.
            const double step = std::fabs(left - right);
            if (step <= kJump * std::max(std::fabs(left), std::fabs(right)))
                continue;
            const bool isClear = step > kJump * std::max(previous_.size(order), part.size(order));
            if (isClear || jumps(splineEnd(previous_, h), splineEnd(part, 0.0), order))
                impulses_[static_cast<std::size_t>(order) + 1].push_back(part.knot);
        }
    }

    // Whether a square became too large or too small for a double.
    bool isOutOfScale(const std::array<Integrals, kOrders>& totals) const
    {
        constexpr double kLeast = 1e-290;
        bool outOfScale = false;
        for (std::size_t k = 0; k < kOrders; ++k) {
            const double square = totals[k].square;
            outOfScale |= !(square < kUnbounded) || (square < kLeast && size_[k] > 0.0);
        }
        return outOfScale;
    }

    std::array<Integrals, kOrders> integrals(const std::array<double, kOrders>& scales) const
    {
        std::array<Integrals, kOrders> totals{};
        for (std::size_t i = points_.first; i <= points_.last; ++i) {
            const SplinePart part = splinePart(spline_, i, range_);
            const double t = part.from;
            const double a = part.at(0, t) / scales[0];
            const double b = part.at(1, t);
            const double c = 0.5 * part.at(2, t);
            const double d = part.c.d;
            const double h = part.to - t;
            add(totals[0], integralsOf(a, b / scales[0], c / scales[0], d / scales[0], h));
            add(totals[1], integralsOf(b / scales[1], 2.0 * c / scales[1], 3.0 * d / scales[1], 0.0, h));
            add(totals[2], integralsOf(2.0 * c / scales[2], 6.0 * d / scales[2], 0.0, 0.0, h));
            add(totals[3], integralsOf(6.0 * d / scales[3], 0.0, 0.0, 0.0, h));
        }
        return totals;
    }

    static void add(Integrals& total, const Integrals& part)
    {
        total.value += part.value;
        total.square += part.square;
    }

    // The values as the curve computes them, and the rounding of the polynomials as bound.
    void settle(std::size_t k)
    {
        constexpr double kRounding = 16.0 * 0x1p-53;
        Extremes& found = extremes_[k];
        for (Extremes::Place* place : {&found.least, &found.greatest}) {
            const double computed = curve_.at(place->x, place->side)[static_cast<int>(k)];
            if (std::isfinite(computed))
                place->y = computed;
        }
        const double rounding = kRounding * size_[k];
        if (finite_ && std::isfinite(rounding))
            found.bound(found.least.y - rounding, found.greatest.y + rounding);
        else
            found.bound(-kUnbounded, kUnbounded);
    }

    const Curve& curve_;
    const host::SplinePieces& spline_;
    Range range_;
    PointRange points_;
    SplinePart previous_{};
    std::array<Extremes, kOrders> extremes_;
    std::array<double, kOrders> size_{};
    std::array<std::vector<double>, kOrders> impulses_;
    bool finite_ = true;
};

}  // namespace

std::array<Summary, 4> summarizePoints(const Curve& curve, Range range)
{
    return PointSummary(curve, range).run();
}

}  // namespace mf::analysis
