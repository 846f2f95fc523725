#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "curveFixture.h"
#include "mfcurves/documents/readCurve.h"
#include "tests/support/TemporaryFolder.h"

// What a reader hears beside the curve: where it is not what the document says, how
// far the read is, and what a file may choose.

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Pair;

using Remarks = std::vector<std::string>;

struct RemarkCase {
    const char* name;
    Document document;
    Remarks remarks;
};

void PrintTo(const RemarkCase& c, std::ostream* os)
{
    *os << c.document.xml();
}

Document withRows(const std::string& rows)
{
    return segmentDocument()
        .set("ProfileDefinitions", definition("Mine", lineTimes("1", "Mine")))
        .set("Segments", rows);
}

Document withPoints(const std::string& points)
{
    return dataPointDocument().set("Points", points);
}

const std::string kStart = segment(" ", " ", "1");

const RemarkCase kRemarkCases[] = {
    {"SoundPoints", dataPointDocument(), {}},
    {"SoundRows", withRows(kStart + segment("0", "2", "5", "Mine")), {}},
    {"SoundExpression", expressionDocument(), {}},
    {"NumbersMayHaveSpaceAndSigns", withPoints(point(" +1 ", "\n-2e3\n")), {}},
    {"NumberInWords",
     withPoints(point("1", "two")),
     {R"("y" of "Point" 1 is "two", which is no finite number; it reads as 0.)"}},
    {"NumberWithARest",
     withPoints(point("0", "0") + point("1.5mm", "2")),
     {R"("x" of "Point" 2 is "1.5mm", which is no finite number; it reads as 1.5.)"}},
    {"NumberTooLarge",
     withPoints(point("0", "-1e999")),
     {R"("y" of "Point" 1 is "-1e999", which is no finite number; it reads as -INF.)"}},
    {"LongTextIsCut",
     withPoints(point("0", std::string(61, 'a'))),
     {R"("y" of "Point" 1 is ")" + std::string(60, 'a') +
      R"(...", which is no finite number; it reads as 0.)"}},
    {"PointWithoutY",
     withPoints("<Point><x>1</x></Point>"),
     {R"("Point" 1 does not hold pairs of x and y.)"}},
    {"EmptyPoint", withPoints("<Point/>"), {R"("Point" 1 does not hold pairs of x and y.)"}},
    {"PointThatMoves",
     withPoints(point("0", "0") + point("4", "1") + point("4", "2")),
     {R"("Point" 3 has x = 4, which does not lie behind the point before; it moves to 5.)"}},
    {"UnknownInterpolation",
     dataPointDocument().set("Interpolation", "Spline"),
     {R"("Interpolation" is "Spline", which is none of "DataPointInterpolationType_Linear", )"
      R"("DataPointInterpolationType_Cubic" or "DataPointInterpolationType_Akima".)"}},
    {"NoInterpolation", dataPointDocument().set("Interpolation", ""), {}},
    {"UnknownQuantity",
     expressionDocument().set("DepVar", "Speed"),
     {R"("DepVar" is "Speed", which is none of "MotorDriveType_Displacment", "MotorDriveType_Velocity" or )"
      R"("MotorDriveType_Acceleration" and none of "ForceTorqueType_Force" or "ForceTorqueType_Torque".)"}},
    {"NoQuantity", expressionDocument().set("DepVar", ""), {}},
    {"RangeOfAnExpression",
     expressionDocument().set("RangeX", "<MinX>a</MinX><MaxX>b</MaxX>"),
     {R"("MinX" within "RangeX" within "Curve" is "a", which is no finite number; it reads as 0.)",
      R"("MaxX" within "RangeX" within "Curve" is "b", which is no finite number; it reads as 0.)"}},
    // A range counts for expressions alone, the X of a first row for nobody.
    {"NumbersThatDoNotCount",
     withRows(segment("a", "b", "1", "c"))
         .set("RangeX", "<MinX>a</MinX><MaxX>b</MaxX>")
         .set("SegmentCount", "c"),
     {}},
    {"ValueOfTheFirstRow",
     withRows(segment(" ", " ", "up")),
     {R"("Value" of "Segment" 1 is "up", which is no finite number; it reads as 0.)"}},
    {"EndInWords",
     withRows(kStart + segment("0", "9O", "5", "Mine")),
     {R"("EndX" of "Segment" 2 is "9O", which is no finite number; it reads as 9.)"}},
    {"RowThatMoves",
     withRows(kStart + segment("0", "2", "5", "Mine") + segment("3", "4", "5", "Mine")),
     {R"("Segment" 3 starts at 3, where the one before does not end; )"
      R"(it becomes a row from 2 to 3 with value 0.)"}},
    {"RowWithTooFewElements",
     withRows(kStart + "<Segment><StartX>0</StartX><EndX>2</EndX><Value>5</Value></Segment>"),
     {R"("Segment" 2 does not hold start, end, value and profile.)"}},
    {"FirstRowWithoutAProfile", withRows("<Segment><a> </a><a> </a><a>1</a></Segment>"), {}},
    {"FirstRowWithoutAValue",
     withRows("<Segment><a> </a><a> </a></Segment>"),
     {R"("Segment" 1 does not hold start, end, value and profile.)"}},
    {"UnknownProfile",
     withRows(kStart + segment("0", "2", "5", "Yours")),
     {R"("Profile" of "Segment" 2 is "Yours", which the document does not define; )"
      R"x(the row takes "Cubic (Default)".)x"}},
    {"LawThatDoesNotParse",
     withRows(kStart + segment("0", "2", "5", "Mine")).set("ProfileDefinitions", definition("Mine", "y=x")),
     {R"("ProfileDefinition" 1, "Mine", is left out: the header has no closing parenthesis.)",
      R"("Profile" of "Segment" 2 is "Mine", which the document does not define; )"
      R"x(the row takes "Cubic (Default)".)x"}},
};

class Remark : public CurveTest, public testing::WithParamInterface<RemarkCase> {};

TEST_P(Remark, TellsWhereTheCurveIsAnother)
{
    const auto outcome = documents::readCurve(function, L"", true, GetParam().document.xml());
    EXPECT_TRUE(outcome.taken);
    EXPECT_EQ(outcome.reason, "");
    EXPECT_THAT(outcome.remarks, ElementsAreArray(GetParam().remarks));
}

INSTANTIATE_TEST_SUITE_P(Documents, Remark, testing::ValuesIn(kRemarkCases),
                         [](const auto& tested) { return tested.param.name; });

class ReadOptions : public CurveTest {};

TEST_F(ReadOptions, RemarksEnd)
{
    std::string points;
    for (int i = 0; i < 100; ++i)
        points += point(std::to_string(i), "high");
    const auto outcome = documents::readCurve(function, L"", true, withPoints(points).xml());
    ASSERT_EQ(outcome.remarks.size(), documents::kMostRemarks);
    EXPECT_EQ(outcome.remarks.back(),
              R"("y" of "Point" 20 is "high", which is no finite number; it reads as 0.)");
}

TEST_F(ReadOptions, RemarksOnLawsAndOnTheirRowsEnd)
{
    std::string laws;
    std::string rows = kStart;
    for (int i = 0; i < 30; ++i) {
        laws += definition("Law" + std::to_string(i), "y=x");
        rows += segment(std::to_string(i), std::to_string(i + 1), "5", "Yours");
    }
    const auto readLaws =
        documents::readCurve(function, L"", true, withRows(kStart).set("ProfileDefinitions", laws).xml());
    ASSERT_EQ(readLaws.remarks.size(), documents::kMostRemarks);
    EXPECT_EQ(readLaws.remarks.back(),
              R"("ProfileDefinition" 20, "Law19", is left out: the header has no closing parenthesis.)");
    const auto readRows = documents::readCurve(function, L"", true, withRows(rows).xml());
    ASSERT_EQ(readRows.remarks.size(), documents::kMostRemarks);
    EXPECT_EQ(readRows.remarks.back(),
              R"("Profile" of "Segment" 21 is "Yours", which the document does not define; )"
              R"x(the row takes "Cubic (Default)".)x");
    EXPECT_EQ(segments().getSegmentCount(), 31);
}

TEST_F(ReadOptions, EveryRowIsHeardOf)
{
    std::vector<std::pair<std::size_t, std::size_t>> heard;
    documents::ReadOptions options;
    options.onRow = [&](std::size_t row, std::size_t count) { heard.emplace_back(row, count); };
    documents::readCurve(function, L"", true, dataPointDocument().xml(), options);
    EXPECT_THAT(heard, ElementsAre(Pair(0, 2), Pair(1, 2)));
    heard.clear();
    documents::readCurve(function, L"", true, segmentDocument().xml(), options);
    EXPECT_THAT(heard, ElementsAre(Pair(0, 3), Pair(1, 3), Pair(2, 3)));
    heard.clear();
    documents::readCurve(function, L"", true, expressionDocument().xml(), options);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(ReadOptions, FileMayChooseTheMotionObject)
{
    const TemporaryFolder folder;
    documents::ReadOptions options;
    options.takeObjectOfFile = true;
    function.setMotionObjectType(MotionObjectType_Motor);
    const auto read = [&](const char* object) {
        const std::string xml = expressionDocument().set("MotionObjectType", object).xml();
        return documents::readCurve(function, CString(folder.write("f.xml", xml)), false, "", options);
    };
    EXPECT_TRUE(read("Torque").taken);
    EXPECT_EQ(function.getMotionObjectType(), MotionObjectType_Torque);
    EXPECT_FALSE(read("Heat").taken);
    EXPECT_EQ(function.getMotionObjectType(), MotionObjectType_Torque);
}

}  // namespace
}  // namespace mf::test
