// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/diagram.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace {

using mf::drawing::Contents;
using mf::drawing::Diagram;
using mf::drawing::diagramOf;
using mf::drawing::toSvg;

mf::Curve rows(std::vector<mf::CurveRow> list, const std::string& name = "cam")
{
    mf::CurveDefinition definition;
    definition.shape = mf::SegmentShape{0.0, 0.0, std::move(list), {}, false};
    definition.name = name;
    definition.over = mf::Over::CycleAngle;
    return mf::Curve(definition);
}

mf::Curve formula(const std::string& text, double from, double to)
{
    mf::CurveDefinition definition;
    definition.shape = mf::ExpressionShape{text, from, to};
    return mf::Curve(definition);
}

TEST(Diagram, HasAPanelForEachNamedOrder)
{
    const Diagram diagram = diagramOf({rows({{90.0, 25.0, "Cubic"}, {180.0, 25.0, "Cubic"}})});
    ASSERT_EQ(diagram.panels.size(), 4u);
    EXPECT_EQ(diagram.panels[1].quantity, "Velocity");
    EXPECT_EQ(diagram.panels[1].unit, "mm/deg");
    EXPECT_EQ(diagram.seams, std::vector<double>{90.0});
    ASSERT_EQ(diagram.stretches.size(), 2u);
    EXPECT_EQ(diagram.stretches[0].name, "Cubic");
    EXPECT_EQ(diagram.stretches[1].name, "Dwell");
}

// The velocity of 10 (3 u^2 - 2 u^3), u = x/2, is greatest at 1: 7.5.
TEST(Diagram, IgnoresOrdersThatACurveDoesNotHave)
{
    Contents contents;
    contents.orders = {-1, 2, 4};
    const Diagram diagram = diagramOf({rows({{90.0, 25.0, "Cubic"}})}, contents);
    ASSERT_EQ(diagram.panels.size(), 1u);
    EXPECT_EQ(diagram.panels.front().order, 2);
}

TEST(Diagram, MarksTheExtremesOfTheFormula)
{
    const Diagram diagram = diagramOf({rows({{2.0, 10.0, "Cubic"}})});
    const mf::drawing::Trace& velocity = diagram.panels[1].traces.front();
    ASSERT_TRUE(velocity.greatest);
    EXPECT_NEAR(velocity.greatest->x, 1.0, 1e-9);
    EXPECT_NEAR(velocity.greatest->y, 7.5, 1e-12);
}

// 3001 periods are more than any picture has samples for.
TEST(Diagram, MarksTheExtremesOfAFastWave)
{
    const Diagram diagram = diagramOf({formula("sin(2*pi*3001*x)", 0.0, 1.0)});
    const mf::drawing::Trace& value = diagram.panels[0].traces.front();
    ASSERT_TRUE(value.least && value.greatest);
    EXPECT_NEAR(value.least->y, -1.0, 1e-9);
    EXPECT_NEAR(value.greatest->y, 1.0, 1e-9);
}

// The slope falls from 1 to -1 at x = 1.
TEST(Diagram, HasAnImpulseWhereALowerOrderJumps)
{
    const Diagram diagram = diagramOf({rows({{1.0, 1.0, "Linear"}, {2.0, 0.0, "Linear"}})});
    EXPECT_TRUE(diagram.panels[1].traces.front().impulses.empty());
    const auto& impulses = diagram.panels[2].traces.front().impulses;
    ASSERT_EQ(impulses.size(), 1u);
    EXPECT_EQ(impulses[0].x, 1.0);
    EXPECT_FALSE(impulses[0].isUpward);
}

TEST(Diagram, DrawsDerivativesAtARate)
{
    Contents contents;
    contents.rate = 720.0;
    const Diagram diagram = diagramOf({rows({{2.0, 10.0, "Linear"}})}, contents);
    EXPECT_NEAR(diagram.panels[1].traces.front().greatest->y, 5.0 * 720.0, 1e-9);
}

TEST(Diagram, SharesPanelsBetweenCurves)
{
    const Diagram diagram =
        diagramOf({rows({{2.0, 10.0, "Linear"}}, "one"), rows({{4.0, 5.0, "Linear"}}, "two")});
    EXPECT_EQ(diagram.to, 4.0);
    EXPECT_EQ(diagram.names, (std::vector<std::string>{"one", "two"}));
    ASSERT_EQ(diagram.panels[0].traces.size(), 2u);
    EXPECT_EQ(diagram.panels[0].traces[0].lines.front().back().x, 2.0);
}

TEST(Diagram, HasAGapWhereThereIsNoFiniteValue)
{
    const Diagram diagram = diagramOf({formula("1/(x-0.5)", 0.0, 1.0)});
    EXPECT_EQ(diagram.panels[0].traces.front().lines.size(), 2u);
}

// tan has poles at pi/2, 3 pi/2 and 5 pi/2. Close to them a value depends on where it happens to be computed.
TEST(Diagram, ShowsWhatIsBesideAPole)
{
    const Diagram diagram = diagramOf({formula("tan(x)", 0.0, 10.0)});
    const mf::drawing::Trace& value = diagram.panels[0].traces.front();
    ASSERT_TRUE(value.beside);
    EXPECT_LT(value.beside->from, -1.0);
    EXPECT_GT(value.beside->from, -100.0);
    EXPECT_GT(value.beside->to, 1.0);
    EXPECT_LT(value.beside->to, 100.0);
    ASSERT_EQ(value.lines.size(), 4u);
    for (const mf::drawing::Line& line : value.lines) {
        for (std::size_t i = 1; i < line.size(); ++i)
            EXPECT_LT(line[i - 1].y, line[i].y) << "tan rises between its poles";
    }
}

TEST(Diagram, ShowsAHighPeakWhole)
{
    const Diagram diagram = diagramOf({formula("1/((x-0.5)^2+1e-9)", 0.0, 1.0)});
    const mf::drawing::Trace& value = diagram.panels[0].traces.front();
    EXPECT_FALSE(value.beside);
    EXPECT_NEAR(value.greatest->y, 1e9, 1.0);
}

TEST(Svg, NamesNoExtremesBesideAPole)
{
    const std::string svg = toSvg(diagramOf({formula("tan(x)", 0.0, 10.0)}));
    EXPECT_NE(svg.find("goes beyond the axis"), std::string::npos);
    EXPECT_EQ(svg.find("e+"), std::string::npos);
}

// The velocity falls from 1 to 0 where the acceleration is greatest, 6. Its label must not hide the arrow.
TEST(Svg, WritesALabelBesideAnArrow)
{
    const std::string svg = toSvg(diagramOf({rows({{1.0, 1.0, "Linear"}, {2.0, 2.0, "Cubic"}})}));
    const std::size_t label = svg.find(">6 at 1</text>");
    ASSERT_NE(label, std::string::npos);
    const std::size_t anchor = svg.rfind("text-anchor=", label);
    EXPECT_EQ(svg.substr(anchor, 19), "text-anchor=\"start\"");
}

TEST(Diagram, IsEmptyWithoutCurves)
{
    EXPECT_TRUE(diagramOf({}).panels.empty());
    EXPECT_NE(toSvg(diagramOf({})).find("</svg>"), std::string::npos);
}

TEST(Svg, EscapesMarkup)
{
    const std::string svg = toSvg(diagramOf({rows({{2.0, 10.0, "Linear"}}, "A <cam> & \x01more")}));
    EXPECT_NE(svg.find("<title>A &lt;cam&gt; &amp; more</title>"), std::string::npos);
}

TEST(Svg, OfSeveralCurvesIsTitledByTheirNames)
{
    const mf::Curve lift = rows({{2.0, 10.0, "Linear"}}, "Lift");
    const mf::Curve stroke = rows({{2.0, 20.0, "Linear"}}, "Stroke");
    EXPECT_NE(toSvg(diagramOf({lift, stroke})).find("<title>Lift, Stroke</title>"), std::string::npos);
    Contents titled;
    titled.title = "Both";
    EXPECT_NE(toSvg(diagramOf({lift, stroke}, titled)).find("<title>Both</title>"), std::string::npos);
}

TEST(Svg, IsTheSameForTheSameDiagram)
{
    const Diagram diagram = diagramOf({rows({{2.0, 10.0, "Cubic"}})});
    EXPECT_EQ(toSvg(diagram), toSvg(diagram));
}

TEST(Quantities, UnitsOfDerivatives)
{
    using mf::drawing::derivativeUnit;
    EXPECT_EQ(derivativeUnit({"s", "mm", ""}, 2), "mm/s\u00b2");
    EXPECT_EQ(derivativeUnit({"s", "mm/s", ""}, 1), "mm/s\u00b2");
    EXPECT_EQ(derivativeUnit({"deg", "mm", "s"}, 1), "mm/s");
    EXPECT_EQ(derivativeUnit({"", "mm", ""}, 1), "");
}

}  // namespace
