// SPDX-License-Identifier: MIT

// Many points at a time have the same bits as one point after the other.

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "mfcurves/engine/evaluateMany.h"
#include "tests/engine/compiled.h"
#include "tests/engine/random_expression.h"

namespace engine_test {
namespace {

/// The points that succeed before the first failure, point by point.
std::vector<double> oneByOne(const Calculator& calculator, const std::vector<double>& x)
{
    std::vector<double> values;
    for (const double at : x) {
        const std::optional<double> value = evaluate(calculator, at);
        if (!value)
            break;
        values.push_back(*value);
    }
    return values;
}

std::vector<double> many(const Calculator& calculator, const std::vector<double>& x)
{
    std::vector<double> values(x.size());
    values.resize(mf::engine::evaluateMany(*calculator, x.data(), values.data(), x.size()));
    return values;
}

std::vector<std::uint64_t> bits(const std::vector<double>& values)
{
    std::vector<std::uint64_t> result;
    for (const double value : values)
        result.push_back(std::bit_cast<std::uint64_t>(value));
    return result;
}

std::vector<double> points(std::size_t count, double from, double to)
{
    std::vector<double> x;
    for (std::size_t i = 0; i < count; ++i)
        x.push_back(from + (to - from) * static_cast<double>(i) / static_cast<double>(count));
    return x;
}

class ManyPoints : public testing::TestWithParam<std::size_t> {};

// Numbers of points below and above those that are computed together.
TEST_P(ManyPoints, HaveTheBitsOfSinglePoints)
{
    Generator generator(11);
    for (int i = 0; i < 100; ++i) {
        const std::string text = generator.text(generator.tree(3));
        const Orders compiled(text);
        ASSERT_TRUE(compiled) << text;
        const std::vector<double> x = points(GetParam(), generator.uniform(-3, 0), generator.uniform(0, 3));
        for (const int order : {0, 1, 2, 3, 1, 0})
            ASSERT_EQ(bits(many(compiled[order], x)), bits(oneByOne(compiled[order], x)))
                << text << "\norder " << order;
    }
}

INSTANTIATE_TEST_SUITE_P(Engine, ManyPoints,
                         testing::Values(0, 1, 2, 7, 8, 9, 100, 127, 128, 129, 255, 256, 257, 1000));

// A single point may use operations of the processor that many points do not use. They give the same
// bits for all sizes of the argument, also where powers or their rounding errors over- or underflow.
TEST(ManyPoints, HaveTheBitsOfSinglePointsInLawsOfAnySize)
{
    constexpr int kOfEachSize = 8;
    Generator generator(12);
    std::vector<double> x{0.0, -0.0, 1.0, -1.0};
    for (int exponent = -1070; exponent < 1020; ++exponent) {
        for (int i = 0; i < kOfEachSize; ++i)
            x.push_back(std::ldexp(generator.uniform(-1.0, 1.0), exponent));
    }
    for (const char* law : {"35*u^4-84*u^5+70*u^6-20*u^7", "126*u^5-420*u^6+540*u^7-315*u^8+70*u^9",
                            "5*u^4-4*u^5+u^6+u^7+u^8", "10*u^3-15*u^4+6*u^5"}) {
        for (const char* argument : {"(x/1)", "((x-0)/3)", "(x/2)"}) {
            const std::string text = std::regex_replace(law, std::regex("u"), argument);
            const Orders compiled(text);
            ASSERT_TRUE(compiled) << text;
            for (const int order : {0, 1, 2, 3}) {
                for (const double at : x)
                    ASSERT_EQ(bits(many(compiled[order], {at})), bits(oneByOne(compiled[order], {at})))
                        << text << "\norder " << order << " at " << at;
            }
        }
    }
}

TEST(ManyPoints, EndBeforeTheFirstFailure)
{
    const Calculator root = compile("sqrt(x)");
    EXPECT_EQ(many(root, {4.0, 9.0, -1.0, 16.0}), (std::vector<double>{2.0, 3.0}));
    EXPECT_EQ(many(root, {-1.0, 4.0}), std::vector<double>());
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(many(root, {4.0, infinity}), std::vector<double>{2.0});
}

TEST(ManyPoints, EndBeforeALateFailure)
{
    std::vector<double> x = points(1000, 1.0, 2.0);
    x[777] = -1.0;
    EXPECT_EQ(many(compile("sqrt(x)"), x).size(), 777u);
}

TEST(ManyPoints, KeepZeroAndMinusZeroApart)
{
    const Calculator angle = compile("atan(1/x)");
    const std::vector<double> positive = many(angle, {0.0, 0.0, 0.0});
    const std::vector<double> negative = many(angle, {-0.0, 0.0, -0.0});
    EXPECT_GT(positive[0], 1.5);
    EXPECT_LT(negative[0], -1.5);
    EXPECT_GT(negative[1], 1.5);
}

TEST(ManyPoints, OfAConstantAreEqual)
{
    EXPECT_EQ(many(compile("5"), {1.0, 2.0}), (std::vector<double>{5.0, 5.0}));
    EXPECT_EQ(many(compileFree(L"5"), {1.0, 2.0}), (std::vector<double>{5.0, 5.0}));
    EXPECT_EQ(many(derivative(compileFree(L"5")), {1.0, 2.0}), (std::vector<double>{0.0, 0.0}));
}

TEST(ManyPoints, OfTwoParametersFail)
{
    EXPECT_EQ(many(compileFree(L"a+b"), {1.0, 2.0}), std::vector<double>());
}

// More registers than a block may have.
TEST(ManyPoints, OfAVeryLongTextHaveItsValues)
{
    std::string text = "0";
    for (int k = 1; k <= 1000; ++k)
        text += "+abs(x+" + std::to_string(k) + ")";
    EXPECT_EQ(many(compile(text), {0.0, 2.0, -1000.0}), (std::vector<double>{500500.0, 502500.0, 499500.0}));
}

TEST(ManyPoints, ChangeNoSinglePoint)
{
    const Orders compiled("x^3+sin(x)");
    const std::optional<double> before = compiled.at(1.5, 2);
    many(compiled[2], points(200, 0.0, 1.0));
    EXPECT_EQ(compiled.at(1.5, 2), before);
    const std::vector<double> third = many(compiled[3], points(10, 0.0, 1.0));
    EXPECT_EQ(compiled.at(1.5, 2), before);
    EXPECT_EQ(third.size(), 10u);
}

// A calculator that is not the engine's own.
class Doubler : public ICalculator {
public:
    ICalculator* differentiate(int) override { return nullptr; }
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override
    {
        const double x = *arguments->getValue();
        *result.getValue() = 2 * x;
        return count == 1 && x < 10.0;
    }
    bool Release() override { return true; }
};

// A motion law: `terms` terms from the power `lowest` on, scaled and shifted, of the
// argument `u`, which is x, or x shifted, divided or both.
std::string lawText(int terms, int lowest, const std::string& u)
{
    std::string sum = "0";
    for (int i = 0; i < terms; ++i)
        sum += (i % 2 == 0 ? "+" : "-") + std::to_string(3 * i + 2) + ".7*" + u + "^" +
               std::to_string(lowest + i);
    return "1.3-2.1*(" + sum + ")";
}

// At each x the orders are requested in another sequence, so that laws and their
// derivatives are computed alone, together and one after the other.
void expectBitsOfManyPoints(const std::string& text)
{
    const std::vector<int> kSequences[] = {{0},       {0, 1, 2, 3}, {3}, {0, 1}, {2, 0},
                                           {0, 1, 2}, {3, 2, 1, 0}, {1}, {0, 3}};
    const std::vector<double> x = points(std::size(kSequences) * 3, -2.0, 3.0);
    const Orders together(text);
    const Orders asked(text);
    ASSERT_TRUE(together && asked) << text;
    std::vector<double> expected[4];
    for (int order = 0; order < 4; ++order) {
        expected[order] = many(together[order], x);
        ASSERT_EQ(expected[order].size(), x.size()) << text;
    }
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (const int order : kSequences[i % std::size(kSequences)]) {
            const std::optional<double> value = evaluate(asked[order], x[i]);
            ASSERT_TRUE(value) << text;
            ASSERT_EQ(std::bit_cast<std::uint64_t>(*value), std::bit_cast<std::uint64_t>(expected[order][i]))
                << text << "\norder " << order << " at " << x[i];
        }
    }
}

constexpr const char* kStretches[] = {"x",
                                      "(x-0.3)",
                                      "(3*x)",
                                      "(3*(x-0.3))",
                                      "(x/1.7)",
                                      "((x-0.3)/1.7)",
                                      "(2*(x-0.3)/1.7)",
                                      "(2*(x-0.3)/1.7+0.4)",
                                      "((x-0.3)/1.7*2+0.4)"};

TEST(Laws, HaveTheBitsOfManyPointsWhateverIsAskedFor)
{
    for (const char* u : kStretches) {
        for (int terms = 1; terms <= 5; ++terms) {
            for (int lowest = 0; lowest <= 5; ++lowest)
                expectBitsOfManyPoints(lawText(terms, lowest, u));
        }
    }
}

// The expression beside the law is a polynomial as well, but not the law's derivative.
TEST(Laws, KeepTheirBitsBesideOtherPolynomials)
{
    for (const std::string other :
         {"(x^3-2*x^4)", "(1.1+3*(x^3+x^4))", "((x-9)^2+(x-9)^3)", "(x^2+x^3+9)^2"}) {
        for (const char* sign : {"*", "+", "/"}) {
            expectBitsOfManyPoints("(1.3-2.1*(x^2+x^3))" + (sign + other));
            expectBitsOfManyPoints(other + sign + "(1.3-2.1*(x^2+x^3))");
        }
    }
    expectBitsOfManyPoints("1.3-2.1*poly(x,0,1,0,3,4)");  // whose derivative begins a power higher
    expectBitsOfManyPoints("1.3-2.1*poly(x,0,1,0,0,4)");
}

// The fourth derivative is -3 (24 + 120 x + 360 x^2).
TEST(Laws, GoOnPastTheThirdDerivative)
{
    const Orders compiled("2-3*(x^3+x^4+x^5+x^6)");
    const Calculator fourth = derivative(compiled[3]);
    EXPECT_EQ(evaluate(fourth, 2.0), -3.0 * (24 + 240 + 1440));
    EXPECT_EQ(compiled.at(2.0, 3), -3.0 * (6 + 48 + 240 + 960));
    EXPECT_EQ(many(fourth, {2.0, 0.0}), (std::vector<double>{-5112.0, -72.0}));
}

TEST(Functions, HaveTheBitsOfManyPointsWhateverIsAskedFor)
{
    for (const std::string u : kStretches) {
        for (const std::string f : {"sin", "cos", "exp", "atan", "int"}) {
            for (const std::string& text :
                 {f + "(" + u + ")", "2-3*" + f + "(" + u + ")", "(" + f + "(" + u + ")+1.1)/0.7*1.3+0.1"})
                expectBitsOfManyPoints(text);
        }
    }
}

// The derivative of half the square of the shifted x is the shifted x itself.
TEST(Laws, LendTheirShiftedXToADerivative)
{
    expectBitsOfManyPoints("1.5+0.5*(x-0.3)^2");
    const Orders compiled("1.5+0.5*(x-0.25)^2");
    EXPECT_EQ(compiled.at(2.25, 0), 3.5);
    EXPECT_EQ(compiled.at(2.25, 1), 2.0);
    EXPECT_EQ(compiled.at(4.25, 1), 4.0);
}

TEST(ManyPoints, OfAForeignCalculatorAreEvaluatedOneByOne)
{
    Doubler doubler;
    std::vector<double> values(4);
    const double x[] = {1.0, 2.0, 3.0, 20.0};
    EXPECT_EQ(mf::engine::evaluateMany(doubler, x, values.data(), 4), 3u);
    EXPECT_EQ(values[2], 6.0);
}

}  // namespace
}  // namespace engine_test
