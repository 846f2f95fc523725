// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfileFileParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace {

using mf::test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

// All lists of a reader.
struct Lists {
    Strings names, results, indepVars, x1, y1, x2, y2;
    std::vector<Strings> tokens;

    bool operator==(const Lists&) const = default;
};

Lists listsOf(mfProfileFileParser_c& parser)
{
    Lists lists;
    parser.getNames(lists.names);
    parser.getResults(lists.results);
    parser.getIndepVars(lists.indepVars);
    parser.getX1(lists.x1);
    parser.getY1(lists.y1);
    parser.getX2(lists.x2);
    parser.getY2(lists.y2);
    parser.getResultTokens(lists.tokens);
    return lists;
}

struct Read {
    bool answer;
    Lists lists;
};

Read readText(const std::string& text)
{
    mfProfileFileParser_c parser;
    const bool answer = parser.parseProfiles("", true, text);
    return {answer, listsOf(parser)};
}

Read readFileOf(const std::string& text)
{
    const TemporaryFolder folder;
    folder.write("profile.txt", text);
    mfProfileFileParser_c parser;
    const bool answer = parser.parseProfiles(folder / "profile.txt", false, "");
    return {answer, listsOf(parser)};
}

bool parallel(const Lists& lists, std::size_t count)
{
    for (const Strings* list :
         {&lists.names, &lists.results, &lists.indepVars, &lists.x1, &lists.y1, &lists.x2, &lists.y2})
        if (list->size() != count)
            return false;
    return lists.tokens.size() == count;
}

const char* const kDefault =
    "Profile(\"Linear\",x,x1,y1,x2,y2)slope=(y2-y1)/(x2-x1);dy=slope*(x-x1);val=y1+dy;returnval;endProfile";

TEST(ParseProfiles, ReadsTheDefaultText)
{
    ASSERT_EQ(std::string(kDefault).size(), 99u);
    const Read read = readText(kDefault);
    EXPECT_TRUE(read.answer);
    EXPECT_THAT(read.lists.names, ElementsAre("Linear"));
    EXPECT_THAT(read.lists.indepVars, ElementsAre("x"));
    EXPECT_THAT(read.lists.x1, ElementsAre("x1"));
    EXPECT_THAT(read.lists.y1, ElementsAre("y1"));
    EXPECT_THAT(read.lists.x2, ElementsAre("x2"));
    EXPECT_THAT(read.lists.y2, ElementsAre("y2"));
    // Without outer brackets: the result is the last value itself.
    EXPECT_THAT(read.lists.results, ElementsAre("y1+(((y2-y1)/(x2-x1))*(x-x1))"));
    ASSERT_EQ(read.lists.tokens.size(), 1u);
    EXPECT_THAT(read.lists.tokens[0],
                ElementsAre("y1", "+", "(", "(", "(", "y2", "-", "y1", ")", "/", "(", "x2", "-", "x1", ")",
                            ")", "*", "(", "x", "-", "x1", ")", ")"));
}

struct ResultCase {
    const char* name;
    const char* body;  // between header and closing keyword
    const char* result;
};

const ResultCase kResultCases[] = {
    {"LastValueWhateverIsReturned", "a=x;b=a+1;returna;", "(x)+1"},
    {"ReturnMayNameNothing", "a=x;return;", "x"},
    {"WholeTokensOnly", "y=x;z=y+y1+2*y;returnz;", "(x)+y1+2*(x)"},
    {"LaterNamesDoNotMatchInsideAReplacement", "a=b;b=2;c=a+b;returnc;", "(b)+(2)"},
    {"EarlierValuesAreExpandedAlready", "a=x;b=(a);c=b^2;returnc;", "(((x)))^2"},
    {"UnknownNamesStay", "a=foo(x);returna;", "foo(x)"},
    {"NameInsideTheWordReturn", "t=x;u=t;returnu;", "(x)"},
    {"EmptyValue", "a=;b=a;returnb;", "()"},
    {"EmptyVariable", "=1;b=2;returnb;", "2"},
    {"ReplacedTokenMayBeALaterName", "a=q;(q)=7;b=a;returnb;", "(7)"},
    {"NameThatYieldsItselfIsReplacedOnce", "c=a;(a)=a;b=c;returnb;", "(a)"},
    {"AssignedTwiceTheFirstIsUsed", "y=1;y=2;z=y;returnz;", "(1)"},
    {"SignInAnExpressionStartsAVariable", "a=1;b=2=3;returnb;", "2=3"},
};

class OlderResult : public testing::TestWithParam<ResultCase> {};

TEST_P(OlderResult, IsTheLastValueWithWholeTokensReplaced)
{
    const ResultCase& c = GetParam();
    const Read read = readText("Profile(\"P\",x,x1,y1,x2,y2)" + std::string(c.body) + "endProfile");
    EXPECT_TRUE(read.answer);
    EXPECT_THAT(read.lists.results, ElementsAre(c.result));
}

INSTANTIATE_TEST_SUITE_P(Profiles, OlderResult, testing::ValuesIn(kResultCases),
                         [](const auto& tested) { return tested.param.name; });

struct NameCase {
    const char* name;
    const char* written;  // between the opening keyword and the independent variable
    const char* read;
};

// The quotes are not checked: the name extends from the second character after the
// bracket to the second before the comma.
const NameCase kNameCases[] = {
    {"BetweenQuotes", "\"P\",", "P"},
    {"BetweenOtherCharacters", "xPy,", "P"},
    {"Empty", "\"\",", ""},
    {"AfterACommaInPlaceOfTheQuote", ",P\",", "P"},
    {"WithTheQuoteAfterAComma", ",\"P\",", "\"P"},
    {"WithBracketsAndBlanks", "\"P (a) \",", "P (a) "},
};

class OlderName : public testing::TestWithParam<NameCase> {};

TEST_P(OlderName, LiesBetweenTheCharactersAroundIt)
{
    const Read read =
        readText("Profile(" + std::string(GetParam().written) + "x,x1,y1,x2,y2)y=x;returny;endProfile");
    EXPECT_TRUE(read.answer);
    EXPECT_THAT(read.lists.names, ElementsAre(GetParam().read));
    EXPECT_THAT(read.lists.indepVars, ElementsAre("x"));
    EXPECT_THAT(read.lists.y2, ElementsAre("y2"));
}

INSTANTIATE_TEST_SUITE_P(Profiles, OlderName, testing::ValuesIn(kNameCases),
                         [](const auto& tested) { return tested.param.name; });

struct FailureCase {
    const char* name;
    const char* text;
    std::size_t kept;  // definitions read before the failure
};

#define GOOD "Profile(\"P\",x,x1,y1,x2,y2)y=x;returny;endProfile"

const FailureCase kFailureCases[] = {
    {"Empty", "", 0},
    {"OneCharacter", "P", 0},
    {"NoClosingKeyword", "Profile(\"P\",x,x1,y1,x2,y2)y=x;returny;", 0},
    {"KeywordAlone", "endProfile", 0},
    {"TextAfterTheLastKeyword", GOOD GOOD "x", 2},
    {"LineFeedAfterTheLastKeyword", GOOD "\n", 1},
    {"CutAfterTheFirst", GOOD "Profile(\"Q\",x", 1},
    {"LoweredOpeningKeyword", "profile(\"P\",x,x1,y1,x2,y2)y=x;returny;endProfile", 0},
    {"LoweredClosingKeyword", "Profile(\"P\",x,x1,y1,x2,y2)y=x;returny;endprofile", 0},
    {"CurrentDialect", "SegmentType(\"P\",x,x1,y1,x2,y2)y=x;returny;endSegmentType", 0},
    {"NoName", "Profile(,x,x1,y1,x2,y2)y=x;returny;endProfile", 0},
    {"NameOfOneQuote", "Profile(\",x,x1,y1,x2,y2)y=x;returny;endProfile", 0},
    {"ArgumentMissing", "Profile(\"P\",x,x1,y1,x2)y=x;returny;endProfile", 0},
    {"NoArguments", "Profile(\"P\")y=x;returny;endProfile", 0},
    {"OneArgument", "Profile(\"P\",x)y=x;returny;endProfile", 0},
    {"TwoArguments", "Profile(\"P\",x,x1)y=x;returny;endProfile", 0},
    {"HeaderWithoutEnd", "Profile(\"P\",x,x1,y1,x2,y2 y=x;returny;endProfile", 0},
    {"HeaderAlone", "Profile(\"P\",x,x1,y1,x2,y2)endProfile", 0},
    {"NoReturn", "Profile(\"P\",x,x1,y1,x2,y2)y=x;endProfile", 0},
    {"NoAssignment", "Profile(\"P\",x,x1,y1,x2,y2)returny;endProfile", 0},
    {"AssignmentAfterReturn", "Profile(\"P\",x,x1,y1,x2,y2)returny=1;endProfile", 0},
    {"BlankBeforeReturnIsAStatement", "Profile(\"P\",x,x1,y1,x2,y2)y=x; returny;endProfile", 0},
    {"NoSign", "Profile(\"P\",x,x1,y1,x2,y2)y;returny;endProfile", 0},
    {"NoSemicolon", "Profile(\"P\",x,x1,y1,x2,y2)y=x returny endProfile", 0},
    {"SecondFails", GOOD "Profile(\"Q\",x,x1,y1,x2,y2)y=x;endProfile" GOOD, 1},
    {"SecondFailsInItsHeader", GOOD "Profile(\"Q\",x,x1,y1endProfile" GOOD, 1},
};

class OlderFailure : public testing::TestWithParam<FailureCase> {};

TEST_P(OlderFailure, ReturnsFalseAndKeepsWhatWasReadBefore)
{
    const Read read = readText(GetParam().text);
    EXPECT_FALSE(read.answer);
    EXPECT_TRUE(parallel(read.lists, GetParam().kept));
}

INSTANTIATE_TEST_SUITE_P(Profiles, OlderFailure, testing::ValuesIn(kFailureCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(ParseProfiles, EveryPrefixOfAGoodTextKeepsItsDefinitions)
{
    const std::string text = std::string(kDefault) + GOOD + kDefault;
    const Lists whole = readText(text).lists;
    ASSERT_TRUE(parallel(whole, 3));
    const std::size_t first = std::string(kDefault).size();
    const std::size_t second = first + std::string(GOOD).size();
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const Read read = readText(text.substr(0, length));
        const std::size_t complete = (length >= first) + (length >= second) + (length == text.size());
        EXPECT_EQ(read.answer, length == first || length == second || length == text.size()) << length;
        ASSERT_TRUE(parallel(read.lists, complete)) << length;
        for (std::size_t i = 0; i < complete; ++i)
            EXPECT_EQ(read.lists.results[i], whole.results[i]) << length;
    }
}

TEST(ParseProfiles, EverySingleCharacterMayBeMissing)
{
    const std::string text = std::string(kDefault) + GOOD;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Lists lists = readText(std::string(text).erase(i, 1)).lists;
        EXPECT_TRUE(parallel(lists, lists.names.size())) << i;
    }
}

TEST(ParseProfiles, TextGivenDirectlyKeepsItsWhiteSpace)
{
    const Read read = readText("Profile(\"My P\", x,x1,y1,x2,y2) y = x;return y;endProfile");
    EXPECT_TRUE(read.answer);
    EXPECT_THAT(read.lists.names, ElementsAre("My P"));
    EXPECT_THAT(read.lists.indepVars, ElementsAre(" x"));
    EXPECT_THAT(read.lists.results, ElementsAre(" x"));
}

TEST(ParseProfiles, FileLosesItsWhiteSpaceAndKeepsItsCase)
{
    const Read read =
        readFileOf("Profile(\"My P\", T, X1, Y1, X2, Y2)\r\n\tY = PI * T;\n\v\f return Y;\nendProfile\n\n");
    EXPECT_TRUE(read.answer);
    EXPECT_THAT(read.lists.names, ElementsAre("MyP"));
    EXPECT_THAT(read.lists.indepVars, ElementsAre("T"));
    EXPECT_THAT(read.lists.results, ElementsAre("PI*T"));
}

TEST(ParseProfiles, CommentsAreTextInTheOlderDialect)
{
    const Read read = readFileOf("' rise\n" GOOD);
    EXPECT_TRUE(read.answer);  // text before the keyword is ignored
    EXPECT_TRUE(parallel(read.lists, 1));
    EXPECT_FALSE(readFileOf(GOOD "\n' end").answer);
}

TEST(ParseProfiles, FileOfSeveralDefinitions)
{
    const Read read = readFileOf(std::string(GOOD) + "\n" + kDefault + "\n" + GOOD);
    EXPECT_TRUE(read.answer);
    EXPECT_THAT(read.lists.names, ElementsAre("P", "Linear", "P"));
    EXPECT_TRUE(parallel(read.lists, 3));
}

TEST(ParseProfiles, FileThatDoesNotOpenReturnsFalse)
{
    const TemporaryFolder folder;
    mfProfileFileParser_c parser;
    EXPECT_FALSE(parser.parseProfiles(folder / "none.txt", false, kDefault));
    EXPECT_FALSE(parser.parseProfiles(folder.path(), false, kDefault));
    EXPECT_FALSE(parser.parseProfiles("", false, kDefault));
    EXPECT_EQ(listsOf(parser), Lists());
}

TEST(ParseProfiles, TheTextGivenWithAFileIsNotRead)
{
    const TemporaryFolder folder;
    folder.write("profile.txt", GOOD);
    mfProfileFileParser_c parser;
    EXPECT_TRUE(parser.parseProfiles(folder / "profile.txt", false, kDefault));
    EXPECT_THAT(listsOf(parser).names, ElementsAre("P"));
}

TEST(Getters, AppendToTheList)
{
    mfProfileFileParser_c parser;
    ASSERT_TRUE(parser.parseProfiles("", true, kDefault));
    Strings names = {"old"};
    parser.getNames(names);
    parser.getNames(names);
    EXPECT_THAT(names, ElementsAre("old", "Linear", "Linear"));
    std::vector<Strings> tokens = {{"old"}};
    parser.getResultTokens(tokens);
    ASSERT_EQ(tokens.size(), 2u);
    EXPECT_EQ(tokens[1].size(), 23u);
}

TEST(Tokenize, KeepsEveryCharacterAndAppendsOneList)
{
    mfProfileFileParser_c parser;
    std::vector<Strings> lists = {{"old"}};
    parser.tokenize(lists, "ab+(c.5^2)%d");
    parser.tokenize(lists, "");
    parser.tokenize(lists, "--");
    parser.tokenize(lists, "a,b=c");
    ASSERT_EQ(lists.size(), 5u);
    EXPECT_THAT(lists[1], ElementsAre("ab", "+", "(", "c.5", "^", "2", ")", "%", "d"));
    EXPECT_THAT(lists[2], IsEmpty());
    EXPECT_THAT(lists[3], ElementsAre("-", "-"));
    EXPECT_THAT(lists[4], ElementsAre("a,b=c"));
}

TEST(SubstituteTokens, ReplacedTokenStaysOneToken)
{
    mfProfileFileParser_c parser;
    const Strings variables = {"a", "b"};
    Strings values = {"x+1", "2*a"};
    std::vector<Strings> tokens = {{"x", "+", "1"}, {"2", "*", "a"}};
    EXPECT_TRUE(parser.substituteTokens(variables, values, tokens, 1));
    EXPECT_EQ(values[1], "2*(x+1)");
    EXPECT_THAT(tokens[1], ElementsAre("2", "*", "(x+1)"));
}

TEST(SubstituteTokens, StatementZeroAndUnusedNamesChangeNothing)
{
    mfProfileFileParser_c parser;
    const Strings variables = {"a", "b"};
    Strings values = {"a", "kept as it stands"};
    std::vector<Strings> tokens = {{"a"}, {"other"}};
    EXPECT_TRUE(parser.substituteTokens(variables, values, tokens, 0));
    EXPECT_TRUE(parser.substituteTokens(variables, values, tokens, 1));
    EXPECT_EQ(values, (Strings{"a", "kept as it stands"}));
    EXPECT_FALSE(parser.substituteTokens(variables, values, tokens, 2));
}

TEST(SubstituteTokens, StatementWithoutAValueOrTokensReturnsFalse)
{
    mfProfileFileParser_c parser;
    const Strings variables = {"a", "b"};
    Strings values = {"1", "a"};
    Strings oneValue = {"1"};
    std::vector<Strings> tokens = {{"1"}, {"a"}};
    std::vector<Strings> oneList = {{"1"}};
    EXPECT_FALSE(parser.substituteTokens(variables, oneValue, tokens, 1));
    EXPECT_FALSE(parser.substituteTokens(variables, values, oneList, 1));
    EXPECT_EQ(values, (Strings{"1", "a"}));
    EXPECT_THAT(tokens[1], ElementsAre("a"));
}

TEST(OlderSteps, MissingDefinitionReturnsNothing)
{
    mfProfileFileParser_c parser;
    EXPECT_EQ(parser.parseHeader(0), std::string::npos);
    EXPECT_FALSE(parser.parseBody(0, 0));
    ASSERT_TRUE(parser.parseProfiles("", true, kDefault));
    EXPECT_EQ(parser.parseHeader(0), std::string(kDefault).find(')') + 1);
    EXPECT_FALSE(parser.parseBody(std::string::npos, 0));
    EXPECT_FALSE(parser.parseBody(99, 0));
}

}  // namespace
