// SPDX-License-Identifier: MIT

// Compares random expressions with Taylor jets in extended precision.
//
// Tolerance: 1e-12, relative, wherever the problem is well-conditioned, that is
// where first-order error analysis of an evaluation in doubles (the size of a jet)
// allows an error of up to 100 units. Elsewhere the bound grows with the size,
// because no evaluation in doubles can do better: 1e-14 of the size is about a
// hundred rounding errors.

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <string>

#include "mfcurves/engine/functionTable.h"
#include "tests/engine/compiled.h"
#include "tests/engine/random_expression.h"

namespace engine_test {
namespace {

constexpr double kRelativeTolerance = 1e-12;
constexpr Real kWellConditioned = 100;
constexpr Real kFactorial[] = {1, 1, 2, 6};

class RandomExpressions : public testing::TestWithParam<unsigned> {
protected:
    void compare(const Tree& tree, const std::string& text, const Orders& compiled, double x)
    {
        const Jet expected = jet(tree, x);
        if (!expected.smooth)
            return;
        if (!expected.defined) {
            EXPECT_FALSE(compiled.at(x, 0)) << text << "\nat " << x << ": " << *compiled.at(x, 0);
            ++undefined_;
            return;
        }
        for (int order = 0; order < kOrders; ++order) {
            const Real value = kFactorial[order] * expected.value[order];
            const Real size = kFactorial[order] * expected.size[order];
            const std::optional<double> got = compiled.at(x, order);
            ASSERT_TRUE(got) << text << "\norder " << order << " at " << x;
            const Real tolerance = kRelativeTolerance * std::max(std::abs(value), size / kWellConditioned);
            EXPECT_LE(std::abs(*got - value), tolerance)
                << text << "\norder " << order << " at " << x << ": got " << *got << ", expected " << value
                << ", size " << size;
        }
        ++compared_;
        forEachFunction(tree, [this](const Function& function) { ++used_[function.name]; });
    }

    int compared_ = 0;
    int undefined_ = 0;
    std::map<std::string, int> used_;
};

TEST_P(RandomExpressions, AgreeWithTaylorJets)
{
    constexpr int kExpressions = 500;
    constexpr int kPoints = 4;
    Generator generator(GetParam());
    for (int i = 0; i < kExpressions && !HasFailure(); ++i) {
        const Tree tree = generator.tree(generator.whole(1, 4));
        const std::string text = generator.text(tree);
        const Orders compiled(text);
        ASSERT_TRUE(compiled) << text;
        for (int point = 0; point < kPoints; ++point)
            compare(tree, text, compiled, generator.uniform(-3.0, 3.0));
    }
    if (HasFailure())
        return;

    // Most points must have been compared, not skipped.
    EXPECT_GT(compared_, kExpressions * kPoints / 2);
    EXPECT_GT(undefined_, 10);
    for (const Function& function : functions())
        EXPECT_GT(used_[function.name], 10) << function.name;
}

TEST(RandomExpressionTable, HoldsEveryFunctionOfTheEngine)
{
    for (const mf::engine::Function& row : mf::engine::functions()) {
        const auto isRow = [&](const Function& function) { return function.name == row.name; };
        EXPECT_TRUE(row.name.empty() || std::ranges::any_of(functions(), isRow)) << row.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Engine, RandomExpressions, testing::Range(1u, 9u));

}  // namespace
}  // namespace engine_test
