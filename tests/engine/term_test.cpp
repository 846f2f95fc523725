// SPDX-License-Identifier: MIT

#include "mfcurves/engine/term.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "mfcurves/engine/differentiation.h"
#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/parser.h"

namespace {

using namespace mf::engine;

std::string number(double value)
{
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
}

// The node as text with all parentheses, a polynomial as u^lowest[c0, c1, ...].
std::string show(const Graph& graph, NodeId id)
{
    const Node& node = graph[id];
    const auto list = [&](const std::string& head) {
        std::string text = head + "[";
        for (const double c : graph.coefficients(node))
            text += (text.ends_with('[') ? "" : ", ") + number(c);
        return text + "]";
    };
    const auto pair = [&](const std::string& sign) {
        return "(" + show(graph, node.a) + sign + show(graph, node.b) + ")";
    };
    switch (node.op) {
        case Op::Constant:
            return number(node.number);
        case Op::Variable:
            return "x";
        case Op::Sum:
            return pair("+");
        case Op::Product:
            return pair("*");
        case Op::Quotient:
            return pair("/");
        case Op::Polynomial:
            return list(show(graph, node.a) + "^" + std::to_string(node.lowest));
        case Op::Call1:
            return std::string(function(node.function).name) + "(" + show(graph, node.a) + ")";
        default:
            return "other";
    }
}

struct FoldingCase {
    const char* name;
    const wchar_t* text;
    const char* value;
    const char* derivative;
};

#define ONES L",1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1"  // 18 coefficients, one more than are gathered

const FoldingCase kFoldingCases[] = {
    {"ConstantsAreFolded", L"2*3+x-1/2", "(-0.5+(6+x))", "1"},
    {"NeutralElementsGo", L"0+1*x/1-0", "x", "1"},
    {"ZeroTimesStays", L"0*log(x)", "(0*log(x))", "0"},
    {"QuotientOfItselfStays", L"x/x", "(x/x)", "((1+(-1*(x/x)))/x)"},
    {"DifferenceOfItselfStays", L"sin(x)-sin(x)", "(sin(x)+(-1*sin(x)))", "0"},
    {"DivisionByAPowerOfTwo", L"x/4", "(0.25*x)", "0.25"},
    {"DivisionByAnother", L"x/5", "(x/5)", "0.2"},
    {"FactorsByAPowerOfTwo", L"3*(2*x)", "(6*x)", "6"},
    {"FactorsThatWouldRoundStay", L"0.1*(0.7*x)", "(0.1*(0.7*x))", "0.07"},
    {"DoubleMinus", L"x--3", "(3+x)", "1"},
    {"SquareOfAGroup", L"(x-1)^2", "(-1+x)^2[1]", "(2*(-1+x))"},
    {"TermsBecomeAPolynomial", L"10*x^3-15*x^4+6*x^5", "x^3[10, -15, 6]", "x^2[30, -60, 30]"},
    {"EqualPowersAreAdded", L"3*x^2+2*x^2", "x^2[5]", "(10*x)"},
    {"PowersThatCancelGo", L"x^3+x^2-x^3", "x^2[1]", "(2*x)"},
    {"AllPowersCancelWhereXIsDefined", L"x^2+x^3-x^2-x^3", "(0*x)", "0"},
    {"SumsThatWouldRoundStay", L"0.1*x^2+0.2*x^2", "(x^2[0.1]+x^2[0.2])", "(0.6*x)"},
    {"ShiftedXStaysAGroup", L"x-1+x^2", "((-1+x)+x^2[1])", "(1+(2*x))"},
    {"ExponentialStaysAFactor", L"x^2*exp(-x)", "(x^2[1]*exp((-1*x)))", "(exp((-1*x))*x^1[2, -1])"},
    {"QuotientReusesItself", L"sin(x)/x", "(sin(x)/x)", "((cos(x)+(-1*(sin(x)/x)))/x)"},
    {"LongPolynomialsStayApart", L"x^2+poly(x,0" ONES L")",
     "(x^2[1]+x^0[1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1])",
     "x^0[1, 4, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17]"},
    {"LongPolynomialsKeepTheirFactor", L"3*poly(x,0" ONES L")",
     "(3*x^0[1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1])",
     "x^0[3, 6, 9, 12, 15, 18, 21, 24, 27, 30, 33, 36, 39, 42, 45, 48, 51]"},
    {"FactorsMoveToTheFront", L"sin(2*x)", "sin((2*x))", "(2*cos((2*x)))"},
};

void PrintTo(const FoldingCase& c, std::ostream* os)
{
    *os << c.name;
}

class Folding : public testing::TestWithParam<FoldingCase> {};

TEST_P(Folding, KeepsTheTextAndIsFreeInTheDerivative)
{
    const FoldingCase& c = GetParam();
    auto result = parseText(c.text, std::wstring_view(L"x"));
    ASSERT_TRUE(std::holds_alternative<ParsedText>(result));
    auto& [graph, root, parameters] = std::get<ParsedText>(result);
    EXPECT_EQ(show(graph, root), c.value);
    EXPECT_EQ(show(graph, differentiate(graph, root)), c.derivative);
}

INSTANTIATE_TEST_SUITE_P(Engine, Folding, testing::ValuesIn(kFoldingCases),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
