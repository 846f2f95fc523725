// SPDX-License-Identifier: MIT

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "tests/functions/dataPointTables.h"
#include "tests/functions/mfFunctionDataPointsTest.h"
#include "tests/support/FakeHost.h"

namespace {

using mf::test::Calls;
using mf::test::DataPointValues;
using mf::test::fill;
using mf::test::rowOf;
using mf::test::show;
using mf::test::updateRowsOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kOneNinetyNinth = 0.010101010101010102;

// One point per row, at first, first + step and so on.
void fillEvenly(mfFunctionDataPoints_c& table, int count, double first, double step)
{
    for (int i = 0; i < count; ++i)
        table.appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(first + i * step, 1.0)));
}

// Interpolation

TEST_F(DataPointValues, InterpolationTypeIsTheKindCountedFromTheOtherEnd)
{
    function.setInterpolationType(mf::DataPointInterpolationType_Akima);
    function.setInterpolationType(mf::DataPointInterpolationType_Cubic);
    function.setInterpolationType(mf::DataPointInterpolationType_Linear);
    EXPECT_THAT(spline().calls, ElementsAre("setKind 0", "setKind 1", "setKind 2"));
}

TEST_F(DataPointValues, UnknownInterpolationTypeIsStoredAndNotPassedOn)
{
    for (const int type : {-1, 3, 1000}) {
        function.setInterpolationType(static_cast<mf::DataPointInterpolationType_e>(type));
        EXPECT_EQ(function.getInterpolationType(), type);
    }
    EXPECT_THAT(spline().calls, IsEmpty());
}

TEST_F(DataPointValues, ChangingTheInterpolationLeavesPointsAndPlots)
{
    start("1:5 2:6");
    function.calculateValue();
    const mfPoint2D_c* plot = function.getPlottingData0();
    spline().calls.clear();
    function.setInterpolationType(mf::DataPointInterpolationType_Cubic);
    EXPECT_THAT(spline().calls, ElementsAre("setKind 1"));
    EXPECT_EQ(function.getPlottingData0(), plot);
}

// Values

TEST_F(DataPointValues, EvaluationMakesTheOneCallOfItsOrder)
{
    start("1:5 2:6");
    EXPECT_EQ(function.evaluate(7.5, 0), 7.5);
    EXPECT_EQ(function.evaluate(7.5, 1), 17.5);
    EXPECT_EQ(function.evaluate(-7.5, 2), 12.5);
    EXPECT_EQ(function.evaluate(7.5, 3), 37.5);
    EXPECT_THAT(spline().calls, ElementsAre("getValue 7.5", "getFirstDerivative 7.5",
                                            "getSecondDerivative -7.5", "getThirdDerivative 7.5"));
}

TEST_F(DataPointValues, EvaluationOfAnotherOrderIsZeroWithoutACall)
{
    start("1:5 2:6");
    EXPECT_EQ(function.evaluate(1.0, 4), 0.0);
    EXPECT_EQ(function.evaluate(1.0, -1), 0.0);
    EXPECT_THAT(spline().calls, IsEmpty());
}

TEST_F(DataPointValues, CalculationAtAnXCallsAllFourInOrder)
{
    double y0 = 0.0;
    double y1 = 0.0;
    double y2 = 0.0;
    double y3 = 0.0;
    function.calculateValue(2.5, y0, y1, y2, y3);  // for an empty table the spline decides
    EXPECT_THAT((std::vector<double>{y0, y1, y2, y3}), ElementsAre(2.5, 12.5, 22.5, 32.5));
    EXPECT_THAT(spline().calls, ElementsAre("getValue 2.5", "getFirstDerivative 2.5",
                                            "getSecondDerivative 2.5", "getThirdDerivative 2.5"));
}

// Plotting

TEST_F(DataPointValues, DomainReachesFromTheFirstRowToTheLast)
{
    double start = 1.0;
    double end = 1.0;
    function.getDomian(start, end);
    EXPECT_EQ(start, 0.0);
    EXPECT_EQ(end, 0.0);
    fill(function, "1,2 3 4,9");
    function.getDomian(start, end);
    EXPECT_EQ(start, 1.0);
    EXPECT_EQ(end, 9.0);
}

TEST_F(DataPointValues, EmptyTablePlotsNoSamples)
{
    function.calculateValue();
    EXPECT_EQ(function.getPlottingDataCount(), 0);
    for (int order = 0; order <= 3; ++order)
        EXPECT_NE(function.getPlottingData(order), nullptr);
    EXPECT_THAT(spline().calls, IsEmpty());
}

TEST_F(DataPointValues, EmptiedTablePlotsNoSamplesEither)
{
    start("1 2");
    function.calculateValue();
    function.clearDataPoints();
    EXPECT_EQ(function.getPlottingDataCount(), 100);  // of the former curve
    function.setPlottingDataCount();
    EXPECT_EQ(function.getPlottingDataCount(), 0);
    spline().calls.clear();
    function.calculateValue();
    EXPECT_EQ(function.getPlottingDataCount(), 0);
    EXPECT_THAT(spline().calls, IsEmpty());
}

TEST_F(DataPointValues, OnePointIsPlottedAHundredTimes)
{
    start("3:5");
    function.calculateValue();
    ASSERT_EQ(function.getPlottingDataCount(), 100);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(function.getPlottingData2()[i].x(), 3.0);
}

TEST_F(DataPointValues, UpToAHundredPointsTheStepIsMadeWithTheConstant)
{
    fillEvenly(function, 100, 0.0, 0.7);
    function.calculateValue();
    EXPECT_EQ(function.getPlottingDataCount(), 100);
    const double end = 99 * 0.7;
    EXPECT_NE(end * kOneNinetyNinth, end / 99.0);  // so the test can distinguish the two
    EXPECT_EQ(stepOfPlot(), end * kOneNinetyNinth);
}

TEST_F(DataPointValues, AboveAHundredPointsTheStepIsADivision)
{
    fillEvenly(function, 101, -0.25, 0.75);
    function.calculateValue();
    EXPECT_EQ(function.getPlottingDataCount(), 101);
    EXPECT_EQ(stepOfPlot(), 0.75);  // 75 from end to end, in quarters and so exact
    EXPECT_EQ(function.getPlottingData0()[100].x(), 74.75);
}

TEST_F(DataPointValues, SamplesCountPointsAndNotRows)
{
    auto row = std::make_unique<mfDataPoints_c>();
    for (int i = 0; i < 150; ++i)
        row->addPoint(i, 0.0);
    ASSERT_TRUE(function.insertDataPoint(0, row.release()));
    function.setPlottingDataCount();
    EXPECT_EQ(function.getPlottingDataCount(), 150);
    EXPECT_EQ(function.getPlottingData0(), nullptr);  // counted, not built
}

TEST_F(DataPointValues, SamplesUseRepeatedAdditionAndCallAllFourInOrder)
{
    start("0.1 1.3");
    function.calculateValue();
    ASSERT_EQ(function.getPlottingDataCount(), 100);
    const double step = (1.3 - 0.1) * kOneNinetyNinth;
    double x = 0.1;
    for (int i = 0; i < 100; ++i) {
        for (int order = 0; order <= 3; ++order) {
            EXPECT_EQ(function.getPlottingData(order)[i].x(), x);
            EXPECT_EQ(function.getPlottingData(order)[i].y(), x + 10.0 * order);
        }
        x += step;
    }
    EXPECT_NE(function.getPlottingData0()[99].x(), 0.1 + 99 * step);  // as rounding has it
    ASSERT_EQ(spline().calls.size(), 400u);
    EXPECT_THAT(Calls(spline().calls.begin(), spline().calls.begin() + 5),
                ElementsAre("getValue 0.1", "getFirstDerivative 0.1", "getSecondDerivative 0.1",
                            "getThirdDerivative 0.1", "getValue 0.112121"));
}

TEST_F(DataPointValues, PlotsAreByOrderAndNullOutsideIt)
{
    start("1 2");
    function.calculateValue();
    EXPECT_EQ(function.getPlottingData(0), function.getPlottingData0());
    EXPECT_EQ(function.getPlottingData(1), function.getPlottingData1());
    EXPECT_EQ(function.getPlottingData(2), function.getPlottingData2());
    EXPECT_EQ(function.getPlottingData(3), function.getPlottingData3());
    EXPECT_EQ(function.getPlottingData(-1), nullptr);
    EXPECT_EQ(function.getPlottingData(4), nullptr);
}

TEST_F(DataPointValues, EditsDoNotChangeThePlots)
{
    start("1 2");
    function.calculateValue();
    const mfPoint2D_c* plot = function.getPlottingData0();
    ASSERT_TRUE(function.modifyDataPoint(1, 0, 5.0, 0.0));
    ASSERT_TRUE(function.deleteDataPoint(0));
    EXPECT_EQ(function.getPlottingData0(), plot);
    EXPECT_EQ(plot[0].x(), 1.0);
    EXPECT_EQ(function.getPlottingDataCount(), 100);
}

// Older data

struct LegacyCase {
    const char* name;
    bool pointPerRow;
    std::map<double, double> points;
    const char* table;
};

const LegacyCase kLegacyCases[] = {
    {"PointPerRow", true, {{3, 7}, {1, 5}, {2, 6}}, "1:5 2:6 3:7"},
    {"OneRow", false, {{3, 7}, {1, 5}, {2, 6}}, "1:5,2:6,3:7"},
    {"PointPerRowOfNoPoints", true, {}, ""},
    {"OneRowOfNoPoints", false, {}, "-"},
};

class Legacy : public DataPointValues, public testing::WithParamInterface<LegacyCase> {};

TEST_P(Legacy, TableIsRebuiltFromTheSpline)
{
    const LegacyCase& c = GetParam();
    start("40 50");
    spline().points = c.points;
    spline().kind = 0;
    function.updateForLegacyData(c.pointPerRow);
    EXPECT_EQ(show(function), c.table);
    EXPECT_EQ(function.getInterpolationType(), mf::DataPointInterpolationType_Akima);
    EXPECT_EQ(function.getPlottingDataCount(), c.points.empty() ? 0 : 100);
    EXPECT_NE(function.getPlottingData0(), nullptr);
    // Nothing is passed to the spline; only the plot is made.
    ASSERT_EQ(spline().calls.size(), c.points.empty() ? 2u : 402u);
    EXPECT_EQ(spline().calls[0], "getPointMap");
    EXPECT_EQ(spline().calls[1], "getKind");
    EXPECT_THAT(updateRowsOf(function), ElementsAre(1));  // of the last insertion
}

INSTANTIATE_TEST_SUITE_P(DataPoints, Legacy, testing::ValuesIn(kLegacyCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(DataPointValues, LegacyKindsAreReadBackwardsAndUnknownOnesIgnored)
{
    const std::vector<std::pair<int, int>> kinds = {{0, 2}, {1, 1}, {2, 0}, {3, 0}, {-1, 0}};
    for (const auto& [kind, type] : kinds) {
        spline().kind = kind;
        function.updateForLegacyData(true);
        EXPECT_EQ(function.getInterpolationType(), type) << kind;
    }
}

TEST_F(DataPointValues, LegacyDataWithoutASplineOnlyEmptiesTheTable)
{
    start("1 2");
    function.calculateValue();
    const mfPoint2D_c* plot = function.getPlottingData0();
    function.setSplineData(nullptr);
    function.updateForLegacyData(false);
    EXPECT_TRUE(function.isEmpty());
    EXPECT_EQ(function.getPlottingData0(), plot);
    EXPECT_EQ(function.getPlottingDataCount(), 100);
}

TEST_F(DataPointValues, ExpandingMakesARowOfEachPointAndChangesNothingElse)
{
    start("1 2:5,4:6,3:7 9");  // a row may be out of order in itself
    function.expandDataPoints(1);
    EXPECT_EQ(show(function), "1 2:5 4:6 3:7 9");
    EXPECT_THAT(spline().calls, IsEmpty());
    EXPECT_THAT(updateRowsOf(function), ElementsAre(2));
    EXPECT_EQ(function.getPlottingData0(), nullptr);
}

TEST_F(DataPointValues, ExpandingARowOfOnePointMakesANewRow)
{
    start("1 2:5 9");
    mfDataPoints_c* before = nullptr;
    ASSERT_TRUE(function.selectDataPoint(1, before));
    const auto address = reinterpret_cast<std::uintptr_t>(before);
    function.expandDataPoints(1);
    EXPECT_EQ(show(function), "1 2:5 9");
    mfDataPoints_c* after = nullptr;
    ASSERT_TRUE(function.selectDataPoint(1, after));
    EXPECT_NE(reinterpret_cast<std::uintptr_t>(after), address);
}

TEST_F(DataPointValues, ExpandingARowOfNoPointsRemovesIt)
{
    ASSERT_TRUE(function.insertDataPoint(0, rowOf("-").release()));
    function.expandDataPoints(0);
    EXPECT_TRUE(function.isEmpty());
}

TEST_F(DataPointValues, ExpandingOutsideTheTableDoesNothing)
{
    start("1 2:5 9");
    function.expandDataPoints(-1);
    function.expandDataPoints(3);
    EXPECT_EQ(show(function), "1 2:5 9");
}

TEST_F(DataPointValues, OlderDataComesBackToOnePointARow)
{
    start("1");
    spline().points = {{1, 5}, {2, 6}, {3, 7}};
    function.updateForLegacyData(false);
    function.expandDataPoints(0);
    EXPECT_EQ(show(function), "1:5 2:6 3:7");
}

}  // namespace
