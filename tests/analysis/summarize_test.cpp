// SPDX-License-Identifier: MIT

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

#include "mfcurves/analysis/analysis.h"
#include "tests/analysis/curves.h"

namespace {

using analysis_test::cam;
using analysis_test::expression;
using analysis_test::points;
using analysis_test::rows;
using mf::Curve;
using mf::Side;
using mf::analysis::Peak;
using mf::analysis::summarize;
using mf::analysis::Summary;

constexpr double kPi = std::numbers::pi;

void expectPeak(const Peak& peak, double x, double y, double tolerance = 1e-13)
{
    EXPECT_NEAR(peak.x, x, 1e-12 * std::max(1.0, std::fabs(x)));
    EXPECT_NEAR(peak.y, y, tolerance * std::max(1.0, std::fabs(y)));
    EXPECT_LE(peak.error, 1e-11 * std::max(1.0, std::fabs(y)));
}

// 3-4-5 polynomial: acceleration 60 u - 180 u^2 + 120 u^3, greatest at (3 - sqrt 3) / 6.
TEST(Summarize, FindsTheExtremesOfALaw)
{
    const auto summary = summarize(rows({{1.0, 1.0, "3-4-5-Polynomial"}}));
    const double at = (3.0 - std::sqrt(3.0)) / 6.0;
    const double acceleration = 10.0 / std::sqrt(3.0);
    expectPeak(summary[1].greatest, 0.5, 1.875);
    expectPeak(summary[2].greatest, at, acceleration);
    expectPeak(summary[2].least, 1.0 - at, -acceleration);
    expectPeak(summary[3].greatest, 0.0, 60.0);
    expectPeak(summary[3].least, 0.5, -30.0);
    for (const Summary& order : summary) {
        EXPECT_TRUE(order.guaranteed);
        EXPECT_TRUE(order.impulses.empty());
    }
}

// Integrals of polynomials: 181/462 for the squared 3-4-5 law, 10/7 for its velocity,
// 120/7 and 720 for the squared acceleration and jerk.
TEST(Summarize, IntegratesPolynomialsExactly)
{
    const auto summary = summarize(rows({{1.0, 1.0, "3-4-5-Polynomial"}}));
    EXPECT_NEAR(summary[0].rms, std::sqrt(181.0 / 462.0), 1e-15);
    EXPECT_NEAR(summary[1].rms, std::sqrt(10.0 / 7.0), 1e-15);
    EXPECT_NEAR(summary[2].rms, std::sqrt(120.0 / 7.0), 1e-14);
    EXPECT_NEAR(summary[3].rms, std::sqrt(720.0), 1e-13);
    EXPECT_NEAR(summary[0].mean, 0.5, 1e-15);
    EXPECT_NEAR(summary[1].mean, 1.0, 1e-15);
    EXPECT_NEAR(summary[2].mean, 0.0, 1e-14);
}

TEST(Summarize, IntegratesOtherFunctionsToRounding)
{
    const auto summary = summarize(expression("10*sin(2*pi*x)", 0.0, 10.0));
    EXPECT_NEAR(summary[0].rms, 10.0 / std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(summary[0].mean, 0.0, 1e-12);
    const auto exponential = summarize(expression("exp(-x)", 0.0, 5.0));
    EXPECT_NEAR(exponential[0].mean, (1.0 - std::exp(-5.0)) / 5.0, 1e-14);
    EXPECT_NEAR(exponential[0].rms, std::sqrt((1.0 - std::exp(-10.0)) / 10.0), 1e-14);
}

TEST(Summarize, OfADwellIsConstant)
{
    const auto summary = summarize(rows({{2.0, 0.0, "Linear"}, {3.0, 5.0, "3-4-5-Polynomial"}}), {0.5, 1.5});
    EXPECT_EQ(summary[0].least.y, 0.0);
    EXPECT_EQ(summary[0].greatest.y, 0.0);
    EXPECT_EQ(summary[1].greatest.error, 0.0);
    EXPECT_EQ(summary[3].greatest.y, 0.0);
    for (const Summary& order : summary)
        EXPECT_TRUE(order.guaranteed);
}

TEST(Summarize, OfARampHasOneVelocity)
{
    const auto summary = summarize(rows({{4.0, 2.0, "Linear"}}));
    expectPeak(summary[0].least, 0.0, 0.0);
    expectPeak(summary[0].greatest, 4.0, 2.0);
    expectPeak(summary[1].least, 0.0, 0.5);
    expectPeak(summary[1].greatest, 0.0, 0.5);
    EXPECT_EQ(summary[2].greatest.y, 0.0);
    EXPECT_TRUE(summary[2].guaranteed);
}

TEST(Summarize, OfAConstantExpressionIsItsValueAndProved)
{
    const auto summary = summarize(expression("7", -1.0, 1.0));
    EXPECT_EQ(summary[0].least.y, 7.0);
    EXPECT_EQ(summary[0].greatest.y, 7.0);
    EXPECT_DOUBLE_EQ(summary[0].rms, 7.0);
    EXPECT_EQ(summary[1].greatest.y, 0.0);
    EXPECT_TRUE(summary[0].guaranteed && summary[3].guaranteed);
}

TEST(Summarize, SaysOnWhichSideOfASeamAPeakIs)
{
    // The jerk of the rise ends with 60 H / T^3 and that of the dwell is 0.
    const auto summary = summarize(rows({{1.0, 1.0, "3-4-5-Polynomial"}, {2.0, 1.0, "Linear"}}), {0.8, 2.0});
    expectPeak(summary[3].greatest, 1.0, 60.0);
    EXPECT_EQ(summary[3].greatest.side, Side::Left);
}

TEST(Summarize, CountsALeftSideAtAJump)
{
    const auto summary = summarize(expression("if(x-1: x, 5, -x)", 0.0, 2.0));
    // The value at the jump itself is one of the values of the curve.
    expectPeak(summary[0].greatest, 1.0, 5.0);
    expectPeak(summary[0].least, 2.0, -2.0);
    ASSERT_EQ(summary[1].impulses.size(), 1u);
    EXPECT_EQ(summary[1].impulses[0], 1.0);
    const auto sides = summarize(expression("if(x-1: x, x, -x)", 0.0, 2.0));
    expectPeak(sides[0].greatest, 1.0, 1.0);
}

TEST(Summarize, FindsAKinkAtASeam)
{
    const auto summary = summarize(rows({{1.0, 1.0, "Linear"}, {3.0, 0.0, "Linear"}}));
    expectPeak(summary[0].greatest, 1.0, 1.0);
    EXPECT_EQ(summary[0].greatest.side, Side::Left);
    expectPeak(summary[1].least, 1.0, -0.5);
    EXPECT_EQ(summary[1].least.side, Side::Right);
    ASSERT_EQ(summary[2].impulses.size(), 1u);
    EXPECT_EQ(summary[2].impulses[0], 1.0);
    EXPECT_TRUE(summary[3].impulses.empty());
}

TEST(Summarize, ReportsTheFirstOfTwoEqualPeaks)
{
    const auto summary = summarize(expression("sin(x)^2", 0.0, 6.0));
    expectPeak(summary[0].greatest, kPi / 2.0, 1.0);
    const auto twice = summarize(rows(
        {{1.0, 1.0, "3-4-5-Polynomial"}, {2.0, 0.0, "3-4-5-Polynomial"}, {3.0, 1.0, "3-4-5-Polynomial"}}));
    expectPeak(twice[1].greatest, 0.5, 1.875);
    expectPeak(twice[1].least, 1.5, -1.875);
}

TEST(Summarize, PassesOverARowOfNoLength)
{
    const auto summary =
        summarize(rows({{1.0, 1.0, "Linear"}, {1.0, 3.0, "3-4-5-Polynomial"}, {2.0, 4.0, "Linear"}}));
    expectPeak(summary[0].greatest, 2.0, 4.0);
    ASSERT_EQ(summary[1].impulses.size(), 1u);
    EXPECT_EQ(summary[1].impulses[0], 1.0);
    EXPECT_TRUE(summary[2].impulses.empty());  // the velocity is 1 on both sides
}

TEST(Summarize, OfOnePointIsItsValue)
{
    const auto summary = summarize(points({3.0}, {-2.0}, mf::Interpolation::Cubic));
    EXPECT_EQ(summary[0].least.y, -2.0);
    EXPECT_EQ(summary[0].greatest.x, 3.0);
    EXPECT_EQ(summary[0].rms, 2.0);
    EXPECT_EQ(summary[0].mean, -2.0);
    EXPECT_TRUE(summary[0].guaranteed);
}

TEST(Summarize, OfARangeOfOneXIsTheValueThere)
{
    const auto summary = summarize(expression("x^2", 0.0, 3.0), {2.0, 2.0});
    EXPECT_EQ(summary[0].least.y, 4.0);
    EXPECT_EQ(summary[0].greatest.y, 4.0);
    EXPECT_EQ(summary[1].mean, 4.0);
}

TEST(Summarize, WithoutAnythingInRangeHasNoValues)
{
    for (const mf::Range range : {mf::Range{5.0, 6.0}, mf::Range{1.0, 0.5}, mf::Range{std::nan(""), 1.0}}) {
        const auto summary = summarize(expression("x", 0.0, 1.0), range);
        EXPECT_TRUE(std::isnan(summary[0].greatest.y));
        EXPECT_TRUE(std::isnan(summary[0].rms));
        EXPECT_FALSE(summary[0].guaranteed);
    }
}

TEST(Summarize, DoesNotProveWhatIsUndefinedInside)
{
    const auto summary = summarize(expression("sqrt(x-1)", 0.0, 2.0));
    EXPECT_FALSE(summary[0].guaranteed);
    EXPECT_NEAR(summary[0].greatest.y, 1.0, 1e-12);
    const auto never = summarize(expression("sqrt(-1-x)", 0.0, 2.0));
    EXPECT_FALSE(never[0].guaranteed);
    EXPECT_TRUE(std::isnan(never[0].greatest.y));
}

// In the middle of the range the condition has no value, and on one side of a pole it has the other sign.
TEST(Summarize, DecidesNoBranchWhereItsConditionHasNoValue)
{
    const Summary root = summarize(expression("min(x+2, sqrt(x))", -2.0, 0.25))[0];
    EXPECT_FALSE(root.guaranteed);
    EXPECT_NEAR(root.greatest.y, 0.5, 1e-3);
    EXPECT_LT(root.least.y, 0.1);  // sampled; 0 at 0
    const Summary sign = summarize(expression("if(1/x: -1, 0, 1)", -1.0, 1.0))[0];
    EXPECT_FALSE(sign.guaranteed);
    EXPECT_EQ(sign.least.y, -1.0);
    EXPECT_EQ(sign.greatest.y, 1.0);
    const Summary pole = summarize(expression("min(-3, 3/x)", -0.2127385486793214, 3.7872614513206786))[0];
    EXPECT_FALSE(pole.guaranteed);
    EXPECT_LT(pole.least.y, -1e3);
    // Where the sign is the same throughout, an end without a value proves enough.
    EXPECT_TRUE(summarize(expression("max(sqrt(x), -1)", 0.0, 1.0))[0].guaranteed);
}

TEST(Summarize, DoesNotProveAPole)
{
    const auto summary = summarize(expression("tan(x)", 0.0, 2.0));
    for (const Summary& order : summary)
        EXPECT_FALSE(order.guaranteed);
    const auto beside = summarize(expression("tan(x)", -1.0, 1.0));
    for (const Summary& order : beside)
        EXPECT_TRUE(order.guaranteed);
    expectPeak(beside[0].greatest, 1.0, std::tan(1.0));
}

TEST(Summarize, WorksNearTheLargestNumbers)
{
    const auto summary = summarize(expression("1e300*sin(x)", 0.0, 3.0));
    EXPECT_NEAR(summary[0].greatest.y / 1e300, 1.0, 1e-15);
    EXPECT_NEAR(summary[0].rms / 1e300, std::sqrt(0.5 - std::sin(6.0) / 12.0), 1e-12);
    EXPECT_TRUE(summary[0].guaranteed);
    const auto spline = summarize(points({0.0, 1.0, 2.0}, {0.0, 1e300, 0.0}, mf::Interpolation::Linear));
    EXPECT_EQ(spline[0].greatest.y, 1e300);
    EXPECT_NEAR(spline[0].rms / 1e300, std::sqrt(1.0 / 3.0), 1e-14);
    const auto tiny = summarize(points({0.0, 1.0, 2.0}, {0.0, 1e-300, 0.0}, mf::Interpolation::Linear));
    EXPECT_NEAR(tiny[0].rms / 1e-300, std::sqrt(1.0 / 3.0), 1e-14);
}

TEST(Summarize, OfEqualBranchesHasNoImpulses)
{
    const auto summary = summarize(expression("if(x-1: x^2, x^2, x^2)", 0.0, 2.0));
    expectPeak(summary[0].greatest, 2.0, 4.0);
    for (const Summary& order : summary) {
        EXPECT_TRUE(order.guaranteed);
        EXPECT_TRUE(order.impulses.empty());
    }
}

TEST(Summarize, SeesAPulseBetweenSamples)
{
    // The pulse is 1e-9 wide in a range of 10, so that no sampling finds it.
    const auto summary = summarize(expression("exp(-((x-3.3333333)/1e-9)^2)", 0.0, 10.0));
    EXPECT_NEAR(summary[0].greatest.y, 1.0, 1e-12);
    EXPECT_NEAR(summary[0].greatest.x, 3.3333333, 1e-15);
}

// The integral of exp(-2 u^2) is sqrt(pi / 2), that of exp(-u^2) sqrt(pi).
TEST(Summarize, IntegratesAPulseThatNoSampleMeets)
{
    for (const double width : {1e-3, 1e-6, 1e-9}) {
        char text[80];
        std::snprintf(text, sizeof text, "exp(-((x-3.3333333)/%g)^2)", width);
        const auto summary = summarize(expression(text, 0.0, 10.0));
        const double rms = std::sqrt(width * std::sqrt(kPi / 2.0) / 10.0);
        EXPECT_NEAR(summary[0].rms / rms, 1.0, 1e-6) << text;
        EXPECT_NEAR(summary[0].mean / (width * std::sqrt(kPi) / 10.0), 1.0, 1e-6) << text;
        for (const Summary& order : summary)
            EXPECT_TRUE(order.guaranteed) << text;
        // The slope is sqrt(2 / e) / width at most, at 1/sqrt 2 of the width from the middle.
        EXPECT_NEAR(summary[1].greatest.y * width, std::sqrt(2.0 / std::exp(1.0)), 1e-8) << text;
    }
}

// The second pulse is half as high, so a search for the peak need not find it.
TEST(Summarize, IntegratesALowerPulseBesideAPeak)
{
    const auto summary =
        summarize(expression("exp(-((x-3.3333333)/1e-6)^2)+0.5*exp(-((x-7.7777777)/1e-6)^2)", 0.0, 10.0));
    EXPECT_NEAR(summary[0].mean / (1.5 * 1e-6 * std::sqrt(kPi) / 10.0), 1.0, 1e-9);
    EXPECT_NEAR(summary[0].rms / std::sqrt(1.25 * 1e-6 * std::sqrt(kPi / 2.0) / 10.0), 1.0, 1e-9);
}

TEST(Summarize, IntegratesAPulseOnAWave)
{
    const auto summary = summarize(expression("sin(x)+exp(-((x-3.3333333)/1e-6)^2)", 0.0, 10.0));
    EXPECT_NEAR(summary[0].mean * 10.0, 1.0 - std::cos(10.0) + 1e-6 * std::sqrt(kPi), 1e-13);
}

TEST(Summarize, IntegratesManyWaves)
{
    const auto summary = summarize(expression("sin(1000*x)", 0.0, 10.0));
    EXPECT_NEAR(summary[0].rms, std::sqrt(0.5 - std::sin(20000.0) / 40000.0), 1e-12);
    EXPECT_NEAR(summary[0].mean, (1.0 - std::cos(10000.0)) / 10000.0, 1e-12);
}

// y = mod(x, 0.4) rises 900 times to 0.4: the mean of its square is 0.16/3.
TEST(Summarize, OfASawWithHundredsOfTeethIsProved)
{
    const auto summary = summarize(expression("mod(x,0.4)", 0.0, 360.0));
    for (const Summary& order : summary)
        EXPECT_TRUE(order.guaranteed);
    EXPECT_NEAR(summary[0].rms, std::sqrt(0.16 / 3.0), 1e-9);
    EXPECT_NEAR(summary[1].least.y, 1.0, 1e-15);
    EXPECT_NEAR(static_cast<double>(summary[1].impulses.size()), 900.0, 1.0);
}

// Every derivative is 0, but computed values are not.
TEST(Summarize, OfAConstantWithRoundingIsProved)
{
    const auto summary = summarize(expression("-((x+x)*(8/x))", 4.7, 9.0));
    expectPeak(summary[0].least, summary[0].least.x, -16.0);
    for (const Summary& order : summary) {
        EXPECT_TRUE(order.guaranteed);
        EXPECT_LE(order.greatest.error, 1e-6);
    }
    EXPECT_NEAR(summary[1].greatest.y, 0.0, 1e-12);
    EXPECT_NEAR(summary[3].greatest.y, 0.0, 1e-9);
}

// The formula of the second derivative is 0, but the curve has no value.
TEST(Summarize, DoesNotProveDerivativesOfWhatHasNoValue)
{
    for (const char* text : {"x*1e300^5", "x+1e300^5"}) {
        const auto orders = summarize(expression(text, 0.0, 1.0));
        for (const Summary& order : orders) {
            EXPECT_FALSE(order.guaranteed) << text;
            EXPECT_TRUE(std::isnan(order.least.y) && std::isnan(order.greatest.y)) << text;
        }
    }
}

// atan2(x,x) is -3/4 pi below 0 and pi/4 above, and its derivative is 0 everywhere.
TEST(Summarize, DoesNotProveAnAngleAtTheOrigin)
{
    for (const char* text : {"atan2(x,x)", "atan2(x,x)/mod(2.94,3.27)", "atan2(x,x-0)+sign(x,x-1)"}) {
        const Curve curve = expression(text, -1.0, 2.0);
        const Summary value = summarize(curve)[0];
        EXPECT_FALSE(value.guaranteed && curve(1e-6) > value.greatest.y + value.greatest.error) << text;
        EXPECT_FALSE(value.guaranteed && curve(-1e-6) < value.least.y - value.least.error) << text;
    }
}

TEST(Summarize, DoesNotProveNaNInside)
{
    for (const char* text : {"ln(x-1)", "(x-1)/(x-1)", "asin(x)", "acos(2*x)", "(x-1)^0.5", "log10(-1-x)",
                             "0*ln(x-1)", "atan(ln(x-1))", "if(x-1: 1/0, 0, x)", "mod(x, x-1)"}) {
        const auto summary = summarize(expression(text, 0.0, 2.0));
        EXPECT_FALSE(summary[0].guaranteed) << text;
    }
    // A branch that is never taken does not count.
    const auto never = summarize(expression("if(x+1: ln(-x-1), 0, x)", 0.0, 2.0));
    EXPECT_TRUE(never[0].guaranteed);
    expectPeak(never[0].greatest, 2.0, 2.0);
}

TEST(Summarize, DoesNotProvePoles)
{
    for (const char* text : {"1/(x-1)", "1/(x-1)^2", "1/sin(3*x-3)", "ln(abs(x-1))", "(x-1)^(-0.5)",
                             "tan(1.5*x)", "cosh(x)/(x^2-2)", "if(x-1: 1/(x-1), 0, 1/(x-1))"}) {
        const auto summary = summarize(expression(text, 0.0, 2.0));
        EXPECT_FALSE(summary[0].guaranteed) << text;
    }
    // The value is finite, but its slope is not.
    for (const char* text : {"cbrt(x-1)", "sqrt(abs(x-1))", "sqrt(x)", "asin(x-1)"}) {
        const auto summary = summarize(expression(text, 0.0, 2.0));
        EXPECT_FALSE(summary[1].guaranteed) << text;
    }
}

// The extremes of these polynomials and roots are at the ends of the range.
TEST(Summarize, ProvesNumbersOfAllSizes)
{
    struct Case {
        const char* text;
        double least, greatest;
    };
    for (const Case& c : {Case{"1e300*x", 0.0, 1e300}, Case{"1e300*x^3-1e300*x^3", 0.0, 0.0},
                          Case{"1e-300*x", 0.0, 1e-300}, Case{"1e300+x", 1e300, 1e300},
                          Case{"1e200*(1e100*x)", 0.0, 1e300}, Case{"x*1e-200*1e-100", 0.0, 1e-300}}) {
        const auto summary = summarize(expression(c.text, 0.0, 1.0));
        EXPECT_DOUBLE_EQ(summary[0].least.y, c.least) << c.text;
        EXPECT_DOUBLE_EQ(summary[0].greatest.y, c.greatest) << c.text;
        EXPECT_TRUE(summary[0].guaranteed) << c.text;
    }
    // Too large for a double: nothing is proved.
    for (const char* text : {"1e300*x*1e300", "exp(1000*x)", "(1e200*x)^2"})
        EXPECT_FALSE(summarize(expression(text, 0.5, 1.0))[0].guaranteed) << text;
}

// Zeros of the velocity of any multiplicity at the ends: x^n (1-x)^n has its peak in the middle.
TEST(Summarize, IsProvedWithMultipleRootsAtTheEnds)
{
    for (int n = 2; n <= 12; ++n) {
        const std::string power = std::to_string(n);
        const auto summary = summarize(expression("x^" + power + "*(1-x)^" + power, 0.0, 1.0));
        EXPECT_NEAR(summary[0].greatest.x, 0.5, 1e-7) << n;
        EXPECT_NEAR(summary[0].greatest.y * std::pow(4.0, n), 1.0, 1e-13) << n;
        EXPECT_NEAR(summary[0].least.y, 0.0, 1e-20) << n;
        EXPECT_TRUE(summary[0].guaranteed && summary[1].guaranteed) << n;
    }
}

TEST(Summarize, OfEqualBranchesIsThatOfOne)
{
    const auto one = summarize(expression("sin(x)", 0.0, 3.0));
    for (const char* text : {"if(x-1: sin(x), sin(x), sin(x))", "if(sin(9*x): sin(x), sin(x), sin(x))",
                             "max(sin(x), sin(x))", "if(x-1: sin(x), sin(1), sin(x))"}) {
        const auto both = summarize(expression(text, 0.0, 3.0));
        for (std::size_t k = 0; k < 4; ++k) {
            EXPECT_NEAR(both[k].greatest.y, one[k].greatest.y, 1e-15) << text;
            EXPECT_NEAR(both[k].least.y, one[k].least.y, 1e-15) << text;
            EXPECT_NEAR(both[k].rms, one[k].rms, 1e-13) << text;
            EXPECT_TRUE(both[k].impulses.empty()) << text;
            EXPECT_TRUE(both[k].guaranteed) << text;
        }
    }
}

// The conditions are 0 at one x alone, where they only touch 0 or pass through it.
TEST(Summarize, CountsAValueAtASingleX)
{
    for (const char* text :
         {"if(x^2: 1, 5, 2)", "if((x-0.5)^2: 1, 5, 2)", "if(x: 1, 5, 2)", "nint(4.5-x^2)"}) {
        const Summary value = summarize(expression(text, -1.0, 1.0))[0];
        EXPECT_EQ(value.greatest.y, 5.0) << text;
        EXPECT_EQ(expression(text, -1.0, 1.0)(value.greatest.x), 5.0) << text;
        EXPECT_TRUE(value.guaranteed) << text;
    }
    // No double is the square root of 2, but rounding might make the condition 0.
    const Peak missed = summarize(expression("if((x^2-2)^2: 1, 5, 2)", 0.0, 2.0))[0].greatest;
    EXPECT_GE(missed.y + missed.error, 5.0);
}

// The remainder is 0, but 7*x rounded to a double may be just below 7 times x.
TEST(Summarize, BoundsARemainderThatRoundingDecides)
{
    const Peak rounded = summarize(expression("mod(7*x, -x)", 1.0, 2.0))[0].greatest;
    EXPECT_GE(rounded.y + rounded.error, 2.0);
    expectPeak(summarize(expression("mod(7*x, 2)", 1.0, 2.0))[0].least, 8.0 / 7.0, 0.0);
}

// A triangle wave: 1/3 is the mean of its square.
TEST(Summarize, OfPointsIsInClosedForm)
{
    const Curve curve = points({0.0, 1.0, 2.0, 3.0}, {0.0, 1.0, 0.0, 1.0}, mf::Interpolation::Linear);
    const auto summary = summarize(curve);
    expectPeak(summary[0].greatest, 1.0, 1.0);
    expectPeak(summary[1].least, 1.0, -1.0);
    EXPECT_EQ(summary[2].impulses, (std::vector<double>{1.0, 2.0}));
    EXPECT_EQ(summary[2].greatest.y, 0.0);
    EXPECT_NEAR(summary[0].rms, std::sqrt(1.0 / 3.0), 1e-15);
    EXPECT_NEAR(summary[0].mean, 0.5, 1e-15);
    for (const Summary& order : summary)
        EXPECT_TRUE(order.guaranteed);
}

TEST(Summarize, CountsTheEndOfACycle)
{
    const Curve ramp = rows({{1.0, 1.0, "Linear"}});
    EXPECT_TRUE(summarize(ramp)[1].impulses.empty());
    const auto summary = summarize(ramp.with(mf::Outside::Repeat));
    ASSERT_EQ(summary[1].impulses.size(), 1u);
    EXPECT_EQ(summary[1].impulses[0], 1.0);
    EXPECT_TRUE(summary[2].impulses.empty());
}

// No value of a curve exceeds a peak that is guaranteed.
TEST(Summarize, BoundsEverySample)
{
    for (const Curve& curve :
         {cam(), expression("sin(7*x)*exp(-x)+abs(x-2)", 0.0, 5.0),
          expression("x/(1+x^4)-floor(x)", -2.0, 3.0),
          points({0.0, 1.0, 1.5, 4.0}, {0.0, 3.0, -1.0, 2.0}, mf::Interpolation::Akima)}) {
        const auto summary = summarize(curve);
        const double length = curve.lastX() - curve.firstX();
        for (int order = 0; order < 4; ++order) {
            const Summary& s = summary[static_cast<std::size_t>(order)];
            ASSERT_TRUE(s.guaranteed);
            for (int i = 0; i <= 10'000; ++i) {
                const double y = curve(curve.firstX() + length * i / 10'000.0, order);
                ASSERT_LE(y, s.greatest.y + s.greatest.error);
                ASSERT_GE(y, s.least.y - s.least.error);
            }
        }
    }
}

// The condition has no value at 0, and neither have the formula and its derivatives, although these are 0
// elsewhere.
TEST(Summarize, ProvesNoOrderWhereAConditionHasNoValue)
{
    for (const double from : {0.0, -2.0}) {
        for (const auto& order : summarize(expression("1.6*sign(x/x-2)", from, 2.0)))
            EXPECT_FALSE(order.guaranteed);
    }
}

}  // namespace
