// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/path.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using mf::drawing::Line;
using mf::drawing::Point;

// The distance from p to the nearest stretch of a line.
double distanceTo(const Line& line, const Point& p)
{
    double nearest = 1e9;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const double dx = line[i].x - line[i - 1].x;
        const double dy = line[i].y - line[i - 1].y;
        const double along = ((p.x - line[i - 1].x) * dx + (p.y - line[i - 1].y) * dy) / (dx * dx + dy * dy);
        const double t = std::clamp(along, 0.0, 1.0);
        nearest = std::min(nearest, std::hypot(line[i - 1].x + t * dx - p.x, line[i - 1].y + t * dy - p.y));
    }
    return nearest;
}

TEST(Simplified, KeepsALineWithinATenthOfAPixel)
{
    Line line;
    for (int i = 0; i <= 800; ++i)
        line.push_back({static_cast<double>(i), 66.0 + 60.0 * std::sin(i / 40.0)});
    const Line simple = mf::drawing::simplified(line);
    EXPECT_LT(simple.size(), 250u);
    for (const Point& point : line)
        EXPECT_LE(distanceTo(simple, point), 0.1 + 1e-12);
}

TEST(Simplified, LeavesTheEndsOfAStraightLine)
{
    const Line line = mf::drawing::simplified({{0, 0}, {1, 1}, {2, 2}, {3, 3}});
    ASSERT_EQ(line.size(), 2u);
    EXPECT_EQ(line.back().x, 3.0);
}

TEST(Simplified, KeepsAJump)
{
    EXPECT_EQ(mf::drawing::simplified({{0, 0}, {1, 0}, {1, 5}, {2, 5}}).size(), 4u);
}

TEST(Thinned, KeepsTheLowestAndHighestPointOfEachColumn)
{
    Line line;
    for (int i = 0; i < 1000; ++i)
        line.push_back({i / 1000.0, static_cast<double>((i * 37) % 101)});
    const Line thin = mf::drawing::thinned(line, 0.0, 1.0, 10);
    ASSERT_EQ(thin.size(), 40u);
    for (int column = 0; column < 10; ++column) {
        const auto begin = line.begin() + 100 * column;
        const auto lower = [](const Point& a, const Point& b) { return a.y < b.y; };
        const auto [low, high] = std::minmax_element(begin, begin + 100, lower);
        const auto of = thin.begin() + 4 * column;
        EXPECT_EQ(std::min_element(of, of + 4, lower)->y, low->y);
        EXPECT_EQ(std::max_element(of, of + 4, lower)->y, high->y);
    }
}

TEST(PathData, RoundsToHundredthsAndHasNoNegativeZero)
{
    EXPECT_EQ(mf::drawing::pathData({{0.001, -0.001}, {12.345678, 100.0}}), "M0 0L12.35 100");
}

}  // namespace
