// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfDataPoints.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// A list in one line: its points and, in brackets, its range.
std::string show(const mfDataPoints_c& list)
{
    std::ostringstream text;
    for (int i = 0; i < list.getPointCount(); ++i)
        text << list.getX(i) << ':' << list.getY(i) << ' ';
    text << '[' << list.getStartX() << ',' << list.getEndX() << ']';
    return text.str();
}

// Points at these X, with Y of 0, 10, 20 and so on.
void fill(mfDataPoints_c& list, const std::vector<double>& xs)
{
    double y = 0.0;
    for (const double x : xs) {
        list.addPoint(x, y);
        y += 10.0;
    }
}

TEST(DataPointList, StartsEmpty)
{
    EXPECT_EQ(show(mfDataPoints_c()), "[0,0]");
}

TEST(DataPointList, HasNoVirtualOperations)
{
    EXPECT_FALSE(std::is_polymorphic_v<mfDataPoints_c>);
}

TEST(DataPointList, TakesOwnershipOfAPoint)
{
    EXPECT_EQ(show(mfDataPoints_c(new mfPoint2D_c(3.0, 4.0))), "3:4 [3,3]");
}

TEST(DataPointList, OfANullPointIsEmpty)
{
    EXPECT_EQ(show(mfDataPoints_c(nullptr)), "[0,0]");
}

TEST(AddPoint, NeverSorts)
{
    mfDataPoints_c list;
    list.addPoint(5.0, 0.0);
    EXPECT_EQ(show(list), "5:0 [5,5]");
    list.addPoint(1.0, 0.0);
    EXPECT_EQ(show(list), "5:0 1:0 [5,1]");
    EXPECT_EQ(list.getStartX(), 5.0);
    EXPECT_EQ(list.getEndX(), 1.0);
}

TEST(GetPoint, DoesNotChangeTheOutputsOutsideTheList)
{
    mfDataPoints_c list;
    fill(list, {1.0, 2.0});
    double x = -1.0;
    double y = -2.0;
    EXPECT_FALSE(list.getPoint(2, x, y));
    EXPECT_FALSE(list.getPoint(-1, x, y));
    EXPECT_EQ(x, -1.0);
    EXPECT_EQ(y, -2.0);
    EXPECT_TRUE(list.getPoint(1, x, y));
    EXPECT_EQ(x, 2.0);
    EXPECT_EQ(y, 10.0);
    EXPECT_FALSE(mfDataPoints_c().getPoint(0, x, y));
}

TEST(GetX, ReturnsZeroOutsideTheList)
{
    mfDataPoints_c list;
    fill(list, {1.0, 2.0});
    EXPECT_EQ(list.getX(1), 2.0);
    EXPECT_EQ(list.getY(1), 10.0);
    for (const int index : {-1, 2}) {
        EXPECT_EQ(list.getX(index), 0.0);
        EXPECT_EQ(list.getY(index), 0.0);
    }
}

TEST(GetRangeX, AlwaysWritesBoth)
{
    double start = -1.0;
    double end = -1.0;
    mfDataPoints_c().getRangeX(start, end);
    EXPECT_EQ(start, 0.0);
    EXPECT_EQ(end, 0.0);
    mfDataPoints_c list;
    fill(list, {1.0, 2.0});
    list.getRangeX(start, end);
    EXPECT_EQ(start, 1.0);
    EXPECT_EQ(end, 2.0);
}

struct MoveCase {
    const char* name;
    std::vector<double> before;
    int index;
    double x;
    bool moved;
    const char* after;  // of setX
};

const double kBelowTwo = std::nextafter(2.0, 0.0);
const double kAboveTwo = std::nextafter(2.0, 3.0);

const MoveCase kMoveCases[] = {
    {"FirstUpToTheSecond", {1, 2, 3}, 0, 2.0, true, "2:0 2:10 3:20 [2,3]"},
    {"FirstPastTheSecond", {1, 2, 3}, 0, 2.5, false, "1:0 2:10 3:20 [1,3]"},
    {"FirstJustPastTheSecond", {1, 2, 3}, 0, kAboveTwo, false, "1:0 2:10 3:20 [1,3]"},
    {"LastDownToTheOneBefore", {1, 2, 3}, 2, 2.0, true, "1:0 2:10 2:20 [1,2]"},
    {"LastPastTheOneBefore", {1, 2, 3}, 2, 1.5, false, "1:0 2:10 3:20 [1,3]"},
    {"LastJustPastTheOneBefore", {1, 2, 3}, 2, kBelowTwo, false, "1:0 2:10 3:20 [1,3]"},
    {"BetweenAnywhere", {1, 2, 3}, 1, 99.0, true, "1:0 99:10 3:20 [1,3]"},
    {"BetweenTakesNaN", {1, 2, 3}, 1, kNaN, true, "1:0 nan:10 3:20 [1,3]"},
    // A NaN is not greater than the neighbour, and not at or above it either.
    {"FirstTakesNaN", {1, 2, 3}, 0, kNaN, true, "nan:0 2:10 3:20 [nan,3]"},
    {"LastRefusesNaN", {1, 2, 3}, 2, kNaN, false, "1:0 2:10 3:20 [1,3]"},
    {"OnlyPointGoesAnywhere", {1}, 0, -7.0, true, "-7:0 [-7,-7]"},
    {"OnlyPointTakesNaN", {1}, 0, kNaN, true, "nan:0 [nan,nan]"},
    {"FirstOfTwo", {1, 2}, 0, 2.5, false, "1:0 2:10 [1,2]"},
    {"LastOfTwo", {1, 2}, 1, 1.0, true, "1:0 1:10 [1,1]"},
    {"IndexBelow", {1, 2}, -1, 1.0, false, "1:0 2:10 [1,2]"},
    {"IndexAbove", {1, 2}, 2, 9.0, false, "1:0 2:10 [1,2]"},
    {"NoPoint", {}, 0, 1.0, false, "[0,0]"},
};

void PrintTo(const MoveCase& c, std::ostream* os)
{
    *os << "point " << c.index << " to " << c.x;
}

class MovePoint : public testing::TestWithParam<MoveCase> {};

TEST_P(MovePoint, SetXMovesOrRefuses)
{
    const MoveCase& c = GetParam();
    mfDataPoints_c list;
    fill(list, c.before);
    EXPECT_EQ(list.setX(c.index, c.x), c.moved);
    EXPECT_EQ(show(list), c.after);
}

TEST_P(MovePoint, SetPointDoesTheSameAndSetsY)
{
    const MoveCase& c = GetParam();
    mfDataPoints_c list;
    fill(list, c.before);
    const std::string before = show(list);
    EXPECT_EQ(list.setPoint(c.index, c.x, 77.0), c.moved);
    if (c.moved) {
        EXPECT_EQ(list.getY(c.index), 77.0);
        EXPECT_TRUE(list.setY(c.index, 10.0 * c.index));
        EXPECT_EQ(show(list), c.after);
    } else {
        EXPECT_EQ(show(list), before);
    }
}

INSTANTIATE_TEST_SUITE_P(DataPoints, MovePoint, testing::ValuesIn(kMoveCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(SetY, LeavesTheRangeAsItWas)
{
    mfDataPoints_c list;
    fill(list, {1.0, 2.0});
    EXPECT_TRUE(list.setY(0, 5.0));
    EXPECT_TRUE(list.setY(1, kNaN));
    EXPECT_EQ(show(list), "1:5 2:nan [1,2]");
}

TEST(SetY, RefusesAnIndexOutsideTheList)
{
    mfDataPoints_c list;
    fill(list, {1.0, 2.0});
    EXPECT_FALSE(list.setY(-1, 5.0));
    EXPECT_FALSE(list.setY(2, 5.0));
    EXPECT_EQ(show(list), "1:0 2:10 [1,2]");
}

TEST(CopyDataPoints, MakesItsOwnPoints)
{
    mfDataPoints_c source;
    fill(source, {1.0, 2.0});
    mfDataPoints_c list;
    EXPECT_TRUE(list.copy(&source));
    source.setY(0, 99.0);
    EXPECT_EQ(show(list), "1:0 2:10 [1,2]");
}

TEST(CopyDataPoints, OfNullChangesNothing)
{
    mfDataPoints_c list;
    fill(list, {1.0, 2.0});
    EXPECT_FALSE(list.copy(nullptr));
    EXPECT_EQ(show(list), "1:0 2:10 [1,2]");
}

TEST(CopyDataPoints, OfAnEmptyListChangesNothing)
{
    mfDataPoints_c source;
    mfDataPoints_c list;
    EXPECT_TRUE(list.copy(&source));
    EXPECT_EQ(show(list), "[0,0]");
    fill(list, {1.0, 2.0});
    EXPECT_TRUE(list.copy(&source));
    EXPECT_EQ(show(list), "1:0 2:10 [1,2]");
}

// The end of the range is the X at the last index of the source. In a list that had
// points before, that is not the last point.
TEST(CopyDataPoints, IntoAListWithPointsAppends)
{
    mfDataPoints_c source;
    fill(source, {7.0, 8.0});
    mfDataPoints_c list;
    fill(list, {1.0, 2.0, 3.0});
    EXPECT_TRUE(list.copy(&source));
    EXPECT_EQ(show(list), "1:0 2:10 3:20 7:0 8:10 [1,2]");
}

TEST(CopyDataPoints, OfOnePointIntoAListWithPointsEndsTheRangeAtTheFirst)
{
    mfDataPoints_c source;
    fill(source, {7.0});
    mfDataPoints_c list;
    fill(list, {1.0, 2.0, 3.0});
    EXPECT_TRUE(list.copy(&source));
    EXPECT_EQ(show(list), "1:0 2:10 3:20 7:0 [1,1]");
}

TEST(CopyDataPoints, OfItselfAppendsItsPointsOnce)
{
    mfDataPoints_c list;
    fill(list, {1.0, 2.0});
    EXPECT_TRUE(list.copy(&list));
    EXPECT_EQ(show(list), "1:0 2:10 1:0 2:10 [1,2]");
}

// Two lists that share points must not both be destroyed, so the copy is emptied
// by assigning an empty list, which frees nothing.
TEST(ShallowCopyOfDataPoints, SharesThePoints)
{
    mfDataPoints_c source;
    fill(source, {1.0, 2.0});
    mfDataPoints_c copy(source);
    source.setY(0, 99.0);
    EXPECT_EQ(show(copy), "1:99 2:10 [1,2]");
    const mfDataPoints_c& same = copy;
    copy = same;
    EXPECT_EQ(show(copy), "1:99 2:10 [1,2]");
    copy = mfDataPoints_c();
    EXPECT_EQ(show(copy), "[0,0]");
    EXPECT_EQ(show(source), "1:99 2:10 [1,2]");
}

}  // namespace
