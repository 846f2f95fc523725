// SPDX-License-Identifier: MIT

// The calls that a row makes to the expression engine when it is only sampled.

#include <clocale>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/recordedEngine.h"
#include "tests/segments/segmentTables.h"

using mf::test::SegmentCalculator;
using mf::test::theLiving;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SampledRow : public SegmentCalculator {
protected:
    SampledRow()
    {
        mf::test::fill(table, "0:0 0:99");
        giveFormula(L"2*x", L"x");
    }
    ~SampledRow() override
    {
        table.clearSegments();
        EXPECT_EQ(theLiving, 0);
        std::setlocale(LC_ALL, "C");
    }

    void giveFormula(const wchar_t* expression, const wchar_t* variable)
    {
        row().setProfileExpr(expression);
        row().setProfileIndepVar(variable);
    }
    mfSegment_c& row() { return mf::test::rowOf(table, 1); }

    mfFunctionSegments_c table;
};

TEST_F(SampledRow, IsCompiledAtTheFirstUse)
{
    table.calculateValue(1);
    EXPECT_THAT(calls(), IsEmpty());
    row().getPlottingData0();
    EXPECT_THAT(calls(),
                ElementsAre("parse 2*x of x", "differentiate 0", "differentiate 1", "differentiate 2"));
    EXPECT_EQ(table.evaluate(5.0, 1), 105.0);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SampledRow, IsCompiledAtTheFirstEvaluation)
{
    table.calculateValue(1);
    EXPECT_EQ(table.evaluate(5.0, 0), 5.0);
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x"));
    row().getPlottingData0();
    EXPECT_THAT(calls(), ElementsAre("differentiate 0", "differentiate 1", "differentiate 2"));
}

TEST_F(SampledRow, WithoutUseIsNeverCompiled)
{
    table.calculateValue(1);
    giveFormula(L"3*x", L"x");
    table.calculateValue(1);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(SampledRow, ReleasesOutdatedCalculatorsAtOnce)
{
    row().getCalculator(1);
    giveFormula(L"3*x", L"x");
    calls();
    table.calculateValue(1);
    EXPECT_THAT(calls(), ElementsAre("release 0", "release 1"));
}

TEST_F(SampledRow, UsesTheTextsAtTheTimeOfSampling)
{
    table.calculateValue(1);
    giveFormula(L"3*t", L"t");
    row().getPlottingData0();
    EXPECT_THAT(calls(),
                ElementsAre("parse 2*x of x", "differentiate 0", "differentiate 1", "differentiate 2"));
    row().getCalculator(0);
    EXPECT_THAT(calls(), ElementsAre("release 0", "release 1", "release 2", "release 3", "parse 3*t of t"));
}

TEST_F(SampledRow, UsesTheTextsAtTheTimeOfSamplingAfterOthersWereCompiled)
{
    table.calculateValue(1);
    giveFormula(L"3*t", L"t");
    row().getCalculator(0);
    EXPECT_THAT(calls(), ElementsAre("parse 3*t of t"));
    row().getPlottingData0();
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x", "differentiate 0", "differentiate 1",
                                     "differentiate 2", "release 0", "release 1", "release 2", "release 3"));
    EXPECT_EQ(theLiving, 1);
}

// A change of case or variable is not a new text, so compiling later gives what would have
// been kept.
TEST_F(SampledRow, KeepsItsFormulaUnderAnotherCaseAndVariable)
{
    table.calculateValue(1);
    giveFormula(L"2*X", L"X");
    row().getCalculator(0);
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x"));
    table.calculateValue(1);
    row().getPlottingData0();
    EXPECT_THAT(calls(), ElementsAre("differentiate 0", "differentiate 1", "differentiate 2"));
}

TEST_F(SampledRow, SampledAgainUnderAnotherVariableKeepsItsFormula)
{
    table.calculateValue(1);
    giveFormula(L"2*x", L"t");
    table.calculateValue(1);
    row().getCalculator(0);
    EXPECT_THAT(calls(), ElementsAre("parse 2*x of x"));
}

TEST_F(SampledRow, ThatDoesNotCompileIsTriedOnceForTheSamplesAndOnceForTheRequest)
{
    giveFormula(L"?", L"x");
    table.calculateValue(1);
    giveFormula(L"?", L"t");
    EXPECT_EQ(row().getCalculator(0), nullptr);
    EXPECT_THAT(calls(), ElementsAre("parse ? of x", "parse ? of t"));
    EXPECT_EQ(row().getPlottingData3(), nullptr);
    EXPECT_EQ(row().getPlottingData0()[99].x(), 0.0);
}

// The conversion to the narrow encoding, and its change of the locale, is not deferred if
// that has another effect.
TEST_F(SampledRow, BeyondAsciiIsCompiledAtOnce)
{
    giveFormula(L"2*\u00E9", L"\u00E9");
    table.calculateValue(1);
    EXPECT_THAT(calls(), ElementsAre("parse 2*\xC3\xA9 of \xC3\xA9", "differentiate 0", "differentiate 1",
                                     "differentiate 2"));
}

TEST_F(SampledRow, UnderAnotherLocaleIsCompiledAtOnce)
{
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    table.calculateValue(1);
    EXPECT_EQ(calls().front(), "parse 2*x of x");
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

TEST_F(SampledRow, ReadingSamplesDoesNotChangeTheLocale)
{
    table.calculateValue(1);
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    row().getPlottingData0();
    EXPECT_EQ(calls().front(), "parse 2*x of x");
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
}

TEST_F(SampledRow, WithAnEncoderOfTheHostIsCompiledAtOnce)
{
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t& error) {
        error = 1;
        return 0;
    });
    EXPECT_THROW(table.calculateValue(1), CGeneralException);
    mf::platform::setNarrowEncoder({});
    ASSERT_NE(row().getPlottingData0(), nullptr);
    EXPECT_EQ(row().getPlottingData0()[99].x(), 0.0);
}

}  // namespace
