// SPDX-License-Identifier: MIT

// Samples are computed at their first use. Whatever happens to a row in between, they are
// those of the time of sampling.

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "mfcurves/functions/mfPoint2D.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"

using namespace mf::test;

namespace {

// All visible properties of a row's plotting arrays.
std::vector<double> samplesOf(const mfSegment_c& row)
{
    std::vector<double> seen = {double(row.getPlottingDataLength()), double(row.getPlottingDataOrders())};
    for (int order = 0; order <= 3; ++order) {
        const mfPoint2D_c* points = row.getPlottingData(order);
        seen.push_back(points != nullptr);
        for (int i = 0; points != nullptr && i < row.getPlottingDataLength(); ++i) {
            seen.push_back(points[i].x());
            seen.push_back(points[i].y());
        }
    }
    return seen;
}

struct Happening {
    const char* name;
    void (*happens)(mfFunctionSegments_c& table, mfSegment_c& row);
};

void PrintTo(const Happening& happening, std::ostream* os)
{
    *os << happening.name;
}

const Happening kHappenings[] = {
    {"Nothing", [](mfFunctionSegments_c&, mfSegment_c&) {}},
    {"StartMoves", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setStartX(5.0); }},
    {"EndMoves", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setEndX(5.0); }},
    {"EndsMeet", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setEndX(row.getStartX()); }},
    {"ValueChanges", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setValue(-9.0); }},
    {"FormulaChanges", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setProfileExpr(L"sin(x)"); }},
    {"FormulaChangesAndIsCompiled",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         row.setProfileExpr(L"sin(x)");
         row.getCalculator(3);
     }},
    {"FormulaComesBack",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         const CString former = row.getProfileExpr();
         row.setProfileExpr(L"sin(x)");
         row.getCalculator(0);
         row.setProfileExpr(former);
         row.getCalculator(0);
     }},
    {"FormulaGetsWrong",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         row.setProfileExpr(L"2*(x");
         row.getCalculator(0);
     }},
    {"VariableChanges",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         row.setProfileIndepVar(L"t");
         row.getCalculator(0);
     }},
    {"PlannedCountChanges", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setPlottingDataCount(7); }},
    {"QuantityChanges",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
         table.motionObjectType = 1;
     }},
    {"IsEvaluated",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         for (int order = 0; order <= 3; ++order)
             table.evaluate(1.5, order);
     }},
    {"BecomesACopy",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         mfSegment_c other(7.0, 8.0, 9.0, L"name");
         other.setProfileExpr(L"cos(x)");
         row.copy(&other);
     }},
    {"IsCopied",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         mfFunctionSegments_c copied;
         copied.Copy(&table);
         copied.calculateValue();
     }},
    {"TableIsEdited",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         table.modifySegment(1, kEndXColumn, 0.0, 4.0, 0.0, L"");
         table.insertSegment(1, new mfSegment_c);
     }},
};

class SamplesLookedAtLate : public testing::TestWithParam<Happening> {
protected:
    // The row's samples when `GetParam` happens before their first use, or after it.
    void expectTheSame(const char* rows, const wchar_t* formula)
    {
        std::vector<double> seen[2];
        for (const bool looksFirst : {true, false}) {
            mfFunctionSegments_c table;
            fill(table, rows);
            table.setMotorDependentVar(mf::MotorDriveType_Displacment);
            mfSegment_c& row = rowOf(table, 1);
            row.setProfileExpr(formula);
            row.setProfileIndepVar(L"x");
            table.calculateValue(1);
            if (looksFirst)
                row.getPlottingData0();
            GetParam().happens(table, row);
            seen[looksFirst] = samplesOf(row);
        }
        EXPECT_GT(seen[true].size(), 4u);
        EXPECT_EQ(seen[false], seen[true]);
    }
};

TEST_P(SamplesLookedAtLate, OfAStretchAreThoseAtSampling)
{
    expectTheSame("0:0 1:3=7", L"x^4+sin(3*x)");
}

TEST_P(SamplesLookedAtLate, OfAPointAreThoseAtSampling)
{
    expectTheSame("0:0 2:2=7", L"x^4");
}

TEST_P(SamplesLookedAtLate, OfAWrongFormulaAreThoseAtSampling)
{
    expectTheSame("0:0 1:3=7", L"2*(x+");
}

INSTANTIATE_TEST_SUITE_P(Segment, SamplesLookedAtLate, testing::ValuesIn(kHappenings),
                         [](const auto& tested) { return tested.param.name; });

class LateSamples : public testing::Test {
protected:
    LateSamples()
    {
        fill(table, "0:0 0:99=7");
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
        row().setProfileExpr(L"x^4");
        row().setProfileIndepVar(L"x");
        table.calculateValue(1);
    }
    mfSegment_c& row() { return rowOf(table, 1); }

    mfFunctionSegments_c table;
};

TEST_F(LateSamples, StayWhereTheyWereFirstRead)
{
    mfPoint2D_c* const points = row().getPlottingData2();
    points[3] = mfPoint2D_c(-1.0, -2.0);
    EXPECT_EQ(row().getPlottingData2(), points);
    EXPECT_EQ(row().getPlottingData2()[3].y(), -2.0);
}

TEST_F(LateSamples, AreCountedBeforeTheirFirstUse)
{
    EXPECT_EQ(row().getPlottingDataLength(), 100);
    EXPECT_EQ(row().getPlottingDataOrders(), 3);
}

TEST_F(LateSamples, AreReplacedByArraysThatAreBuiltAgain)
{
    row().setPlottingDataCount(5);
    row().initializePlottingData(0, mf::MotorDriveType_Velocity);
    EXPECT_EQ(row().getPlottingDataLength(), 5);
    for (int order = 0; order <= 2; ++order)
        EXPECT_EQ(row().getPlottingData(order)[2].y(), 0.0);
    EXPECT_EQ(row().getPlottingData3()[2].y(), 48.0);  // not built again
}

// The derivatives are those of the present formula, at the X of the sampling.
TEST_F(LateSamples, AreComputedBeforeTheirDerivativesAreTakenAgain)
{
    row().setStartX(1.0);
    row().setProfileExpr(L"x^2");
    table.calculateDerivatives(1);
    EXPECT_EQ(row().getPlottingData0()[2].y(), 16.0);
    EXPECT_EQ(row().getPlottingData1()[2].y(), 4.0);
    EXPECT_EQ(row().getPlottingData2()[2].y(), 2.0);
}

// The source is the one that is destroyed.
TEST_F(LateSamples, AreSharedByMemberwiseCopies)
{
    mfSegment_c shared(row());
    EXPECT_EQ(shared.getPlottingDataLength(), 100);
    EXPECT_EQ(shared.getPlottingData0()[2].y(), 16.0);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(shared.getPlottingData(order), row().getPlottingData(order));
    EXPECT_EQ(shared.getCalculator(3), row().getCalculator(3));
    shared = mfSegment_c();
}

TEST_F(LateSamples, OfTheTargetAreForgottenByMemberwiseAssignment)
{
    const mfSegment_c bare;
    row() = bare;
    EXPECT_EQ(row().getPlottingData0(), nullptr);
    EXPECT_EQ(row().getPlottingDataLength(), 0);
}

TEST_F(LateSamples, StayUnderAssignmentOfTheRowToItself)
{
    const mfSegment_c& same = row();
    row() = same;
    EXPECT_EQ(row().getPlottingData1()[2].y(), 32.0);
}

TEST_F(LateSamples, DoNotGoWithACopy)
{
    mfSegment_c copied;
    copied.copy(&row());
    EXPECT_EQ(copied.getPlottingDataCount(), 100);
    EXPECT_EQ(copied.getPlottingData0(), nullptr);
}

}  // namespace
