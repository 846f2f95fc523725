// SPDX-License-Identifier: MIT

#include <clocale>
#include <cmath>
#include <gmock/gmock.h>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/platform/resources.h"
#include "tests/functions/mfFunctionExpressionTest.h"
#include "tests/locale/comma_locale.h"

namespace {

using mf::platform::ResourceModule;
using mf::test::Expression;
using mf::test::Resources;

// Sampling

// x by repeated addition of (max - min) / 99, as documented.
double sampleX(double minX, double maxX, int index)
{
    const double step = (maxX - minX) / 99;
    double x = minX;
    for (int i = 0; i < index; ++i)
        x += step;
    return x;
}

struct DomainCase {
    const char* name;
    double minX;
    double maxX;
};

const DomainCase kDomainCases[] = {
    {"Upward", 0.0, 1.0}, {"Downward", 2.0, -1.0},    {"OfNoLength", 0.7, 0.7},
    {"Odd", -0.1, 0.37},  {"FarOut", 1e6, 1e6 + 0.1},
};

class SampledDomain : public Expression, public testing::WithParamInterface<DomainCase> {};

TEST_P(SampledDomain, IsWalkedByAddingTheStep)
{
    const auto [name, minX, maxX] = GetParam();
    ASSERT_TRUE(sample(L"2*time", minX, maxX));
    EXPECT_EQ(function_.getPlottingPointCount(), 100);
    for (int i = 0; i < 100; ++i) {
        const double x = sampleX(minX, maxX, i);
        EXPECT_EQ(function_.getPlottingData0()[i].x(), x) << i;
        EXPECT_EQ(function_.getPlottingData0()[i].y(), 2.0 * x) << i;
        EXPECT_EQ(function_.getPlottingData1()[i].x(), x) << i;
        EXPECT_EQ(function_.getPlottingData1()[i].y(), 2.0) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Sampling, SampledDomain, testing::ValuesIn(kDomainCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(Expression, MissesTheEndOfItsDomainByRounding)
{
    ASSERT_TRUE(sample(L"time", 0.0, 0.1));
    EXPECT_NE(function_.getPlottingData0()[99].x(), 0.1);
    EXPECT_NEAR(function_.getPlottingData0()[99].x(), 0.1, 1e-14);
}

TEST_F(Expression, SamplesAConstantOverTime)
{
    function_.setIndepVar(L"Angle1");
    ASSERT_TRUE(sample(L"2+3"));
    EXPECT_TRUE(function_.isValidForPlotting());
    EXPECT_EQ(function_.getIndepVar(), L"Time");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_Time);
    EXPECT_EQ(function_.motionResult, L"");
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(function_.getPlottingData0()[i].y(), 5.0);
        EXPECT_EQ(function_.getPlottingData3()[i].y(), 0.0);
    }
}

// Tolerance: a few units in the last place of the largest coefficient.
TEST_F(Expression, SamplesValueAndDerivativesOfASine)
{
    ASSERT_TRUE(sample(L"sin(3*time)", 0.0, 2.0));
    for (int i = 0; i < 100; ++i) {
        const double x = function_.getPlottingData0()[i].x();
        const double before = function_.getPlottingData0()[std::min(i, 98)].x();  // the last repeats
        EXPECT_NEAR(function_.getPlottingData0()[i].y(), std::sin(3.0 * x), 1e-15);
        EXPECT_NEAR(function_.getPlottingData1()[i].y(), 3.0 * std::cos(3.0 * before), 4e-15);
        EXPECT_NEAR(function_.getPlottingData2()[i].y(), -9.0 * std::sin(3.0 * before), 1e-14);
        EXPECT_NEAR(function_.getPlottingData3()[i].y(), -27.0 * std::cos(3.0 * before), 4e-14);
        EXPECT_EQ(function_.getPlottingData3()[i].x(), x);
    }
}

TEST_F(Expression, SamplesAForceWithOneDerivative)
{
    function_.motionObjectType = 1;
    ASSERT_TRUE(sample(L"time^2", 0.0, 99.0));
    EXPECT_EQ(function_.getPlottingData1()[40].y(), 80.0);
    EXPECT_EQ(function_.getPlottingData2(), nullptr);
    EXPECT_EQ(function_.getPlottingData3(), nullptr);
}

TEST_F(Expression, SamplesAnotherObjectWithoutDerivatives)
{
    function_.motionObjectType = 2;
    ASSERT_TRUE(sample(L"time^2", 0.0, 99.0));
    EXPECT_EQ(function_.getPlottingData0()[40].y(), 1600.0);
    EXPECT_EQ(function_.getPlottingData1(), nullptr);
    EXPECT_TRUE(function_.calculateDerivatives()) << "no array needs to be filled";
}

TEST_F(Expression, HasOnlyValuesToFillWithoutAQuantity)
{
    EXPECT_EQ(function_.motionObjectType, 0);
    EXPECT_EQ(function_.getMotorDependentVar(), mf::MotorDriveType_None);
    function_.setParseExpression(L"time");
    EXPECT_FALSE(function_.calculateValue());
    EXPECT_TRUE(function_.isValidForPlotting());
    EXPECT_NE(function_.getPlottingData0(), nullptr);
    for (int order = 1; order <= 3; ++order)
        EXPECT_EQ(function_.getPlottingData(order), nullptr) << order;
}

TEST_F(Expression, StopsAtASampleWithoutAValue)
{
    // Sample 50 lies at x = 50, where the quotient has no finite value.
    EXPECT_FALSE(sample(L"1/(time-50)", 0.0, 99.0));
    EXPECT_TRUE(function_.isValidForPlotting());
    EXPECT_EQ(function_.getPlottingData0()[49].y(), -1.0);
    EXPECT_EQ(function_.getPlottingData0()[50].x(), 50.0);
    EXPECT_EQ(function_.getPlottingData0()[50].y(), 0.0);
    EXPECT_EQ(function_.getPlottingData0()[51].x(), 0.0);
}

TEST_F(Expression, HasNothingToPlotUntilTheHostGivesAParseExpression)
{
    function_.setMathExpression(L"time");
    EXPECT_FALSE(function_.calculateValue());
    EXPECT_TRUE(function_.isValidForPlotting());
    EXPECT_EQ(function_.getPlottingPointCount(), 0);
    EXPECT_EQ(function_.getMathExpression(), L"time");
}

TEST_F(Expression, KeepsStaleSamplesUntilTheNextSampling)
{
    ASSERT_TRUE(sample(L"time"));
    function_.setParseExpression(L"5");
    function_.setMathExpression(L"6");
    function_.setDomain(7.0, 8.0);
    EXPECT_EQ(function_.getPlottingData0()[0].x(), 0.0);
    EXPECT_EQ(function_.getPlottingPointCount(), 100);
}

TEST_F(Expression, TakesAMotionResultOutOfItsBraces)
{
    ASSERT_TRUE(sample(L"2*{Angle 1}"));
    EXPECT_EQ(function_.getIndepVar(), L"Angle 1");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_MotionResult);
    EXPECT_EQ(function_.motionResult, L"Angle 1");
}

TEST_F(Expression, TakesTheCycleAngleWhereTheStudyHasOne)
{
    ASSERT_TRUE(sample(L"sin(CycleAngle)"));
    EXPECT_EQ(function_.getIndepVar(), L"CycleAngle");
    EXPECT_TRUE(function_.isXValueCycleAngle());

    host_.study.cycleAngleAvailable = false;
    EXPECT_FALSE(sample(L"sin(CycleAngle)"));
    host_.studyAnswer = nullptr;
    EXPECT_FALSE(sample(L"sin(CycleAngle)"));
}

TEST_F(Expression, AcceptsTheHostsWordForTime)
{
    const ResourceModule german({{1033, L"Zeit"}, {1034, L"Zykluswinkel"}});
    const Resources resources(&german);
    ASSERT_TRUE(sample(L"2*zeit"));
    EXPECT_EQ(function_.getIndepVar(), L"Zeit");
    EXPECT_EQ(function_.independentVar, mf::IndependentVariableType_Time);
}

TEST_F(Expression, IsNeverPlottedOverTwoVariables)
{
    EXPECT_TRUE(sample(L"time*{Angle1}"));
    EXPECT_FALSE(function_.isValidForPlotting());
    EXPECT_EQ(function_.getIndepVar(), L"");
    EXPECT_FALSE(sample(L"time*unknown"));
    EXPECT_FALSE(function_.isValidForPlotting());
}

TEST_F(Expression, ReportsATextThatDoesNotCompileByItsFlag)
{
    for (const wchar_t* text : {L"1+", L"(", L"sin(time", L"nosuch(time)", L"*", L"{}"}) {
        EXPECT_TRUE(sample(text)) << text;
        EXPECT_FALSE(function_.isValidForPlotting()) << text;
        EXPECT_EQ(function_.getIndepVar(), L"Time") << text;
    }
}

// One point

TEST_F(Expression, GivesAPointAndItsDerivatives)
{
    function_.setMathExpression(L"time^4");
    function_.setPlottingPointCount(100);
    double y = 0.0;
    double d[3] = {};
    EXPECT_TRUE(function_.calculateValue(2.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, 16.0);
    EXPECT_THAT(d, testing::ElementsAre(32.0, 48.0, 48.0));
    EXPECT_EQ(function_.evaluate(2.0, 0), 16.0);
    EXPECT_EQ(function_.evaluate(2.0, 1), 32.0);
    EXPECT_EQ(function_.evaluate(2.0, 2), 48.0);
    EXPECT_EQ(function_.evaluate(2.0, 3), 48.0);
    EXPECT_EQ(function_.evaluate(2.0, 4), 0.0);
    EXPECT_EQ(function_.evaluate(2.0, -1), 0.0);
}

TEST_F(Expression, HasNoDerivativesAtAPointBeforeItIsSampled)
{
    function_.setMathExpression(L"time^4");
    EXPECT_EQ(function_.evaluate(2.0, 0), 16.0);
    EXPECT_EQ(function_.evaluate(2.0, 1), 0.0);
}

TEST_F(Expression, HalvesItsValueUnderAFactorOfTwo)
{
    function_.setMathExpression(L"3*time");
    function_.setPlottingPointCount(100);
    host_.services.unitFactor = 2.0;
    EXPECT_EQ(function_.evaluate(2.0, 0), 3.0);
    EXPECT_EQ(function_.evaluate(2.0, 1), 1.5);
    double y = 0.0;
    EXPECT_TRUE(function_.calculateValue(2.0, y));
    EXPECT_EQ(y, 6.0) << "only evaluate divides";
    ASSERT_TRUE(sample(L"3*time", 0.0, 99.0));
    EXPECT_EQ(function_.getPlottingData0()[2].y(), 6.0) << "nor are samples divided";
}

TEST_F(Expression, HasNoPointWithoutAUsableText)
{
    for (const wchar_t* text : {L"", L"1+", L"time*{Angle1}", L"1/0", L"log(-1)"}) {
        function_.setMathExpression(text);
        double y = 7.0;
        EXPECT_FALSE(function_.calculateValue(1.0, y)) << text;
        EXPECT_EQ(y, 7.0) << text;
        EXPECT_EQ(function_.evaluate(1.0, 0), 0.0) << text;
    }
}

TEST_F(Expression, HasNoPointAtNaNOrWhereItIsInfinite)
{
    function_.setMathExpression(L"1/time");
    EXPECT_EQ(function_.evaluate(0.0, 0), 0.0);
    EXPECT_EQ(function_.evaluate(std::nan(""), 0), 0.0);
    EXPECT_EQ(function_.evaluate(2.0, 0), 0.5);
}

TEST_F(Expression, LeavesTheProcessAtTheCLocaleAfterAPoint)
{
    function_.setMathExpression(L"0.5*time");
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    EXPECT_EQ(function_.evaluate(3.0, 0), 1.5);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

TEST_F(Expression, ReadsPointsUnderACommaLocale)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    ASSERT_TRUE(sample(L"1.5*time", 0.0, 99.0));
    EXPECT_TRUE(comma.holds()) << "sampling does not touch the locale";
    EXPECT_EQ(function_.getPlottingData0()[2].y(), 3.0);
    function_.setMathExpression(L"1.5*time");
    EXPECT_EQ(function_.evaluate(2.0, 0), 3.0);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

}  // namespace
