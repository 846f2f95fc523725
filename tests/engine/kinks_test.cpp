// SPDX-License-Identifier: MIT

// Derivatives that the rules of calculus do not define: at kinks, jumps, and ends of
// domains. Also those of constants, and derivatives above the third.

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "tests/engine/compiled.h"

namespace engine_test {
namespace {

constexpr double kPi = std::numbers::pi;

/// A text with its value and three derivatives at one point; absent ones fail.
struct KinkCase {
    const char* name;
    std::string text;
    double x;
    std::optional<double> orders[4];
};

void PrintTo(const KinkCase& c, std::ostream* os)
{
    *os << testing::PrintToString(c.text) << " at " << c.x;
}

class Kink : public testing::TestWithParam<KinkCase> {};

TEST_P(Kink, TakesTheDerivativeOfThePieceThatGivesTheValue)
{
    const KinkCase& c = GetParam();
    const Orders compiled(c.text);
    ASSERT_TRUE(compiled);
    for (int order = 0; order < 4; ++order)
        EXPECT_EQ(compiled.at(c.x, order), c.orders[order]) << "order " << order;
}

const KinkCase kKinks[] = {
    {"AbsoluteAtZero", "abs(x)", 0.0, {0, 0, 0, 0}},
    {"AbsoluteAtNegativeZero", "abs(x)", -0.0, {0, 0, 0, 0}},
    {"AbsoluteBelow", "abs(x)", -2.0, {2, -1, 0, 0}},
    {"AbsoluteOfASquareAtZero", "abs(x^2-4)", 2.0, {0, 0, 0, 0}},
    {"SignAtZero", "sign(x)", 0.0, {0, 0, 0, 0}},
    {"SignTakenAtZero", "sign(x^2+1,x)", 0.0, {1, 0, 2, 0}},
    {"TieOfLeastGoesToTheFirst", "min(2*x,3*x)", 0.0, {0, 2, 0, 0}},
    {"TieOfLeastReversed", "min(3*x,2*x)", 0.0, {0, 3, 0, 0}},
    {"TieOfGreatestGoesToTheFirst", "max(2*x,3*x)", 0.0, {0, 2, 0, 0}},
    {"TieOfThreeGoesToTheFirst", "max(2*x,3*x,4*x)", 0.0, {0, 2, 0, 0}},
    {"TieOfTheLastTwoGoesToTheSecond", "min(5,3*x,2*x)", 0.0, {0, 3, 0, 0}},
    {"TieOfZeros", "min(x,-x)", -0.0, {0, 1, 0, 0}},
    {"TieOfDifferenceGoesToTheFirst", "dim(3*x,2*x)", 0.0, {0, 1, 0, 0}},
    {"TieOfDifferenceWithAConstant", "dim(x,1)", 1.0, {0, 1, 0, 0}},
    // The angle jumps where the point crosses the left half of the axis. There it is pi,
    // whatever the sign of the zero: -0 + 0 is 0, and so is x(x + 1) at -1.
    {"AngleOnTheLeftHalf", "atan2(x,-1)", 0.0, {kPi, -1, 0, 2}},
    {"AngleOfNegativeZero", "atan2(x,-1)", -0.0, {kPi, -1, 0, 2}},
    {"AngleOfZeroPlusNegativeZero", "atan2(0+x,-1)", -0.0, {kPi, -1, 0, 2}},
    {"AngleOfAZeroMadeByASign", "atan2(-x,-1)", 0.0, {kPi, 1, 0, -2}},
    {"AngleOfAZeroMadeByASum", "atan2(x^2+x,-1)", -1.0, {kPi, 1, -2, -2}},
    {"AngleOfAZeroMadeByFolding", "x+atan2(-0,-1)", 0.0, {kPi, 1, 0, 0}},
    {"AngleOfTheOriginFromTheLeft", "x+atan2(0,-0)", 2.0, {2, 1, 0, 0}},
    {"RemainderAtItsJump", "mod(x,2)", 4.0, {0, 1, 0, 0}},
    {"RemainderOperatorAtItsJump", "x%2", 4.0, {0, 1, 0, 0}},
    {"FloorAtItsJump", "floor(x)", 2.0, {2, 0, 0, 0}},
    {"CeilingAtItsJump", "ceil(x)", 2.0, {2, 0, 0, 0}},
    {"WholePartAtItsJump", "int(x)", 2.0, {2, 0, 0, 0}},
    {"NearestWholeAtItsJump", "nint(x)", 2.5, {3, 0, 0, 0}},
    {"StepBefore", "step(x,1,2,3,4)", 0.5, {2, 0, 0, 0}},
    {"StepBehind", "step(x,1,2,3,4)", 3.5, {4, 0, 0, 0}},
    {"StepMidway", "step(x,1,2,3,4)", 2.0, {3, 1.5, 0, -3}},
    {"StepWithEndsReversed", "step(x,3,2,1,4)", 0.5, {{}, {}, {}, {}}},
    {"ChoiceBelow", "if(x: 1/x, x^2, x^3)", -2.0, {-0.5, -0.25, -0.25, -0.375}},
    {"ChoiceAt", "if(x: 1/x, x^2, ln(x))", 0.0, {0, 0, 2, 0}},
    {"ChoiceAbove", "if(x: ln(-x)/0, 1/0, x^3)", 2.0, {8, 12, 12, 6}},
    {"ConditionCountsAsNothing", "if(sin(x): x, 1, x^2)", 2.0, {4, 4, 2, 0}},
    {"SquareAtZero", "x^2", 0.0, {0, 0, 2, 0}},
    {"FirstPowerAtZero", "x^1", 0.0, {0, 1, 0, 0}},
    {"ZerothPowerAtZero", "x^0", 0.0, {1, 0, 0, 0}},
    {"RootAtZero", "sqrt(x)", 0.0, {0, {}, {}, {}}},
    {"CubeRootAtZero", "cbrt(x)", 0.0, {0, {}, {}, {}}},
    {"CubeOfANegative", "x^3", -2.0, {-8, 12, -12, 6}},
    {"NegativePowerOfANegative", "x^-1", -2.0, {-0.5, -0.25, -0.25, -0.375}},
    {"OddFractionAtZero", "x^2.5", 0.0, {0, 0, 0, {}}},
    {"CosineAtZero", "cos(x)", 0.0, {1, 0, -1, 0}},
    {"ExponentialAtZero", "exp(-x)", 0.0, {1, -1, 1, -1}},
    {"Constant", "5", 1.0, {5, 0, 0, 0}},
    {"ConstantFromFunctions", "sqrt(16)+pi-pi", 1.0, {4, 0, 0, 0}},
    {"ConstantWithoutAValue", "1/0", 1.0, {{}, 0, 0, 0}},
};

INSTANTIATE_TEST_SUITE_P(Engine, Kink, testing::ValuesIn(kKinks),
                         [](const auto& tested) { return tested.param.name; });

TEST(Differentiation, OfAConstantWithoutANameIsZero)
{
    const Calculator constant = compileFree(L"2*3");
    const Calculator first = derivative(constant);
    ASSERT_TRUE(first);
    MMEP_Data result(7.0);
    EXPECT_TRUE(first->Evaluate(0, nullptr, result));
    EXPECT_EQ(*result.getValue(), 0.0);
    EXPECT_EQ(evaluate(derivative(first), 1.0), 0.0);
}

TEST(Differentiation, OfTwoParametersIsNull)
{
    const Calculator calculator = compileFree(L"a*b");
    ASSERT_TRUE(calculator);
    EXPECT_FALSE(derivative(calculator));
}

TEST(Differentiation, IgnoresItsArgument)
{
    const Calculator calculator = compile("x^2");
    for (const int unused : {-1, 0, 1, 7}) {
        const Calculator first(calculator->differentiate(unused));
        EXPECT_EQ(evaluate(first, 3.0), 6.0);
    }
}

Calculator differentiated(const std::string& text, int times)
{
    Calculator calculator = compile(text);
    for (int i = 0; i < times; ++i)
        calculator = derivative(calculator);
    return calculator;
}

TEST(Differentiation, GoesOnPastTheThird)
{
    EXPECT_EQ(evaluate(differentiated("x^10", 10), 1.5), 3628800.0);
    EXPECT_EQ(evaluate(differentiated("x^10", 11), 1.5), 0.0);
    EXPECT_EQ(evaluate(differentiated("sin(x)", 8), 1.5), std::sin(1.5));
    EXPECT_EQ(evaluate(differentiated("poly(x,1,1,1,1,1,1,1,1)", 6), 9.0), 720.0);
    // d^6/dx^6 1/(1+x) = 720/(1+x)^7; 2^7 = 128
    EXPECT_NEAR(*evaluate(differentiated("1/(1+x)", 6), 1.0), 720.0 / 128, 1e-12);
    // d^5/dx^5 tan x at 0 is 16
    EXPECT_NEAR(*evaluate(differentiated("tan(x)", 5), 0.0), 16.0, 1e-12);
    // d^6/dx^6 x sin x = 6 cos x - x sin x
    EXPECT_NEAR(*evaluate(differentiated("x*sin(x)", 6), 2.0), 6 * std::cos(2.0) - 2 * std::sin(2.0), 1e-12);
    // d^4/dx^4 exp(x^2) at 0 is 12
    EXPECT_NEAR(*evaluate(differentiated("exp(x^2)", 4), 0.0), 12.0, 1e-12);
}

}  // namespace
}  // namespace engine_test
