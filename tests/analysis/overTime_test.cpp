// SPDX-License-Identifier: MIT

#include <cmath>
#include <gtest/gtest.h>

#include "mfcurves/analysis/analysis.h"
#include "tests/analysis/curves.h"

namespace {

using analysis_test::cam;
using analysis_test::expression;
using analysis_test::points;
using mf::Curve;
using mf::analysis::overTime;

// At s seconds per unit, derivative k is divided by s^k.
void expectScaled(const Curve& curve, const Curve& timed, double s)
{
    EXPECT_EQ(timed.firstX(), curve.firstX() * s);
    EXPECT_EQ(timed.lastX(), curve.lastX() * s);
    for (int i = 0; i <= 20; ++i) {
        const double x = curve.firstX() + (i + 0.37) / 21.0 * (curve.lastX() - curve.firstX());
        double factor = 1.0;
        for (int order = 0; order < 4; ++order, factor /= s) {
            const double expected = curve(x, order) * factor;
            EXPECT_NEAR(timed(x * s, order), expected, 1e-9 * std::max(1.0, std::fabs(expected))) << order;
        }
    }
}

TEST(OverTime, ScalesEveryKindOfCurve)
{
    const double s = 1.0 / 720.0;  // 120 revolutions per minute, degrees
    expectScaled(cam(), overTime(cam(), s), s);
    const Curve text = expression("3*sin(X/2)+exp(-x)", 0.0, 5.0);
    expectScaled(text, overTime(text, 0.25), 0.25);
    const Curve through = points({0.0, 1.0, 2.5, 3.0}, {0.0, 2.0, 1.0, 4.0}, mf::Interpolation::Akima);
    expectScaled(through, overTime(through, 3.0), 3.0);
}

TEST(OverTime, IsADefinitionOfItsOwn)
{
    mf::CurveDefinition definition = cam().definition();
    definition.over = mf::Over::CycleAngle;
    std::get<mf::SegmentShape>(definition.shape).sixDecimals = true;
    std::get<mf::SegmentShape>(definition.shape).rows[0].value = 25.00000049;
    const Curve timed = overTime(Curve(definition).with(mf::Outside::Repeat), 0.5);
    const auto& shape = std::get<mf::SegmentShape>(timed.definition().shape);
    EXPECT_EQ(timed.definition().over, mf::Over::Time);
    EXPECT_FALSE(shape.sixDecimals);
    EXPECT_EQ(shape.rows[0].value, 25.0);  // as it entered the law
    EXPECT_EQ(shape.rows[0].endX, 45.0);
    EXPECT_EQ(timed.outside(), mf::Outside::Repeat);
    EXPECT_EQ(Curve(timed.definition()).with(mf::Outside::Repeat)(10.0), timed(10.0));
}

TEST(OverTime, OfAnExpressionWithoutAVariableKeepsItsValue)
{
    const Curve timed = overTime(expression("2*pi", 0.0, 4.0), 0.5);
    EXPECT_EQ(timed.lastX(), 2.0);
    EXPECT_DOUBLE_EQ(timed(1.0), 2.0 * std::acos(-1.0));
}

TEST(OverTime, NeedsAPositiveFiniteTime)
{
    for (const double wrong : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_THROW(overTime(cam(), wrong), mf::CurveError) << wrong;
}

}  // namespace
