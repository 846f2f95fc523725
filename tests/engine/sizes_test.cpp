// SPDX-License-Identifier: MIT

// Sizes of texts: which are accepted, which are refused, and that neither takes long or
// crashes.

#include <ctime>
#include <functional>
#include <gtest/gtest.h>

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

/// A long text that is accepted or refused, but quickly.
struct LongCase {
    const char* name;
    std::string text;
    bool mayBeRefused;
    double value;  ///< at x = 1 if it is accepted
};

void PrintTo(const LongCase& c, std::ostream* os)
{
    *os << c.text.substr(0, 40) << "... of " << c.text.size() << " characters";
}

class LongText : public testing::TestWithParam<LongCase> {};

TEST_P(LongText, TakesUnderASecond)
{
    const LongCase& c = GetParam();
    const double seconds = secondsOf([&] {
        const Calculator calculator = compile(c.text);
        if (!c.mayBeRefused) {
            EXPECT_TRUE(calculator);
        }
        if (calculator) {
            EXPECT_EQ(evaluate(calculator, 1.0), c.value);
        }
    });
    EXPECT_LT(seconds, 1.0 * kSlowness);
}

// Each derivative is null or has a value.
TEST_P(LongText, HasDerivativesWithinTheLimits)
{
    const double seconds = secondsOf([] {
        const LongCase& c = GetParam();
        Calculator calculator = compile(c.text);
        for (int order = 1; order < 4 && calculator; ++order) {
            calculator = derivative(calculator);
            if (calculator) {
                EXPECT_TRUE(evaluate(calculator, 1.0)) << order;
            }
        }
    });
    EXPECT_LT(seconds, 4.0 * kSlowness);
}

const LongCase kLongTexts[] = {
    {"Sum", "x" + repeated("+x", 500000), false, 500001.0},
    {"SumOfNumbers", "x" + repeated("+1", 500000), false, 500001.0},
    {"Difference", "x" + repeated("-x", 500000), false, -499999.0},
    {"Product", "x" + repeated("*x", 500000), false, 1.0},
    {"Quotient", "x" + repeated("/x", 500000), false, 1.0},
    {"Remainder", "x" + repeated("%3", 500000), false, 1.0},
    {"PowersToTheRight", "x" + repeated("^x", 500000), true, 1.0},
    {"PowersOfNumbers", "x" + repeated("^1", 500000), true, 1.0},
    {"Signs", std::string(1000000, '-') + "x", true, 1.0},
    {"PlusSigns", std::string(1000000, '+') + "x", true, 1.0},
    {"SignsBehindPowers", "x" + repeated("^-", 400000) + "1", true, 1.0},
    {"DifferentTerms",
     [] {
         std::string text = "0";
         for (int i = 0; i < 40000; ++i)
             text += "+x^2*" + std::to_string(i % 7) + ".5*sin(" + std::to_string(i) + ")*0";
         return text;
     }(),
     false, 0.0},
    {"DifferentNumbers",
     [] {
         std::string text = "x*0";
         for (int i = 0; i < 100000; ++i)
             text += "+0/" + std::to_string(i + 1);
         return text;
     }(),
     false, 0.0},
    {"OneLongNumber", "x+0." + std::string(1000000, '0') + "1", false, 1.0},
    {"OneLargeNumber", std::string(1000000, '9'), true, 0.0},
    {"OneLongName", std::string(1000000, 'y'), true, 0.0},
    {"Blanks", std::string(1000000, ' ') + "x", false, 1.0},
    {"ManyArguments", "max(x" + repeated(",x", 400000) + ")", false, 1.0},
    {"ManyTerms", "poly(x,1,1" + repeated(",1", 400000) + ")", false, 1.0},
    {"NestedParentheses", nested("(", "x", ")", 200000), true, 1.0},
    {"OpenParentheses", std::string(400000, '('), true, 0.0},
    {"OpenBrace", "{" + std::string(1000000, 'a'), true, 0.0},
    {"OpenBraces", std::string(1000000, '{'), true, 0.0},
    {"Commas", "max(" + std::string(1000000, ','), true, 0.0},
    {"Exponents", repeated("1e", 400000), true, 0.0},
    {"Points", std::string(1000000, '.'), true, 0.0},
};

INSTANTIATE_TEST_SUITE_P(Engine, LongText, testing::ValuesIn(kLongTexts),
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
