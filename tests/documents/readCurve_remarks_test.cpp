// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "curveFixture.h"
#include "mfcurves/documents/formatTexts.h"
#include "mfcurves/documents/readCurve.h"
#include "tests/support/TemporaryFolder.h"

// What a read reports besides the curve: differences from the document and its progress;
// and whether a file may choose the motion object.

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Pair;

using Remarks = std::vector<std::string>;  // "place: message"

Remarks shown(const std::vector<documents::Remark>& remarks)
{
    Remarks texts;
    for (const documents::Remark& remark : remarks)
        texts.push_back(remark.place + (remark.place.empty() ? "" : ": ") + remark.message);
    return texts;
}

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
     {R"(point 1: "y" is "two", which is not a finite number; it reads as 0)"}},
    {"NumberWithARest",
     withPoints(point("0", "0") + point("1.5mm", "2")),
     {R"(point 2: "x" is "1.5mm", which is not a finite number; it reads as 1.5)"}},
    {"NumberTooLarge",
     withPoints(point("0", "-1e999")),
     {R"(point 1: "y" is "-1e999", which is not a finite number; it reads as -INF)"}},
    {"LongTextIsCut",
     withPoints(point("0", std::string(61, 'a'))),
     {R"(point 1: "y" is ")" + std::string(60, 'a') +
      R"(...", which is not a finite number; it reads as 0)"}},
    {"PointWithoutY", withPoints("<Point><x>1</x></Point>"), {"point 1: it does not hold pairs of x and y"}},
    {"EmptyPoint", withPoints("<Point/>"), {"point 1: it does not hold pairs of x and y"}},
    {"PointThatMoves",
     withPoints(point("0", "0") + point("4", "1") + point("4", "2")),
     {"point 3: its x is 4, which is not above the previous point's; it becomes 5"}},
    {"UnknownInterpolation",
     dataPointDocument().set("Interpolation", "Spline"),
     {R"("Interpolation" is "Spline", which is none of "DataPointInterpolationType_Linear", )"
      R"("DataPointInterpolationType_Cubic" or "DataPointInterpolationType_Akima")"}},
    {"NoInterpolation", dataPointDocument().set("Interpolation", ""), {}},
    {"UnknownDataType",
     expressionDocument().set("XYDataType", "Misc"),
     {R"("XYDataType" is "Misc", which is none of "MfXY_None", "MfXY_Disp_LinMotor", "MfXY_Vel_LinMotor", )"
      R"("MfXY_Acc_LinMotor", "MfXY_Disp_RotMotor", "MfXY_Vel_RotMotor", "MfXY_Acc_RotMotor", )"
      R"("MfXY_Disp_PathMateMotor", "MfXY_Vel_PathMateMotor", "MfXY_Acc_PathMateMotor", "MfXY_Force" or )"
      R"("MfXY_Torque"; it reads as "MfXY_Misc")"}},
    {"MiscDataType", expressionDocument().set("XYDataType", "MfXY_Misc"), {}},
    {"UnknownQuantity",
     expressionDocument().set("DepVar", "Speed"),
     {R"("DepVar" is "Speed", which is none of "MotorDriveType_Displacment", "MotorDriveType_Velocity" or )"
      R"("MotorDriveType_Acceleration" and none of "ForceTorqueType_Force" or "ForceTorqueType_Torque")"}},
    {"NoQuantity", expressionDocument().set("DepVar", ""), {}},
    {"RangeOfAnExpression",
     expressionDocument().set("RangeX", "<MinX>a</MinX><MaxX>b</MaxX>"),
     {R"("MinX" within "RangeX" within "Curve" is "a", which is not a finite number; it reads as 0)",
      R"("MaxX" within "RangeX" within "Curve" is "b", which is not a finite number; it reads as 0)"}},
    // A range is used only for expressions; the X of the first row is not used.
    {"NumbersThatDoNotCount",
     withRows(segment("a", "b", "1", "c"))
         .set("RangeX", "<MinX>a</MinX><MaxX>b</MaxX>")
         .set("SegmentCount", "c"),
     {}},
    {"ValueOfTheFirstRow",
     withRows(segment(" ", " ", "up")),
     {R"(row 0: "Value" is "up", which is not a finite number; it reads as 0)"}},
    {"EndInWords",
     withRows(kStart + segment("0", "9O", "5", "Mine")),
     {R"(row 1: "EndX" is "9O", which is not a finite number; it reads as 9)"}},
    {"RowThatMoves",
     withRows(kStart + segment("0", "2", "5", "Mine") + segment("3", "4", "5", "Mine")),
     {"row 2: it starts at 3, where the previous row does not end; it becomes a row from 2 to 3 with value "
      "0"}},
    {"RowWithTooFewElements",
     withRows(kStart + "<Segment><StartX>0</StartX><EndX>2</EndX><Value>5</Value></Segment>"),
     {"row 1: it does not hold start, end, value and profile"}},
    {"FirstRowWithoutAProfile", withRows("<Segment><a> </a><a> </a><a>1</a></Segment>"), {}},
    {"FirstRowWithoutAValue",
     withRows("<Segment><a> </a><a> </a></Segment>"),
     {"row 0: it does not hold start, end, value and profile"}},
    {"UnknownProfile",
     withRows(kStart + segment("0", "2", "5", "Yours")),
     {R"(row 1: "Profile" is "Yours", which the document does not define; )"
      R"x(the row takes "Cubic (Default)")x"}},
    {"LawThatDoesNotParse",
     withRows(kStart + segment("0", "2", "5", "Mine")).set("ProfileDefinitions", definition("Mine", "y=x")),
     {R"(definition 1: the law "Mine" is left out: the header has no closing parenthesis)",
      R"(row 1: "Profile" is "Mine", which the document does not define; )"
      R"x(the row takes "Cubic (Default)")x"}},
};

class Remark : public CurveTest, public testing::WithParamInterface<RemarkCase> {};

TEST_P(Remark, ReportsWhereTheCurveDiffers)
{
    const auto outcome = documents::readCurve(function, L"", true, GetParam().document.xml());
    EXPECT_TRUE(outcome.taken);
    EXPECT_EQ(outcome.reason, "");
    EXPECT_THAT(shown(outcome.remarks), ElementsAreArray(GetParam().remarks));
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
    EXPECT_EQ(shown(outcome.remarks).back(),
              R"(point 20: "y" is "high", which is not a finite number; it reads as 0)");
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
    EXPECT_EQ(shown(readLaws.remarks).back(),
              R"(definition 20: the law "Law19" is left out: the header has no closing parenthesis)");
    const auto readRows = documents::readCurve(function, L"", true, withRows(rows).xml());
    ASSERT_EQ(readRows.remarks.size(), documents::kMostRemarks);
    EXPECT_EQ(shown(readRows.remarks).back(),
              R"(row 20: "Profile" is "Yours", which the document does not define; )"
              R"x(the row takes "Cubic (Default)")x");
    EXPECT_EQ(segments().getSegmentCount(), 31);
}

TEST_F(ReadOptions, EveryRowIsReported)
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

// Names and texts of laws, for a caller that looks them up itself.
TEST_F(ReadOptions, LawsAreReturnedWithTheirNames)
{
    documents::DocumentLaws laws;
    documents::ReadOptions options;
    options.laws = &laws;
    Document document = withRows(kStart + segment("0", "2", "5", "Mine") + segment("2", "3", "5", "Yours") +
                                 "<Segment><a>3</a><b>4</b><c>1</c></Segment>");
    document.set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")) + definition("Bad", "y=x") +
                                           definition("Mine", lineTimes("3", "Mine")));
    const auto outcome = documents::readCurve(function, L"", true, document.xml(), options);
    EXPECT_TRUE(outcome.taken);
    EXPECT_THAT(laws.rowNames, ElementsAre("", "Mine", "Yours", ""));
    ASSERT_EQ(laws.definitions.size(), 2u);
    EXPECT_EQ(laws.definitions[0].text, lineTimes("2", "Mine"));
    EXPECT_EQ(laws.definitions[1].name, "Mine");
    EXPECT_EQ(laws.definitions[1].text, lineTimes("3", "Mine"));
    EXPECT_THAT(
        shown(outcome.remarks),
        ElementsAre(R"(definition 2: the law "Bad" is left out: the header has no closing parenthesis)",
                    "row 3: it does not hold start, end, value and profile"));
    EXPECT_FALSE(manager.hasDocumentNames());
    mfSegment_c* row = nullptr;
    segments().selectSegment(1, row);
    EXPECT_EQ(row->getProfileKey(), nullptr);
    EXPECT_TRUE(row->getProfileExpr().IsEmpty());
    EXPECT_EQ(row->getPlottingDataLength(), 0);
}

TEST_F(ReadOptions, VersionOfLaterDocumentsMayStay)
{
    documents::ReadOptions options;
    options.setsVersion = false;
    const auto outcome =
        documents::readCurve(function, L"", true, "<Curve><Version>2</Version></Curve>", options);
    EXPECT_EQ(outcome.reason, "The document has version 2, and only version 1 is read.");
    EXPECT_EQ(documents::writtenVersion(), 1.0);
}

TEST_F(ReadOptions, PlaceOfBrokenXmlIsGiven)
{
    const auto outcome = documents::readCurve(function, L"", true, "<Curve>\n<a></b>");
    EXPECT_EQ(outcome.xmlProblem.line, 2);
    EXPECT_EQ(outcome.xmlProblem.column, 8);
    EXPECT_THAT(outcome.reason, testing::EndsWith("(line 2, column 8)."));
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
