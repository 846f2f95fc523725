// SPDX-License-Identifier: MIT

// Compares curves through points with SciPy's piecewise polynomials (splines.txt, make_splines.py).

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "mfcurves/analysis/analysis.h"
#include "tests/analysis/curves.h"

namespace {

struct Order {
    double least, greatest, rms, mean;
};

struct Spline {
    mf::Interpolation kind;
    std::vector<double> x, y;
    std::vector<Order> orders;
    std::vector<std::vector<double>> stationary;  // by order, ascending

    mf::Curve curve() const { return analysis_test::points(x, y, kind); }
    std::string name() const { return std::to_string(x.size()) + " points"; }
};

std::vector<Spline> splines()
{
    std::ifstream file(ANALYSIS_TEST_DATA "/splines.txt");
    std::vector<Spline> found;
    std::string text;
    while (std::getline(file, text)) {
        std::istringstream line(text);
        std::string word;
        line >> word;
        if (word == "curve") {
            line >> word;
            found.push_back(
                {word == "cubic" ? mf::Interpolation::Cubic : mf::Interpolation::Akima, {}, {}, {}, {}});
        } else if (word == "point") {
            double x, y;
            line >> x >> y;
            found.back().x.push_back(x);
            found.back().y.push_back(y);
        } else if (word == "order") {
            int k;
            Order order;
            line >> k >> order.least >> order.greatest >> order.rms >> order.mean;
            found.back().orders.push_back(order);
        } else {
            int k;
            std::size_t count;
            line >> k >> count;
            std::vector<double> places(count);
            for (double& place : places)
                line >> place;
            found.back().stationary.push_back(places);
        }
        EXPECT_FALSE(line.fail()) << text;
    }
    return found;
}

TEST(Splines, PeaksRmsAndMeanAreThoseOfSciPy)
{
    const std::vector<Spline> all = splines();
    ASSERT_EQ(all.size(), 10u);
    for (const Spline& spline : all) {
        const auto summary = mf::analysis::summarize(spline.curve());
        ASSERT_EQ(spline.orders.size(), 4u);
        for (std::size_t k = 0; k < 4; ++k) {
            const Order& expected = spline.orders[k];
            // SciPy rounds its coefficients differently, and its squares of sums cancel.
            const double near =
                1e-11 * std::max({1.0, std::fabs(expected.least), std::fabs(expected.greatest)});
            EXPECT_NEAR(summary[k].least.y, expected.least, near) << spline.name() << " order " << k;
            EXPECT_NEAR(summary[k].greatest.y, expected.greatest, near) << spline.name() << " order " << k;
            EXPECT_NEAR(summary[k].rms, expected.rms, near) << spline.name() << " order " << k;
            EXPECT_NEAR(summary[k].mean, expected.mean, near) << spline.name() << " order " << k;
            EXPECT_TRUE(summary[k].guaranteed);
        }
    }
}

TEST(Splines, StationaryPointsAreThoseOfSciPy)
{
    for (const Spline& spline : splines()) {
        for (int order = 0; order < 2; ++order) {
            const auto found = mf::analysis::stationaryPoints(spline.curve(), order);
            const std::vector<double>& expected = spline.stationary[static_cast<std::size_t>(order)];
            ASSERT_EQ(found.size(), expected.size()) << spline.name() << " order " << order;
            for (std::size_t i = 0; i < found.size(); ++i)
                EXPECT_NEAR(found[i].x, expected[i], 1e-11) << spline.name() << " order " << order;
        }
    }
}

}  // namespace
