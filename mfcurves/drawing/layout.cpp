// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/layout.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "mfcurves/drawing/svgText.h"

namespace mf::drawing {

namespace {

constexpr double kLeastWidth = 300.0;
constexpr double kLeftRoom = 84.0;
constexpr double kRightRoom = 28.0;
constexpr double kNaturalPlotHeight = 132.0;
constexpr double kLeastPlotHeight = 40.0;
constexpr double kTitleHeight = 52.0;
constexpr double kUntitledHeight = 24.0;
constexpr double kNamesHeight = 22.0;   // the row of law names
constexpr double kPanelHeader = 26.0;   // above each plot: quantity, unit, extremes
constexpr double kPanelGap = 14.0;      // below each plot
constexpr double kFooterHeight = 52.0;  // labels of the shared axis
constexpr double kSeamsHeight = 14.0;   // the row of seam labels
constexpr std::size_t kMostLegendLines = 3;
constexpr int kValueTicks = 4;

constexpr Theme kLight{"#fff",
                       "#475569",
                       "#0f172a",
                       "#64748b",
                       "#cbd5e1",
                       "#e8edf3",
                       "#94a3b8",
                       {"#1d4ed8", "#047857", "#b45309", "#be123c"},
                       "#6d28d9",
                       "#0e7490",
                       {"#1d4ed8", "#c2410c", "#047857", "#a21caf", "#0e7490", "#854d0e"}};
constexpr Theme kDark{"#0f172a",
                      "#cbd5e1",
                      "#f8fafc",
                      "#94a3b8",
                      "#475569",
                      "#1e293b",
                      "#64748b",
                      {"#60a5fa", "#34d399", "#fbbf24", "#fb7185"},
                      "#a78bfa",
                      "#22d3ee",
                      {"#60a5fa", "#fb923c", "#34d399", "#e879f9", "#22d3ee", "#fde047"}};

int ticksThatFit(double length, double each, int most)
{
    return std::clamp(static_cast<int>(length / each), 2, most);
}

// Lines of entries as wide as the plot. An ellipsis replaces the entries beyond kMostLegendLines lines.
std::vector<std::vector<Label>> wrapped(const std::vector<std::string>& entries, double left, double right,
                                        double extra)
{
    std::vector<std::vector<Label>> lines;
    double x = right;
    for (const std::string& entry : entries) {
        const double width = textWidth(entry, kSmallLetter) + extra + 18.0;
        if (lines.empty() || x + width > right) {
            if (lines.size() == kMostLegendLines) {
                lines.back().push_back({x, "\u2026"});
                return lines;
            }
            lines.emplace_back();
            x = left;
        }
        lines.back().push_back({x, entry});
        x += width;
    }
    return lines;
}

// Puts each name above its stretch. A number replaces a name that does not fit, and the legend explains it;
// stretches with the same name share it.
void placeStretchNames(const Diagram& diagram, Layout& layout)
{
    std::vector<std::string> numbered;
    for (const Stretch& stretch : diagram.stretches) {
        const double left = layout.toX(stretch.from);
        const double right = layout.toX(stretch.to);
        std::string label = stretch.name;
        if (textWidth(label, kSmallLetter) > right - left) {
            auto place = std::find(numbered.begin(), numbered.end(), stretch.name);
            const auto number = static_cast<std::size_t>(place - numbered.begin()) + 1;
            label = std::to_string(number);
            if (textWidth(label, kSmallLetter) + 1.0 > right - left)
                continue;
            if (place == numbered.end())
                numbered.push_back(stretch.name);
        }
        layout.stretchLabels.push_back({(left + right) / 2.0, label});
    }
    for (std::size_t i = 0; i < numbered.size(); ++i)
        numbered[i] = std::to_string(i + 1) + " " + numbered[i];
    layout.stretchLegend = wrapped(numbered, layout.plotLeft, layout.plotRight, 0.0);
}

// Labels the ends and the seams that are not at a tick of the axis, unless the labels would overlap.
void placeSeamLabels(const Diagram& diagram, Layout& layout)
{
    std::vector<double> places{diagram.from};
    places.insert(places.end(), diagram.seams.begin(), diagram.seams.end());
    places.push_back(diagram.to);
    double end = 0.0;
    for (double place : places) {
        const double x = layout.toX(place);
        const bool isAtTick = std::any_of(layout.x.ticks.begin(), layout.x.ticks.end(),
                                          [&](double tick) { return std::fabs(layout.toX(tick) - x) < 0.5; });
        const std::string text = pictureNumber(place, 6);
        const double half = textWidth(text, kSmallLetter) / 2.0;
        if (isAtTick || x - half < end || x + half > layout.width - kMargin)
            continue;
        layout.seamLabels.push_back({x, text});
        end = x + half + 6.0;
    }
}

}  // namespace

const Theme& themeOf(const Style& style)
{
    return style.isDark ? kDark : kLight;
}

const char* colourOf(const Theme& theme, const Panel& panel)
{
    constexpr const char* kQuantities[] = {"Displacement", "Velocity", "Acceleration", "Jerk"};
    const auto found = std::find(std::begin(kQuantities), std::end(kQuantities), panel.quantity);
    if (found != std::end(kQuantities))
        return theme.quantities[found - std::begin(kQuantities)];
    return panel.order == 0 ? theme.force : theme.rateOfForce;
}

const char* colourOfCurve(const Theme& theme, std::size_t curve)
{
    return theme.curves[curve % std::size(theme.curves)];
}

double Frame::toX(double value) const
{
    return left + (std::clamp(value, x.low, x.high) - x.low) / (x.high - x.low) * (right - left);
}

double Frame::toY(double value) const
{
    return bottom - (std::clamp(value, y.low, y.high) - y.low) / (y.high - y.low) * (bottom - top);
}

double Layout::toX(double value) const
{
    return plotLeft + (std::clamp(value, x.low, x.high) - x.low) / (x.high - x.low) * (plotRight - plotLeft);
}

Frame Layout::frame(std::size_t panel, double low, double high) const
{
    Frame frame;
    frame.left = plotLeft;
    frame.right = plotRight;
    frame.top = panelsTop + panelStep * static_cast<double>(panel) + kPanelHeader;
    frame.bottom = frame.top + plotHeight;
    frame.x = x;
    frame.y = valueAxis(low, high, ticksThatFit(plotHeight, 30.0, kValueTicks));
    return frame;
}

Layout layoutOf(const Diagram& diagram, const Style& style)
{
    Layout layout;
    layout.width = std::max(kLeastWidth, static_cast<double>(style.width));
    layout.plotLeft = kLeftRoom;
    layout.plotRight = layout.width - kRightRoom;
    layout.x = variableAxis(diagram.from, diagram.to, diagram.variableUnit == "deg",
                            ticksThatFit(layout.plotRight - layout.plotLeft, 88.0, 18));
    placeStretchNames(diagram, layout);
    placeSeamLabels(diagram, layout);
    if (diagram.names.size() > 1)
        layout.curveLegend = wrapped(diagram.names, layout.plotLeft, layout.plotRight, kSwatch);
    const auto lines = [](const auto& legend) { return kLegendLine * static_cast<double>(legend.size()); };
    layout.titleHeight = diagram.title.empty() ? kUntitledHeight : kTitleHeight;
    layout.panelsTop =
        layout.titleHeight + lines(layout.curveLegend) + (layout.stretchLabels.empty() ? 0.0 : kNamesHeight);
    const double below =
        kFooterHeight + (layout.seamLabels.empty() ? 0.0 : kSeamsHeight) + lines(layout.stretchLegend);
    const auto panels = static_cast<double>(std::max<std::size_t>(diagram.panels.size(), 1));
    const double room = (style.height - layout.panelsTop - below) / panels - kPanelHeader - kPanelGap;
    layout.plotHeight = style.height > 0 ? std::max(kLeastPlotHeight, room) : kNaturalPlotHeight;
    layout.panelStep = kPanelHeader + layout.plotHeight + kPanelGap;
    layout.panelsBottom = layout.panelsTop + layout.panelStep * panels - kPanelGap;
    layout.height = layout.panelsBottom + kPanelGap + below;
    return layout;
}

}  // namespace mf::drawing
