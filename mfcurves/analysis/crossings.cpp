// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
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

// Where an order has a value, and the stretches where there may be other such places or no value at all.
struct Places {
    std::vector<Place> places;
    std::vector<Range> unsure;  // not in order; of length 0 at a pole that is known exactly
};

// Where order k is `value` on the parts of formulas.
Places formulaPlaces(const std::vector<Part>& parts, int order, double value)
{
    Places all;
    std::vector<Place>& places = all.places;
    for (const Part& part : parts) {
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
        all.unsure.insert(all.unsure.end(), zeros.unsure.begin(), zeros.unsure.end());
        if (!part.smooth().isSmooth)
            all.unsure.push_back({part.from, part.to});
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

Places splinePlaces(const host::SplinePieces& spline, int order, double value, Range range)
{
    Places all;
    const PointRange points = pointsIn(spline, range);
    for (std::size_t i = points.first; i <= points.last; ++i)
        appendPointPlaces(splinePart(spline, i, range), order, value, all.places);
    return all;
}

// The range is not empty. `parts` are those in it, none for a curve through points.
Places placesIn(const Curve& curve, const std::vector<Part>& parts, int order, double value, Range range)
{
    const host::SplinePieces* spline = curve.frozen().spline();
    return spline != nullptr ? splinePlaces(*spline, order, value, range)
                             : formulaPlaces(parts, order, value);
}

std::vector<Place> placesOf(const Curve& curve, int order, double value, Range range)
{
    const Range inside = cutToCurve(curve, range);
    if (inside.from > inside.to)
        return {};
    return placesIn(curve, partsOf(curve, inside), order, value, inside).places;
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

// What an order does at x: it keeps its limits, exceeds one of them, or has no value.
enum class State { Within, Beyond, Nothing };

class StateSearch {
public:
    StateSearch(const Curve& curve, int order, double low, double high, Range range)
        : curve_(curve), parts_(partsOf(curve, range)), order_(order), low_(low), high_(high), range_(range)
    {
        findChanges();
    }

    const std::vector<Part>& parts() const { return parts_; }

    State at(double x) const
    {
        const double y = curve_(x, order_);
        return std::isnan(y) ? State::Nothing : y < low_ || y > high_ ? State::Beyond : State::Within;
    }

    // By more than rounding, which may lift the value at a kink over a limit.
    bool isClearlyBeyond(double x) const
    {
        const double y = curve_(x, order_);
        const double rounding = kJump * std::fabs(y);
        return y < low_ - rounding || y > high_ + rounding;
    }

    // Ascending places where the state may change: where the order is at a limit, at ends of pieces and at
    // poles, where the order starts or stops having a value, and at singlePlaces(). In wide boxes that are
    // unsure only samples show a change.
    const std::vector<double>& changes() const { return changes_; }

    // Where a formula may have a value of its own, unlike those on both sides, as sign(x) has at 0.
    const std::vector<double>& singlePlaces() const { return single_; }

private:
    void findChanges()
    {
        changes_ = {range_.from, range_.to};
        std::vector<Range> unsure;
        for (const double limit : {low_, high_}) {
            if (!std::isfinite(limit))
                continue;
            for (const Part& part : parts_)
                part.piece->renewBudget();
            const Places places = placesIn(curve_, parts_, order_, limit, range_);
            for (const Place& place : places.places)
                changes_.push_back(place.x);
            unsure.insert(unsure.end(), places.unsure.begin(), places.unsure.end());
        }
        for (const Range& box : joined(std::move(unsure)))
            sample(box, range_.to - range_.from);
        addPieces();
        std::sort(changes_.begin(), changes_.end());
        std::erase_if(changes_, [&](double x) { return x < range_.from || x > range_.to; });
        changes_.erase(std::unique(changes_.begin(), changes_.end()), changes_.end());
    }

    void addPieces()
    {
        if (const host::SplinePieces* spline = curve_.frozen().spline()) {
            for (std::size_t i = 0; i < spline->count(); ++i)
                changes_.push_back(spline->knots()[i]);
            return;
        }
        const FormulaPiece* piece = nullptr;
        for (const Part& part : parts_) {
            (part.beginsAtKink ? single_ : changes_).push_back(part.from);
            if (part.piece.get() != piece) {
                for (const Touch& touch : part.piece->touches())
                    single_.push_back(touch.x);
            }
            piece = part.piece.get();
        }
        changes_.insert(changes_.end(), single_.begin(), single_.end());
    }

    // Most boxes are a few ulps around a pole. Wide boxes are sampled.
    void sample(const Range& box, double rangeLength)
    {
        constexpr int kFewest = 16;
        constexpr double kSamplesOfRange = 2000.0;
        changes_.push_back(box.from);
        changes_.push_back(box.to);
        if (isNarrow(box.from, box.to, rangeLength))
            return;
        const double length = box.to - box.from;
        const int count = kFewest + static_cast<int>(kSamplesOfRange * (length / rangeLength));
        double last = box.from;
        for (int i = 1; i <= count; ++i) {
            const double next = i == count ? box.to : box.from + length * (static_cast<double>(i) / count);
            if (at(last) != at(next))
                changes_.push_back(changeBetween(last, next));
            last = next;
        }
    }

    // Where the state at `from` ends, by halving.
    double changeBetween(double from, double to) const
    {
        const State before = at(from);
        for (;;) {
            const double middle = 0.5 * from + 0.5 * to;
            if (middle <= from || middle >= to)
                return to;
            (at(middle) == before ? from : to) = middle;
        }
    }

    const Curve& curve_;
    const std::vector<Part> parts_;
    int order_;
    double low_;
    double high_;
    Range range_;
    std::vector<double> changes_;
    std::vector<double> single_;
};

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

bool areAllCrossingsFound(const Curve& curve, int order, double value, Range range)
{
    return areAllBreaksFound(curve, order, range) && isEachBoxDecided(curve, order, value, range);
}

bool isEachBoxDecided(const Curve& curve, int order, double value, Range range)
{
    const Range inside = cutToCurve(curve, range);
    if (!isOrder(order) || !std::isfinite(value) || inside.from > inside.to)
        return true;
    const Places places = placesIn(curve, partsOf(curve, inside), order, value, inside);
    return std::ranges::all_of(
        places.unsure, [&](const Range& box) { return isNarrow(box.from, box.to, inside.to - inside.from); });
}

std::vector<Range> beyond(const Curve& curve, int order, double low, double high, Range range)
{
    std::vector<Range> found;
    const Range inside = cutToCurve(curve, range);
    if (!isOrder(order) || inside.from > inside.to)
        return found;
    const StateSearch search(curve, order, low, high, inside);
    const auto isBeyond = [&](double at) { return search.at(at) == State::Beyond; };
    const std::vector<double>& x = search.changes();
    if (x.size() == 1 && isBeyond(x[0]))
        found.push_back({x[0], x[0]});
    for (std::size_t i = 0; i + 1 < x.size(); ++i) {
        // A few ulps at a pole may have no value in the middle.
        const bool isAtPole = isNarrow(x[i], x[i + 1], inside.to - inside.from);
        if (isBeyond(0.5 * x[i] + 0.5 * x[i + 1]) || (isAtPole && (isBeyond(x[i]) || isBeyond(x[i + 1]))))
            join(found, {x[i], x[i + 1]});
    }
    for (const double at : search.singlePlaces()) {
        if (search.isClearlyBeyond(at))
            found.push_back({at, at});
    }
    if (order > 0 && (std::isfinite(low) || std::isfinite(high))) {
        const auto append = [&](const std::vector<Part>& parts) {
            for (const double impulse : impulsesOf(curve, parts, order, inside))
                found.push_back({impulse, impulse});
        };
        if (inside.from == curve.firstX() && inside.to == curve.lastX())
            append(search.parts());
        else
            append(partsOf(curve, all));
    }
    return joined(std::move(found));
}

}  // namespace mf::analysis
