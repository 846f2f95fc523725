// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfSegmentTypeParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

#include "mfcurves/profiles/mfProfile.h"
#include "tests/profiles/mfSegmentTypeParserTest.h"

// The steps of a reader, one by one.

namespace profile_test {
namespace {

using testing::ElementsAre;

// It has no state: readers are interchangeable.
static_assert(std::is_empty_v<mfSegmentTypeParser_c>);

// ---------------------------------------------------------------- text steps

TEST(RemoveWhiteSpace, RemovesEveryKindBetweenQuotesToo)
{
    std::string text = " a\tb\nc\vd\fe\rf \" g \"  ";
    mfSegmentTypeParser_c().removeWhiteSpace(text);
    EXPECT_EQ(text, "abcdef\"g\"");
}

TEST(ReadNormalText, AppendsWithoutSeparators)
{
    std::istringstream stream("A b\n'dropped\n ' dropped too\nC'kept\n\nd");
    std::string out = "old";
    EXPECT_TRUE(mfSegmentTypeParser_c().readNormalText(stream, out));
    EXPECT_EQ(out, "oldabc'keptd");
}

TEST(ReadNormalText, StreamThatCannotBeReadReturnsFalse)
{
    std::istream stream(nullptr);
    std::string out = "old";
    EXPECT_FALSE(mfSegmentTypeParser_c().readNormalText(stream, out));
    EXPECT_EQ(out, "old");
}

struct ReplaceCase {
    const char* name;
    const char* text;
    const char* pattern;
    const char* replacement;
    const char* result;
};

const ReplaceCase kReplaceCases[] = {
    {"EveryOccurrence", "xbxbx", "xb", "y", "yyx"},
    {"NoneThere", "abc", "x", "y", "abc"},
    {"WhatWasPutInIsNotScanned", "aa", "a", "aa", "aaaa"},
    {"NoMatchAcrossAReplacement", "aabb", "ab", "", "ab"},
    {"OverlapsGoLeftToRight", "aaa", "aa", "b", "ba"},
    {"LongerWordsAreHit", "y+y1+my", "y", "(z)", "(z)+(z)1+m(z)"},
    {"EmptyPatternIsNowhere", "abc", "", "x", "abc"},
    {"EmptyText", "", "a", "b", ""},
    {"WholeText", "ab", "ab", "", ""},
};

class ReplaceAll : public testing::TestWithParam<ReplaceCase> {};

TEST_P(ReplaceAll, ReplacesPlainText)
{
    const ReplaceCase& c = GetParam();
    std::string text = c.text;
    EXPECT_TRUE(mfSegmentTypeParser_c().replaceAll(text, c.pattern, c.replacement));
    EXPECT_EQ(text, c.result);
}

INSTANTIATE_TEST_SUITE_P(Profiles, ReplaceAll, testing::ValuesIn(kReplaceCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(UpgradeKeywords, RewritesLoweredKeywordsInNamesToo)
{
    std::string text = "profile(\"myprofile(endprofile\",Profile(endProfile;endprofile";
    EXPECT_TRUE(mfSegmentTypeParser_c().upgradeKeywords(text));
    EXPECT_EQ(text, "segmenttype(\"mysegmenttype(endsegmenttype\",Profile(endProfile;endsegmenttype");
}

struct SplitCase {
    const char* name;
    const char* text;
    const char* delimiters;
    bool keep;
    Strings pieces;
};

const char* const kOperators = "()+-*/^%";

// With one delimiter "," and letters as text, the two rules at the end of a text
// show in all combinations.
const SplitCase kSplitCases[] = {
    {"EmptyText", "", ",", true, {}},
    {"PieceAfterTheLastDelimiterLosesACharacter", "ab,cd", ",", false, {"ab", "c"}},
    {"OneCharacterAfterTheLastDelimiterLeavesAnEmptyPiece", "ab,c", ",", false, {"ab", ""}},
    {"DelimiterAtTheEndProtectsThePiece", "ab,cd,", ",", false, {"ab", "cd"}},
    {"NoDelimiter", "abc", ",", false, {"ab"}},
    {"NoDelimiterKept", "abc", ",", true, {"ab"}},
    {"OneCharacter", "a", ",", false, {""}},
    {"OnlyDelimiters", ",,", ",", false, {}},
    {"OnlyDelimitersKeptLessTheLast", ",,,", ",", true, {",", ","}},
    {"OneDelimiterKept", ",", ",", true, {}},
    {"RunsCountAsOne", ",,a,,,b,,", ",", false, {"a", "b"}},
    {"RunsAreKept", ",,a,,,b,,", ",", true, {",", ",", "a", ",", ",", ",", "b", ","}},
    {"LastDelimiterIsNotKept", "a,", ",", true, {"a"}},
    {"DelimiterInFrontIsKept", ",a,", ",", true, {",", "a"}},
    {"KeptBeforeAShortenedPiece", "a,bc", ",", true, {"a", ",", "b"}},
    {"Operators", "(a+b*(c^2))", kOperators, true, {"(", "a", "+", "b", "*", "(", "c", "^", "2", ")"}},
    {"StatementWithoutExpression", "a=;", "=;", false, {"a"}},
    {"NoDelimiters", "abc", "", true, {"ab"}},
};

class SplitTokens : public testing::TestWithParam<SplitCase> {};

TEST_P(SplitTokens, FollowsItsTwoBoundaryRules)
{
    const SplitCase& c = GetParam();
    Strings pieces = {"old"};
    mfSegmentTypeParser_c().splitTokens(c.text, c.delimiters, c.keep, pieces);
    EXPECT_EQ(pieces, c.pieces);
}

INSTANTIATE_TEST_SUITE_P(Profiles, SplitTokens, testing::ValuesIn(kSplitCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(BaseProfileName, RemovesTheBracketedTailAndBlanks)
{
    mfSegmentTypeParser_c parser;
    const std::pair<const char*, const char*> cases[] = {
        {"Linear (User)", "Linear"},
        {"Linear", "Linear"},
        {"Linear (User)<1>", "Linear"},
        {"  A  B  ", "A  B"},
        {"(User)", ""},
        {"   ", "   "},
        {"   (User)", "   "},
        {"", ""},
        {"A (B) (C)", "A"},
        {"\tA ", "\tA"},
        {"A(Default)", "A"},
    };
    for (const auto& [name, base] : cases)
        EXPECT_EQ(parser.baseProfileName(name), base) << '"' << name << '"';
}

// ---------------------------------------------------------------- steps of a definition

TEST(ParseDefinition, RewritesOlderKeywordsInPlaceOnRequest)
{
    std::string text = "profile(\"A\",x,x1,y1,x2,y2)y=x;returny;endprofile";
    mfProfile_c record;
    EXPECT_TRUE(mfSegmentTypeParser_c().parseDefinition(text, &record, true));
    EXPECT_EQ(text, "segmenttype(\"A\",x,x1,y1,x2,y2)y=x;returny;endsegmenttype");
    EXPECT_EQ(record.definitionText, text);
    EXPECT_EQ(record.resultExpression, "(x)");
}

TEST(ParseDefinition, RefusesOlderKeywordsOtherwise)
{
    const std::string older = "profile(\"A\",x,x1,y1,x2,y2)y=x;returny;endprofile";
    std::string text = older;
    mfProfile_c record;
    EXPECT_FALSE(mfSegmentTypeParser_c().parseDefinition(text, &record, false));
    EXPECT_EQ(text, older);
    EXPECT_EQ(record.definitionText, older);
    EXPECT_EQ(record.name, "");
}

TEST(ParseDefinition, RefusesCapitalsInAKeyword)
{
    for (const char* definition : {"Profile(\"A\",x,x1,y1,x2,y2)y=x;returny;endProfile",
                                   "SegmentType(\"A\",x,x1,y1,x2,y2)y=x;returny;endsegmenttype"}) {
        std::string text = definition;
        mfProfile_c record;
        EXPECT_FALSE(mfSegmentTypeParser_c().parseDefinition(text, &record, true)) << definition;
    }
}

TEST(ParseDefinition, TakesADefinitionWithoutItsClosingKeyword)
{
    std::string text = "segmenttype(\"A\",x,x1,y1,x2,y2)y=x;returny;";
    mfProfile_c record;
    EXPECT_TRUE(mfSegmentTypeParser_c().parseDefinition(text, &record, true));
    EXPECT_EQ(record.resultExpression, "(x)");
}

TEST(ParseDefinition, KeepsWhatWasStoredBeforeAFailure)
{
    std::string text = "segmenttype(\"A\",x,x1,y1,x2,y2)y=x;";
    mfProfile_c record;
    EXPECT_FALSE(mfSegmentTypeParser_c().parseDefinition(text, &record, false));
    EXPECT_EQ(record.definitionText, text);
    EXPECT_EQ(record.name, "A");
    EXPECT_EQ(record.y2, "y2");
    EXPECT_EQ(record.resultExpression, "");
}

TEST(ParseDefinition, NullRecordReturnsFalse)
{
    std::string text = kLinear;
    EXPECT_FALSE(mfSegmentTypeParser_c().parseDefinition(text, nullptr, true));
    EXPECT_FALSE(mfSegmentTypeParser_c().parseHeader("segmenttype(\"A\",x,x1,y1,x2,y2)", nullptr));
    EXPECT_FALSE(mfSegmentTypeParser_c().parseBody("y=x;returny;", nullptr));
}

TEST(SplitDefinition, CutsAfterTheFirstParenthesis)
{
    std::string header, body;
    EXPECT_TRUE(
        mfSegmentTypeParser_c().splitDefinition("a(b)c)dendsegmenttypeeendsegmenttype", header, body));
    EXPECT_EQ(header, "a(b)");
    EXPECT_EQ(body, "c)d");
    EXPECT_TRUE(mfSegmentTypeParser_c().splitDefinition("a)b", header, body));
    EXPECT_EQ(body, "b");
    EXPECT_TRUE(mfSegmentTypeParser_c().splitDefinition("a)endsegmenttype", header, body));
    EXPECT_EQ(body, "");
    EXPECT_FALSE(mfSegmentTypeParser_c().splitDefinition("a)", header, body));
    EXPECT_FALSE(mfSegmentTypeParser_c().splitDefinition("abc", header, body));
    EXPECT_FALSE(mfSegmentTypeParser_c().splitDefinition("", header, body));
}

TEST(ParseHeader, StoresTheNameAndTheArguments)
{
    mfProfile_c record;
    EXPECT_TRUE(mfSegmentTypeParser_c().parseHeader("segmenttype(\"A b\",t,ta,ya,tb,yb)", &record));
    EXPECT_EQ(record.name, "A b");
    EXPECT_EQ(record.independentVariable, "t");
    EXPECT_EQ(record.x1, "ta");
    EXPECT_EQ(record.y1, "ya");
    EXPECT_EQ(record.x2, "tb");
    EXPECT_EQ(record.y2, "yb");
}

TEST(ParseHeader, FailureLeavesTheRecordUnchanged)
{
    mfProfile_c record;
    record.name = "old";
    for (const char* header : {"", "segmenttype(\"A\",x,x1,y1,x2)", "SegmentType(\"A\",x,x1,y1,x2,y2)",
                               "xsegmenttype(\"A\",x,x1,y1,x2,y2)", "segmenttype(\"\",x,x1,y1,x2,y2)"})
        EXPECT_FALSE(mfSegmentTypeParser_c().parseHeader(header, &record)) << header;
    EXPECT_EQ(record.name, "old");
    EXPECT_EQ(record.x1, "");
}

TEST(SplitStatements, SeparatesVariablesFromValues)
{
    Strings variables, values;
    EXPECT_TRUE(mfSegmentTypeParser_c().splitStatements("a=1;b=a+2;returnb;", variables, values));
    EXPECT_THAT(variables, ElementsAre("a", "b", "returnb"));
    EXPECT_THAT(values, ElementsAre("1", "a+2"));
}

struct ExpandCase {
    const char* name;
    const char* body;
    const char* result;  // null: refused
};

const ExpandCase kExpandCases[] = {
    {"OneAssignment", "y=x+1;returny;", "(x+1)"},
    {"ReturnIsAnExpression", "y=x;returny*2;", "(x)*2"},
    {"ReturnOfSeveralVariables", "a=x;b=a^2;returna+b;", "(x)+((x)^2)"},
    {"ReturnWithoutVariable", "y=x;returnz;", "z"},
    {"OrderIsTheWholeMeaning", "b=a+1;a=x;returnb;", "((x)+1)"},
    {"AssignedTwiceTheFirstIsUsed", "y=1;y=2;returny;", "(1)"},
    // Replacing y by its value changes the right side of the second assignment, but not
    // the variable on its left side.
    {"SecondAssignmentUsesTheFirst", "y=1;z=y;y=z+y;returny+z;", "(1)+((1))"},
    {"SelfReferenceStays", "y=y+1;returny;", "(y+1)"},
    {"ShortNameHitsTheLongerOne", "y=x;z=y+y1;returnz;", "((x)+(x)1)"},
    {"LongerNameFirstKeepsClear", "y1a=x;y=y1a+1;returny;", "((x)+1)"},
    {"NameInsideTheWordReturn", "t=x;returnt;", "re(x)urn(x)"},
    {"NameReturnEatsTheKeyword", "return=x;returnreturn;", "(x)(x)"},
    {"EveryReturnGoes", "y=returnx;returny;", "(x)"},
    {"LostSemicolonTakesALetter", "val=x;returnvals", "(x)"},
    {"LostSemicolonLeavesAnUnknownName", "val=x;returnval", "va"},
    {"LostSemicolonLeavesNothing", "y=x;returny", nullptr},
    {"MissingSemicolonInside", "a=1b=2;returnb;", nullptr},
    {"NoReturn", "a=1;b;", nullptr},
    {"ReturnInsideTheLastPiece", "a=x;myreturna;", "my(x)"},
    {"Empty", "", nullptr},
};

class ExpandStatements : public testing::TestWithParam<ExpandCase> {};

TEST_P(ExpandStatements, ReplacesNamesByValuesAsPlainText)
{
    const ExpandCase& c = GetParam();
    mfProfile_c record;
    EXPECT_EQ(mfSegmentTypeParser_c().parseBody(c.body, &record), c.result != nullptr);
    EXPECT_EQ(record.resultExpression, c.result ? c.result : "");
}

INSTANTIATE_TEST_SUITE_P(Profiles, ExpandStatements, testing::ValuesIn(kExpandCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(ExpandStatements, RefusesListsThatDoNotFit)
{
    std::string result;
    EXPECT_FALSE(mfSegmentTypeParser_c().expandStatements({"a"}, {"1"}, result));
    EXPECT_FALSE(mfSegmentTypeParser_c().expandStatements({"a", "b", "returnb"}, {"1"}, result));
    EXPECT_FALSE(mfSegmentTypeParser_c().expandStatements({}, {}, result));
    EXPECT_FALSE(mfSegmentTypeParser_c().expandStatements({"returny"}, {}, result));
}

TEST(ExpandStatements, EmptyNameChangesNothing)
{
    std::string result;
    EXPECT_TRUE(mfSegmentTypeParser_c().expandStatements({"", "returny"}, {"1"}, result));
    EXPECT_EQ(result, "y");
}

}  // namespace
}  // namespace profile_test
