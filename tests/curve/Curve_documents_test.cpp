// SPDX-License-Identifier: MIT

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "tests/curve/curveDocuments.h"
#include "tests/support/TemporaryFolder.h"

// The definitions of curves that are read from documents.

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

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

}  // namespace
}  // namespace mf::test
