// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "mfcurves/platform/numbers.h"
#include "readCurveFixture.h"

// Reads the head of a document, and documents that cannot be loaded.

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Whole documents

TEST_F(ReadCurve, DataPointDocumentFillsTheFunction)
{
    EXPECT_TRUE(readBuffer(dataPointDocument()));
    EXPECT_EQ(showHead(function), "points type 2 object 1 data 1");
    EXPECT_EQ(showVariables(points()), "over 1 () gives 2 0 for 0");
    EXPECT_EQ(points().getInterpolationType(), DataPointInterpolationType_Akima);
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    EXPECT_EQ(points().getPlottingDataCount(), 100);
    EXPECT_EQ(host.services.spline().kind, 0);
    EXPECT_THAT(host.services.spline().points, ElementsAre(std::pair(0.5, 2.0), std::pair(1.0, 3.0)));
    EXPECT_EQ(startsLeft(), 0);
}

TEST_F(ReadCurve, SegmentDocumentFillsTheFunction)
{
    EXPECT_TRUE(readBuffer(segmentDocument()));
    EXPECT_EQ(showHead(function), "segments type 1 object 1 data 4");
    EXPECT_EQ(showVariables(segments()), "over 2 () gives 1 0 for 0");
    EXPECT_EQ(showSegments(segments()),
              "0-0=1 Cubic (Default); 0-2=5 Cubic (Default); 2-3=4 Cubic (Default)");
    EXPECT_EQ(startsLeft(), 0);
    // Half way along a cubic, the value is half way between its ends.
    EXPECT_DOUBLE_EQ(function.evaluate(1.0, 0), 3.0);
    EXPECT_DOUBLE_EQ(function.evaluate(2.5, 0), 4.5);
}

TEST_F(ReadCurve, ExpressionDocumentFillsTheFunction)
{
    EXPECT_TRUE(readBuffer(expressionDocument()));
    EXPECT_EQ(showHead(function), "expression type 3 object 1 data 2");
    EXPECT_EQ(showVariables(expression()), "over 1 () gives 3 0 for 0");
    EXPECT_EQ(expression().getMinX(), -1.0);
    EXPECT_EQ(expression().getMaxX(), 2.5);
    EXPECT_EQ(utf8(expression().getIndepVar()), "Time");
    EXPECT_EQ(utf8(expression().getMathExpression()), "2*time");
    // Sampling has nothing to compile until the host supplies a text.
    EXPECT_EQ(expression().getPlottingPointCount(), 0);
    EXPECT_TRUE(expression().isValidForPlotting());
    EXPECT_EQ(startsLeft(), 0);
    EXPECT_DOUBLE_EQ(function.evaluate(3.0, 0), 6.0);
}

// Documents that cannot be loaded

struct UnloadableCase {
    const char* name;
    const char* xml;
    const char* reason;
};

void PrintTo(const UnloadableCase& c, std::ostream* os)
{
    *os << c.name;
}

const UnloadableCase kUnloadableCases[] = {
    {"NotWellFormed", "<Curve>\n<a></b>\n</Curve>",
     "Opening and ending tag mismatch: a line 2 and b (line 2, column 8)."},
    {"Empty", "", "Document is empty (line 1, column 1)."},
    {"TypeDeclaration", "<!DOCTYPE Curve><Curve/>",
     "A document type declaration is not allowed (line 1, column 16)."},
};

class Unloadable : public ReadCurve, public testing::WithParamInterface<UnloadableCase> {};

TEST_P(Unloadable, LeavesTheObjectUnchangedAndOneStart)
{
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    const documents::ReadOutcome outcome = outcomeOf(GetParam().xml);
    EXPECT_FALSE(outcome.taken);
    EXPECT_EQ(outcome.reason, GetParam().reason);
    EXPECT_EQ(startsLeft(), 1);
    EXPECT_FALSE(readFile(GetParam().xml));
    EXPECT_EQ(startsLeft(), 2);
    EXPECT_EQ(showHead(function), "points type 2 object 1 data 1");
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
}

INSTANTIATE_TEST_SUITE_P(Documents, Unloadable, testing::ValuesIn(kUnloadableCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, FileThatIsMissingIsRefused)
{
    const CString path((folder / "none.xml").c_str());
    const documents::ReadOutcome outcome =
        documents::readCurve(function, path, false, dataPointDocument().xml());
    EXPECT_FALSE(outcome.taken);
    EXPECT_EQ(outcome.reason, "The file cannot be opened: No such file or directory.");
    EXPECT_EQ(startsLeft(), 1);
}

// The version

struct VersionCase {
    const char* name;
    const char* text;
    bool isRead;
    const char* written;  // in the next document of this process
};

void PrintTo(const VersionCase& c, std::ostream* os)
{
    *os << c.text;
}

const VersionCase kVersionCases[] = {
    {"One", "1", true, "1"},
    {"OneWithFraction", " 1.000 ", true, "1"},
    {"NumberAndText", "1abc", true, "1"},
    {"Two", "2", false, "2"},
    {"NearlyOne", "1.0000000000000002", false, "1"},
    {"SevenDigits", "1.2345678", false, "1.23457"},
    {"Empty", "", false, "0"},
    {"NoNumber", "abc", false, "0"},
    {"WordForNoNumber", "nan", false, "0"},
    {"TooLarge", "1e999", false, "INF"},
    {"Large", "1234567", false, "1.23457E+06"},
};

class Version : public ReadCurve, public testing::WithParamInterface<VersionCase> {};

TEST_P(Version, OneIsReadAndAllAreKept)
{
    const documents::ReadOutcome outcome =
        outcomeOf(dataPointDocument().set("Version", GetParam().text).xml());
    EXPECT_TRUE(outcome.taken);
    EXPECT_EQ(outcome.reason.empty(), GetParam().isRead);
    EXPECT_EQ(showHead(function),
              GetParam().isRead ? "points type 2 object 1 data 1" : " type 1 object 0 data 0");
    EXPECT_EQ(points().isEmpty(), !GetParam().isRead);
    EXPECT_EQ(startsLeft(), GetParam().isRead ? 0 : 1);
    EXPECT_THAT(write(), HasSubstr(std::string("<Version>") + GetParam().written + "</Version>"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, Version, testing::ValuesIn(kVersionCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, DocumentWithoutAVersionIsVersionOne)
{
    ASSERT_TRUE(readBuffer(dataPointDocument().set("Version", "2")));
    EXPECT_TRUE(readBuffer(dataPointDocument().drop("Version")));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    EXPECT_THAT(write(), HasSubstr("<Version>1</Version>"));
}

TEST_F(ReadCurve, OtherVersionIsTakenAndReported)
{
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    const documents::ReadOutcome outcome = outcomeOf("<Curve><Version>2</Version></Curve>");
    EXPECT_TRUE(outcome.taken);
    EXPECT_EQ(outcome.reason, "The document has version 2, and only version 1 is read.");
    EXPECT_EQ(showHead(function), "points type 2 object 1 data 1");
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
}

TEST_F(ReadCurve, VersionIsKeptWhenTheReadFails)
{
    ASSERT_TRUE(readBuffer("<Curve><Version>2</Version></Curve>"));
    EXPECT_FALSE(readBuffer("<Curve><Version>1</Version></Curve>"));
    EXPECT_THAT(write(), HasSubstr("<Version>1</Version>"));
}

// The head

struct ObjectCase {
    const char* name;
    const char* text;
    int number;
};

void PrintTo(const ObjectCase& c, std::ostream* os)
{
    *os << c.text;
}

const ObjectCase kObjectCases[] = {
    {"Motor", "Motor", 1},     {"Force", "Force", 2},  {"Torque", "Torque", 3},  {"Empty", "", 0},
    {"OtherCase", "motor", 0}, {"Unknown", "Gear", 0}, {"Blanks", " Motor ", 1},
};

class MotionObject : public ReadCurve, public testing::WithParamInterface<ObjectCase> {};

TEST_P(MotionObject, BufferSetsIt)
{
    function.setMotionObjectType(MotionObjectType_Torque);
    EXPECT_TRUE(readBuffer(dataPointDocument().set("MotionObjectType", GetParam().text)));
    EXPECT_EQ(function.getMotionObjectType(), GetParam().number);
}

TEST_P(MotionObject, FileHasToFitIt)
{
    const std::string xml = dataPointDocument().set("MotionObjectType", GetParam().text).xml();
    for (int own = 0; own <= 4; ++own) {
        starts = platform::xmlStartCount();
        CString former = L"before";
        function.setName(former);
        function.setXYDataType(MfXY_Torque);
        function.setFunctionType(FunctionType_Segments);
        function.setMotionObjectType(static_cast<MotionObjectType_e>(own));
        EXPECT_EQ(readFile(xml), own == GetParam().number) << own;
        // Name and data type are overwritten in both cases.
        const bool fits = own == GetParam().number;
        EXPECT_EQ(showHead(function), std::string("points type ") + (fits ? "2" : "1") + " object " +
                                          std::to_string(own) + " data 1");
        EXPECT_EQ(startsLeft(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, MotionObject, testing::ValuesIn(kObjectCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, ForceDocumentForAMotorIsRefusedAsAFileAndTakenAsABuffer)
{
    function.setMotionObjectType(MotionObjectType_Motor);
    const std::string xml = dataPointDocument().set("MotionObjectType", "Force").xml();
    const documents::ReadOutcome outcome =
        documents::readCurve(function, folder.write("f.xml", xml).c_str(), false, "");
    EXPECT_FALSE(outcome.taken);
    EXPECT_EQ(outcome.reason, "\"MotionObjectType\" is \"Force\", and this function is for \"Motor\".");
    EXPECT_TRUE(readBuffer(xml));
    EXPECT_EQ(function.getMotionObjectType(), MotionObjectType_Force);
}

TEST_F(ReadCurve, UnknownMotionObjectOfAFileIsReported)
{
    function.setMotionObjectType(MotionObjectType_Motor);
    const std::string xml = dataPointDocument().set("MotionObjectType", "Gear").xml();
    EXPECT_EQ(documents::readCurve(function, folder.write("f.xml", xml).c_str(), false, "").reason,
              "\"MotionObjectType\" is \"Gear\", which is none of \"Motor\", \"Force\" or \"Torque\".");
}

struct DataTypeCase {
    const char* text;
    int number;
};

const DataTypeCase kDataTypeCases[] = {
    {"MfXY_None", 0},
    {"MfXY_Disp_LinMotor", 1},
    {"MfXY_Vel_LinMotor", 2},
    {"MfXY_Acc_LinMotor", 3},
    {"MfXY_Disp_RotMotor", 4},
    {"MfXY_Vel_RotMotor", 5},
    {"MfXY_Acc_RotMotor", 6},
    {"MfXY_Disp_PathMateMotor", 7},
    {"MfXY_Vel_PathMateMotor", 8},
    {"MfXY_Acc_PathMateMotor", 9},
    {"MfXY_Force", 10},
    {"MfXY_Torque", 11},
    {"MfXY_Misc", 23},
    {"Unknown", 23},
    {"mfxy_force", 23},
    {"", 23},
};

TEST_F(ReadCurve, DataTypeIsKnownByItsText)
{
    for (const auto& [text, number] : kDataTypeCases) {
        EXPECT_TRUE(readBuffer(dataPointDocument().set("XYDataType", text))) << text;
        EXPECT_EQ(function.getXYDataType(), number) << text;
    }
}

TEST_F(ReadCurve, UnknownFunctionTypeIsRefused)
{
    for (const char* text : {"", "segments", "Segment", "Points"}) {
        function.setMotionObjectType(MotionObjectType_Torque);
        const documents::ReadOutcome outcome = outcomeOf(dataPointDocument().set("FunctionType", text).xml());
        EXPECT_FALSE(outcome.taken);
        EXPECT_EQ(outcome.reason, std::string("\"FunctionType\" is \"") + text +
                                      "\", which is none of \"Segments\", \"DataPoints\" or \"Expression\".");
        EXPECT_EQ(showHead(function), "points type 1 object 1 data 1");
        EXPECT_EQ(startsLeft(), 0);
    }
}

TEST_F(ReadCurve, UnknownFunctionTypeOfAFileLeavesTheObjectType)
{
    function.setMotionObjectType(MotionObjectType_Motor);
    EXPECT_FALSE(readFile(dataPointDocument().set("FunctionType", "Spline").xml()));
    EXPECT_EQ(showHead(function), "points type 1 object 1 data 1");
}

}  // namespace
}  // namespace mf::test
