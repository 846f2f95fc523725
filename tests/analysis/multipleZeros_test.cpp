// SPDX-License-Identifier: MIT

// Where a function touches a value instead of crossing it, rounding hides the exact place. Such places are
// found, nothing else is lost because of them, and no jump is seen there.

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "mfcurves/analysis/analysis.h"
#include "tests/analysis/curves.h"

namespace {

using analysis_test::expression;
using analysis_test::rows;
using mf::Curve;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr double kPi = 3.14159265358979323846;

std::vector<double> placesOf(const std::vector<mf::analysis::Break>& breaks)
{
    std::vector<double> x;
    for (const mf::analysis::Break& one : breaks)
        x.push_back(one.x);
    return x;
}

struct Touched {
    const char* text;
    double from, to, value;
    std::vector<double> x;
};

class TouchedValue : public testing::TestWithParam<Touched> {};

TEST_P(TouchedValue, IsFoundWhereItIs)
{
    const Touched& touched = GetParam();
    const Curve curve = expression(touched.text, touched.from, touched.to);
    std::vector<testing::Matcher<double>> expected;
    for (const double x : touched.x)
        expected.push_back(DoubleNear(x, 1e-6));
    EXPECT_THAT(mf::analysis::crossings(curve, 0, touched.value), ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(Analysis, TouchedValue,
                         testing::Values(Touched{"sin(x)", 0.0, kPi, 1.0, {kPi / 2.0}},
                                         Touched{"12.5*(1-cos(x*dtor))", 0.0, 360.0, 25.0, {180.0}},
                                         Touched{"12.5*(1-cos(x*dtor))", 0.0, 360.0, 0.0, {0.0, 360.0}},
                                         Touched{
                                             "25*abs(cos(x*dtor))", 0.0, 360.0, 25.0, {0.0, 180.0, 360.0}},
                                         Touched{"(x-0.3)^2+1", -1.0, 1.6, 1.0, {0.3}}));

TEST(TouchedValue, OfTheVelocityOfALawIsInItsMiddle)
{
    for (const char* law : {"Half-Cosine", "Modified-Sine"}) {
        const Curve curve = rows({{90.0, 25.0, law}});
        const double greatest = mf::analysis::summarize(curve)[1].greatest.y;
        EXPECT_THAT(mf::analysis::crossings(curve, 1, greatest), ElementsAre(DoubleNear(45.0, 1e-5)));
    }
}

// Both functions are 2 at -pi/2 and touch 0 at pi/2, in the middle of a half of the range.
TEST(MultipleZeros, HideNoExtremeAndNoKink)
{
    const Curve curve = expression("abs(sin(x)-sin(x)^2)", -kPi, kPi);
    const auto value = mf::analysis::summarize(curve)[0];
    EXPECT_TRUE(value.guaranteed);
    EXPECT_NEAR(value.greatest.y, 2.0, 1e-12);
    EXPECT_NEAR(value.greatest.x, -kPi / 2.0, 1e-6);
    EXPECT_EQ(mf::analysis::beyond(expression("sin(x)-sin(x)^2", -kPi, kPi), 0, 0.0, 10.0).size(), 1u);
}

// The two branches touch at 0.3, and cross where exp(-w) = 1 - 2 w + 2 w^2, with w the square of the
// distance.
TEST(MultipleZeros, OfADifferenceHideNoCrossingOfTheBranches)
{
    for (const double from : {-0.7, -0.5}) {
        const Curve curve = expression("max(exp(-(x-0.3)^2), 1-2*(x-0.3)^2+2*(x-0.3)^4)", from, 1.3);
        EXPECT_THAT(
            placesOf(mf::analysis::breaks(curve, 1)),
            ElementsAre(DoubleNear(-0.4930006238360834, 1e-12), DoubleNear(1.0930006238360834, 1e-12)));
    }
}

TEST(MultipleZeros, OfAMagnitudeAreNoJumpsOfLowOrders)
{
    EXPECT_THAT(mf::analysis::breaks(expression("abs((x-0.3)^3)", -1.0, 1.0), 2), IsEmpty());
    EXPECT_THAT(mf::analysis::breaks(expression("max(x^3-0.9*x^2+0.27*x-0.027, 0)", 0.0, 3.0), 2), IsEmpty());
    EXPECT_THAT(placesOf(mf::analysis::breaks(expression("abs(sin(x)^3)", 1.0, 7.0), 3)),
                ElementsAre(DoubleNear(kPi, 1e-9), DoubleNear(2.0 * kPi, 1e-9)));
}

// 1 - cos x is less than |sin x| on both sides of 0 and of a whole turn.
TEST(MultipleZeros, OfTwoConditionsAtOnePlaceAreNoBreak)
{
    const auto breaks = mf::analysis::breaks(expression("min(1-cos(x), abs(sin(x)))", -7.0, 7.0), 1);
    const auto at = [](double quarters) { return DoubleNear(quarters * kPi / 2.0, 1e-12); };
    EXPECT_THAT(placesOf(breaks), ElementsAre(at(-3), at(-2), at(-1), at(1), at(2), at(3)));
}

// The angle turns by a whole turn at roots that are no doubles.
TEST(CutOfAnAngle, IsABreakWhereverItIs)
{
    const struct {
        const char* text;
        double x;
    } cases[] = {{"atan2(sin(x),cos(x))", kPi},
                 {"atan2(cos(x),-1)", kPi / 2.0},
                 {"atan2(exp(x)-2,-1)", std::log(2.0)},
                 {"atan2(x^2-2,-1)", std::sqrt(2.0)}};
    for (const auto& one : cases) {
        const auto breaks = mf::analysis::breaks(expression(one.text, 0.0, 4.0), 0);
        EXPECT_THAT(placesOf(breaks), ElementsAre(DoubleNear(one.x, 1e-12))) << one.text;
    }
    EXPECT_THAT(mf::analysis::breaks(expression("atan2(sin(x),2+cos(x))", 0.0, 4.0), 3), IsEmpty());
}

}  // namespace
