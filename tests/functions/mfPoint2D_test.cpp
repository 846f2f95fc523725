// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfPoint2D.h"

#include <cstring>
#include <gmock/gmock.h>
#include <limits>
#include <type_traits>

namespace {

void expectPoint(const mfPoint2D_c& point, double x, double y)
{
    EXPECT_EQ(point.x(), x);
    EXPECT_EQ(point.y(), y);
}

TEST(Point, StartsAtTheOrigin)
{
    expectPoint(mfPoint2D_c(), 0.0, 0.0);
    expectPoint(mfPoint2D_c(3.0, 4.0), 3.0, 4.0);
}

// Drawing code reads the arrays as pairs of numbers.
TEST(Point, IsTwoNumbersAndNothingElse)
{
    const mfPoint2D_c points[] = {{3.0, 4.0}, {5.0, 6.0}};
    double numbers[4];
    static_assert(sizeof points == sizeof numbers);
    std::memcpy(numbers, points, sizeof points);
    EXPECT_THAT(numbers, testing::ElementsAre(3.0, 4.0, 5.0, 6.0));
    EXPECT_FALSE(std::is_polymorphic_v<mfPoint2D_c>);
}

TEST(Point, IsCopiedByItsNumbers)
{
    const mfPoint2D_c p(3.0, 4.0);
    mfPoint2D_c q(p);
    expectPoint(q, 3.0, 4.0);
    q = mfPoint2D_c(5.0, 6.0);
    expectPoint(q, 5.0, 6.0);
    expectPoint(p, 3.0, 4.0);
}

TEST(Point, AddsSubtractsAndScales)
{
    const mfPoint2D_c p(3.0, 4.0);
    const mfPoint2D_c q(1.0, -2.0);
    expectPoint(p + q, 4.0, 2.0);
    expectPoint(p - q, 2.0, 6.0);
    expectPoint(q - p, -2.0, -6.0);
    expectPoint(p * 2.0, 6.0, 8.0);
    expectPoint(2.0 * p, 6.0, 8.0);
}

TEST(PointProducts, StarIsTheCrossProductAndPercentTheDotProduct)
{
    const mfPoint2D_c x(1.0, 0.0);
    const mfPoint2D_c y(0.0, 1.0);
    EXPECT_EQ(x * y, 1.0);
    EXPECT_EQ(y * x, -1.0);
    EXPECT_EQ(x % y, 0.0);
    EXPECT_EQ(y % x, 0.0);
    EXPECT_EQ(mfPoint2D_c(2.0, 3.0) * mfPoint2D_c(5.0, 7.0), 2.0 * 7.0 - 3.0 * 5.0);
    EXPECT_EQ(mfPoint2D_c(2.0, 3.0) % mfPoint2D_c(5.0, 7.0), 2.0 * 5.0 + 3.0 * 7.0);
}

TEST(PointLength, IsTheRootOfTheSumOfSquares)
{
    EXPECT_EQ(mfPoint2D_c(3.0, -4.0).length(), 5.0);
    EXPECT_EQ(mfPoint2D_c(3.0, -4.0).sqrLength(), 25.0);
    EXPECT_EQ(mfPoint2D_c().length(), 0.0);
    // The squares are not scaled, so they overflow.
    EXPECT_EQ(mfPoint2D_c(1e200, 0.0).length(), std::numeric_limits<double>::infinity());
}

}  // namespace
