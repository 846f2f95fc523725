// SPDX-License-Identifier: MIT

// Expression functions with a fake engine, all of whose results the test chooses.

#include <algorithm>
#include <gmock/gmock.h>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "tests/functions/fakeEngine.h"

namespace {

using mf::test::ExpressionOverAnEngine;
using mf::test::kTime;

TEST_F(ExpressionOverAnEngine, RepeatsTheLastButOneDerivativeAtTheEnd)
{
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    for (int order = 1; order <= 3; ++order) {
        const mfPoint2D_c* const points = function_->getPlottingData(order);
        for (int i = 0; i < 99; ++i) {
            EXPECT_EQ(points[i].x(), i);
            EXPECT_EQ(points[i].y(), i + 10.0 * order);
        }
        EXPECT_EQ(points[99].x(), 99.0);
        EXPECT_EQ(points[99].y(), 98.0 + 10.0 * order);
    }
}

struct DerivativeFailure {
    const char* name;
    int failingOrder;
    double failingX;
    int written[4];  // points of each order that are written; [0] is not used
};

const DerivativeFailure kDerivativeFailures[] = {
    {"FirstAtOnce", 1, 0.0, {0, 0, 0, 0}},         {"FirstLater", 1, 40.0, {0, 40, 40, 40}},
    {"SecondLater", 2, 40.0, {0, 41, 40, 40}},     {"ThirdLater", 3, 40.0, {0, 41, 41, 40}},
    {"ThirdAtOnce", 3, 0.0, {0, 1, 1, 0}},         {"AtTheLastButOne", 2, 98.0, {0, 99, 98, 98}},
    {"NotAtTheLast", 1, 99.0, {0, 100, 100, 100}},
};

void PrintTo(const DerivativeFailure& c, std::ostream* os)
{
    *os << "order " << c.failingOrder << " at " << c.failingX;
}

class DerivativesFail : public ExpressionOverAnEngine,
                        public testing::WithParamInterface<DerivativeFailure> {};

TEST_P(DerivativesFail, AndKeepWhatWasWritten)
{
    const DerivativeFailure& c = GetParam();
    engine_.parameters = {kTime};
    engine_.evaluate = [&](double x, int order, double& y) {
        y = 1.0;
        return order != c.failingOrder || x != c.failingX;
    };
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue()) << "sampling does not depend on the derivatives";
    EXPECT_TRUE(function_->isValidForPlotting());
    EXPECT_EQ(function_->calculateDerivatives(), c.failingX == 99.0);
    for (int order = 1; order <= 3; ++order) {
        int written = 0;
        for (int i = 0; i < 100; ++i)
            written += function_->getPlottingData(order)[i].y() == 1.0;
        EXPECT_EQ(written, c.written[order]) << "order " << order;
    }
    EXPECT_EQ(engine_.alive, 1) << "the derivatives are released, the value stays";
}

INSTANTIATE_TEST_SUITE_P(Expression, DerivativesFail, testing::ValuesIn(kDerivativeFailures),
                         [](const auto& tested) { return std::string(tested.param.name); });

// When several orders fail, the one that fails at the lowest x ends the sampling.
TEST_F(ExpressionOverAnEngine, EndsTheDerivativesAtTheEarliestFailure)
{
    engine_.parameters = {kTime};
    engine_.evaluate = [](double x, int order, double& y) {
        y = 1.0;
        return order == 0 || x < (order == 1 ? 60.0 : order == 2 ? 30.0 : 30.0);
    };
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_EQ(function_->getPlottingData1()[30].y(), 1.0);
    EXPECT_EQ(function_->getPlottingData1()[31].y(), 0.0);
    EXPECT_EQ(function_->getPlottingData2()[29].y(), 1.0);
    EXPECT_EQ(function_->getPlottingData2()[30].y(), 0.0);
    EXPECT_EQ(function_->getPlottingData3()[29].y(), 1.0);
    EXPECT_EQ(function_->getPlottingData3()[30].y(), 0.0);
}

TEST_F(ExpressionOverAnEngine, DerivesAllThreeWhicheverArraysThereAre)
{
    engine_.parameters = {kTime};
    prepareToSample();
    function_->setMotorDependentVar(mf::MotorDriveType_Acceleration);
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_EQ(std::count(engine_.calls.begin(), engine_.calls.end(), "differentiate 2 with 0"), 1);
    EXPECT_EQ(engine_.evaluations, 100 + 99) << "only the first is evaluated";
}

TEST_F(ExpressionOverAnEngine, StopsTheChainAtAMissingDerivative)
{
    engine_.parameters = {kTime};
    engine_.lastOrder = 1;
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_FALSE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[0].y(), 10.0);
    EXPECT_EQ(function_->getPlottingData1()[1].y(), 0.0);
    EXPECT_EQ(function_->getPlottingData2()[0].y(), 0.0);
}

// A missing third derivative is not a failure if it is not needed.
TEST_F(ExpressionOverAnEngine, NeedsOnlyTheDerivativesThatItFills)
{
    engine_.parameters = {kTime};
    engine_.lastOrder = 1;
    prepareToSample();
    function_->setMotorDependentVar(mf::MotorDriveType_Acceleration);
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_TRUE(function_->calculateDerivatives());
}

TEST_F(ExpressionOverAnEngine, DerivesNothingWithoutCalculatorOrSamples)
{
    EXPECT_FALSE(function_->calculateDerivatives());

    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(1.0, y));  // a calculator, but no samples
    EXPECT_FALSE(function_->calculateDerivatives());

    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    function_->ClearFunction();  // the calculator stays, the samples go
    EXPECT_EQ(engine_.alive, 1);
    EXPECT_FALSE(function_->calculateDerivatives());
}

TEST_F(ExpressionOverAnEngine, WritesOnlyTheDerivativesThatHaveAnArray)
{
    engine_.parameters = {kTime};
    prepareToSample();
    function_->setMotorDependentVar(mf::MotorDriveType_Acceleration);
    EXPECT_TRUE(function_->calculateValue());
    function_->setMotorDependentVar(mf::MotorDriveType_Displacment);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData2(), nullptr);
    EXPECT_EQ(function_->getPlottingData3(), nullptr);
}

struct FilledCase {
    const char* name;
    int objectType;
    mf::MotorDriveType_e quantity;
    int highest;  // the highest order that is filled; three have an array
};

const FilledCase kFilledCases[] = {
    {"Displacement", 0, mf::MotorDriveType_Displacment, 3},
    {"Velocity", 0, mf::MotorDriveType_Velocity, 2},
    {"Acceleration", 0, mf::MotorDriveType_Acceleration, 1},
    {"NoQuantity", 0, mf::MotorDriveType_None, 1},
    {"Force", 1, mf::MotorDriveType_Displacment, 1},
    {"AnotherObject", 2, mf::MotorDriveType_Displacment, 1},
};

void PrintTo(const FilledCase& c, std::ostream* os)
{
    *os << "object " << c.objectType << ", quantity " << c.quantity;
}

class FilledDerivatives : public ExpressionOverAnEngine, public testing::WithParamInterface<FilledCase> {};

// The quantity at the call decides, not the one for which the arrays were made.
TEST_P(FilledDerivatives, AreThoseOfTheQuantity)
{
    const FilledCase& c = GetParam();
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    engine_.evaluate = [](double, int, double& y) {
        y = -1.0;
        return true;
    };
    function_->motionObjectType = c.objectType;
    function_->setMotorDependentVar(c.quantity);
    EXPECT_TRUE(function_->calculateDerivatives());
    for (int order = 1; order <= 3; ++order) {
        const mfPoint2D_c* const points = function_->getPlottingData(order);
        for (int i = 0; i < 100; ++i)
            EXPECT_EQ(points[i].y() == -1.0, order <= c.highest) << "order " << order << " at " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Expression, FilledDerivatives, testing::ValuesIn(kFilledCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(ExpressionOverAnEngine, DerivesAsManyPointsAsTheCountSaysAtMostAllPoints)
{
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    engine_.evaluate = [](double, int, double& y) {
        y = -1.0;
        return true;
    };
    function_->setPlottingPointCount(10);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[9].y(), -1.0);
    EXPECT_EQ(function_->getPlottingData1()[10].y(), 20.0);
    function_->setPlottingPointCount(1000);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[99].y(), -1.0);
    function_->setPlottingPointCount(1);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[0].y(), 0.0) << "there is no point before it to repeat";
    for (const int count : {0, -1}) {
        function_->setPlottingPointCount(count);
        EXPECT_FALSE(function_->calculateDerivatives());
    }
}

}  // namespace
