// SPDX-License-Identifier: MIT

// Plain, Left and Right, and the four rules beyond the ends, of random curves through points and
// of random expressions: at every knot and end, one double to both sides of it, and further out.

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "tests/curve/givenCurve.h"
#include "tests/curve/randomCurves.h"

namespace {

using curve_test::GivenCurve;
using curve_test::RandomCurves;
using mf::Curve;
using mf::CurveDefinition;
using mf::CurveValues;
using mf::Outside;
using mf::Side;

constexpr int kCurvesOfEachKind = 3400;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using Values = std::array<double, 4>;
constexpr Values kNoValues = {kNaN, kNaN, kNaN, kNaN};

void expectSame(const CurveValues& values, const Values& expected)
{
    for (int order = 0; order <= 3; ++order) {
        if (std::isnan(expected[order]))
            EXPECT_TRUE(std::isnan(values[order])) << "order " << order << " is " << values[order];
        else
            EXPECT_EQ(values[order], expected[order]) << "order " << order;
    }
}

// The values of the motion function at x. Where the curve has no value, they are 0.0.
Values givenAt(GivenCurve& given, const Curve& curve, double x)
{
    const CurveValues values = curve.at(x);
    Values expected;
    for (int order = 0; order <= 3; ++order) {
        expected[order] = given.evaluate(x, order);
        if (expected[order] == 0.0 && std::isnan(values[order]))
            expected[order] = kNaN;
    }
    return expected;
}

// The plain values according to the documented rules. The motion function continues beyond its ends
// as the curve does with Extend.
Values byRule(GivenCurve& given, const Curve& curve, Outside outside, double x)
{
    const double first = curve.firstX();
    const double last = curve.lastX();
    if ((x >= first && x <= last) || outside == Outside::Extend)
        return givenAt(given, curve, x);
    if (outside == Outside::Undefined)
        return kNoValues;
    if (outside == Outside::Hold)
        return {givenAt(given, curve, x < first ? first : last)[0], 0.0, 0.0, 0.0};
    const double period = last - first;
    if (period == 0.0)
        return givenAt(given, curve, first);
    double rest = std::fmod(x - first, period);
    if (rest < 0.0)
        rest += period;
    return givenAt(given, curve, rest == period ? first : first + rest);
}

std::vector<double> placesOf(const CurveDefinition& definition)
{
    std::vector<double> places;
    for (const double x : curve_test::seamsOf(definition)) {
        places.insert(places.end(), {x, std::nextafter(x, kInfinity), std::nextafter(x, -kInfinity)});
    }
    places.insert(places.end(), {places.front() - 7.25, places[places.size() - 3] + 7.25});
    return places;
}

void expectRules(const CurveDefinition& definition)
{
    const Curve curve(definition);
    GivenCurve given(definition);
    for (const double x : placesOf(definition)) {
        for (const Outside outside : {Outside::Extend, Outside::Hold, Outside::Repeat, Outside::Undefined}) {
            SCOPED_TRACE(testing::Message() << "at " << x << ", outside " << static_cast<int>(outside));
            expectSame(curve.with(outside).at(x), byRule(given, curve, outside, x));
        }
    }
}

class RandomSides : public testing::Test {
protected:
    RandomSides() { QelSession_c::setMotionFunctionContext(&host_); }

    mf::host::Context host_;
};

TEST_F(RandomSides, PlainFollowsTheRulesOfPoints)
{
    RandomCurves random(21);
    for (int i = 0; i < kCurvesOfEachKind && !HasFailure(); ++i)
        expectRules(random.points());
}

TEST_F(RandomSides, PlainFollowsTheRulesOfExpressions)
{
    RandomCurves random(22);
    for (int i = 0; i < kCurvesOfEachKind && !HasFailure(); ++i)
        expectRules(random.expression());
}

// The polynomial through value and derivatives at `from`, at a distance from there.
Values taylor(const CurveValues& from, double t)
{
    return {from.y + t * (from.d1 + t * (from.d2 / 2.0 + t * from.d3 / 6.0)),
            from.d1 + t * (from.d2 + t * from.d3 / 2.0), from.d2 + t * from.d3, from.d3};
}

// A piece is one polynomial: its values at its end follow from those in its middle, except for the
// rounding of terms as large as the largest one.
TEST_F(RandomSides, OfAKnotAreThePiecesBesideIt)
{
    RandomCurves random(23);
    for (int i = 0; i < kCurvesOfEachKind && !HasFailure(); ++i) {
        const CurveDefinition definition = random.points();
        const Curve curve(definition);
        const std::vector<double> knots = curve_test::seamsOf(definition);
        for (std::size_t k = 1; k < knots.size(); ++k) {
            const double half = 0.5 * (knots[k] - knots[k - 1]);
            const CurveValues middle = curve.at(knots[k - 1] + half);
            const Values left = taylor(middle, knots[k] - (knots[k - 1] + half));
            const Values right = taylor(middle, knots[k - 1] - (knots[k - 1] + half));
            const double size =
                std::fabs(middle.y) +
                half * (std::fabs(middle.d1) + half * (std::fabs(middle.d2) + half * std::fabs(middle.d3))) +
                50.0;
            for (int order = 0; order <= 3; ++order) {
                const double tolerance = 1e-12 * size / std::pow(half, order);
                EXPECT_NEAR(curve.at(knots[k], Side::Left)[order], left[order], tolerance) << knots[k];
                EXPECT_NEAR(curve.at(knots[k - 1], Side::Right)[order], right[order], tolerance) << knots[k];
            }
            EXPECT_EQ(curve.at(knots[k], Side::Left).y, std::get<mf::PointShape>(definition.shape).y[k]);
        }
    }
}

bool mayJump(const std::string& text)
{
    std::string folded;
    for (const char c : text)
        folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    for (const char* name :
         {"abs", "sign", "min", "max", "mod", "%", "dim", "int", "floor", "ceil", "if", "step", "havsin"}) {
        if (folded.find(name) != std::string::npos)
            return true;
    }
    return false;
}

// The limits from both sides are the formula's own value.
TEST_F(RandomSides, OfAnExpressionWithoutBranchesAreItsValue)
{
    RandomCurves random(24);
    int smooth = 0;
    for (int i = 0; i < kCurvesOfEachKind && !HasFailure(); ++i) {
        const CurveDefinition definition = random.expression();
        const std::string& text = std::get<mf::ExpressionShape>(definition.shape).text;
        if (mayJump(text))
            continue;
        SCOPED_TRACE(text);
        ++smooth;
        const Curve curve(definition);
        for (const double x : placesOf(definition)) {
            const CurveValues plain = curve.at(x);
            expectSame(curve.at(x, Side::Left), {plain.y, plain.d1, plain.d2, plain.d3});
            expectSame(curve.at(x, Side::Right), {plain.y, plain.d1, plain.d2, plain.d3});
        }
    }
    EXPECT_GT(smooth, kCurvesOfEachKind / 10);
}

}  // namespace
