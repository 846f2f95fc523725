// SPDX-License-Identifier: MIT

#include "mfcurves/engine/parser.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <ostream>

#include "mfcurves/platform/encoding.h"
#include "tests/engine/compiled.h"

namespace {

using engine_test::compile;
using engine_test::evaluate;

constexpr double kPi = std::numbers::pi;

// --- Texts that mean something ------------------------------------------------------

struct ValueCase {
    const char* name;
    const wchar_t* text;
    double x;
    double expected;
};

const ValueCase kValueCases[] = {
    {"WholeNumber", L"12", 0, 12},
    {"NumberWithFraction", L"1.25", 0, 1.25},
    {"NumberEndingInPoint", L"1.", 0, 1},
    {"NumberStartingWithPoint", L".5", 0, 0.5},
    {"Exponent", L"1e3", 0, 1000},
    {"ExponentInCapitals", L"1E3", 0, 1000},
    {"ExponentWithSign", L"25e-2", 0, 0.25},
    {"ExponentWithPlus", L"1.5e+2", 0, 150},
    {"TooSmallANumberIsZero", L"1e-400", 0, 0},
    {"LargestNumber", L"1.7976931348623157e308", 0, 1.7976931348623157e308},
    {"ZeroWithHugeExponent", L"0e999999999999", 0, 0},
    {"MoreDigitsThanADoubleHolds", L"0.1000000000000000055511151231257827021181583404541015625", 0, 0.1},
    {"Degrees", L"90d", 0, kPi / 2},
    {"DegreesInCapitals", L"180D", 0, kPi},
    {"DegreesOfAnExponent", L"1e2d", 0, 100 * kPi / 180},
    {"DegreesBeforeOperator", L"180d/2", 0, kPi / 2},
    {"Sum", L"1+2", 0, 3},
    {"DifferencesGroupToTheLeft", L"10-4-3", 0, 3},
    {"QuotientsGroupToTheLeft", L"24/4/3", 0, 2},
    {"ProductBeforeSum", L"1+2*3", 0, 7},
    {"ParenthesesFirst", L"(1+2)*3", 0, 9},
    {"PowerBeforeProduct", L"2*3^2", 0, 18},
    {"PowersGroupToTheRight", L"2^3^2", 0, 512},
    {"PowerWithStars", L"2**3", 0, 8},
    {"PowersOfBothKinds", L"2**3^2", 0, 512},
    {"PowerBindsTighterThanSignBefore", L"-x^2", 3, -9},
    {"PowerBindsLooserThanSignAfter", L"2^-3", 0, 0.125},
    {"SignsInTheExponent", L"2^--3", 0, 8},
    {"SignedExponentGroupsToTheRight", L"2^-1^2", 0, 0.5},
    {"TwoMinusSigns", L"x--3.000000", 2, 5},
    {"ThreeMinusSigns", L"x---3", 2, -1},
    {"PlusSignIsNothing", L"+x-+2", 5, 3},
    {"SignAfterTimes", L"2*-3", 0, -6},
    {"SignAfterOver", L"6/-3", 0, -2},
    {"SignBeforeParenthesis", L"-(1+2)", 0, -3},
    {"Remainder", L"7%3", 0, 1},
    {"RemainderHasTheSignOfTheDividend", L"-7%3", 0, -1},
    {"RemainderByANegative", L"7%-3", 0, 1},
    {"RemainderIsExact", L"1e17%7", 0, 5},  // 10^17 = 7 * 14285714285714285 + 5
    {"RemainderStandsWithTimes", L"2*7%4", 0, 2},
    {"ZeroToTheZero", L"x^0", 0, 1},
    {"WhiteSpace", L" \t1 \n+\r 2 ", 0, 3},
    {"Pi", L"pi", 0, kPi},
    {"PiInCapitals", L"PI", 0, kPi},
    {"RadiansToDegrees", L"rtod", 0, 180 / kPi},
    {"DegreesToRadians", L"DtoR", 0, kPi / 180},
    {"FunctionInAnyCase", L"SqRt(x)", 9, 3},
    {"BlankBeforeParenthesis", L"sqrt (x)", 9, 3},
    {"IfWithColon", L"if(x: 1, 2, 3)", -4, 1},
    {"IfWithComma", L"if(x, 1, 2, 3)", 4, 3},
    {"IfAtZero", L"IF(x: 1, 2, 3)", 0, 2},
    {"CallsInCalls", L"min(max(x,2),hypot(3,4))", 1, 2},
    {"VariableInOtherCase", L"X", 7, 7},
};

void PrintTo(const ValueCase& c, std::ostream* os)
{
    *os << mf::platform::toUtf8(c.text) << " at " << c.x;
}

class Value : public testing::TestWithParam<ValueCase> {};

TEST_P(Value, IsWhatTheTextSays)
{
    const ValueCase& c = GetParam();
    const auto calculator = compile(c.text, L"x");
    ASSERT_NE(calculator, nullptr);
    const auto value = evaluate(calculator, c.x);
    ASSERT_TRUE(value.has_value());
    EXPECT_DOUBLE_EQ(*value, c.expected);
}

INSTANTIATE_TEST_SUITE_P(Engine, Value, testing::ValuesIn(kValueCases),
                         [](const auto& tested) { return tested.param.name; });

// --- Texts that mean nothing --------------------------------------------------------

struct RefusalCase {
    const char* name;
    const wchar_t* text;
    std::size_t offset;
    const char* message;
    const char* expected;
};

const RefusalCase kRefusalCases[] = {
    {"Empty", L"", 0, "There is nothing here", "an expression"},
    {"Blank", L"  ", 2, "There is nothing here", "an expression"},
    {"LoneOperator", L"*", 0, "An operand is missing before `*`", "an operand"},
    {"EndsInOperator", L"x+", 2, "The text ends after `+`, where an operand is missing",
     "an operand after `+`"},
    {"TwoOperators", L"1+*2", 2, "An operand is missing before `*`", "an operand after `+`"},
    {"PowerOfNothing", L"x^", 2, "The text ends after `^`, where an operand is missing",
     "an operand after `^`"},
    {"NoImplicitProduct", L"2x", 1, "An operator is missing between `2` and `x`", "an operator after `2`"},
    {"TwoNames", L"x x", 2, "An operator is missing between `x` and `x`", "an operator after `x`"},
    {"TwoNumbers", L"1.2.3", 3, "An operator is missing between `1.2` and `.3`", "an operator after `1.2`"},
    {"DegreesThenLetter", L"2dx", 1, "An operator is missing between `2` and `dx`", "an operator after `2`"},
    {"ExponentWithoutDigits", L"1e+", 1, "An operator is missing between `1` and `e`",
     "an operator after `1`"},
    {"LonePoint", L".", 0, "The character `.` has no meaning here", "an operand or an operator"},
    {"StrayCharacter", L"x#2", 1, "The character `#` has no meaning here", "an operand or an operator"},
    {"NumberTooLarge", L"x+1e400", 2, "The number is too large", "a number below 1.8e308"},
    {"NotClosed", L"(x+(1)", 6, "The parenthesis opened at character 1 is not closed", "`)`"},
    {"CallNotClosed", L"sin(x", 5, "The parenthesis opened at character 4 is not closed", "`)`"},
    {"ClosesNothing", L"x)", 1, "This `)` closes no parenthesis", "an operator or the end"},
    {"EmptyParentheses", L"()", 1, "An operand is missing before `)`", "an operand after `(`"},
    {"CommaOutsideCall", L"x,2", 1, "`,` stands outside the arguments of a function",
     "an operator or the end"},
    {"CommaInParentheses", L"(1,2)", 2, "`,` stands outside the arguments of a function",
     "an operator or the end"},
    {"ColonInOtherFunction", L"min(1:2)", 5, "`:` stands outside the arguments of a function",
     "an operator or the end"},
    {"SecondColonInIf", L"if(x:1:2,3)", 6, "`:` stands outside the arguments of a function",
     "an operator or the end"},
    {"UnknownFunction", L"1+wobble(x)", 2, "There is no function `wobble`", "a function"},
    {"MisspeltFunction", L"sqr(x)", 0, "There is no function `sqr`", "perhaps `sqrt`"},
    {"FunctionWithoutCall", L"sin", 3, "The function `sin` is called without arguments", "`(`"},
    {"TooFewArguments", L"step(x,1,2,3)", 0, "`step` takes 5 arguments, got 4",
     "`step` with (x, x0, h0, x1, h1)"},
    {"TooManyArguments", L"x*sin(x,2)", 2, "`sin` takes 1 argument, got 2", "`sin` with (x)"},
    {"TooFewOfMany", L"max(x)", 0, "`max` takes at least 2 arguments, got 1", "`max` with (a, b, ...)"},
    {"NoArguments", L"sin()", 4, "An operand is missing before `)`", "an operand after `(`"},
    {"OtherName", L"x+y", 2, "`y` is not the variable", "`x`"},
    {"ResultBesideTheVariable", L"{x}", 0, "`{x}` is not the variable", "`x`"},
    {"BraceNotClosed", L"x+{a b", 2, "The brace is never closed", "`}`"},
    {"EmptyBraces", L"{}", 0, "The braces are empty", "the name of a motion result between the braces"},
    {"NoComparison", L"x<1", 1, "The character `<` has no meaning here", "an operand or an operator"},
    {"CharacterBeyondAscii", L"x+\u00fc(1)", 2, "There is no function `\xc3\xbc`", "a function"},
};

void PrintTo(const RefusalCase& c, std::ostream* os)
{
    *os << mf::platform::toUtf8(c.text);
}

class Refusal : public testing::TestWithParam<RefusalCase> {};

TEST_P(Refusal, TellsThePlaceAndWhatWasExpected)
{
    const RefusalCase& c = GetParam();
    EXPECT_EQ(compile(c.text, L"x"), nullptr);
    const auto error = mf::engine::checkText(c.text, L"x");
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->offset, c.offset);
    EXPECT_EQ(error->message, c.message);
    EXPECT_EQ(error->expected, c.expected);
}

INSTANTIATE_TEST_SUITE_P(Engine, Refusal, testing::ValuesIn(kRefusalCases),
                         [](const auto& tested) { return tested.param.name; });

// Each coefficient that is no number costs a polynomial of its degree.
TEST(CheckText, TellsOfATextWithTooManyParts)
{
    std::wstring text = L"cheby(x,0";
    for (int i = 0; i < 2000; ++i)
        text += L",x";
    EXPECT_EQ(compile(text + L")", L"x"), nullptr);
    const auto error = mf::engine::checkText((text + L")").c_str(), L"x");
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->offset, 0u);
    EXPECT_EQ(error->message, "The expression is too large");
    EXPECT_EQ(error->expected, "at most 1000000 parts");
}

TEST(CheckText, HasNothingToSayAboutAGoodText)
{
    EXPECT_FALSE(mf::engine::checkText(L"sin(x)+y", nullptr).has_value());
    EXPECT_FALSE(mf::engine::checkText(L"sin(x)", L"x").has_value());
}

}  // namespace
