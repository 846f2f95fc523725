// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <ostream>
#include <random>
#include <vector>

#include "mfcurves/host/Spline.h"
#include "tests/host/SplineTest.h"
#include "tests/host/Spline_expected.h"

namespace {

using namespace mf::test;
using mf::host::Spline;

// The largest magnitude of an order over the samples of a table, and at least that of the
// order below divided by the range of x, so that it is not 0 when all samples are.
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
                // From one double to the next, an order changes only by the next
                // higher order times the step.
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

TEST_P(SplineNumbers, ResultsDoNotDependOnEarlierCalls)
{
    const SplineTable& table = GetParam();
    FilledSpline kept(table.kind, table.x, table.y);
    std::vector<double> inputs;
    for (const SplineSample& sample : table.samples)
        inputs.insert(inputs.end(), {sample.x, std::nextafter(sample.x, -kInfinity)});
    inputs.insert(inputs.end(), {kNaN, -kInfinity, kInfinity, -1e300, 1e300, -kLargest, kLargest});
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const double x = inputs[random() % inputs.size()];
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

// The search

// The value at x of the line between its neighbours, found by a search from point to point.
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
// line and the value shows which piece was used.
TEST_P(SplineSearch, FindsThePieceThatALinearSearchFinds)
{
    Spline spline;
    constexpr double kTurns[] = {0.0, 1.0, 5.0};
    int count = 0;
    for (const double x : GetParam().x)
        spline.addPoint(x, kTurns[count++ % 3] * GetParam().unitOfY);
    std::vector<double> inputs;
    for (const double x : GetParam().x) {
        inputs.insert(inputs.end(), {x, std::nextafter(x, kInfinity), std::nextafter(x, -kInfinity)});
    }
    const auto& points = spline.getPointMap();
    for (auto it = points.begin(); std::next(it) != points.end(); ++it)
        inputs.push_back(it->first * 0.5 + std::next(it)->first * 0.5);
    std::erase_if(inputs, [&](double x) { return x < points.begin()->first || x > points.rbegin()->first; });
    std::mt19937 random(7);
    for (int round = 0; round < 3; ++round) {  // upwards, jumping about, downwards
        if (round == 0)
            std::sort(inputs.begin(), inputs.end());
        if (round == 1)
            std::shuffle(inputs.begin(), inputs.end(), random);
        if (round == 2)
            std::sort(inputs.rbegin(), inputs.rend());
        for (const double x : inputs)
            ASSERT_EQ(spline.getValue(x), chordAt(points, x)) << "round " << round << ", x " << x;
    }
}

INSTANTIATE_TEST_SUITE_P(Spline, SplineSearch, testing::ValuesIn(kSpreads),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
