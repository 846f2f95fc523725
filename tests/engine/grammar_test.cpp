// SPDX-License-Identifier: MIT

// What the engine takes and what it refuses, with the value at x = 3.

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <optional>

#include "tests/engine/compiled.h"

namespace engine_test {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kX = 3.0;

struct GrammarCase {
    const char* name;
    std::string text;
    double value;
};

void PrintTo(const GrammarCase& c, std::ostream* os)
{
    *os << testing::PrintToString(c.text);
}

class Grammar : public testing::TestWithParam<GrammarCase> {};

TEST_P(Grammar, GivesTheValue)
{
    const GrammarCase& c = GetParam();
    const Calculator calculator = compile(c.text);
    ASSERT_TRUE(calculator);
    const std::optional<double> value = evaluate(calculator, kX);
    ASSERT_TRUE(value);
    EXPECT_DOUBLE_EQ(*value, c.value);
}

const GrammarCase kSigns[] = {
    {"MinusANegativeNumber", "x--3.000000", 6.0},
    {"TimesANegativeNumber", "2*-3", -6.0},
    {"ThroughANegativeNumber", "6/-x", -2.0},
    {"PowerBindsTighterThanSignBefore", "-x^2", -9.0},
    {"PowerOfANegativeNumber", "(-x)^2", 9.0},
    {"PowerTakesASignBehind", "2^-3", 0.125},
    {"PowerTakesTwoSignsBehind", "2^--3", 8.0},
    {"SignBeforeAndBehindAPower", "-2^-2", -0.25},
    {"SignBehindAPowerHoldsTheNextPower", "2^-x^2", 1.0 / 512},
    {"DoubleStarIsAPower", "2**3", 8.0},
    {"DoubleStarTakesASign", "2**-x", 0.125},
    {"PowersGroupToTheRight", "2^3^2", 512.0},
    {"DoubleStarsGroupToTheRight", "2**x**2", 512.0},
    {"BothPowersMix", "2^3**2", 512.0},
    {"PowerBeforeProduct", "2*x^2", 18.0},
    {"Plus", "+x", 3.0},
    {"SignsInARow", "+-+-x", 3.0},
    {"ThreeMinuses", "---x", -3.0},
    {"SignsBetweenTerms", "x+-+-3", 6.0},
    {"MinusPlus", "2-+x", -1.0},
};

const GrammarCase kOperators[] = {
    {"SumsGroupToTheLeft", "10-x-2", 5.0},
    {"ProductsGroupToTheLeft", "24/4/x", 2.0},
    {"QuotientThenProduct", "12/x*2", 8.0},
    {"ProductBeforeSum", "1+2*x", 7.0},
    {"Parentheses", "(1+2)*x", 9.0},
    {"ManyParentheses", "(((1+((2)))))*((x))", 9.0},
    {"Remainder", "x%2", 1.0},
    {"RemainderOfFractions", "7.5%2", 1.5},
    {"RemainderHasTheSignOfTheDividend", "(-7)%4", -3.0},
    {"RemainderIgnoresTheSignOfTheDivisor", "7%-4", 3.0},
    {"SignBeforeARemainder", "-7%4", -3.0},
    {"RemainderStandsWithProducts", "2*7%4", 2.0},
    {"ProductBehindARemainder", "7%4*2", 6.0},
    {"RemainderBeforeSum", "1+7%4", 4.0},
    {"RemainderIsExact", "1e20%3", 1.0},
    {"RemainderOfInexactNumbers", "5.3%0.1", std::fmod(5.3, 0.1)},
    {"ZeroToTheZeroth", "0^0", 1.0},
    {"ZeroToAPower", "0^x", 0.0},
    {"AnyBaseToTheZeroth", "(x-3)^0", 1.0},
    {"NegativeBaseToAWholePower", "(-2)^x", -8.0},
    {"NegativeBaseToANegativePower", "(-2)^-3", -0.125},
    {"Blanks", " \t( 1 +\n2 )\r\n* x ", 9.0},
    {"BlankBehindAFunctionName", "sqrt (x+1)", 2.0},
    {"BlanksBetweenArguments", "min( x , 2 )", 2.0},
};

const GrammarCase kNumbers[] = {
    {"Whole", "42", 42.0},
    {"SixDecimals", "3.000000", 3.0},
    {"LeadingZeros", "007", 7.0},
    {"PointFirst", ".5", 0.5},
    {"PointLast", "1.", 1.0},
    {"PointLastInASum", "1.+x", 4.0},
    {"Exponent", "1e3", 1000.0},
    {"CapitalExponent", "1E3", 1000.0},
    {"PositiveExponent", "1e+3", 1000.0},
    {"NegativeExponent", "25e-1", 2.5},
    {"PointFirstAndExponent", ".5e1", 5.0},
    {"PointLastAndExponent", "1.e2", 100.0},
    {"ExponentThenSum", "1e3+x", 1003.0},
    {"Largest", "1.7976931348623157e308", std::numeric_limits<double>::max()},
    {"SmallestNormal", "2.2250738585072014e-308", std::numeric_limits<double>::min()},
    {"Denormal", "4.9e-324", std::numeric_limits<double>::denorm_min()},
    {"TooSmallIsZero", "1e-400", 0.0},
    {"ManyDigits", "3.14159265358979323846264338327950288419716939937510", kPi},
    {"NearestDouble", "0.1", 0.1},
    {"HalfwayGoesToEven", "9007199254740993", 9007199254740992.0},
    {"AboveHalfwayGoesUp", "9007199254740993.0000000000000000000001", 9007199254740994.0},
    {"Degrees", "30d", kPi / 6},
    {"DegreesOfAFraction", "1.5d", kPi / 120},
    {"DegreesBehindAnExponent", "1e1d", kPi / 18},
    {"DegreesInAProduct", "180d*x", 3 * kPi},
    {"DegreesInAFunction", "cos(180d)", -1.0},
    {"Pi", "pi", kPi},
    {"CapitalPi", "PI", kPi},
    {"MixedPi", "Pi", kPi},
    {"DegreesPerRadian", "rtod", 180 / kPi},
    {"RadiansPerDegree", "dtor", kPi / 180},
};

const GrammarCase kFunctions[] = {
    {"CapitalFunction", "SQRT(x+1)", 2.0},
    {"MixedFunction", "Sqrt(x+1)", 2.0},
    {"CapitalArgument", "X+1", 4.0},
    {"NaturalLogarithm", "log(x)", std::log(3.0)},
    {"OtherNaturalLogarithm", "ln(x)", std::log(3.0)},
    {"DecimalLogarithm", "log10(1000)", 3.0},
    {"CubeRootOfANegative", "cbrt(-27)", -3.0},
    {"ArcTangentOfTheLeftHalf", "atan2(0,-1)", kPi},
    {"ArcTangentOfTheThirdQuadrant", "atan2(-1,-1)", -0.75 * kPi},
    {"ArcTangentOfTheOrigin", "atan2(0,0)", 0.0},
    {"Hypotenuse", "hypot(x,4)", 5.0},
    {"HypotenuseOfLargeSides", "hypot(3e300,4e300)", 5e300},
    {"HypotenuseOfSmallSides", "hypot(3e-300,4e-300)", 5e-300},
    {"SignOfAPositive", "sign(x)", 1.0},
    {"SignOfANegative", "sign(-x)", -1.0},
    {"SignOfZero", "sign(x-3)", 0.0},
    {"StepOfNumbersAlone", "step(1,0,2,4,2)", 2.0},
    {"PolynomialOfAHighDegree", "poly(x,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,3,5)", 13 * 262144.0},  // 2^18
    {"SignTaken", "sign(5,-x)", -5.0},
    {"SignTakenFromANegative", "sign(-5,x)", 5.0},
    {"SignTakenFromZero", "sign(-5,x-3)", 5.0},
    {"SignTakenFromNegativeZero", "sign(-5,-0)", 5.0},
    {"LeastOfTwo", "min(x,2)", 2.0},
    {"LeastOfMany", "min(5,x,1,4)", 1.0},
    {"GreatestOfTwo", "max(x,2)", 3.0},
    {"GreatestOfMany", "max(2,x,9,4,5)", 9.0},
    {"RemainderFunction", "mod(7,x)", 1.0},
    {"RemainderFunctionOfANegative", "mod(-7,x)", -1.0},
    {"RemainderFunctionByANegative", "mod(7,-x)", 1.0},
    {"PositiveDifference", "dim(x,1)", 2.0},
    {"NoPositiveDifference", "dim(x,5)", 0.0},
    {"WholePart", "int(2.9)", 2.0},
    {"WholePartOfANegative", "int(-2.9)", -2.0},
    {"NearestWhole", "nint(2.4)", 2.0},
    {"HalfGoesAway", "nint(2.5)", 3.0},
    {"NegativeHalfGoesAway", "nint(-2.5)", -3.0},
    {"AlmostAHalf", "nint(0.49999999999999994)", 0.0},
    {"LargeWhole", "nint(4503599627370497)", 4503599627370497.0},
    {"Floor", "floor(-2.5)", -3.0},
    {"Ceiling", "ceil(-2.5)", -2.0},
    {"ChoiceBelow", "if(x-5: 7, 8, 9)", 7.0},
    {"ChoiceAt", "if(x-3: 7, 8, 9)", 8.0},
    {"ChoiceAbove", "if(x: 7, 8, 9)", 9.0},
    {"ChoiceWithAComma", "IF(x, 7, 8, 9)", 9.0},
    {"ChoiceInAChoice", "if(x: 1, 2, if(-x: 3, 4, 5))", 3.0},
    {"StepBefore", "step(x,4,7,8,9)", 7.0},
    {"StepAtItsStart", "step(x,3,7,8,9)", 7.0},
    {"StepAtItsEnd", "step(x,1,7,3,9)", 9.0},
    {"StepBehind", "step(x,1,7,2,9)", 9.0},
    {"StepMidway", "step(x,1,7,5,9)", 8.0},
    {"StepAtAQuarter", "step(x,2,0,6,64)", 10.0},
    {"Step5AtAQuarter", "step5(x,2,0,6,1024)", 106.0},
    {"Step5Midway", "step5(x,1,7,5,9)", 8.0},
    {"HaversineAtAThird", "havsin(x,2,0,5,8)", 2.0},
    {"HaversineMidway", "havsin(x,1,7,5,9)", 8.0},
    {"PolynomialOfOneTerm", "poly(x,1,7)", 7.0},
    {"Polynomial", "poly(x,1,7,-2,3)", 15.0},
    {"ChebyshevOfOneTerm", "cheby(x,1,7)", 7.0},
    // T1(2) = 2, T2(2) = 7, T3(2) = 26
    {"Chebyshev", "cheby(x,1,7,-2,3,10)", 284.0},
    {"SimpleHarmonic", "shf(x,1,2,90d,90d,4)", 2 * std::sin(kPi / 2) + 4},
    {"SineSeries", "forsin(x,2,90d,5,2,1,3)", 4.0},
    {"CosineSeries", "forcos(x,2,90d,5,0,1,0)", 4.0},
    {"SeriesOfOneTerm", "forsin(x,2,90d,5)", 5.0},
    {"General", "10*sin(2*pi*x)+x^2*exp(-x)/(1+x)", 10 * std::sin(2 * kPi * 3) + 9 * std::exp(-3.0) / 4},
};

const auto nameOf = [](const auto& tested) { return tested.param.name; };
INSTANTIATE_TEST_SUITE_P(Signs, Grammar, testing::ValuesIn(kSigns), nameOf);
INSTANTIATE_TEST_SUITE_P(Operators, Grammar, testing::ValuesIn(kOperators), nameOf);
INSTANTIATE_TEST_SUITE_P(Numbers, Grammar, testing::ValuesIn(kNumbers), nameOf);
INSTANTIATE_TEST_SUITE_P(Functions, Grammar, testing::ValuesIn(kFunctions), nameOf);

struct RefusedCase {
    const char* name;
    std::string text;
};

void PrintTo(const RefusedCase& c, std::ostream* os)
{
    *os << testing::PrintToString(c.text);
}

class Refusal : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refusal, LeavesThePointerAndHasNoParameters)
{
    const Calculator earlier = compile("1");
    ASSERT_TRUE(earlier);
    ICalculator* calculator = earlier.get();
    const std::wstring text = wide(GetParam().text);
    wchar_t variable[] = L"x";
    MotionMEParser parser;
    EXPECT_FALSE(parser.parse(text.c_str(), variable, &calculator));
    EXPECT_FALSE(parser.parseSucceeded);
    EXPECT_EQ(parser.getParamsNum(), 0);
    EXPECT_EQ(calculator, earlier.get());
}

const RefusedCase kRefused[] = {
    {"Empty", ""},
    {"BlankOnly", " \t\n"},
    {"LonePlus", "+"},
    {"LoneMinus", "-"},
    {"LoneStar", "*"},
    {"LoneSlash", "/"},
    {"LonePower", "^"},
    {"LoneRemainder", "%"},
    {"LonePoint", "."},
    {"LoneComma", ","},
    {"LoneColon", ":"},
    {"OperatorBehind", "x+"},
    {"OperatorBefore", "*x"},
    {"PowerBehind", "x^"},
    {"TwoPowers", "x^^2"},
    {"ThreeStars", "x***2"},
    {"StarsApart", "2* *3"},
    {"StarSlash", "x*/2"},
    {"NoOperatorBetweenNumbers", "2 3"},
    {"NoOperatorBehindANumber", "2x"},
    {"NoOperatorBehindAName", "x 2"},
    {"NoOperatorBetweenParentheses", "(2)(3)"},
    {"NoOperatorBeforeAParenthesis", "2(3)"},
    {"NoOperatorBeforeAConstant", "2pi"},
    {"NoOperatorBeforeAFunction", "2sin(x)"},
    {"TwoPoints", "1..2"},
    {"TwoFractions", "1.2.3"},
    {"ExponentWithoutDigits", "1e"},
    {"ExponentWithASignOnly", "1e+"},
    {"ExponentWithAPoint", "1e.5"},
    {"TooLarge", "1e400"},
    {"TooLargeNegative", "-1e400"},
    {"TooLargeInAFunction", "atan(1e400)"},
    {"CommaForAPoint", "1,5"},
    {"DegreesThenADigit", "2d3"},
    {"DegreesThenALetter", "2dx"},
    {"DegreesApart", "2 d"},
    {"DegreesOfAName", "x d"},
    {"Hexadecimal", "0x10"},
    {"Infinity", "inf"},
    {"NotANumber", "nan"},
    {"NoConstantE", "e"},
    {"OpenParenthesis", "(x"},
    {"ClosingParenthesis", "x)"},
    {"NothingInParentheses", "()"},
    {"ParenthesesReversed", ")x("},
    {"OpenArguments", "sin(x"},
    {"NoArguments", "sin()"},
    {"NoParentheses", "sin"},
    {"ArgumentWithoutParentheses", "sin x"},
    {"TooManyArguments", "sin(x,2)"},
    {"TooFewArguments", "atan2(x)"},
    {"OneToChooseFrom", "min(x)"},
    {"NoneToChooseFrom", "max()"},
    {"ThreeArgumentsOfAChoice", "if(x,1,2)"},
    {"FiveArgumentsOfAChoice", "if(x,1,2,3,4)"},
    {"ColonInAnotherPlace", "if(x,1:2,3)"},
    {"ColonOutsideAChoice", "atan2(x:2)"},
    {"ColonOutsideParentheses", "x:2"},
    {"CommaOutsideParentheses", "x,2"},
    {"CommaInParentheses", "(x,2)"},
    {"EmptyArgument", "min(x,,2)"},
    {"CommaBehindTheLastArgument", "min(x,2,)"},
    {"ThreeSigns", "sign(1,2,3)"},
    {"FourArgumentsOfAStep", "step(x,0,0,1)"},
    {"SixArgumentsOfAStep", "step(x,0,0,1,1,1)"},
    {"PolynomialWithoutTerms", "poly(x,1)"},
    {"ChebyshevWithoutTerms", "cheby(x,1)"},
    {"SineSeriesWithoutTerms", "forsin(x,1,2)"},
    {"CosineSeriesWithoutTerms", "forcos(x,1,2)"},
    {"FiveArgumentsOfAHarmonic", "shf(x,1,2,3,4)"},
    {"UnknownFunction", "sine(x)"},
    {"UnknownName", "x+y"},
    {"TimeBesideTheGivenName", "x+time"},
    {"ResultBesideTheGivenName", "x+{Displacement1}"},
    {"CallOfAConstant", "pi(2)"},
    {"CallOfTheArgument", "x(2)"},
    {"ConstantWithADigit", "pi2"},
    {"OpenBrace", "{x"},
    {"ClosingBrace", "x}"},
    {"EmptyBraces", "{}"},
    {"Equals", "x=3"},
    {"Semicolon", "x;"},
    {"Comparison", "x<3"},
    {"Quotes", "\"x\""},
    {"Apostrophe", "'x"},
    {"Dollar", "$x"},
    {"Hash", "#x"},
    {"Exclamation", "x!"},
    {"Ampersand", "x&1"},
    {"Bar", "|x|"},
    {"Brackets", "[x]"},
    {"Backslash", "x\\2"},
    {"ControlCharacter", "x\001"},
};

INSTANTIATE_TEST_SUITE_P(Engine, Refusal, testing::ValuesIn(kRefused), nameOf);

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

TEST(Parse, AnswersWhatParseSucceededSays)
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
}  // namespace engine_test
