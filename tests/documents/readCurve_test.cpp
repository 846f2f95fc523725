#include "mfcurves/documents/readCurve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "curveFixture.h"
#include "mfcurves/documents/xmlDocument.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/profiles/mfProfile.h"
#include "tests/support/TemporaryFolder.h"

// The state that a read leaves: of the document's head, of the kind that it fills,
// of the starts of the XML engine and of the version.

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ReadCurve : public CurveTest {
protected:
    documents::ReadOutcome outcomeOf(const std::string& xml)
    {
        return documents::readCurve(function, L"some.xml", true, xml);
    }
    bool readFile(const std::string& bytes) { return readFile("curve.xml", bytes); }
    bool readFile(const char* name, const std::string& bytes)
    {
        return function.readXMLData(folder.write(name, bytes).c_str(), false, "");
    }

    TemporaryFolder folder;
};

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
    // Half way along a cubic the value stands half way between its ends.
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
    // The sampling step has nothing to compile until the host supplies a text.
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

TEST_P(Unloadable, LeavesTheObjectUntouchedAndOneStartBehind)
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

TEST_F(ReadCurve, OtherVersionIsTakenAndTold)
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
        // Name and data type are overwritten either way.
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

TEST_F(ReadCurve, UnknownMotionObjectOfAFileIsTold)
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

// Nodes that are missing

struct MissingCase {
    const char* name;
    const char* kind;     // p points, s segments, e expression
    const char* dropped;  // the element; "RangeX/MinX" for one below another
    const char* place;
    const char* head;       // state left
    const char* variables;  // state left
    int startsLeft;
};

void PrintTo(const MissingCase& c, std::ostream* os)
{
    *os << c.dropped << " of " << c.kind;
}

const MissingCase kMissingCases[] = {
    {"FunctionName", "p", "FunctionName", "\"FunctionName\" within \"Curve\"", "old type 7 object 3 data 11",
     "over 2 () gives 1 0 for 0", 0},
    {"FunctionType", "p", "FunctionType", "\"FunctionType\" within \"Curve\"",
     "points type 7 object 3 data 11", "over 2 () gives 1 0 for 0", 0},
    {"MotionObjectType", "p", "MotionObjectType", "\"MotionObjectType\" within \"Curve\"",
     "points type 7 object 3 data 11", "over 2 () gives 1 0 for 0", 0},
    {"XYDataType", "p", "XYDataType", "\"XYDataType\" within \"Curve\"", "points type 7 object 1 data 11",
     "over 2 () gives 1 0 for 0", 0},
    {"IndepVarOfPoints", "p", "IndepVar", "\"IndepVar\" within \"Curve\"", "points type 2 object 1 data 1",
     "over 2 () gives 1 0 for 0", 1},
    {"DepVarOfPoints", "p", "DepVar", "\"DepVar\" within \"Curve\"", "points type 2 object 1 data 1",
     "over 2 () gives 1 0 for 0", 1},
    {"RangeXOfPoints", "p", "RangeX", "\"MinX\" within \"RangeX\" within \"Curve\"",
     "points type 2 object 1 data 1", "over 1 () gives 0 0 for 0", 1},
    {"MaxXOfPoints", "p", "RangeX/MaxX", "\"MaxX\" within \"RangeX\" within \"Curve\"",
     "points type 2 object 1 data 1", "over 1 () gives 0 0 for 0", 1},
    {"MinYOfPoints", "p", "RangeY/MinY", "\"MinY\" within \"RangeY\" within \"Curve\"",
     "points type 2 object 1 data 1", "over 1 () gives 0 0 for 0", 1},
    {"MaxYOfPoints", "p", "RangeY/MaxY", "\"MaxY\" within \"RangeY\" within \"Curve\"",
     "points type 2 object 1 data 1", "over 1 () gives 0 0 for 0", 1},
    {"CursorOfPoints", "p", "Cursor", "\"Cursor\" within \"Curve\"", "points type 2 object 1 data 1",
     "over 1 () gives 2 0 for 0", 1},
    {"Interpolation", "p", "Interpolation", "\"Interpolation\" within \"Curve\"",
     "points type 2 object 1 data 1", "over 1 () gives 2 0 for 0", 1},
    {"PointCount", "p", "PointCount", "\"PointCount\" within \"Curve\"", "points type 2 object 1 data 1",
     "over 1 () gives 2 0 for 0", 1},
    {"IndepVarOfSegments", "s", "IndepVar", "\"IndepVar\" within \"Curve\"",
     "segments type 1 object 1 data 4", "over 1 () gives 1 0 for 0", 1},
    {"DepVarOfSegments", "s", "DepVar", "\"DepVar\" within \"Curve\"", "segments type 1 object 1 data 4",
     "over 1 () gives 1 0 for 0", 1},
    {"RangeYOfSegments", "s", "RangeY", "\"MinY\" within \"RangeY\" within \"Curve\"",
     "segments type 1 object 1 data 4", "over 2 () gives 0 0 for 0", 1},
    {"CursorOfSegments", "s", "Cursor", "\"Cursor\" within \"Curve\"", "segments type 1 object 1 data 4",
     "over 2 () gives 1 0 for 0", 1},
    {"SegmentCount", "s", "SegmentCount", "\"SegmentCount\" within \"Curve\"",
     "segments type 1 object 1 data 4", "over 2 () gives 1 0 for 0", 1},
    {"MinXOfExpression", "e", "RangeX/MinX", "\"MinX\" within \"RangeX\" within \"Curve\"",
     "expression type 3 object 1 data 2", "over 1 () gives 0 0 for 0", 1},
    {"MaxYOfExpression", "e", "RangeY/MaxY", "\"MaxY\" within \"RangeY\" within \"Curve\"",
     "expression type 3 object 1 data 2", "over 1 () gives 0 0 for 0", 1},
    {"IndepVarOfExpression", "e", "IndepVar", "\"IndepVar\" within \"Curve\"",
     "expression type 3 object 1 data 2", "over 1 () gives 0 0 for 0", 1},
    {"DepVarOfExpression", "e", "DepVar", "\"DepVar\" within \"Curve\"", "expression type 3 object 1 data 2",
     "over 1 () gives 0 0 for 0", 1},
    {"CursorOfExpression", "e", "Cursor", "\"Cursor\" within \"Curve\"", "expression type 3 object 1 data 2",
     "over 1 () gives 3 0 for 0", 1},
    {"Expression", "e", "Expression", "\"Expression\" within \"Curve\"", "expression type 3 object 1 data 2",
     "over 1 () gives 3 0 for 0", 1},
};

class MissingNode : public ReadCurve, public testing::WithParamInterface<MissingCase> {
protected:
    // A document of the kind whose state the case tells, read beforehand.
    std::string former() const
    {
        switch (*GetParam().kind) {
            case 'p':
                return dataPointDocument()
                    .set("IndepVar", "IndependentVariableType_CycleAngle")
                    .set("DepVar", "MotorDriveType_Displacment")
                    .xml();
            case 's':
                return segmentDocument().set("IndepVar", "IndependentVariableType_Time").xml();
            default:
                return expressionDocument().set("DepVar", "MotorDriveType_Displacment").xml();
        }
    }
    std::string incomplete() const
    {
        Document document = *GetParam().kind == 'p'   ? dataPointDocument()
                            : *GetParam().kind == 's' ? segmentDocument()
                                                      : expressionDocument();
        const std::string dropped = GetParam().dropped;
        const std::size_t slash = dropped.find('/');
        if (slash == std::string::npos)
            return document.drop(dropped).xml();
        const std::string range = dropped.substr(0, slash);
        const std::string kept = dropped.substr(slash + 1).starts_with("Min") ? "Max" : "Min";
        const std::string name = kept + range.back();
        return document.set(range, "<" + name + ">1</" + name + ">").xml();
    }
    const mfFunctionBase_c& kind()
    {
        if (*GetParam().kind == 'p')
            return points();
        if (*GetParam().kind == 's')
            return segments();
        return expression();
    }
};

TEST_P(MissingNode, FailsTheReadThereAndKeepsWhatWasSet)
{
    ASSERT_TRUE(readBuffer(former()));
    CString name = L"old";
    function.setName(name);
    function.setFunctionType(static_cast<FunctionType_e>(7));
    function.setMotionObjectType(MotionObjectType_Torque);
    function.setXYDataType(MfXY_Torque);

    const documents::ReadOutcome outcome = outcomeOf(incomplete());
    EXPECT_FALSE(outcome.taken);
    EXPECT_EQ(outcome.reason, std::string("The element ") + GetParam().place + " is missing.");
    EXPECT_EQ(showHead(function), GetParam().head);
    EXPECT_EQ(showVariables(kind()), GetParam().variables);
    EXPECT_EQ(startsLeft(), GetParam().startsLeft);
}

INSTANTIATE_TEST_SUITE_P(Nodes, MissingNode, testing::ValuesIn(kMissingCases),
                         [](const auto& tested) { return tested.param.name; });

// What is read before the missing element has its effect.
TEST_F(ReadCurve, MissingSegmentCountComesBehindTheDefinitions)
{
    EXPECT_FALSE(readBuffer(segmentDocument()
                                .drop("SegmentCount")
                                .set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")))));
    EXPECT_TRUE(segments().isEmpty());
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_EQ(utf8(names.back()), "Mine (Assembly)");
}

TEST_F(ReadCurve, MissingElementOfAnExpressionKeepsWhatStandsBeforeIt)
{
    const auto left = [&](const Document& document) {
        EXPECT_TRUE(readBuffer(expressionDocument().set("Expression", "7*time")));
        EXPECT_FALSE(readBuffer(document));
        return number(expression().getMinX()) + ".." + number(expression().getMaxX()) + " " +
               utf8(expression().getIndepVar()) + " " + utf8(expression().getMathExpression());
    };
    expression().clearExpression();
    const std::string cleared = number(expression().getMinX()) + ".." + number(expression().getMaxX());
    EXPECT_EQ(left(expressionDocument().set("RangeY", "<MinY>1</MinY>")), cleared + "  ");
    EXPECT_EQ(left(expressionDocument().drop("DepVar")), "-1..2.5  ");
    EXPECT_EQ(left(expressionDocument().drop("Cursor")), "-1..2.5 Time ");
    EXPECT_EQ(left(expressionDocument().drop("Expression")), "-1..2.5 Time ");
}

TEST_F(ReadCurve, ListsMayBeMissing)
{
    EXPECT_TRUE(readBuffer(dataPointDocument().drop("Points")));
    EXPECT_TRUE(points().isEmpty());
    EXPECT_TRUE(readBuffer(segmentDocument().drop("Segments").drop("ProfileDefinitions")));
    EXPECT_TRUE(segments().isEmpty());
    EXPECT_EQ(startsLeft(), 0);
}

TEST_F(ReadCurve, ObjectWithoutKindsFailsAsItsKind)
{
    mfFunctionData_c bare;
    const Document documents[] = {segmentDocument(), dataPointDocument(), expressionDocument()};
    const char* heads[] = {"segments type 1 object 1 data 4", "points type 2 object 1 data 1",
                           "expression type 3 object 1 data 2"};
    for (int i = 0; i < 3; ++i) {
        const documents::ReadOutcome outcome = documents::readCurve(bare, L"", true, documents[i].xml());
        EXPECT_FALSE(outcome.taken);
        EXPECT_EQ(outcome.reason, "The motion function was not initialised.");
        EXPECT_EQ(showHead(bare), heads[i]);
        EXPECT_EQ(startsLeft(), i + 1);
    }
}

// The variables

struct ResultCase {
    const char* name;
    bool services;
    std::vector<CString> names;
    int count;
    const char* text;
    bool forSegments;
    bool forPoints;
};

void PrintTo(const ResultCase& c, std::ostream* os)
{
    *os << c.name;
}

const ResultCase kResultCases[] = {
    {"Listed", true, {L"Speed", L"Slip"}, 2, "Slip", true, true},
    {"NotListed", true, {L"Speed"}, 1, "Slip", false, false},
    {"OtherCase", true, {L"slip"}, 1, "Slip", false, false},
    {"NoListAtAll", true, {}, 0, "Slip", false, true},
    // The count alone tells whether there is a list to check against.
    {"CountWithoutNames", true, {}, 1, "Slip", false, false},
    {"NamesWithoutCount", true, {L"Speed"}, 0, "Slip", false, true},
    {"NoServices", false, {}, 0, "Slip", false, false},
    {"Empty", true, {L"Speed"}, 1, "", false, false},
    {"EmptyWithoutAList", true, {}, 0, "", false, true},
};

class MotionResult : public ReadCurve, public testing::WithParamInterface<ResultCase> {
protected:
    template <class Kind>
    void expect(const Document& former, Kind& kind, const std::string& before, bool isTaken)
    {
        ASSERT_TRUE(readBuffer(former));
        host.services.motionResultNames = GetParam().names;
        host.services.motionResultCount = GetParam().count;
        host.servicesAnswer = GetParam().services ? &host.services : nullptr;
        Document document = former;
        const documents::ReadOutcome outcome = outcomeOf(document.set("IndepVar", GetParam().text).xml());
        host.servicesAnswer = &host.services;
        EXPECT_EQ(outcome.taken, isTaken);
        EXPECT_EQ(startsLeft(), isTaken ? 0 : 1);
        const std::string after = std::string("over 3 (") + GetParam().text + before.substr(before.find(')'));
        EXPECT_EQ(showVariables(kind), isTaken ? after : before);
        EXPECT_EQ(outcome.reason.empty(), isTaken);
        if (isTaken)
            return;
        EXPECT_EQ(outcome.reason, std::string("\"IndepVar\" is \"") + GetParam().text +
                                      "\", which is none of \"IndependentVariableType_Time\" or "
                                      "\"IndependentVariableType_CycleAngle\", and the host knows no "
                                      "motion result of that name.");
    }
};

TEST_P(MotionResult, SegmentsTakeAListedOne)
{
    expect(segmentDocument(), segments(), "over 2 () gives 1 0 for 0", GetParam().forSegments);
    EXPECT_EQ(segments().getSegmentCount(), 3);  // not cleared where the read fails
    EXPECT_EQ(function.getFunctionType(), FunctionType_Segments);
}

TEST_P(MotionResult, PointsTakeAnyWhereThereIsNoList)
{
    expect(dataPointDocument(), points(), "over 1 () gives 2 0 for 0", GetParam().forPoints);
    EXPECT_EQ(points().getDataPointsCount(), 2);
    EXPECT_EQ(function.getFunctionType(), FunctionType_DataPoints);
}

INSTANTIATE_TEST_SUITE_P(Names, MotionResult, testing::ValuesIn(kResultCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, TimeAndCycleAngleForgetAFormerMotionResult)
{
    host.services.motionResultNames = {L"Slip"};
    host.services.motionResultCount = 1;
    for (const char* text : {"IndependentVariableType_Time", "IndependentVariableType_CycleAngle"}) {
        const std::string expected = std::string("over ") + (text[24] == 'T' ? "1" : "2");
        ASSERT_TRUE(readBuffer(segmentDocument().set("IndepVar", "Slip")));
        ASSERT_TRUE(readBuffer(segmentDocument().set("IndepVar", text)));
        EXPECT_EQ(showVariables(segments()), expected + " () gives 1 0 for 0");
        ASSERT_TRUE(readBuffer(dataPointDocument().set("IndepVar", "Slip")));
        ASSERT_TRUE(readBuffer(dataPointDocument().set("IndepVar", text)));
        EXPECT_EQ(showVariables(points()), expected + " () gives 2 0 for 0");
    }
}

struct DependentCase {
    const char* text;
    const char* behindForce;  // "gives m f for o", behind a former document of a force
    const char* behindMotor;
};

const DependentCase kDependentCases[] = {
    {"MotorDriveType_Displacment", "gives 1 0 for 0", "gives 1 0 for 0"},
    {"MotorDriveType_Velocity", "gives 2 0 for 0", "gives 2 0 for 0"},
    {"MotorDriveType_Acceleration", "gives 3 0 for 0", "gives 3 0 for 0"},
    {"ForceTorqueType_Force", "gives 0 1 for 1", "gives 0 1 for 1"},
    {"ForceTorqueType_Torque", "gives 0 2 for 1", "gives 0 2 for 1"},
    // The clearing before forgets the quantities and keeps motionObjectType.
    {"MotorDriveType_Displacement", "gives 0 0 for 1", "gives 0 0 for 0"},
    {"motordrivetype_velocity", "gives 0 0 for 1", "gives 0 0 for 0"},
    {"", "gives 0 0 for 1", "gives 0 0 for 0"},
};

TEST_F(ReadCurve, DependentVariableIsKnownByItsText)
{
    for (const DependentCase& c : kDependentCases) {
        for (Document document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
            const auto behind = [&](const char* former) {
                EXPECT_TRUE(readBuffer(document.set("DepVar", former)));
                EXPECT_TRUE(readBuffer(document.set("DepVar", c.text)));
                switch (function.getFunctionType()) {
                    case FunctionType_Segments:
                        return showVariables(segments());
                    case FunctionType_DataPoints:
                        return showVariables(points());
                    default:
                        return showVariables(expression());
                }
            };
            EXPECT_THAT(behind("ForceTorqueType_Torque"), testing::EndsWith(c.behindForce)) << c.text;
            EXPECT_THAT(behind("MotorDriveType_Velocity"), testing::EndsWith(c.behindMotor)) << c.text;
        }
    }
}

TEST_F(ReadCurve, ReadLeavesTheOtherKindsAndTheTextAlone)
{
    char text[] = "text";
    function.setXMLData(text);
    ASSERT_TRUE(readBuffer(dataPointDocument()));
    ASSERT_TRUE(readBuffer(segmentDocument()));
    ASSERT_TRUE(readBuffer(expressionDocument()));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    EXPECT_EQ(segments().getSegmentCount(), 3);
    EXPECT_STREQ(function.getXMLData(), "text");
}

// Points

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
    // A comment takes a position: the pair is complete behind it.
    {"CommentInFront", "<Point><!--c--><x>1</x><y>2</y></Point>", "0:1"},
    {"CommentBetween", "<Point><x>1</x><!--c--><y>2</y><z>3</z></Point>", "1:0,2:3"},
    {"CommentBehind", "<Point><x>1</x><y>2</y><!--c--></Point>", "1:2"},
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
    // One that cannot be moved is left out, and no row has a place behind it.
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

TEST_P(Points, AreToldByPosition)
{
    EXPECT_TRUE(readBuffer(dataPointDocument().set("Points", GetParam().points)));
    EXPECT_EQ(showPoints(points()), GetParam().table);
    EXPECT_EQ(startsLeft(), 0);

    // The spline holds what the table holds.
    std::map<double, double> expected;
    for (int row = 0; row < points().getDataPointsCount(); ++row) {
        mfDataPoints_c* list = nullptr;
        points().selectDataPoint(row, list);
        for (int i = 0; i < list->getPointCount(); ++i)
            expected[list->getX(i)] = list->getY(i);
    }
    EXPECT_EQ(host.services.spline().points, expected);
}

// What reading row by row through insertDataPoint leaves behind.
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

// The spline is cleared with the former curve and once more for its new points.
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

// Segments

struct SegmentsCase {
    const char* name;
    std::string segments;
    const char* table;  // without the profiles
};

void PrintTo(const SegmentsCase& c, std::ostream* os)
{
    *os << c.segments;
}

const SegmentsCase kSegmentsCases[] = {
    {"None", "", ""},
    {"FirstRowStatesWhereTheCurveBegins", segment("3", "4", "5"), "0-0=5"},
    {"FirstRowOfBlanks", segment(" ", " ", "5"), "0-0=5"},
    {"SecondRowKeepsItsNumbers", segment("", "", "1") + segment("1", "4", "2"), "0-0=1; 1-4=2"},
    {"ThirdRowThatDoesNotMeetTheSecond",
     segment("", "", "1") + segment("0", "4", "2") + segment("5", "6", "3"), "0-0=1; 0-4=2; 4-5=0"},
    {"NamesDoNotCount", "<Segment/><Segment><Value>1</Value><x>2</x><x>3</x></Segment>", "0-0=0; 1-2=3"},
    // Only elements are counted here, unlike the children of a point.
    {"CommentsDoNotCount", "<Segment/><Segment><!--c--><a>1</a><!--c--><a>2</a>t<a>3</a></Segment>",
     "0-0=0; 1-2=3"},
    {"MissingElementsLeaveTheDefaults", "<Segment/><Segment><a>0.5</a></Segment>", "0-0=0; 0.5-1=0"},
    {"FifthElementIsIgnored", "<Segment/><Segment><a>1</a><a>2</a><a>3</a><a/><a>9</a></Segment>",
     "0-0=0; 1-2=3"},
    {"SegmentInASegment", "<Segment><Segment><a>1</a><a>2</a><a>3</a></Segment></Segment>", "0-0=0; 1-2=3"},
    {"Indentation", "\n<Segment>\n</Segment>\n<Segment>\n <a> 1 </a>\n <b> 2 </b>\n <c> 3 </c>\n</Segment>\n",
     "0-0=0; 1-2=3"},
    {"NumbersOutOfRange", segment("", "", "") + segment("-1e999", "1e999", "1e-999"), "0-0=0; -inf-inf=0"},
};

class Segments : public ReadCurve, public testing::WithParamInterface<SegmentsCase> {};

TEST_P(Segments, AreToldByTheNumberOfTheElement)
{
    host.managerAnswer = nullptr;  // and so without profiles
    if (GetParam().name != std::string("None"))
        host.managerAnswer = &manager;
    EXPECT_TRUE(readBuffer(segmentDocument().set("Segments", GetParam().segments)));
    std::string table = showSegments(segments());
    for (std::size_t at = 0; (at = table.find(" Cubic (Default)")) != std::string::npos;)
        table.erase(at, std::string(" Cubic (Default)").size());
    EXPECT_EQ(table, GetParam().table);
}

INSTANTIATE_TEST_SUITE_P(Rows, Segments, testing::ValuesIn(kSegmentsCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, FirstSegmentIsNotParsedAndTheOthersAre)
{
    ASSERT_TRUE(readBuffer(segmentDocument()));
    mfSegment_c* row = nullptr;
    segments().selectSegment(0, row);
    EXPECT_TRUE(row->getProfileExpr().IsEmpty());
    EXPECT_EQ(row->getPlottingData0(), nullptr);
    EXPECT_TRUE(row->isInvalid());  // judged, and passed
    for (int i = 1; i < 3; ++i) {
        segments().selectSegment(i, row);
        EXPECT_FALSE(row->getProfileExpr().IsEmpty());
        ASSERT_NE(row->getPlottingData0(), nullptr);
        EXPECT_EQ(row->getPlottingData(0)[99].x(), row->getEndX());
        EXPECT_DOUBLE_EQ(row->getPlottingData(0)[99].y(), row->getValue());
    }
}

// Profiles

struct ProfileCase {
    const char* name;
    std::string definitions;
    const char* profile;  // what the row asks for
    const char* shown;    // what it gets
};

void PrintTo(const ProfileCase& c, std::ostream* os)
{
    *os << c.profile << " of " << c.definitions;
}

const std::string kCubic =
    "segmenttype(\"Cubic\",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);ybar=3*xbar^2-2*xbar^3;y=y1+(y2-y1)*ybar;"
    "returny;endsegmenttype";

const ProfileCase kProfileCases[] = {
    {"NoDefinitions", "", "Linear (Default)", "Cubic (Default)"},
    {"NoDefinitionsAndAPlainName", "", "Linear", "Cubic (Default)"},
    {"Defined", definition("Mine (Assembly)", lineTimes("2", "Mine")), "Mine (Assembly)", "Mine (Assembly)"},
    {"DefinedUnderAPlainName", definition("Mine", lineTimes("2", "Mine")), "Mine", "Mine (Assembly)"},
    // With any definition at all, plain names of profiles at hand are found too.
    {"PlainNameOfABuiltInOne", definition("Mine", lineTimes("2", "Mine")), "Linear", "Linear (Default)"},
    {"PlainNameInOtherCase", definition("Mine", lineTimes("2", "Mine")), "linear", "linear (Default)"},
    {"DisplayNameOfABuiltInOne", definition("Mine", lineTimes("2", "Mine")), "Linear (Default)",
     "Cubic (Default)"},
    {"UnknownName", definition("Mine", lineTimes("2", "Mine")), "Yours", "Cubic (Default)"},
    {"EmptyName", definition("Mine", lineTimes("2", "Mine")), "", "Cubic (Default)"},
    {"SameAsABuiltInOne", definition("Cubic (Default)", kCubic), "Cubic (Default)", "Cubic (Default)"},
    {"NameComparesWithCase", definition("Mine", lineTimes("2", "Mine")), "MINE", "Cubic (Default)"},
    {"DoesNotParse", definition("Mine", "segmenttype(") + definition("Yours", lineTimes("3", "Yours")),
     "Mine", "Cubic (Default)"},
    {"OnlyOneThatDoesNotParse", definition("Linear", "nonsense"), "Linear", "Cubic (Default)"},
    {"SecondOfOneName",
     definition("Mine", lineTimes("2", "Mine")) + definition("Mine two", lineTimes("3", "Mine")), "Mine two",
     "Mine two (Assembly)"},
    {"SecondUnderTheSameUniqueName",
     definition("Mine", lineTimes("2", "Mine")) + definition("Mine", lineTimes("3", "Mine")), "Mine",
     "Mine (Assembly)<1>"},
    {"OlderKeywords",
     definition("Mine",
                "profile(\"Mine\",x,x1,y1,x2,y2)s=(y2-y1)/(x2-x1);v=y1+2*s*(x-x1);returnv;endprofile"),
     "Mine", "Mine (Assembly)"},
    {"NamesDoNotCount",
     "<ProfileDefinition><a>Mine</a><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>", "Mine",
     "Mine (Assembly)"},
    // Children are told by position, and a comment takes one.
    {"CommentInFront",
     "<ProfileDefinition><!--c--><a>Mine</a><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>",
     "Mine", "Cubic (Default)"},
    {"CommentBehind",
     "<ProfileDefinition><a>Mine</a><b>" + lineTimes("2", "Mine") + "</b><!--c--><c/></ProfileDefinition>",
     "Mine", "Mine (Assembly)"},
    // A key without a name is none, although the registry holds its record.
    {"NothingBeforeTheBracket", definition("(old)", lineTimes("2", "Mine")), "(old)", "Cubic (Default)"},
    {"CommentInPlaceOfTheName",
     "<ProfileDefinition><!--c--><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>", "",
     "Cubic (Default)"},
    {"FunctionInPlaceOfTheName",
     "<ProfileDefinition><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>", "Mine",
     "Cubic (Default)"},
    {"WithoutAFunction", "<ProfileDefinition><a>Linear</a></ProfileDefinition>", "Linear", "Cubic (Default)"},
    {"RefersToItself",
     definition("Mine", "segmenttype(\"Mine\",x,x1,y1,x2,y2)v=v+1;v=v*v;returnv;endsegmenttype"), "Mine",
     "Mine (Assembly)"},
};

class Profile : public ReadCurve, public testing::WithParamInterface<ProfileCase> {};

TEST_P(Profile, IsFoundByTheNameInTheDocument)
{
    EXPECT_TRUE(readBuffer(segmentDocument()
                               .set("Segments", segment("", "", "1", GetParam().profile) +
                                                    segment("0", "2", "5", GetParam().profile))
                               .set("ProfileDefinitions", GetParam().definitions)));
    const std::string shown = GetParam().shown;
    EXPECT_EQ(showSegments(segments()), "0-0=1 " + shown + "; 0-2=5 " + shown);
}

INSTANTIATE_TEST_SUITE_P(Names, Profile, testing::ValuesIn(kProfileCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ReadCurve, DefinitionsMayStandInFrontOfTheSegments)
{
    const Document document =
        segmentDocument()
            .set("Segments", segment("", "", "0", "Mine") + segment("0", "2", "1", "Mine"))
            .drop("ProfileDefinitions")
            .first("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")));
    ASSERT_TRUE(readBuffer(document));
    EXPECT_DOUBLE_EQ(function.evaluate(1.0, 0), 1.5);
    EXPECT_DOUBLE_EQ(function.evaluate(1.0, 1), 1.5);
}

TEST_F(ReadCurve, ProfilesOfAFileBearItsStem)
{
    function.setMotionObjectType(MotionObjectType_Motor);
    ASSERT_TRUE(readFile("clutch.v2.xml",
                         segmentDocument()
                             .set("Segments", segment("", "", "0", "Mine"))
                             .set("ProfileDefinitions", definition("Mine (old)", lineTimes("3", "Mine")) +
                                                            definition("Mine", lineTimes("4", "Mine")))
                             .xml()));
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (clutch.v2)<1>");
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_EQ(utf8(names[names.size() - 2]), "Mine (clutch.v2)");
    EXPECT_EQ(utf8(names.back()), "Mine (clutch.v2)<1>");
}

TEST_F(ReadCurve, DefinitionWithoutANameIsRegisteredAllTheSame)
{
    ASSERT_TRUE(readBuffer(segmentDocument().set(
        "ProfileDefinitions",
        "<ProfileDefinition><!--c--><b>" + lineTimes("2", "Mine") + "</b></ProfileDefinition>")));
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_EQ(utf8(names.back()), " (Assembly)");
    mfProfileKey_c key;
    manager.lookupDocumentName("", key);
    EXPECT_EQ(utf8(key.source), " (Assembly)");
    ASSERT_NE(manager.findProfile(key), nullptr);
    EXPECT_EQ(manager.findProfile(key)->name, "Mine");  // the record bears its own name
}

TEST_F(ReadCurve, FifthElementIsNoProfile)
{
    ASSERT_TRUE(readBuffer(
        segmentDocument()
            .set("Segments", "<Segment><a/><b/><c/><d>Mine</d><e>Linear</e><f>Linear</f></Segment>")
            .set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")))));
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (Assembly)");
}

TEST_F(ReadCurve, SecondReadFindsTheProfilesOfTheFirst)
{
    const Document document = segmentDocument()
                                  .set("Segments", segment("", "", "0", "Mine"))
                                  .set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")));
    std::vector<CString> once;
    std::vector<CString> twice;
    ASSERT_TRUE(readBuffer(document));
    manager.getAllProfileNames(once);
    ASSERT_TRUE(readBuffer(document));
    manager.getAllProfileNames(twice);
    EXPECT_EQ(once.size(), 11U);
    EXPECT_EQ(once, twice);
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (Assembly)");
}

// Names of documents read before stay known to the manager.
TEST_F(ReadCurve, NamesOfAnEarlierDocumentAreFound)
{
    ASSERT_TRUE(
        readBuffer(segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")))));
    ASSERT_TRUE(readBuffer(segmentDocument().set("Segments", segment("", "", "0", "Mine"))));
    EXPECT_EQ(showSegments(segments()), "0-0=0 Mine (Assembly)");
}

TEST_F(ReadCurve, WithoutAManagerRowsHaveNoProfile)
{
    host.managerAnswer = nullptr;
    EXPECT_TRUE(
        readBuffer(segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")))));
    EXPECT_EQ(showSegments(segments()), "0-0=1; 0-2=5; 2-3=4");
}

TEST_F(ReadCurve, WithoutAContextRowsHaveNoProfile)
{
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_TRUE(
        readBuffer(segmentDocument().set("ProfileDefinitions", definition("Mine", lineTimes("3", "Mine")))));
    EXPECT_FALSE(readBuffer(dataPointDocument().set("IndepVar", "Slip")));
    QelSession_c::setMotionFunctionContext(&host);
    EXPECT_EQ(showSegments(segments()), "0-0=1; 0-2=5; 2-3=4");
}

// Expressions

TEST_F(ReadCurve, ExpressionTakesAnyIndependentVariable)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "over 1 ()"}, {"Time", "over 1 ()"}, {"cycleangle", "over 2 ()"}, {"Slip", "over 3 (Slip)"}};
    for (const auto& [text, expected] : cases) {
        ASSERT_TRUE(readBuffer(expressionDocument().set("IndepVar", text)));
        EXPECT_THAT(showVariables(expression()), testing::StartsWith(expected)) << text;
        EXPECT_EQ(utf8(expression().getIndepVar()), text);
    }
}

TEST_F(ReadCurve, ExpressionThatDoesNotCompileIsTaken)
{
    EXPECT_TRUE(readBuffer(expressionDocument().set("Expression", "((")));
    EXPECT_EQ(utf8(expression().getMathExpression()), "((");
    EXPECT_EQ(function.evaluate(1.0, 0), 0.0);
}

TEST_F(ReadCurve, ExpressionKeepsItsMarkup)
{
    ASSERT_TRUE(readBuffer(
        expressionDocument().set("Expression", " \n{a&amp;b} &lt; <![CDATA[<c>]]><!-- no -->*2 \n")));
    EXPECT_EQ(utf8(expression().getMathExpression()), "{a&b} < <c>*2");
}

// Forms of one document

TEST_F(ReadCurve, IndentedDocumentReadsLikeAFlatOne)
{
    for (const Document& document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
        ASSERT_TRUE(readBuffer(document));
        const std::string flat = write();
        std::string indented;
        for (const char c : document.xml())
            indented += c == '<' ? "\r\n\t <" : std::string(1, c);
        ASSERT_TRUE(readBuffer("<?xml version='1.0'?>" + indented.substr(4)));
        EXPECT_EQ(write(), flat);
    }
}

TEST_F(ReadCurve, OrderOfThePartsDoesNotCount)
{
    for (const Document& document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
        ASSERT_TRUE(readBuffer(document));
        const std::string inOrder = write();
        std::string reversed;
        for (const auto& [name, content] : document.parts())
            reversed = "<" + name + ">" + content + "</" + name + ">" + reversed;
        ASSERT_TRUE(readBuffer("<Curve>" + reversed + "</Curve>"));
        EXPECT_EQ(write(), inOrder);
    }
}

// A comment or an instruction counts inside "Point" and "ProfileDefinition" alone.
TEST_F(ReadCurve, CommentsBetweenThePartsChangeNothing)
{
    for (Document document : {segmentDocument(), dataPointDocument(), expressionDocument()}) {
        if (document.parts().back().first == "ProfileDefinitions")
            document.set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")));
        ASSERT_TRUE(readBuffer(document));
        const std::string plain = write();
        std::string commented = "<!--a--><Curve><?b?>";
        for (const auto& [name, content] : document.parts()) {
            commented += "<!--c--><" + name + "><!--d-->" + content + "<!--e--></" + name + "><?f g?>";
            for (const std::string row : {"Segment", "Point", "ProfileDefinition"})
                for (std::size_t at = 0;
                     (at = commented.find("</" + row + "><" + row, at)) != std::string::npos;)
                    commented.insert(at += row.size() + 3, "<!--h-->");
        }
        ASSERT_TRUE(readBuffer(commented + "</Curve><!--i-->"));
        EXPECT_EQ(write(), plain);
    }
}

TEST_F(ReadCurve, CurveMayStandBelowAnotherRoot)
{
    EXPECT_TRUE(readBuffer("<Project><Part/>" + dataPointDocument().xml() + "</Project>"));
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
}

TEST_F(ReadCurve, FirstNodeOfANameCounts)
{
    EXPECT_TRUE(readBuffer(
        "<All>" + dataPointDocument().xml() +
        dataPointDocument().set("FunctionName", "second").set("Points", point("5", "5")).xml() + "</All>"));
    EXPECT_EQ(showHead(function), "points type 2 object 1 data 1");
    EXPECT_EQ(showPoints(points()), "0.5:2 1:3 5:5");
}

TEST_F(ReadCurve, EncodingsOfFiles)
{
    function.setMotionObjectType(MotionObjectType_Motor);
    const std::string body = dataPointDocument().set("FunctionName", "M\xE4ndel").xml();
    ASSERT_TRUE(readFile("<?xml version='1.0' encoding='ISO-8859-1'?>" + body));
    EXPECT_EQ(utf8(function.getName()), "M\u00E4ndel");
    EXPECT_FALSE(readFile("<?xml version='1.0' encoding='UTF-8'?>" + body));
    EXPECT_FALSE(readFile(body));

    for (const bool isBig : {false, true}) {
        std::string wide = isBig ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : "<?xml version='1.0' encoding='UTF-16'?>" + body) {
            const char bytes[] = {c, '\0'};
            wide += std::string(isBig ? std::string{bytes[1], bytes[0]} : std::string{bytes[0], bytes[1]});
        }
        CString name = L"";
        function.setName(name);
        ASSERT_TRUE(readFile(wide));
        EXPECT_EQ(utf8(function.getName()), "M\u00E4ndel");
        EXPECT_EQ(showPoints(points()), "0.5:2 1:3");
    }
}

TEST_F(ReadCurve, BufferIsUtf8WhateverItDeclares)
{
    const std::string body = dataPointDocument().set("FunctionName", "M\u00E4ndel").xml();
    for (const char* encoding : {"ISO-8859-1", "UTF-16", "UTF-8", "no-such"}) {
        ASSERT_TRUE(readBuffer("<?xml version='1.0' encoding='" + std::string(encoding) + "'?>" + body));
        EXPECT_EQ(utf8(function.getName()), "M\u00E4ndel");
    }
    ASSERT_TRUE(readBuffer("\xEF\xBB\xBF" + body));
    ASSERT_TRUE(readBuffer(body + std::string("\0<trash", 7)));
    ASSERT_TRUE(readBuffer(dataPointDocument().set("FunctionName", "M\xE4ndel").xml()));
    EXPECT_EQ(utf8(function.getName()), "M\uFFFDndel");
}

}  // namespace
}  // namespace mf::test
