// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "tests/functions/dataPointTables.h"
#include "tests/support/FakeHost.h"

namespace mf::test {

// Tests of the rows.
class DataPointTable : public testing::Test {
protected:
    FakeHost host;
    mfFunctionDataPoints_c table;

    RecordingSpline& spline() { return host.services.spline(); }

    void start(const std::string& rows)
    {
        fill(table, rows);
        ASSERT_EQ(show(table), rows);
        spline().calls.clear();
    }
    bool insert(int row, const std::string& points)
    {
        std::unique_ptr<mfDataPoints_c> list = rowOf(points);
        const int countBefore = table.getDataPointsCount();
        const bool inserted = table.insertDataPoint(row, list.get());
        if (table.getDataPointsCount() > countBefore)
            (void)list.release();
        return inserted;
    }
    mfDataPoints_c& rowAt(int row)
    {
        mfDataPoints_c* found = nullptr;
        EXPECT_TRUE(table.selectDataPoint(row, found));
        return *found;
    }
};

// Tests of the spline and of the values and plots that come from it.
class DataPointValues : public testing::Test {
protected:
    FakeHost host;
    mfFunctionDataPoints_c function;

    RecordingSpline& spline() { return host.services.spline(); }

    void start(const std::string& rows)
    {
        fill(function, rows);
        spline().calls.clear();
        host.calls.clear();
    }
    double stepOfPlot() const
    {
        return function.getPlottingData0()[1].x() - function.getPlottingData0()[0].x();
    }
};

}  // namespace mf::test
