// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "mfcurves/curve/Curve.h"
#include "tests/curve/curveDocuments.h"
#include "tests/support/TemporaryFolder.h"

// The errors and warnings about documents that are read.

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

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

TEST(ReadDocument, FolderWithoutLawsIsAnError)
{
    const TemporaryFolder folder;
    EXPECT_THAT(problemsOf(dataPointDocument(), {{folder.path().string()}, {}}),
                ElementsAre((folder / "SegmentTypes.txt").string() +
                            ": the file cannot be read: No such file or directory"));
}

TEST(SampleCurves, OverAMotionResultSayWhatToGive)
{
    const std::string path = SAMPLE_CURVES "/friction-torque.xml";
    EXPECT_THAT(problemsOf([&] { Curve::read(path); }),
                ElementsAre(testing::StartsWith(path + ": it runs over the motion result \"Slip Speed\"")));
}

}  // namespace
}  // namespace mf::test
