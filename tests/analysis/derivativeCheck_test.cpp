// SPDX-License-Identifier: MIT

#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/curve/laws.h"
#include "mfcurves/engine/functionTable.h"
#include "tests/analysis/curves.h"

// The linker redirects every request for a row of the function table to this file (--wrap), so that
// the slope rule of one function can be made wrong.
namespace {

using mf::engine::Function;
using mf::engine::FunctionId;
using mf::engine::Term;

std::optional<FunctionId> broken;

}  // namespace

extern "C" {
const Function& realFunction(FunctionId id) asm("__real__ZN2mf6engine8functionENS0_10FunctionIdE");
const Function& wrappedFunction(FunctionId id) asm("__wrap__ZN2mf6engine8functionENS0_10FunctionIdE");
}

const Function& wrappedFunction(FunctionId id)
{
    static Function wrong = realFunction(FunctionId::Sin);
    const Function& right = realFunction(id);
    if (broken != id)
        return right;
    wrong = right;
    if (right.slope1 != nullptr) {
        wrong.slope1 = [](Term f, Term a) { return 0.001 + realFunction(*broken).slope1(f, a); };
    }
    if (right.slope2 != nullptr) {
        wrong.slope2 = [](Term f, Term a, Term b, Term da, Term db) {
            return 0.001 + realFunction(*broken).slope2(f, a, b, da, db);
        };
    }
    return wrong;
}

namespace {

using analysis_test::cam;
using analysis_test::expression;
using analysis_test::points;
using analysis_test::rows;
using mf::analysis::checkDerivatives;
using mf::analysis::DerivativeCheck;

struct RuleCase {
    const char* name;
    FunctionId function;
    const char* text;  // its first derivative contains the slope of the function
};

const RuleCase kRules[] = {
    {"Sin", FunctionId::Sin, "sin(x)"},
    {"Cos", FunctionId::Cos, "cos(x)"},
    {"Tan", FunctionId::Tan, "tan(x)"},
    {"Asin", FunctionId::Asin, "asin(x)"},
    {"Acos", FunctionId::Acos, "acos(x)"},
    {"Atan", FunctionId::Atan, "atan(x)"},
    {"Atan2", FunctionId::Atan2, "atan2(x+1, 2-x)"},
    {"Sinh", FunctionId::Sinh, "sinh(x)"},
    {"Cosh", FunctionId::Cosh, "cosh(x)"},
    {"Tanh", FunctionId::Tanh, "tanh(x)"},
    {"Sech", FunctionId::Sech, "tanh(x)"},
    {"Exp", FunctionId::Exp, "exp(x)"},
    {"Log", FunctionId::Log, "log(x+1)"},
    {"Log10", FunctionId::Log10, "log10(x+1)"},
    {"Sqrt", FunctionId::Sqrt, "sqrt(x+1)"},
    {"Cbrt", FunctionId::Cbrt, "cbrt(x+1)"},
    {"Hypot", FunctionId::Hypot, "hypot(x, 1)"},
    {"Abs", FunctionId::Abs, "abs(x-0.5)"},
    {"Sign", FunctionId::Sign, "sign(x-0.5)"},
    {"SignOf", FunctionId::SignOf, "sign(x+1, x-0.5)"},
    {"Min", FunctionId::Min, "min(x, 1-x)"},
    {"Max", FunctionId::Max, "max(x, 1-x)"},
    {"Mod", FunctionId::Mod, "mod(x, 0.3)"},
    {"Dim", FunctionId::Dim, "dim(x, 0.5)"},
    {"Int", FunctionId::Int, "int(3*x)"},
    {"Nint", FunctionId::Nint, "nint(3*x)"},
    {"Floor", FunctionId::Floor, "floor(3*x)"},
    {"Ceil", FunctionId::Ceil, "ceil(3*x)"},
    {"Power", FunctionId::Power, "(x+1)^2.5"},
};

class BrokenSlope : public testing::TestWithParam<RuleCase> {
protected:
    void TearDown() override { broken.reset(); }
};

void PrintTo(const RuleCase& c, std::ostream* os)
{
    *os << c.text;
}

TEST_P(BrokenSlope, IsFound)
{
    EXPECT_TRUE(checkDerivatives(expression(GetParam().text, 0.1, 0.9)).ok);
    broken = GetParam().function;
    const DerivativeCheck found = checkDerivatives(expression(GetParam().text, 0.1, 0.9));
    EXPECT_FALSE(found.ok);
    EXPECT_GT(found.error, 1e-6);
    EXPECT_GE(found.worstOrder, 1);
    EXPECT_NE(found.stated, found.estimated);
    EXPECT_GT(found.worstX, 0.1);
    EXPECT_LT(found.worstX, 0.9);
}

INSTANTIATE_TEST_SUITE_P(Rules, BrokenSlope, testing::ValuesIn(kRules),
                         [](const auto& tested) { return tested.param.name; });

TEST(BrokenSlope, ListHasEveryRule)
{
    std::size_t rules = 0;
    for (const Function& row : mf::engine::functions())
        rules += row.slope1 != nullptr || row.slope2 != nullptr ? 1 : 0;
    EXPECT_EQ(std::size(kRules), rules);
}

TEST(CheckDerivatives, AgreesWithAllLaws)
{
    for (const mf::Law& law : mf::laws()) {
        const DerivativeCheck found = checkDerivatives(rows({{1.0, 1.0, law.name}}));
        EXPECT_TRUE(found.ok) << law.name << " order " << found.worstOrder << " at " << found.worstX << " by "
                              << found.error;
        EXPECT_LE(found.error, 1e-9) << law.name;
    }
}

TEST(CheckDerivatives, AgreesWithTablesPointsAndTexts)
{
    EXPECT_TRUE(checkDerivatives(cam()).ok);
    for (const auto kind : {mf::Interpolation::Linear, mf::Interpolation::Cubic, mf::Interpolation::Akima})
        EXPECT_TRUE(checkDerivatives(points({0.0, 1.0, 1.5, 4.0}, {0.0, 3.0, -1.0, 2.0}, kind)).ok);
    for (const char* text : {"10*sin(2*pi*x)+x^2*exp(-x)/(1+x)", "abs(sin(3*x))", "step(x, 1, 0, 2, 5)", "7",
                             "if(x-1: x, 1, 2-x)", "floor(x)*x", "sqrt(x)", "sin(100*x)"}) {
        EXPECT_TRUE(checkDerivatives(expression(text, 0.0, 3.0)).ok) << text;
    }
}

TEST(CheckDerivatives, WithoutARangeComparesNothing)
{
    const DerivativeCheck found = checkDerivatives(cam(), {400.0, 500.0});
    EXPECT_TRUE(found.ok);
    EXPECT_EQ(found.worstOrder, 0);
}

}  // namespace
