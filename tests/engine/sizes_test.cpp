// SPDX-License-Identifier: MIT

// Sizes of texts: which are accepted, which are refused, and that neither takes long or
// crashes.

#include <array>
#include <cmath>
#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "tests/engine/compiled.h"
#include "tests/support/longTexts.h"

namespace engine_test {
namespace {

using mf::test::nested;
using mf::test::repeated;

constexpr int kLongestText = 1 << 20;
constexpr int kDeepestNesting = 1000;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

#ifdef NDEBUG
constexpr bool kOptimised = true;
#else
constexpr bool kOptimised = false;
#endif

// The time limits are for an optimised build; other builds have five times as long.
constexpr double kSlowness = kOptimised && !kSanitized ? 1.0 : 5.0;

// Processor time, because the machine may be busy with something else.
double secondsOf(const std::function<void()>& work)
{
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST(TextLimit, TakesTheLongestText)
{
    const std::string text = "x+1" + std::string(kLongestText - 3, ' ');
    EXPECT_EQ(evaluate(compile(text), 2.0), 3.0);
}

TEST(TextLimit, RefusesOneCharacterMore)
{
    const std::string text = "x+1" + std::string(kLongestText - 2, ' ');
    EXPECT_FALSE(compile(text));
}

struct NestingCase {
    const char* name;
    const char* open;
    const char* close;
    double value;  ///< at x = 0.5 with a depth of 1000
};

class Nesting : public testing::TestWithParam<NestingCase> {};

TEST_P(Nesting, GoesToAThousandLevels)
{
    const NestingCase& c = GetParam();
    EXPECT_EQ(evaluate(compile(nested(c.open, "x", c.close, kDeepestNesting)), 0.5), c.value);
}

TEST_P(Nesting, EndsAtAThousandLevels)
{
    const NestingCase& c = GetParam();
    EXPECT_FALSE(compile(nested(c.open, "x", c.close, kDeepestNesting + 1)));
}

TEST_P(Nesting, OfAnyDepthDoesNoHarm)
{
    const NestingCase& c = GetParam();
    EXPECT_FALSE(compile(nested(c.open, "x", c.close, 100000)));
    EXPECT_FALSE(compile(repeated(c.open, 200000)));
    EXPECT_FALSE(compile(repeated(c.close, 200000)));
}

const NestingCase kNestings[] = {
    {"Parentheses", "(", ")", 0.5},
    {"Functions", "abs(", ")", 0.5},
    {"SecondArguments", "max(0,", ")", 0.5},
    {"Choices", "if(0:1,", ",3)", 0.5},
};

INSTANTIATE_TEST_SUITE_P(Engine, Nesting, testing::ValuesIn(kNestings),
                         [](const auto& tested) { return tested.param.name; });

TEST(NestingLimit, LetsDeepFunctionsBeDifferentiated)
{
    const Orders compiled(nested("sin(", "x", ")", 200));
    ASSERT_TRUE(compiled);
    EXPECT_TRUE(compiled.at(0.0, 0));
    EXPECT_EQ(compiled.at(0.0, 1), 1.0);  // the cosines of 0 multiply to 1
    EXPECT_EQ(compiled.at(0.0, 2), 0.0);
    EXPECT_NEAR(*compiled.at(0.0, 3), -200.0, 1e-9);  // sin o ... o sin = x - n x^3/6 + ...
}

// The values of a text and of its derivatives at x = 1.
using FourOrders = std::array<double, 4>;

/// A text whose terms repeat.
struct LongCase {
    const char* name;
    std::string text;
    std::optional<FourOrders> orders;  ///< nothing if the text is refused
};

void PrintTo(const LongCase& c, std::ostream* os)
{
    *os << c.text.substr(0, 40) << "... of " << c.text.size() << " characters";
}

class LongText : public testing::TestWithParam<LongCase> {};

// Derivatives that would take too much memory are null.
TEST_P(LongText, IsRefusedOrHasItsValuesInBoundedTime)
{
    const LongCase& c = GetParam();
    Calculator calculator;
    const double secondsOfText = secondsOf([&] {
        calculator = compile(c.text);
        ASSERT_EQ(calculator != nullptr, c.orders.has_value());
        if (calculator) {
            EXPECT_EQ(evaluate(calculator, 1.0), c.orders->at(0));
        }
    });
    EXPECT_LT(secondsOfText, 1.0 * kSlowness);

    const double secondsOfDerivatives = secondsOf([&] {
        for (int order = 1; order < 4 && calculator; ++order) {
            calculator = derivative(calculator);
            if (calculator) {
                EXPECT_EQ(evaluate(calculator, 1.0), c.orders->at(order)) << order;
            }
        }
    });
    EXPECT_LT(secondsOfDerivatives, 4.0 * kSlowness);
}

constexpr FourOrders kX = {1.0, 1.0, 0.0, 0.0};
constexpr FourOrders kZero = {0.0, 0.0, 0.0, 0.0};

constexpr FourOrders multipleOfX(double factor)
{
    return {factor, factor, 0.0, 0.0};
}

constexpr FourOrders powerOfX(double n)
{
    return {1.0, n, n * (n - 1.0), n * (n - 1.0) * (n - 2.0)};
}

// x^x^x ... of at least four x. T(x) = x^S(x) with S = 1 + u + u^2 + ... at x = 1 + u has the
// logarithm S ln x = u + u^2/2 + 5/6 u^3 + ..., so T = 1 + u + u^2 + 3/2 u^3 + ...
constexpr FourOrders kTowerOfX = {1.0, 1.0, 2.0, 9.0};

const LongCase kLongTexts[] = {
    {"Sum", "x" + repeated("+x", 500000), multipleOfX(500001.0)},
    {"SumOfNumbers", "x" + repeated("+1", 500000), FourOrders{500001.0, 1.0, 0.0, 0.0}},
    {"Difference", "x" + repeated("-x", 500000), multipleOfX(-499999.0)},
    {"Product", "x" + repeated("*x", 500000), powerOfX(500001.0)},
    {"Quotient", "x" + repeated("/x", 500000), powerOfX(-499999.0)},
    {"Remainder", "x" + repeated("%3", 500000), kX},
    {"Powers", "x" + repeated("^x", 500000), kTowerOfX},
    {"PowersOfNumbers", "x" + repeated("^1", 500000), kX},
    {"Signs", std::string(1000000, '-') + "x", kX},
    {"PlusSigns", std::string(1000000, '+') + "x", kX},
    {"SignsBehindPowers", "x" + repeated("^-", 400000) + "1", {}},
    {"DifferentTerms",
     [] {
         std::string text = "0";
         for (int i = 0; i < 40000; ++i)
             text += "+x^2*" + std::to_string(i % 7) + ".5*sin(" + std::to_string(i) + ")*0";
         return text;
     }(),
     kZero},
    {"DifferentNumbers",
     [] {
         std::string text = "x*0";
         for (int i = 0; i < 100000; ++i)
             text += "+0/" + std::to_string(i + 1);
         return text;
     }(),
     kZero},
    {"OneLongNumber", "x+0." + std::string(1000000, '0') + "1", kX},
    {"OneLargeNumber", std::string(1000000, '9'), {}},
    {"OneLongName", std::string(1000000, 'y'), {}},
    {"Blanks", std::string(1000000, ' ') + "x", kX},
    {"ManyArguments", "max(x" + repeated(",x", 400000) + ")", kX},
    {"ManyTerms", "poly(x,1,1" + repeated(",1", 400000) + ")", FourOrders{1.0, 1.0, 2.0, 6.0}},
    {"NestedParentheses", nested("(", "x", ")", 200000), {}},
    {"OpenParentheses", std::string(400000, '('), {}},
    {"OpenBrace", "{" + std::string(1000000, 'a'), {}},
    {"OpenBraces", std::string(1000000, '{'), {}},
    {"Commas", "max(" + std::string(1000000, ','), {}},
    {"Exponents", repeated("1e", 400000), {}},
    {"Points", std::string(1000000, '.'), {}},
};

INSTANTIATE_TEST_SUITE_P(Engine, LongText, testing::ValuesIn(kLongTexts),
                         [](const auto& tested) { return tested.param.name; });

// The long texts whose derivatives go beyond the limits, short enough for all of them.
const LongCase kShortTexts[] = {
    {"Sum", "x" + repeated("+x", 1000), multipleOfX(1001.0)},
    {"Difference", "x" + repeated("-x", 1000), multipleOfX(-999.0)},
    {"Product", "x" + repeated("*x", 1000), powerOfX(1001.0)},
    {"Quotient", "x" + repeated("/x", 1000), powerOfX(-999.0)},
    {"Remainder", "x" + repeated("%3", 1000), kX},
    {"Powers", "x" + repeated("^x", 1000), kTowerOfX},
    {"ManyTerms", "poly(x,1,1" + repeated(",1", 1000) + ")", FourOrders{1.0, 1.0, 2.0, 6.0}},
};

class ShortText : public testing::TestWithParam<LongCase> {};

TEST_P(ShortText, HasAllDerivatives)
{
    const LongCase& c = GetParam();
    const Orders compiled(c.text);
    for (int order = 0; order < 4; ++order) {
        ASSERT_TRUE(compiled[order]) << order;
        const double expected = c.orders->at(order);
        EXPECT_NEAR(*compiled.at(1.0, order), expected, 1e-12 * std::abs(expected)) << order;
    }
}

INSTANTIATE_TEST_SUITE_P(Engine, ShortText, testing::ValuesIn(kShortTexts),
                         [](const auto& tested) { return tested.param.name; });

// Derivatives that grow become null at some order, at worst.
TEST(DerivativeLimit, IsReachedInBoundedTime)
{
    std::string product = "1";
    for (int i = 0; i < 2000; ++i)
        product += "*(1+sin(" + std::to_string(i) + "*x))";
    const std::string tower = "x" + repeated("^x", 900);
    const std::string nest = nested("exp(sin(", "x", ")/2)", 400);
    for (const std::string& text : {product, tower, nest}) {
        const double seconds = secondsOf([&] {
            Calculator calculator = compile(text);
            ASSERT_TRUE(calculator);
            for (int order = 1; order <= 6 && calculator; ++order)
                calculator = derivative(calculator);
        });
        EXPECT_LT(seconds, 6.0 * kSlowness) << text.substr(0, 40);
    }
}

TEST(ManyTexts, AreCompiledOneAfterTheOther)
{
    for (int i = 0; i < 5000; ++i) {
        const Calculator calculator = compile("x+" + std::to_string(i));
        ASSERT_EQ(evaluate(calculator, 1.0), 1.0 + i);
    }
    EXPECT_EQ(evaluate(compile("x+0"), 1.0), 1.0);
}

}  // namespace
}  // namespace engine_test
