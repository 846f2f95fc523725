// SPDX-License-Identifier: MIT

#include "mfcurves/host/Spline.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <vector>

#include "tests/host/SplineTest.h"
#include "tests/support/FakeHost.h"

namespace {

using namespace mf::test;
using mf::host::Spline;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// Closed forms

TEST(SplineAkima, SlopesOfThePaperOf1970)
{
    const std::vector<double> y = {10, 10, 10, 10, 10, 10, 10.5, 15, 50, 60, 85};
    const std::vector<double> slopes = {0,           0,           0,           0,          0,        0,
                                        35.0 / 62.0, 505.0 / 58., 1660. / 91., 155. / 8.0, 65. / 2.0};
    Spline spline;
    spline.setKind(kAkima);
    for (std::size_t i = 0; i < y.size(); ++i)
        spline.addPoint(static_cast<double>(i), y[i]);
    for (std::size_t i = 0; i < y.size(); ++i)
        EXPECT_NEAR(spline.getFirstDerivative(static_cast<double>(i)), slopes[i], 1e-12 * slopes[i]) << i;
}

// At even distances the chords added at the ends lie on the parabola through three
// points, which is then met everywhere: 1 + 2x + 3x^2.
TEST(SplineAkima, ThreeEvenPointsGiveTheirParabola)
{
    FilledSpline spline(kAkima, {-1.0, 0.0, 1.0}, {2.0, 1.0, 6.0});
    for (const double x : {-1.0, -0.25, 0.0, 0.5, 1.0}) {
        EXPECT_NEAR(spline.getValue(x), 1.0 + x * (2.0 + x * 3.0), 1e-14) << x;
        EXPECT_NEAR(spline.getFirstDerivative(x), 2.0 + 6.0 * x, 1e-14) << x;
        EXPECT_NEAR(spline.getSecondDerivative(x), 6.0, 1e-14) << x;
        EXPECT_NEAR(spline.getThirdDerivative(x), 0.0, 1e-14) << x;
    }
}

// Two chords of slope 1 before x = 2 and two of slope 5 after it: neither side bends, so
// both chords have the same weight.
TEST(SplineAkima, VanishingWeightsGiveTheMeanOfTheTwoChords)
{
    FilledSpline spline(kAkima, {0, 1, 2, 3, 4}, {0, 1, 2, 7, 12});
    EXPECT_EQ(spline.getFirstDerivative(2.0), 3.0);
    EXPECT_EQ(spline.getFirstDerivative(1.0), 1.0);
    EXPECT_EQ(spline.getFirstDerivative(3.0), 5.0);
}

// Weights vanish only when they are exactly 0: with the smallest bend after the point, the
// slope is that of the chord before it.
TEST(SplineAkima, TheLeastWeightCountsInFull)
{
    FilledSpline spline(kAkima, {0, 1, 2, 3, 4}, {0, 1, 2, 7, 12.000000000000002});
    EXPECT_EQ(spline.getFirstDerivative(2.0), 1.0);
}

TEST(SplineCubic, NaturalCubicThroughThreePoints)
{
    FilledSpline spline(kCubic, {0, 1, 2}, {0, 1, 0});
    EXPECT_DOUBLE_EQ(spline.getValue(0.5), 0.6875);
    EXPECT_DOUBLE_EQ(spline.getSecondDerivative(1.0), -3.0);
    EXPECT_EQ(spline.getSecondDerivative(0.0), 0.0);
    EXPECT_NEAR(spline.getSecondDerivative(2.0), 0.0, 1e-15);
    // x (3 - x^2) / 2 from 0 to 1, and its mirror image.
    EXPECT_THAT(ordersAt(spline, 0.5), testing::Pointwise(testing::DoubleEq(), {0.6875, 1.125, -1.5, -3.0}));
    EXPECT_THAT(ordersAt(spline, 1.5), testing::Pointwise(testing::DoubleEq(), {0.6875, -1.125, -1.5, 3.0}));
}

TEST(SplineCubic, ALineStaysALine)
{
    FilledSpline spline(kCubic, {0, 1, 3, 4}, {1, 3, 7, 9});
    EXPECT_THAT(ordersAt(spline, 2.5), ElementsAre(6.0, 2.0, 0.0, 0.0));
}

TEST(SplineLinear, ValuesLieOnTheChords)
{
    for (const int kind : {kLinear, kUnknown, -1}) {
        FilledSpline spline(kind, {0, 1, 3}, {0, 2, 1});
        EXPECT_THAT(ordersAt(spline, 0.5), ElementsAre(1.0, 2.0, 0.0, 0.0));
        EXPECT_THAT(ordersAt(spline, 1.0), ElementsAre(2.0, -0.5, 0.0, 0.0));  // the piece to its right
        EXPECT_THAT(ordersAt(spline, 3.0), ElementsAre(1.0, -0.5, 0.0, 0.0));  // the last piece
    }
}

// At points, outside, without points

TEST(Spline, UsesThePieceToTheRightOfAnInnerPoint)
{
    FilledSpline spline(kCubic, {0, 1, 2}, {0, 1, 0});
    EXPECT_DOUBLE_EQ(spline.getThirdDerivative(1.0), 3.0);
    EXPECT_DOUBLE_EQ(spline.getThirdDerivative(std::nextafter(1.0, 0.0)), -3.0);
}

TEST(Spline, UsesTheEndPiecesAtTheEndsAndTheirTangentsOutside)
{
    FilledSpline spline(kCubic, {0, 1, 2}, {0, 1, 0});
    EXPECT_THAT(ordersAt(spline, 2.0), ElementsAre(0.0, testing::DoubleEq(-1.5),
                                                   testing::DoubleNear(0.0, 1e-15), testing::DoubleEq(3.0)));
    const double above = std::nextafter(2.0, 3.0);
    EXPECT_EQ(spline.getThirdDerivative(above), 0.0);
    EXPECT_THAT(ordersAt(spline, 4.0),
                ElementsAre(testing::DoubleEq(-3.0), testing::DoubleEq(-1.5), 0.0, 0.0));

    EXPECT_DOUBLE_EQ(spline.getThirdDerivative(0.0), -3.0);
    EXPECT_EQ(spline.getThirdDerivative(-kSmallest), 0.0);
    EXPECT_THAT(ordersAt(spline, -4.0),
                ElementsAre(testing::DoubleEq(-6.0), testing::DoubleEq(1.5), 0.0, 0.0));
}

TEST(Spline, TangentsGoOnToInfinity)
{
    FilledSpline rising(kLinear, {0, 1}, {5, 7});
    EXPECT_THAT(ordersAt(rising, kInfinity), ElementsAre(kInfinity, 2.0, 0.0, 0.0));
    EXPECT_THAT(ordersAt(rising, -kInfinity), ElementsAre(-kInfinity, 2.0, 0.0, 0.0));
    EXPECT_THAT(ordersAt(rising, kLargest), ElementsAre(kInfinity, 2.0, 0.0, 0.0));
    FilledSpline level(kLinear, {-1e308, -0.9e308}, {5, 5});
    for (const double x : {kInfinity, -kInfinity, kLargest, -kLargest})
        EXPECT_THAT(ordersAt(level, x), ElementsAre(5.0, 0.0, 0.0, 0.0)) << x;
}

TEST(Spline, IsZeroWithoutPoints)
{
    for (const int kind : kKinds) {
        FilledSpline spline(kind, {}, {});
        for (const double x : {0.0, -5.0, 5.0, kLargest, -kLargest, kInfinity, -kInfinity})
            EXPECT_THAT(ordersAt(spline, x), ElementsAre(0.0, 0.0, 0.0, 0.0)) << x;
    }
}

TEST(Spline, OnePointIsAConstant)
{
    for (const int kind : kKinds) {
        FilledSpline spline(kind, {3}, {7});
        for (const double x : {3.0, -5.0, 5.0, kLargest, -kLargest, kInfinity, -kInfinity})
            EXPECT_THAT(ordersAt(spline, x), ElementsAre(7.0, 0.0, 0.0, 0.0)) << x;
    }
}

TEST(Spline, TwoPointsAreALineWhateverTheKind)
{
    for (const int kind : kKinds) {
        FilledSpline spline(kind, {1, 3}, {4, 8});
        for (const double x : {-6.0, 1.0, 2.5, 3.0, 9.0})
            EXPECT_THAT(ordersAt(spline, x), ElementsAre(2.0 + 2.0 * x, 2.0, 0.0, 0.0)) << x;
    }
}

TEST(Spline, IsNaNAtNaN)
{
    for (const int kind : kKinds) {
        for (const std::size_t count : {1u, 2u, 3u, 5u}) {
            FilledSpline spline(kind, {0, 1, 2, 3, 4}, {0, 1, 0, 2, 0});
            while (spline.getPointMap().size() > count) {
                const auto points = spline.getPointMap();
                spline.clearPoints();
                for (auto it = points.begin(); std::next(it) != points.end(); ++it)
                    spline.addPoint(it->first, it->second);
            }
            EXPECT_THAT(ordersAt(spline, kNaN), testing::Each(testing::IsNan())) << count;
            EXPECT_EQ(spline.getValue(0.0), 0.0);  // and the NaN leaves no trace
        }
    }
}

// Points

TEST(Spline, ANewOneIsLinear)
{
    Spline spline;
    EXPECT_EQ(spline.getKind(), 2);
    EXPECT_THAT(spline.getPointMap(), IsEmpty());
}

TEST(Spline, KindIsKeptAsSet)
{
    Spline spline;
    for (const int kind : {0, 1, 2, -1, 99}) {
        spline.setKind(kind);
        EXPECT_EQ(spline.getKind(), kind);
    }
}

TEST(Spline, PointsAreSortedByX)
{
    FilledSpline spline(kLinear, {3, 1, 2}, {9, 1, 4});
    EXPECT_THAT(spline.getPointMap(), ElementsAre(Pair(1, 1), Pair(2, 4), Pair(3, 9)));
    EXPECT_EQ(spline.getValue(2.5), 6.5);
}

TEST(Spline, ASecondPointAtOneXReplacesTheFirst)
{
    FilledSpline spline(kLinear, {1, 2, 1, 2, 0.0, -0.0}, {5, 6, 7, 8, 1, 2});
    EXPECT_THAT(spline.getPointMap(), ElementsAre(Pair(0, 2), Pair(1, 7), Pair(2, 8)));
}

TEST(Spline, PointsWithoutAFiniteXAreDropped)
{
    FilledSpline spline(kLinear, {1, kNaN, kInfinity, -kInfinity, 2}, {5, 6, 7, 8, 9});
    EXPECT_THAT(spline.getPointMap(), ElementsAre(Pair(1, 5), Pair(2, 9)));
}

TEST(Spline, AYThatIsNotFiniteSpoilsOnlyThePiecesBesideIt)
{
    FilledSpline spline(kLinear, {0, 1, 2, 3, 4}, {0, 1, kNaN, 3, 4});
    EXPECT_EQ(spline.getValue(0.5), 0.5);
    EXPECT_TRUE(std::isnan(spline.getValue(1.5)));
    EXPECT_TRUE(std::isnan(spline.getValue(2.5)));
    EXPECT_EQ(spline.getValue(3.5), 3.5);
}

TEST(Spline, EachChangeShowsAtTheNextEvaluation)
{
    FilledSpline spline(kLinear, {0, 2}, {0, 2});
    EXPECT_EQ(spline.getValue(1.0), 1.0);
    spline.addPoint(1.0, 5.0);
    EXPECT_EQ(spline.getValue(1.0), 5.0);
    EXPECT_EQ(spline.getSecondDerivative(1.0), 0.0);
    spline.setKind(kCubic);
    EXPECT_DOUBLE_EQ(spline.getSecondDerivative(1.0), -12.0);
    spline.clearPoints();
    EXPECT_EQ(spline.getValue(1.0), 0.0);
    EXPECT_EQ(spline.getKind(), kCubic);
    spline.addPoint(4.0, 6.0);
    EXPECT_EQ(spline.getValue(1.0), 6.0);
}

TEST(SplineCopy, TakesPointsAndKindThroughTheInterfaceAlone)
{
    mf::test::RecordingSpline source;
    source.points = {{1, 5}, {3, 9}};
    source.kind = kCubic;
    FilledSpline spline(kLinear, {7}, {7});
    EXPECT_EQ(spline.getValue(7.0), 7.0);
    spline.copyFrom(&source);
    EXPECT_THAT(source.calls, ElementsAre("getPointMap", "getKind"));
    EXPECT_THAT(spline.getPointMap(), ElementsAre(Pair(1, 5), Pair(3, 9)));
    EXPECT_EQ(spline.getKind(), kCubic);
    EXPECT_EQ(spline.getValue(7.0), 17.0);
}

TEST(SplineCopy, FromNothingOrItselfChangesNothing)
{
    FilledSpline spline(kAkima, {1, 3}, {5, 9});
    spline.copyFrom(nullptr);
    spline.copyFrom(&spline);
    EXPECT_THAT(spline.getPointMap(), ElementsAre(Pair(1, 5), Pair(3, 9)));
    EXPECT_EQ(spline.getKind(), kAkima);
}

TEST(Spline, PointsFurtherApartThanTheLargestDoubleHarmNoOtherPiece)
{
    FilledSpline spline(kLinear, {-kLargest, 0.5 * kLargest, kLargest}, {0, 1, 2});
    EXPECT_EQ(spline.getValue(-kLargest), 0.0);
    EXPECT_EQ(spline.getValue(0.75 * kLargest), 1.5);
    EXPECT_EQ(spline.getValue(kLargest), 2.0);
}

TEST(Spline, FirstOfTwoPointsFurtherApartThanTheLargestDoubleIsMetWhateverTheKind)
{
    for (const int kind : kKinds) {
        FilledSpline spline(kind, {-kLargest, kLargest}, {5, 7});
        EXPECT_EQ(spline.getValue(-kLargest), 5.0) << kind;
    }
}

TEST(Spline, ASlopeThatOverflowsGivesNoFiniteValue)
{
    for (const int kind : kKinds) {
        FilledSpline spline(kind, {0.0, kSmallest, 2.0 * kSmallest}, {0, 1, 3});
        EXPECT_FALSE(std::isfinite(spline.getValue(kSmallest))) << kind;
        EXPECT_FALSE(std::isfinite(spline.getFirstDerivative(kSmallest))) << kind;
    }
}

}  // namespace
