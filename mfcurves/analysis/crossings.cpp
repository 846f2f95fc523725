// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/parts.h"
#include "mfcurves/analysis/splineParts.h"
#include "mfcurves/curve/FrozenCurve.h"

namespace mf::analysis {
namespace {

// A place where an order has a value, or an end of a stretch where it keeps it.
struct Place {
    double x;
    double error;
    Side side;
    bool isFlat;
};

Side sideOf(const Part& part, double x)
{
    if (x == part.from)
        return part.beginsPiece ? Side::Right : Side::Plain;
    if (x == part.to)
        return part.endsPiece ? Side::Left : Side::Plain;
    return Side::Plain;
}

// Where an order has a value, in their order along the curve, and the stretches where that is not known.
struct Places {
    std::vector<Place> places;
    std::vector<Range> unknown;  // of length 0 at a pole that is known exactly
};

// Where order k is `value` on the parts of formulas.
Places formulaPlaces(const Curve& curve, int order, double value, Range range)
{
    Places all;
    std::vector<Place>& places = all.places;
    for (const Part& part : partsOf(curve, range)) {
        BoxEvaluator evaluator = part.evaluator();
        if (order > evaluator.highest())
            continue;
        const Zeros zeros = zerosOf(evaluator, order, value, part.from, part.to);
        const std::size_t first = places.size();
        for (const Zero& zero : zeros.places)
            places.push_back({zero.x, zero.error, sideOf(part, zero.x), false});
        for (const Range& flat : zeros.flat) {
            places.push_back({flat.from, 0.0, sideOf(part, flat.from), true});
            places.push_back({flat.to, 0.0, sideOf(part, flat.to), true});
        }
        std::sort(places.begin() + static_cast<std::ptrdiff_t>(first), places.end(),
                  [](const Place& a, const Place& b) { return a.x < b.x; });
        all.unknown.insert(all.unknown.end(), zeros.unknown.begin(), zeros.unknown.end());
    }
    return all;
}

void appendPointPlaces(const SplinePart& part, int order, double value, std::vector<Place>& places)
{
    const double noise = 4.0 * 0x1p-52 * std::max(part.size(order), std::fabs(value));
    const auto isAt = [&](double t) { return std::fabs(part.at(order, t) - value) <= noise; };
    bool flat = isAt(part.from) && isAt(part.to);
    for (int k = order + 1; k < 4; ++k)
        flat &= part.size(k) == 0.0;
    if (isAt(part.from))
        places.push_back({part.knot + part.from, 0.0, part.from == 0.0 ? Side::Right : Side::Plain, flat});
    std::array<double, 3> t;
    const int count = flat ? 0 : part.zeros(order, value, t);
    for (int i = 0; i < count; ++i)
        places.push_back({part.knot + t[static_cast<std::size_t>(i)], 0.0, Side::Plain, false});
    if (isAt(part.to) && part.to > part.from)
        places.push_back({part.knot + part.to, 0.0, Side::Left, flat});
}

Places placesOf(const Curve& curve, int order, double value, Range range)
{
    const Range inside = cutToCurve(curve, range);
    if (inside.from > inside.to)
        return {};
    const host::SplinePieces* spline = curve.frozen().spline();
    if (spline == nullptr)
        return formulaPlaces(curve, order, value, inside);
    Places all;
    const PointRange points = pointsIn(*spline, inside);
    for (std::size_t i = points.first; i <= points.last; ++i)
        appendPointPlaces(splinePart(*spline, i, inside), order, value, all.places);
    return all;
}

// Whether two finds are one place: both at one seam, or closer than their rounding errors.
bool same(const Place& a, const Place& b)
{
    const double ulps = 16.0 * 0x1p-52 * std::max(std::fabs(a.x), std::fabs(b.x));
    return b.x - a.x <= ulps + std::min(a.error, b.error);
}

bool isOrder(int order)
{
    return order >= 0 && order <= 3;
}

void join(std::vector<Range>& ranges, Range next)
{
    if (!ranges.empty() && ranges.back().to >= next.from)
        ranges.back().to = std::max(ranges.back().to, next.to);
    else
        ranges.push_back(next);
}

// Ascending ranges, each of which begins after the previous one ends.
std::vector<Range> joined(std::vector<Range> ranges)
{
    std::ranges::sort(ranges, {}, &Range::from);
    std::vector<Range> all;
    for (const Range& next : ranges)
        join(all, next);
    return all;
}

// The stretches between places where an order may enter or leave its limits.
struct Stretches {
    std::vector<double> ends;    // ascending
    std::vector<Range> unknown;  // joined: a stretch in one of them may hold other such places

    bool isKnown(double from, double to) const
    {
        const auto after = std::ranges::upper_bound(unknown, from, {}, &Range::from);
        return after == unknown.begin() || std::prev(after)->to < to;
    }
};

// The ends are the places where the value of the order is a limit, poles, and the ends of pieces. Most
// unknown boxes are some ulps at a pole; a wide one is cut evenly.
Stretches stretchesOf(const Curve& curve, int order, double low, double high, Range range)
{
    constexpr double kWide = 1e-9;
    constexpr int kCuts = 64;
    std::vector<double> x{range.from, range.to};
    std::vector<Range> unknown;
    for (const double limit : {low, high}) {
        if (!std::isfinite(limit))
            continue;
        const Places found = placesOf(curve, order, limit, range);
        for (const Place& place : found.places)
            x.push_back(place.x);
        unknown.insert(unknown.end(), found.unknown.begin(), found.unknown.end());
    }
    unknown = joined(std::move(unknown));
    for (const Range& box : unknown) {
        const double length = box.to - box.from;
        const int cuts = length > kWide * (range.to - range.from) ? kCuts : 1;
        for (int i = 0; i < cuts; ++i)
            x.push_back(box.from + length * i / cuts);
        x.push_back(box.to);
    }
    if (const host::SplinePieces* spline = curve.frozen().spline()) {
        for (std::size_t i = 0; i < spline->count(); ++i)
            x.push_back(spline->knots()[i]);
    } else {
        for (const Part& part : partsOf(curve, range))
            x.push_back(part.from);
    }
    std::sort(x.begin(), x.end());
    std::erase_if(x, [&](double at) { return at < range.from || at > range.to; });
    x.erase(std::unique(x.begin(), x.end()), x.end());
    return {std::move(x), std::move(unknown)};
}

}  // namespace

std::vector<Peak> stationaryPoints(const Curve& curve, int order, Range range)
{
    std::vector<Peak> found;
    if (!isOrder(order))
        return found;
    const std::vector<Place> places = placesOf(curve, order + 1, 0.0, range).places;
    const Place* last = nullptr;
    for (const Place& place : places) {
        if (place.isFlat || (last != nullptr && same(*last, place)))
            continue;
        last = &place;
        const double y = curve.at(place.x, place.side)[order];
        found.push_back({place.x, y, place.side, place.error});
    }
    return found;
}

std::vector<double> crossings(const Curve& curve, int order, double value, Range range)
{
    std::vector<double> found;
    if (!isOrder(order) || !std::isfinite(value))
        return found;
    const std::vector<Place> places = placesOf(curve, order, value, range).places;
    const Place* last = nullptr;
    for (const Place& place : places) {
        if (last == nullptr || !same(*last, place))
            found.push_back(place.x);
        last = &place;
    }
    return found;
}

std::vector<Range> beyond(const Curve& curve, int order, double low, double high, Range range)
{
    std::vector<Range> found;
    const Range inside = cutToCurve(curve, range);
    if (!isOrder(order) || inside.from > inside.to)
        return found;
    const auto isBeyond = [&](double at) {
        const double y = curve(at, order);
        return y < low || y > high;
    };
    const Stretches stretches = stretchesOf(curve, order, low, high, inside);
    const std::vector<double>& x = stretches.ends;
    if (x.size() == 1 && isBeyond(x[0]))
        found.push_back({x[0], x[0]});
    for (std::size_t i = 0; i + 1 < x.size(); ++i) {
        const bool isKnown = stretches.isKnown(x[i], x[i + 1]);
        if (isBeyond(0.5 * x[i] + 0.5 * x[i + 1]) || (!isKnown && (isBeyond(x[i]) || isBeyond(x[i + 1]))))
            join(found, {x[i], x[i + 1]});
    }
    if (order == 0 || !(std::isfinite(low) || std::isfinite(high)))
        return found;

    for (const double impulse : impulsesOf(curve, order, inside))
        found.push_back({impulse, impulse});
    return joined(std::move(found));
}

}  // namespace mf::analysis
