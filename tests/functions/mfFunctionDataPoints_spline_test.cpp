// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "tests/functions/dataPointTables.h"
#include "tests/functions/mfFunctionDataPointsTest.h"
#include "tests/support/FakeHost.h"

namespace {

using mf::test::DataPointValues;
using mf::test::FakeHost;
using mf::test::fill;
using mf::test::RecordingSpline;
using mf::test::rowOf;
using mf::test::show;
using mf::test::updateRowsOf;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(DataPointValues, NewFunctionGetsASplineAndDoesNotChangeIt)
{
    EXPECT_THAT(host.calls, ElementsAre("getMotionServices", "createSplineData"));
    EXPECT_EQ(function.getSplineData(), &spline());
    EXPECT_EQ(function.getInterpolationType(), mf::DataPointInterpolationType_Linear);
    EXPECT_THAT(spline().calls, IsEmpty());
    EXPECT_EQ(function.getPlottingDataCount(), 0);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(function.getPlottingData(order), nullptr);
}

TEST(DataPointSpline, IsReleasedOnceWithTheFunction)
{
    FakeHost host;
    {
        const mfFunctionDataPoints_c function;
        host.calls.clear();
    }
    EXPECT_THAT(host.calls, ElementsAre("getMotionServices", "releaseSplineData"));
    EXPECT_EQ(host.services.takenBack.size(), 1u);
}

TEST(DataPointSpline, IsReplacedAndTheOldOneIsReleased)
{
    FakeHost host;
    ISimSplineData_c* replacement = host.services.createSplineData();
    {
        mfFunctionDataPoints_c function;
        const ISimSplineData_c* first = function.getSplineData();
        function.setSplineData(replacement);
        EXPECT_EQ(function.getSplineData(), replacement);
        ASSERT_EQ(host.services.takenBack.size(), 1u);
        EXPECT_EQ(host.services.takenBack.front().get(), first);
    }
    EXPECT_EQ(host.services.takenBack.size(), 2u);
}

TEST_F(DataPointValues, SettingTheSameSplineReleasesNothing)
{
    host.calls.clear();
    function.setSplineData(&spline());
    EXPECT_EQ(function.getSplineData(), &spline());
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(DataPointValues, SettingNoSplineReleasesTheOldOneOnce)
{
    ISimSplineData_c* lent = &spline();
    function.setSplineData(nullptr);
    EXPECT_EQ(function.getSplineData(), nullptr);
    ASSERT_EQ(host.services.takenBack.size(), 1u);
    EXPECT_EQ(host.services.takenBack.front().get(), lent);
    host.calls.clear();
    function.setSplineData(nullptr);
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST(DataPointSpline, IsReplacedWithoutServicesAndNotReleased)
{
    FakeHost host;
    mfFunctionDataPoints_c function;
    RecordingSpline* lent = &host.services.spline();
    host.servicesAnswer = nullptr;
    RecordingSpline own;
    function.setSplineData(&own);
    EXPECT_EQ(function.getSplineData(), &own);
    EXPECT_THAT(host.services.takenBack, IsEmpty());

    host.servicesAnswer = &host.services;
    host.services.releaseSplineData(lent);
    host.servicesAnswer = nullptr;  // the destructor cannot give `own` back
    EXPECT_EQ(function.evaluate(1.0, 1), 11.0);
}

TEST(DataPointSpline, IsAbsentWithoutServicesOrContext)
{
    {
        FakeHost host;
        host.servicesAnswer = nullptr;
        mfFunctionDataPoints_c function;
        EXPECT_EQ(function.getSplineData(), nullptr);
    }
    mfFunctionDataPoints_c function;
    EXPECT_EQ(function.getSplineData(), nullptr);
}

// Every operation that uses the spline.
TEST(DataPointSpline, IsNotNeededByAnyOperation)
{
    mfFunctionDataPoints_c function;
    fill(function, "1:5 2:6 3:7");
    EXPECT_EQ(show(function), "1:5 2:6 3:7");
    EXPECT_TRUE(function.modifyDataPoint(0, 0, 4.0, 0.0));
    EXPECT_TRUE(function.modifyDataPoint(0, 1, 0.0, 9.0));
    EXPECT_TRUE(function.deleteDataPoint(1));
    EXPECT_TRUE(function.deleteDataPoints({1}));
    EXPECT_EQ(show(function), "2:9");
    function.setInterpolationType(mf::DataPointInterpolationType_Cubic);
    EXPECT_EQ(function.getInterpolationType(), mf::DataPointInterpolationType_Cubic);
    function.RegenSplineData();
    EXPECT_EQ(function.evaluate(2.0, 0), 0.0);
    double y0 = 1.0;
    double y1 = 1.0;
    double y2 = 1.0;
    double y3 = 1.0;
    function.calculateValue(2.0, y0, y1, y2, y3);
    EXPECT_THAT((std::vector<double>{y0, y1, y2, y3}), testing::Each(0.0));
    function.calculateValue();
    EXPECT_EQ(function.getPlottingData3()[99].x(), 2.0);
    EXPECT_EQ(function.getPlottingData3()[99].y(), 0.0);

    mfFunctionDataPoints_c copy;
    EXPECT_TRUE(copy.Copy(&function));
    EXPECT_EQ(show(copy), "2:9");
    function.ClearFunction();
    EXPECT_TRUE(function.isEmpty());
}

TEST_F(DataPointValues, ACopyBetweenAFunctionWithASplineAndOneWithout)
{
    start("1:5 2:6");
    host.servicesAnswer = nullptr;
    mfFunctionDataPoints_c bare;
    EXPECT_TRUE(bare.Copy(&function));
    EXPECT_EQ(show(bare), "1:5 2:6");
    EXPECT_TRUE(function.Copy(&bare));
    EXPECT_EQ(show(function), "1:5 2:6");
    EXPECT_THAT(spline().calls, ElementsAre("clearPoints", "setKind 2"));  // and no copyFrom of a null spline
    host.servicesAnswer = &host.services;
}

TEST_F(DataPointValues, RegenerationPassesEveryPointOfEveryRow)
{
    start("1:5 2:6,3:7 4:8");
    function.RegenSplineData();
    EXPECT_THAT(spline().calls,
                ElementsAre("clearPoints", "addPoint 1 5", "addPoint 2 6", "addPoint 3 7", "addPoint 4 8"));
}

// A spline of a host that has no memory left.
class FullSpline : public RecordingSpline {
public:
    void addPoint(double /*x*/, double /*y*/) override { throw std::bad_alloc(); }
};

class DataPointsOfAFullHost : public DataPointValues {
protected:
    DataPointsOfAFullHost()
    {
        start("1 4");
        host.services.releaseSplineData(function.getSplineData());
        host.servicesAnswer = nullptr;  // the full spline is not released
        function.setSplineData(&full);
    }

    FullSpline full;
};

TEST_F(DataPointsOfAFullHost, GiveAListBackThatWasInserted)
{
    const std::unique_ptr<mfDataPoints_c> list = rowOf("2:9");
    EXPECT_THROW(function.insertDataPoint(1, list.get()), std::bad_alloc);
    EXPECT_EQ(show(function), "1 4");
    EXPECT_EQ(show(*list), "2:9");
    EXPECT_THAT(updateRowsOf(function), IsEmpty());
}

TEST_F(DataPointsOfAFullHost, KeepTheirRowsWhenAListWasLeftOut)
{
    const std::unique_ptr<mfDataPoints_c> list = rowOf("0.5,1.5");  // would move to 2.5, above its end
    EXPECT_THROW(function.insertDataPoint(1, list.get()), std::bad_alloc);
    EXPECT_EQ(show(function), "1 4");
    EXPECT_THAT(updateRowsOf(function), IsEmpty());
}

}  // namespace
