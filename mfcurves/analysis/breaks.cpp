// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/parts.h"
#include "mfcurves/analysis/splineParts.h"
#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {

using engine::Interval;

namespace {

constexpr int kHighestOfBreaks = kOrdersOfBreaks - 1;

// The limits as the curve computes them if the enclosures contain them; else as enclosed.
CurveValues limits(const CurveValues& computed, const EndValues& end)
{
    const auto one = [&](std::size_t k) {
        const double y = computed[static_cast<int>(k)];
        const Interval& known = end.values[k];
        return known.contains(y) ? y : known.isFinite() ? known.middle() : std::nan("");
    };
    return {one(0), one(1), one(2), one(3)};
}

// Appends the break between two ends, if some order jumps.
void appendBreak(const Curve& curve, double x, const EndValues& left, const EndValues& right, Cause cause,
                 int row, int upTo, std::vector<Break>& found)
{
    const int lowest = lowestJump(left, right, upTo);
    if (lowest > upTo)
        return;
    const double rightX = cause == Cause::CycleEnd ? curve.firstX() : x;
    found.push_back({x, lowest, limits(curve.at(x, Side::Left), left),
                     limits(curve.at(rightX, Side::Right), right), cause, row});
}

void appendBreaks(const Curve& curve, const std::vector<Part>& parts, std::size_t first, int upTo,
                  std::vector<Break>& found)
{
    for (std::size_t i = std::max<std::size_t>(first, 1); i < parts.size(); ++i) {
        appendBreak(curve, parts[i].from, endOf(parts[i - 1]), startOf(parts[i]),
                    parts[i].beginsAtKink ? Cause::Kink : Cause::Seam, parts[i].row, upTo, found);
    }
}

void appendKnot(const Curve& curve, const host::SplinePieces& spline, std::size_t i, int upTo,
                std::vector<Break>& found)
{
    const SplinePart left = splinePart(spline, i - 1, all);
    const SplinePart right = splinePart(spline, i, all);
    appendBreak(curve, right.knot, splineEnd(left, left.to), splineEnd(right, 0.0), Cause::Knot,
                static_cast<int>(i) + 1, upTo, found);
}

std::vector<Break> knotBreaks(const Curve& curve, const host::SplinePieces& spline, int upTo, Range range)
{
    std::vector<Break> found;
    for (std::size_t i = 1; i + 1 < spline.count(); ++i) {
        const double x = spline.knots()[i];
        if (x >= range.from && x <= range.to)
            appendKnot(curve, spline, i, upTo, found);
    }
    return found;
}

// The breaks in the range, both ends included. There the adjacent piece outside the range
// counts, so the parts of the whole curve are needed.
std::vector<Break> formulaBreaks(const Curve& curve, int upTo, Range range)
{
    const std::vector<Part> parts = partsOf(curve, all);
    std::vector<Break> found;
    appendBreaks(curve, parts, 1, upTo, found);
    std::erase_if(found, [&](const Break& b) { return b.x < range.from || b.x > range.to; });
    return found;
}

// The break between the end of the cycle and its start; empty if no order jumps.
std::vector<Break> cycleEnd(const Curve& curve, int upTo)
{
    std::vector<Break> found;
    if (curve.outside() != Outside::Repeat || !(curve.lastX() > curve.firstX()))
        return found;
    if (const host::SplinePieces* spline = curve.frozen().spline()) {
        const SplinePart last = splinePart(*spline, spline->count() - 2, all);
        appendBreak(curve, curve.lastX(), splineEnd(last, last.to),
                    splineEnd(splinePart(*spline, 0, all), 0.0), Cause::CycleEnd, 0, upTo, found);
        return found;
    }
    std::vector<curve::CurvePiece> pieces = formulaPieces(curve, all);
    std::vector<Part> first, last;
    appendParts(curve, pieces.front(), all, first);
    appendParts(curve, pieces.back(), all, last);
    if (!first.empty() && !last.empty()) {
        appendBreak(curve, curve.lastX(), endOf(last.back()), startOf(first.front()), Cause::CycleEnd, 0,
                    upTo, found);
    }
    return found;
}

std::optional<double> nextKnot(const Curve& curve, const host::SplinePieces& spline, double after, int upTo)
{
    std::vector<Break> found;
    std::size_t i = after < spline.firstX()   ? 1
                    : after >= spline.lastX() ? spline.count()
                                              : spline.indexAt(after) + 1;
    for (; i + 1 < spline.count() && found.empty(); ++i)
        appendKnot(curve, spline, i, upTo, found);
    if (found.empty())
        return std::nullopt;
    return found.front().x;
}

// Piece by piece from x on, so that pieces after the break cost nothing.
std::optional<double> nextInFormulas(const Curve& curve, double after, int upTo)
{
    const std::vector<curve::CurvePiece> pieces = formulaPieces(curve, all);
    std::vector<Part> parts;
    for (const curve::CurvePiece& piece : pieces) {
        if (piece.end < after)
            continue;
        const std::size_t known = parts.size();
        appendParts(curve, piece, all, parts);
        std::vector<Break> found;
        appendBreaks(curve, parts, known, upTo, found);
        for (const Break& b : found) {
            if (b.x > after)
                return b.x;
        }
    }
    return std::nullopt;
}

std::optional<double> nextInside(const Curve& curve, double after, int upTo)
{
    if (const host::SplinePieces* spline = curve.frozen().spline())
        return nextKnot(curve, *spline, after, upTo);
    return nextInFormulas(curve, after, upTo);
}

// The place that corresponds to x of the first cycle in the cycle that begins at `start`;
// always greater than `after`.
double shifted(double x, double start, double firstX, double after)
{
    const double there = start + (x - firstX);
    return there > after ? there : std::nextafter(after, engine::kUnbounded);
}

std::optional<double> nextInCycles(const Curve& curve, double after, int upTo)
{
    const double firstX = curve.firstX();
    const double period = curve.lastX() - firstX;
    if (!(period > 0.0))
        return std::nullopt;
    const double cycle = std::floor((after - firstX) / period);
    double start = firstX + cycle * period;
    double inside = after;
    if (cycle != 0.0) {
        inside = firstX + (after - start);
        if (inside >= curve.lastX()) {
            start += period;
            inside = firstX;
        }
    }
    if (const auto next = nextInside(curve, inside, upTo); next && *next < curve.lastX())
        return cycle == 0.0 ? *next : shifted(*next, start, firstX, after);
    const bool closes = cycleEnd(curve, upTo).empty();
    const double end = cycle == 0.0 ? curve.lastX() : start + period;
    if (!closes && end > after)
        return end;
    if (const auto next = nextInside(curve, std::nextafter(firstX, -engine::kUnbounded), upTo))
        return shifted(*next, end, firstX, after);
    return std::nullopt;
}

// Collects the places in a range where an order has an impulse: the order below it jumps.
class Impulses {
public:
    Impulses(int order, Range range) : below_(order - 1), range_(range) {}

    void add(double x, const EndValues& left, const EndValues& right)
    {
        if (x >= range_.from && x <= range_.to && jumps(left, right, below_))
            places_.push_back(x);
    }
    std::vector<double> take() { return std::move(places_); }

private:
    int below_;
    Range range_;
    std::vector<double> places_;
};

}  // namespace

std::vector<double> impulsesOf(const Curve& curve, const std::vector<Part>& parts, int order, Range range)
{
    Impulses impulses(order, range);
    const bool closes = curve.outside() == Outside::Repeat && curve.lastX() > curve.firstX();
    if (const host::SplinePieces* spline = curve.frozen().spline()) {
        const auto start = [&](std::size_t i) { return splineEnd(splinePart(*spline, i, all), 0.0); };
        const auto end = [&](std::size_t i) {
            const SplinePart part = splinePart(*spline, i, all);
            return splineEnd(part, part.to);
        };
        for (std::size_t i = 1; i + 1 < spline->count(); ++i)
            impulses.add(spline->knots()[i], end(i - 1), start(i));
        if (closes)
            impulses.add(curve.lastX(), end(spline->count() - 2), start(0));
        return impulses.take();
    }
    for (std::size_t i = 1; i < parts.size(); ++i)
        impulses.add(parts[i].from, endOf(parts[i - 1]), startOf(parts[i]));
    if (closes && !parts.empty())
        impulses.add(curve.lastX(), endOf(parts.back()), startOf(parts.front()));
    return impulses.take();
}

std::vector<Break> breaks(const Curve& curve, int upToOrder, Range range)
{
    const Range inside = cutToCurve(curve, range);
    const int upTo = std::min(upToOrder, kHighestOfBreaks);
    if (inside.from > inside.to)
        return {};
    const host::SplinePieces* spline = curve.frozen().spline();
    std::vector<Break> found =
        spline != nullptr ? knotBreaks(curve, *spline, upTo, inside) : formulaBreaks(curve, upTo, inside);
    if (inside.to == curve.lastX()) {
        const std::vector<Break> end = cycleEnd(curve, upTo);
        found.insert(found.end(), end.begin(), end.end());
    }
    return found;
}

std::optional<double> nextBreak(const Curve& curve, double after, int upToOrder)
{
    const int upTo = std::min(upToOrder, kHighestOfBreaks);
    if (!std::isfinite(after))
        return std::nullopt;
    if (curve.outside() == Outside::Repeat)
        return nextInCycles(curve, after, upTo);
    return nextInside(curve, after, upTo);
}

}  // namespace mf::analysis
