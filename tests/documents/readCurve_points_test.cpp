// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "mfcurves/documents/xmlDocument.h"
#include "mfcurves/platform/numbers.h"
#include "readCurveFixture.h"

// Tables of points.

namespace mf::test {
namespace {

struct PointsCase {
    const char* name;
    std::string points;
    const char* table;
};

void PrintTo(const PointsCase& c, std::ostream* os)
{
    *os << c.points;
}

const PointsCase kPointsCases[] = {
    {"None", "", ""},
    {"One", point("0.5", "2"), "0.5:2"},
    {"NamesDoNotCount", "<Point><y>1</y><x>2</x></Point><Point><a>3</a><a>4</a></Point>", "1:2 3:4"},
    {"OrderOfNodesAndNotOfIds",
     "<Point ID='2'><x>1</x><y>1</y></Point><Point ID='1'><x>2</x><y>2</y></Point>", "1:1 2:2"},
    {"ThirdElementIsDropped", "<Point><x>1</x><y>2</y><x>3</x></Point>", "1:2"},
    {"SeveralPairs", "<Point><x>1</x><y>2</y><x>3</x><y>4</y></Point>", "1:2,3:4"},
    // A comment takes a position: the pair is complete after it.
    {"CommentInFront", "<Point><!--c--><x>1</x><y>2</y></Point>", "0:1"},
    {"CommentBetween", "<Point><x>1</x><!--c--><y>2</y><z>3</z></Point>", "1:0,2:3"},
    {"CommentAfter", "<Point><x>1</x><y>2</y><!--c--></Point>", "1:2"},
    {"TextIsAChild", "<Point>t<x>1</x><y>2</y></Point>", "0:1"},
    {"SectionIsAChild", "<Point><![CDATA[ ]]><x>1</x><y>2</y></Point>", "0:1"},
    {"IndentationIsNone", "\n <Point>\n  <x> 1 </x>\n  <y>\n2\n</y>\n </Point>\n", "1:2"},
    {"NumbersAreReadAsFarAsTheyGo", point("1.5mm", "2,5") + point("+2e0x", "-.5"), "1.5:2 2:-0.5"},
    {"NoNumberIsZero", point("-1", "abc") + point("", "nan"), "-1:0 0:0"},
    {"NumberOfSections", point("<![CDATA[1]]><!--c-->2", "3"), "12:3"},
    {"SecondOfOneX", point("1", "2") + point("1", "3"), "1:2 2:3"},
    {"XGoingDown", point("3", "1") + point("2", "2") + point("1", "3"), "3:1 4:2 5:3"},
    {"SeveralPointsThatClashMoveTheFirst",
     point("1", "0") + "<Point><x>0</x><y>1</y><x>5</x><y>2</y></Point>", "1:0 2:1,5:2"},
    // A row that cannot be moved is left out, and so are all later rows.
    {"SeveralPointsThatCannotBeMoved",
     point("4", "0") + "<Point><x>0</x><y>1</y><x>2</x><y>2</y></Point>" + point("9", "3"), "4:0"},
    {"RowWithoutPointsInFront", "<Point/>" + point("9", "3"), " 9:3"},
    {"RowWithoutPointsThatClashes", point("4", "0") + "<Point/>" + point("9", "3"), "4:0"},
    {"RowWithoutPointsThatFits", point("-4", "0") + "<Point/>" + point("9", "3"), "-4:0  9:3"},
    {"InfiniteX", point("1e999", "1") + point("1e999", "2"), "inf:1 inf:2"},
    {"TooSmallIsZero", point("1e-999", "1"), "0:1"},
    {"PointsInAPoint", "<Point><x>1</x><y>2</y><Point><x>5</x><y>6</y></Point></Point>", "1:2 5:6"},
};

class Points : public ReadCurve, public testing::WithParamInterface<PointsCase> {};

TEST_P(Points, AreIdentifiedByPosition)
{
    EXPECT_TRUE(readBuffer(dataPointDocument().set("Points", GetParam().points)));
    EXPECT_EQ(showPoints(points()), GetParam().table);
    EXPECT_EQ(startsLeft(), 0);

    // The spline has the points of the table.
    std::map<double, double> expected;
    for (int row = 0; row < points().getDataPointsCount(); ++row) {
        mfDataPoints_c* list = nullptr;
        points().selectDataPoint(row, list);
        for (int i = 0; i < list->getPointCount(); ++i)
            expected[list->getX(i)] = list->getY(i);
    }
    EXPECT_EQ(host.services.spline().points, expected);
}

// The state after reading row by row through insertDataPoint.
TEST_P(Points, LeaveWhatInsertionRowByRowLeaves)
{
    ASSERT_TRUE(readBuffer(dataPointDocument().set("Points", GetParam().points)));
    std::vector<int> rows;
    points().getUpdateRows(rows);

    mfFunctionDataPoints_c single;
    std::vector<std::unique_ptr<mfDataPoints_c>> refused;
    documents::XmlDocument document;
    ASSERT_TRUE(document.readUtf8("<Points>" + GetParam().points + "</Points>"));
    int row = 0;
    for (const documents::XmlNode& node : document.selectNodes("//Points//Point")) {
        auto list = std::make_unique<mfDataPoints_c>();
        double xy[2] = {0.0, 0.0};
        int position = 0;
        for (auto child = node.firstChild(); child; child = child.nextSibling(), ++position) {
            if (child.isElement())
                xy[position % 2] = platform::readNumber(child.text());
            if (position % 2 == 1)
                list->addPoint(xy[0], xy[1]);
        }
        const int before = single.getDataPointsCount();
        single.insertDataPoint(row++, list.get());
        if (single.getDataPointsCount() == before)
            refused.push_back(std::move(list));
        else
            list.release();
    }
    EXPECT_EQ(showPoints(points()), showPoints(single));
    std::vector<int> expected;
    single.getUpdateRows(expected);
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(host.services.lent[0]->points, host.services.lent[1]->points);
}

INSTANTIATE_TEST_SUITE_P(Rows, Points, testing::ValuesIn(kPointsCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, PointsOfAFormerCurveAreGone)
{
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    ASSERT_TRUE(readBuffer(dataPointDocument().set("Points", point("9", "9"))));
    EXPECT_EQ(showPoints(points()), "9:9");
}

TEST_F(ReadCurve, CountsAreNotUsed)
{
    for (const char* count : {"", "0", "-7", "99999999999999999999", "x"}) {
        EXPECT_TRUE(readBuffer(dataPointDocument().set("PointCount", count)));
        EXPECT_EQ(points().getDataPointsCount(), 2);
        EXPECT_TRUE(readBuffer(segmentDocument().set("SegmentCount", count)));
        EXPECT_EQ(segments().getSegmentCount(), 3);
    }
}

struct InterpolationCase {
    const char* text;
    int type;
    const char* kindCalls;  // given to the spline
};

TEST_F(ReadCurve, InterpolationIsKnownByItsText)
{
    const InterpolationCase cases[] = {
        {"DataPointInterpolationType_Linear", 0, "setKind 2"},
        {"DataPointInterpolationType_Cubic", 1, "setKind 1"},
        {"DataPointInterpolationType_Akima", 2, "setKind 0"},
        {"Linear", 0, ""},
        {"", 0, ""},
    };
    for (const auto& [text, type, kindCalls] : cases) {
        host.services.spline().calls.clear();
        EXPECT_TRUE(readBuffer(dataPointDocument().set("Interpolation", text)));
        EXPECT_EQ(points().getInterpolationType(), type) << text;
        std::string calls;
        for (const std::string& call : host.services.spline().calls)
            if (call.starts_with("setKind"))
                calls += call;
        EXPECT_EQ(calls, kindCalls) << text;
    }
}

TEST_F(ReadCurve, InterpolationIsSetWhereTheCountIsMissing)
{
    EXPECT_FALSE(readBuffer(dataPointDocument().drop("PointCount")));
    EXPECT_EQ(points().getInterpolationType(), DataPointInterpolationType_Akima);
    EXPECT_EQ(host.services.spline().kind, 0);
    EXPECT_EQ(points().getDataPointsCount(), 0);
}

// The spline is cleared with the former curve and again for its new points.
TEST_F(ReadCurve, SplineIsBuiltOnce)
{
    host.services.spline().calls.clear();
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    int clears = 0;
    int added = 0;
    for (const std::string& call : host.services.spline().calls) {
        clears += call == "clearPoints";
        added += call.starts_with("addPoint");
    }
    EXPECT_EQ(clears, 2);
    EXPECT_EQ(added, 2);
}

}  // namespace
}  // namespace mf::test
