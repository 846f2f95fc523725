// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/mfcurves.h"
#include "mfcurves/platform/encoding.h"
#include "tests/reliability/timeTest.h"

// Texts of expressions: parsing, differentiating, evaluating.

namespace time_test {
namespace {

class ExpressionTime : public Time {
protected:
    struct Release {
        void operator()(ICalculator* calculator) const { calculator->Release(); }
    };
    using Calculator = std::unique_ptr<ICalculator, Release>;

    static bool evaluate(ICalculator& calculator, double x)
    {
        MMEP_Data argument(x);
        MMEP_Data result;
        return calculator.Evaluate(1, &argument, result);
    }

    // Parses, and differentiates as long as there is a derivative, up to the third.
    void compileAndDifferentiate(const std::wstring& text, const wchar_t* variable, double x)
    {
        constexpr const char* kDifferentiating[] = {"first derivative", "second derivative",
                                                    "third derivative"};
        std::wstring name = variable == nullptr ? L"" : variable;
        ICalculator* parsed = nullptr;
        watch_.time("parse", [&] {
            MotionMEParser().parse(text.c_str(), variable == nullptr ? nullptr : name.data(), &parsed);
        });
        std::vector<Calculator> orders;
        orders.emplace_back(parsed);
        for (const char* call : kDifferentiating) {
            if (orders.back() == nullptr)
                break;
            watch_.time("evaluate", [&] { evaluate(*orders.back(), x); });
            orders.emplace_back(watch_.time(call, [&] { return orders.back()->differentiate(0); }));
        }
        watch_.time("release", [&] { orders.clear(); });
    }
};

TEST_P(ExpressionTime, CompilingAndDifferentiating)
{
    const std::wstring text = mf::platform::widen(input());
    compileAndDifferentiate(text, L"x", 0.75);
    compileAndDifferentiate(text, nullptr, 0.75);
}

TEST_P(ExpressionTime, OfAFunction)
{
    const CString text(mf::platform::widen(input()));
    mfFunctionData_c function;
    ASSERT_TRUE(function.initialize());
    function.setFunctionType(mf::FunctionType_Expression);
    auto& expression = static_cast<mfFunctionExpression_c&>(*function.getFunctionExpression());
    expression.setMotorDependentVar(mf::MotorDriveType_Displacment);
    expression.setDomain(0.5, 1.0);
    expression.setMathExpression(text);
    double y[4];
    watch_.time("calculateValue(x)", [&] { expression.calculateValue(0.75, y[0]); });
    expression.setPlottingPointCount(100);
    watch_.time("calculateValue(x), four orders",
                [&] { expression.calculateValue(0.75, y[0], y[1], y[2], y[3]); });
}

const TimeCase kExpressions[] = {
    {"Sum", [] { return "x" + filled("+x"); }},
    {"SumOfDifferentTerms", [] { return "x" + numbered([](int i) { return "+x*" + std::to_string(i); }); }},
    {"SumOfCalls", [] { return "x" + numbered([](int i) { return "+sin(x+" + std::to_string(i) + ")"; }); }},
    {"SumOfQuotients",
     [] { return "x" + numbered([](int i) { return "+1/(x+" + std::to_string(i) + ")"; }); }},
    {"SumOfRemainders",
     [] { return "x" + numbered([](int i) { return "+(x*1e300)%" + std::to_string(i + 3) + "e-300"; }); }},
    {"RemaindersOfNumbers", [] { return "x" + filled("+9e307%3e-308"); }},
    {"Product", [] { return "x" + filled("*x"); }},
    {"ProductOfSums", [] { return "x" + numbered([](int i) { return "*(x+" + std::to_string(i) + ")"; }); }},
    {"ProductOfAFewThousandCalls",
     [] { return "x" + numbered([](int i) { return "*sin(x+" + std::to_string(i) + ")"; }, 20'000); }},
    {"Quotient", [] { return "x" + filled("/x"); }},
    {"QuotientOfSums", [] { return "x" + numbered([](int i) { return "/(x+" + std::to_string(i) + ")"; }); }},
    {"Remainder", [] { return "x" + filled("%3"); }},
    {"PowersOfPowers", [] { return "x" + filled("^x"); }},
    {"PowersOfPowersForDerivatives", [] { return "x" + filled("^x", 80'000); }},
    {"ShortTowerOfPowers", [] { return "x" + filled("^x", 9'000); }},
    {"SumOfPowers", [] { return "x" + numbered([](int i) { return "+x^" + std::to_string(i) + ".5"; }); }},
    {"PolynomialPowersOfPowers", [] { return nested("(", "x+1", ")^9", 1000); }},
    {"Signs", [] { return filled("-") + "x"; }},
    {"SignsAfterPowers", [] { return "x" + filled("^-") + "1"; }},
    {"NestedParentheses", [] { return filled(nested("(", "x", ")", 1000) + "+") + "x"; }},
    {"NestedCalls", [] { return nested("sin(", "x", ")", 1000); }},
    {"NestedCallsMuchDifferentiated", [] { return nested("exp(sin(", "x", ")/2)", 499); }},
    {"NestedQuotients", [] { return nested("1/(x+", "x", ")", 1000); }},
    {"NestedChoices", [] { return nested("if(x:1,2,", "x", ")", 1000); }},
    {"ChoicesInEachOperand",
     [] {
         std::string text = "x";
         for (int i = 0; i < 12; ++i)
             text = "if(" + text + ":" + text + ",x+" + std::to_string(i) + ",sin(x))";
         return text;
     }},
    {"NestedMinimaAndMaxima", [] { return nested("min(x*2,max(sin(x),", "x", "))", 499); }},
    {"ManyMinima", [] { return "min(x" + numbered([](int i) { return ",x+" + std::to_string(i); }) + ")"; }},
    {"SumOfChoices",
     [] { return "x" + numbered([](int i) { return "+if(x-" + std::to_string(i) + ":1,x,2)"; }); }},
    {"SumOfSteps",
     [] { return "x" + numbered([](int i) { return "+step(x,0,x,1," + std::to_string(i) + ")"; }); }},
    {"SumOfStepsWithoutEnds",
     [] {
         return "x" + numbered([](int i) { return "+havsin(x,x^2,x,x^3+1,x+" + std::to_string(i) + ")"; });
     }},
    {"Polynomial", [] { return "poly(x,0.5" + filled(",1") + ")"; }},
    {"PolynomialOfVariables", [] { return "poly(x,0.5" + filled(",x") + ")"; }},
    {"Chebyshev", [] { return "cheby(x,0.5" + filled(",1") + ")"; }},
    {"ChebyshevOfVariables", [] { return "cheby(x,0.5" + filled(",x") + ")"; }},
    {"ChebyshevOfVariablesAgainAndAgain",
     [] { return "0" + filled("+cheby(x,0.5" + repeated(",x", 1'380) + ")"); }},
    {"ChebyshevOfVariablesAHundredTimes",
     [] {
         return "0" +
                numbered([](int i) { return "+cheby(x," + std::to_string(i) + repeated(",x", 130) + ")"; });
     }},
    {"FourierSeries", [] { return "forsin(x,0.5,2" + filled(",1") + ")"; }},
    {"FourierSeriesOfVariables", [] { return "forcos(x,0.5,x" + filled(",x") + ")"; }},
    {"ManyParameters", [] { return "0" + numbered([](int i) { return "+" + nameOf(i); }); }},
    {"ManyResults", [] { return "0" + numbered([](int i) { return "+{" + std::to_string(i) + "}"; }); }},
    {"ManyDifferentNumbers", [] { return "x" + numbered([](int i) { return "+1/" + std::to_string(i); }); }},
    {"OneLongNumber", [] { return "x+0." + filled("3") + "1"; }},
    {"LongNumbers",
     [] { return "x" + numbered([](int i) { return "+0." + repeated("1", 780) + std::to_string(i); }); }},
    {"LargeExponents", [] { return "x" + filled("+1e-99999"); }},
    {"HugeNumbers",
     [] { return "x" + numbered([](int i) { return "+sin(1e308*x*" + std::to_string(i + 2) + ")"; }); }},
    {"OneLongName", [] { return filled("y"); }},
    {"Blanks", [] { return filled(" ") + "x"; }},
    {"NothingButBraces", [] { return filled("{"); }},
    {"NothingButCommas", [] { return "max(" + filled(","); }},
    {"UnknownFunctions", [] { return filled("y") + "("; }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, ExpressionTime, testing::ValuesIn(kExpressions),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace time_test
