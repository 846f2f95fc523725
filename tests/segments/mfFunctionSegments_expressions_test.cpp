// SPDX-License-Identifier: MIT

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/locale/comma_locale.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"

using namespace mf::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

mfProfileKey_c keyNamed(const wchar_t* name)
{
    mfProfileKey_c key;
    key.name = name;
    key.source = L" (Default)";
    return key;
}

class ParseExpression : public testing::Test {
protected:
    ParseExpression()
    {
        host.managerAnswer = &manager;
        EXPECT_TRUE(manager.rebuildUserProfileMap());
        fill(table, "0:1=3 1:2=5 2:4=-1");
        record.resultExpression = "A+B+C+D+t";
        record.independentVariable = "t";
        record.x1 = "A";
        record.y1 = "B";
        record.x2 = "C";
        record.y2 = "D";
    }

    mfSegment_c& row(int number) { return rowOf(table, number); }

    // Gives a row a record that the test owns.
    void useRecord(int number)
    {
        row(number).setProfileKey(keyNamed(L"Own"));
        row(number).setProfile(&record);
    }

    CString parsed(int number)
    {
        table.parseExpression(number);
        return row(number).getProfileExpr();
    }

    FakeHost host;
    mfProfileManager_c manager;
    mfProfile_c record;
    mfFunctionSegments_c table;
};

// -------------------------------------------------------------- which profile

TEST_F(ParseExpression, RowWithoutAKeyGetsTheDefaultAndKeepsIt)
{
    table.parseExpression(1);
    EXPECT_EQ(row(1).getDisplayName(), L"Cubic (Default)");
    ASSERT_NE(row(1).getProfile(), nullptr);
    EXPECT_EQ(row(1).getProfile()->name, "Cubic");
    EXPECT_EQ(row(1).getProflieIndepVar(), L"x");

    const mfProfileKey_c* key = row(1).getProfileKey();
    table.parseExpression(1);
    EXPECT_EQ(row(1).getProfileKey(), key);
}

TEST_F(ParseExpression, KeyOfEmptyNameCountsAsNoKey)
{
    row(1).setProfileKey(keyNamed(L""));
    table.parseExpression(1);
    EXPECT_EQ(row(1).getDisplayName(), L"Cubic (Default)");
    EXPECT_FALSE(row(1).getProfileExpr().IsEmpty());
}

TEST_F(ParseExpression, KeyThatFindsNoRecordChangesNothing)
{
    row(1).setProfileExpr(L"old");
    row(1).setProfileIndepVar(L"v");
    row(1).setProfileKey(keyNamed(L"Unknown"));
    EXPECT_EQ(parsed(1), L"old");
    EXPECT_EQ(row(1).getProflieIndepVar(), L"v");
    EXPECT_EQ(row(1).getProfile(), nullptr);
    EXPECT_TRUE(*row(1).getProfileKey() == keyNamed(L"Unknown"));
}

TEST_F(ParseExpression, DefaultKeyStaysThoughItFindsNoRecord)
{
    mfProfileManager_c empty;
    host.managerAnswer = &empty;
    row(1).setProfileExpr(L"old");
    EXPECT_EQ(parsed(1), L"old");
    EXPECT_EQ(row(1).getDisplayName(), L"Cubic (User)");
    EXPECT_EQ(row(1).getProfile(), nullptr);
}

TEST_F(ParseExpression, RecordIsLookedUpOnceItIsKnown)
{
    host.managerAnswer = nullptr;
    row(1).setProfileKey(keyNamed(L"Linear"));
    ASSERT_EQ(row(1).getProfile(), nullptr);
    host.managerAnswer = &manager;
    EXPECT_FALSE(parsed(1).IsEmpty());
    ASSERT_NE(row(1).getProfile(), nullptr);
    EXPECT_EQ(row(1).getProfile()->name, "Linear");
}

TEST_F(ParseExpression, KnownRecordIsUsedWhateverTheKey)
{
    row(1).setProfileKey(keyNamed(L"Linear"));
    row(1).setProfile(&record);
    EXPECT_EQ(parsed(1), L"1.000000+3.000000+2.000000+5.000000+t");
}

TEST_F(ParseExpression, AsksTheHostForItsManagerAtEachCall)
{
    useRecord(1);
    host.calls.clear();
    table.parseExpression(1);
    table.parseExpression(1);
    EXPECT_THAT(host.calls, ElementsAre("getProfileManager", "getProfileManager"));
}

TEST_F(ParseExpression, DoesNothingWithoutAManager)
{
    host.managerAnswer = nullptr;
    useRecord(1);
    EXPECT_EQ(parsed(1), L"");
    EXPECT_EQ(parsed(2), L"");
    EXPECT_EQ(row(2).getProfileKey(), nullptr);
}

TEST_F(ParseExpression, DoesNothingWithoutAHost)
{
    useRecord(1);
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_EQ(parsed(1), L"");
    EXPECT_EQ(row(1).getProflieIndepVar(), L"");
}

TEST_F(ParseExpression, RowsOutsideTheTableAreIgnored)
{
    host.calls.clear();
    for (const int outside : {-1, 3, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        table.parseExpression(outside);
    EXPECT_EQ(show(table), "0:1 1:2 2:4");
}

// ------------------------------------------------------------- which numbers

TEST_F(ParseExpression, FillsInTheRowAndTheValueBeforeIt)
{
    useRecord(1);
    EXPECT_EQ(parsed(1), L"1.000000+3.000000+2.000000+5.000000+t");
    EXPECT_EQ(row(1).getProflieIndepVar(), L"t");
}

TEST_F(ParseExpression, RowZeroStartsAtZero)
{
    useRecord(0);
    EXPECT_EQ(parsed(0), L"0.000000+0.000000+1.000000+3.000000+t");
}

TEST_F(ParseExpression, NextRowKeepsItsOldStartUntilItIsParsed)
{
    useRecord(2);
    ASSERT_EQ(parsed(2), L"2.000000+5.000000+4.000000+-1.000000+t");
    table.modifySegment(1, kValueColumn, 0.0, 0.0, 7.0, L"");
    EXPECT_EQ(row(2).getProfileExpr(), L"2.000000+5.000000+4.000000+-1.000000+t");
    EXPECT_EQ(parsed(2), L"2.000000+7.000000+4.000000+-1.000000+t");
}

TEST_F(ParseExpression, NextRowDoesNotMatter)
{
    useRecord(1);
    const CString before = parsed(1);
    table.modifySegment(2, kValueColumn, 0.0, 0.0, 70.0, L"");
    EXPECT_EQ(parsed(1), before);
}

TEST_F(ParseExpression, SameNumbersKeepTheCalculators)
{
    table.parseExpression(1);
    ICalculator* third = row(1).getCalculator(3);
    ASSERT_NE(third, nullptr);
    table.parseExpression(1);
    EXPECT_EQ(row(1).getCalculator(3), third);
}

TEST_F(ParseExpression, CubicLeavesOnlyItsVariable)
{
    table.parseExpression(1);
    const CString text = row(1).getProfileExpr();
    for (const wchar_t* name : {L"x1", L"y1", L"x2", L"y2"})
        EXPECT_EQ(text.Find(name), -1) << name;
    for (const wchar_t* number : {L"1.000000", L"3.000000", L"2.000000", L"5.000000"})
        EXPECT_NE(text.Find(number), -1);
    // 3 + 2 (3 u^2 - 2 u^3) at u = 1/2 and at both ends
    EXPECT_EQ(table.evaluate(1.5, 0), 4.0);
    double y = 0.0;
    EXPECT_TRUE(table.calculateValue(1, 1.0, y));
    EXPECT_EQ(y, 3.0);
    EXPECT_TRUE(table.calculateValue(1, 2.0, y));
    EXPECT_EQ(y, 5.0);
}

struct NumberCase {
    const char* name;
    double number;
    const wchar_t* text;
};

void PrintTo(const NumberCase& c, std::ostream* os)
{
    *os << c.number;
}

const NumberCase kNumberCases[] = {
    {"Whole", 12.0, L"12.000000"},
    {"Negative", -2.5, L"-2.500000"},
    {"SixDecimals", 1.0 / 3.0, L"0.333333"},
    {"RoundsUp", 2.0 / 3.0, L"0.666667"},
    {"BelowHalfAMillionth", 4.9e-7, L"0.000000"},
    {"AboveHalfAMillionth", 5.1e-7, L"0.000001"},
    {"NegativeBelowHalfAMillionth", -4.9e-7, L"-0.000000"},
    {"Large", 1e20, L"100000000000000000000.000000"},
    {"Infinity", std::numeric_limits<double>::infinity(), L"inf"},
    {"NaN", std::numeric_limits<double>::quiet_NaN(), L"nan"},
};

class NumberText : public ParseExpression, public testing::WithParamInterface<NumberCase> {};

TEST_P(NumberText, HasSixDecimals)
{
    record.resultExpression = "D";
    useRecord(1);
    row(1).setValue(GetParam().number);
    EXPECT_EQ(parsed(1), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Segments, NumberText, testing::ValuesIn(kNumberCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ParseExpression, LargestNumberIsWrittenInFull)
{
    record.resultExpression = "D";
    useRecord(1);
    row(1).setValue(std::numeric_limits<double>::max());
    EXPECT_EQ(parsed(1).GetLength(), 309 + 7);
}

TEST_F(ParseExpression, NumbersHaveAPointUnderACommaLocale)
{
    const locale_test::CommaLocale comma;
    ASSERT_TRUE(comma.holds());
    useRecord(1);
    row(1).setValue(0.5);
    EXPECT_EQ(parsed(1), L"1.000000+3.000000+2.000000+0.500000+t");
}

// --------------------------------------------------------------- substitution

struct SubstitutionCase {
    const char* name;
    const char* expression;
    const char* x1;
    const char* y1;
    const char* x2;
    const char* y2;
    const wchar_t* result;  // of start 1, start value 3, end 2 and value 5
};

void PrintTo(const SubstitutionCase& c, std::ostream* os)
{
    *os << c.expression;
}

const SubstitutionCase kSubstitutionCases[] = {
    {"EveryOccurrence", "A+A*A", "A", "", "", "", L"1.000000+1.000000*1.000000"},
    {"AllFour", "y1+(y2-y1)*(x-x1)/(x2-x1)", "x1", "y1", "x2", "y2",
     L"3.000000+(5.000000-3.000000)*(x-1.000000)/(2.000000-1.000000)"},
    {"InsideLongerNames", "A2+bA+AA", "A", "", "", "", L"1.0000002+b1.000000+1.0000001.000000"},
    {"OccurrencesDoNotOverlap", "AAA", "AA", "", "", "", L"1.000000A"},
    {"CaseCounts", "a+A", "A", "", "", "", L"a+1.000000"},
    {"EmptyNameIsNowhere", "A", "", "", "", "", L"A"},
    {"EmptyExpression", "", "A", "B", "C", "D", L""},
    // The start X contains zeros, in which the parameter of the start value is found.
    {"LaterNameInsideAnEarlierNumber", "A", "A", "000000", "", "", L"1.3.000000"},
    {"EarlierNameInsideALaterNumber", "B", "000000", "B", "", "", L"3.000000"},
    {"EndValueIsLast", "A", "A", "1.", "3.", "2.", L"5.000000000000000000000000"},
    {"EqualNamesGoToTheFirst", "A", "A", "A", "A", "A", L"1.000000"},
    {"NamesBeyondAscii", "\xC3\xA9+\xE2\x82\xAC", "\xC3\xA9", "\xE2\x82\xAC", "", "", L"1.000000+3.000000"},
};

class Substitution : public ParseExpression, public testing::WithParamInterface<SubstitutionCase> {};

TEST_P(Substitution, ReplacesPlainSubstringsInTurn)
{
    const SubstitutionCase& c = GetParam();
    record.resultExpression = c.expression;
    record.x1 = c.x1;
    record.y1 = c.y1;
    record.x2 = c.x2;
    record.y2 = c.y2;
    useRecord(1);
    EXPECT_EQ(parsed(1), c.result);
}

INSTANTIATE_TEST_SUITE_P(Segments, Substitution, testing::ValuesIn(kSubstitutionCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ParseExpression, NegativeNumberBringsItsSignWithoutBrackets)
{
    record.resultExpression = "t-A";
    useRecord(1);
    row(1).setStartX(-1.5);
    EXPECT_EQ(parsed(1), L"t--1.500000");
    double y = 0.0;
    EXPECT_TRUE(table.calculateValue(1, 2.0, y));
    EXPECT_EQ(y, 3.5);
}

// ---------------------------------------------------------------- the bound

class LongFormula : public ParseExpression {
protected:
    LongFormula()
    {
        row(1).setProfileExpr(L"old");
        row(1).setProfileIndepVar(L"v");
    }

    // An expression that grows to `length` when each A becomes "1.000000".
    void growTo(std::size_t length)
    {
        record.resultExpression = std::string(length / 8, 'A') + std::string(length % 8, '1');
        useRecord(1);
    }
};

TEST_F(LongFormula, MayBeAsLongAsTheEngineAllows)
{
    growTo(mf::engine::kLongestText);
    EXPECT_EQ(parsed(1).GetLength(), static_cast<int>(mf::engine::kLongestText));
    EXPECT_EQ(row(1).getProflieIndepVar(), L"t");
}

TEST_F(LongFormula, ChangesNothingWhenItOutgrowsTheEngine)
{
    growTo(mf::engine::kLongestText + 1);
    EXPECT_EQ(parsed(1), L"old");
    growTo(mf::engine::kLongestText + 8);
    EXPECT_EQ(parsed(1), L"old");
    EXPECT_EQ(row(1).getProflieIndepVar(), L"v");
}

// Each name multiplies the text of the previous one; without a bound this would be 10^15
// characters.
TEST_F(LongFormula, StopsBeforeItFillsTheMemory)
{
    record.resultExpression = std::string(1000, 'A');
    record.y1 = record.x2 = record.y2 = "0";
    useRecord(1);
    for (int number : {0, 1})
        row(number).setValue(1e300);
    row(1).setStartX(1e300);
    row(1).setEndX(1e300);
    EXPECT_EQ(parsed(1), L"old");
}

}  // namespace
