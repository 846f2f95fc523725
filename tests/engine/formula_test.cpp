// SPDX-License-Identifier: MIT

// A formula never changes: its registers come from the caller. Its values are those of
// the calculators, bit for bit, for one point and for many.

#include "mfcurves/engine/formula.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "tests/engine/compiled.h"
#include "tests/engine/random_expression.h"

namespace engine_test {
namespace {

using mf::engine::Formula;
using mf::engine::kBlock;
using FormulaPtr = std::shared_ptr<const Formula>;

constexpr int kHighest = 3;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

FormulaPtr formula(const std::string& text, int highestOrder = kHighest)
{
    const auto result = Formula::compile(wide(text), L"x", highestOrder);
    return std::get<FormulaPtr>(result);
}

using Values = std::array<double, kHighest + 1>;

// Registers that still contain the numbers of another formula.
std::vector<double> usedRegisters(std::size_t count)
{
    return std::vector<double>(count, -7.25);
}

Values at(const Formula& formula, double x, int order = kHighest)
{
    std::vector<double> registers = usedRegisters(formula.registerCount());
    Values values = {-1.0, -1.0, -1.0, -1.0};
    formula.evaluate(x, order, registers.data(), values.data());
    return values;
}

std::uint64_t bits(double value)
{
    return std::isnan(value) ? 0x7ff8'0000'0000'0000 : std::bit_cast<std::uint64_t>(value);
}

// The values of all orders at each x by blocks of `size` points.
std::vector<Values> inBlocks(const Formula& formula, const std::vector<double>& x, std::size_t size)
{
    std::vector<double> registers = usedRegisters(formula.registerCount() * kBlock);
    std::vector<double> columns[kHighest + 1];
    for (auto& column : columns)
        column.resize(x.size());
    for (std::size_t first = 0; first < x.size(); first += size) {
        double* targets[kHighest + 1];
        for (int order = 0; order <= kHighest; ++order)
            targets[order] = columns[order].data() + first;
        formula.evaluateBlock(x.data() + first, std::min(size, x.size() - first), kHighest, registers.data(),
                              targets);
    }
    std::vector<Values> values(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (int order = 0; order <= kHighest; ++order)
            values[i][order] = columns[order][i];
    }
    return values;
}

TEST(Formula, HasTheValueAndItsDerivatives)
{
    const FormulaPtr cubic = formula("2+x^3");
    EXPECT_EQ(at(*cubic, 2.0), (Values{10.0, 12.0, 12.0, 6.0}));
    EXPECT_EQ(cubic->parameterCount(), 1u);
}

TEST(Formula, LeavesHigherOrdersAlone)
{
    EXPECT_EQ(at(*formula("x^3"), 2.0, 1), (Values{8.0, 12.0, -1.0, -1.0}));
}

TEST(Formula, HasNoNumberAboveItsHighestOrder)
{
    const Values values = at(*formula("x^3", 1), 2.0);
    EXPECT_EQ(values[0], 8.0);
    EXPECT_EQ(values[1], 12.0);
    EXPECT_TRUE(std::isnan(values[2]));
    EXPECT_TRUE(std::isnan(values[3]));
}

TEST(Formula, HasNoNumberWhereTheValueIsNotFinite)
{
    const FormulaPtr root = formula("sqrt(x)");
    EXPECT_TRUE(std::isnan(at(*root, -1.0)[0]));
    const Values atZero = at(*root, 0.0);
    EXPECT_EQ(atZero[0], 0.0);
    EXPECT_TRUE(std::isnan(atZero[1]));
    EXPECT_TRUE(std::isnan(at(*formula("exp(x)"), 1000.0)[0]));  // infinity
    EXPECT_TRUE(std::isnan(at(*formula("x"), kNaN)[0]));
}

TEST(Formula, OfAConstantIgnoresX)
{
    EXPECT_EQ(at(*formula("5"), kNaN), (Values{5.0, 0.0, 0.0, 0.0}));
    const auto free = std::get<FormulaPtr>(Formula::compile(L"2+3", std::nullopt));
    EXPECT_EQ(free->parameterCount(), 0u);
    EXPECT_EQ(at(*free, 1.0), (Values{5.0, 0.0, 0.0, 0.0}));
    EXPECT_EQ(inBlocks(*free, {1.0, kNaN}, 2)[1], (Values{5.0, 0.0, 0.0, 0.0}));
}

TEST(Formula, OfTwoParametersHasNoNumber)
{
    const auto two = std::get<FormulaPtr>(Formula::compile(L"a+b", std::nullopt));
    EXPECT_EQ(two->parameterCount(), 2u);
    EXPECT_TRUE(std::isnan(at(*two, 1.0)[0]));
    EXPECT_TRUE(std::isnan(inBlocks(*two, {1.0}, 1)[0][0]));
}

TEST(Formula, SaysWhatIsWrongWithAText)
{
    const auto result = Formula::compile(L"x+", L"x");
    ASSERT_TRUE(std::holds_alternative<mf::engine::ParseError>(result));
    EXPECT_EQ(std::get<mf::engine::ParseError>(result).offset, 2u);
}

TEST(Formula, HasTheBitsOfTheCalculators)
{
    const double special[] = {0.0, -0.0, 1e300, -1e-300, std::numeric_limits<double>::infinity(), kNaN};
    Generator generator(29);
    for (int i = 0; i < 300; ++i) {
        const std::string text = generator.text(generator.tree(3));
        const Orders calculators(text);
        const FormulaPtr tested = formula(text);
        std::vector<double> x(special, std::end(special));
        while (x.size() < 20)
            x.push_back(generator.uniform(-3.0, 3.0));
        for (const double point : x) {
            const Values values = at(*tested, point);
            for (int order = 0; order <= kHighest; ++order)
                ASSERT_EQ(bits(values[order]), bits(calculators.at(point, order).value_or(kNaN)))
                    << text << "\norder " << order << " at " << point;
        }
    }
}

// Block sizes below and above the numbers of points that are computed together.
TEST(Formula, HasTheSameBitsInBlocks)
{
    Generator generator(31);
    for (const std::size_t size : {std::size_t{1}, std::size_t{7}, std::size_t{8}, std::size_t{9},
                                   std::size_t{16}, std::size_t{17}, std::size_t{100}, kBlock - 1, kBlock}) {
        for (int i = 0; i < 30; ++i) {
            const std::string text = generator.text(generator.tree(3));
            const FormulaPtr tested = formula(text);
            std::vector<double> x(size + 3);
            for (double& point : x)
                point = generator.uniform(-3.0, 3.0);
            const std::vector<Values> values = inBlocks(*tested, x, size);
            for (std::size_t point = 0; point < x.size(); ++point) {
                const Values expected = at(*tested, x[point]);
                for (int order = 0; order <= kHighest; ++order)
                    ASSERT_EQ(bits(values[point][order]), bits(expected[order]))
                        << text << "\norder " << order << " at " << x[point];
            }
        }
    }
}

// Run this under the thread sanitizer, too.
TEST(Formula, RunsOnManyThreadsAtOnce)
{
    constexpr int kThreads = 8;
    const FormulaPtr shared = formula("10*sin(2*pi*x)+x^2*exp(-x)/(1+x)+max(x,2.5)^1.5");
    std::vector<Values> expected;
    for (int i = 0; i < 500; ++i)
        expected.push_back(at(*shared, i * 0.01));
    std::vector<int> wrong(kThreads, 0);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            std::vector<double> registers(shared->registerCount());
            for (int i = 0; i < 500; ++i) {
                Values values;
                shared->evaluate(i * 0.01, kHighest, registers.data(), values.data());
                wrong[thread] += values != expected[i];
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(kThreads, 0));
}

}  // namespace
}  // namespace engine_test
