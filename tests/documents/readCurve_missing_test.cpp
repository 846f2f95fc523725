// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "readCurveFixture.h"

// What is set, and which start of the XML engine is left, when a part of a document is missing.

namespace mf::test {
namespace {

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
    // A document of the case's kind, read before.
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
TEST_F(ReadCurve, MissingSegmentCountIsNoticedAfterTheDefinitions)
{
    EXPECT_FALSE(readBuffer(segmentDocument()
                                .drop("SegmentCount")
                                .set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")))));
    EXPECT_TRUE(segments().isEmpty());
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_EQ(utf8(names.back()), "Mine (Assembly)");
}

TEST_F(ReadCurve, MissingElementOfAnExpressionKeepsTheElementsBeforeIt)
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

}  // namespace
}  // namespace mf::test
