// SPDX-License-Identifier: MIT

// Reading curves from documents and writing them: the definitions, the problems that are
// reported, and that nothing else in the process matters.

#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mfcurves/curve/Curve.h"
#include "tests/documents/curveFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

// "place: message", errors first.
std::vector<std::string> shown(const std::vector<Problem>& problems)
{
    std::vector<std::string> texts;
    for (const Problem& problem : problems) {
        const std::string level = problem.level == Problem::Level::Error ? "" : "warning: ";
        texts.push_back(level + problem.place + (problem.place.empty() ? "" : ": ") + problem.message);
    }
    return texts;
}

// The problems of the error that `make` throws.
template <class Make>
std::vector<std::string> problemsOf(const Make& make)
{
    try {
        make();
    } catch (const CurveError& error) {
        return shown(error.problems());
    }
    return {"no error"};
}

std::vector<std::string> problemsOf(const Document& document, const ReadSettings& settings = {})
{
    return problemsOf([&] { Curve::parse(document.xml(), settings); });
}

// "0 1 | 2 5 Mine | 3 4 Cubic": start, then end, value and law of each row.
std::string show(const SegmentShape& shape)
{
    std::string text = number(shape.startX) + ' ' + number(shape.startValue);
    for (const CurveRow& row : shape.rows)
        text += " | " + number(row.endX) + ' ' + number(row.value) + ' ' + row.profile;
    for (const LawText& law : shape.laws)
        text += "; " + law.name + '=' + law.text.substr(law.text.find(')') + 1, 20);
    return text;
}

std::string show(const PointShape& shape)
{
    std::string text = shape.interpolation == Interpolation::Linear  ? "linear"
                       : shape.interpolation == Interpolation::Cubic ? "cubic"
                                                                     : "akima";
    for (std::size_t i = 0; i < shape.x.size(); ++i)
        text += ' ' + number(shape.x[i]) + ':' + number(shape.y[i]);
    return text;
}

std::string show(const ExpressionShape& shape)
{
    return shape.text + " from " + number(shape.from) + " to " + number(shape.to);
}

std::string show(const CurveDefinition& definition)
{
    return std::visit([](const auto& shape) { return show(shape); }, definition.shape);
}

const std::string kStart = segment(" ", " ", "1");

Document withRows(const std::string& rows, const std::string& definitions = "")
{
    return segmentDocument().set("Segments", kStart + rows).set("ProfileDefinitions", definitions);
}

struct DocumentCase {
    const char* name;
    Document document;
    std::string definition;
    std::vector<std::string> warnings;
};

void PrintTo(const DocumentCase& c, std::ostream* os)
{
    *os << c.document.xml();
}

const std::string kLine = "s=(y2-y1)/(x2-x1);v=";

const DocumentCase kDocumentCases[] = {
    {"Points", dataPointDocument(), "akima 0.5:2 1:3", {}},
    {"PointsInOneRow",
     dataPointDocument().set("Points", "<Point><a>1</a><b>2</b><a>3</a><b>4</b></Point>"),
     "akima 1:2 3:4",
     {}},
    {"UnknownInterpolation",
     dataPointDocument().set("Interpolation", "Spline"),
     "linear 0.5:2 1:3",
     {R"(warning: "Interpolation" is "Spline", which is none of "DataPointInterpolationType_Linear", )"
      R"("DataPointInterpolationType_Cubic" or "DataPointInterpolationType_Akima")"}},
    {"PointThatMoves",
     dataPointDocument().set("Points", point("0", "0") + point("4", "1") + point("4", "2")),
     "akima 0:0 4:1 5:2",
     {"warning: point 3: its x is 4, which is not above the previous point's; it becomes 5"}},
    {"NumberWithARest",
     dataPointDocument().set("Points", point("1mm", "two")),
     "akima 1:0",
     {R"(warning: point 1: "x" is "1mm", which is not a finite number; it reads as 1)",
      R"(warning: point 1: "y" is "two", which is not a finite number; it reads as 0)"}},
    {"Expression", expressionDocument(), "2*time from -1 to 2.5", {}},
    {"OwnLaw",
     withRows(segment("0", "2", "5", "Mine (cam)"), definition("Mine (cam)", lineTimes("2", "Mine"))),
     "0 1 | 2 5 Mine (cam); Mine (cam)=" + kLine,
     {}},
    {"LastDefinitionOfANameCounts",
     withRows(segment("0", "2", "5", "A"),
              definition("A", lineTimes("2", "A")) +
                  definition("A", "segmenttype(\"A\",x,x1,y1,x2,y2)y=y1;returny;endsegmenttype")),
     "0 1 | 2 5 A; A=y=y1;returny;endsegm",
     {}},
    {"BuiltInLaw",
     withRows(segment("0", "2", "5", "Quadratic (Default)"),
              definition("Quadratic (Default)",
                         "segmenttype(\"Quadratic\",x,x1,y1,x2,y2)xbar=(x-x1)/(x2-x1);"
                         "ybar=xbar^2;y=y1+(y2-y1)*ybar;returny;endsegmenttype")),
     "0 1 | 2 5 Quadratic",
     {}},
    // A reader of the document gets this text, even if a law with that name is built in.
    {"OtherLawUnderABuiltInName",
     withRows(segment("0", "2", "5", "Linear (Default)") + segment("2", "3", "4", "Linear"),
              definition("Linear (Default)", lineTimes("2", "Linear"))),
     "0 1 | 2 5 Linear (Assembly) | 3 4 Linear (Default); Linear (Assembly)=" + kLine,
     {}},
    {"BareNameOfABuiltInLaw",
     withRows(segment("0", "2", "5", "A") + segment("2", "3", "4", "linear"),
              definition("A", lineTimes("2", "A"))),
     "0 1 | 2 5 A | 3 4 Linear; A=" + kLine,
     {}},
    {"BareNameWithoutAnyDefinition",
     withRows(segment("0", "2", "5", "Linear")),
     "0 1 | 2 5 Cubic",
     {R"(warning: row 1: the document does not define its law "Linear"; the row takes "Cubic")"}},
    {"DisplayNameWithoutItsDefinition",
     withRows(segment("0", "2", "5", "Linear (Default)"), definition("A", lineTimes("2", "A"))),
     "0 1 | 2 5 Cubic",
     {R"x(warning: row 1: the document does not define its law "Linear (Default)"; the row takes "Cubic")x"}},
    {"NoLaw",
     withRows(segment("0", "2", "5")),
     "0 1 | 2 5 Cubic",
     {R"(warning: row 1: the document does not define its law ""; the row takes "Cubic")"}},
    {"LawThatDoesNotParse",
     withRows(segment("0", "2", "5", "A"), definition("A", "y=x")),
     "0 1 | 2 5 Cubic",
     {R"(warning: definition 1: the law "A" is left out: the header has no closing parenthesis)",
      R"(warning: row 1: the document does not define its law "A"; the row takes "Cubic")"}},
    {"RowThatMoves",
     withRows(segment("0", "2", "5", "A") + segment("3", "4", "5", "A"),
              definition("A", lineTimes("2", "A"))),
     "0 1 | 2 5 A | 3 0 A; A=" + kLine,
     {"warning: row 2: it starts at 3, where the previous row does not end; it becomes a row from 2 to 3 "
      "with "
      "value 0"}},
    {"StartElsewhere",
     withRows(segment("-3", "2", "5", "A"), definition("A", lineTimes("2", "A"))),
     "-3 1 | 2 5 A; A=" + kLine,
     {}},
};

class ReadDocument : public testing::TestWithParam<DocumentCase> {};

TEST_P(ReadDocument, MakesTheDefinition)
{
    const Curve curve = Curve::parse(GetParam().document.xml());
    EXPECT_EQ(show(curve.definition()), GetParam().definition);
    EXPECT_THAT(shown(curve.warnings()), ElementsAreArray(GetParam().warnings));
}

TEST_P(ReadDocument, IsTheSameFromAFile)
{
    const TemporaryFolder folder;
    folder.write("cam.xml", GetParam().document.xml());
    const Curve curve = Curve::read((folder / "cam.xml").string());
    EXPECT_EQ(show(curve.definition()), GetParam().definition);
    EXPECT_THAT(shown(curve.warnings()), ElementsAreArray(GetParam().warnings));
}

INSTANTIATE_TEST_SUITE_P(Documents, ReadDocument, testing::ValuesIn(kDocumentCases),
                         [](const auto& tested) { return tested.param.name; });

struct HeadCase {
    const char* name;
    Document document;
    Quantity quantity;
    Over over;
    const char* motionResult;
    bool rotary;
    std::optional<MotFuncXYDataType_e> dataType;
    std::vector<std::string> warnings;
};

void PrintTo(const HeadCase& c, std::ostream* os)
{
    *os << c.document.xml();
}

Document head(const char* object, const char* quantity, const char* dataType, const char* variable)
{
    return expressionDocument()
        .set("MotionObjectType", object)
        .set("DepVar", quantity)
        .set("XYDataType", dataType)
        .set("IndepVar", variable);
}

const HeadCase kHeadCases[] = {
    {"Displacement",
     head("Motor", "MotorDriveType_Displacment", "MfXY_Disp_LinMotor", ""),
     Quantity::Displacement,
     Over::Time,
     "",
     false,
     {},
     {}},
    {"RotaryVelocity",
     head("Motor", "MotorDriveType_Velocity", "MfXY_Vel_RotMotor", "time"),
     Quantity::Velocity,
     Over::Time,
     "",
     true,
     {},
     {}},
    {"AccelerationOverTheAngle",
     head("Motor", "MotorDriveType_Acceleration", "MfXY_Acc_LinMotor", "cycleangle"),
     Quantity::Acceleration,
     Over::CycleAngle,
     "",
     false,
     {},
     {}},
    {"ForceOverAResult",
     head("Force", "ForceTorqueType_Force", "MfXY_Force", "Slip"),
     Quantity::Force,
     Over::MotionResult,
     "Slip",
     false,
     {},
     {}},
    {"Torque",
     head("Torque", "ForceTorqueType_Torque", "MfXY_Torque", ""),
     Quantity::Torque,
     Over::Time,
     "",
     false,
     {},
     {}},
    {"OtherDataType",
     head("Motor", "MotorDriveType_Velocity", "MfXY_Disp_RotMotor", ""),
     Quantity::Velocity,
     Over::Time,
     "",
     true,
     MfXY_Disp_RotMotor,
     {}},
    {"NoDataType",
     head("Motor", "MotorDriveType_Velocity", "MfXY_Misc", ""),
     Quantity::Velocity,
     Over::Time,
     "",
     false,
     MfXY_Misc,
     {}},
    {"NoQuantity",
     head("Torque", "", "MfXY_Torque", ""),
     Quantity::Torque,
     Over::Time,
     "",
     false,
     {},
     {"warning: it does not say which quantity it gives; it counts as a torque"}},
    {"QuantityOfAnotherObject",
     head("Motor", "ForceTorqueType_Force", "MfXY_Force", ""),
     Quantity::Force,
     Over::Time,
     "",
     false,
     {},
     {"warning: it is for a motor and gives a force; it counts as a force"}},
};

class ReadHead : public testing::TestWithParam<HeadCase> {};

TEST_P(ReadHead, MakesTheDefinition)
{
    const HeadCase& c = GetParam();
    const Curve curve = Curve::parse(c.document.xml());
    EXPECT_EQ(curve.definition().name, "expression");
    EXPECT_EQ(curve.definition().quantity, c.quantity);
    EXPECT_EQ(curve.definition().over, c.over);
    EXPECT_EQ(curve.definition().motionResult, c.motionResult);
    EXPECT_EQ(curve.definition().rotary, c.rotary);
    EXPECT_EQ(curve.definition().dataType, c.dataType);
    EXPECT_THAT(shown(curve.warnings()), ElementsAreArray(c.warnings));
    EXPECT_EQ(Curve::parse(curve.toXml()), curve);
}

INSTANTIATE_TEST_SUITE_P(Documents, ReadHead, testing::ValuesIn(kHeadCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(ReadDocument, TextIsReadAsUtf8UpToAZeroByte)
{
    const std::string xml = expressionDocument().set("FunctionName", "\n\xFC\xC3\xBC").xml();
    const Curve latin = Curve::parse(xml);
    EXPECT_EQ(latin.definition().name, "\xEF\xBF\xBD\xC3\xBC");
    EXPECT_THAT(shown(latin.warnings()),
                ElementsAre("warning: line 2: the text is not UTF-8 there, and reads as U+FFFD"));
    const Curve cut = Curve::parse(expressionDocument().xml() + std::string("\n\0<a>", 5));
    EXPECT_THAT(shown(cut.warnings()),
                ElementsAre("warning: line 2: the text ends at a zero byte, and what follows is not read"));
}

// Errors

TEST(ReadDocument, ErrorsSayWhereAndWhy)
{
    EXPECT_THAT(problemsOf([] { Curve::parse("<Curve>\n<a></b>"); }),
                ElementsAre("line 2: opening and ending tag mismatch: a line 2 and b (column 8)"));
    EXPECT_THAT(problemsOf([] { Curve::parse(""); }), ElementsAre("line 1: document is empty (column 1)"));
    EXPECT_THAT(problemsOf(expressionDocument().set("Version", "2")),
                ElementsAre("the document has version 2, and only version 1 is read"));
    EXPECT_THAT(problemsOf(expressionDocument().drop("XYDataType")),
                ElementsAre("the element \"XYDataType\" within \"Curve\" is missing"));
    EXPECT_THAT(problemsOf(segmentDocument().set("Segments", kStart)),
                ElementsAre("it has no row after the start"));
    EXPECT_THAT(problemsOf(dataPointDocument().set("Points", "")), ElementsAre("the curve has no points"));
}

TEST(ReadDocument, SaysThatWarningsEnd)
{
    std::string points;
    for (int i = 0; i < 30; ++i)
        points += point(std::to_string(i), "high");
    const Curve curve = Curve::parse(dataPointDocument().set("Points", points).xml());
    ASSERT_EQ(curve.warnings().size(), 21u);
    EXPECT_EQ(curve.warnings().back().message, "after these, numbers and rows were no longer checked");
}

TEST(ReadDocument, EachProblemIsOneLine)
{
    const Curve curve =
        Curve::parse(withRows(segment("0", "2", "1\nmm", "a\nb")).set("DepVar", "one\ntwo").xml());
    EXPECT_EQ(curve.warnings().size(), 4u);
    for (const Problem& warning : curve.warnings())
        EXPECT_EQ(warning.message.find('\n'), std::string::npos) << warning.message;
    EXPECT_THAT(problemsOf(expressionDocument().set("FunctionType", "a\nb")),
                ElementsAre(HasSubstr("\"a b\"")));
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{0.0, 0.0, {{1.0, 1.0, "a\nb"}}, {}, false};
    EXPECT_THAT(problemsOf([&] { Curve made(definition); }), ElementsAre(HasSubstr("\"a b\"")));
}

TEST(ReadDocument, ErrorsOfTheCurveComeBeforeWarnings)
{
    EXPECT_THAT(problemsOf(withRows(segment("0", "2", "1e999", "A"), definition("A", lineTimes("2", "B")))),
                testing::Contains("row 1: the value is inf, which is not a finite number"));
    const auto problems = problemsOf(expressionDocument().set("Expression", "2*(x").set("DepVar", ""));
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_THAT(problems[0], HasSubstr("character 5: "));
    EXPECT_THAT(problems[1], HasSubstr("warning: it does not say which quantity it gives"));
}

TEST(ReadDocument, EveryLawThatDoesNotCompileIsAnError)
{
    const std::string bad = "segmenttype(\"Bad\",x,x1,y1,x2,y2)y=wobble(x);returny;endsegmenttype";
    const auto problems = problemsOf(
        withRows(segment("0", "2", "5", "Bad") + segment("2", "4", "5", "Bad"), definition("Bad", bad)));
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_THAT(problems[0], testing::StartsWith("row 1: the law \"Bad\" does not compile: "));
    EXPECT_THAT(problems[1], testing::StartsWith("row 2: the law \"Bad\" does not compile: "));
}

TEST(ReadDocument, MotionResultHasToBeGiven)
{
    const Document document = segmentDocument().set("IndepVar", "Slip Speed");
    EXPECT_THAT(
        problemsOf(document),
        ElementsAre("it runs over the motion result \"Slip Speed\", which is not among the motion results "
                    "that were given"));
    const Curve curve = Curve::parse(document.xml(), {{}, {"Other", "Slip Speed"}});
    EXPECT_EQ(curve.definition().over, Over::MotionResult);
    EXPECT_EQ(curve.definition().motionResult, "Slip Speed");
    // Points need it only if the settings have a list of results.
    const Document points = dataPointDocument().set("IndepVar", "Slip Speed");
    EXPECT_EQ(Curve::parse(points.xml()).definition().motionResult, "Slip Speed");
    EXPECT_THAT(problemsOf(points, {{}, {"Other"}}), ElementsAre(HasSubstr("\"Slip Speed\"")));
}

TEST(ReadDocument, FilesAreNamed)
{
    const TemporaryFolder folder;
    folder.write("broken.xml", "<Curve>\n\n<a>");
    folder.write("old.xml", expressionDocument().set("Version", "0.5").xml());
    const auto read = [&](const std::string& name) {
        return problemsOf([&] { Curve::read((folder / name).string()); });
    };
    EXPECT_THAT(read("none.xml"), ElementsAre((folder / "none.xml").string() +
                                              ": the file cannot be opened: No such file or directory"));
    EXPECT_THAT(read("."), ElementsAre(HasSubstr(": the file cannot be read to its end: Is a directory")));
    EXPECT_THAT(read("broken.xml"), ElementsAre(HasSubstr("broken.xml:3: ")));
    EXPECT_THAT(read("old.xml"), ElementsAre((folder / "old.xml").string() +
                                             ": the document has version 0.5, and only version 1 is read"));
}

// Laws of folders

TEST(ReadDocument, LawsOfFoldersComeAfterTheDocuments)
{
    const TemporaryFolder folder;
    folder.write("SegmentTypes.txt",
                 "' a comment\n" + lineTimes("7", "Mine") + "\n" + lineTimes("8", "Linear") + "\nand more");
    const Document document = withRows(segment("0", "2", "5", "Mine (User)") + segment("2", "3", "4", "Own") +
                                           segment("3", "4", "1", "linear"),
                                       definition("Own", lineTimes("2", "Own")));
    const Curve curve = Curve::parse(document.xml(), {{folder.path().string()}, {}});
    EXPECT_EQ(show(curve.definition()), "0 1 | 2 5 Mine | 3 4 Own | 4 1 Linear; Mine=" + kLine +
                                            "; Own=" + kLine + "; Linear=" + kLine);
    EXPECT_THAT(shown(curve.warnings()), ElementsAre("warning: " + (folder / "SegmentTypes.txt").string() +
                                                     ":4: what follows the last endSegmentType is not read"));
    // The definition is complete, so the folder is no longer needed.
    EXPECT_EQ(Curve(curve.definition()), curve);
    EXPECT_EQ(Curve(curve.definition())(1.0), 1.0 + 7.0 * 2.0);
}

TEST(ReadDocument, FolderWithoutLawsIsAnError)
{
    const TemporaryFolder folder;
    EXPECT_THAT(problemsOf(dataPointDocument(), {{folder.path().string()}, {}}),
                ElementsAre((folder / "SegmentTypes.txt").string() +
                            ": the file cannot be read: No such file or directory"));
}

// Samples

TEST(SampleCurves, AreReadAndWrittenAsTheyAre)
{
    ReadSettings settings;
    settings.motionResults = {"Slip Speed", "Shaft Speed", "Spring Deflection"};
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(SAMPLE_CURVES)) {
        if (entry.path().extension() != ".xml")
            continue;
        SCOPED_TRACE(entry.path().string());
        const Curve curve = Curve::read(entry.path().string(), settings);
        EXPECT_THAT(shown(curve.warnings()), IsEmpty());
        std::vector<Problem> losses;
        EXPECT_EQ(curve.toXml(&losses), contentOf(entry.path()));
        EXPECT_THAT(shown(losses), IsEmpty());
        EXPECT_EQ(Curve(curve.definition()), curve);
        ++count;
    }
    EXPECT_EQ(count, 10);
}

TEST(SampleCurves, OverAMotionResultSayWhatToGive)
{
    const std::string path = SAMPLE_CURVES "/friction-torque.xml";
    EXPECT_THAT(problemsOf([&] { Curve::read(path); }),
                ElementsAre(testing::StartsWith(path + ": it runs over the motion result \"Slip Speed\"")));
}

// Writing

TEST(WriteDocument, SaysWhatSixDigitsChange)
{
    CurveDefinition definition;
    definition.shape =
        CurveDefinition::Points{{0.0, 1000.123, 1001.0}, {0.0, 1.0, 2.0}, Interpolation::Linear};
    std::vector<Problem> losses;
    Curve(definition).toXml(&losses);
    ASSERT_EQ(losses.size(), 1u);
    EXPECT_EQ(losses[0].level, Problem::Level::Warning);
    EXPECT_EQ(losses[0].place, "point 2");
    // At 1000.123 the line to (1001, 2) has the value 1.000 + 0.003/0.88.
    EXPECT_EQ(losses[0].message,
              "x 1000.123 becomes 1000.12; the value moves by up to 0.003409090909, at x = 1000.123");
}

TEST(WriteDocument, SaysWhatSixDecimalsOfRowsChange)
{
    CurveDefinition definition;
    definition.name = " cam ";
    definition.shape =
        CurveDefinition::Segments{0.0, 0.0, {{1.0, 1e-9, "Linear"}, {2.0, 1.0, "Cubic"}}, {}, false};
    std::vector<Problem> losses;
    const std::string xml = Curve(definition).toXml(&losses);
    EXPECT_THAT(
        shown(losses),
        ElementsAre("warning: the name \" cam \" becomes \"cam\"",
                    "warning: row 1: value 1e-09 becomes 0; the value moves by up to 1e-09, at x = 1"));
    EXPECT_EQ(std::get<SegmentShape>(Curve::parse(xml).definition().shape).rows[0].value, 0.0);
}

TEST(WriteDocument, LossesAreCounted)
{
    CurveDefinition definition;
    PointShape shape;
    for (int i = 0; i < 30; ++i) {
        shape.x.push_back(i);
        shape.y.push_back(i + 1.0 / 3.0);
    }
    definition.shape = shape;
    std::vector<Problem> losses;
    Curve(definition).toXml(&losses);
    ASSERT_EQ(losses.size(), 21u);
    EXPECT_THAT(losses.back().message,
                testing::StartsWith("30 numbers change in all; the value moves by up to 3.3"));
}

TEST(WriteDocument, PointsThatSixDigitsJoinMoveApart)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Points{{1000.001, 1000.002}, {0.0, 1.0}, Interpolation::Linear};
    std::vector<Problem> losses;
    Curve(definition).toXml(&losses);
    EXPECT_THAT(shown(losses), ElementsAre(HasSubstr("point 1: x 1000.001 becomes 1000"),
                                           HasSubstr("point 2: x 1000.002 becomes 1001")));
}

TEST(WriteDocument, RowsThatVanishLeaveNoCurve)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{0.0, 0.0, {{1e-9, 1.0, "Linear"}}, {}, false};
    std::vector<Problem> losses;
    Curve(definition).toXml(&losses);
    EXPECT_THAT(shown(losses), ElementsAre("warning: the document holds no curve: no row has a length",
                                           "warning: row 1: end x 1e-09 becomes 0"));
}

TEST(WriteDocument, JumpMayNameNoLaw)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{
        0.0, 0.0, {{0.0, 1.0, ""}, {1.0, 2.0, "Linear"}, {1.0, 5.0, ""}, {2.0, 5.0, "Linear"}}, {}, false};
    std::vector<Problem> losses;
    const Curve curve(definition);
    const Curve read = Curve::parse(curve.toXml(&losses));
    EXPECT_THAT(shown(losses), IsEmpty());
    EXPECT_EQ(show(read.definition()), "0 0 | 0 1 Cubic | 1 2 Linear | 1 5 Cubic | 2 5 Linear");
    EXPECT_EQ(read(0.5), 1.5);
    EXPECT_EQ(read.at(1.0, Side::Left).y, 2.0);
    EXPECT_EQ(read.at(1.0, Side::Right).y, 5.0);
}

TEST(WriteDocument, ReportsARotaryForceAsLost)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Expression{"x", 0.0, 1.0};
    definition.quantity = Quantity::Force;
    definition.rotary = true;
    std::vector<Problem> losses;
    Curve(definition).toXml(&losses);
    EXPECT_THAT(shown(losses), ElementsAre("warning: the document does not say that it is rotary"));
}

TEST(WriteDocument, ReportsAResultWhoseNameMeansTime)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Expression{"x", 0.0, 1.0};
    definition.over = Over::MotionResult;
    definition.motionResult = "TIME";
    std::vector<Problem> losses;
    Curve(definition).toXml(&losses);
    EXPECT_THAT(shown(losses), ElementsAre("warning: the motion result \"TIME\" becomes time"));
}

TEST(WriteDocument, FileIsReplacedOrTheReasonGiven)
{
    const TemporaryFolder folder;
    const Curve curve = Curve::parse(expressionDocument().xml());
    const std::string path = (folder / "out.xml").string();
    curve.write(path);
    EXPECT_EQ(folder.read("out.xml"), curve.toXml());
    EXPECT_EQ(Curve::read(path), curve);
    EXPECT_THAT(problemsOf([&] { curve.write((folder / "none" / "out.xml").string()); }),
                ElementsAre(HasSubstr("out.xml: the file cannot be written: No such file or directory")));
    EXPECT_THAT(problemsOf([&] { curve.write(folder.path().string()); }),
                ElementsAre(HasSubstr(": the file cannot be written: it is a folder")));
    EXPECT_EQ(folder.count(), 1);
}

}  // namespace
}  // namespace mf::test
