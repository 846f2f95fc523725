// SPDX-License-Identifier: MIT

// The plotting arrays of a row after it was sampled.

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "mfcurves/functions/mfPoint2D.h"
#include "tests/segments/formulaTable.h"

using namespace mf::test;

namespace {

class Curve : public FormulaTable {};

TEST_F(Curve, SamplesHaveEqualDistances)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.calculateValue(1);
    ASSERT_EQ(rowOf(table, 1).getPlottingDataCount(), 100);
    const mfPoint2D_c* points = rowOf(table, 1).getPlottingData0();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(points[i].x(), i);
        EXPECT_EQ(points[i].y(), i * i);
    }
}

TEST_F(Curve, XOfSamplesGathersRoundingExceptForTheLast)
{
    fill(table, "0:0 0.1:1.1");
    giveFormula(1, L"3*x");
    table.calculateValue(1);
    const mfPoint2D_c* points = rowOf(table, 1).getPlottingData0();

    const double step = (1.1 - 0.1) / 99.0;
    double x = 0.1;
    bool productsDiffer = false;
    for (int i = 0; i < 99; ++i) {
        EXPECT_EQ(points[i].x(), x) << i;
        EXPECT_EQ(points[i].y(), 3.0 * x) << i;
        productsDiffer = productsDiffer || x != 0.1 + i * step;
        x += step;
    }
    EXPECT_TRUE(productsDiffer);  // otherwise this row could not distinguish the two rules
    EXPECT_NE(x, 1.1);
    EXPECT_EQ(points[99].x(), 1.1);
    EXPECT_EQ(points[99].y(), 3.0 * 1.1);
}

TEST_F(Curve, ReversedRowIsSampledBackwards)
{
    fill(table, "0:0 99:0");
    giveFormula(1, L"2*x");
    table.calculateValue(1);
    const mfPoint2D_c* points = rowOf(table, 1).getPlottingData0();
    EXPECT_EQ(points[0].x(), 99.0);
    EXPECT_EQ(points[1].x(), 98.0);
    EXPECT_EQ(points[1].y(), 196.0);
    EXPECT_EQ(points[99].x(), 0.0);
}

TEST_F(Curve, EverySampleIsTheValueAtItsX)
{
    fill(table, "0:0 0.3:2.9");
    giveFormula(1, L"sin(3*x)*exp(-x)+x^5/(1+x)");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    for (int i = 0; i < 100; ++i) {
        const double x = rowOf(table, 1).getPlottingData0()[i].x();
        for (int order = 0; order <= 3; ++order) {
            EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].x(), x);
            EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].y(), table.evaluate(x, order));
        }
    }
}

TEST_F(Curve, SamplesWithoutAValueAreZeroAndTheOthersAreNot)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"1/(x-5)+log(x-2.5)-log(x-2.5)");  // no value up to 2 and at 5
    table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    table.calculateValue(1);
    for (int i = 0; i < 100; ++i) {
        const bool defined = i > 2 && i != 5;
        EXPECT_EQ(rowOf(table, 1).getPlottingData0()[i].x(), i);
        EXPECT_EQ(rowOf(table, 1).getPlottingData1()[i].x(), i);
        EXPECT_NEAR(rowOf(table, 1).getPlottingData0()[i].y(), defined ? 1.0 / (i - 5) : 0.0, 1e-14) << i;
        if (i == 5) {
            EXPECT_EQ(rowOf(table, 1).getPlottingData1()[i].y(), 0.0);
        }
    }
}

TEST_F(Curve, PointRowHasItsStoredValueAndNoSlope)
{
    fill(table, "0:0 2:2=7");
    giveFormula(1, L"100*x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    const mfSegment_c& row = rowOf(table, 1);
    EXPECT_EQ(row.getPlottingDataCount(), 1);
    EXPECT_EQ(row.getPlottingDataLength(), 1);
    EXPECT_EQ(row.getPlottingData0()[0].x(), 2.0);
    EXPECT_EQ(row.getPlottingData0()[0].y(), 7.0);
    for (int order = 1; order <= 3; ++order) {
        EXPECT_EQ(row.getPlottingData(order)[0].x(), 2.0);
        EXPECT_EQ(row.getPlottingData(order)[0].y(), 0.0);
    }
}

// Of two ends that compare equal it is the start.
TEST_F(Curve, PointRowIsSampledAtItsStart)
{
    fill(table, "0:0 -0.0:0.0=7");
    giveFormula(1, L"x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    ASSERT_EQ(rowOf(table, 1).getPlottingDataCount(), 1);
    for (int order = 0; order <= 3; ++order)
        EXPECT_TRUE(std::signbit(rowOf(table, 1).getPlottingData(order)[0].x())) << order;
}

TEST_F(Curve, NearestEndsAreAStretch)
{
    fill(table, "0:0 2:2");
    rowOf(table, 1).setEndX(std::nextafter(2.0, 3.0));
    giveFormula(1, L"x");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingDataCount(), 100);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[99].x(), std::nextafter(2.0, 3.0));
}

TEST_F(Curve, NaNEndsAreAStretch)
{
    fill(table, "0:0 nan:nan");
    giveFormula(1, L"x");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingDataCount(), 100);
    EXPECT_TRUE(std::isnan(rowOf(table, 1).getPlottingData0()[50].x()));
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[50].y(), 0.0);
}

TEST_F(Curve, RowWithoutACompiledFormulaGetsZeros)
{
    for (const char* rows : {"0:0 1:3=7", "0:0 2:2=7"}) {
        table.clearSegments();
        fill(table, rows);
        giveFormula(1, L"2*(x");
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
        table.calculateValue(1);
        for (int order = 0; order <= 3; ++order) {
            ASSERT_NE(rowOf(table, 1).getPlottingData(order), nullptr);
            for (int i = 0; i < rowOf(table, 1).getPlottingDataLength(); ++i) {
                EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].x(), 0.0);
                EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[i].y(), 0.0);
            }
        }
    }
}

TEST_F(Curve, WholeTableIsSampledWithoutRowZero)
{
    fill(table, "0:1 0:1 1:1=3 1:3");
    for (int row = 0; row <= 3; ++row)
        giveFormula(row, L"x");
    table.calculateValue();
    EXPECT_EQ(rowOf(table, 0).getPlottingData0(), nullptr);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[99].y(), 1.0);
    EXPECT_EQ(rowOf(table, 2).getPlottingData0()[0].y(), 3.0);
    EXPECT_EQ(rowOf(table, 3).getPlottingData0()[99].y(), 3.0);
}

TEST_F(Curve, RowZeroIsSampledOnRequest)
{
    fill(table, "0:99");
    giveFormula(0, L"x");
    table.calculateValue(0);
    EXPECT_EQ(rowOf(table, 0).getPlottingData0()[50].y(), 50.0);
}

TEST_F(Curve, SamplingRowsOutsideTheTableDoesNothing)
{
    table.calculateValue();
    fill(table, "0:0 0:1");
    for (const int row : {-1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        table.calculateValue(row);
        table.calculateDerivatives(row);
    }
    EXPECT_EQ(rowOf(table, 1).getPlottingData0(), nullptr);
}

}  // namespace
