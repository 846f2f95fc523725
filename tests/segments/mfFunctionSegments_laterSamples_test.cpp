// SPDX-License-Identifier: MIT

// Samples are those of the row at the time of sampling, whenever they are first read.

#include <gtest/gtest.h>
#include <ostream>

#include "mfcurves/functions/mfPoint2D.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "tests/segments/formulaTable.h"

using namespace mf::test;

namespace {

class Curve : public FormulaTable {};

struct LaterCase {
    const char* name;
    void (*change)(mfFunctionSegments_c& table, mfSegment_c& row);
};

void PrintTo(const LaterCase& c, std::ostream* os)
{
    *os << c.name;
}

// What may happen to a row between its sampling and the first use of its arrays.
const LaterCase kLaterCases[] = {
    {"Nothing", [](mfFunctionSegments_c&, mfSegment_c&) {}},
    {"OtherFormula", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setProfileExpr(L"7+x"); }},
    {"OtherFormulaInUse",
     [](mfFunctionSegments_c& table, mfSegment_c& row) {
         row.setProfileExpr(L"7+x");
         EXPECT_EQ(table.evaluate(2.0, 0), 9.0);
         EXPECT_EQ(table.evaluate(2.0, 3), 0.0);
     }},
    {"FormulaThatDoesNotCompile",
     [](mfFunctionSegments_c& table, mfSegment_c& row) {
         row.setProfileExpr(L"2*(x");
         EXPECT_EQ(table.evaluate(2.0, 0), 0.0);
     }},
    {"OtherVariable", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setProfileIndepVar(L"t"); }},
    {"OtherEnds",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         row.setStartX(5.0);
         row.setEndX(7.0);
     }},
    {"NoLength", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setEndX(row.getStartX()); }},
    {"OtherValue", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setValue(-3.0); }},
    {"OtherName", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setProfileName(L"Other"); }},
    {"OtherKey",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         mfProfileKey_c key;
         key.name = L"Cubic";
         row.setProfileKey(key);
     }},
    {"OtherCount", [](mfFunctionSegments_c&, mfSegment_c& row) { row.setPlottingDataCount(3); }},
    {"OtherQuantity",
     [](mfFunctionSegments_c& table, mfSegment_c&) { table.setMotorDependentVar(mf::MotorDriveType_None); }},
    {"OtherObject", [](mfFunctionSegments_c& table, mfSegment_c&) { table.motionObjectType = 1; }},
    {"Edits",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         table.modifySegment(1, kEndXColumn, 0.0, 50.0, 0.0, L"");
         table.modifySegment(1, kStartXColumn, 1.0, 0.0, 0.0, L"");
         table.modifySegment(0, kValueColumn, 0.0, 0.0, 9.0, L"");
     }},
    {"OtherPlaceInTheTable",
     [](mfFunctionSegments_c& table, mfSegment_c&) {
         table.insertSegment(0, makeSegment("0:0=1").release());
         table.deleteSegment(3);
     }},
    {"OtherRowSampled", [](mfFunctionSegments_c& table, mfSegment_c&) { table.calculateValue(2); }},
    {"RowCopiedInto",
     [](mfFunctionSegments_c&, mfSegment_c& row) {
         mfSegment_c source(1.0, 2.0, 3.0, L"Other");
         source.setProfileExpr(L"7+x");
         source.setPlottingDataCount(5);
         row.copy(&source);
     }},
};

class SampledEarlier : public Curve, public testing::WithParamInterface<LaterCase> {};

TEST_P(SampledEarlier, KeepsItsSamplesWhateverChanges)
{
    fill(table, "0:0 0:99 99:100");
    giveFormula(1, L"x^4");
    giveFormula(2, L"x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);

    GetParam().change(table, row);

    for (int order = 3; order >= 0; --order)
        ASSERT_NE(row.getPlottingData(order), nullptr) << order;
    for (int i = 0; i < 100; ++i) {
        const double x = i;
        const double expected[] = {x * x * x * x, 4.0 * x * x * x, 12.0 * x * x, 24.0 * x};
        for (int order = 0; order <= 3; ++order) {
            ASSERT_EQ(row.getPlottingData(order)[i].x(), x) << "order " << order;
            ASSERT_EQ(row.getPlottingData(order)[i].y(), expected[order]) << "order " << order << " at " << x;
        }
    }
}

TEST_P(SampledEarlier, KeepsItsArraysWhereTheyAre)
{
    fill(table, "0:0 0:99 99:100");
    giveFormula(1, L"x^4");
    giveFormula(2, L"x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    const mfPoint2D_c* const before[] = {row.getPlottingData0(), row.getPlottingData1(),
                                         row.getPlottingData2(), row.getPlottingData3()};

    GetParam().change(table, row);

    const mfPoint2D_c* const after[] = {row.getPlottingData0(), row.getPlottingData1(),
                                        row.getPlottingData2(), row.getPlottingData3()};
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(after[order], before[order]) << order;
        EXPECT_EQ(row.getPlottingData(order), before[order]) << order;
    }
}

INSTANTIATE_TEST_SUITE_P(Segments, SampledEarlier, testing::ValuesIn(kLaterCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(Curve, PointRowKeepsTheValueThatItWasSampledWith)
{
    fill(table, "0:0 2:2=7");
    giveFormula(1, L"100*x");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    row.setValue(9.0);
    row.setStartX(3.0);
    row.setProfileExpr(L"x");
    for (int order = 3; order >= 0; --order) {
        EXPECT_EQ(row.getPlottingData(order)[0].x(), 2.0) << order;
        EXPECT_EQ(row.getPlottingData(order)[0].y(), order == 0 ? 7.0 : 0.0) << order;
    }
}

TEST_F(Curve, BuildingTheArraysAgainForgetsTheSamples)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    row.initializePlottingData(0, mf::MotorDriveType_Acceleration);
    EXPECT_EQ(row.getPlottingData0()[2].x(), 0.0);
    EXPECT_EQ(row.getPlottingData0()[2].y(), 0.0);
    EXPECT_EQ(row.getPlottingData1()[2].y(), 0.0);
    EXPECT_EQ(row.getPlottingData2()[2].y(), 48.0);  // not built again
    EXPECT_EQ(row.getPlottingData3()[2].y(), 48.0);
}

TEST_F(Curve, BuildingAllArraysAgainLeavesNoSample)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfSegment_c& row = rowOf(table, 1);
    row.initializePlottingData(0, mf::MotorDriveType_Displacment);
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(row.getPlottingData(order)[2].x(), 0.0) << order;
        EXPECT_EQ(row.getPlottingData(order)[2].y(), 0.0) << order;
    }
    table.calculateValue(1);
    row.setPlottingDataCount(0);
    row.initializePlottingData(0, mf::MotorDriveType_Displacment);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(row.getPlottingData(order), nullptr) << order;
}

TEST_F(Curve, DerivingAgainLeavesTheValues)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    giveFormula(1, L"10*x^4");
    table.calculateDerivatives(1);
    const double atTwo[] = {16.0, 320.0, 480.0, 480.0};
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].y(), atTwo[order]) << order;
}

TEST_F(Curve, DerivativesAreTakenAtTheXOfTheValues)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    rowOf(table, 1).getPlottingData0()[2] = mfPoint2D_c(-1.0, 5.0);
    table.calculateDerivatives(1);
    const double atMinusOne[] = {5.0, -4.0, 12.0, -24.0};
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].x(), -1.0) << order;
        EXPECT_EQ(rowOf(table, 1).getPlottingData(order)[2].y(), atMinusOne[order]) << order;
    }
}

// Only one of two such rows may be destroyed, so an empty one is assigned to the copy,
// which then shares nothing.
TEST_F(Curve, CopyConstructionSharesTheSamples)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    const mfSegment_c bare;
    mfSegment_c shared(rowOf(table, 1));
    for (int order = 3; order >= 0; --order) {
        ASSERT_NE(shared.getPlottingData(order), nullptr);
        EXPECT_EQ(shared.getPlottingData(order), rowOf(table, 1).getPlottingData(order)) << order;
    }
    shared = bare;
    EXPECT_EQ(shared.getPlottingData0(), nullptr);
    EXPECT_EQ(rowOf(table, 1).getPlottingData3()[2].y(), 48.0);
}

// A formula that did not compile is compiled again, with the present name of its variable;
// one that did compile keeps the former name.
TEST_F(Curve, SamplingAgainTriesAFormulaUnderAnotherVariable)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    rowOf(table, 1).setProfileIndepVar(L"t");
    table.calculateValue(1);
    rowOf(table, 1).setProfileIndepVar(L"x");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].y(), 16.0);
    rowOf(table, 1).setProfileIndepVar(L"t");
    table.calculateValue(1);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].y(), 16.0);
}

TEST_F(Curve, SamplesOfAFormulaUnderAnotherVariableStayZero)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    rowOf(table, 1).setProfileIndepVar(L"t");
    table.calculateValue(1);
    rowOf(table, 1).setProfileIndepVar(L"x");
    EXPECT_EQ(table.evaluate(2.0, 0), 16.0);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].y(), 0.0);
    EXPECT_EQ(rowOf(table, 1).getPlottingData0()[2].x(), 0.0);
}

TEST_F(Curve, DeepCopyHasNoSamples)
{
    fill(table, "0:0 0:99");
    giveFormula(1, L"x^4");
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.calculateValue(1);
    mfFunctionSegments_c copied;
    ASSERT_TRUE(copied.Copy(&table));
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(rowOf(copied, 1).getPlottingData(order), nullptr) << order;
    EXPECT_EQ(copied.evaluate(2.0, 3), 48.0);  // but the count, and with it its derivatives
}

}  // namespace
