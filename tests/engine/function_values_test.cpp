// SPDX-License-Identifier: MIT

// Compares every function of the engine with values that SymPy and mpmath computed
// with 60 digits: function_values.txt, written by make_function_values.py.

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "mfcurves/engine/functionTable.h"
#include "tests/engine/compiled.h"
#include "tests/engine/value_table.h"

namespace engine_test {
namespace {

using TestedFunction = TabledText<5>;  // x, value, three derivatives

class FunctionValues : public testing::TestWithParam<TestedFunction> {};

// The points are well-conditioned and not near kinks. 1e-12 allows the engine thousands
// of rounding errors, and no wrong formula.
constexpr double kRelativeTolerance = 1e-12;

TEST_P(FunctionValues, AgreeInAllOrders)
{
    const TestedFunction& function = GetParam();
    const Orders compiled(function.text);
    ASSERT_TRUE(compiled);
    ASSERT_FALSE(function.rows.empty());
    for (const auto& row : function.rows) {
        const double x = row[0];
        for (int order = 0; order < 4; ++order) {
            const double expected = row[1 + order];
            const std::optional<double> got = compiled.at(x, order);
            ASSERT_TRUE(got) << "order " << order << " at " << x;
            EXPECT_NEAR(*got, expected, kRelativeTolerance * std::abs(expected))
                << "order " << order << " at " << x;
        }
    }
}

TEST(FunctionValuesTable, HoldsEveryFunctionOfTheEngine)
{
    const auto table = readTable<5>("function_values.txt");
    for (const mf::engine::Function& row : mf::engine::functions()) {
        const std::string call = std::string(row.name) + "(";
        const auto begins = [&](const TestedFunction& function) { return function.text.starts_with(call); };
        EXPECT_TRUE(row.name.empty() || std::ranges::any_of(table, begins)) << row.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Engine, FunctionValues, testing::ValuesIn(readTable<5>("function_values.txt")));

}  // namespace
}  // namespace engine_test
