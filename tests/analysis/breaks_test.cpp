// SPDX-License-Identifier: MIT

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "mfcurves/analysis/analysis.h"
#include "tests/analysis/curves.h"

namespace {

using analysis_test::cam;
using analysis_test::expression;
using analysis_test::points;
using analysis_test::rows;
using mf::Curve;
using mf::analysis::Break;
using mf::analysis::breaks;
using mf::analysis::Cause;
using mf::analysis::nextBreak;

constexpr double kPi = std::numbers::pi;

// "x lowest" of each break.
std::vector<std::pair<double, int>> show(const std::vector<Break>& found)
{
    std::vector<std::pair<double, int>> shown;
    for (const Break& b : found)
        shown.emplace_back(b.x, b.lowest);
    return shown;
}

using Shown = std::vector<std::pair<double, int>>;

TEST(Breaks, AreTheSeamsWhereAnOrderJumps)
{
    // 3-4-5 jumps in jerk against a dwell, 4-5-6-7 in the fourth derivative.
    EXPECT_EQ(show(breaks(cam())), (Shown{{90.0, 3}}));
    EXPECT_EQ(show(breaks(cam(), 4)), (Shown{{90.0, 3}, {150.0, 4}, {240.0, 4}}));
    EXPECT_TRUE(breaks(cam(), 2).empty());
}

TEST(Breaks, HaveBothSidesAndTheRowThatBegins)
{
    const std::vector<Break> found = breaks(rows({{1.0, 1.0, "Linear"}, {3.0, 0.0, "Linear"}}));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].cause, Cause::Seam);
    EXPECT_EQ(found[0].row, 2);
    EXPECT_EQ(found[0].left.d1, 1.0);
    EXPECT_EQ(found[0].right.d1, -0.5);
    EXPECT_EQ(found[0].left.y, 1.0);
}

TEST(Breaks, OfARowOfNoLengthAreWhereItsNeighboursMeet)
{
    const std::vector<Break> found =
        breaks(rows({{1.0, 1.0, "Linear"}, {1.0, 3.0, "Linear"}, {2.0, 4.0, "Linear"}}));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].lowest, 0);
    EXPECT_EQ(found[0].row, 3);
    EXPECT_EQ(found[0].left.y, 1.0);
    EXPECT_EQ(found[0].right.y, 3.0);
}

TEST(Breaks, OfPointsDependOnTheirInterpolation)
{
    const std::vector<double> x{0.0, 1.0, 2.0, 4.0};
    const std::vector<double> y{0.0, 1.0, -1.0, 2.0};
    EXPECT_EQ(show(breaks(points(x, y, mf::Interpolation::Linear))), (Shown{{1.0, 1}, {2.0, 1}}));
    EXPECT_EQ(show(breaks(points(x, y, mf::Interpolation::Akima))), (Shown{{1.0, 2}, {2.0, 2}}));
    EXPECT_EQ(show(breaks(points(x, y, mf::Interpolation::Cubic))), (Shown{{1.0, 3}, {2.0, 3}}));
    const std::vector<Break> found = breaks(points(x, y, mf::Interpolation::Linear));
    EXPECT_EQ(found[0].cause, Cause::Knot);
    EXPECT_EQ(found[0].row, 2);
}

TEST(Breaks, AreNotWherePointsLieOnALine)
{
    EXPECT_TRUE(
        breaks(points({0.0, 1.0, 2.0, 3.0}, {0.1, 0.2, 0.3, 0.4}, mf::Interpolation::Linear)).empty());
}

struct KinkCase {
    const char* name;
    const char* text;
    double from;
    double to;
    Shown expected;
};

void PrintTo(const KinkCase& c, std::ostream* os)
{
    *os << c.text;
}

const KinkCase kKinks[] = {
    {"Abs", "abs(x-1)", 0, 3, {{1, 1}}},
    {"AbsOfSine", "abs(sin(x))", 1, 7, {{kPi, 1}, {2 * kPi, 1}}},
    {"TouchingZero", "abs((x-1)^2)", 0, 2, {}},
    {"CubeOfAbs", "abs(x)^3", -1, 1, {{0, 3}}},
    {"Min", "min(x, 2-x)", 0, 2, {{1, 1}}},
    {"MaxOfThree", "max(-x, 0, x-1)", -1, 2, {{0, 1}, {1, 1}}},
    {"Sign", "sign(x-0.5)", 0, 1, {{0.5, 0}}},
    {"SignOfSecond", "sign(2, x-0.5)", 0, 1, {{0.5, 0}}},
    {"Mod", "mod(x, 1)", 0.5, 2.5, {{1, 0}, {2, 0}}},
    {"Floor", "floor(x)", 0.5, 2.5, {{1, 0}, {2, 0}}},
    {"Ceil", "ceil(2*x)", 0.1, 1.2, {{0.5, 0}, {1, 0}}},
    {"Int", "int(x)", -1.5, 1.5, {{-1, 0}, {1, 0}}},
    {"Nint", "nint(x)", 0, 2, {{0.5, 0}, {1.5, 0}}},
    {"Dim", "dim(x, 1)", 0, 2, {{1, 1}}},
    {"If", "if(x-1: 0, 0, (x-1)^2)", 0, 2, {{1, 2}}},
    {"EqualBranches", "if(x-1: x, x, x)", 0, 2, {}},
    {"NestedIf", "if(x-1: if(x-0.5: 0, 0, x-0.5), 0.5, 0.5)", 0, 2, {{0.5, 1}, {1, 1}}},
    {"DeadBranch", "if(x+1: abs(x-0.5), 0, x)", 0, 1, {}},
    {"Step", "step(x, 1, 0, 2, 1)", 0, 3, {{1, 2}, {2, 2}}},
    {"Step5", "step5(x, 1, 0, 2, 1)", 0, 3, {{1, 3}, {2, 3}}},
    {"Havsin", "havsin(x, 1, 0, 2, 1)", 0, 3, {{1, 2}, {2, 2}}},
    {"AngleOverTheCut", "atan2(x-1, -1)", 0, 2, {{1, 0}}},
    {"InsideAnother", "abs(abs(x)-1)", -2, 2, {{-1, 1}, {0, 1}, {1, 1}}},
    {"Pole", "1/(x-1)", 0, 2, {}},
};

class Kink : public testing::TestWithParam<KinkCase> {};

TEST_P(Kink, IsFoundWithTheOrderThatJumps)
{
    const KinkCase& c = GetParam();
    const std::vector<Break> found = breaks(expression(c.text, c.from, c.to));
    ASSERT_EQ(found.size(), c.expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i].x, c.expected[i].first, 2e-15 * std::fabs(c.expected[i].first));
        EXPECT_EQ(found[i].lowest, c.expected[i].second);
        EXPECT_EQ(found[i].cause, Cause::Kink);
        EXPECT_EQ(found[i].row, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, Kink, testing::ValuesIn(kKinks),
                         [](const auto& tested) { return tested.param.name; });

TEST(Breaks, HaveTheLimitsOfBothBranchesAtAKink)
{
    const std::vector<Break> found = breaks(expression("abs(sin(x))", 1.0, 4.0));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_DOUBLE_EQ(found[0].left.d1, -1.0);
    EXPECT_DOUBLE_EQ(found[0].right.d1, 1.0);
}

TEST(Breaks, OfACycleIncludeItsEnd)
{
    const Curve ramp = rows({{1.0, 1.0, "3-4-5-Polynomial"}, {2.0, 2.0, "Linear"}});
    const std::vector<Break> found = breaks(ramp.with(mf::Outside::Repeat));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[1].x, 2.0);
    EXPECT_EQ(found[1].cause, Cause::CycleEnd);
    EXPECT_EQ(found[1].lowest, 0);
    EXPECT_EQ(found[1].row, 0);
    EXPECT_EQ(found[1].left.y, 2.0);
    EXPECT_EQ(found[1].right.y, 0.0);
    EXPECT_EQ(breaks(ramp).size(), 1u);
    // A cam that closes smoothly up to the third derivative has only the break at its own seam.
    EXPECT_EQ(show(breaks(cam().with(mf::Outside::Repeat))), (Shown{{90.0, 3}, {360.0, 3}}));
}

TEST(Breaks, AreThoseOfTheRange)
{
    const Curve curve = expression("floor(x)", 0.5, 5.5);
    EXPECT_EQ(show(breaks(curve, 3, {1.5, 3.5})), (Shown{{2.0, 0}, {3.0, 0}}));
    EXPECT_EQ(show(breaks(curve, 3, {2.0, 3.0})), (Shown{{2.0, 0}, {3.0, 0}}));
    EXPECT_TRUE(breaks(curve, 3, {6.0, 7.0}).empty());
}

TEST(NextBreak, IsStrictlyAfter)
{
    const Curve curve = cam();
    EXPECT_EQ(nextBreak(curve, -10.0), 90.0);
    EXPECT_EQ(nextBreak(curve, 89.0), 90.0);
    EXPECT_EQ(nextBreak(curve, std::nextafter(90.0, 0.0)), 90.0);
    EXPECT_EQ(nextBreak(curve, 90.0), std::nullopt);
    EXPECT_EQ(nextBreak(curve, 90.0, 4), 150.0);
    EXPECT_EQ(nextBreak(curve, 0.0, 2), std::nullopt);
    EXPECT_EQ(nextBreak(curve, std::nan("")), std::nullopt);
}

TEST(NextBreak, GoesThroughEveryCycle)
{
    const Curve curve = rows({{1.0, 1.0, "Linear"}, {4.0, 0.0, "Linear"}}).with(mf::Outside::Repeat);
    double x = -5.5;
    std::vector<double> found;
    for (int i = 0; i < 6; ++i) {
        x = nextBreak(curve, x).value();
        found.push_back(x);
    }
    EXPECT_EQ(found, (std::vector<double>{-4.0, -3.0, 0.0, 1.0, 4.0, 5.0}));
    EXPECT_EQ(nextBreak(expression("x^2-x", 0.0, 1.0).with(mf::Outside::Repeat), 0.5, 0), std::nullopt);
}

TEST(NextBreak, WalksAlongPoints)
{
    const Curve curve = points({0.0, 1.0, 2.0, 3.0}, {0.0, 1.0, 2.0, 0.0}, mf::Interpolation::Linear);
    EXPECT_EQ(nextBreak(curve, -1.0), 2.0);  // the first two pieces are one line
    EXPECT_EQ(nextBreak(curve, 2.0), std::nullopt);
}

}  // namespace
