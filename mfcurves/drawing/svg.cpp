// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "mfcurves/drawing/diagram.h"
#include "mfcurves/drawing/layout.h"
#include "mfcurves/drawing/path.h"
#include "mfcurves/drawing/svgPanel.h"
#include "mfcurves/drawing/svgText.h"

namespace mf::drawing {

namespace {

constexpr std::size_t kLongestTitle = 72;
constexpr double kTitleLetter = 18.0;

constexpr const char* kStyle =
    "text{{font-family:'Helvetica Neue',Helvetica,Arial,'Liberation Sans','DejaVu Sans',sans-serif;"
    "font-size:12px;fill:{text}}}"
    ".title{{font-size:18px;font-weight:600;fill:{title}}}"
    ".quantity{{font-size:13px;font-weight:600}}"
    ".unit{{fill:{text};font-weight:400}}"
    ".name,.seamLabel{{fill:{name};font-size:11px}}"
    ".mark{{fill:{text};font-size:11px;stroke:{background};stroke-width:3px;paint-order:stroke}}"
    ".frame{{fill:none;stroke:{frame}}}"
    ".grid{{stroke:{grid}}}"
    ".zero{{stroke:{zero}}}"
    ".seam{{stroke:{zero};stroke-dasharray:3 4}}"
    ".line{{fill:none;fill-opacity:0.07;stroke-width:2;stroke-linejoin:round}}"
    ".impulse{{stroke-width:2}}"
    ".knot{{fill:{background};stroke-width:1.5}}";

// The picture in words.
std::string description(const Diagram& diagram)
{
    std::string text = fmt::format("{} from {:g} to {:g} {}.", diagram.variable, diagram.from, diagram.to,
                                   diagram.variableUnit);
    for (const Panel& panel : diagram.panels) {
        for (std::size_t i = 0; i < panel.traces.size(); ++i) {
            const Trace& trace = panel.traces[i];
            const std::string name = panel.traces.size() > 1 ? " of " + diagram.names[i] : "";
            if (trace.beside)
                text += fmt::format(" {}{}: goes beyond the axis.", panel.quantity, name);
            else if (trace.least && trace.greatest)
                text += fmt::format(" {}{} [{}]: least {:.6g} at {:.6g}, greatest {:.6g} at {:.6g}.",
                                    panel.quantity, name, panel.unit, trace.least->y, trace.least->x,
                                    trace.greatest->y, trace.greatest->x);
            else
                text += fmt::format(" {}{}: no finite value.", panel.quantity, name);
        }
    }
    return text;
}

// The title for people who cannot see the picture: without one, the names of the curves.
std::string spokenTitle(const Diagram& diagram)
{
    return diagram.title.empty() ? fmt::format("{}", fmt::join(diagram.names, ", ")) : diagram.title;
}

std::string opening(const Diagram& diagram, const Layout& layout, const Theme& theme)
{
    const std::string style = fmt::format(
        fmt::runtime(kStyle), fmt::arg("text", theme.text), fmt::arg("title", theme.title),
        fmt::arg("name", theme.name), fmt::arg("background", theme.background),
        fmt::arg("frame", theme.frame), fmt::arg("grid", theme.grid), fmt::arg("zero", theme.zero));
    return fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" "
        "role=\"img\">\n<title>{2}</title>\n<desc>{3}</desc>\n<style>{4}</style>\n"
        "<rect width=\"100%\" height=\"100%\" fill=\"{5}\"/>\n",
        pixels(layout.width), pixels(layout.height), escaped(spokenTitle(diagram)),
        escaped(description(diagram)), style, theme.background);
}

std::string drawTitle(const Diagram& diagram, const Layout& layout)
{
    if (diagram.title.empty())
        return "";
    const auto fits = static_cast<std::size_t>((layout.plotRight - layout.plotLeft) / (0.6 * kTitleLetter));
    return textAt(layout.plotLeft, 32.0, "class=\"title\"",
                  shortened(diagram.title, std::min(kLongestTitle, fits)));
}

std::string drawCurveLegend(const Layout& layout, const Theme& theme)
{
    std::string svg;
    double baseline = layout.titleHeight + 2.0;
    std::size_t curve = 0;
    for (const std::vector<Label>& line : layout.curveLegend) {
        for (const Label& label : line) {
            svg += fmt::format(
                "<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" stroke=\"{}\" stroke-width=\"3\"/>\n",
                pixels(label.x), pixels(baseline - 4.0), pixels(label.x + 20.0), pixels(baseline - 4.0),
                colourOfCurve(theme, curve++));
            svg += textAt(label.x + kSwatch, baseline, "class=\"name\"", label.text);
        }
        baseline += kLegendLine;
    }
    return svg;
}

std::string drawStretchNames(const Layout& layout)
{
    std::string svg;
    for (const Label& label : layout.stretchLabels)
        svg += textAt(label.x, layout.panelsTop - 10.0, "class=\"name\" text-anchor=\"middle\"", label.text);
    return svg;
}

// The number at a tick of the shared axis. It is written smaller if it is too wide for its room, and ends at
// the edge of the picture if it would run beyond it.
std::string variableLabel(double x, double y, double room, const Layout& layout, const std::string& label)
{
    const double edge = layout.width - kMargin;
    const double wanted = kDigitWidth * static_cast<double>(characterCount(label));
    const std::string size =
        wanted > room ? fmt::format(" style=\"font-size:{}px\"", pixels(kLetter * room / wanted)) : "";
    const bool fits = x + std::min(room, wanted) / 2.0 <= edge;
    return textAt(fits ? x : edge, y, fmt::format("text-anchor=\"{}\"{}", fits ? "middle" : "end", size),
                  label);
}

std::string drawVariable(const Diagram& diagram, const Layout& layout)
{
    std::string svg;
    double baseline = layout.panelsBottom + 18.0;
    const double width = layout.plotRight - layout.plotLeft;
    const double gap = width / static_cast<double>(std::max<std::size_t>(layout.x.ticks.size(), 1));
    for (double tick : layout.x.ticks)
        svg += variableLabel(layout.toX(tick), baseline, 0.8 * gap, layout, layout.x.label(tick));
    if (!layout.seamLabels.empty())
        baseline += 14.0;
    for (const Label& label : layout.seamLabels)
        svg += textAt(label.x, baseline, "class=\"seamLabel\" text-anchor=\"middle\"", label.text);
    baseline += 20.0;
    const std::string exponent = exponentText(layout.x.exponent);
    const std::string unit =
        diagram.variableUnit +
        (diagram.variableUnit.empty() && !exponent.empty() ? exponent.substr(1) : exponent);
    const std::string label = unit.empty() ? diagram.variable : diagram.variable + " [" + unit + "]";
    svg += textAt((layout.plotLeft + layout.plotRight) / 2.0, baseline, "text-anchor=\"middle\"", label);
    for (const std::vector<Label>& line : layout.stretchLegend) {
        baseline += kLegendLine;
        for (const Label& entry : line)
            svg += textAt(entry.x, baseline, "class=\"name\"", entry.text);
    }
    return svg;
}

}  // namespace

std::string toSvg(const Diagram& diagram, const Style& style)
{
    const Theme& theme = themeOf(style);
    const Layout layout = layoutOf(diagram, style);
    std::string svg = opening(diagram, layout, theme) + drawTitle(diagram, layout) +
                      drawCurveLegend(layout, theme) + drawStretchNames(layout);
    for (std::size_t panel = 0; panel < diagram.panels.size(); ++panel)
        svg += drawPanel(diagram, panel, layout, theme);
    return svg + drawVariable(diagram, layout) + "</svg>\n";
}

}  // namespace mf::drawing
