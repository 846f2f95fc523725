// SPDX-License-Identifier: MIT

// Texts that are refused: the place, the reason, and what would be expected there.

#include "mfcurves/engine/parser.h"

#include <gtest/gtest.h>
#include <ostream>

#include "mfcurves/platform/encoding.h"
#include "tests/engine/compiled.h"

namespace {

using engine_test::compile;

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
    {"CommaOutsideCall", L"x,2", 1, "`,` is outside the arguments of a function", "an operator or the end"},
    {"CommaInParentheses", L"(1,2)", 2, "`,` is outside the arguments of a function",
     "an operator or the end"},
    {"ColonInOtherFunction", L"min(1:2)", 5, "`:` is outside the arguments of a function",
     "an operator or the end"},
    {"SecondColonInIf", L"if(x:1:2,3)", 6, "`:` is outside the arguments of a function",
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
    {"BlankOnly", L" \t\n", 3, "There is nothing here", "an expression"},
    {"LonePlus", L"+", 1, "The text ends after `+`, where an operand is missing", "an operand after `+`"},
    {"LoneMinus", L"-", 1, "The text ends after `-`, where an operand is missing", "an operand after `-`"},
    {"LoneSlash", L"/", 0, "An operand is missing before `/`", "an operand"},
    {"LonePower", L"^", 0, "An operand is missing before `^`", "an operand"},
    {"LoneRemainder", L"%", 0, "An operand is missing before `%`", "an operand"},
    {"LoneComma", L",", 0, "An operand is missing before `,`", "an operand"},
    {"LoneColon", L":", 0, "An operand is missing before `:`", "an operand"},
    {"OperatorBefore", L"*x", 0, "An operand is missing before `*`", "an operand"},
    {"TwoPowers", L"x^^2", 2, "An operand is missing before `^`", "an operand after `^`"},
    {"ThreeStars", L"x***2", 3, "An operand is missing before `*`", "an operand after `**`"},
    {"StarsApart", L"2* *3", 3, "An operand is missing before `*`", "an operand after `*`"},
    {"StarSlash", L"x*/2", 2, "An operand is missing before `/`", "an operand after `*`"},
    {"NoOperatorBetweenNumbers", L"2 3", 2, "An operator is missing between `2` and `3`",
     "an operator after `2`"},
    {"NoOperatorAfterAName", L"x 2", 2, "An operator is missing between `x` and `2`",
     "an operator after `x`"},
    {"NoOperatorBetweenParentheses", L"(2)(3)", 3, "An operator is missing between `)` and `(`",
     "an operator after `)`"},
    {"NoOperatorBeforeAParenthesis", L"2(3)", 1, "An operator is missing between `2` and `(`",
     "an operator after `2`"},
    {"NoOperatorBeforeAConstant", L"2pi", 1, "An operator is missing between `2` and `pi`",
     "an operator after `2`"},
    {"NoOperatorBeforeAFunction", L"2sin(x)", 1, "An operator is missing between `2` and `sin`",
     "an operator after `2`"},
    {"TwoPoints", L"1..2", 2, "An operator is missing between `1.` and `.2`", "an operator after `1.`"},
    {"ExponentWithoutSignOrDigits", L"1e", 1, "An operator is missing between `1` and `e`",
     "an operator after `1`"},
    {"ExponentWithAPoint", L"1e.5", 1, "An operator is missing between `1` and `e`", "an operator after `1`"},
    {"TooLarge", L"1e400", 0, "The number is too large", "a number below 1.8e308"},
    {"TooLargeNegative", L"-1e400", 1, "The number is too large", "a number below 1.8e308"},
    {"TooLargeInAFunction", L"atan(1e400)", 5, "The number is too large", "a number below 1.8e308"},
    {"CommaForAPoint", L"1,5", 1, "`,` is outside the arguments of a function", "an operator or the end"},
    {"DegreesThenADigit", L"2d3", 1, "An operator is missing between `2` and `d3`", "an operator after `2`"},
    {"DegreesApart", L"2 d", 2, "An operator is missing between `2` and `d`", "an operator after `2`"},
    {"DegreesOfAName", L"x d", 2, "An operator is missing between `x` and `d`", "an operator after `x`"},
    {"Hexadecimal", L"0x10", 1, "An operator is missing between `0` and `x10`", "an operator after `0`"},
    {"Infinity", L"inf", 0, "`inf` is not the variable", "`x`"},
    {"NotANumber", L"nan", 0, "`nan` is not the variable", "`x`"},
    {"NoConstantE", L"e", 0, "`e` is not the variable", "`x`"},
    {"OpenParenthesis", L"(x", 2, "The parenthesis opened at character 1 is not closed", "`)`"},
    {"ParenthesesReversed", L")x(", 0, "An operand is missing before `)`", "an operand"},
    {"ArgumentWithoutParentheses", L"sin x", 4, "The function `sin` is called without arguments", "`(`"},
    {"OneArgumentTooMany", L"sin(x,2)", 0, "`sin` takes 1 argument, got 2", "`sin` with (x)"},
    {"OneArgumentTooFew", L"atan2(x)", 0, "`atan2` takes 2 arguments, got 1", "`atan2` with (y, x)"},
    {"OneToChooseFrom", L"min(x)", 0, "`min` takes at least 2 arguments, got 1", "`min` with (a, b, ...)"},
    {"NoneToChooseFrom", L"max()", 4, "An operand is missing before `)`", "an operand after `(`"},
    {"ThreeArgumentsOfAChoice", L"if(x,1,2)", 0, "`if` takes 4 arguments, got 3", "`if` with (c: n, z, p)"},
    {"FiveArgumentsOfAChoice", L"if(x,1,2,3,4)", 0, "`if` takes 4 arguments, got 5",
     "`if` with (c: n, z, p)"},
    {"ColonInAnotherPlace", L"if(x,1:2,3)", 6, "`:` is outside the arguments of a function",
     "an operator or the end"},
    {"ColonOutsideAChoice", L"atan2(x:2)", 7, "`:` is outside the arguments of a function",
     "an operator or the end"},
    {"ColonOutsideParentheses", L"x:2", 1, "`:` is outside the arguments of a function",
     "an operator or the end"},
    {"CommaAfterAName", L"(x,2)", 2, "`,` is outside the arguments of a function", "an operator or the end"},
    {"EmptyArgument", L"min(x,,2)", 6, "An operand is missing before `,`", "an operand after `,`"},
    {"CommaAfterTheLastArgument", L"min(x,2,)", 8, "An operand is missing before `)`",
     "an operand after `,`"},
    {"ThreeSigns", L"sign(1,2,3)", 0, "`sign` takes 2 arguments, got 3", "`sign` with (a, b)"},
    {"FourArgumentsOfAStep", L"step(x,0,0,1)", 0, "`step` takes 5 arguments, got 4",
     "`step` with (x, x0, h0, x1, h1)"},
    {"SixArgumentsOfAStep", L"step(x,0,0,1,1,1)", 0, "`step` takes 5 arguments, got 6",
     "`step` with (x, x0, h0, x1, h1)"},
    {"PolynomialWithoutTerms", L"poly(x,1)", 0, "`poly` takes at least 3 arguments, got 2",
     "`poly` with (x, x0, a0, a1, ...)"},
    {"ChebyshevWithoutTerms", L"cheby(x,1)", 0, "`cheby` takes at least 3 arguments, got 2",
     "`cheby` with (x, x0, a0, a1, ...)"},
    {"SineSeriesWithoutTerms", L"forsin(x,1,2)", 0, "`forsin` takes at least 4 arguments, got 3",
     "`forsin` with (x, x0, w, a0, a1, ...)"},
    {"CosineSeriesWithoutTerms", L"forcos(x,1,2)", 0, "`forcos` takes at least 4 arguments, got 3",
     "`forcos` with (x, x0, w, a0, a1, ...)"},
    {"FiveArgumentsOfAHarmonic", L"shf(x,1,2,3,4)", 0, "`shf` takes 6 arguments, got 5",
     "`shf` with (x, x0, a, w, phi, b)"},
    {"FunctionNearAnother", L"sine(x)", 0, "There is no function `sine`", "perhaps `sin`"},
    {"TimeBesideTheGivenName", L"x+time", 2, "`time` is not the variable", "`x`"},
    {"ResultBesideTheGivenName", L"x+{Displacement1}", 2, "`{Displacement1}` is not the variable", "`x`"},
    {"CallOfAConstant", L"pi(2)", 2, "An operator is missing between `pi` and `(`", "an operator after `pi`"},
    {"CallOfTheArgument", L"x(2)", 1, "An operator is missing between `x` and `(`", "an operator after `x`"},
    {"ConstantWithADigit", L"pi2", 0, "`pi2` is not the variable", "`x`"},
    {"OpenBrace", L"{x", 0, "The brace is never closed", "`}`"},
    {"ClosingBrace", L"x}", 1, "The character `}` has no meaning here", "an operand or an operator"},
    {"Equals", L"x=3", 1, "The character `=` has no meaning here", "an operand or an operator"},
    {"Semicolon", L"x;", 1, "The character `;` has no meaning here", "an operand or an operator"},
    {"Comparison", L"x<3", 1, "The character `<` has no meaning here", "an operand or an operator"},
    {"Quotes", L"\"x\"", 0, "The character `\"` has no meaning here", "an operand or an operator"},
    {"Apostrophe", L"'x", 0, "The character `'` has no meaning here", "an operand or an operator"},
    {"Dollar", L"$x", 0, "The character `$` has no meaning here", "an operand or an operator"},
    {"Hash", L"#x", 0, "The character `#` has no meaning here", "an operand or an operator"},
    {"Exclamation", L"x!", 1, "The character `!` has no meaning here", "an operand or an operator"},
    {"Ampersand", L"x&1", 1, "The character `&` has no meaning here", "an operand or an operator"},
    {"Bar", L"|x|", 0, "The character `|` has no meaning here", "an operand or an operator"},
    {"Brackets", L"[x]", 0, "The character `[` has no meaning here", "an operand or an operator"},
    {"Backslash", L"x\\2", 1, "The character `\\` has no meaning here", "an operand or an operator"},
    {"ControlCharacter", L"x\001", 1, "The character `\001` has no meaning here",
     "an operand or an operator"},
    {"CharacterBeyondAscii", L"x+\u00fc(1)", 2, "There is no function `\xc3\xbc`", "a function"},
};

void PrintTo(const RefusalCase& c, std::ostream* os)
{
    *os << mf::platform::toUtf8(c.text);
}

class Refusal : public testing::TestWithParam<RefusalCase> {};

TEST_P(Refusal, HasAPlaceAReasonAndAnExpectation)
{
    const RefusalCase& c = GetParam();
    const auto error = mf::engine::checkText(c.text, L"x");
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->offset, c.offset);
    EXPECT_EQ(error->message, c.message);
    EXPECT_EQ(error->expected, c.expected);
}

TEST_P(Refusal, LeavesThePointerAndHasNoParameters)
{
    const engine_test::Calculator earlier = compile("1");
    ASSERT_TRUE(earlier);
    ICalculator* calculator = earlier.get();
    wchar_t variable[] = L"x";
    MotionMEParser parser;
    EXPECT_FALSE(parser.parse(GetParam().text, variable, &calculator));
    EXPECT_FALSE(parser.parseSucceeded);
    EXPECT_EQ(parser.getParamsNum(), 0);
    EXPECT_EQ(calculator, earlier.get());
}

INSTANTIATE_TEST_SUITE_P(Engine, Refusal, testing::ValuesIn(kRefusalCases),
                         [](const auto& tested) { return tested.param.name; });

// Each coefficient that is not a constant costs a polynomial of its degree.
TEST(CheckText, RefusesATextWithTooManyParts)
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

TEST(CheckText, FindsNothingWrongWithAGoodText)
{
    EXPECT_FALSE(mf::engine::checkText(L"sin(x)+y", nullptr).has_value());
    EXPECT_FALSE(mf::engine::checkText(L"sin(x)", L"x").has_value());
}

TEST(Parse, RefusesANullText)
{
    ICalculator* calculator = nullptr;
    MotionMEParser parser;
    EXPECT_FALSE(parser.parse(nullptr, nullptr, &calculator));
    EXPECT_FALSE(parser.parseSucceeded);
    EXPECT_EQ(calculator, nullptr);
}

TEST(Parse, ChecksATextWithoutAPlaceForTheCalculator)
{
    MotionMEParser parser;
    EXPECT_TRUE(parser.parse(L"a+1", nullptr, nullptr));
    EXPECT_EQ(parser.getParamsNum(), 1);
    EXPECT_FALSE(parser.parse(L"a+", nullptr, nullptr));
}

TEST(Parse, ReturnsWhatParseSucceededSays)
{
    MotionMEParser parser;
    EXPECT_FALSE(parser.parseSucceeded);
    EXPECT_TRUE(parser.parse(L"a+b", nullptr, nullptr));
    EXPECT_TRUE(parser.parseSucceeded);
    EXPECT_FALSE(parser.parse(L"a+b+", nullptr, nullptr));
    EXPECT_FALSE(parser.parseSucceeded);
    EXPECT_EQ(parser.getParamsNum(), 0);
}

}  // namespace
