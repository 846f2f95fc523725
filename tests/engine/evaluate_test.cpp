// SPDX-License-Identifier: MIT

// Evaluation: numbers of arguments, failures, and what a family of calculators
// remembers between two evaluations.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

#include "tests/engine/compiled.h"
#include "tests/engine/random_expression.h"

namespace engine_test {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kUntouched = 12345.0;

bool evaluates(const Calculator& calculator, int count)
{
    std::vector<MMEP_Data> arguments(10, MMEP_Data(2.0));
    MMEP_Data result(kUntouched);
    const bool succeeded = calculator->Evaluate(count, arguments.data(), result);
    EXPECT_EQ(*result.getValue() == kUntouched, !succeeded);
    return succeeded;
}

TEST(ArgumentCount, IsOneForOneParameter)
{
    const Calculator calculator = compileFree(L"2*x");
    ASSERT_TRUE(calculator);
    EXPECT_TRUE(evaluates(calculator, 1));
    for (const int count : {-1, 0, 2, 10})
        EXPECT_FALSE(evaluates(calculator, count)) << count;
}

TEST(ArgumentCount, IsThatOfTheParameters)
{
    const Calculator calculator = compileFree(L"a-b/c");
    ASSERT_TRUE(calculator);
    EXPECT_TRUE(evaluates(calculator, 3));
    for (const int count : {-1, 0, 1, 2, 4})
        EXPECT_FALSE(evaluates(calculator, count)) << count;
}

TEST(ArgumentCount, IsAnyWithoutParameters)
{
    const Calculator calculator = compileFree(L"2*3");
    ASSERT_TRUE(calculator);
    for (const int count : {0, 1, 2, 10})
        EXPECT_TRUE(evaluates(calculator, count)) << count;
    MMEP_Data result;
    ASSERT_TRUE(calculator->Evaluate(0, nullptr, result));
    EXPECT_EQ(*result.getValue(), 6.0);
}

TEST(Arguments, ThatAreNullFailWhereOneIsNeeded)
{
    MMEP_Data result(kUntouched);
    EXPECT_FALSE(compileFree(L"2*x")->Evaluate(1, nullptr, result));
    EXPECT_FALSE(compileFree(L"a+b")->Evaluate(2, nullptr, result));
    EXPECT_EQ(*result.getValue(), kUntouched);
    EXPECT_TRUE(compileFree(L"2*3")->Evaluate(1, nullptr, result));
    EXPECT_EQ(*result.getValue(), 6.0);
}

TEST(Arguments, AreInTheOrderOfTheParameters)
{
    const Calculator calculator = compileFree(L"b/a-b");
    ASSERT_TRUE(calculator);
    MMEP_Data arguments[] = {MMEP_Data(12.0), MMEP_Data(4.0)};
    MMEP_Data result;
    ASSERT_TRUE(calculator->Evaluate(2, arguments, result));
    EXPECT_EQ(*result.getValue(), 12.0 / 4.0 - 12.0);
}

TEST(Arguments, AreAllReadAgain)
{
    const Calculator calculator = compileFree(L"a+10*b");
    ASSERT_TRUE(calculator);
    MMEP_Data result;
    for (const auto& [a, b] : {std::pair{1.0, 2.0}, {1.0, 3.0}, {2.0, 3.0}, {1.0, 3.0}}) {
        MMEP_Data arguments[] = {MMEP_Data(a), MMEP_Data(b)};
        ASSERT_TRUE(calculator->Evaluate(2, arguments, result));
        EXPECT_EQ(*result.getValue(), a + 10 * b);
    }
}

struct FailureCase {
    const char* name;
    std::string text;
    double x;
    std::optional<double> value;  ///< absent if the evaluation fails
};

void PrintTo(const FailureCase& c, std::ostream* os)
{
    *os << testing::PrintToString(c.text) << " at " << c.x;
}

class Failure : public testing::TestWithParam<FailureCase> {};

TEST_P(Failure, LeavesTheResultUntouched)
{
    const FailureCase& c = GetParam();
    const Calculator calculator = compile(c.text);
    ASSERT_TRUE(calculator);
    MMEP_Data argument(c.x);
    MMEP_Data result(kUntouched);
    EXPECT_EQ(calculator->Evaluate(1, &argument, result), c.value.has_value());
    EXPECT_EQ(*result.getValue(), c.value.value_or(kUntouched));
}

const FailureCase kFailures[] = {
    {"DivisionByZero", "1/x", 0.0, {}},
    {"DivisionByNegativeZero", "1/x", -0.0, {}},
    {"DivisionByOther", "1/x", 4.0, 0.25},
    {"ConstantDivisionByZero", "1/0", 1.0, {}},
    {"ConstantDivisionByZeroInASum", "x+1/0", 1.0, {}},
    {"ConstantWithoutAValue", "ln(-1)", 1.0, {}},
    {"ConstantOutOfRange", "1e308*10", 1.0, {}},
    {"TermsWhoseFactorsWouldOverflow", "1e308*x^2+1.5e308*x^2", 0.125, 1e308 / 64 + 1.5e308 / 64},
    {"ChoiceByNoValue", "if(0/0:1,2,3)", 1.0, {}},
    {"QuotientOfItselfAtZero", "x/x", 0.0, {}},
    {"QuotientOfItself", "x/x", 3.0, 1.0},
    {"ZeroTimesNoValue", "0*log(x)", -1.0, {}},
    {"ZeroTimesAValue", "0*log(x)", 2.0, 0.0},
    {"DifferenceOfNoValues", "log(x)-log(x)", -1.0, {}},
    {"ZeroThroughZero", "0/x", 0.0, {}},
    {"ZeroThroughOther", "0/x", 2.0, 0.0},
    {"PowerOfNoValue", "log(x)^1", -1.0, {}},
    {"SumWithNoValue", "0+log(x)", -1.0, {}},
    {"RemainderByZero", "x%0", 1.0, {}},
    {"RemainderByZeroArgument", "1%x", 0.0, {}},
    {"ModByZero", "mod(1,x)", 0.0, {}},
    {"RootOfANegative", "sqrt(x)", -1.0, {}},
    {"RootOfZero", "sqrt(x)", 0.0, 0.0},
    {"LogarithmOfZero", "ln(x)", 0.0, {}},
    {"DecimalLogarithmOfZero", "log10(x)", 0.0, {}},
    {"ArcSineOutOfRange", "asin(x)", 1.0000000000000002, {}},
    {"ArcSineAtTheEnd", "asin(x)", 1.0, kPi / 2},
    {"ArcCosineOutOfRange", "acos(x)", -1.0000000000000002, {}},
    {"ArcCosineAtTheEnd", "acos(x)", -1.0, kPi},
    {"FractionalPowerOfANegative", "x^0.5", -1.0, {}},
    {"NegativePowerOfZero", "x^-2", 0.0, {}},
    {"WholePowerOfANegative", "(-2)^x", 3.0, -8.0},
    {"OtherPowerOfANegative", "(-2)^x", 0.5, {}},
    {"ZeroToTheZeroth", "x^x", 0.0, 1.0},
    {"Overflow", "exp(x)", 710.0, {}},
    {"AlmostOverflow", "exp(x)", 709.0, std::exp(709.0)},
    {"OverflowOfAPower", "x^3", 1e103, {}},
    {"OverflowInTheMiddle", "x^3/x^3", 1e103, {}},
    {"ThroughAnOverflow", "1/x^5", 1e301, 0.0},
    {"PowerNearOverflow", "x^5/2^1000", 0x1p204, 0x1p20},
    {"PowerOfLargeNumbers", "x^3", -1e301, {}},
    {"PowerOfInfinity", "1/x^4", kInfinity, 0.0},
    {"PowerOfNegativeZero", "atan(1/x^5)", -0.0, -kPi / 2},
    {"EvenPowerOfNegativeZero", "atan(1/x^4)", -0.0, kPi / 2},
    {"SinkingPower", "x^5", 1e-70, 0.0},
    {"ArgumentNotANumber", "x", kNaN, {}},
    {"ArgumentInfinite", "x", kInfinity, {}},
    {"InfiniteArgumentOfAFiniteValue", "atan(x)", kInfinity, kPi / 2},
    {"ThroughAnInfiniteArgument", "1/x", kInfinity, 0.0},
    {"SineOfInfinity", "sin(x)", kInfinity, {}},
    {"ConstantAtNoNumber", "5", kNaN, 5.0},
    {"LeastWithNoNumber", "min(ln(x),1)", -1.0, {}},
    {"GreatestWithNoNumberBehind", "max(1,ln(x))", -1.0, {}},
    {"WholePartOfNoNumber", "int(ln(x))", -1.0, {}},
    {"SignOfNoNumber", "sign(ln(x))", -1.0, {}},
    {"StepWithEndsAtOnePlace", "step(x,1,2,1,3)", 0.0, {}},
    {"StepWithEndsReversed", "step(x,2,2,1,3)", 0.0, {}},
    {"StepWithEndsReversedBehind", "step(x,2,2,1,3)", 9.0, {}},
    {"StepWithEndsFromTheArgument", "step(5,0,1,x,2)", 1.0, 2.0},
    {"StepWithEndsFromTheArgumentReversed", "step(5,0,1,x,2)", -1.0, {}},
    {"Step5WithEndsAtOnePlace", "step5(x,1,2,1,3)", 0.0, {}},
    {"Step5WithEndsReversed", "step5(x,2,2,1,3)", 9.0, {}},
    {"HaversineWithEndsAtOnePlace", "havsin(x,1,2,1,3)", 9.0, {}},
    {"HaversineWithEndsReversed", "havsin(x,2,2,1,3)", 0.0, {}},
    {"StepAtNoNumber", "step(ln(x),0,1,2,3)", -1.0, {}},
    {"OnlyTheAnsweringPieceBelow", "if(x: 1, 1/0, ln(-1))", -1.0, 1.0},
    {"OnlyTheAnsweringPieceAt", "if(x: ln(x), 2, 1/x)", 0.0, 2.0},
    {"OnlyTheAnsweringPieceAtNegativeZero", "if(x: ln(x), 2, 1/x)", -0.0, 2.0},
    {"OnlyTheAnsweringPieceAbove", "if(x: ln(x), 1/0, sqrt(x))", 4.0, 2.0},
    {"TheAnsweringPieceFails", "if(x: ln(x), 2, 1)", -1.0, {}},
    {"TheConditionFails", "if(ln(x): 1, 2, 3)", -1.0, {}},
};

INSTANTIATE_TEST_SUITE_P(Engine, Failure, testing::ValuesIn(kFailures),
                         [](const auto& tested) { return tested.param.name; });

/// Value or failure, to the bit.
std::int64_t bits(std::optional<double> value)
{
    return value ? std::bit_cast<std::int64_t>(*value) : std::bit_cast<std::int64_t>(kNaN);
}

/// A text of factors that leave the range of numbers when they are multiplied first.
struct RangeCase {
    const char* name;
    const char* text;
    double x;
    double value;
    double slope;
};

void PrintTo(const RangeCase& c, std::ostream* os)
{
    *os << c.text;
}

class Range : public testing::TestWithParam<RangeCase> {};

TEST_P(Range, IsThatOfTheTextAsWritten)
{
    const RangeCase& c = GetParam();
    const Orders compiled(c.text);
    ASSERT_TRUE(compiled);
    ASSERT_TRUE(compiled.at(c.x, 0));
    EXPECT_DOUBLE_EQ(*compiled.at(c.x, 0), c.value);
    ASSERT_TRUE(compiled.at(c.x, 1));
    EXPECT_DOUBLE_EQ(*compiled.at(c.x, 1), c.slope);
}

const RangeCase kRangeCases[] = {
    {"SmallFactors", "2^-600*(2^-600*x^2)", 0x1p500, 0x1p-200, 0x1p-699},
    {"LargeFactors", "2^600*(2^600*x^2)", 0x1p-500, 0x1p200, 0x1p701},
    {"SmallMonomials", "(2^-600*x^2)*(2^-600*x^3)", 0x1p200, 0x1p-200, 5 * 0x1p-400},
    {"LargeMonomials", "(2^600*x^2)*(2^600*x^3)", 0x1p-220, 0x1p100, 5 * 0x1p320},
    {"LargestPowerOfTwoAsADivisor", "x/2^1023", 0x1.8p1023, 1.5, 0x1p-1023},
};

INSTANTIATE_TEST_SUITE_P(Engine, Range, testing::ValuesIn(kRangeCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(FamilyMemory, KeepsZeroAndMinusZeroApart)
{
    const Orders inverse("atan(1/x)");
    ASSERT_TRUE(inverse);
    EXPECT_EQ(inverse.at(0.0, 0), kPi / 2);
    EXPECT_EQ(inverse.at(-0.0, 0), -kPi / 2);
    EXPECT_EQ(inverse.at(0.0, 0), kPi / 2);

    const Orders line("2*x");
    ASSERT_TRUE(line);
    EXPECT_FALSE(std::signbit(*line.at(0.0, 0)));
    EXPECT_EQ(line.at(-0.0, 1), 2.0);
    EXPECT_TRUE(std::signbit(*line.at(-0.0, 0)));
    EXPECT_EQ(line.at(0.0, 1), 2.0);
    EXPECT_FALSE(std::signbit(*line.at(0.0, 0)));
}

TEST(FamilyMemory, DoesNotKeepNotANumber)
{
    const Orders constantPiece("min(1,x)*0+x^2");
    ASSERT_TRUE(constantPiece);
    EXPECT_EQ(constantPiece.at(2.0, 0), 4.0);
    EXPECT_EQ(constantPiece.at(kNaN, 0), std::nullopt);
    EXPECT_EQ(constantPiece.at(kNaN, 1), std::nullopt);
    EXPECT_EQ(constantPiece.at(2.0, 1), 4.0);
    EXPECT_EQ(constantPiece.at(2.0, 0), 4.0);
}

TEST(FamilyMemory, DoesNotOutliveAFailure)
{
    const Orders root("sqrt(x)+x");
    ASSERT_TRUE(root);
    EXPECT_EQ(root.at(0.0, 0), 0.0);
    EXPECT_EQ(root.at(0.0, 1), std::nullopt);
    EXPECT_EQ(root.at(0.0, 0), 0.0);
    EXPECT_EQ(root.at(-4.0, 0), std::nullopt);
    EXPECT_EQ(root.at(4.0, 0), 6.0);
    EXPECT_EQ(root.at(4.0, 1), 1.25);
}

TEST(FamilyMemory, HoldsNothingBeforeTheFirstEvaluation)
{
    // Registers that start as zeros must not be taken for those of x = 0.
    for (int order = 0; order < 4; ++order) {
        const Orders compiled("cos(x)+exp(2*x)");
        ASSERT_TRUE(compiled);
        const double expected[] = {2.0, 2.0, 3.0, 8.0};
        EXPECT_EQ(compiled.at(0.0, order), expected[order]);
    }
}

TEST(FamilyMemory, GrowsWhenADerivativeIsAdded)
{
    const Calculator value = compile("x^4+sin(x)");
    EXPECT_EQ(evaluate(value, 2.0), 16.0 + std::sin(2.0));
    const Calculator first = derivative(value);
    EXPECT_EQ(evaluate(first, 2.0), 32.0 + std::cos(2.0));
    const Calculator second = derivative(first);
    const Calculator secondAgain = derivative(first);
    const Calculator firstAgain = derivative(value);
    EXPECT_EQ(evaluate(second, 2.0), 48.0 - std::sin(2.0));
    EXPECT_EQ(evaluate(secondAgain, 2.0), 48.0 - std::sin(2.0));
    EXPECT_EQ(evaluate(firstAgain, 2.0), 32.0 + std::cos(2.0));
    EXPECT_EQ(evaluate(value, 2.0), 16.0 + std::sin(2.0));
}

// Whatever was evaluated before, an order at a point has the value that a new family
// returns.
TEST(FamilyMemory, ChangesNoResult)
{
    constexpr int kExpressions = 300;
    constexpr int kQuestions = 60;
    const double points[] = {0.0, -0.0, 1.5, -2.25, 1e-300, kInfinity, kNaN};
    Generator generator(7);
    for (int i = 0; i < kExpressions; ++i) {
        const std::string text = generator.text(generator.tree(3));
        const Orders asked(text);
        ASSERT_TRUE(asked) << text;
        for (int question = 0; question < kQuestions; ++question) {
            const int order = generator.whole(0, 3);
            const double x = points[generator.whole(0, static_cast<int>(std::size(points)) - 1)];
            const std::optional<double> value = asked.at(x, order);
            const Orders unasked(text);
            ASSERT_EQ(bits(value), bits(unasked.at(x, order))) << text << "\norder " << order << " at " << x;
        }
    }
}

TEST(Families, OfOneTextAreIndependent)
{
    const Orders one("sin(x)*x^3");
    const Orders other("sin(x)*x^3");
    ASSERT_TRUE(one && other);
    const std::optional<double> first = one.at(1.0, 2);
    const std::optional<double> second = other.at(2.0, 2);
    EXPECT_EQ(one.at(1.0, 2), first);
    EXPECT_EQ(other.at(2.0, 2), second);
    EXPECT_EQ(other.at(1.0, 2), first);
    EXPECT_EQ(one.at(2.0, 2), second);
}

TEST(Release, ComesInAnyOrder)
{
    int order[] = {0, 1, 2, 3};
    do {
        ICalculator* family[4] = {compile("x^4").release(), nullptr, nullptr, nullptr};
        for (int i = 1; i < 4; ++i) {
            family[i] = family[i - 1]->differentiate(0);
            ASSERT_NE(family[i], nullptr);
        }
        const double expected[] = {16.0, 32.0, 48.0, 48.0};
        for (int i = 0; i < 4; ++i) {
            EXPECT_TRUE(family[order[i]]->Release());
            for (int k = i + 1; k < 4; ++k) {
                MMEP_Data argument(2.0);
                MMEP_Data result;
                EXPECT_TRUE(family[order[k]]->Evaluate(1, &argument, result));
                EXPECT_EQ(*result.getValue(), expected[order[k]]);
            }
        }
    } while (std::next_permutation(std::begin(order), std::end(order)));
}

TEST(Release, OfTheValueLeavesItsDerivativeDifferentiable)
{
    Calculator value = compile("x^4");
    const Calculator first = derivative(value);
    value.reset();
    const Calculator second = derivative(first);
    EXPECT_EQ(evaluate(second, 2.0), 48.0);
}

TEST(Calculator, OutlivesItsParser)
{
    Calculator calculator;
    {
        MotionMEParser parser;
        ICalculator* raw = nullptr;
        ASSERT_TRUE(parser.parse(L"2*time", nullptr, &raw));
        calculator.reset(raw);
        ASSERT_TRUE(parser.parse(L"a+b+c", nullptr, nullptr));
    }
    EXPECT_EQ(evaluate(calculator, 4.0), 8.0);
}

}  // namespace
}  // namespace engine_test
