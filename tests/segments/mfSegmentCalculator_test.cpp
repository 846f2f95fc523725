// SPDX-License-Identifier: MIT

// The calls that a calculator makes to the expression engine, which records them here.

#include "mfcurves/segments/mfSegmentCalculator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/recordedEngine.h"
#include "tests/segments/segmentTables.h"

using mf::test::SegmentCalculator;
using mf::test::theHighestOrder;
using mf::test::theLiving;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST_F(SegmentCalculator, BuildsNothingUntilRequested)
{
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SegmentCalculator, HighestOrderBuildsAllOfThemInOrder)
{
    ASSERT_NE(segment.getCalculator(3), nullptr);
    EXPECT_THAT(calls(),
                ElementsAre("parse 2*x of x", "differentiate 0", "differentiate 1", "differentiate 2"));
}

TEST_F(SegmentCalculator, OrderOneDoesNotBuildOrderTwo)
{
    ASSERT_NE(segment.getCalculator(1), nullptr);
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x", "differentiate 0"));
}

TEST_F(SegmentCalculator, EachOrderIsBuiltOnce)
{
    ICalculator* third = segment.getCalculator(3);
    ICalculator* first = segment.getCalculator(1);
    calls();
    EXPECT_EQ(segment.getCalculator(1), first);
    EXPECT_EQ(segment.getCalculator(3), third);
    EXPECT_NE(segment.getCalculator(0), first);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SegmentCalculator, OtherTextReleasesAllFourAndCompilesAgain)
{
    segment.getCalculator(3);
    segment.setProfileExpr(L"3*x");
    EXPECT_EQ(theLiving, 4);  // the calculators have not noticed yet
    calls();
    ASSERT_NE(segment.getCalculator(1), nullptr);
    EXPECT_THAT(calls(), ElementsAre("release 0", "release 1", "release 2", "release 3", "parse 3*x of x",
                                     "differentiate 0"));
}

TEST_F(SegmentCalculator, CaseDoesNotMakeANewText)
{
    ICalculator* value = segment.getCalculator(0);
    calls();
    segment.setProfileExpr(L"2*X");
    EXPECT_EQ(segment.getCalculator(0), value);
    segment.setProfileExpr(L"2*x");
    EXPECT_EQ(segment.getCalculator(0), value);
    EXPECT_THAT(calls(), IsEmpty());
}

// A text found equal ignoring case is remembered for speed, but further texts are compared
// with the one that was compiled.
TEST_F(SegmentCalculator, OtherTextAfterOtherCaseCompiles)
{
    segment.getCalculator(0);
    segment.setProfileExpr(L"2*X");
    segment.getCalculator(0);
    calls();
    segment.setProfileExpr(L"3*X");
    segment.getCalculator(0);
    EXPECT_THAT(calls(), ElementsAre("release 0", "parse 3*X of x"));
}

TEST_F(SegmentCalculator, EqualTextInAnotherBufferIsNotANewText)
{
    ICalculator* value = segment.getCalculator(0);
    calls();
    segment.setProfileExpr(CString(std::wstring(L"2*x")));
    EXPECT_EQ(segment.getCalculator(0), value);
    EXPECT_EQ(segment.getCalculator(0), value);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SegmentCalculator, VariableAloneCompilesNothing)
{
    ICalculator* value = segment.getCalculator(0);
    calls();
    segment.setProfileIndepVar(L"t");
    EXPECT_EQ(segment.getCalculator(0), value);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SegmentCalculator, TextThatDoesNotCompileIsTriedAtEachRequest)
{
    segment.setProfileExpr(L"?");
    for (const int order : {0, 1, 2, 3, 0}) {
        EXPECT_EQ(segment.getCalculator(order), nullptr);
        EXPECT_THAT(calls(), ElementsAre("parse ? of x")) << "order " << order;
    }
}

TEST_F(SegmentCalculator, TextThatDoesNotCompileReleasesTheOneBefore)
{
    segment.getCalculator(1);
    calls();
    segment.setProfileExpr(L"?");
    EXPECT_EQ(segment.getCalculator(1), nullptr);
    EXPECT_THAT(calls(), ElementsAre("release 0", "release 1", "parse ? of x"));
    segment.setProfileExpr(L"2*x");
    EXPECT_NE(segment.getCalculator(0), nullptr);
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x"));
}

TEST_F(SegmentCalculator, EmptyTextIsUpToDateAndTried)
{
    mfSegment_c fresh;
    EXPECT_TRUE(mfSegmentCalculator_c(&fresh).isUpToDate());
    EXPECT_EQ(fresh.getCalculator(0), nullptr);
    EXPECT_THAT(calls(), ElementsAre("parse  of "));
}

TEST_F(SegmentCalculator, MissingDerivativeEndsTheChain)
{
    theHighestOrder = 1;
    EXPECT_EQ(segment.getCalculator(3), nullptr);
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x", "differentiate 0", "differentiate 1"));
    EXPECT_NE(segment.getCalculator(1), nullptr);
    EXPECT_EQ(segment.getCalculator(2), nullptr);
    EXPECT_THAT(calls(), ElementsAre("differentiate 1"));
}

TEST_F(SegmentCalculator, OrdersOutsideAreNull)
{
    for (const int order : {-1, 4, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(segment.getCalculator(order), nullptr);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SegmentCalculator, WithoutASegmentHasNothing)
{
    mfSegmentCalculator_c alone(nullptr);
    EXPECT_FALSE(alone.isUpToDate());
    EXPECT_EQ(alone.getCalculator(0), nullptr);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SegmentCalculator, IsUpToDateOnceBuilt)
{
    mfSegmentCalculator_c calculator(&segment);
    EXPECT_FALSE(calculator.isUpToDate());
    calculator.getCalculator(0);
    EXPECT_TRUE(calculator.isUpToDate());
    segment.setProfileExpr(L"3*x");
    EXPECT_FALSE(calculator.isUpToDate());
}

TEST_F(SegmentCalculator, ReleasesAllWithTheSegment)
{
    {
        mfSegment_c shortLived;
        shortLived.setProfileExpr(L"x");
        shortLived.getCalculator(3);
        calls();
    }
    EXPECT_THAT(calls(), ElementsAre("release 0", "release 1", "release 2", "release 3"));
    EXPECT_EQ(theLiving, 0);
}

class OpenCalculator : public mfSegmentCalculator_c {
public:
    using mfSegmentCalculator_c::iGetCalculator;
    using mfSegmentCalculator_c::iReleaseCalculators;
    using mfSegmentCalculator_c::mfSegmentCalculator_c;
};

// Only getCalculator checks whether the text has changed.
TEST_F(SegmentCalculator, BuildingDoesNotReadTheTextOfBuiltOrders)
{
    OpenCalculator calculator(&segment);
    ICalculator* first = calculator.iGetCalculator(1);
    calls();
    segment.setProfileExpr(L"3*x");
    EXPECT_EQ(calculator.iGetCalculator(1), first);
    EXPECT_NE(calculator.iGetCalculator(2), nullptr);
    EXPECT_THAT(calls(), ElementsAre("differentiate 1"));
}

TEST_F(SegmentCalculator, GivingBackLeavesItUpToDate)
{
    OpenCalculator calculator(&segment);
    ASSERT_NE(calculator.getCalculator(2), nullptr);
    calls();
    calculator.iReleaseCalculators();
    EXPECT_THAT(calls(), ElementsAre("release 0", "release 1", "release 2"));
    calculator.iReleaseCalculators();
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_TRUE(calculator.isUpToDate());
    ASSERT_NE(calculator.getCalculator(0), nullptr);
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x"));
}

// A text reaches the engine through the narrow encoding, which cannot represent half a
// surrogate pair.
TEST_F(SegmentCalculator, TextIsConvertedThroughTheNarrowEncoding)
{
    segment.setProfileExpr(CString(std::wstring(L"x+\xD800")));
    segment.setProfileIndepVar(L"\u00E9");
    segment.getCalculator(0);
    EXPECT_THAT(calls(), ElementsAre("parse x+\xEF\xBF\xBD of \xC3\xA9"));
}

// One text that is not ASCII is enough, whichever of the two, and whenever it is compiled.
TEST_F(SegmentCalculator, TextsOfSampledRowsAreConvertedToo)
{
    const CString half(std::wstring(L"x+\xD800"));
    const CString plain(L"x");
    for (const bool isExpression : {true, false}) {
        mfFunctionSegments_c table;
        mf::test::fill(table, "0:0 0:99");
        mfSegment_c& row = mf::test::rowOf(table, 1);
        row.setProfileExpr(isExpression ? half : plain);
        row.setProfileIndepVar(isExpression ? plain : half);
        calls();
        table.calculateValue(1);
        EXPECT_NE(row.getPlottingData0(), nullptr);
        const std::vector<std::string> made = calls();
        ASSERT_FALSE(made.empty());
        EXPECT_EQ(made.front(), isExpression ? "parse x+\xEF\xBF\xBD of x" : "parse x of x+\xEF\xBF\xBD");
    }
}

// ------------------------------- what a table makes of a derivative it cannot have

class TableWithoutSecondDerivative : public SegmentCalculator {
protected:
    TableWithoutSecondDerivative()
    {
        theHighestOrder = 1;
        mf::test::fill(table, "0:0 0:99");
        mf::test::rowOf(table, 1).setProfileExpr(L"2*x");
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    }

    mfFunctionSegments_c table;
};

TEST_F(TableWithoutSecondDerivative, FailsAtAPointAndKeepsTheLowerOrders)
{
    mf::test::rowOf(table, 1).setPlottingDataCount(100);
    double y = -1.0;
    double d1 = -1.0;
    double d2 = -1.0;
    double d3 = -1.0;
    EXPECT_TRUE(table.calculateValue(1, 5.0, y, d1, d2, d3, 1));
    EXPECT_FALSE(table.calculateValue(1, 5.0, y, d1, d2, d3, 2));
    EXPECT_THAT((std::vector<double>{y, d1, d2, d3}), ElementsAre(5.0, 105.0, 0.0, 0.0));
    EXPECT_EQ(table.evaluate(5.0, 1), 105.0);
    EXPECT_EQ(table.evaluate(5.0, 2), 0.0);
    EXPECT_EQ(table.evaluate(5.0, 3), 0.0);
}

TEST_F(TableWithoutSecondDerivative, SamplesItAsZero)
{
    table.calculateValue(1);
    const mfSegment_c& row = mf::test::rowOf(table, 1);
    EXPECT_EQ(row.getPlottingData0()[5].y(), 5.0);
    EXPECT_EQ(row.getPlottingData1()[5].y(), 105.0);
    for (int order = 2; order <= 3; ++order) {
        EXPECT_EQ(row.getPlottingData(order)[5].x(), 5.0);
        EXPECT_EQ(row.getPlottingData(order)[5].y(), 0.0);
    }
}

// All three derivatives are built, even if the quantity needs fewer, once for all arrays.
TEST_F(TableWithoutSecondDerivative, ReadingSamplesMakesAllDerivativesWhateverTheQuantity)
{
    theHighestOrder = 3;
    table.setMotorDependentVar(mf::MotorDriveType_Acceleration);
    calls();
    const mfSegment_c& row = mf::test::rowOf(table, 1);
    table.calculateValue(1);
    row.getPlottingData1();
    EXPECT_THAT(calls(),
                ElementsAre("parse 2*x of ", "differentiate 0", "differentiate 1", "differentiate 2"));
    row.getPlottingData0();
    table.calculateValue(1);
    row.getPlottingData0();
    EXPECT_THAT(calls(), IsEmpty());
}

}  // namespace
