// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/diagram.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/drawing/sampling.h"

namespace mf::drawing {

namespace {

std::vector<int> ordersOf(const std::vector<Curve>& curves, const Contents& contents)
{
    if (!contents.orders.empty()) {
        std::vector<int> known = contents.orders;
        std::erase_if(known, [](int order) { return order < 0 || order > 3; });
        return known;
    }
    int count = 0;
    for (const Curve& curve : curves)
        count = std::max(count, namedOrders(curve.definition()));
    std::vector<int> orders(static_cast<std::size_t>(count));
    std::iota(orders.begin(), orders.end(), 0);
    return orders;
}

Range rangeOf(const std::vector<Curve>& curves, const Contents& contents)
{
    if (contents.range || curves.empty())
        return contents.range.value_or(Range{0.0, 1.0});
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Range range{kInfinity, -kInfinity};
    for (const Curve& curve : curves)
        range = {std::min(range.from, curve.firstX()), std::max(range.to, curve.lastX())};
    return range;
}

// Adds samples in ascending x to the last line of a trace, and begins another one after a gap.
class TraceBuilder {
public:
    TraceBuilder(Trace& trace, int order, double rate)
        : trace_(trace), order_(order), factor_(std::pow(rate, order))
    {
    }

    void add(const Sample& sample)
    {
        const double y = sample.values[order_] * factor_;
        if (std::isfinite(y) && !isOpen_)
            trace_.lines.emplace_back();
        isOpen_ = std::isfinite(y);
        if (isOpen_)
            trace_.lines.back().push_back({sample.x, y});
    }

private:
    Trace& trace_;
    int order_;
    double factor_;
    bool isOpen_ = false;
};

// A value that is 0 except for rounding, compared with the whole curve, becomes 0.
Point withoutRounding(Point point, double size)
{
    constexpr double kRounding = 1e-12;
    return std::fabs(point.y) <= kRounding * size ? Point{point.x, 0.0} : point;
}

// Takes the extremes of the analysis. If they are not proved, the drawn points count as well.
void addExtremes(Trace& trace, const analysis::Summary& summary, double factor)
{
    trace.areExtremesProved = summary.guaranteed;
    const auto take = [&](const Point& point) {
        if (!std::isfinite(point.y))
            return;
        if (!trace.least || point.y < trace.least->y)
            trace.least = point;
        if (!trace.greatest || point.y > trace.greatest->y)
            trace.greatest = point;
    };
    take({summary.least.x, summary.least.y * factor});
    take({summary.greatest.x, summary.greatest.y * factor});
    if (!summary.guaranteed) {
        for (const Line& line : trace.lines)
            std::for_each(line.begin(), line.end(), take);
    }
    if (!trace.least || !trace.greatest)
        return;
    const double size = std::max(std::fabs(trace.least->y), std::fabs(trace.greatest->y));
    trace.least = withoutRounding(*trace.least, size);
    trace.greatest = withoutRounding(*trace.greatest, size);
}

// Extremes that are not proved and far from nearly all values come from a pole, and depend on where the
// curve happens to be evaluated.
bool hasPole(const Trace& trace, const Range& most)
{
    constexpr double kFar = 1e3;
    if (trace.areExtremesProved || !trace.least || !trace.greatest)
        return false;
    const double farthest = std::max(std::fabs(trace.least->y), std::fabs(trace.greatest->y));
    return farthest > kFar * std::max(std::fabs(most.from), std::fabs(most.to));
}

// The values without the highest and lowest twentieth, and a quarter more.
Range mostValues(const std::vector<Line>& lines)
{
    std::vector<double> values;
    for (const Line& line : lines) {
        for (const Point& point : line)
            values.push_back(point.y);
    }
    const auto at = [&](double part) {
        const auto place = values.begin() + std::lround(part * static_cast<double>(values.size() - 1));
        std::nth_element(values.begin(), place, values.end());
        return *place;
    };
    const Range most{at(0.05), at(0.95)};
    const double room = 0.25 * (most.to - most.from);
    return {most.from - room, most.to + room};
}

// The stretches of a line within a range of values, each with its first point outside at either end.
void addWithin(std::vector<Line>& lines, const Line& line, const Range& range)
{
    const auto isInside = [&](const Point& point) { return point.y >= range.from && point.y <= range.to; };
    bool isOpen = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool inside = isInside(line[i]);
        if (inside && !isOpen) {
            lines.emplace_back();
            if (i > 0)
                lines.back().push_back(line[i - 1]);
        }
        if (inside || isOpen)
            lines.back().push_back(line[i]);
        isOpen = inside;
    }
}

void cutPoles(Trace& trace)
{
    if (trace.areExtremesProved || trace.lines.empty())
        return;
    const Range most = mostValues(trace.lines);
    if (!hasPole(trace, most))
        return;
    trace.beside = most;
    const double room = 0.5 * (most.to - most.from);  // so that lines reach the edge of any axis
    std::vector<Line> within;
    for (const Line& line : trace.lines)
        addWithin(within, line, {most.from - room, most.to + room});
    trace.lines = std::move(within);
}

// The curve with the range that is drawn: an expression continues beyond its range, but its analysis does
// not.
Curve examined(const Curve& curve, Range range)
{
    CurveDefinition definition = curve.definition();
    auto* expression = std::get_if<CurveDefinition::Expression>(&definition.shape);
    if (expression == nullptr || (expression->from == range.from && expression->to == range.to))
        return curve;
    expression->from = range.from;
    expression->to = range.to;
    return Curve(definition);
}

// Adds what a picture marks: extremes and impulses.
void addMarks(Diagram& diagram, const Curve& curve, double rate)
{
    const Range range{diagram.from, diagram.to};
    const std::array<analysis::Summary, 4> summaries = analysis::summarize(examined(curve, range), range);
    for (Panel& panel : diagram.panels) {
        Trace& trace = panel.traces.back();
        const analysis::Summary& summary = summaries[static_cast<std::size_t>(panel.order)];
        addExtremes(trace, summary, std::pow(rate, panel.order));
        cutPoles(trace);
        for (double x : summary.impulses) {
            const double rise =
                curve.at(x, Side::Right)[panel.order - 1] - curve.at(x, Side::Left)[panel.order - 1];
            trace.impulses.push_back({x, rise > 0.0});
        }
    }
}

std::string withoutSource(const std::string& profile)
{
    return profile.substr(0, profile.rfind(" ("));
}

bool isConstant(const std::vector<Sample>& samples, double value)
{
    return std::all_of(samples.begin(), samples.end(),
                       [&](const Sample& sample) { return sample.values.y == value; });
}

void addRow(Diagram& diagram, const Curve& curve, const Piece& piece, const std::vector<Sample>& samples)
{
    const CurveDefinition& definition = curve.definition();
    const CurveRow& row =
        std::get<CurveDefinition::Segments>(definition.shape).rows[static_cast<std::size_t>(piece.row) - 1];
    const char* constantName = quantityName(definition, 0) == "Displacement" ? "Dwell" : "Constant";
    diagram.stretches.push_back(
        {piece.from, piece.to, isConstant(samples, row.value) ? constantName : withoutSource(row.profile)});
    if (diagram.stretches.size() > 1)
        diagram.seams.push_back(piece.from);
}

void addCurve(Diagram& diagram, const Curve& curve, const Contents& contents)
{
    std::vector<TraceBuilder> builders;
    for (Panel& panel : diagram.panels)
        builders.emplace_back(panel.traces.emplace_back(), panel.order, contents.rate);
    const std::vector<Piece> pieces = piecesWithin(curve, {diagram.from, diagram.to});
    for (const Piece& piece : pieces) {
        const std::vector<Sample> samples =
            samplesOf(curve, piece, cellsOf(piece, pieces.size(), diagram.to - diagram.from));
        for (TraceBuilder& builder : builders)
            std::for_each(samples.begin(), samples.end(), [&](const Sample& sample) { builder.add(sample); });
        if (piece.row > 0 && diagram.names.size() == 1)
            addRow(diagram, curve, piece, samples);
    }
    addMarks(diagram, curve, contents.rate);
}

void addKnots(Diagram& diagram, const Curve& curve)
{
    const auto* points = std::get_if<CurveDefinition::Points>(&curve.definition().shape);
    if (points == nullptr || diagram.panels.empty() || diagram.panels.front().order != 0)
        return;
    for (std::size_t i = 0; i < points->x.size(); ++i) {
        if (points->x[i] >= diagram.from && points->x[i] <= diagram.to)
            diagram.panels.front().traces.back().knots.push_back({points->x[i], points->y[i]});
    }
}

}  // namespace

Diagram diagramOf(const std::vector<Curve>& curves, const Contents& contents)
{
    Diagram diagram;
    if (curves.empty())
        return diagram;
    const CurveDefinition& first = curves.front().definition();
    const Units units = contents.units.value_or(usualUnits(first));
    const Range range = rangeOf(curves, contents);
    diagram.title = !contents.title.empty() || curves.size() > 1 ? contents.title : first.name;
    diagram.variable = variableName(first);
    diagram.variableUnit = units.variable;
    diagram.from = range.from;
    diagram.to = range.to;
    for (const Curve& curve : curves)
        diagram.names.push_back(curve.definition().name);
    for (int order : ordersOf(curves, contents))
        diagram.panels.push_back({order, quantityName(first, order), derivativeUnit(units, order), {}});
    for (const Curve& curve : curves) {
        addCurve(diagram, curve, contents);
        addKnots(diagram, curve);
    }
    return diagram;
}

}  // namespace mf::drawing
