// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "mfcurves/profiles/builtInProfiles.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "tests/profiles/mfSegmentTypeParserTest.h"
#include "tests/support/TemporaryFolder.h"

// Reading whole texts: the built-in table, files, and quotes that stay open.

namespace profile_test {
namespace {

using mf::test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

// The result of readProfiles, owned.
struct ReadFile {
    bool answer = false;
    std::vector<std::unique_ptr<mfProfile_c>> records;
};

ReadFile readFile(const std::string& fileName)
{
    std::vector<mfProfile_c*> records;
    ReadFile result;
    result.answer = mfSegmentTypeParser_c().readProfiles(fileName, records);
    for (mfProfile_c* record : records)
        result.records.emplace_back(record);
    return result;
}

ReadFile readText(const std::string& text)
{
    const TemporaryFolder folder;
    folder.write("SegmentTypes.txt", text);
    return readFile(folder / "SegmentTypes.txt");
}

std::string join(const Strings& pieces)
{
    std::string text;
    for (const std::string& piece : pieces)
        text += piece;
    return text;
}

struct BuiltInCase {
    const char* name;
    const char* result;
};

const BuiltInCase kBuiltInCases[] = {
    {"Cubic", "(y1+(y2-y1)*(3*((x-x1)/(x2-x1))^2-2*((x-x1)/(x2-x1))^3))"},
    {"Quarter-Sine", "(y1+(y2-y1)*(sin(pi*((x-x1)/(x2-x1))/2)))"},
    {"Quarter-Cosine", "(y1+(y2-y1)*(1-cos(pi*((x-x1)/(x2-x1))/2)))"},
    {"Half-Cosine", "((y2+y1)/2-((y2-y1)/2)*(cos(pi*((x-x1)/(x2-x1)))))"},
    {"3-4-5-Polynomial", "(y1+(y2-y1)*(10*((x-x1)/(x2-x1))^3-15*((x-x1)/(x2-x1))^4+6*((x-x1)/(x2-x1))^5))"},
    {"4-5-6-7-Polynomial",
     "(y1+(y2-y1)*(35*((x-x1)/(x2-x1))^4-84*((x-x1)/(x2-x1))^5+70*((x-x1)/(x2-x1))^6-20*((x-x1)/"
     "(x2-x1))^7))"},
    {"5-6-7-8-9-Polynomial",
     "(y1+(y2-y1)*(126*((x-x1)/(x2-x1))^5-420*((x-x1)/(x2-x1))^6+540*((x-x1)/(x2-x1))^7"
     "-315*((x-x1)/(x2-x1))^8+70*((x-x1)/(x2-x1))^9))"},
    {"Cycloidal", "(y1+(y2-y1)*(1-cos(pi*((x-x1)/(x2-x1))/2)))"},
    {"Quadratic", "(y1+(y2-y1)*(((x-x1)/(x2-x1))^2))"},
    {"Linear", "(y1+(((y2-y1)/(x2-x1))*(x-x1)))"},
};

TEST(ReadProfiles, EmptyNameReadsTheBuiltInTableEachTimeAlike)
{
    for (int use = 1; use <= 2; ++use) {
        const ReadFile file = readFile("");
        ASSERT_TRUE(file.answer);
        ASSERT_EQ(file.records.size(), std::size(kBuiltInCases));
        for (std::size_t i = 0; i < file.records.size(); ++i) {
            const mfProfile_c& record = *file.records[i];
            EXPECT_EQ(record.name, kBuiltInCases[i].name);
            EXPECT_EQ(record.independentVariable, "x");
            EXPECT_EQ(record.x1, "x1");
            EXPECT_EQ(record.y1, "y1");
            EXPECT_EQ(record.x2, "x2");
            EXPECT_EQ(record.y2, "y2");
            EXPECT_EQ(record.resultExpression, kBuiltInCases[i].result);
        }
        EXPECT_EQ(file.records.back()->definitionText, kLinear);
    }
}

TEST(ReadProfiles, TokensOfLinearLackTheLastBracket)
{
    const ReadFile file = readFile("");
    const mfProfile_c& linear = *file.records.back();
    EXPECT_EQ(linear.resultTokens.size(), 24u);
    EXPECT_EQ(join(linear.resultTokens) + ")", linear.resultExpression);
}

TEST(ReadProfiles, AppendsToTheList)
{
    mfProfile_c mine;
    std::vector<mfProfile_c*> records = {&mine};
    ASSERT_TRUE(mfSegmentTypeParser_c().readProfiles("", records));
    ASSERT_EQ(records.size(), 11u);
    EXPECT_EQ(records.front(), &mine);
    for (std::size_t i = 1; i < records.size(); ++i)
        delete records[i];
}

// ---------------------------------------------------------------- files

const char* const kOneLine =
    "SegmentType(\"Half Rise\",t,xa,ya,xb,yb) s=(t-xa)/(xb-xa); h=ya+(yb-ya)*s/2; return h; endSegmentType";

struct SameTextCase {
    const char* name;
    const char* text;
};

// Each reads as the one definition HalfRise.
const SameTextCase kSameTextCases[] = {
    {"OneLine", kOneLine},
    {"EachStatementOnItsLine",
     "SegmentType(\"Half Rise\",\n t, xa, ya,\r\n xb, yb)\n\ts = (t-xa)/(xb-xa);\n h = ya+(yb-ya)*s/2;\n"
     " return h;\nendSegmentType\n"},
    {"WordsBrokenOverLines",
     "Segment\nType(\"Half \nRise\",t,xa,ya,xb,yb)s=(t-xa)/(xb-x\na);h=ya+(yb-ya)*s/2;ret\nurn "
     "h;end\nSegment\nType"},
    {"AnyCaseOfKeywords",
     "SEGMENTTYPE(\"Half Rise\",T,XA,YA,XB,YB) S=(T-XA)/(XB-XA); H=YA+(YB-YA)*S/2; RETURN H; ENDSEGMENTTYPE"},
    {"OlderKeywordsInAnyCase",
     "pRofile(\"Half Rise\",t,xa,ya,xb,yb) s=(t-xa)/(xb-xa); h=ya+(yb-ya)*s/2; return h; ENDprofile"},
    {"CommentLinesBeforeInsideAndAfter",
     "' a \"comment with one quote\nSegmentType(\"Half Rise\",t,xa,ya,xb,yb)\n  ' indented; endSegmentType\n"
     "s=(t-xa)/(xb-xa);\n'\nh=ya+(yb-ya)*s/2;\nreturn h;\nendSegmentType\n' behind"},
    {"EmptyLines",
     "\n\n\nSegmentType(\"Half Rise\",t,xa,ya,xb,yb)\n\ns=(t-xa)/(xb-xa);h=ya+(yb-ya)*s/2;\n\n"
     "return h;endSegmentType\n\n"},
    {"RunsOfHeaderDelimitersCountAsOne",
     "SegmentType((\"Half Rise\",,t,xa,,ya,xb,(yb)s=(t-xa)/(xb-xa);h=ya+(yb-ya)*s/2;return "
     "h;endSegmentType"},
    {"TextAfterTheLastKeywordIsIgnored",
     "SegmentType(\"Half Rise\",t,xa,ya,xb,yb)s=(t-xa)/(xb-xa);h=ya+(yb-ya)*s/2;return h;endSegmentType"
     "SegmentType(\"Lost\",x"},
};

class SameDefinition : public testing::TestWithParam<SameTextCase> {};

TEST_P(SameDefinition, ReadsAlikeHoweverItIsWritten)
{
    const ReadFile file = readText(GetParam().text);
    ASSERT_TRUE(file.answer);
    ASSERT_EQ(file.records.size(), 1u);
    const mfProfile_c& record = *file.records[0];
    EXPECT_EQ(record.name, "HalfRise");  // blanks go, capitals between quotes stay
    EXPECT_EQ(record.independentVariable, "t");
    EXPECT_EQ(record.x1, "xa");
    EXPECT_EQ(record.y1, "ya");
    EXPECT_EQ(record.x2, "xb");
    EXPECT_EQ(record.y2, "yb");
    EXPECT_EQ(record.resultExpression, "(ya+(yb-ya)*((t-xa)/(xb-xa))/2)");
    EXPECT_TRUE(record.definitionText.starts_with("segmenttype("));
    EXPECT_TRUE(record.definitionText.ends_with("h=ya+(yb-ya)*s/2;returnh;endsegmenttype"));
}

INSTANTIATE_TEST_SUITE_P(Profiles, SameDefinition, testing::ValuesIn(kSameTextCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(ReadProfiles, SeveralDefinitionsMayShareALine)
{
    const ReadFile file = readText(std::string(kOneLine) + kOneLine + "\n" + kOneLine);
    EXPECT_TRUE(file.answer);
    EXPECT_EQ(file.records.size(), 3u);
}

struct RefusedCase {
    const char* name;
    const char* text;
    std::size_t kept;  // definitions before the bad one
};

const RefusedCase kRefusedCases[] = {
    {"EmptyFile", "", 0},
    {"OnlyComments", "' SegmentType(\"A\",x,x1,y1,x2,y2)y=1;return y;endSegmentType\n'\n", 0},
    {"NoClosingKeyword", "SegmentType(\"A\",x,x1,y1,x2,y2)y=1;return y;", 0},
    {"NoParenthesis", "SegmentType\"A\",x,x1,y1,x2,y2 y=1;return y;endSegmentType", 0},
    {"TextBeforeTheKeyword", "mySegmentType(\"A\",x,x1,y1,x2,y2)y=1;return y;endSegmentType", 0},
    {"FourArguments", "SegmentType(\"A\",x,x1,y1,x2)y=1;return y;endSegmentType", 0},
    {"SixArguments", "SegmentType(\"A\",x,x1,y1,x2,y2,y3)y=1;return y;endSegmentType", 0},
    {"CommaInTheName", "SegmentType(\"A,B\",x,x1,y1,x2,y2)y=1;return y;endSegmentType", 0},
    {"ParenthesisInTheName", "SegmentType(\"A(B)\",x,x1,y1,x2,y2)y=1;return y;endSegmentType", 0},
    {"OpeningParenthesisInTheName", "SegmentType(\"A(B\",x,x1,y1,x2,y2)y=1;return y;endSegmentType", 0},
    {"NoStatements", "SegmentType(\"A\",x,x1,y1,x2,y2)endSegmentType", 0},
    {"ReturnWithoutAssignment", "SegmentType(\"A\",x,x1,y1,x2,y2)return x;endSegmentType", 0},
    {"TwoSignsInAStatement", "SegmentType(\"A\",x,x1,y1,x2,y2)y=1=2;return y;endSegmentType", 0},
    {"EmptyExpression", "SegmentType(\"A\",x,x1,y1,x2,y2)y=;return y;endSegmentType", 0},
    {"NoReturn", "SegmentType(\"A\",x,x1,y1,x2,y2)y=1;y;endSegmentType", 0},
    {"ReturnNamesNothing", "SegmentType(\"A\",x,x1,y1,x2,y2)y=1;return;endSegmentType", 0},
    {"OneLetterLostWithTheLastSemicolon", "SegmentType(\"A\",x,x1,y1,x2,y2)y=1;return y endSegmentType", 0},
    {"BadOneAfterTwoGoodOnes",
     "SegmentType(\"A\",x,x1,y1,x2,y2)y=1;return y;endSegmentType\n"
     "SegmentType(\"B\",x,x1,y1,x2,y2)y=1;return y;endSegmentType\n"
     "SegmentType(\"C\",x,x1,y1,x2,y2)y=1;endSegmentType\n"
     "SegmentType(\"D\",x,x1,y1,x2,y2)y=1;return y;endSegmentType\n",
     2},
};

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, ReturnsFalseAndKeepsWhatWasReadBefore)
{
    const ReadFile file = readText(GetParam().text);
    EXPECT_FALSE(file.answer);
    EXPECT_EQ(file.records.size(), GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(Profiles, Refused, testing::ValuesIn(kRefusedCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(ReadProfiles, FileThatDoesNotOpenReturnsFalse)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(readFile(folder / "none.txt").answer);
}

TEST(ReadProfiles, FolderInThePlaceOfAFileReturnsFalse)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(readFile(folder.path()).answer);
}

TEST(ReadDefinitions, ReplacesTheListAndCutsAfterEachKeyword)
{
    const TemporaryFolder folder;
    Strings definitions = {"old"};
    folder.write("a.txt", "A b\nendSegmentType c endProfile\nd");
    EXPECT_TRUE(mfSegmentTypeParser_c().readDefinitions(folder / "a.txt", definitions));
    EXPECT_THAT(definitions, ElementsAre("abendsegmenttype", "cendsegmenttype"));

    EXPECT_FALSE(mfSegmentTypeParser_c().readDefinitions(folder / "none.txt", definitions));
    EXPECT_THAT(definitions, IsEmpty());
}

// ---------------------------------------------------------------- quotes

TEST(LowerOutsideQuotes, FlipsAtEachQuoteAndRunsOnAcrossCalls)
{
    mfSegmentTypeParser_c parser;
    std::string seen;
    for (const char c : std::string("A\"B\"C\"D"))
        seen += parser.lowerOutsideQuotes(c);
    EXPECT_EQ(seen, "a\"B\"c\"D");
    // Another reader, another text: still between quotes.
    EXPECT_EQ(mfSegmentTypeParser_c().lowerOutsideQuotes('E'), 'E');
    EXPECT_EQ(mfSegmentTypeParser_c().lowerOutsideQuotes('"'), '"');
    EXPECT_EQ(mfSegmentTypeParser_c().lowerOutsideQuotes('F'), 'f');
}

TEST(LowerOutsideQuotes, KeepsBytesBeyondAscii)
{
    mfSegmentTypeParser_c parser;
    for (int c = 128; c < 256; ++c)
        EXPECT_EQ(parser.lowerOutsideQuotes(static_cast<char>(c)), static_cast<char>(c));
}

TEST(UnbalancedQuote, LeavesTheNextTextUnloweredUpToItsQuote)
{
    EXPECT_FALSE(readText("\"").answer);
    // The keyword keeps its capitals, and the name is now outside the quotes.
    EXPECT_FALSE(readText("SegmentType(\"A\",x,x1,y1,x2,y2)y=1;return y;endSegmentType").answer);
    EXPECT_FALSE(readText("\"").answer);
    EXPECT_TRUE(readText("SegmentType(\"A\",x,x1,y1,x2,y2)y=1;return y;endSegmentType").answer);
}

TEST(UnbalancedQuote, LowersTheNamesOfLowerCaseDefinitions)
{
    EXPECT_FALSE(readText("\"").answer);
    const ReadFile file = readText("segmenttype(\"Rise\",x,x1,y1,x2,y2)y=1;return y;endsegmenttype");
    EXPECT_FALSE(readText("\"").answer);
    ASSERT_TRUE(file.answer);
    EXPECT_EQ(file.records[0]->name, "rise");
}

// The table is converted to lower case in place at each use, so an open quote affects it
// too: the names are then outside quotes and lose their capitals permanently.
TEST(UnbalancedQuote, LowersTheNamesOfTheBuiltInTableForGood)
{
    ASSERT_TRUE(readFile("").answer);
    const auto table = mf::profiles::builtInProfiles();

    EXPECT_EQ(mfSegmentTypeParser_c().lowerOutsideQuotes('"'), '"');
    const ReadFile between = readFile("");
    EXPECT_EQ(mfSegmentTypeParser_c().lowerOutsideQuotes('"'), '"');
    const ReadFile after = readFile("");
    mf::profiles::builtInProfiles() = table;

    for (const ReadFile* file : {&between, &after}) {
        ASSERT_TRUE(file->answer);
        ASSERT_EQ(file->records.size(), 10u);
        EXPECT_EQ(file->records[0]->name, "cubic");
        EXPECT_EQ(file->records[4]->name, "3-4-5-polynomial");
        EXPECT_EQ(file->records[9]->resultExpression, "(y1+(((y2-y1)/(x2-x1))*(x-x1)))");
    }
}

}  // namespace
}  // namespace profile_test
