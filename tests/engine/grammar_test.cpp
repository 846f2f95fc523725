// SPDX-License-Identifier: MIT

// Values of accepted texts at x = 3. For texts that are refused see parser_test.cpp.

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
    {"DividedByANegativeNumber", "6/-x", -2.0},
    {"PowerBindsTighterThanSignBefore", "-x^2", -9.0},
    {"PowerOfANegativeNumber", "(-x)^2", 9.0},
    {"ExponentWithASign", "2^-3", 0.125},
    {"ExponentWithTwoSigns", "2^--3", 8.0},
    {"SignsBeforeAndAfterAPower", "-2^-2", -0.25},
    {"SignOfAnExponentHoldsForTheNextPower", "2^-x^2", 1.0 / 512},
    {"DoubleStarIsAPower", "2**3", 8.0},
    {"DoubleStarTakesASign", "2**-x", 0.125},
    {"PowersGroupToTheRight", "2^3^2", 512.0},
    {"DoubleStarsGroupToTheRight", "2**x**2", 512.0},
    {"BothPowersMix", "2^3**2", 512.0},
    {"BothPowersMixTheOtherWay", "2**3^2", 512.0},
    {"PowerBeforeProduct", "2*x^2", 18.0},
    {"Plus", "+x", 3.0},
    {"SignsInARow", "+-+-x", 3.0},
    {"ThreeMinuses", "---x", -3.0},
    {"SignsBetweenTerms", "x+-+-3", 6.0},
    {"MinusPlus", "2-+x", -1.0},
    {"PlusBeforeAndAfter", "+x-+2", 1.0},
    {"ThreeMinusesBetweenTerms", "x---3", 0.0},
    {"SignBeforeAParenthesis", "-(1+2)", -3.0},
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
    {"RemainderBindsLikeAProduct", "2*7%4", 2.0},
    {"ProductAfterARemainder", "7%4*2", 6.0},
    {"RemainderBeforeSum", "1+7%4", 4.0},
    {"RemainderIsExact", "1e20%3", 1.0},
    {"RemainderOfInexactNumbers", "5.3%0.1", std::fmod(5.3, 0.1)},
    {"ZeroToTheZeroth", "0^0", 1.0},
    {"ZeroToAPower", "0^x", 0.0},
    {"AnyBaseToTheZeroth", "(x-3)^0", 1.0},
    {"VariableToTheZeroth", "x^0", 1.0},
    {"NegativeBaseToAWholePower", "(-2)^x", -8.0},
    {"NegativeBaseToANegativePower", "(-2)^-3", -0.125},
    {"Blanks", " \t( 1 +\n2 )\r\n* x ", 9.0},
    {"BlankAfterAFunctionName", "sqrt (x+1)", 2.0},
    {"BlanksBetweenArguments", "min( x , 2 )", 2.0},
    {"BlanksAtBothEnds", " \t1 \n+\r 2 ", 3.0},
};

const GrammarCase kNumbers[] = {
    {"Whole", "42", 42.0},
    {"SixDecimals", "3.000000", 3.0},
    {"LeadingZeros", "007", 7.0},
    {"Fraction", "1.25", 1.25},
    {"PointFirst", ".5", 0.5},
    {"PointLast", "1.", 1.0},
    {"PointLastInASum", "1.+x", 4.0},
    {"Exponent", "1e3", 1000.0},
    {"CapitalExponent", "1E3", 1000.0},
    {"PositiveExponent", "1e+3", 1000.0},
    {"FractionAndExponent", "1.5e+2", 150.0},
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
    {"MoreDigitsThanADoubleHolds", "0.1000000000000000055511151231257827021181583404541015625", 0.1},
    {"ZeroWithAHugeExponent", "0e999999999999", 0.0},
    {"HalfwayGoesToEven", "9007199254740993", 9007199254740992.0},
    {"AboveHalfwayGoesUp", "9007199254740993.0000000000000000000001", 9007199254740994.0},
    {"Degrees", "30d", kPi / 6},
    {"DegreesOfAFraction", "1.5d", kPi / 120},
    {"DegreesAfterAnExponent", "1e1d", kPi / 18},
    {"DegreesInAProduct", "180d*x", 3 * kPi},
    {"DegreesInCapitals", "180D", kPi},
    {"DegreesBeforeAnOperator", "180d/2", kPi / 2},
    {"DegreesInAFunction", "cos(180d)", -1.0},
    {"Pi", "pi", kPi},
    {"CapitalPi", "PI", kPi},
    {"MixedPi", "Pi", kPi},
    {"DegreesPerRadian", "rtod", 180 / kPi},
    {"RadiansPerDegree", "dtor", kPi / 180},
    {"RadiansPerDegreeInMixedCase", "DtoR", kPi / 180},
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
    {"CallsInCalls", "min(max(x,2),hypot(3,4))", 3.0},
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
    {"StepAfter", "step(x,1,7,2,9)", 9.0},
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

}  // namespace
}  // namespace engine_test
