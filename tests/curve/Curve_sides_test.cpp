// SPDX-License-Identifier: MIT

// Plain, Left and Right, and the four rules beyond the ends, at every seam, knot and end and
// one double to both sides of it.

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/segments/mfFunctionSegments.h"
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

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr Side kSides[] = {Side::Plain, Side::Left, Side::Right};
constexpr const char* kSideNames[] = {"plain", "left", "right"};

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

// --- Rows ------------------------------------------------------------------------------

// The values that a curve of rows has to have, from the formulas of the rows and the documented
// rules.
class Oracle {
public:
    explicit Oracle(const CurveDefinition& definition) : given_(definition)
    {
        const mf::SegmentShape& shape = curve_test::segmentsOf(definition);
        double start = shape.startX;
        for (std::size_t i = 0; i < shape.rows.size(); ++i) {
            if (shape.rows[i].endX > start)
                rows_.push_back({start, shape.rows[i].endX, static_cast<int>(i) + 1});
            start = shape.rows[i].endX;
        }
    }

    double first() const { return rows_.front().start; }
    double last() const { return rows_.back().end; }

    Values at(double x, Side side, Outside outside)
    {
        if (std::isnan(x))
            return kNoValues;
        for (const Row& row : rows_) {
            const bool begins = row.start < x || (row.start == x && side != Side::Left);
            const bool isPlainEnd = side == Side::Plain && x == last();
            const bool ends = x < row.end || (x == row.end && (side == Side::Left || isPlainEnd));
            if (begins && ends)
                return formula(row.number, x);
        }
        const bool isBelow = x <= first();
        switch (outside) {
            case Outside::Extend:
                return formula(isBelow ? rows_.front().number : rows_.back().number, x);
            case Outside::Hold: {
                const Values end = at(isBelow ? first() : last(), Side::Plain, outside);
                return {end[0], 0.0, 0.0, 0.0};
            }
            case Outside::Undefined:
                return kNoValues;
            case Outside::Repeat:
                return repeated(x, side);
        }
        return kNoValues;
    }

private:
    struct Row {
        double start;
        double end;
        int number;
    };

    // For x whose whole periods are exact.
    Values repeated(double x, Side side)
    {
        if (std::isinf(x))
            return kNoValues;
        const double period = last() - first();
        const double turns = std::floor((x - first()) / period);
        const double inside = x - turns * period;
        if (inside == first() && side == Side::Left)
            return formula(rows_.back().number, last());
        return at(inside, side, Outside::Undefined);
    }

    // Values that are not finite are 0.0 in the table.
    Values formula(int row, double x)
    {
        auto& table = static_cast<mfFunctionSegments_c&>(*given_.function().getFunctionSegments());
        Values values{};
        table.calculateValue(row, x, values[0], values[1], values[2], values[3], 3);
        return values;
    }

    GivenCurve given_;
    std::vector<Row> rows_;
};

class Sides : public testing::Test {
protected:
    Sides() { QelSession_c::setMotionFunctionContext(&host_); }

    static void check(const Curve& curve, Oracle& oracle, Outside outside, double x)
    {
        for (const Side side : kSides) {
            SCOPED_TRACE(testing::Message() << kSideNames[static_cast<int>(side)] << " at " << x
                                            << ", outside " << static_cast<int>(outside));
            expectSame(curve.with(outside).at(x, side), oracle.at(x, side, outside));
        }
    }

    mf::host::Context host_;
};

TEST_F(Sides, OfRowsFollowTheRulesAtEverySeam)
{
    RandomCurves random(11);
    for (int i = 0; i < 3400; ++i) {
        const CurveDefinition definition = random.segments();
        const Curve curve(definition);
        Oracle oracle(definition);
        for (const double seam : curve_test::seamsOf(definition)) {
            for (const double x : {seam, std::nextafter(seam, kInfinity), std::nextafter(seam, -kInfinity)}) {
                for (const Outside outside : {Outside::Extend, Outside::Hold, Outside::Undefined})
                    check(curve, oracle, outside, x);
                if (x >= curve.firstX() && x < curve.lastX())
                    check(curve, oracle, Outside::Repeat, x);
            }
        }
        for (const Outside outside : {Outside::Extend, Outside::Hold, Outside::Undefined}) {
            check(curve, oracle, outside, curve.firstX() - 7.25);
            check(curve, oracle, outside, curve.lastX() + 7.25);
        }
        if (HasFailure())
            return;
    }
}

// Two rows with a jump between them, from -2 to 6.
CurveDefinition jumpingRows()
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{
        -2.0, 1.0, {{2.0, 5.0, "Cubic"}, {2.0, 8.0, "Linear"}, {6.0, 3.0, "3-4-5-Polynomial"}}, {}, true};
    return definition;
}

TEST_F(Sides, OfRepeatedRowsFollowTheRulesInEveryPeriod)
{
    const Curve curve(jumpingRows());
    Oracle oracle(jumpingRows());
    for (int turn = -3; turn <= 3; ++turn) {
        for (const double inside : {-2.0, -1.5, 0.0, 2.0, 3.25, 5.9375})
            check(curve, oracle, Outside::Repeat, inside + 8.0 * turn);
    }
    for (const double x : {kInfinity, -kInfinity, kNaN})
        check(curve, oracle, Outside::Repeat, x);
}

TEST_F(Sides, AtTheEndOfAPeriodAreEndAndStart)
{
    const Curve curve = Curve(jumpingRows()).with(Outside::Repeat);
    EXPECT_EQ(curve.at(6.0, Side::Left).y, 3.0);
    EXPECT_EQ(curve.at(6.0, Side::Right).y, 1.0);
    EXPECT_EQ(curve.at(6.0).y, 3.0);
    EXPECT_EQ(curve.at(-2.0, Side::Left).y, 3.0);
    EXPECT_EQ(curve.at(-2.0, Side::Right).y, 1.0);
    EXPECT_EQ(curve.at(-2.0).y, 1.0);
    EXPECT_EQ(curve.at(14.0, Side::Left).y, 3.0);
    EXPECT_EQ(curve.at(14.0, Side::Right).y, 1.0);
    EXPECT_EQ(curve.at(14.0).y, 1.0);
    EXPECT_EQ(curve.at(-10.0, Side::Left).y, 3.0);
    EXPECT_EQ(curve.at(-10.0).y, 1.0);
}

TEST_F(Sides, OfARowOfNoLengthAreTheRowsBesideIt)
{
    const Curve curve(jumpingRows());
    EXPECT_EQ(curve.at(2.0, Side::Left).y, 5.0);
    EXPECT_EQ(curve.at(2.0, Side::Right).y, 8.0);
    EXPECT_EQ(curve.at(2.0).y, 8.0);
}

// Close to an end, the rest after whole periods rounds to the end itself, which is still inside.
TEST_F(Sides, RoundedPlacesOfAPeriodStayInside)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{0.1, 0.0, {{0.4, 1.0, "Linear"}}, {}, false};
    const Curve curve = Curve(definition).with(Outside::Repeat);
    for (int turn = -1000; turn <= 1000; ++turn) {
        const double x = 0.1 + 0.3 * turn;
        for (const Side side : kSides) {
            const double y = curve.at(x, side).y;
            EXPECT_TRUE(y >= -1e-12 && y <= 1.0 + 1e-12) << x;
        }
    }
}

TEST_F(Sides, BeyondTheEndsOfAnInfiniteXHaveAValueWhereTheRuleHasOne)
{
    const Curve curve(jumpingRows());
    expectSame(curve.with(Outside::Hold).at(kInfinity), {3.0, 0.0, 0.0, 0.0});
    expectSame(curve.with(Outside::Hold).at(-kInfinity), {1.0, 0.0, 0.0, 0.0});
    for (const Outside outside : {Outside::Repeat, Outside::Undefined}) {
        expectSame(curve.with(outside).at(kInfinity), kNoValues);
        expectSame(curve.with(outside).at(-kInfinity), kNoValues);
    }
    // The first row is a cubic, whose third derivative is the same everywhere.
    expectSame(curve.at(-kInfinity), {kNaN, kNaN, kNaN, -12.0 * 4.0 / 64.0});
}

TEST_F(Sides, OrdersOutside0To3AndNaNHaveNoValue)
{
    CurveDefinition constant;
    constant.shape = CurveDefinition::Expression{"5", 0.0, 1.0};
    CurveDefinition points;
    points.shape = CurveDefinition::Points{{0.0, 1.0}, {2.0, 2.0}, mf::Interpolation::Linear};
    for (const CurveDefinition& definition : {jumpingRows(), constant, points}) {
        for (const Outside outside : {Outside::Extend, Outside::Hold, Outside::Repeat, Outside::Undefined}) {
            const Curve curve = Curve(definition).with(outside);
            for (const int order : {-1, 4, 100, std::numeric_limits<int>::min()})
                EXPECT_TRUE(std::isnan(curve(0.5, order))) << order;
            for (const Side side : kSides)
                expectSame(curve.at(kNaN, side), kNoValues);
        }
    }
}

// --- Points ----------------------------------------------------------------------------

TEST_F(Sides, OfLinesAreTheirChords)
{
    CurveDefinition definition;
    definition.shape =
        CurveDefinition::Points{{0.0, 2.0, 3.0, 7.0}, {1.0, 5.0, 4.0, 12.0}, mf::Interpolation::Linear};
    const Curve curve(definition);
    expectSame(curve.at(2.0, Side::Left), {5.0, 2.0, 0.0, 0.0});
    expectSame(curve.at(2.0, Side::Right), {5.0, -1.0, 0.0, 0.0});
    expectSame(curve.at(2.0), {5.0, -1.0, 0.0, 0.0});
    expectSame(curve.at(7.0), {12.0, 2.0, 0.0, 0.0});
    expectSame(curve.at(7.0, Side::Left), {12.0, 2.0, 0.0, 0.0});
    expectSame(curve.at(7.0, Side::Right), {12.0, 2.0, 0.0, 0.0});
    expectSame(curve.with(Outside::Hold).at(7.0, Side::Right), {12.0, 0.0, 0.0, 0.0});
    expectSame(curve.with(Outside::Hold).at(0.0, Side::Left), {1.0, 0.0, 0.0, 0.0});
    expectSame(curve.with(Outside::Undefined).at(7.0, Side::Right), kNoValues);
    expectSame(curve.with(Outside::Undefined).at(7.0), {12.0, 2.0, 0.0, 0.0});
    expectSame(curve.with(Outside::Repeat).at(7.0, Side::Right), {1.0, 2.0, 0.0, 0.0});
    expectSame(curve.with(Outside::Repeat).at(0.0, Side::Left), {12.0, 2.0, 0.0, 0.0});
    expectSame(curve.with(Outside::Repeat).at(9.0), {5.0, -1.0, 0.0, 0.0});
    expectSame(curve.at(-1.0), {-1.0, 2.0, 0.0, 0.0});
    expectSame(curve.at(9.0), {16.0, 2.0, 0.0, 0.0});
}

// The natural cubic through (0, 0), (1, 1), (2, 0) is 3/2 t - t^3/2 up to 1, and its mirror
// image: the third derivative is -3 and then 3; de Boor, A Practical Guide to Splines, IV.
TEST_F(Sides, OfACubicDifferInItsThirdDerivative)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Points{{0.0, 1.0, 2.0}, {0.0, 1.0, 0.0}, mf::Interpolation::Cubic};
    const Curve curve(definition);
    expectSame(curve.at(1.0, Side::Left), {1.0, 0.0, -3.0, -3.0});
    expectSame(curve.at(1.0, Side::Right), {1.0, 0.0, -3.0, 3.0});
    expectSame(curve.at(1.0), {1.0, 0.0, -3.0, 3.0});
    // Beyond the ends the tangent continues.
    expectSame(curve.at(0.0, Side::Left), {0.0, 1.5, 0.0, 0.0});
    expectSame(curve.at(0.0, Side::Right), {0.0, 1.5, 0.0, -3.0});
    expectSame(curve.at(2.0, Side::Left), {0.0, -1.5, 0.0, 3.0});
    expectSame(curve.at(2.0, Side::Right), {0.0, -1.5, 0.0, 0.0});
    expectSame(curve.at(-2.0), {-3.0, 1.5, 0.0, 0.0});
}

TEST_F(Sides, OfASinglePointAreAConstant)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Points{{3.0}, {7.0}, mf::Interpolation::Akima};
    const Curve curve(definition);
    for (const Outside outside : {Outside::Extend, Outside::Hold, Outside::Repeat}) {
        for (const Side side : kSides) {
            for (const double x : {3.0, 2.0, 4.0, 1e300})
                expectSame(curve.with(outside).at(x, side), {7.0, 0.0, 0.0, 0.0});
        }
    }
    expectSame(curve.with(Outside::Undefined).at(2.0), kNoValues);
    expectSame(curve.with(Outside::Undefined).at(3.0), {7.0, 0.0, 0.0, 0.0});
}

// --- Branches of formulas -----------------------------------------------------------------

struct Branches {
    const char* name;
    const char* text;
    double x;
    Values left;
    Values plain;
    Values right;
};

void PrintTo(const Branches& tested, std::ostream* os)
{
    *os << tested.text << " at " << tested.x;
}

// From the definitions of the functions (docs/expressions.md).
const Branches kBranches[] = {
    {"Abs", "abs(x)", 0.0, {0, -1, 0, 0}, {0, 0, 0, 0}, {0, 1, 0, 0}},
    {"AbsOfAShiftedX", "abs(x-2)", 2.0, {0, -1, 0, 0}, {0, 0, 0, 0}, {0, 1, 0, 0}},
    {"AbsOfAFallingArgument", "3*abs(4-2*x)", 2.0, {0, -6, 0, 0}, {0, 0, 0, 0}, {0, 6, 0, 0}},
    {"Sign", "5*sign(x)", 0.0, {-5, 0, 0, 0}, {0, 0, 0, 0}, {5, 0, 0, 0}},
    {"SignOfTwo", "sign(2*x+3, x)", 0.0, {-3, -2, 0, 0}, {3, 2, 0, 0}, {3, 2, 0, 0}},
    {"If", "if(x-1: x, 7, x^2)", 1.0, {1, 1, 0, 0}, {7, 0, 0, 0}, {1, 2, 2, 0}},
    {"IfOfACube", "if((x-1)^3: 0, 1, 2)", 1.0, {0, 0, 0, 0}, {1, 0, 0, 0}, {2, 0, 0, 0}},
    // A square is 0 there and positive on both sides.
    {"IfOfASquare", "if((x-1)^2: 0, 1, 2)", 1.0, {2, 0, 0, 0}, {1, 0, 0, 0}, {2, 0, 0, 0}},
    {"Min", "min(x, 2*x)", 0.0, {0, 2, 0, 0}, {0, 1, 0, 0}, {0, 1, 0, 0}},
    {"Max", "max(x^2, x^3)", 1.0, {1, 2, 2, 0}, {1, 2, 2, 0}, {1, 3, 6, 6}},
    {"Dim", "dim(x, 3)", 3.0, {0, 0, 0, 0}, {0, 1, 0, 0}, {0, 1, 0, 0}},
    {"Floor", "floor(x)", 2.0, {1, 0, 0, 0}, {2, 0, 0, 0}, {2, 0, 0, 0}},
    {"FloorOfAFallingArgument", "floor(-x)", 2.0, {-2, 0, 0, 0}, {-2, 0, 0, 0}, {-3, 0, 0, 0}},
    {"Ceil", "ceil(x)", 2.0, {2, 0, 0, 0}, {2, 0, 0, 0}, {3, 0, 0, 0}},
    {"Int", "int(x)", -2.0, {-2, 0, 0, 0}, {-2, 0, 0, 0}, {-1, 0, 0, 0}},
    {"Nint", "nint(x)", 2.5, {2, 0, 0, 0}, {3, 0, 0, 0}, {3, 0, 0, 0}},
    {"Mod", "mod(x, 3)", 6.0, {3, 1, 0, 0}, {0, 1, 0, 0}, {0, 1, 0, 0}},
    {"ModOfANegativeX", "x % 3", -6.0, {0, 1, 0, 0}, {0, 1, 0, 0}, {-3, 1, 0, 0}},
    {"Step5Start", "step5(x, 1, 0, 3, 8)", 1.0, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 60}},
    {"StepStart", "step(x, 1, 0, 3, 8)", 1.0, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 12, -12}},
    {"StepEnd", "step(x, 1, 0, 3, 8)", 3.0, {8, 0, -12, -12}, {8, 0, 0, 0}, {8, 0, 0, 0}},
    {"FloorInsideIf", "if(floor(x)-1: 10, 20, 30)", 1.0, {10, 0, 0, 0}, {20, 0, 0, 0}, {20, 0, 0, 0}},
    {"JumpOfAJump", "floor(x)*floor(x)", 3.0, {4, 0, 0, 0}, {9, 0, 0, 0}, {9, 0, 0, 0}},
    // Without a branch at x the sides do not differ.
    {"Smooth", "x^2", 1.0, {1, 2, 2, 0}, {1, 2, 2, 0}, {1, 2, 2, 0}},
    {"OneDoubleAfterAKink",
     "abs(x-1)",
     1.0 + 0x1p-52,
     {0x1p-52, 1, 0, 0},
     {0x1p-52, 1, 0, 0},
     {0x1p-52, 1, 0, 0}},
    // The condition is 0 everywhere, so neither side decides.
    {"EqualEverywhere", "if(x-x: 1, 2, 3)", 1.0, {2, 0, 0, 0}, {2, 0, 0, 0}, {2, 0, 0, 0}},
};

class BranchSides : public testing::TestWithParam<Branches> {};

TEST_P(BranchSides, AreTheBranchesBesideX)
{
    const Branches& tested = GetParam();
    CurveDefinition definition;
    definition.shape = CurveDefinition::Expression{tested.text, -10.0, 10.0};
    const Curve curve(definition);
    expectSame(curve.at(tested.x, Side::Left), tested.left);
    expectSame(curve.at(tested.x), tested.plain);
    expectSame(curve.at(tested.x, Side::Right), tested.right);
}

INSTANTIATE_TEST_SUITE_P(Curve, BranchSides, testing::ValuesIn(kBranches),
                         [](const auto& tested) { return tested.param.name; });

TEST(BranchSidesOfARow, AreThoseOfItsLaw)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{
        0.0, 0.0, {{4.0, 8.0, "Two-Parabolas"}}, {curve_test::kTwoParabolas}, false};
    const Curve curve(definition);
    // The acceleration is 4 strokes divided by the length squared, then the same with a minus.
    expectSame(curve.at(2.0, Side::Left), {4.0, 4.0, 2.0, 0.0});
    expectSame(curve.at(2.0, Side::Right), {4.0, 4.0, -2.0, 0.0});
    expectSame(curve.at(2.0), {4.0, 0.0, 0.0, 0.0});
}

}  // namespace
