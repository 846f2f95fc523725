// SPDX-License-Identifier: MIT

// Expression functions with a fake engine, all of whose results the test chooses.

#include <algorithm>
#include <gmock/gmock.h>
#include <limits>
#include <stdexcept>
#include <string>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/platform/encoding.h"
#include "tests/functions/fakeEngine.h"
#include "tests/support/FakeHost.h"

namespace {

using mf::test::ExpressionOverAnEngine;
using mf::test::kOther;
using mf::test::kTime;
using testing::ElementsAre;
using testing::IsEmpty;

// One point

TEST_F(ExpressionOverAnEngine, CompilesEachPointAfresh)
{
    function_->setMathExpression(L"the math text");
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(2.5, y));
    EXPECT_EQ(y, 2.5);
    EXPECT_THAT(engine_.calls, ElementsAre("parser", "parse the math text", "~parser"));
    EXPECT_EQ(engine_.alive, 1) << "the calculator stays for the derivatives";
    engine_.calls.clear();
    EXPECT_TRUE(function_->calculateValue(3.5, y));
    EXPECT_EQ(y, 3.5);
    EXPECT_THAT(engine_.calls, ElementsAre("Release 0", "parser", "parse the math text", "~parser"));
}

TEST_F(ExpressionOverAnEngine, SendsThePointsTextThroughNarrowText)
{
    function_->setMathExpression(CString(L"\u20ac" + std::wstring(1, wchar_t(0xD800))));
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(0.0, y));
    EXPECT_THAT(engine_.calls, testing::Contains("parse \xE2\x82\xAC\xEF\xBF\xBD"));
}

TEST_F(ExpressionOverAnEngine, LetsAFailedConversionThroughAndKeepsItsState)
{
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(0.0, y));
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t& error) {
        error = 14;
        return 0;
    });
    EXPECT_THROW(function_->calculateValue(0.0, y), std::bad_alloc);
    EXPECT_THROW(function_->evaluate(0.0, 0), std::bad_alloc);
    mf::platform::setNarrowEncoder({});
    EXPECT_EQ(engine_.alive, 1);
    EXPECT_TRUE(function_->calculateValue(0.0, y));
}

TEST_F(ExpressionOverAnEngine, IgnoresNamesAndTheParsersFlagForAPoint)
{
    engine_.parameters = {kOther, kOther};
    engine_.succeeds = false;
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(1.0, y));
    EXPECT_THAT(engine_.calls, ElementsAre("parser", "parse ", "~parser"));
    EXPECT_EQ(function_->getPlottingPointCount(), 1);
    EXPECT_FALSE(function_->isValidForPlotting());
}

TEST_F(ExpressionOverAnEngine, DoesNotChangeYAndReleasesWhenAPointFails)
{
    engine_.evaluate = [](double, int, double& y) {
        y = 99.0;
        return false;
    };
    double y = 5.0;
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    EXPECT_EQ(y, 5.0);
    EXPECT_EQ(engine_.alive, 0);

    engine_.makesCalculator = false;
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    EXPECT_EQ(y, 5.0);
}

TEST_F(ExpressionOverAnEngine, TakesAnIntForAFailedPoint)
{
    double y = 5.0;
    engine_.throwsInt = true;
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    engine_.throwsInt = false;
    engine_.evaluate = [](double, int, double&) -> bool { throw 7; };
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    EXPECT_EQ(y, 5.0);
    EXPECT_EQ(engine_.alive, 0);
    EXPECT_EQ(function_->evaluate(1.0, 0), 0.0);
}

TEST_F(ExpressionOverAnEngine, PassesOnEveryOtherException)
{
    engine_.evaluate = [](double, int, double&) -> bool { throw std::runtime_error("engine"); };
    double y = 5.0;
    EXPECT_THROW(function_->calculateValue(1.0, y), std::runtime_error);
    engine_.evaluate = [](double, int, double&) -> bool { throw 7L; };
    EXPECT_THROW(function_->calculateValue(1.0, y), long);
}

TEST_F(ExpressionOverAnEngine, LetsAnIntOfTheDerivativesThrough)
{
    function_->setPlottingPointCount(100);
    engine_.evaluate = [](double, int order, double& y) {
        if (order == 1)
            throw 7;
        y = 1.0;
        return true;
    };
    double y = 0.0;
    double d[3] = {};
    EXPECT_THROW(function_->calculateValue(1.0, y, d[0], d[1], d[2]), int);
}

// One point with derivatives

struct ChainCase {
    const char* name;
    int count;
    int failingOrder;  // 9: none
    double d[3];       // -1 for an output that is not changed
    int derived;       // calls of differentiate
};

const ChainCase kChainCases[] = {
    {"CountOfOneHasNone", 1, 9, {0, 0, 0}, 0},          {"CountOfTwoHasOne", 2, 9, {12, 0, 0}, 1},
    {"CountOfTwoAndItFails", 2, 1, {-1, -1, -1}, 1},    {"CountOfThreeHasAll", 3, 9, {12, 22, 32}, 3},
    {"CountOfAHundredHasAll", 100, 9, {12, 22, 32}, 3}, {"CountOfZeroHasAll", 0, 9, {12, 22, 32}, 3},
    {"CountBelowZeroHasAll", -1, 9, {12, 22, 32}, 3},   {"FirstFails", 100, 1, {-1, -1, -1}, 1},
    {"SecondFails", 100, 2, {12, -1, -1}, 2},           {"ThirdFails", 100, 3, {12, 22, -1}, 3},
};

void PrintTo(const ChainCase& c, std::ostream* os)
{
    *os << "count " << c.count << ", order " << c.failingOrder << " fails";
}

class PointWithDerivatives : public ExpressionOverAnEngine, public testing::WithParamInterface<ChainCase> {};

TEST_P(PointWithDerivatives, ReachesAsFarAsTheCountAllows)
{
    const ChainCase& c = GetParam();
    engine_.evaluate = [&](double x, int order, double& y) {
        y = x + 10.0 * order;
        return order != c.failingOrder;
    };
    function_->setPlottingPointCount(c.count);
    double y = -1.0;
    double d[3] = {-1.0, -1.0, -1.0};
    EXPECT_TRUE(function_->calculateValue(2.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, 2.0);
    EXPECT_THAT(d, ElementsAre(c.d[0], c.d[1], c.d[2]));
    EXPECT_EQ(std::count_if(engine_.calls.begin(), engine_.calls.end(),
                            [](const std::string& call) { return call.starts_with("differentiate"); }),
              c.derived);
    EXPECT_EQ(engine_.alive, 1);
}

TEST_P(PointWithDerivatives, EvaluatesToZeroWhenAnOrderIsNotReached)
{
    const ChainCase& c = GetParam();
    engine_.evaluate = [&](double x, int order, double& y) {
        y = x + 10.0 * order;
        return order != c.failingOrder;
    };
    function_->setPlottingPointCount(c.count);
    for (int order = 1; order <= 3; ++order)
        EXPECT_EQ(function_->evaluate(2.0, order), c.d[order - 1] == -1.0 ? 0.0 : c.d[order - 1]);
}

INSTANTIATE_TEST_SUITE_P(Expression, PointWithDerivatives, testing::ValuesIn(kChainCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(ExpressionOverAnEngine, DoesNotChangeOutputsWhenTheValueFails)
{
    engine_.evaluate = [](double, int, double&) { return false; };
    double y = -1.0;
    double d[3] = {-1.0, -1.0, -1.0};
    EXPECT_FALSE(function_->calculateValue(2.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, -1.0);
    EXPECT_THAT(d, ElementsAre(-1.0, -1.0, -1.0));
}

// evaluate

TEST_F(ExpressionOverAnEngine, DividesByTheFactorOfAMotorsQuantity)
{
    function_->setMotorDependentVar(mf::MotorDriveType_Velocity);
    function_->setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    host_.services.unitFactors[102] = 2.0;
    EXPECT_EQ(function_->evaluate(3.0, 0), 1.5);
    EXPECT_THAT(host_.calls, ElementsAre("getMotionServices", "getMotorUnitKind 2", "getUnitFactor 102"));
}

TEST_F(ExpressionOverAnEngine, DividesByTheFactorOfAForceOrTorque)
{
    function_->motionObjectType = 1;
    function_->setMotorDependentVar(mf::MotorDriveType_Velocity);
    function_->setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    host_.services.unitFactors[202] = 4.0;
    EXPECT_EQ(function_->evaluate(3.0, 0), 0.75);
    EXPECT_THAT(host_.calls,
                ElementsAre("getMotionServices", "getForceTorqueUnitKind 2", "getUnitFactor 202"));
}

TEST_F(ExpressionOverAnEngine, DividesEveryOrderByTheSameFactor)
{
    function_->setPlottingPointCount(100);
    host_.services.unitFactor = 2.0;
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(function_->evaluate(4.0, order), (4.0 + 10.0 * order) / 2.0);
}

TEST_F(ExpressionOverAnEngine, DividesByAFactorOfZero)
{
    host_.services.unitFactor = 0.0;
    EXPECT_EQ(function_->evaluate(4.0, 0), std::numeric_limits<double>::infinity());
}

TEST_F(ExpressionOverAnEngine, LeavesTheValueWithoutServicesOrContext)
{
    host_.servicesAnswer = nullptr;
    EXPECT_EQ(function_->evaluate(4.0, 0), 4.0);
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_EQ(function_->evaluate(4.0, 0), 4.0);
}

TEST_F(ExpressionOverAnEngine, EvaluatesNothingForAnOrderOutOfRange)
{
    for (const int order : {-1, 4, 100, std::numeric_limits<int>::min()})
        EXPECT_EQ(function_->evaluate(4.0, order), 0.0);
    EXPECT_THAT(engine_.calls, IsEmpty());
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(ExpressionOverAnEngine, RequestsNoUnitWhenTheValueFails)
{
    engine_.evaluate = [](double, int, double&) { return false; };
    EXPECT_EQ(function_->evaluate(4.0, 0), 0.0);
    EXPECT_EQ(function_->evaluate(4.0, 1), 0.0);
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(ExpressionOverAnEngine, CompilesTheMathTextForAPointAndTheParseTextForSamples)
{
    engine_.parameters = {kTime};
    prepareToSample();
    function_->setMathExpression(L"math");
    EXPECT_TRUE(function_->calculateValue());
    function_->evaluate(1.0, 0);
    EXPECT_THAT(engine_.calls, testing::IsSupersetOf({"parse the text", "parse math"}));
    EXPECT_EQ(function_->getPlottingPointCount(), 100) << "a point leaves the samples alone";
    EXPECT_EQ(function_->getPlottingData0()[5].y(), 5.0);
}

TEST_F(ExpressionOverAnEngine, KeepsTheCalculatorWhenItIsCleared)
{
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(1.0, y));
    engine_.calls.clear();
    function_->ClearFunction();
    EXPECT_THAT(engine_.calls, IsEmpty());
    EXPECT_EQ(engine_.alive, 1);
    function_.reset();
    EXPECT_THAT(engine_.calls, ElementsAre("Release 0"));
}

}  // namespace
