// SPDX-License-Identifier: MIT

// Simplification costs no accuracy: the engine's error is at most twice that of
// evaluating the text as written, in doubles, operation by operation. The exact values
// and those of the plain evaluation are in plain_values.txt, which make_plain_values.py
// writes.

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <string>
#include <vector>

#include "tests/engine/compiled.h"
#include "tests/engine/value_table.h"

namespace engine_test {
namespace {

using TestedText = TabledText<3>;  // x, value in doubles, exact value less that

/// Errors over the points of one text.
class Errors {
public:
    void add(double error, double value)
    {
        largest_ = std::max(largest_, std::abs(error));
        sum_ += std::abs(error);
        relative_.push_back(std::abs(error / value));
    }
    double largest() const { return largest_; }
    double mean() const { return sum_ / static_cast<double>(relative_.size()); }
    double medianRelative() const
    {
        std::vector<double> sorted = relative_;
        std::ranges::nth_element(sorted, sorted.begin() + sorted.size() / 2);
        return sorted[sorted.size() / 2];
    }

private:
    double largest_ = 0.0;
    double sum_ = 0.0;
    std::vector<double> relative_;
};

class SimplificationAccuracy : public testing::TestWithParam<TestedText> {};

// At a single point a plain evaluation may be exact by luck. Therefore the largest and
// the mean error over the points of a text are compared, and the median of the relative
// errors. The largest relative error would again depend on a single point, the one next
// to a zero of the function.
TEST_P(SimplificationAccuracy, IsThatOfTheTextAsWritten)
{
    constexpr double kFactor = 2.0;
    const TestedText& tested = GetParam();
    const Calculator compiled = compile(tested.text);
    ASSERT_TRUE(compiled);
    Errors plain;
    Errors engine;
    for (const auto& [x, value, residual] : tested.rows) {
        const std::optional<double> got = evaluate(compiled, x);
        ASSERT_TRUE(got) << "at " << x;
        plain.add(residual, value);
        engine.add(value - *got + residual, value);  // the difference of two close doubles is exact
    }
    EXPECT_LE(engine.largest(), kFactor * plain.largest());
    EXPECT_LE(engine.mean(), kFactor * plain.mean());
    EXPECT_LE(engine.medianRelative(), kFactor * plain.medianRelative());
}

INSTANTIATE_TEST_SUITE_P(Engine, SimplificationAccuracy, testing::ValuesIn(readTable<3>("plain_values.txt")));

// Rows meet where their laws end: there the angle has exactly the bits of the text.
TEST(AngleOfALaw, KeepsItsBitsAtTheEndOfTheRow)
{
    constexpr double kPi = std::numbers::pi;
    for (int i = 1; i <= 2000; ++i) {
        const double x1 = std::round(1e6 * std::sin(i)) / 1e6;
        const double x2 = x1 + std::round(1e6 * (1.1 + std::cos(3 * i))) / 1e6;
        const std::string u =
            "((x-" + std::to_string(x1) + ")/(" + std::to_string(x2) + "-" + std::to_string(x1) + "))";
        const double end = std::stod(std::to_string(x2));
        EXPECT_EQ(evaluate(compile("cos(pi*" + u + "/2)"), end), std::cos(kPi / 2)) << u;
        EXPECT_EQ(evaluate(compile("sin(2*pi*" + u + ")"), end), std::sin(2 * kPi)) << u;
        EXPECT_EQ(evaluate(compile("sin(7*" + u + ")"), end), std::sin(7.0)) << u;
    }
}

}  // namespace
}  // namespace engine_test
