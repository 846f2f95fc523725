// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/requirements.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/analysis/curves.h"

namespace {

using analysis_test::cam;
using analysis_test::expression;
using analysis_test::rows;
using mf::Curve;
using mf::Range;
using mf::analysis::areAllViolationsFound;
using mf::analysis::fastest;
using mf::analysis::Limits;
using mf::analysis::Move;
using mf::analysis::Requirements;
using mf::analysis::Violation;
using mf::analysis::violations;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Requirements limits(double velocity, double acceleration = kInfinity, double jerk = kInfinity)
{
    Requirements required;
    required.limits = {velocity, acceleration, jerk};
    return required;
}

// 3-4-5 polynomial: largest velocity 15/8, acceleration 10/sqrt(3), jerk 60; Norton, Cam
// Design and Manufacturing Handbook.
Curve move()
{
    return rows({{2.0, 10.0, "3-4-5-Polynomial"}});
}

Curve ramp()
{
    return rows({{1.0, 10.0, "Linear"}, {2.0, 10.0, "Linear"}});
}

Curve driving(mf::Quantity quantity)
{
    mf::CurveDefinition definition = move().definition();
    definition.quantity = quantity;
    return Curve(definition);
}

TEST(Violations, OfACurveThatKeepsItsLimitsAreEmpty)
{
    EXPECT_TRUE(violations(move(), limits(9.375000001, 14.434, 75.001)).empty());
    EXPECT_TRUE(violations(move(), {}).empty());
}

// 30 u^2 (1 - u)^2 * 10 / 2 = 9 where u (1 - u) = sqrt(0.06).
TEST(Violations, OfAVelocityIsTheStretchAboveIt)
{
    const auto found = violations(move(), limits(9.0));

    ASSERT_EQ(found.size(), 1u);
    const double half = std::sqrt(0.25 - std::sqrt(0.06));
    EXPECT_EQ(found[0].order, 1);
    EXPECT_EQ(found[0].limit, 9.0);
    EXPECT_NEAR(found[0].where.from, 1.0 - 2.0 * half, 1e-12);
    EXPECT_NEAR(found[0].where.to, 1.0 + 2.0 * half, 1e-12);
    ASSERT_TRUE(found[0].worst.has_value());
    EXPECT_NEAR(found[0].worst->y, 9.375, 1e-12);
    EXPECT_NEAR(found[0].worst->x, 1.0, 1e-7);
}

TEST(Violations, OfAMagnitudeCountBelowZeroAsWell)
{
    const auto found = violations(move(), limits(kInfinity, 14.0));

    ASSERT_EQ(found.size(), 2u);
    EXPECT_GT(found[0].worst->y, 14.0);
    EXPECT_LT(found[1].worst->y, -14.0);
    EXPECT_EQ(found[1].limit, 14.0);
}

struct QuantityCase {
    const char* name;
    mf::Quantity quantity;
    int velocity;  // the order that a limit of the velocity applies to; -1 for no order
    int jerk;
};

const QuantityCase kQuantityCases[] = {
    {"Displacement", mf::Quantity::Displacement, 1, 3},
    {"Velocity", mf::Quantity::Velocity, 0, 2},
    {"Acceleration", mf::Quantity::Acceleration, -1, 1},
    {"Force", mf::Quantity::Force, 1, 3},
};

void PrintTo(const QuantityCase& c, std::ostream* os)
{
    *os << c.name;
}

class LimitedOrder : public testing::TestWithParam<QuantityCase> {};

TEST_P(LimitedOrder, FollowsFromWhatTheValuesAre)
{
    const Curve curve = driving(GetParam().quantity);
    const auto orderOf = [](const std::vector<Violation>& found) {
        return found.empty() ? -1 : found.front().order;
    };
    EXPECT_EQ(orderOf(violations(curve, limits(1e-3))), GetParam().velocity);
    EXPECT_EQ(orderOf(violations(curve, limits(kInfinity, kInfinity, 1e-3))), GetParam().jerk);
}

INSTANTIATE_TEST_SUITE_P(Violations, LimitedOrder, testing::ValuesIn(kQuantityCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(Violations, OfAnImpulseHaveNoLengthAndNoWorstValue)
{
    const auto found = violations(ramp(), limits(kInfinity, 1e300));

    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].where.from, 1.0);
    EXPECT_EQ(found[0].where.to, 1.0);
    EXPECT_FALSE(found[0].worst.has_value());
    EXPECT_EQ(found[0].limit, 1e300);
}

TEST(Violations, OfTheRangeOfValuesNameTheLimitThatIsBroken)
{
    Requirements required;
    required.values = mf::Range{-9.0, 9.0};
    const auto found = violations(expression("10*sin(x)", 0.0, 6.0), required);

    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].limit, -9.0);
    EXPECT_NEAR(found[0].worst->y, -10.0, 1e-13);
    EXPECT_EQ(found[1].limit, 9.0);
    EXPECT_NEAR(found[1].worst->y, 10.0, 1e-13);
}

TEST(Violations, OfContinuityNameTheOrderThatJumps)
{
    Requirements required;
    required.continuity = 0;
    EXPECT_TRUE(violations(ramp(), required).empty());
    required.continuity = 1;
    const auto found = violations(ramp(), required);

    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].order, 1);
    EXPECT_EQ(found[0].where.from, 1.0);
    EXPECT_EQ(found[0].where.to, 1.0);
    EXPECT_FALSE(found[0].limit.has_value());
    EXPECT_FALSE(found[0].worst.has_value());
}

TEST(Violations, OfACycleAloneAreJumpsOfTheValueAtItsEnd)
{
    Requirements required;
    required.isCyclic = true;
    EXPECT_TRUE(violations(cam(), required).empty());
    const auto found = violations(ramp(), required);

    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].order, 0);
    EXPECT_EQ(found[0].where.from, 2.0);
}

TEST(Violations, OfACyclesContinuityAreThoseInsideAndAtItsEnd)
{
    Requirements required;
    required.isCyclic = true;
    required.continuity = 1;
    const auto found = violations(ramp(), required);

    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].where.from, 1.0);
    EXPECT_EQ(found[1].where.from, 2.0);
}

Move moveBy(const std::vector<Move>& moves, const std::string& profile)
{
    for (const Move& one : moves) {
        if (one.profile == profile)
            return one;
    }
    return {"", kInfinity, Move::Limit::Velocity};
}

// Of 1/x the value is not bounded at 0. Of x^1.5 the value and the slope are, and the second derivative
// is not.
TEST(Violations, AreAllFoundWhereTheirOrdersAreProved)
{
    Requirements values;
    values.values = Range{-5.0, 5.0};
    EXPECT_TRUE(areAllViolationsFound(move(), values));
    EXPECT_TRUE(areAllViolationsFound(move(), limits(1.0, 1.0, 1.0)));
    EXPECT_FALSE(areAllViolationsFound(expression("1/x", -1.0, 1.0), values));
    EXPECT_FALSE(areAllViolationsFound(expression("1/x", -1.0, 1.0), limits(1.0)));
    EXPECT_TRUE(areAllViolationsFound(expression("1/x", -1.0, 1.0), {}));

    const Curve bent = expression("x^1.5", 0.0, 1.0);
    Requirements smooth;
    smooth.continuity = 1;
    EXPECT_TRUE(areAllViolationsFound(bent, smooth));
    smooth.continuity = 2;
    EXPECT_FALSE(areAllViolationsFound(bent, smooth));
}

TEST(Fastest, TakesTheTimeOfTheFactorsAndNamesTheLimit)
{
    const auto byVelocity = moveBy(fastest(0.2, {1.0, kInfinity, kInfinity}), "3-4-5-Polynomial");
    EXPECT_NEAR(byVelocity.duration, 15.0 / 8.0 * 0.2, 1e-13);
    EXPECT_EQ(byVelocity.limitedBy, Move::Limit::Velocity);

    const auto byAll = moveBy(fastest(-0.2, {1000.0, 10.0, 1e9}), "3-4-5-Polynomial");
    EXPECT_NEAR(byAll.duration, std::sqrt(10.0 / std::sqrt(3.0) * 0.2 / 10.0), 1e-13);
    EXPECT_EQ(byAll.limitedBy, Move::Limit::Acceleration);

    const auto byJerk = moveBy(fastest(0.2, {kInfinity, kInfinity, 1.0}), "3-4-5-Polynomial");
    EXPECT_NEAR(byJerk.duration, std::cbrt(60.0 * 0.2), 1e-12);
    EXPECT_EQ(byJerk.limitedBy, Move::Limit::Jerk);
}

TEST(Fastest, SortsByDurationAndNamesEachLawOnce)
{
    const auto moves = fastest(1.0, {1.0, 1.0, kInfinity});

    ASSERT_GT(moves.size(), 10u);
    for (std::size_t i = 1; i < moves.size(); ++i) {
        EXPECT_LE(moves[i - 1].duration, moves[i].duration);
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NE(moves[i].profile, moves[j].profile);
    }
}

TEST(Fastest, LeavesOutLawsThatDoNotRestAtTheirEnds)
{
    EXPECT_EQ(moveBy(fastest(1.0, {1.0, kInfinity, kInfinity}), "Linear").profile, "");
    EXPECT_EQ(moveBy(fastest(1.0, {1.0, kInfinity, kInfinity}), "Quarter-Sine").profile, "");
    EXPECT_EQ(moveBy(fastest(1.0, {1.0, kInfinity, kInfinity}), "Cubic").profile, "Cubic");
    // Its acceleration jumps at both ends.
    EXPECT_EQ(moveBy(fastest(1.0, {1.0, kInfinity, 1.0}), "Cubic").profile, "");
}

// It rests at its ends, and its velocity jumps from 3/2 to 1 and back.
TEST(Fastest, LeavesOutALawWhoseVelocityJumpsInside)
{
    const std::string text =
        "SegmentType(\"Broken\", x, x1, y1, x2, y2)\n"
        "z = (x-x1)/(x2-x1);\n"
        "y = y1+(y2-y1)*if(z-1/4: 6*z^2, 3/8, if(z-3/4: 1/4+z/2, 5/8, 1-6*(1-z)^2));\n"
        "return y;\nendSegmentType\n";
    EXPECT_TRUE(fastest(1.0, {1.0, kInfinity, kInfinity}, {{"Broken", "test", text}}).empty());
}

TEST(Fastest, IsEmptyWithoutALimitOrAStroke)
{
    EXPECT_TRUE(fastest(1.0, {}).empty());
    EXPECT_TRUE(fastest(0.0, {1.0, 1.0, 1.0}).empty());
}

TEST(Violations, OfAValueAtASingleXHaveThatValue)
{
    Requirements required;
    required.values = Range{-1.0, 2.0};
    const auto found = violations(expression("if(x: 0, 5, 0)", -1.0, 1.0), required);
    ASSERT_EQ(found.size(), 1u);
    ASSERT_TRUE(found[0].worst.has_value());
    EXPECT_EQ(found[0].worst->x, 0.0);
    EXPECT_EQ(found[0].worst->y, 5.0);
}

// The condition is a fifth power, so that rounding decides it, and with it whether the value is 5, in a range
// of some thousandths.
TEST(Violations, MayHideInTheErrorOfAPeak)
{
    Requirements required;
    required.values = Range{-1.0, 2.0};
    const char* const text = "if(x^5-1.5*x^4+0.9*x^3-0.27*x^2+0.0405*x-0.00243: 0, 5, 1)";
    EXPECT_FALSE(areAllViolationsFound(expression(text, 0.0, 1.0), required));
    required.values = Range{-1.0, 6.0};
    EXPECT_TRUE(areAllViolationsFound(expression(text, 0.0, 1.0), required));
}

TEST(Violations, OfACycleNeedAValueAtItsEnds)
{
    Requirements required;
    required.isCyclic = true;
    EXPECT_FALSE(areAllViolationsFound(expression("1/(x*(1-x))", 0.0, 1.0), required));
    EXPECT_TRUE(areAllViolationsFound(move(), required));
}

// The peaks of both are proved, but the search for the limits finds only some of the 2,500 ranges of one.
TEST(Violations, AreNotAllFoundWhereTheSearchGivesUp)
{
    Requirements required;
    required.values = Range{-0.99999, 0.99999};
    EXPECT_TRUE(areAllViolationsFound(expression("sin(20*x)", 0.0, 4.0), required));
    EXPECT_FALSE(areAllViolationsFound(expression("sin(2000*x)", 0.0, 4.0), required));
    required.values = Range{-1.5, 1.5};
    EXPECT_TRUE(areAllViolationsFound(expression("sin(2000*x)", 0.0, 4.0), required));
}

TEST(MotionOrder, FollowsFromWhatTheValuesAre)
{
    using mf::Quantity;
    using mf::analysis::motionOrder;
    EXPECT_EQ(motionOrder(Quantity::Displacement, 1), 1);
    EXPECT_EQ(motionOrder(Quantity::Velocity, 1), 0);
    EXPECT_EQ(motionOrder(Quantity::Velocity, 3), 2);
    EXPECT_EQ(motionOrder(Quantity::Acceleration, 1), std::nullopt);
    EXPECT_EQ(motionOrder(Quantity::Acceleration, 2), 0);
    EXPECT_EQ(motionOrder(Quantity::Force, 1), std::nullopt);
    EXPECT_EQ(motionOrder(Quantity::Torque, 3), std::nullopt);
    EXPECT_EQ(motionOrder(Quantity::Displacement, 0), std::nullopt);
    EXPECT_EQ(motionOrder(Quantity::Displacement, 4), std::nullopt);
}

}  // namespace
