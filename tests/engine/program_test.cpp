// SPDX-License-Identifier: MIT

// A text, and the steps of the program that computes it.

#include "mfcurves/engine/program.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "mfcurves/engine/formula.h"
#include "tests/engine/compiled.h"
#include "tests/engine/program_listing.h"

namespace engine_test {
namespace {

struct ProgramCase {
    const char* name;
    const char* text;
    int order;
    const char* listing;
};

void PrintTo(const ProgramCase& c, std::ostream* os)
{
    *os << c.text << " up to order " << c.order;
}

class Programs : public testing::TestWithParam<ProgramCase> {};

TEST_P(Programs, HaveTheseSteps)
{
    const ProgramCase& c = GetParam();
    const auto compiled = mf::engine::Formula::compile(wide(c.text), L"x", c.order);
    const auto& formula = std::get<std::shared_ptr<const mf::engine::Formula>>(compiled);
    EXPECT_EQ("\n" + listing(formula->program()), c.listing);
}

const ProgramCase kPrograms[] = {
    {"Variable", "x", 0, R"(
order 0: r0
)"},
    {"Constant", "5", 1, R"(
r0 = 5
r1 = 0
order 0: r0
order 1: r1
)"},
    {"ShiftedVariable", "x-0.5", 0, R"(
r1 = r0 * 1 + -0.5
order 0: r1
)"},
    {"StagesAroundAFunction", "2*sin(3*(x-0.5))+3", 0, R"(
r3 = (r0 + -0.5) * 3 + -0; r2 = sin r3; r1 = r2 * 2 + 3
order 0: r1
)"},
    {"SineAndCosineAreOneStep", "sin(x)", 1, R"(
r1 = sin r0, r2 = cos r0
order 0: r1
order 1: r2
)"},
    {"SineAndCosineOfAllOrders", "cos(2*x)", 2, R"(
r2 = r0 * 2 + -0; r1 = cos r2, r4 = sin r2
order 0: r1
r3 = r4 * -2 + -0
order 1: r3
r5 = r1 * -4 + -0
order 2: r5
)"},
    {"LawIsOneStep", "3-8*(10*((x-0.5)/1.75)^3-15*((x-0.5)/1.75)^4)", 0, R"(
r3 = (r0 + -0.5) / 1.75 * 1 + -0; r2 = r3^3 * [-80, 120]; r1 = r2 * 1 + 3
order 0: r1
)"},
    {"LawAndDerivativesAreOneStep", "3-8*(10*((x-0.5)/1.75)^3-15*((x-0.5)/1.75)^4+6*((x-0.5)/1.75)^5)", 3, R"(
r3 = (r0 + -0.5) / 1.75 * 1 + -0; r2 = r3^3 * [-80, 120, -48]; r1 = r2 * 1 + 3; r4 = r3^2 * [-137.143, 274.286, -137.143]; r5 = r3^1 * [-156.735, 470.204, -313.469]; r6 = r3^0 * [-89.5627, 537.376, -537.376]
order 0: r1
order 1: r4
order 2: r5
order 3: r6
)"},
    {"SquareAndItsDerivative", "x^2", 3, R"(
r3 = 2
r4 = 0
r1 = r0^2 * [1]; r2 = r0^1 * [2]
order 0: r1
order 1: r2
order 2: r3
order 3: r4
)"},
    {"Product", "x*sin(x)", 0, R"(
r2 = sin r0
r1 = r0 * r2
order 0: r1
)"},
    {"ConstantAddedToADivisor", "1/(x+2)", 0, R"(
r2 = 1
r1 = r2 / (r0 + 2)
order 0: r1
)"},
    {"FactorsOfASum", "2*sin(x)+3*exp(x)", 0, R"(
r3 = exp r0
r2 = sin r0
r1 = 2 * r2 + 3 * r3
order 0: r1
)"},
    {"BrokenPower", "x^2.5", 0, R"(
r2 = 2.5
r1 = power r0 r2
order 0: r1
)"},
    {"OneNodeOfAllOrders", "exp(x)", 3, R"(
r1 = exp r0
order 0: r1
order 1: r1
order 2: r1
order 3: r1
)"},
    {"Choice", "if(x: 1, 2, x)", 0, R"(
r2 = 1
r3 = 2
r1 = sign r0 r2 r3 r0
order 0: r1
)"},
    {"Step", "step(x,0,1,2,3)", 0, R"(
r2 = 0
r3 = 2
r4 = 1
r6 = 3
r8 = r0 * 0.5 + -0; r7 = r8^2 * [6, -4]; r5 = r7 * 1 + 1
r1 = step r0 r2 r3 r4 r5 r6
order 0: r1
)"},
    {"Chebyshev", "cheby(x,1,1,2,3)", 0, R"(
r2 = r0 * 1 + -1; r1 = chebyshev of 3 terms r2
order 0: r1
)"},
    {"SharedSquare", "x^2+exp(x^2+1)", 1, R"(
r2 = r0^2 * [1]
r4 = r2 * 1 + 1; r3 = exp r4
r1 = 1 * r2 + 1 * r3
order 0: r1
r5 = 2 * (r0 * r3) + 2 * r0
order 1: r5
)"},
    {"SumOfAProduct", "3*x*exp(x)+2*sin(x)", 0, R"(
r3 = sin r0
r4 = r0 * 3 + -0
r5 = exp r0
r1 = 1 * (r4 * r5) + 2 * r3
order 0: r1
)"},
    {"SumOfTwoProducts", "x*exp(x)-2*sin(x)*tan(x)", 0, R"(
r5 = tan r0
r7 = exp r0
r6 = sin r0; r4 = r6 * 2 + -0
r1 = 1 * (r0 * r7) + -1 * (r4 * r5)
order 0: r1
)"},
    {"QuotientOfAProduct", "x*exp(x)/(x+1)", 0, R"(
r3 = exp r0
r1 = (r0 * r3) / (r0 + 1)
order 0: r1
)"},
    {"DerivativeOfAQuotient", "x^2*exp(x)/(1+x)", 1, R"(
r4 = exp r0
r3 = r0^2 * [1]
r1 = (r3 * r4) / (r0 + 1)
order 0: r1
r8 = r0^1 * [2, 1]
r5 = (1 * (r4 * r8) + -1 * r1) / (r0 + 1)
order 1: r5
)"},
    {"ProductOfTwoUses", "x*exp(x)+sin(x*exp(x))", 0, R"(
r4 = exp r0
r2 = r0 * r4
r3 = sin r2
r1 = 1 * r2 + 1 * r3
order 0: r1
)"},
};

INSTANTIATE_TEST_SUITE_P(Engine, Programs, testing::ValuesIn(kPrograms),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace engine_test
