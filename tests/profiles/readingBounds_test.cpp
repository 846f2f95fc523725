// SPDX-License-Identifier: MIT

#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

#include "mfcurves/engine/limits.h"
#include "mfcurves/profiles/definitionReading.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileFileParser.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/longTexts.h"

// Hostile definitions: none uses much memory, none takes time out of proportion to its
// length.

namespace {

using mf::engine::kLongestText;
using mf::test::filled;
using mf::test::TemporaryFolder;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

// Generous: the worst text below takes a fifth of it in a plain build; reading in
// quadratic time would take minutes.
constexpr double kPatience = 5.0;

// In seconds of processor time, so that other programs do not matter.
double processTime()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

bool readCurrent(const std::string& statements, std::string& result)
{
    std::string text = "segmenttype(\"P\",x,x1,y1,x2,y2)" + statements + "endsegmenttype";
    mfProfile_c record;
    const bool answer = mfSegmentTypeParser_c().parseDefinition(text, &record, false);
    result = record.resultExpression;
    return answer;
}

bool readOlder(const std::string& statements, std::string& result)
{
    mfProfileFileParser_c parser;
    const bool answer =
        parser.parseProfiles("", true, "Profile(\"P\",x,x1,y1,x2,y2)" + statements + "endProfile");
    std::vector<std::string> results;
    parser.getResults(results);
    result = results.empty() ? "" : results.front();
    return answer;
}

// Each line doubles the text of the previous line. No name occurs in another.
std::string doubling(int lines)
{
    const auto name = [](int i) { return "v" + std::to_string(100 + i); };
    std::string text = name(0) + "=x;";
    for (int i = 1; i <= lines; ++i)
        text += name(i) + "=" + name(i - 1) + "+" + name(i - 1) + ";";
    return text + "return" + name(lines) + ";";
}

// Length of the value of the last line: twice the previous one with its brackets, and a
// plus sign.
std::size_t doubledLength(int lines)
{
    std::size_t length = 1;
    for (int i = 1; i <= lines; ++i)
        length = 2 * (length + 2) + 1;
    return length;
}

class Doubling : public testing::TestWithParam<int> {};

TEST_P(Doubling, ReadsUpToTheLongestTextOfTheEngine)
{
    const int lines = GetParam();
    const std::size_t length = doubledLength(lines);
    std::string result;
    EXPECT_EQ(readOlder(doubling(lines), result), length <= kLongestText);
    EXPECT_EQ(result.size(), length <= kLongestText ? length : 0);
    // The current reader puts the result in brackets.
    EXPECT_EQ(readCurrent(doubling(lines), result), length + 2 <= kLongestText);
    EXPECT_EQ(result.size(), length + 2 <= kLongestText ? length + 2 : 0);
}

// 6 * 2^17 - 5 characters fit, 6 * 2^18 - 5 do not; 60 lines would take 10^18.
INSTANTIATE_TEST_SUITE_P(Profiles, Doubling, testing::Values(1, 2, 10, 17, 18, 60));

TEST(ReadingBounds, ResultOfExactlyTheLongestTextIsRead)
{
    for (const std::size_t length : {kLongestText, kLongestText + 1}) {
        std::string result;
        EXPECT_EQ(readOlder("y=" + std::string(length, '1') + ";returny;", result), length == kLongestText);
        EXPECT_EQ(readCurrent("y=" + std::string(length - 2, '1') + ";returny;", result),
                  length == kLongestText);
    }
}

struct HostileCase {
    const char* name;
    std::function<std::string()> statements;
};

std::string numbered(const std::function<std::string(int)>& statement, std::size_t size)
{
    std::string result;
    for (int i = 0; result.size() < size; ++i)
        result += statement(i);
    return result;
}

std::string name(int i)
{
    return "v" + std::to_string(1000000 + i);
}

const HostileCase kHostileCases[] = {
    {"ShortStatements", [] { return numbered([](int i) { return name(i) + "=1;"; }, kMegabyte); }},
    {"ChainOfNames",
     [] { return numbered([](int i) { return name(i + 1) + "=" + name(i) + "+1;"; }, kMegabyte); }},
    {"OneNameAgainAndAgain", [] { return filled("a=a;", kMegabyte); }},
    {"OneNameGrows", [] { return filled("a=aa;", kMegabyte); }},
    {"LongNameThatAlmostMatchesEverywhere",
     [] { return std::string(kMegabyte / 4, 'a') + "b=1;y=" + std::string(kMegabyte / 2, 'a') + ";"; }},
    {"ManyLongNames",
     [] {
         return numbered([](int i) { return std::string(500, 'a') + name(i) + "=1;"; }, kMegabyte / 2) +
                "y=" + std::string(kMegabyte / 2, 'a') + ";";
     }},
    {"OnlyOperators", [] { return "y=" + std::string(kMegabyte - 100, '(') + ";"; }},
    {"ManyUsesOfOneLongValue",
     [] { return "v=" + std::string(1000, '1') + ";y=" + filled("v+", kMegabyte / 4) + "1;"; }},
    {"KeywordsOfTheOlderDialect", [] { return "y=" + filled("profile(", kMegabyte) + ";"; }},
    {"OnlySigns", [] { return std::string(kMegabyte, '='); }},
    {"OnlySemicolons", [] { return std::string(kMegabyte, ';'); }},
};

class Hostile : public testing::TestWithParam<HostileCase> {};

TEST_P(Hostile, MegabyteIsReadInTimeByBothReaders)
{
    const std::string statements = GetParam().statements() + "returny;";
    const TemporaryFolder folder;
    folder.write("a.txt", "SegmentType(\"P\",x,x1,y1,x2,y2)" + statements + "endSegmentType");

    const double start = processTime();
    std::vector<mfProfile_c*> records;
    mfSegmentTypeParser_c().readProfiles(folder / "a.txt", records);
    const double between = processTime();
    std::string result;
    readOlder(statements, result);
    const double end = processTime();
    for (mfProfile_c* record : records) {
        EXPECT_LE(record->resultExpression.size(), kLongestText);
        delete record;
    }
    EXPECT_LE(result.size(), kLongestText);
    EXPECT_LT(between - start, kPatience);
    EXPECT_LT(end - between, kPatience);
}

INSTANTIATE_TEST_SUITE_P(Profiles, Hostile, testing::ValuesIn(kHostileCases),
                         [](const auto& tested) { return tested.param.name; });

// A short definition may grow to a megabyte once, and a thousand of them in one
// file may not.
TEST(ReadingBounds, DefinitionsOfOneFileShareWhatTheyMayCost)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text +=
            "SegmentType(\"P" + std::to_string(i) + "\",x,x1,y1,x2,y2)" + doubling(17) + "endSegmentType\n";
    const TemporaryFolder folder;
    folder.write("a.txt", text);
    const double start = processTime();
    std::vector<mfProfile_c*> records;
    EXPECT_FALSE(mfSegmentTypeParser_c().readProfiles(folder / "a.txt", records));
    EXPECT_LT(processTime() - start, kPatience);
    EXPECT_GE(records.size(), 1u);
    EXPECT_LE(records.size(), 20u);
    for (mfProfile_c* record : records)
        delete record;
}

// The same for the older reader.
TEST(ReadingBounds, DefinitionsOfOneOlderTextShareWhatTheyMayCost)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "Profile(\"P\",x,x1,y1,x2,y2)" + doubling(17) + "endProfile";
    mfProfileFileParser_c parser;
    EXPECT_FALSE(parser.parseProfiles("", true, text));
    std::vector<std::string> results;
    parser.getResults(results);
    EXPECT_GE(results.size(), 1u);
    EXPECT_LE(results.size(), 20u);
    for (const std::string& result : results)
        EXPECT_EQ(result.size(), doubledLength(17));
}

// Each name of a long value makes a copy of it.
TEST(ReadingBounds, NamesOfOneLongValueShareWhatTheyMayCost)
{
    for (const int names : {10, 10'000}) {
        std::string result;
        std::string statements = "v=" + std::string(kMegabyte - 10, '1') + ";";
        for (int i = 0; i < names; ++i)
            statements += name(i) + "=v;";
        EXPECT_EQ(readOlder(statements + "returny;", result), names == 10);
    }
}

TEST(ReadingBounds, DefinitionsOfOneDocumentShareABudget)
{
    mf::profiles::WorkBudget budget;
    int read = 0;
    bool refused = false;
    const std::string text = "segmenttype(\"P\",x,x1,y1,x2,y2)" + doubling(17) + "endsegmenttype";
    for (int i = 0; i < 20; ++i) {
        mfProfile_c record;
        const bool answer = static_cast<bool>(mf::profiles::parseDefinition(text, record, budget));
        read += answer;
        EXPECT_FALSE(answer && refused);  // a spent budget stays spent
        refused |= !answer;
    }
    EXPECT_GE(read, 1);
    EXPECT_TRUE(refused);
}

TEST(ReadingBounds, ManyOrdinaryDefinitionsAreRead)
{
    std::string text;
    for (int i = 0; i < 10000; ++i)
        text += "SegmentType(\"P" + std::to_string(i) +
                "\",x,x1,y1,x2,y2)\nxbar=(x-x1)/(x2-x1);\nybar=3*xbar^2-2*xbar^3;\ny=y1+(y2-y1)*ybar;\n"
                "return y;\nendSegmentType\n";
    const TemporaryFolder folder;
    folder.write("a.txt", text);
    std::vector<mfProfile_c*> records;
    EXPECT_TRUE(mfSegmentTypeParser_c().readProfiles(folder / "a.txt", records));
    EXPECT_EQ(records.size(), 10000u);
    for (mfProfile_c* record : records)
        delete record;
}

}  // namespace
