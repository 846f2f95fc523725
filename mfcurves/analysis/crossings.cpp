// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>

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

// Where order k is `value` on the parts of formulas.
std::vector<Place> formulaPlaces(const Curve& curve, int order, double value, Range range)
{
    std::vector<Place> places;
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
    }
    return places;
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

std::vector<Place> placesOf(const Curve& curve, int order, double value, Range range)
{
    const Range inside = cutToCurve(curve, range);
    if (inside.from > inside.to)
        return {};
    const host::SplinePieces* spline = curve.frozen().spline();
    if (spline == nullptr)
        return formulaPlaces(curve, order, value, inside);
    std::vector<Place> places;
    const PointRange points = pointsIn(*spline, inside);
    for (std::size_t i = points.first; i <= points.last; ++i)
        appendPointPlaces(splinePart(*spline, i, inside), order, value, places);
    return places;
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

// The places where an order may enter or leave its limits: where its value is a limit, and all
// ends of pieces.
std::vector<double> changes(const Curve& curve, int order, double low, double high, Range range)
{
    std::vector<double> x{range.from, range.to};
    for (const double limit : {low, high}) {
        if (!std::isfinite(limit))
            continue;
        for (const Place& place : placesOf(curve, order, limit, range))
            x.push_back(place.x);
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
    return x;
}

void join(std::vector<Range>& ranges, Range next)
{
    if (!ranges.empty() && ranges.back().to >= next.from)
        ranges.back().to = std::max(ranges.back().to, next.to);
    else
        ranges.push_back(next);
}

}  // namespace

std::vector<Peak> stationaryPoints(const Curve& curve, int order, Range range)
{
    std::vector<Peak> found;
    if (!isOrder(order))
        return found;
    const std::vector<Place> places = placesOf(curve, order + 1, 0.0, range);
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
    const std::vector<Place> places = placesOf(curve, order, value, range);
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
    const auto isBeyond = [&](double y) { return y < low || y > high; };
    const std::vector<double> x = changes(curve, order, low, high, inside);
    if (x.size() == 1 && isBeyond(curve.at(x[0])[order]))
        found.push_back({x[0], x[0]});
    for (std::size_t i = 0; i + 1 < x.size(); ++i) {
        if (isBeyond(curve(0.5 * x[i] + 0.5 * x[i + 1], order)))
            join(found, {x[i], x[i + 1]});
    }
    if (order == 0 || !(std::isfinite(low) || std::isfinite(high)))
        return found;

    for (const double impulse : impulsesOf(curve, order, inside))
        found.push_back({impulse, impulse});
    std::sort(found.begin(), found.end(), [](const Range& a, const Range& b) { return a.from < b.from; });
    std::vector<Range> joined;
    for (const Range& next : found)
        join(joined, next);
    return joined;
}

}  // namespace mf::analysis
