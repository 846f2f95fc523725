// SPDX-License-Identifier: MIT

// Arrays have the bits of single calls, whatever the order of x.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <span>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "tests/curve/randomCurves.h"

namespace {

using curve_test::RandomCurves;
using mf::Curve;
using mf::CurveDefinition;
using mf::CurveValues;
using mf::Outside;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr Outside kRules[] = {Outside::Extend, Outside::Hold, Outside::Repeat, Outside::Undefined};

// All NaN have the same result.
std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(std::isnan(value) ? kNaN : value);
}

void expectSingleCalls(const Curve& curve, const std::vector<double>& x)
{
    std::vector<CurveValues> values(x.size());
    curve.evaluate(x.data(), x.size(), values.data());
    for (int order = -1; order <= 4; ++order) {
        std::vector<double> y(x.size());
        curve.evaluate(x.data(), x.size(), order, y.data());
        for (std::size_t i = 0; i < x.size(); ++i) {
            ASSERT_EQ(bits(y[i]), bits(curve(x[i], order))) << "order " << order << " at " << x[i];
            ASSERT_EQ(bits(values[i][order]), bits(y[i])) << "order " << order << " at " << x[i];
        }
        std::vector<double> inPlace = x;
        curve.evaluate(inPlace.data(), x.size(), order, inPlace.data());
        for (std::size_t i = 0; i < x.size(); ++i)
            ASSERT_EQ(bits(inPlace[i]), bits(y[i])) << "order " << order << " at " << x[i];
    }
}

std::vector<double> places(RandomCurves& random, const Curve& curve, const CurveDefinition& definition)
{
    std::vector<double> x;
    const double margin = 0.2 * (curve.lastX() - curve.firstX()) + 1.0;
    const int count = random.whole(0, 300);
    for (int i = 0; i < count; ++i)
        x.push_back(random.uniform(curve.firstX() - margin, curve.lastX() + margin));
    for (const double seam : curve_test::seamsOf(definition)) {
        for (const double at : {seam, std::nextafter(seam, kInfinity), std::nextafter(seam, -kInfinity)})
            x.push_back(at);
    }
    x.insert(x.end(), {kInfinity, -kInfinity, 0.0, -0.0});
    if (random.whole(0, 2) != 0)
        std::sort(x.begin(), x.end());
    x.insert(x.begin() + random.whole(0, static_cast<int>(x.size())), kNaN);
    return x;
}

TEST(CurveArrays, HaveTheBitsOfSingleCalls)
{
    RandomCurves random(21);
    for (int i = 0; i < 400; ++i) {
        const CurveDefinition definition = random.any();
        const Curve curve(definition);
        SCOPED_TRACE(i);
        for (const Outside outside : kRules) {
            expectSingleCalls(curve.with(outside), places(random, curve, definition));
            if (HasFatalFailure())
                return;
        }
    }
}

// Many unsorted x, over few rows and over many, with some that no row computes.
TEST(CurveArrays, InNoOrderHaveTheBitsOfSingleCalls)
{
    RandomCurves random(24);
    const char* const laws[] = {"Linear", "3-4-5-Polynomial", "4-5-6-7-Polynomial", "Half-Cosine",
                                "Two-Parabolas"};
    for (const int rows : {1, 2, 4, 31, 32, 33, 100}) {
        CurveDefinition::Segments shape;
        shape.laws = {curve_test::kTwoParabolas};
        for (int i = 1; i <= rows; ++i)
            shape.rows.push_back(
                {i + 0.3 * std::sin(i), random.uniform(-50.0, 50.0), laws[random.whole(0, 4)]});
        CurveDefinition definition;
        definition.shape = shape;
        const Curve curve(definition);
        std::vector<double> x;
        for (int i = 0; i < 9'000; ++i)
            x.push_back(random.uniform(-0.1 * rows, 1.1 * rows));
        for (int i = 0; i < 9'000; i += 97)
            x[i] = i % 2 == 0 ? kNaN : i % 3 == 0 ? kInfinity : curve.lastX();
        SCOPED_TRACE(rows);
        for (const Outside outside : kRules) {
            expectSingleCalls(curve.with(outside), x);
            if (HasFatalFailure())
                return;
        }
    }
}

// More registers than a block may have, and more than are kept on the stack.
TEST(CurveArrays, OfLongExpressionsHaveTheBitsOfSingleCalls)
{
    for (const int terms : {40, 400, 4000}) {
        std::string text = "0";
        for (int i = 1; i <= terms; ++i)
            text += "+sin(" + std::to_string(i) + "*x)/(x^2+" + std::to_string(i) + ")";
        CurveDefinition definition;
        definition.shape = CurveDefinition::Expression{text, 0.0, 1.0};
        const Curve curve(definition);
        std::vector<double> x;
        for (int i = 0; i < 10; ++i)
            x.push_back(0.1 * i);
        expectSingleCalls(curve, x);
    }
}

TEST(CurveArrays, MayBeSpansAndEmpty)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Expression{"2*x", 0.0, 1.0};
    const Curve curve(definition);
    curve.evaluate(nullptr, 0, nullptr);
    curve.evaluate(nullptr, 0, 1, nullptr);
    const std::vector<double> x = {1.0, 2.0, 3.0};
    std::vector<double> y = {-1.0, -1.0};
    curve.evaluate(std::span(x), 0, std::span(y));
    EXPECT_EQ(y, (std::vector<double>{2.0, 4.0}));
    std::vector<CurveValues> values(2);
    curve.evaluate(std::span(x), std::span(values));
    EXPECT_EQ(values[1].y, 4.0);
    EXPECT_EQ(values[1].d1, 2.0);
}

// Equal definitions make curves with equal bits, whatever was made and evaluated in between.
TEST(EqualDefinitions, HaveEqualBits)
{
    RandomCurves one(22);
    RandomCurves other(22);
    for (int i = 0; i < 300; ++i) {
        const CurveDefinition definition = one.any();
        const CurveDefinition same = other.any();
        ASSERT_TRUE(definition == same);
        const Curve curve(definition);
        const Curve again(same);
        EXPECT_TRUE(curve == again);
        EXPECT_TRUE(Curve(curve.definition()) == curve);
        for (int k = 0; k < 20; ++k) {
            const double x = one.uniform(curve.firstX() - 1.0, curve.lastX() + 1.0);
            other.uniform(0.0, 1.0);
            for (int order = 0; order <= 3; ++order)
                ASSERT_EQ(bits(curve(x, order)), bits(again(x, order)));
        }
    }
}

TEST(EqualDefinitions, DifferByTheBitsOfTheirNumbers)
{
    CurveDefinition plain;
    plain.shape = CurveDefinition::Expression{"x", 0.0, 1.0};
    CurveDefinition negativeZero = plain;
    std::get<CurveDefinition::Expression>(negativeZero.shape).from = -0.0;
    EXPECT_TRUE(plain != negativeZero);
    EXPECT_TRUE(Curve(plain) != Curve(negativeZero));
    EXPECT_TRUE(Curve(plain) == Curve(plain).with(Outside::Hold));
}

// Numbers with all their digits: a row of micrometres in metres and radians.
TEST(ExactNumbers, EnterTheLawWithAllTheirDigits)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{
        0.0, 1e-7 / 3.0, {{1e-5 / 3.0, 5e-9 / 7.0, "Linear"}, {1e3 / 7.0, 1e-300, "Linear"}}, {}, false};
    const Curve curve(definition);
    EXPECT_DOUBLE_EQ(curve(0.0), 1e-7 / 3.0);
    EXPECT_NEAR(curve.at(1e-5 / 3.0, mf::Side::Left).y, 5e-9 / 7.0, 1e-22);
    EXPECT_DOUBLE_EQ(curve(1e-6, 1), (5e-9 / 7.0 - 1e-7 / 3.0) / (1e-5 / 3.0));
    EXPECT_NEAR(curve(1e3 / 7.0), 1e-300, 1e-24);

    CurveDefinition rounded = definition;
    std::get<CurveDefinition::Segments>(rounded.shape).sixDecimals = true;
    EXPECT_EQ(Curve(rounded)(1e-6), 0.0);
}

}  // namespace
