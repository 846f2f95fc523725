// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/definitionProblems.h"

#include <gtest/gtest.h>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using mf::profiles::DefinitionProblem;
using mf::profiles::definitionProblems;

#define GOOD(name) "SegmentType(\"" name "\",x,x1,y1,x2,y2)\n  y = x;\n  return y;\nendSegmentType\n"

struct ProblemCase {
    const char* name;
    const char* text;
    const char* problems;  // one per line: "line profile: reason", or "line! ..." for a warning
};

const ProblemCase kProblemCases[] = {
    {"None", GOOD("A") GOOD("B"), ""},
    {"Empty", "", "1 : there is no endSegmentType, so the file holds no definition\n"},
    {"OnlyComments", "' a\n' b\n", "1 : there is no endSegmentType, so the file holds no definition\n"},
    {"HeaderWithoutEnd", GOOD("A") "' next\nSegmentType(\"B\",x\n endSegmentType",
     "6 : the header has no closing parenthesis\n"},
    {"OneArgumentLess", "\n\nSegmentType(\"A\",x,x1,y1,x2)\ny=x;\nreturn y;\nendSegmentType",
     "3 : the header does not consist of a name and five arguments\n"},
    {"OtherKeyword", "\nSegmentTipe(\"A\",x,x1,y1,x2,y2)\ny=x;\nreturn y;\nendSegmentType",
     "2 : the definition does not begin with its keyword\n"},
    {"NoBody", "endSegmentType\nSegmentType(\"A\",x,x1,y1,x2,y2)\nendSegmentType",
     "1 : the header has no closing parenthesis\n3 A: the definition has no statements\n"},
    {"NothingAssigned", "SegmentType(\"A\",x,x1,y1,x2,y2)\nreturn x;\nendSegmentType",
     "2 A: nothing is assigned before the return statement\n"},
    {"NoSign", "SegmentType(\"A\",x,x1,y1,x2,y2)\n\na=1;\nb;\nreturn y;\nendSegmentType",
     "4 A: a statement is not made of a variable, = and an expression\n"},
    {"TwoSigns", "SegmentType(\"A\",x,x1,y1,x2,y2)\na=1;\nb=a=2;\nreturn y;\nendSegmentType",
     "3 A: a statement is not made of a variable, = and an expression\n"},
    {"SemicolonMissing", "SegmentType(\"A\",x,x1,y1,x2,y2)\na=1;\nb=2\nc=3;\nreturn c;\nendSegmentType",
     "3 A: a statement is not made of a variable, = and an expression\n"},
    {"EmptyExpression", "SegmentType(\"A\",x,x1,y1,x2,y2)\na=1;\nb=;\nreturn b;\nendSegmentType",
     "3 A: a statement is not made of a variable, = and an expression\n"},
    {"NoVariable", "SegmentType(\"A\",x,x1,y1,x2,y2)\na=1;\n=2;\nreturn a;\nendSegmentType",
     "3 A: a statement is not made of a variable, = and an expression\n"},
    {"SignInTheReturn", "SegmentType(\"A\",x,x1,y1,x2,y2)\na=1;\nreturn a=1;\nendSegmentType",
     "3 A: a statement is not made of a variable, = and an expression\n"},
    {"NoReturn", "SegmentType(\"A\",x,x1,y1,x2,y2)\na=1;\n\n a;\nendSegmentType",
     "4 A: the last statement is not a return statement\n"},
    {"ReturnNamesNothing", "SegmentType(\"A\",x,x1,y1,x2,y2)\na=1;\nreturn;\nendSegmentType",
     "3 A: the return statement names nothing\n"},
    {"EachBadDefinitionIsNamed",
     GOOD("A") "SegmentType(\"B\",x,x1,y1,x2,y2)\na=1;\na;\nendSegmentType\n" GOOD(
         "C") "SegmentType(\"D\",x,x1,y1,x2,y2)\nreturn;\nendSegmentType",
     "7 B: the last statement is not a return statement\n"
     "14 D: nothing is assigned before the return statement\n"},
    {"LinesCountAfterOlderKeywords",
     "Profile(\"A\",x,x1,y1,x2,y2)y=x;return y;endProfile Profile(\"B\",x,x1,y1,x2,y2)y=x;return "
     "y;endProfile\n"
     "Profile(\"C\",x,x1,y1,x2,y2)\ny=x;\ny;\nendProfile\n",
     "4 C: the last statement is not a return statement\n"},
    {"TextAfterTheLast", GOOD("A") "' comment\n\nSegmentType(\"B\",x\n",
     "7! : what follows the last endSegmentType is not read\n"},
    {"QuoteLeftOpen", GOOD("A") "SegmentType(\"B,x,x1,y1,x2,y2)\ny=x;\nreturn y;\nendSegmentType\n",
     "5! : a double quote is not closed\n5! : what follows the last endSegmentType is not read\n"},
    {"QuotesInComments", "' \"\n" GOOD("A"), ""},
};

std::string shown(const std::vector<DefinitionProblem>& problems)
{
    std::string text;
    for (const DefinitionProblem& problem : problems)
        text += std::to_string(problem.line) + (problem.refused ? " " : "! ") + problem.profile + ": " +
                problem.reason + "\n";
    return text;
}

class DefinitionProblems : public testing::TestWithParam<ProblemCase> {};

TEST_P(DefinitionProblems, NameLineAndReason)
{
    EXPECT_EQ(shown(definitionProblems(GetParam().text)), GetParam().problems);
}

TEST_P(DefinitionProblems, AgreeWithTheReader)
{
    bool refused = false;
    for (const DefinitionProblem& problem : definitionProblems(GetParam().text))
        refused |= problem.refused;

    const mf::test::TemporaryFolder folder;
    folder.write("a.txt", GetParam().text);
    std::vector<mfProfile_c*> records;
    EXPECT_EQ(mfSegmentTypeParser_c().readProfiles(folder / "a.txt", records), !refused);
    for (mfProfile_c* record : records)
        delete record;
    // Closes a quote that the text left open, for the next test.
    if (mfSegmentTypeParser_c().lowerOutsideQuotes('A') == 'A')
        mfSegmentTypeParser_c().lowerOutsideQuotes('"');
}

INSTANTIATE_TEST_SUITE_P(Profiles, DefinitionProblems, testing::ValuesIn(kProblemCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(DefinitionProblems, ReportsADefinitionThatGrowsTooLarge)
{
    std::string text = "SegmentType(\"A\",x,x1,y1,x2,y2)\nv100=x;\n";
    for (int i = 1; i <= 60; ++i)
        text += "v" + std::to_string(100 + i) + "=v" + std::to_string(99 + i) + "+v" +
                std::to_string(99 + i) + ";\n";
    EXPECT_EQ(shown(definitionProblems(text + "return v160;\nendSegmentType")),
              "2 A: the expression outgrows the largest text that can be compiled\n");
}

}  // namespace
