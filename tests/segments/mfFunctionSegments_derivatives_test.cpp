// SPDX-License-Identifier: MIT

// Which derivative arrays are filled, and with how many points.

#include <gtest/gtest.h>
#include <ostream>

#include "mfcurves/functions/mfPoint2D.h"
#include "tests/segments/formulaTable.h"

using namespace mf::test;

namespace {

constexpr int kForceOrTorque = 1;

class Curve : public FormulaTable {};

struct FilledCase {
    const char* name;
    int motionObjectType;
    int quantity;
    int built;  // the highest derivative that is built and filled
};

void PrintTo(const FilledCase& c, std::ostream* os)
{
    *os << "object " << c.motionObjectType << ", quantity " << c.quantity;
}

// The quantity alone decides which arrays are filled, but only arrays that were built: a
// force with a motor's quantity has only its one derivative.
const FilledCase kFilledCases[] = {
    {"Displacement", 0, mf::MotorDriveType_Displacment, 3},
    {"Velocity", 0, mf::MotorDriveType_Velocity, 2},
    {"Acceleration", 0, mf::MotorDriveType_Acceleration, 1},
    {"NoQuantity", 0, mf::MotorDriveType_None, 0},
    {"Force", kForceOrTorque, mf::MotorDriveType_None, 1},
    {"ForceWithDisplacement", kForceOrTorque, mf::MotorDriveType_Displacment, 1},
    {"ForceWithVelocity", kForceOrTorque, mf::MotorDriveType_Velocity, 1},
    {"OtherObject", 2, mf::MotorDriveType_Displacment, 0},
};

class FilledDerivatives : public testing::TestWithParam<FilledCase> {
protected:
    void setKind(int motionObjectType, int quantity)
    {
        table.motionObjectType = motionObjectType;
        table.setMotorDependentVar(static_cast<mf::MotorDriveType_e>(quantity));
    }

    void fillWith(const char* rows)
    {
        fill(table, rows);
        rowOf(table, 1).setProfileExpr(L"x^4");
        rowOf(table, 1).setProfileIndepVar(L"x");
    }

    double slope(int order, int i) { return rowOf(table, 1).getPlottingData(order)[i].y(); }

    mfFunctionSegments_c table;
};

TEST_P(FilledDerivatives, AreThoseThatAreBuilt)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 0:99");
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    const double atTwo[] = {16.0, 32.0, 48.0, 48.0};
    for (int order = 0; order <= 3; ++order) {
        ASSERT_EQ(rowOf(table, 1).getPlottingData(order) != nullptr, order <= c.built) << order;
        if (order <= c.built) {
            EXPECT_EQ(slope(order, 2), atTwo[order]);
        }
    }
}

TEST_P(FilledDerivatives, StaleOnesAreNotChanged)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 0:99");
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).setProfileExpr(L"10*x^4");
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    const double atTwo[] = {16.0, 32.0, 48.0, 48.0};
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(slope(order, 2), order <= c.built ? 10.0 * atTwo[order] : atTwo[order]) << order;
}

TEST_P(FilledDerivatives, AFormulaThatNoLongerCompilesClearsThoseThatAreBuilt)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 0:99");
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).setProfileExpr(L"2*(x");
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    const double atTwo[] = {16.0, 32.0, 48.0, 48.0};
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(slope(order, 2), order <= c.built ? 0.0 : atTwo[order]) << order;
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].x(), order <= c.built ? 0.0 : 2.0) << order;
    }
}

// The number of points shrinks under a stale array, and grows above one.
TEST_P(FilledDerivatives, StaleOnesOfAnotherLengthAreNotChanged)
{
    const FilledCase& c = GetParam();
    fillWith("0:0 2:2=5");
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).setStartX(0.0);
    rowOf(table, 1).setEndX(99.0);
    setKind(c.motionObjectType, c.quantity);
    table.calculateValue(1);
    setKind(0, mf::MotorDriveType_Displacment);
    table.calculateDerivatives(1);
    for (int order = 1; order <= 3; ++order) {
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[0].x(), order <= c.built ? 0.0 : 2.0) << order;
    }
}

INSTANTIATE_TEST_SUITE_P(Segments, FilledDerivatives, testing::ValuesIn(kFilledCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(Curve, DerivativesKeepToTheLengthThatWasBuilt)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    table.calculateValue(1);
    rowOf(table, 1).setPlottingDataCount(100'000);
    giveFormula(1, L"x^3");
    table.calculateDerivatives(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[99].y(), 3.0 * 99.0 * 99.0);
}

TEST_F(Curve, DerivativesAreTakenAtAsManyPointsAsPlanned)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    table.calculateValue(1);
    giveFormula(1, L"x^3");
    for (const int count : {-1, 0, 2}) {
        rowOf(table, 1).setPlottingDataCount(count);
        table.calculateDerivatives(1);
        EXPECT_EQ(rowOf(table, 1).getPlottingData1()[1].y(), count == 2 ? 3.0 : 2.0);
        EXPECT_EQ(rowOf(table, 1).getPlottingData1()[2].y(), 4.0);
    }
}

// Longer arrays than a row is sampled into, built by the host.
TEST_F(Curve, DerivativesOfManyPoints)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    mfSegment_c& row = rowOf(table, 1);
    row.setPlottingDataCount(257);
    row.initializePlottingData(0, mf::MotorDriveType_Velocity);
    for (int i = 0; i < 257; ++i)
        row.getPlottingData0()[i] = mfPoint2D_c(i, -1.0);
    table.setMotorDependentVar(mf::MotorDriveType_Velocity);
    table.calculateDerivatives(1);
    for (int i = 0; i < 257; ++i) {
        EXPECT_EQ(row.getPlottingData1()[i].x(), i);
        EXPECT_EQ(row.getPlottingData1()[i].y(), 2.0 * i);
        EXPECT_EQ(row.getPlottingData2()[i].y(), 2.0);
        EXPECT_EQ(row.getPlottingData0()[i].y(), -1.0);
    }
}

TEST_F(Curve, NothingIsDerivedWithoutValues)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.calculateDerivatives(1);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order), nullptr);
}

TEST_F(Curve, NothingIsDerivedWhereNoPointsWereBuilt)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^2");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    mfSegment_c& row = rowOf(table, 1);
    row.setPlottingDataCount(0);
    row.initializePlottingData(0, mf::MotorDriveType_Displacment);
    for (const int count : {1, 2, 100}) {
        row.setPlottingDataCount(count);
        table.calculateDerivatives(1);
        for (int order = 0; order <= 3; ++order)
            EXPECT_EQ(row.getPlottingData(order), nullptr) << count;
    }
}

// A row of one point checks whether the curve drives a motor; a stretch does not.
TEST_F(Curve, PointRowOfAnUnknownObjectHasItsFirstSlopeCleared)
{
    fill(table, "0:0 2:2=5");
    giveFormula(1, L"x^2");
    table.motionObjectType = kForceOrTorque;
    table.calculateValue(1);
    rowOf(table, 1).getPlottingData1()[0] = mfPoint2D_c(9.0, 9.0);
    table.motionObjectType = 2;
    table.calculateDerivatives(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[0].x(), 2.0);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[0].y(), 0.0);

    rowOf(table, 1).getPlottingData1()[0] = mfPoint2D_c(9.0, 9.0);
    table.motionObjectType = 0;  // a motor without a quantity has no derivative to clear
    table.calculateDerivatives(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData1()[0].x(), 9.0);
}

}  // namespace
