// SPDX-License-Identifier: MIT

// The values of a curve at one x, for each kind.

#include "mfcurves/curve/Curve.h"

#include <cmath>

namespace {

using mf::Curve;
using mf::CurveDefinition;

CurveDefinition riseAndDwell()
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{
        0.0, 0.0, {{90.0, 25.0, "3-4-5-Polynomial"}, {150.0, 25.0, "Linear (Default)"}}, {}, false};
    return definition;
}

// 3-4-5 polynomial; Norton, Cam Design and Manufacturing Handbook.
TEST(Curve, OfRowsFollowsTheirLaws)
{
    const Curve curve(riseAndDwell());
    EXPECT_EQ(curve.firstX(), 0.0);
    EXPECT_EQ(curve.lastX(), 150.0);
    EXPECT_DOUBLE_EQ(curve(45.0), 12.5);
    EXPECT_DOUBLE_EQ(curve(45.0, 1), 25.0 / 90.0 * 1.875);
    EXPECT_NEAR(curve(45.0, 2), 0.0, 1e-15);
    EXPECT_DOUBLE_EQ(curve(45.0, 3), -30.0 * 25.0 / (90.0 * 90.0 * 90.0));
    EXPECT_EQ(curve(120.0), 25.0);
    EXPECT_TRUE(std::isnan(curve(45.0, 4)));
}

TEST(Curve, OfPointsGoesThroughThem)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Points{{0.0, 1.0, 3.0}, {0.0, 2.0, 0.0}, mf::Interpolation::Linear};
    const Curve curve(definition);
    EXPECT_EQ(curve(1.0), 2.0);
    EXPECT_EQ(curve(0.5), 1.0);
    EXPECT_EQ(curve.at(1.0, mf::Side::Left).d1, 2.0);
    EXPECT_EQ(curve.at(1.0, mf::Side::Right).d1, -1.0);
}

TEST(Curve, OfAnExpressionHasItsDerivatives)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Expression{"2*x^3", 0.0, 1.0};
    const Curve curve(definition);
    const mf::CurveValues values = curve.at(0.5);
    EXPECT_EQ(values.y, 0.25);
    EXPECT_EQ(values.d1, 1.5);
    EXPECT_EQ(values.d2, 6.0);
    EXPECT_EQ(values.d3, 12.0);
}

}  // namespace
