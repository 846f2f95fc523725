// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "tools/mfcurve/axisTicks.h"
#include "tools/mfcurve/diagram.h"
#include "tools/mfcurve/text.h"

// Stacked diagrams share one horizontal axis, so that an eye can follow a seam
// through displacement, velocity, acceleration and jerk. Lengths are in pixels of
// the picture at its natural size.

namespace mfcurve {

namespace {

constexpr double kPictureWidth = 920.0;
constexpr double kPlotLeft = 84.0;
constexpr double kPlotRight = kPictureWidth - 28.0;
constexpr double kPlotWidth = kPlotRight - kPlotLeft;
constexpr double kPlotHeight = 132.0;
constexpr double kTitleHeight = 52.0;
constexpr double kNamesHeight = 22.0;   // the row of profile names
constexpr double kPanelHeader = 26.0;   // above each plot: quantity, unit, extremes
constexpr double kPanelGap = 14.0;      // below each plot
constexpr double kFooterHeight = 52.0;  // labels of the shared axis
constexpr double kGlyphWidth = 6.6;     // of a small label, on average
constexpr double kDigitWidth = 7.6;     // of the number at a tick, in a wide font
constexpr double kTickSize = 12.0;      // of the letters there
constexpr double kMargin = 2.0;         // that labels keep from the edge of the picture
constexpr std::size_t kLongestTitle = 72;
constexpr int kValueTicks = 4;
constexpr int kVariableTicks = 9;

// Columns into which the points of a dense line are gathered: two to a pixel.
constexpr std::size_t kColumns = 2 * static_cast<std::size_t>(kPlotWidth);
// More markers than this would run into each other.
constexpr std::size_t kMostMarkers = 400;

// By order; told apart by lightness too, for eyes that see few colours.
constexpr const char* kColours[] = {"#1d4ed8", "#047857", "#b45309", "#be123c"};

constexpr const char* kStyle =
    "text{font-family:'Helvetica Neue',Helvetica,Arial,'Liberation Sans','DejaVu Sans',sans-serif;"
    "font-size:12px;fill:#475569}"
    ".title{font-size:18px;font-weight:600;fill:#0f172a}"
    ".quantity{font-size:13px;font-weight:600}"
    ".name{fill:#64748b;font-size:11px}"
    ".frame{fill:none;stroke:#cbd5e1}"
    ".grid{stroke:#e8edf3}"
    ".zero{stroke:#94a3b8}"
    ".seam{stroke:#94a3b8;stroke-dasharray:3 4}"
    ".line{fill:none;stroke-width:2;stroke-linejoin:round;stroke-linecap:round}"
    ".knot{fill:#fff;stroke-width:1.5}";

struct Extremes {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    bool empty() const { return low > high; }
};

// The frame of one panel and the axes that map a point into it.
struct Frame {
    double top = 0.0;
    Axis x;
    Axis y;
    double toX(double value) const
    {
        const double inside = std::clamp(value, x.low, x.high);
        return kPlotLeft + (inside - x.low) / (x.high - x.low) * kPlotWidth;
    }
    double toY(double value) const
    {
        const double inside = std::clamp(value, y.low, y.high);
        return top + kPlotHeight - (inside - y.low) / (y.high - y.low) * kPlotHeight;
    }
};

std::string pixels(double length)
{
    return shortNumberText(std::round(length * 100.0) / 100.0, 7);
}

// Text for XML: markup is escaped and control characters, which XML cannot hold,
// are left out.
std::string escaped(const std::string& text)
{
    std::string result;
    for (char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            default:
                if (static_cast<unsigned char>(c) >= ' ')
                    result += c;
        }
    }
    return result;
}

std::string textAt(double x, double y, const char* attributes, const std::string& text)
{
    return "<text x=\"" + pixels(x) + "\" y=\"" + pixels(y) + "\" " + attributes + ">" + escaped(text) +
           "</text>\n";
}

// A character is as many bytes as follow until the next one begins.
bool beginsCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

std::size_t characterCount(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

// The text without what goes beyond so many characters.
std::string shortened(const std::string& text, std::size_t longest)
{
    if (characterCount(text) <= longest)
        return text;
    std::string result;
    std::size_t count = 0;
    for (char c : text) {
        count += beginsCharacter(c) ? 1 : 0;
        if (count < longest)
            result += c;
    }
    return result + "\u2026";
}

// The number at a tick around or, for "end", before x. One too wide for its room is
// written smaller, because without its first digits it would be another number.
std::string tickLabel(double x, double y, const char* anchor, double room, const std::string& label)
{
    const double width = kDigitWidth * static_cast<double>(characterCount(label));
    std::string attributes = "text-anchor=\"" + std::string(anchor) + "\"";
    if (width > room)
        attributes += " style=\"font-size:" + pixels(kTickSize * room / width) + "px\"";
    return textAt(x, y, attributes.c_str(), label);
}

std::string lineBetween(double x1, double y1, double x2, double y2, const char* style)
{
    return "<line class=\"" + std::string(style) + "\" x1=\"" + pixels(x1) + "\" y1=\"" + pixels(y1) +
           "\" x2=\"" + pixels(x2) + "\" y2=\"" + pixels(y2) + "\"/>\n";
}

Extremes extremesOf(const Panel& panel)
{
    Extremes extremes;
    for (const Line& line : panel.lines) {
        for (const mfPoint2D_c& point : line) {
            extremes.low = std::min(extremes.low, point.y());
            extremes.high = std::max(extremes.high, point.y());
        }
    }
    return extremes;
}

Axis axisOf(const Extremes& extremes)
{
    return extremes.empty() ? valueAxis(0.0, 1.0, kValueTicks)
                            : valueAxis(extremes.low, extremes.high, kValueTicks);
}

// A line with many points to a pixel is drawn by the first, lowest, highest and
// last point of each column, which leaves the picture the same.
Line thinned(const Line& line, const Axis& x)
{
    if (line.size() <= 4 * kColumns)
        return line;
    const auto columnOf = [&](const mfPoint2D_c& point) {
        return std::floor((point.x() - x.low) / (x.high - x.low) * kColumns);
    };
    const auto lower = [](const mfPoint2D_c& a, const mfPoint2D_c& b) { return a.y() < b.y(); };
    Line result;
    for (auto first = line.begin(); first != line.end();) {
        const auto end = std::find_if(
            first, line.end(), [&](const mfPoint2D_c& point) { return columnOf(point) != columnOf(*first); });
        const auto [low, high] = std::minmax_element(first, end, lower);
        result.insert(result.end(), {*first, *std::min(low, high), *std::max(low, high), *(end - 1)});
        first = end;
    }
    return result;
}

std::string path(const Line& line, const Frame& frame)
{
    std::string result;
    for (const mfPoint2D_c& point : thinned(line, frame.x))
        result +=
            (result.empty() ? "M" : "L") + pixels(frame.toX(point.x())) + " " + pixels(frame.toY(point.y()));
    return result;
}

std::string drawGrid(const Frame& frame)
{
    std::string svg;
    const double bottom = frame.top + kPlotHeight;
    for (double tick : frame.x.ticks)
        svg += lineBetween(frame.toX(tick), frame.top, frame.toX(tick), bottom, "grid");
    for (double tick : frame.y.ticks) {
        const double y = frame.toY(tick);
        svg += lineBetween(kPlotLeft, y, kPlotRight, y, tick == 0.0 ? "zero" : "grid");
        svg += tickLabel(kPlotLeft - 8.0, y + 4.0, "end", kPlotLeft - 8.0 - kMargin, frame.y.label(tick));
    }
    return svg;
}

std::string drawSeams(const Diagram& diagram, const Frame& frame)
{
    std::string svg;
    double previous = -kPlotWidth;
    for (double seam : diagram.seams) {
        // Seams of a long table that would fall on one pixel are drawn once.
        const double x = frame.toX(seam);
        if (x - previous < 1.0)
            continue;
        svg += lineBetween(x, frame.top, x, frame.top + kPlotHeight, "seam");
        previous = x;
    }
    return svg;
}

std::string drawLines(const Panel& panel, const Frame& frame, const char* colour)
{
    std::string svg;
    const double base = frame.toY(0.0);
    for (const Line& line : panel.lines) {
        const std::string stroke = path(line, frame);
        svg += "<path fill=\"" + std::string(colour) + "\" fill-opacity=\"0.07\" d=\"" + stroke + "L" +
               pixels(frame.toX(line.back().x())) + " " + pixels(base) + "L" +
               pixels(frame.toX(line.front().x())) + " " + pixels(base) + "Z\"/>\n";
        svg += "<path class=\"line\" stroke=\"" + std::string(colour) + "\" d=\"" + stroke + "\"/>\n";
    }
    return svg;
}

std::string drawKnots(const Diagram& diagram, const Frame& frame, const char* colour)
{
    if (diagram.knots.size() > kMostMarkers)
        return "";
    std::string svg;
    for (const mfPoint2D_c& knot : diagram.knots) {
        if (knot.x() < diagram.from || knot.x() > diagram.to)
            continue;
        svg += "<circle class=\"knot\" stroke=\"" + std::string(colour) + "\" r=\"3\" cx=\"" +
               pixels(frame.toX(knot.x())) + "\" cy=\"" + pixels(frame.toY(knot.y())) + "\"/>\n";
    }
    return svg;
}

std::string drawHeader(const Panel& panel, const Frame& frame, const char* colour)
{
    const double baseline = frame.top - 8.0;
    std::string unit = panel.unit + exponentText(frame.y.exponent);
    if (!unit.empty())
        unit = "  <tspan style=\"fill:#475569;font-weight:400\">" + escaped(unit) + "</tspan>";
    std::string svg = "<text class=\"quantity\" style=\"fill:" + std::string(colour) + "\" x=\"" +
                      pixels(kPlotLeft) + "\" y=\"" + pixels(baseline) + "\">" + escaped(panel.quantity) +
                      unit + "</text>\n";
    const Extremes extremes = extremesOf(panel);
    const double scale = std::pow(10.0, frame.y.exponent);
    const std::string range = extremes.empty() ? "no finite value"
                                               : "min " + pictureNumber(extremes.low / scale) + "   max " +
                                                     pictureNumber(extremes.high / scale);
    return svg +
           textAt(kPlotRight, baseline, "class=\"name\" text-anchor=\"end\" xml:space=\"preserve\"", range);
}

std::string drawPanel(const Diagram& diagram, std::size_t order, const Frame& frame)
{
    const Panel& panel = diagram.panels[order];
    const char* colour = kColours[order % std::size(kColours)];
    std::string svg = drawHeader(panel, frame, colour) + drawGrid(frame) + drawSeams(diagram, frame);
    svg += "<rect class=\"frame\" x=\"" + pixels(kPlotLeft) + "\" y=\"" + pixels(frame.top) + "\" width=\"" +
           pixels(kPlotWidth) + "\" height=\"" + pixels(kPlotHeight) + "\"/>\n";
    svg += drawLines(panel, frame, colour);
    if (order == 0)
        svg += drawKnots(diagram, frame, colour);
    return svg;
}

// The name of each segment above its stretch, where it fits.
std::string drawSegmentNames(const Diagram& diagram, const Frame& frame, double baseline)
{
    std::string svg;
    for (const NamedStretch& segment : diagram.segments) {
        const double left = frame.toX(std::max(segment.from, frame.x.low));
        const double right = frame.toX(std::min(segment.to, frame.x.high));
        if (right - left >= kGlyphWidth * static_cast<double>(characterCount(segment.name)))
            svg +=
                textAt((left + right) / 2.0, baseline, "class=\"name\" text-anchor=\"middle\"", segment.name);
    }
    return svg;
}

// The last number of the shared axis stands at the edge of the picture if it would
// run out of it below its tick.
std::string variableLabel(double x, double y, double room, const std::string& label)
{
    const double edge = kPictureWidth - kMargin;
    const double width = std::min(room, kDigitWidth * static_cast<double>(characterCount(label)));
    const bool fits = x + width / 2.0 <= edge;
    return tickLabel(fits ? x : edge, y, fits ? "middle" : "end", room, label);
}

std::string drawVariable(const Diagram& diagram, const Frame& last)
{
    std::string svg;
    const double bottom = last.top + kPlotHeight;
    const double gap = kPlotWidth / static_cast<double>(std::max<std::size_t>(last.x.ticks.size(), 1));
    for (double tick : last.x.ticks)
        svg += variableLabel(last.toX(tick), bottom + 18.0, 0.8 * gap, last.x.label(tick));
    const std::string unit(trimmed(diagram.variableUnit + exponentText(last.x.exponent)));
    const std::string label = unit.empty() ? diagram.variable : diagram.variable + " [" + unit + "]";
    return svg + textAt((kPlotLeft + kPlotRight) / 2.0, bottom + 38.0, "text-anchor=\"middle\"", label);
}

std::string opening(double height)
{
    const std::string size = pixels(kPictureWidth) + " " + pixels(height);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + pixels(kPictureWidth) + "\" height=\"" +
           pixels(height) + "\" viewBox=\"0 0 " + size + "\">\n<style>" + kStyle +
           "</style>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
}

}  // namespace

std::string toSvg(const Diagram& diagram)
{
    const double namesHeight = diagram.segments.empty() ? 0.0 : kNamesHeight;
    const double panelHeight = kPanelHeader + kPlotHeight + kPanelGap;
    const double panelsTop = kTitleHeight + namesHeight;
    const double height =
        panelsTop + panelHeight * static_cast<double>(diagram.panels.size()) + kFooterHeight;

    Frame frame;
    frame.x = independentAxis(diagram.from, diagram.to, diagram.variableUnit == "deg", kVariableTicks);
    std::string svg =
        opening(height) + textAt(kPlotLeft, 32.0, "class=\"title\"", shortened(diagram.title, kLongestTitle));
    svg += drawSegmentNames(diagram, frame, kTitleHeight + kNamesHeight - 10.0);
    for (std::size_t order = 0; order < diagram.panels.size(); ++order) {
        frame.top = panelsTop + panelHeight * static_cast<double>(order) + kPanelHeader;
        frame.y = axisOf(extremesOf(diagram.panels[order]));
        svg += drawPanel(diagram, order, frame);
    }
    return svg + drawVariable(diagram, frame) + "</svg>\n";
}

}  // namespace mfcurve
