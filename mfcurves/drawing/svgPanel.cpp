// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/svgPanel.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "mfcurves/drawing/path.h"
#include "mfcurves/drawing/svgText.h"

namespace mf::drawing {

namespace {

// More markers than this would run into each other.
constexpr std::size_t kMostMarkers = 400;
constexpr std::size_t kMostImpulses = 200;

struct Extremes {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    bool isEmpty() const { return low > high; }
};

Extremes extremesOf(const Panel& panel)
{
    Extremes extremes;
    for (const Trace& trace : panel.traces) {
        if (trace.least)
            extremes.low = std::min(extremes.low, trace.least->y);
        if (trace.greatest)
            extremes.high = std::max(extremes.high, trace.greatest->y);
    }
    return extremes;
}

// The values that the axis has to show: the extremes, or most values if there is a pole, and 0, where
// impulses start.
Extremes shownBy(const Panel& panel)
{
    Extremes extremes;
    for (const Trace& trace : panel.traces) {
        if (!trace.least || !trace.greatest)
            continue;
        const Range shown = trace.beside.value_or(Range{trace.least->y, trace.greatest->y});
        extremes = {std::min(extremes.low, shown.from), std::max(extremes.high, shown.to)};
    }
    const bool hasImpulse = std::any_of(panel.traces.begin(), panel.traces.end(),
                                        [](const Trace& trace) { return !trace.impulses.empty(); });
    if (extremes.isEmpty())
        return {0.0, 1.0};
    if (hasImpulse)
        extremes = {std::min(extremes.low, 0.0), std::max(extremes.high, 0.0)};
    return extremes;
}

// The number at a tick; it ends at x. It is written smaller if it is too wide for its room, because without
// its first digits it would be another number.
std::string tickLabel(double x, double y, const std::string& label)
{
    const double room = x - kMargin;
    const double width = kDigitWidth * static_cast<double>(characterCount(label));
    const std::string size =
        width > room ? fmt::format(" style=\"font-size:{}px\"", pixels(kLetter * room / width)) : "";
    return textAt(x, y, "text-anchor=\"end\"" + size, label);
}

std::string drawGrid(const Frame& frame)
{
    std::string svg;
    for (double tick : frame.x.ticks)
        svg += lineBetween(frame.toX(tick), frame.top, frame.toX(tick), frame.bottom, "grid");
    for (double tick : frame.y.ticks) {
        const double y = frame.toY(tick);
        svg += lineBetween(frame.left, y, frame.right, y, tick == 0.0 ? "zero" : "grid");
        svg += tickLabel(frame.left - 8.0, y + 4.0, frame.y.label(tick));
    }
    return svg;
}

std::string drawSeams(const Diagram& diagram, const Frame& frame)
{
    std::string svg;
    double previous = -1.0;
    for (double seam : diagram.seams) {
        // Seams of a long table that would fall on one pixel are drawn once.
        const double x = frame.toX(seam);
        if (x - previous < 1.0)
            continue;
        svg += lineBetween(x, frame.top, x, frame.bottom, "seam");
        previous = x;
    }
    return svg;
}

Line inPixels(const Line& line, const Frame& frame)
{
    const auto columns = static_cast<std::size_t>(2.0 * (frame.right - frame.left));
    Line result;
    for (const Point& point : thinned(line, frame.x.low, frame.x.high, columns))
        result.push_back({frame.toX(point.x), frame.toY(point.y)});
    return simplified(result);
}

// If a line runs from edge to edge of the frame, the area between it and 0 is filled. Its path then continues
// beyond both edges and to 0, which the clip path hides.
std::string drawLine(const Line& line, const Frame& frame, const char* colour, const std::string& clip,
                     bool isFilled)
{
    Line path = inPixels(line, frame);
    const bool spans = path.size() > 1 && path.front().x <= frame.left && path.back().x >= frame.right;
    if (!isFilled || !spans || frame.y.low > 0.0 || frame.y.high < 0.0)
        return fmt::format("<path class=\"line\" stroke=\"{}\" d=\"{}\"/>\n", colour, pathData(path));
    constexpr double kBeyond = 4.0;
    const double zero = frame.toY(0.0);
    path.insert(path.begin(), {{frame.left - kBeyond, zero}, {frame.left - kBeyond, path.front().y}});
    path.insert(path.end(), {{frame.right + kBeyond, path.back().y}, {frame.right + kBeyond, zero}});
    return fmt::format(
        "<path class=\"line\" style=\"fill:{0}\" stroke=\"{0}\" clip-path=\"url(#{1})\" d=\"{2}\"/>\n",
        colour, clip, pathData(path));
}

std::string drawKnots(const Trace& trace, const Frame& frame, const char* colour)
{
    if (trace.knots.size() > kMostMarkers)
        return "";
    std::string svg;
    for (const Point& knot : trace.knots)
        svg += fmt::format("<circle class=\"knot\" stroke=\"{}\" r=\"3\" cx=\"{}\" cy=\"{}\"/>\n", colour,
                           pixels(frame.toX(knot.x)), pixels(frame.toY(knot.y)));
    return svg;
}

std::string drawImpulses(const Trace& trace, const Frame& frame, const char* colour)
{
    constexpr double kHead = 7.0;
    std::string svg;
    for (std::size_t i = 0; i < std::min(trace.impulses.size(), kMostImpulses); ++i) {
        const Impulse& impulse = trace.impulses[i];
        const double x = frame.toX(impulse.x);
        const double start = frame.toY(0.0);
        const double end = impulse.isUpward ? frame.top + 3.0 : frame.bottom - 3.0;
        const double neck = end + (impulse.isUpward ? kHead : -kHead);
        svg += fmt::format(
            "<path class=\"impulse\" stroke=\"{0}\" fill=\"{0}\" d=\"M{1} {2}L{1} {3}M{4} {5}L{1} {6}L{7} "
            "{5}Z\"/>\n",
            colour, pixels(x), pixels(start), pixels(neck), pixels(x - 3.5), pixels(neck), pixels(end),
            pixels(x + 3.5));
    }
    return svg;
}

// The x of a label, and how it is anchored there.
struct LabelPlace {
    double x;
    const char* anchor;
};

// The place of a label above or below x, away from the edges and beside the arrow of an impulse.
LabelPlace labelPlace(double x, double width, const Frame& frame, bool isBesideArrow)
{
    constexpr double kEdge = 4.0;
    constexpr double kArrow = 8.0;  // from its middle
    const double left = frame.left + kEdge;
    const double right = frame.right - kEdge;
    if (isBesideArrow)
        return x + kArrow + width > right ? LabelPlace{x - kArrow, "end"} : LabelPlace{x + kArrow, "start"};
    if (x - width / 2.0 < left)
        return {std::max(x, left + 2.0), "start"};
    if (x + width / 2.0 > right)
        return {std::min(x, right - 2.0), "end"};
    return {x, "middle"};
}

bool hasImpulseAt(const Trace& trace, double x, const Frame& frame)
{
    return std::any_of(trace.impulses.begin(), trace.impulses.end(), [&](const Impulse& impulse) {
        return std::fabs(frame.toX(impulse.x) - frame.toX(x)) < 1.0;
    });
}

// A dot, and beside it the value and its x.
std::string drawMark(const Trace& trace, const Point& point, bool isGreatest, const Frame& frame,
                     const char* colour)
{
    const double x = frame.toX(point.x);
    const double y = frame.toY(point.y);
    const std::string label = pictureNumber(point.y) + " at " + pictureNumber(point.x, 5);
    const LabelPlace place =
        labelPlace(x, textWidth(label, kSmallLetter), frame, hasImpulseAt(trace, point.x, frame));
    const double above = y - 6.0;
    const double below = y + kSmallLetter + 4.0;
    const bool isAbove = isGreatest ? above - kSmallLetter > frame.top - 3.0 : below > frame.bottom + 2.0;
    return fmt::format("<circle class=\"extreme\" r=\"2.6\" fill=\"{}\" cx=\"{}\" cy=\"{}\"/>\n", colour,
                       pixels(x), pixels(y)) +
           textAt(place.x, isAbove ? above : below,
                  fmt::format("class=\"mark\" text-anchor=\"{}\"", place.anchor), label);
}

std::string drawMarks(const Trace& trace, const Frame& frame, const char* colour)
{
    if (!trace.least || !trace.greatest || trace.least->y == trace.greatest->y || trace.beside)
        return "";
    return drawMark(trace, *trace.least, false, frame, colour) +
           drawMark(trace, *trace.greatest, true, frame, colour);
}

std::string rangeText(const Panel& panel)
{
    const Extremes extremes = extremesOf(panel);
    std::size_t impulses = 0;
    for (const Trace& trace : panel.traces)
        impulses += trace.impulses.size();
    const std::string count =
        impulses == 0 ? "" : fmt::format("   {} impulse{}", impulses, impulses == 1 ? "" : "s");
    if (extremes.isEmpty())
        return "no finite value" + count;
    const auto any = [&](auto holds) { return std::any_of(panel.traces.begin(), panel.traces.end(), holds); };
    if (any([](const Trace& trace) { return trace.beside.has_value(); }))
        return "goes beyond the axis" + count;
    const char* remark =
        any([](const Trace& trace) { return !trace.areExtremesProved; }) ? ", not proved" : "";
    return fmt::format("min {}   max {}{}{}", pictureNumber(extremes.low), pictureNumber(extremes.high),
                       remark, count);
}

std::string drawHeader(const Panel& panel, const Frame& frame, const char* colour)
{
    const double baseline = frame.top - 8.0;
    const std::string unit = panel.unit + exponentText(frame.y.exponent);
    const std::string span =
        unit.empty() ? "" : fmt::format("  <tspan class=\"unit\">{}</tspan>", escaped(unit));
    return fmt::format("<text class=\"quantity\" style=\"fill:{}\" x=\"{}\" y=\"{}\">{}{}</text>\n", colour,
                       pixels(frame.left), pixels(baseline), escaped(panel.quantity), span) +
           textAt(frame.right, baseline, "class=\"name\" text-anchor=\"end\" xml:space=\"preserve\"",
                  rangeText(panel));
}

// Named by its place, so that pictures in one page may share it.
std::string clipName(const Frame& frame)
{
    return fmt::format("clip-{}-{}-{}-{}", frame.left, frame.top, frame.right, frame.bottom);
}

std::string drawFrame(const Frame& frame)
{
    const auto box = [](double x, double y, double right, double bottom) {
        return fmt::format("x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"", pixels(x), pixels(y),
                           pixels(right - x), pixels(bottom - y));
    };
    return fmt::format("<clipPath id=\"{}\"><rect {}/></clipPath>\n<rect class=\"frame\" {}/>\n",
                       clipName(frame), box(frame.left, frame.top - 2.0, frame.right, frame.bottom + 2.0),
                       box(frame.left, frame.top, frame.right, frame.bottom));
}

}  // namespace

std::string drawPanel(const Diagram& diagram, std::size_t index, const Layout& layout, const Theme& theme)
{
    const Panel& panel = diagram.panels[index];
    const Extremes shown = shownBy(panel);
    const Frame frame = layout.frame(index, shown.low, shown.high);
    const bool isSingle = panel.traces.size() == 1;
    std::string svg = drawHeader(panel, frame, isSingle ? colourOf(theme, panel) : theme.title) +
                      drawGrid(frame) + drawSeams(diagram, frame) + drawFrame(frame);
    for (std::size_t i = 0; i < panel.traces.size(); ++i) {
        const Trace& trace = panel.traces[i];
        const char* colour = isSingle ? colourOf(theme, panel) : colourOfCurve(theme, i);
        for (const Line& line : trace.lines)
            svg += drawLine(line, frame, colour, clipName(frame), isSingle);
        svg += drawKnots(trace, frame, colour) + drawImpulses(trace, frame, colour);
        if (isSingle)
            svg += drawMarks(trace, frame, colour);
    }
    return svg;
}

}  // namespace mf::drawing
