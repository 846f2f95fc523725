// SPDX-License-Identifier: MIT

// Names: the given variable, free names as parameters, motion results in braces.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/engine/compiled.h"

namespace engine_test {
namespace {

/// A text with free names, its parameters and their meanings.
struct FreeCase {
    const char* name;
    const wchar_t* text;
    std::vector<std::wstring> parameters;
};

class FreeNames : public testing::TestWithParam<FreeCase> {};

TEST_P(FreeNames, AreParametersInOrderOfAppearance)
{
    const FreeCase& c = GetParam();
    MotionMEParser parser;
    ICalculator* raw = nullptr;
    ASSERT_TRUE(parser.parse(c.text, nullptr, &raw));
    const Calculator calculator(raw);
    std::vector<std::wstring> parameters;
    for (int i = 0; i < parser.getParamsNum(); ++i)
        parameters.push_back(parser.getParam(i).text);
    EXPECT_EQ(parameters, c.parameters);
}

const FreeCase kFreeNames[] = {
    {"None", L"2*pi+sin(30d)", {}},
    {"One", L"2*x+x^2", {L"x"}},
    {"TwoInOrder", L"b*a+b", {L"b", L"a"}},
    {"SpeltAsAtFirstAppearance", L"Speed+SPEED*speed", {L"Speed"}},
    {"TimeInAnyCase", L"TIME+time+Time", {L"TIME"}},
    {"TimeAndAngle", L"cycleAngle*Time", {L"cycleAngle", L"Time"}},
    {"Underscores", L"_a1+a_1+__", {L"_a1", L"a_1", L"__"}},
    {"LettersBeyondAscii",
     L"\u00e4\u00f6+\u03c9*\u89d2\u5ea6",
     {L"\u00e4\u00f6", L"\u03c9", L"\u89d2\u5ea6"}},
    {"BracesBelongToTheName", L"{Displacement1}*2", {L"{Displacement1}"}},
    {"BlanksInBraces", L"{ Linear  Displacement 1 }+1", {L"{ Linear  Displacement 1 }"}},
    {"AnyTextInBraces", L"{a+(b*{,}^2", {L"{a+(b*{,}"}},
    {"BracesCompareWithCase", L"{a}+{A}+{a}", {L"{a}", L"{A}"}},
    {"TimeInBracesIsAResult", L"{time}*time", {L"{time}", L"time"}},
    {"ConstantsAreNoParameters", L"pi*x+rtod*dtor", {L"x"}},
    {"NameThatBeginsLikeAConstant", L"pipe+dtor2", {L"pipe", L"dtor2"}},
    {"NameThatBeginsLikeAFunction", L"sinus+absolute", {L"sinus", L"absolute"}},
    {"LettersThatLookLikeExponents", L"e1+1e1*d1", {L"e1", L"d1"}},
    {"InAPieceThatMayNeverAnswer", L"if(1:a,b,c)", {L"a", L"b", L"c"}},
    {"TimesZero", L"0*a+b-b", {L"a", L"b"}},
};

INSTANTIATE_TEST_SUITE_P(Engine, FreeNames, testing::ValuesIn(kFreeNames),
                         [](const auto& tested) { return tested.param.name; });

struct MeaningCase {
    const char* name;
    const wchar_t* text;
    bool time;
    bool cycleAngle;
    bool result;
};

class Meaning : public testing::TestWithParam<MeaningCase> {};

TEST_P(Meaning, OfAParameterFollowsFromItsName)
{
    const MeaningCase& c = GetParam();
    MotionMEParser parser;
    ASSERT_TRUE(parser.parse(c.text, nullptr, nullptr));
    ASSERT_EQ(parser.getParamsNum(), 1);
    const MMEP_WString& parameter = parser.getParam(0);
    EXPECT_EQ(parameter.isTime(), c.time);
    EXPECT_EQ(parameter.isCycleAngle(), c.cycleAngle);
    EXPECT_EQ(parameter.isResultObject(), c.result);
}

const MeaningCase kMeanings[] = {
    {"Time", L"time", true, false, false},
    {"TimeInCapitals", L"2*TIME", true, false, false},
    {"CycleAngle", L"cycleangle", false, true, false},
    {"CycleAngleOfMixedCase", L"sin(CycleAngle)", false, true, false},
    {"Result", L"{Displacement1}", false, false, true},
    {"TimeInBraces", L"{time}", false, false, true},
    {"CycleAngleInBraces", L"{cycleangle}", false, false, true},
    {"OtherName", L"x", false, false, false},
    {"LongerThanTime", L"times", false, false, false},
    {"ShorterThanTime", L"tim", false, false, false},
};

INSTANTIATE_TEST_SUITE_P(Engine, Meaning, testing::ValuesIn(kMeanings),
                         [](const auto& tested) { return tested.param.name; });

TEST(Parameters, OutsideTheirRangeAreEmpty)
{
    MotionMEParser parser;
    ASSERT_TRUE(parser.parse(L"a+b", nullptr, nullptr));
    for (const int index : {-1, 2, 1000}) {
        const MMEP_WString& parameter = parser.getParam(index);
        EXPECT_STREQ(parameter.text, L"");
        EXPECT_FALSE(parameter.isTime() || parameter.isCycleAngle() || parameter.isResultObject());
    }
}

TEST(Parameters, OfAnUnusedParserAreNone)
{
    MotionMEParser parser;
    EXPECT_EQ(parser.getParamsNum(), 0);
    EXPECT_STREQ(parser.getParam(0).text, L"");
}

TEST(Parameters, AreThoseOfTheLastParse)
{
    MotionMEParser parser;
    ASSERT_TRUE(parser.parse(L"a+b", nullptr, nullptr));
    ASSERT_TRUE(parser.parse(L"c", nullptr, nullptr));
    ASSERT_EQ(parser.getParamsNum(), 1);
    EXPECT_STREQ(parser.getParam(0).text, L"c");
    ASSERT_TRUE(parser.parse(L"5", nullptr, nullptr));
    EXPECT_EQ(parser.getParamsNum(), 0);
}

// Two texts that differ only in case are different texts, also for the cache.
TEST(Parameters, AreSpeltAsInThisText)
{
    for (const wchar_t* name : {L"Speed", L"SPEED", L"speed", L"Speed"}) {
        MotionMEParser parser;
        ASSERT_TRUE(parser.parse((name + std::wstring(L"+1")).c_str(), nullptr, nullptr));
        ASSERT_EQ(parser.getParamsNum(), 1);
        EXPECT_STREQ(parser.getParam(0).text, name);
    }
}

TEST(Parameters, MayBeMany)
{
    constexpr int kCount = 1000;
    std::wstring text = L"0";
    for (int i = 0; i < kCount; ++i)
        text += L"+p" + std::to_wstring(i) + L"*" + std::to_wstring(i + 1);
    MotionMEParser parser;
    ICalculator* raw = nullptr;
    ASSERT_TRUE(parser.parse(text.c_str(), nullptr, &raw));
    const Calculator calculator(raw);
    ASSERT_EQ(parser.getParamsNum(), kCount);
    EXPECT_STREQ(parser.getParam(0).text, L"p0");
    EXPECT_STREQ(parser.getParam(kCount - 1).text, L"p999");

    std::vector<MMEP_Data> arguments(kCount, MMEP_Data(0.0));
    *arguments[41].getValue() = 2.0;
    *arguments[999].getValue() = 1.0;
    MMEP_Data result;
    ASSERT_TRUE(calculator->Evaluate(kCount, arguments.data(), result));
    EXPECT_EQ(*result.getValue(), 2.0 * 42 + 1000);
}

TEST(Parameters, AreFoundAgainAmongMany)
{
    constexpr int kCount = 100;
    std::wstring once = L"0";
    std::wstring again;
    for (int i = 0; i < kCount; ++i) {
        const std::wstring number = std::to_wstring(i);
        once += L"+p" + number + L"+{Result " + number + L"}";
        again += L"+P" + number + L"*2+{Result " + number + L"}*3";
    }
    MotionMEParser parser;
    ICalculator* raw = nullptr;
    ASSERT_TRUE(parser.parse((once + again + L"+{RESULT 0}").c_str(), nullptr, &raw));
    const Calculator calculator(raw);
    ASSERT_EQ(parser.getParamsNum(), 2 * kCount + 1);
    EXPECT_STREQ(parser.getParam(2 * 41).text, L"p41");
    EXPECT_STREQ(parser.getParam(2 * 41 + 1).text, L"{Result 41}");
    EXPECT_STREQ(parser.getParam(2 * kCount).text, L"{RESULT 0}");

    std::vector<MMEP_Data> arguments(2 * kCount + 1, MMEP_Data(0.0));
    *arguments[2 * 41].getValue() = 5.0;
    *arguments[2 * 99 + 1].getValue() = 7.0;
    MMEP_Data result;
    ASSERT_TRUE(calculator->Evaluate(2 * kCount + 1, arguments.data(), result));
    EXPECT_EQ(*result.getValue(), 3 * 5.0 + 4 * 7.0);
}

// Such a value is not a character, but names may contain it.
TEST(Parameters, MayHaveCharactersBelowZero)
{
    const wchar_t text[] = {wchar_t(-5), L'*', L'2', L'+', L'a', L'\0'};
    MotionMEParser parser;
    ICalculator* raw = nullptr;
    ASSERT_TRUE(parser.parse(text, nullptr, &raw));
    const Calculator calculator(raw);
    ASSERT_EQ(parser.getParamsNum(), 2);
    EXPECT_EQ(parser.getParam(0).text[0], wchar_t(-5));
    MMEP_Data arguments[] = {MMEP_Data(3.0), MMEP_Data(1.0)};
    MMEP_Data result;
    ASSERT_TRUE(calculator->Evaluate(2, arguments, result));
    EXPECT_EQ(*result.getValue(), 7.0);
}

/// A text with a given variable, and its value where that is 3; absent if it is refused.
struct GivenCase {
    const char* name;
    const wchar_t* variable;
    const wchar_t* text;
    std::optional<double> value;
};

class GivenName : public testing::TestWithParam<GivenCase> {};

TEST_P(GivenName, IsTheOneArgument)
{
    const GivenCase& c = GetParam();
    const Calculator calculator = compile(c.text, c.variable);
    ASSERT_EQ(calculator != nullptr, c.value.has_value());
    if (c.value) {
        EXPECT_EQ(evaluate(calculator, 3.0), c.value);
    }
}

const GivenCase kGivenNames[] = {
    {"IsFound", L"u", L"u^2", 9.0},
    {"IsFoundInAnyCase", L"u", L"U^2", 9.0},
    {"IsGivenInCapitals", L"Angle", L"angle+ANGLE", 6.0},
    {"NeedNotOccur", L"u", L"5", 5.0},
    {"AllowsNoOther", L"u", L"u+v", std::nullopt},
    {"AllowsNoLongerName", L"u", L"uu", std::nullopt},
    {"StandsBeforeAConstant", L"pi", L"pi^2", 9.0},
    {"StandsBeforeAConstantInAnyCase", L"pi", L"PI+1", 4.0},
    {"StandsBeforeAFunction", L"sin", L"sin+1", 4.0},
    {"StandsBeforeAFunctionCalled", L"sin", L"sin(sin)", std::nullopt},
    {"LeavesOtherFunctions", L"sin", L"sqrt(sin+1)", 2.0},
    {"MayBeTime", L"time", L"time*2", 6.0},
    {"AllowsNoTime", L"x", L"time*2", std::nullopt},
    {"AllowsNoResult", L"x", L"x*{Displacement1}", std::nullopt},
    {"MayBeAResult", L"{Speed}", L"{Speed}*2", 6.0},
    {"AllowsNoResultInAnotherCase", L"{Speed}", L"{speed}*2", std::nullopt},
    {"LettersBeyondAscii", L"\u03c9", L"\u03c9+1", 4.0},
    {"MayEndInD", L"d", L"2*d", 6.0},
    {"DoesNotMakeDegrees", L"d", L"180d*0+d", 3.0},
    {"IsNoExponent", L"e", L"1e1*e", 30.0},
    {"EmptyAllowsConstants", L"", L"2*3+0*pi", 6.0},
    {"EmptyAllowsNoName", L"", L"x", std::nullopt},
    {"EmptyAllowsNoTime", L"", L"time", std::nullopt},
    {"EmptyAllowsNoResult", L"", L"{Displacement1}", std::nullopt},
};

INSTANTIATE_TEST_SUITE_P(Engine, GivenName, testing::ValuesIn(kGivenNames),
                         [](const auto& tested) { return tested.param.name; });

TEST(MotionResult, IsOneArgument)
{
    const Calculator calculator = compileFree(L"{Linear Displacement 1}^2 + {Linear Displacement 1}");
    EXPECT_EQ(evaluate(calculator, 3.0), 12.0);
    EXPECT_EQ(evaluate(derivative(calculator), 3.0), 7.0);
}

}  // namespace
}  // namespace engine_test
