// SPDX-License-Identifier: MIT

// Invalid definitions: every problem has its place and message.

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace {

using mf::Curve;
using mf::CurveDefinition;
using mf::CurveError;
using mf::Problem;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Rows = std::vector<mf::CurveRow>;

CurveDefinition rows(const Rows& rows, double startX = 0.0, double startValue = 0.0)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{startX, startValue, rows, {}, false};
    return definition;
}

CurveDefinition lawed(const std::string& text)
{
    CurveDefinition definition = rows({{1.0, 1.0, "Own"}});
    std::get<CurveDefinition::Segments>(definition.shape).laws = {{"Own", text}};
    return definition;
}

CurveDefinition points(const std::vector<double>& x, const std::vector<double>& y)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Points{x, y, mf::Interpolation::Cubic};
    return definition;
}

CurveDefinition expression(const std::string& text, double from = 0.0, double to = 1.0)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Expression{text, from, to};
    return definition;
}

CurveDefinition overAResultWithoutName()
{
    CurveDefinition definition = expression("x");
    definition.over = mf::Over::MotionResult;
    return definition;
}

std::string law(const std::string& statements)
{
    return "SegmentType(\"Own\", x, x1, y1, x2, y2) " + statements + " endSegmentType";
}

/// "PLACE: MESSAGE" of each problem; empty for a valid definition.
std::vector<std::string> problemsOf(const CurveDefinition& definition)
{
    std::vector<std::string> lines;
    try {
        const Curve curve(definition);
    } catch (const CurveError& error) {
        for (const Problem& problem : error.problems()) {
            EXPECT_EQ(problem.level, Problem::Level::Error);
            lines.push_back(problem.place + ": " + problem.message);
        }
        EXPECT_FALSE(lines.empty());
    }
    return lines;
}

struct BadDefinition {
    const char* name;
    CurveDefinition definition;
    std::vector<std::string> problems;
};

void PrintTo(const BadDefinition& tested, std::ostream* os)
{
    *os << tested.name;
}

const BadDefinition kBadDefinitions[] = {
    {"NoRows", rows({}), {": the curve has no rows"}},
    {"NoRowHasALength", rows({{0.0, 1.0, "Cubic"}, {0.0, 2.0, ""}}), {": no row has a length"}},
    {"ARowEndsBeforeItStarts",
     rows({{2.0, 1.0, "Cubic"}, {1.0, 1.0, "Cubic"}, {3.0, 1.0, "Linear"}}),
     {"row 2: the row ends at 1, before it starts at 2"}},
    {"TheStartIsNaN",
     rows({{2.0, 1.0, "Cubic"}}, kNaN),
     {"row 0: the start x is nan, which is not a finite number"}},
    {"NumbersAreNotFinite",
     rows({{2.0, kNaN, "Cubic"}, {kInfinity, 1.0, "Cubic"}}, 0.0, -kInfinity),
     {"row 0: the start value is -inf, which is not a finite number",
      "row 1: the value is nan, which is not a finite number",
      "row 2: the end x is inf, which is not a finite number"}},
    {"APointTooMany", points({0.0, 1.0}, {0.0}), {": there are 2 x and 1 y"}},
    {"NoPoints", points({}, {}), {": the curve has no points"}},
    {"XDoesNotAscend",
     points({0.0, 2.0, 2.0, 1.0}, {0.0, 0.0, 0.0, 0.0}),
     {"point 3: x is 2, which is not above 2 of the previous point",
      "point 4: x is 1, which is not above 2 of the previous point"}},
    {"PointsAreNotFinite",
     points({0.0, kNaN, 3.0}, {0.0, 1.0, kInfinity}),
     {"point 2: x is nan, which is not a finite number", "point 3: y is inf, which is not a finite number"}},
    {"NoText", expression(""), {": the expression is empty"}},
    {"TheRangeIsReversed", expression("x", 2.0, 1.0), {": the range starts at 2, above its end at 1"}},
    {"TheRangeIsNotFinite",
     expression("x", kNaN, kInfinity),
     {": the start of the range is nan, which is not a finite number",
      ": the end of the range is inf, which is not a finite number"}},
    {"SeveralVariables", expression("a+b*c"), {": the expression has 3 variables, a, b, c; a curve has one"}},
    {"NoNameOfTheResult",
     overAResultWithoutName(),
     {": the curve runs over a motion result, whose name is missing"}},
};

class BadDefinitions : public testing::TestWithParam<BadDefinition> {};

TEST_P(BadDefinitions, AreRefusedWithPlaceAndReason)
{
    EXPECT_EQ(problemsOf(GetParam().definition), GetParam().problems);
}

INSTANTIATE_TEST_SUITE_P(Curve, BadDefinitions, testing::ValuesIn(kBadDefinitions),
                         [](const auto& tested) { return tested.param.name; });

// The messages of the parser are tested with the parser; this tests the place and the form.
TEST(BadTexts, OfAnExpressionNameTheCharacter)
{
    EXPECT_THAT(problemsOf(expression("2*+x)")), ElementsAre(HasSubstr("character 5: ")));
    EXPECT_THAT(problemsOf(expression("sin(x")), ElementsAre(HasSubstr("character 6: ")));
    EXPECT_THAT(problemsOf(expression("x $ 2")), ElementsAre(HasSubstr("character 3: ")));
    // Characters count, not bytes.
    EXPECT_THAT(problemsOf(expression("{\u00d6l}+)")), ElementsAre(HasSubstr("character 6: ")));
}

TEST(BadTexts, OfALawNameTheRow)
{
    EXPECT_THAT(problemsOf(lawed(law("y = x+; return y;"))),
                ElementsAre(HasSubstr("row 1: the law \"Own\" does not compile: ")));
    EXPECT_THAT(problemsOf(lawed(law("y = x*q; return y;"))),
                ElementsAre(HasSubstr("row 1: the law \"Own\" does not compile: ")));
    EXPECT_THAT(problemsOf(lawed("SegmentType(\"Own\"")), ElementsAre(HasSubstr("row 1: ")));
    EXPECT_THAT(problemsOf(lawed("")), ElementsAre(HasSubstr("row 1: ")));
}

TEST(BadNames, OfALawComeWithTheNearest)
{
    EXPECT_THAT(problemsOf(rows({{1.0, 1.0, "3-4-5-Polynomal"}})),
                ElementsAre(testing::AllOf(HasSubstr("row 1: there is no law \"3-4-5-Polynomal\""),
                                           HasSubstr("3-4-5-Polynomial"))));
}

TEST(BadNames, OfALawMayBeMissingOnlyInARowOfNoLength)
{
    EXPECT_THAT(problemsOf(rows({{1.0, 1.0, ""}})), ElementsAre(HasSubstr("row 1: no law is named")));
    EXPECT_THAT(problemsOf(rows({{1.0, 1.0, "Cubic"}, {1.0, 5.0, ""}, {2.0, 0.0, "Cubic"}})),
                testing::IsEmpty());
}

TEST(BadDefinition, OfManyProblemsReportsAll)
{
    CurveDefinition definition =
        rows({{2.0, 1.0, "Nothing Like It"}, {1.0, kNaN, "Cubic"}, {3.0, 1.0, "Linear"}});
    definition.over = mf::Over::MotionResult;
    EXPECT_THAT(problemsOf(definition),
                ElementsAre(HasSubstr(": the curve runs over"), HasSubstr("row 1: there is no law"),
                            HasSubstr("row 2: the value is nan"), HasSubstr("row 2: the row ends at 1")));
}

TEST(BadDefinition, HasOneLineForEachProblemInWhat)
{
    try {
        const Curve curve(rows({}, kNaN));
        FAIL() << "a curve without rows";
    } catch (const CurveError& error) {
        EXPECT_STREQ(error.what(),
                     "row 0: the start x is nan, which is not a finite number\nthe curve has no rows");
    }
}

/// `count` rows of a law whose formula has 131,071 characters and the value x.
CurveDefinition rowsOfALongLaw(int count)
{
    std::string formula = "x";
    for (int i = 0; i < 65'535; ++i)
        formula += "+0";
    CurveDefinition definition = lawed(law("y = " + formula + "; return y;"));
    auto& shape = std::get<CurveDefinition::Segments>(definition.shape);
    shape.rows.clear();
    for (int i = 1; i <= count; ++i)
        shape.rows.push_back({static_cast<double>(i), static_cast<double>(i), "Own"});
    return definition;
}

// 4 * 2^20 characters and 1,024 for each row allow 32 and a quarter of those formulas.
TEST(CurveProblems, FewRowsMayHaveALongLaw)
{
    const Curve curve(rowsOfALongLaw(32));
    EXPECT_EQ(curve(31.5), 31.5);
}

TEST(CurveProblems, ManyRowsOfALongLawAreTooLongTogether)
{
    EXPECT_THAT(problemsOf(rowsOfALongLaw(33)),
                ElementsAre("row 33: the formulas of the rows up to this one are too long together: 4228096 "
                            "characters are allowed for 33 rows"));
}

// The rows after it are not checked: 20,000 of them would take minutes.
TEST(CurveProblems, TheWorkEndsAtTheRowThatIsTooLong)
{
    EXPECT_THAT(problemsOf(rowsOfALongLaw(3000)), ElementsAre(HasSubstr("row 56: the formulas")));
}

// A formula beyond the engine's limit counts as much as the longest formula within it.
TEST(CurveProblems, FormulasThatOutgrowTheEngineCountToo)
{
    std::string sum = "x1";
    for (int i = 0; i < 20'000; ++i)
        sum += "+x1";
    CurveDefinition definition = lawed(law("y = x+" + sum + "; return y;"));
    auto& shape = std::get<CurveDefinition::Segments>(definition.shape);
    shape.startX = 1e-300;
    shape.rows.clear();
    for (int i = 2; i <= 1000; ++i)
        shape.rows.push_back({i * 1e-300, 1.0, "Own"});
    const std::vector<std::string> problems = problemsOf(definition);
    ASSERT_EQ(problems.size(), 5u);
    EXPECT_EQ(problems[3], "row 4: the formula of \"Own\" is longer than the engine takes");
    EXPECT_THAT(problems[4], HasSubstr("row 5: the formulas of the rows up to this one are too long"));
}

TEST(CurveProblems, TheNameOfALawIsQuotedOnOneLine)
{
    CurveDefinition definition = lawed(law("y = log(-1)+sin(; return y;"));
    auto& shape = std::get<CurveDefinition::Segments>(definition.shape);
    const std::string name = "Own\n" + std::string(100, 'n');
    shape.laws.front().name = name;
    shape.rows.front().profile = name;
    EXPECT_THAT(problemsOf(definition), ElementsAre(HasSubstr("\"Own " + std::string(56, 'n') + "...\"")));
}

}  // namespace
