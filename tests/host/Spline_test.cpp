// SPDX-License-Identifier: MIT

#include "mfcurves/host/Spline.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <random>
#include <vector>

#include "tests/host/Spline_expected.h"
#include "tests/support/FakeHost.h"

namespace {

using mf::host::Spline;
using mf::test::SplineSample;
using mf::test::SplineTable;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

constexpr int kAkima = 0;
constexpr int kCubic = 1;
constexpr int kLinear = 2;
constexpr int kUnknown = 17;
constexpr int kKinds[] = {kAkima, kCubic, kLinear, kUnknown};

class FilledSpline : public Spline {
public:
    FilledSpline(int kind, const std::vector<double>& x, const std::vector<double>& y)
    {
        setKind(kind);
        for (std::size_t i = 0; i < x.size(); ++i)
            addPoint(x[i], y[i]);
    }
};

double derivative(Spline& spline, double x, int order)
{
    switch (order) {
        case 0:
            return spline.getValue(x);
        case 1:
            return spline.getFirstDerivative(x);
        case 2:
            return spline.getSecondDerivative(x);
        default:
            return spline.getThirdDerivative(x);
    }
}

std::vector<double> ordersAt(Spline& spline, double x)
{
    return {spline.getValue(x), spline.getFirstDerivative(x), spline.getSecondDerivative(x),
            spline.getThirdDerivative(x)};
}

// The largest magnitude of an order over the samples of a table; where all of them
// vanish, as far as that of the order below it comes over the whole range.
double scaleOf(const SplineTable& table, int order)
{
    double scale = order == 0 ? 0.0 : scaleOf(table, order - 1) / (table.x.back() - table.x.front());
    for (const SplineSample& sample : table.samples)
        scale = std::max(scale, std::abs(sample.orders[order]));
    return scale;
}

}  // namespace

namespace mf::test {
void PrintTo(const SplineTable& table, std::ostream* os)
{
    *os << table.name;
}
}  // namespace mf::test

namespace {

class SplineNumbers : public testing::TestWithParam<SplineTable> {};

// 1e-12 leaves some thousand roundings for the different order of operations.
TEST_P(SplineNumbers, AgreeWithSciPy)
{
    const SplineTable& table = GetParam();
    FilledSpline spline(table.kind, table.x, table.y);
    for (int order = 0; order <= 3; ++order) {
        const double tolerance = 1e-12 * scaleOf(table, order);
        for (const SplineSample& sample : table.samples)
            EXPECT_NEAR(derivative(spline, sample.x, order), sample.orders[order], tolerance)
                << "order " << order << " at " << sample.x;
    }
}

TEST_P(SplineNumbers, PiecesJoinAtEveryPointAndWithTheTangentsOutside)
{
    const SplineTable& table = GetParam();
    for (const int kind : {kAkima, kCubic, kLinear}) {
        FilledSpline spline(kind, table.x, table.y);
        const int smoothOrders = kind == kLinear ? 0 : kind == kAkima ? 1 : 2;
        for (std::size_t i = 0; i < table.x.size(); ++i) {
            const bool atEnd = i == 0 || i == table.x.size() - 1;
            // Akima's second derivative jumps to that of the tangent, and each
            // kind's first derivative goes on there.
            const int orders = !atEnd ? smoothOrders : kind == kCubic ? 2 : 1;
            const double below = std::nextafter(table.x[i], -kInfinity);
            const double above = std::nextafter(table.x[i], kInfinity);
            for (int order = 0; order <= orders; ++order) {
                // Over the step from one double to the next the order above it is
                // all that may show.
                const double tolerance =
                    1e-12 * scaleOf(table, order) + 2.0 * scaleOf(table, order + 1) * (above - below);
                const double here = derivative(spline, table.x[i], order);
                EXPECT_NEAR(derivative(spline, below, order), here, tolerance)
                    << "kind " << kind << ", order " << order << " below " << table.x[i];
                EXPECT_NEAR(derivative(spline, above, order), here, tolerance)
                    << "kind " << kind << ", order " << order << " above " << table.x[i];
            }
        }
    }
}

TEST_P(SplineNumbers, EveryPointIsMetExactly)
{
    const SplineTable& table = GetParam();
    for (const int kind : kKinds) {
        FilledSpline spline(kind, table.x, table.y);
        for (std::size_t i = 0; i < table.x.size(); ++i)
            EXPECT_EQ(spline.getValue(table.x[i]), table.y[i]) << "kind " << kind;
    }
}

TEST_P(SplineNumbers, AnswersDoNotDependOnWhatWasAskedBefore)
{
    const SplineTable& table = GetParam();
    FilledSpline kept(table.kind, table.x, table.y);
    std::vector<double> asked;
    for (const SplineSample& sample : table.samples)
        asked.insert(asked.end(), {sample.x, std::nextafter(sample.x, -kInfinity)});
    asked.insert(asked.end(), {kNaN, -kInfinity, kInfinity, -1e300, 1e300, -kLargest, kLargest});
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const double x = asked[random() % asked.size()];
        const int order = static_cast<int>(random() % 4);
        FilledSpline fresh(table.kind, table.x, table.y);
        const double expected = derivative(fresh, x, order);
        const double got = derivative(kept, x, order);
        ASSERT_TRUE(got == expected || (std::isnan(got) && std::isnan(expected)))
            << got << " and not " << expected << " for order " << order << " at " << x;
    }
}

INSTANTIATE_TEST_SUITE_P(Spline, SplineNumbers, testing::ValuesIn(mf::test::kSplineTables),
                         [](const auto& tested) { return tested.param.name; });

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

// Two chords of slope 1 ahead of x = 2 and two of slope 5 behind it: neither side
// bends, so neither chord outweighs the other.
TEST(SplineAkima, VanishingWeightsGiveTheMeanOfTheTwoChords)
{
    FilledSpline spline(kAkima, {0, 1, 2, 3, 4}, {0, 1, 2, 7, 12});
    EXPECT_EQ(spline.getFirstDerivative(2.0), 3.0);
    EXPECT_EQ(spline.getFirstDerivative(1.0), 1.0);
    EXPECT_EQ(spline.getFirstDerivative(3.0), 5.0);
}

// The weights vanish when they are exactly 0: the least bend behind the point turns
// the slope to the chord ahead of it.
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

TEST(SplineLinear, ChordsAnswer)
{
    for (const int kind : {kLinear, kUnknown, -1}) {
        FilledSpline spline(kind, {0, 1, 3}, {0, 2, 1});
        EXPECT_THAT(ordersAt(spline, 0.5), ElementsAre(1.0, 2.0, 0.0, 0.0));
        EXPECT_THAT(ordersAt(spline, 1.0), ElementsAre(2.0, -0.5, 0.0, 0.0));  // the piece to its right
        EXPECT_THAT(ordersAt(spline, 3.0), ElementsAre(1.0, -0.5, 0.0, 0.0));  // the last piece
    }
}

// At points, outside, without points

TEST(Spline, AtAnInnerPointThePieceToItsRightAnswers)
{
    FilledSpline spline(kCubic, {0, 1, 2}, {0, 1, 0});
    EXPECT_DOUBLE_EQ(spline.getThirdDerivative(1.0), 3.0);
    EXPECT_DOUBLE_EQ(spline.getThirdDerivative(std::nextafter(1.0, 0.0)), -3.0);
}

TEST(Spline, AtTheEndsTheEndPiecesAnswerAndOutsideTheirTangents)
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

TEST(Spline, WithoutPointsAnswersZero)
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

TEST(Spline, AskedAtNaNAnswersNaN)
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
            EXPECT_EQ(spline.getValue(0.0), 0.0);  // and is no worse for it
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

TEST(Spline, AYThatIsNotFiniteSpoilsThePiecesItBearsOn)
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

// The search

// The value at x of the line between its neighbours, found by looking at every point.
double chordAt(const std::map<double, double>& points, double x)
{
    if (x == points.rbegin()->first)
        return points.rbegin()->second;
    auto right = std::next(points.begin());
    while (right->first <= x)
        ++right;
    const auto left = std::prev(right);
    const double slope = (right->second - left->second) / (right->first - left->first);
    return left->second + (x - left->first) * slope;
}

struct Spread {
    const char* name;
    std::vector<double> x;
    double unitOfY = 1.0;
};

std::vector<double> generated(int count, double (*at)(int))
{
    std::vector<double> x;
    for (int i = 0; i < count; ++i)
        x.push_back(at(i));
    return x;
}

const Spread kSpreads[] = {
    {"Even", generated(200, [](int i) { return 0.1 * i - 7.0; })},
    {"Geometric", generated(200, [](int i) { return std::pow(10.0, 0.1 * i - 8.0); })},
    {"ClusterAtTheStart", generated(200, [](int i) { return i < 199 ? 1.0 + 1e-12 * i : 1e6; })},
    {"ClusterAtTheEnd", generated(200, [](int i) { return i > 0 ? 1.0 + 1e-12 * i : -1e6; })},
    {"ClusterInTheMiddle",
     generated(200, [](int i) { return i < 2     ? i - 2e6
                                       : i > 197 ? i + 2e6
                                                 : 1e-9 * i; })},
    {"NeighbouringDoubles", generated(200, [](int i) { return 1.0 + i * 0x1p-52; })},
    {"SmallestDoubles", generated(200, [](int i) { return i * kSmallest; }), kSmallest},
    {"OverTheWholeRange", generated(200, [](int i) { return (i - 100) * 0.0099 * kLargest; })},
    {"HalfTheRange", generated(200, [](int i) { return i * 0.0025 * kLargest; })},
};

class SplineSearch : public testing::TestWithParam<Spread> {};

// Y takes turns between 0, 1 and 5 units, so that no two pieces in a row lie on one
// line and the value tells which piece answered.
TEST_P(SplineSearch, FindsThePieceThatLookingAtEveryPointFinds)
{
    Spline spline;
    constexpr double kTurns[] = {0.0, 1.0, 5.0};
    int count = 0;
    for (const double x : GetParam().x)
        spline.addPoint(x, kTurns[count++ % 3] * GetParam().unitOfY);
    std::vector<double> asked;
    for (const double x : GetParam().x) {
        asked.insert(asked.end(), {x, std::nextafter(x, kInfinity), std::nextafter(x, -kInfinity)});
    }
    const auto& points = spline.getPointMap();
    for (auto it = points.begin(); std::next(it) != points.end(); ++it)
        asked.push_back(it->first * 0.5 + std::next(it)->first * 0.5);
    std::erase_if(asked, [&](double x) { return x < points.begin()->first || x > points.rbegin()->first; });
    std::mt19937 random(7);
    for (int round = 0; round < 3; ++round) {  // upwards, jumping about, downwards
        if (round == 0)
            std::sort(asked.begin(), asked.end());
        if (round == 1)
            std::shuffle(asked.begin(), asked.end(), random);
        if (round == 2)
            std::sort(asked.rbegin(), asked.rend());
        for (const double x : asked)
            ASSERT_EQ(spline.getValue(x), chordAt(points, x)) << "round " << round << ", x " << x;
    }
}

INSTANTIATE_TEST_SUITE_P(Spline, SplineSearch, testing::ValuesIn(kSpreads),
                         [](const auto& tested) { return tested.param.name; });

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
