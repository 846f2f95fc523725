// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <variant>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "tests/curve/curveDocuments.h"
#include "tests/support/TemporaryFolder.h"

// Writing documents of curves, and the losses that are reported.

namespace mf::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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

// x22 contains the parameter x2, so it becomes 22 of 2, and 2.0000002 of 2.000000.
TEST(WriteDocument, SaysWhereALawJoinsDigitsToItsNumbers)
{
    const std::string law =
        "SegmentType(\"Mine\",x,x1,y1,x2,y2)\n"
        "y=y1+(y2-y1)*(x-x1)/(x22-x1);\nreturn y;\nendSegmentType\n";
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{0.0, 0.0, {{2.0, 1.0, "Mine"}}, {{"Mine", law}}, false};
    const Curve curve(definition);
    EXPECT_EQ(curve(1.0), 1.0 / 22.0);
    std::vector<Problem> losses;
    curve.toXml(&losses);
    ASSERT_EQ(losses.size(), 1u);
    EXPECT_THAT(losses[0].message, HasSubstr("makes another formula of numbers with six decimals"));

    definition.name = " a loss of its own ";
    losses.clear();
    Curve(definition).toXml(&losses);
    EXPECT_EQ(losses.size(), 2u);
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
