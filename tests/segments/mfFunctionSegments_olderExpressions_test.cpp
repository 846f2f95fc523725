// SPDX-License-Identifier: MIT

// The library whose profile-manager flag is false: formulas come from the token
// lists that each table was given.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"

using namespace mf::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Tokens = std::vector<CString>;

class OlderExpressions : public testing::Test {
protected:
    OlderExpressions()
    {
        EXPECT_FALSE(mfProfileManager_c::s_UseNewProfileManager());
        fill(table, "0:1=3/Linear 1:2=5/Linear 2:4=-1/Sum");
        table.initializeSegment({L"Linear", L"Sum"},
                                {{L"y1", L"+", L"(", L"y2", L"-", L"y1", L")", L"/", L"(", L"x2", L"-", L"x1",
                                  L")", L"*", L"(", L"x", L"-", L"x1", L")"},
                                 {L"A", L"+", L"B", L"+", L"C", L"+", L"D", L"+", L"A2", L"+", L"t"}},
                                {L"x", L"t"}, {L"x1", L"A"}, {L"y1", L"B"}, {L"x2", L"C"}, {L"y2", L"D"});
    }

    CString parsed(int row)
    {
        table.parseExpression(row);
        return rowOf(table, row).getProfileExpr();
    }

    FakeHost host;
    mfFunctionSegments_c table;
};

TEST_F(OlderExpressions, WholeTokensBecomeNumbersInBrackets)
{
    EXPECT_EQ(parsed(2), L"(2.000000)+(5.000000)+(4.000000)+(-1.000000)+A2+t");
    EXPECT_EQ(rowOf(table, 2).getProflieIndepVar(), L"t");
}

TEST_F(OlderExpressions, TokensOfTheProfileStay)
{
    parsed(2);
    EXPECT_EQ(table.getProfileExpr(L"Sum").front(), L"A");
}

TEST_F(OlderExpressions, LineRunsFromValueToValue)
{
    table.parseExpression(1);
    for (const double x : {1.0, 1.25, 2.0}) {
        double y = 0.0;
        EXPECT_TRUE(table.calculateValue(1, x, y));
        EXPECT_EQ(y, 3.0 + 2.0 * (x - 1.0));
    }
}

TEST_F(OlderExpressions, RowZeroStartsAtZero)
{
    rowOf(table, 0).setProfileName(L"Sum");
    EXPECT_EQ(parsed(0), L"(0.000000)+(0.000000)+(1.000000)+(3.000000)+A2+t");
}

TEST_F(OlderExpressions, NameThatIsNotListedGivesTheEmptyText)
{
    rowOf(table, 1).setProfileName(L"linear");  // names have case here
    rowOf(table, 1).setProfileExpr(L"old");
    rowOf(table, 1).setProfileIndepVar(L"v");
    EXPECT_EQ(parsed(1), L"");
    EXPECT_EQ(rowOf(table, 1).getProflieIndepVar(), L"");
    double y = 0.0;
    EXPECT_FALSE(table.calculateValue(1, 1.5, y));
}

TEST_F(OlderExpressions, NeitherKeyNorRecordIsTouched)
{
    table.parseExpression(1);
    EXPECT_EQ(rowOf(table, 1).getProfileKey(), nullptr);
    EXPECT_EQ(rowOf(table, 1).getProfile(), nullptr);
}

TEST_F(OlderExpressions, ManagerIsRequestedButNotNeeded)
{
    host.calls.clear();
    EXPECT_FALSE(parsed(1).IsEmpty());
    EXPECT_THAT(host.calls, ElementsAre("getProfileManager"));
    QelSession_c::setMotionFunctionContext(nullptr);
    rowOf(table, 1).setProfileExpr(L"");
    EXPECT_FALSE(parsed(1).IsEmpty());
}

TEST_F(OlderExpressions, NumberThatIsAName)
{
    table.initializeSegment({L"Sum"}, {{L"A", L"+", L"(2.000000)"}}, {L"t"}, {L"A"}, {L"(2.000000)"}, {L"C"},
                            {L"D"});
    // The start X becomes the same token as the parameter of the start value.
    EXPECT_EQ(parsed(2), L"(5.000000)+(5.000000)");
}

TEST_F(OlderExpressions, LaterEqualNameReplacesTheEarlierOne)
{
    table.initializeSegment({L"Sum", L"Sum"}, {{L"A"}, {L"B", L"s"}}, {L"t", L"s"}, {L"A", L"P"},
                            {L"Q", L"B"}, {L"C", L"C"}, {L"D", L"D"});
    EXPECT_EQ(parsed(2), L"(5.000000)s");
    EXPECT_EQ(rowOf(table, 2).getProflieIndepVar(), L"s");
}

TEST_F(OlderExpressions, NoNamesChangeNothing)
{
    table.initializeSegment({}, {}, {}, {}, {}, {}, {});
    EXPECT_EQ(parsed(2), L"(2.000000)+(5.000000)+(4.000000)+(-1.000000)+A2+t");
}

TEST_F(OlderExpressions, NamesBeyondTheShortestListAreLeftOut)
{
    table.initializeSegment({L"One", L"Two"}, {{L"x"}, {L"x"}}, {L"x", L"x"}, {L"a", L"a"}, {L"b"},
                            {L"c", L"c"}, {L"d", L"d"});
    EXPECT_THAT(table.getProfileExpr(L"One"), ElementsAre(CString(L"x")));
    EXPECT_THAT(table.getProfileExpr(L"Two"), IsEmpty());
}

TEST_F(OlderExpressions, TextThatOutgrowsTheEngineChangesNothing)
{
    const std::size_t tokens = mf::engine::kLongestText / 10;  // "(2.000000)" each
    for (const std::size_t count : {tokens, tokens + 1}) {
        table.initializeSegment({L"Sum"}, {Tokens(count, L"A")}, {L"s"}, {L"A"}, {L"B"}, {L"C"}, {L"D"});
        rowOf(table, 2).setProfileExpr(L"old");
        rowOf(table, 2).setProfileIndepVar(L"v");
        table.parseExpression(2);
        const bool fits = count == tokens;
        EXPECT_EQ(rowOf(table, 2).getProfileExpr().GetLength(), fits ? static_cast<int>(10 * tokens) : 3);
        EXPECT_EQ(rowOf(table, 2).getProflieIndepVar(), fits ? L"s" : L"v");
    }
}

TEST_F(OlderExpressions, RowsOutsideTheTableAreIgnored)
{
    for (const int row : {-1, 3, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        table.parseExpression(row);
    EXPECT_EQ(show(table), "0:1 1:2 2:4");
}

}  // namespace
