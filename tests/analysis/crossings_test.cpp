// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <numbers>
#include <sstream>
#include <string>

#include "mfcurves/analysis/analysis.h"
#include "tests/analysis/curves.h"

namespace {

using analysis_test::cam;
using analysis_test::expression;
using analysis_test::points;
using analysis_test::rows;
using mf::Curve;
using mf::Range;
using mf::analysis::beyond;
using mf::analysis::crossings;
using mf::analysis::Peak;
using mf::analysis::stationaryPoints;

constexpr double kPi = std::numbers::pi;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void expectPlaces(const std::vector<double>& found, const std::vector<double>& expected)
{
    ASSERT_EQ(found.size(), expected.size()) << testing::PrintToString(found);
    for (std::size_t i = 0; i < found.size(); ++i)
        EXPECT_NEAR(found[i], expected[i], 4e-15 * std::max(1.0, std::fabs(expected[i])));
}

std::vector<double> xOf(const std::vector<Peak>& peaks)
{
    std::vector<double> x;
    for (const Peak& peak : peaks)
        x.push_back(peak.x);
    return x;
}

void expectRanges(const std::vector<Range>& found, const std::vector<Range>& expected)
{
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i].from, expected[i].from, 1e-13);
        EXPECT_NEAR(found[i].to, expected[i].to, 1e-13);
    }
}

TEST(StationaryPoints, OfASineAreItsExtremes)
{
    expectPlaces(xOf(stationaryPoints(expression("sin(x)", 0.0, 10.0), 0)), {kPi / 2, 1.5 * kPi, 2.5 * kPi});
    expectPlaces(xOf(stationaryPoints(expression("sin(x)", 0.0, 7.0), 1)), {0.0, kPi, 2 * kPi});
}

// Compared with 40 digits of mpmath (stationary.txt, make_stationary.py).
TEST(StationaryPoints, AreThoseOfMpmath)
{
    std::ifstream file(ANALYSIS_TEST_DATA "/stationary.txt");
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        SCOPED_TRACE(line.substr(0, 60));
        std::istringstream words(line);
        int order = 0;
        double from = 0.0, to = 0.0;
        std::string formula;
        words >> order >> from >> to >> formula;
        const std::vector<double> numbers(std::istream_iterator<double>(words), {});
        const std::vector<Peak> found = stationaryPoints(expression(formula, from, to), order);
        ASSERT_EQ(2 * found.size(), numbers.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            const double x = numbers[2 * i], y = numbers[2 * i + 1];
            constexpr double kRounding = 2e-13;  // of the derivative that is 0 there
            EXPECT_NEAR(found[i].x, x, kRounding * std::max(1.0, std::fabs(x)));
            EXPECT_NEAR(found[i].y, y, kRounding * std::max(1.0, std::fabs(y)));
        }
    }
    EXPECT_EQ(count, 21);
}

// A law starts and ends with multiple zeros of its velocity; each counts once.
TEST(StationaryPoints, CountMultipleZerosOnce)
{
    const Curve law = rows({{1.0, 1.0, "5-6-7-8-9-Polynomial"}});
    const std::vector<double> places = xOf(stationaryPoints(law, 0));
    ASSERT_EQ(places.size(), 2u);
    EXPECT_EQ(places[0], 0.0);
    EXPECT_EQ(places[1], 1.0);
    expectPlaces(xOf(stationaryPoints(rows({{1.0, 1.0, "3-4-5-Polynomial"}}), 1)), {0.0, 0.5, 1.0});
}

TEST(StationaryPoints, LeaveOutDwells)
{
    const std::vector<double> places = xOf(stationaryPoints(cam(), 0));
    expectPlaces(places, {0.0, 90.0, 150.0, 240.0});
    EXPECT_TRUE(stationaryPoints(rows({{1.0, 0.0, "Linear"}}), 0).empty());
    EXPECT_TRUE(stationaryPoints(expression("3", 0.0, 1.0), 0).empty());
}

TEST(StationaryPoints, OfPointsAreInClosedForm)
{
    // The first curve of splines.txt.
    const Curve curve = points({-1.0, 0.0, 1.0}, {0.0, 1.0, 0.0}, mf::Interpolation::Cubic);
    expectPlaces(xOf(stationaryPoints(curve, 0)), {0.0});
    expectPlaces(xOf(stationaryPoints(curve, 1)), {-1.0, 1.0});
    EXPECT_TRUE(stationaryPoints(curve, -1).empty());
    EXPECT_TRUE(stationaryPoints(curve, 4).empty());
}

// In the box from 0 to the top, the slope at the top is 0 except for rounding.
TEST(Crossings, AreFoundBesideATopInTheMiddleOfTheRange)
{
    expectPlaces(crossings(expression("sin(pi*x)", 0.0, 1.0), 0, 0.5), {1.0 / 6.0, 5.0 / 6.0});
    expectPlaces(crossings(expression("10*sin(2*pi*x)", 0.0, 1.0), 0, 5.0), {1.0 / 12.0, 5.0 / 12.0});
    expectPlaces(crossings(expression("10*sin(2*pi*x)", 0.0, 1.0), 0, -5.0), {7.0 / 12.0, 11.0 / 12.0});
}

TEST(Beyond, EndsBesideATopInTheMiddleOfTheRange)
{
    expectRanges(beyond(expression("sin(pi*x)", 0.0, 1.0), 0, -kInfinity, 0.5), {{1.0 / 6.0, 5.0 / 6.0}});
}

TEST(Crossings, AreWhereAnOrderTakesAValue)
{
    expectPlaces(crossings(expression("sin(x)", 0.0, 7.0), 0, 0.5),
                 {kPi / 6, 5 * kPi / 6, 2 * kPi + kPi / 6});
    expectPlaces(crossings(expression("x^2", -3.0, 3.0), 1, 4.0), {2.0});
    EXPECT_TRUE(crossings(expression("x^2", -3.0, 3.0), 0, -1.0).empty());
    EXPECT_TRUE(crossings(expression("x^2", -3.0, 3.0), 0, std::nan("")).empty());
}

TEST(Crossings, CountATouchOnce)
{
    const std::vector<double> touch = crossings(expression("(x-1)^2", 0.0, 3.0), 0, 0.0);
    ASSERT_EQ(touch.size(), 1u);
    EXPECT_NEAR(touch[0], 1.0, 1e-7);  // a double zero, to the root of the rounding
    const std::vector<double> sine = crossings(expression("sin(x)", 0.0, 3.0), 0, 1.0);
    ASSERT_EQ(sine.size(), 1u);
    EXPECT_NEAR(sine[0], kPi / 2, 1e-7);
}

TEST(Crossings, OfAStretchAreItsEnds)
{
    expectPlaces(crossings(cam(), 0, 25.0), {90.0, 150.0});
    expectPlaces(
        crossings(points({0.0, 1.0, 2.0, 3.0}, {0.0, 1.0, 1.0, 0.0}, mf::Interpolation::Linear), 0, 1.0),
        {1.0, 2.0});
}

TEST(Crossings, AreNotWhereAJumpPassesTheValue)
{
    EXPECT_TRUE(crossings(expression("if(x-1: 0, 3, 2)", 0.0, 2.0), 0, 1.0).empty());
    EXPECT_TRUE(crossings(expression("tan(x)", 1.0, 2.0), 0, 0.0).empty());
}

// Values of 1e17 beside the pole do not make values of 1 look like 0.
TEST(Crossings, AreFoundBesideAPole)
{
    // tan(x)^2 is 2 where tan(x) is sqrt(2).
    const double at = std::atan(std::numbers::sqrt2);
    expectPlaces(crossings(expression("tan(x)*tan(x)", 0.0, 3.0), 0, 2.0), {at, kPi - at});
    // The derivative of 1/(x^2 (x + 2)) is -(3x + 4)/(x^3 (x + 2)^2), which is -7/9 at 1.
    expectPlaces(crossings(expression("(x/x)/((x*x)*(x+2))", 0.5, 3.0), 1, -7.0 / 9.0), {1.0});
    expectPlaces(crossings(expression("(x/x)/((x*x)*(x+2))", -1.0, 3.0), 1, -7.0 / 9.0), {1.0});
}

TEST(Crossings, OfPointsAreExact)
{
    const Curve curve = points({0.0, 2.0, 4.0}, {0.0, 4.0, 0.0}, mf::Interpolation::Linear);
    expectPlaces(crossings(curve, 0, 1.0), {0.5, 3.5});
    expectPlaces(crossings(curve, 0, 4.0), {2.0});
}

TEST(Beyond, AreTheRangesWhereALimitIsBroken)
{
    expectRanges(beyond(expression("sin(x)", 0.0, 7.0), 0, -0.5, 0.5),
                 {{kPi / 6, 5 * kPi / 6}, {7 * kPi / 6, 11 * kPi / 6}, {2 * kPi + kPi / 6, 7.0}});
    EXPECT_TRUE(beyond(expression("sin(x)", 0.0, 7.0), 0, -1.0, 1.0).empty());  // strict
    expectRanges(beyond(expression("sin(x)", 0.0, 3.0), 0, -kInfinity, -1.0), {{0.0, 3.0}});
}

// A pole in the middle of the range that it breaks has no value there.
// The sine is above 0.99999 for an angle of 2 acos(0.99999) in each half turn.
TEST(Beyond, HasABudgetForEachLimit)
{
    const Curve curve = expression("sin(1000*x)", 0.0, 4.0);
    double total = 0.0;
    for (const Range& range : beyond(curve, 0, -0.99999, 0.99999))
        total += range.to - range.from;
    EXPECT_NEAR(total, 4.0 * 2.0 * std::acos(0.99999) / std::numbers::pi, 1e-4);
}

TEST(Crossings, SayWhetherTheyAreAll)
{
    using mf::analysis::areAllCrossingsFound;
    EXPECT_TRUE(areAllCrossingsFound(expression("sin(20*x)", 0.0, 4.0), 0, 0.5));
    EXPECT_FALSE(areAllCrossingsFound(expression("sin(2000*x)", 0.0, 4.0), 0, 0.99999)) << "too many";
    EXPECT_FALSE(areAllCrossingsFound(expression("1/x", -1.0, 1.0), 0, 0.5)) << "a pole";
    EXPECT_TRUE(areAllCrossingsFound(expression("sin(2000*x)", 0.0, 4.0), 0, 1.5)) << "never there";
}

// Most of the range is only sampled.
TEST(Beyond, ExaminesARangeNearOverflow)
{
    const std::vector<Range> found = beyond(expression("mod(x,3)*0.1+6", 0.0, 1.13e305), 0, 0.0, 5.0);
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.front().from, 0.0);
    EXPECT_EQ(found.back().to, 1.13e305);
}

TEST(Beyond, FindsBothSidesOfAPole)
{
    expectRanges(beyond(expression("1/x", -1.0, 1.0), 0, -5.0, 5.0), {{-0.2, 0.2}});
    expectRanges(beyond(expression("1/x", -1.0, 1.0), 0, -5.0, kInfinity), {{-0.2, 0.0}});
    expectRanges(beyond(expression("1/x", -1.0, 1.0), 0, -kInfinity, 5.0), {{0.0, 0.2}});
    expectRanges(beyond(expression("1/(x-0.3)", 0.0, 1.0), 0, -5.0, 5.0), {{0.1, 0.5}});
    expectRanges(beyond(expression("1/x", -1.0, 1.0), 1, -4.0, 4.0), {{-0.5, 0.5}});
    expectRanges(beyond(expression("tan(x)", 0.0, 3.0), 0, -1.0, 1.0), {{kPi / 4, 3 * kPi / 4}});
}

TEST(Beyond, FindsAValueAtASingleX)
{
    for (const char* text : {"if(x^2: 1, 5, 2)", "if(x: 1, 5, 2)", "nint(4.5-x^2)"}) {
        const Curve curve = expression(text, -1.0, 1.0);
        expectRanges(beyond(curve, 0, -kInfinity, 4.5), {{0.0, 0.0}});
        EXPECT_TRUE(beyond(curve, 0, -kInfinity, 5.0).empty()) << text;
    }
    EXPECT_TRUE(beyond(expression("abs((x-0.3)^2)", -1.0, 1.0), 0, 0.0, kInfinity).empty());
}

// log(x) has no value up to 0, and a slope above 4 up to 1/4.
TEST(Beyond, BeginsWhereADomainDoes)
{
    expectRanges(beyond(expression("log(x)", -1.0, 1.3), 1, -4.0, 4.0), {{0.0, 0.25}});
    expectRanges(beyond(expression("sqrt(x)", -1.0, 1.0), 0, -1.0, 0.5), {{0.25, 1.0}});
    EXPECT_TRUE(beyond(expression("sqrt(x)", -1.0, 1.0), 0, -0.1, 1.5).empty());
}

// Near 0 the swings are too narrow to be separated.
TEST(Beyond, IncludesSwingsThatCannotBeSeparated)
{
    const Curve swings = expression("sin(1/x)", -1.0, 1.0);
    const std::vector<Range> found = beyond(swings, 0, -0.5, 0.5);
    const auto isFound = [&](double x) {
        return std::any_of(found.begin(), found.end(),
                           [&](const Range& range) { return range.from <= x && x <= range.to; });
    };
    EXPECT_TRUE(isFound(2.0 / kPi));
    EXPECT_TRUE(isFound(-2.0 / kPi));
    EXPECT_TRUE(isFound(2.0 / (21.0 * kPi)));
    EXPECT_FALSE(isFound(1.0 / kPi));
}

TEST(Beyond, JoinsNeighbours)
{
    expectRanges(beyond(rows({{1.0, 1.0, "Linear"}, {2.0, 2.0, "Linear"}}), 0, 0.0, 0.5), {{0.5, 2.0}});
}

TEST(Beyond, AnImpulseBreaksEveryFiniteLimit)
{
    const Curve curve = rows({{1.0, 1.0, "Linear"}, {2.0, 0.0, "Linear"}});
    expectRanges(beyond(curve, 2, -1e9, 1e9), {{1.0, 1.0}});
    EXPECT_TRUE(beyond(curve, 2, -kInfinity, kInfinity).empty());
    EXPECT_TRUE(beyond(curve, 3, -1e9, 1e9).empty());
    EXPECT_TRUE(beyond(curve, 0, -1e9, 1e9).empty());
}

}  // namespace
