// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

#include "mfcurves/analysis/splineParts.h"
#include "mfcurves/analysis/summaries.h"
#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {
namespace {

using engine::kUnbounded;

using Polynomial = host::SplinePiece;

constexpr double kThird = 1.0 / 3.0;

// The integrals of polynomials and of their squares from 0 to h: of a + b t + c t^2 + d t^3 and of
// those of lower degree.
Integrals integralsOf(double a, double h)
{
    return {h * a, h * (a * a)};
}

Integrals integralsOf(double a, double b, double h)
{
    return {h * (a + h * (0.5 * b)), h * (a * a + h * (a * b + h * (kThird * (b * b))))};
}

Integrals integralsOf(double a, double b, double c, double h)
{
    const double square =
        a * a +
        h * (a * b + h * (kThird * (b * b + 2.0 * (a * c)) + h * (0.5 * (b * c) + h * (0.2 * (c * c)))));
    return {h * (a + h * (0.5 * b + h * (kThird * c))), h * square};
}

Integrals integralsOf(double a, double b, double c, double d, double h)
{
    constexpr double kSeventh = 1.0 / 7.0;
    const double highest = 0.2 * (c * c + 2.0 * (b * d)) + h * (kThird * (c * d) + h * (kSeventh * (d * d)));
    const double square =
        a * a +
        h * (a * b + h * (kThird * (b * b + 2.0 * (a * c)) + h * (0.5 * (a * d + b * c) + h * highest)));
    return {h * (a + h * (0.5 * b + h * (kThird * c + h * (0.25 * d)))), h * square};
}

// Adds the integrals of all orders of a polynomial from 0 to h. `scaled` divides by the scale of
// an order.
template <class Scaled>
void addIntegrals(const Polynomial& p, double h, const Scaled& scaled, AllIntegrals& totals)
{
    const auto add = [&](std::size_t k, auto... coefficients) {
        const Integrals part = integralsOf(scaled(k, coefficients)..., h);
        totals[k].value += part.value;
        totals[k].square += part.square;
    };
    add(0, p.a, p.b, p.c, p.d);
    add(1, p.b, 2.0 * p.c, 3.0 * p.d);
    add(2, 2.0 * p.c, 6.0 * p.d);
    add(3, 6.0 * p.d);
}

// The polynomial of a part in the distance from where the part begins.
Polynomial fromStart(const SplinePart& part)
{
    if (part.from == 0.0)
        return part.c;
    const double t = part.from;
    return {part.at(0, t), part.at(1, t), 0.5 * part.at(2, t), part.c.d};
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
        std::array<double, kOrders> scales;
        scales.fill(1.0);
        if (isOutOfScale()) {
            for (std::size_t k = 0; k < kOrders; ++k)
                scales[k] = size_[k] > 0.0 && std::isfinite(size_[k]) ? size_[k] : 1.0;
            integrateScaled(scales);
        }
        std::array<Summary, 4> summaries;
        for (std::size_t k = 0; k < kOrders; ++k) {
            settle(k);
            summaries[k] = summaryOf(extremes_[k], totals_[k], scales[k], range_);
            summaries[k].impulses = std::move(impulses_[k]);
        }
        return summaries;
    }

private:
    // A part that was examined, with its slope and second derivative at its end.
    struct End {
        SplinePart part;
        std::array<double, kOrders> sizes;
        double slope;
        double bend;
    };

    void examine(std::size_t i)
    {
        const SplinePart part = splinePart(spline_, i, range_);
        const Polynomial p = fromStart(part);
        const double h = part.to - part.from;
        addIntegrals(
            p, h, [](std::size_t, double number) { return number; }, totals_);

        // Each order lies between the least and the greatest of its control points (Farin, Curves
        // and Surfaces for CAGD). Few pieces contain an extreme, and only those are examined closely.
        const double value = part.at(0, part.to), slope = part.at(1, part.to), bend = part.at(2, part.to);
        const double third = kThird * h;
        if (mayLeave(0, p.a, value, p.a + third * p.b, value - third * slope))
            seeOrder(0, part);
        if (mayLeave(1, p.b, slope, p.b + h * p.c))
            seeOrder(1, part);
        if (mayLeave(2, 2.0 * p.c, bend))
            seeOrder(2, part);
        if (mayLeave(3, 6.0 * p.d))
            seeOrder(3, part);
        const End end{part, {part.size(0), part.size(1), part.size(2), part.size(3)}, slope, bend};
        for (std::size_t k = 0; k < kOrders; ++k)
            size_[k] = std::max(size_[k], end.sizes[k]);
        if (i > points_.first) {
            noteImpulse(1, previous_, end, previous_.slope, p.b);
            noteImpulse(2, previous_, end, previous_.bend, 2.0 * p.c);
        }
        previous_ = end;
    }

    // Whether one of the numbers is NaN or outside the range of the values seen so far.
    template <class... Numbers>
    bool mayLeave(std::size_t k, Numbers... numbers) const
    {
        const double least = extremes_[k].least.y;
        const double greatest = extremes_[k].greatest.y;
        return !(... & ((numbers >= least) & (numbers <= greatest)));
    }

    void seeOrder(int order, const SplinePart& part)
    {
        const auto k = static_cast<std::size_t>(order);
        const bool endsAtPoint = part.knot + part.to < range_.to || range_.to == curve_.lastX();
        seen(k, part, part.from, part.at(order, part.from), part.from == 0.0 ? Side::Right : Side::Plain);
        seen(k, part, part.to, part.at(order, part.to), endsAtPoint ? Side::Left : Side::Plain);
        if (order < 2)
            examineInside(part, order);
    }

    void examineInside(const SplinePart& part, int order)
    {
        // An order has an extreme inside only if its slope changes sign there. A slope that is
        // linear, or does not bend, shows this at its ends.
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

    // Notes the impulse of the next order if an order jumps from `left` to `right`. The value
    // does not jump, because the pieces meet in the point.
    void noteImpulse(int order, const End& before, const End& after, double left, double right)
    {
        // Most knots are clear at once: a step that is small compared with the values at the knot
        // is not a jump; one that is large compared with the bounds of both pieces is a jump.
        const auto k = static_cast<std::size_t>(order);
        const double step = std::fabs(left - right);
        if (step <= kJump * std::max(std::fabs(left), std::fabs(right)))
            return;
        const bool isClear = step > kJump * std::max(before.sizes[k], after.sizes[k]);
        if (isClear ||
            jumps(splineEnd(before.part, before.part.to), splineEnd(after.part, after.part.from), order))
            impulses_[k + 1].push_back(after.part.knot);
    }

    // Whether a square became too large or too small for a double.
    bool isOutOfScale() const
    {
        constexpr double kLeast = 1e-290;
        bool outOfScale = false;
        for (std::size_t k = 0; k < kOrders; ++k) {
            const double square = totals_[k].square;
            outOfScale |= !(square < kUnbounded) || (square < kLeast && size_[k] > 0.0);
        }
        return outOfScale;
    }

    void integrateScaled(const std::array<double, kOrders>& scales)
    {
        totals_ = {};
        for (std::size_t i = points_.first; i <= points_.last; ++i) {
            const SplinePart part = splinePart(spline_, i, range_);
            addIntegrals(
                fromStart(part), part.to - part.from,
                [&](std::size_t k, double number) { return number / scales[k]; }, totals_);
        }
    }

    // Takes the values that the curve computes. The rounding of the polynomials is the bound.
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

    End previous_{};
    const Curve& curve_;
    const host::SplinePieces& spline_;
    Range range_;
    PointRange points_;
    std::array<Extremes, kOrders> extremes_;
    std::array<double, kOrders> size_{};
    AllIntegrals totals_{};
    std::array<std::vector<double>, kOrders> impulses_;
    bool finite_ = true;
};

}  // namespace

std::array<Summary, 4> summarizePoints(const Curve& curve, Range range)
{
    return PointSummary(curve, range).run();
}

}  // namespace mf::analysis
