// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/mfcurves.h"
#include "mfcurves/profiles/mfProfileFileParser.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "tests/reliability/timeTest.h"
#include "tests/support/TemporaryFolder.h"

// Definitions of profiles: reading both dialects, and a row that uses what was read.

namespace time_test {
namespace {

class ProfileTime : public Time {
protected:
    // A row with the record's profile, used as by an editor: compiled, sampled, evaluated.
    void useInARow(const mfProfile_c& record)
    {
        mfProfileManager_c& manager = *host_.getProfileManager();
        auto stored = std::make_unique<mfProfile_c>(record);
        mfProfileKey_c key;
        if (manager.addAssemblyProfileFromDocument("P", true, stored.get(), key) == 0)
            static_cast<void>(stored.release());
        mfFunctionSegments_c table;
        table.addSegment(new mfSegment_c(0, 0, 0, L"P"));
        table.addSegment(new mfSegment_c(0, 1, 4, L"P"));
        mfSegment_c* row = nullptr;
        table.selectSegment(1, row);
        row->setProfileKey(key);
        watch_.time("parseExpression", [&] { table.parseExpression(1); });
        watch_.time("calculateValue(row)", [&] { table.calculateValue(1); });
        watch_.time("evaluate", [&] { table.evaluate(0.5, 3); });
    }
};

TEST_P(ProfileTime, ReadFromAFile)
{
    const mf::test::TemporaryFolder folder;
    folder.write("a.txt", input());
    std::vector<mfProfile_c*> records;
    watch_.time("readProfiles", [&] { mfSegmentTypeParser_c().readProfiles(folder / "a.txt", records); });
    if (!records.empty())
        useInARow(*records.front());
    for (mfProfile_c* record : records)
        delete record;
}

TEST_P(ProfileTime, OneDefinition)
{
    std::string text = input();
    mfProfile_c record;
    watch_.time("parseDefinition", [&] { mfSegmentTypeParser_c().parseDefinition(text, &record, true); });
}

const TimeCase kProfiles[] = {
    {"ShortStatements",
     [] { return currentDefinition("P", numbered([](int i) { return nameOf(i) + "=1;"; }) + "returny;"); }},
    {"ChainOfNames",
     [] {
         return currentDefinition(
             "P", numbered([](int i) { return nameOf(i + 1) + "=" + nameOf(i) + "+1;"; }) + "returny;");
     }},
    {"OneNameAgainAndAgain", [] { return currentDefinition("P", filled("a=a;") + "returna;"); }},
    {"LongNameThatAlmostMatchesEverywhere",
     [] {
         return currentDefinition(
             "P", std::string(kMegabyte / 4, 'a') + "b=1;y=" + std::string(kMegabyte / 2, 'a') + ";returny;");
     }},
    {"ManyLongNames",
     [] {
         return currentDefinition(
             "P", numbered([](int i) { return repeated("a", 500) + nameOf(i) + "=1;"; }, kMegabyte / 2) +
                      "y=" + std::string(kMegabyte / 2 - 100, 'a') + ";returny;");
     }},
    {"Doubling", [] { return currentDefinition("P", doubling(16)); }},
    {"OneLongExpression", [] { return currentDefinition("P", "y=" + filled("x1+x*") + "x;returny;"); }},
    {"LongExpressionOfCalls",
     [] { return currentDefinition("P", "y=" + filled("sin(x)^x*x2+") + "x;returny;"); }},
    {"ManyDefinitionsThatDouble",
     [] {
         return numbered(
             [](int i) { return currentDefinition("P" + std::to_string(i), doubling(14)) + "\n"; });
     }},
    {"ManyDefinitions",
     [] {
         return numbered([](int i) {
             return currentDefinition("P" + std::to_string(i), "v=y1+(y2-y1)*(x-x1);returnv;") + "\n";
         });
     }},
    {"DefinitionsOfOneName",
     [] {
         return numbered(
             [](int i) { return currentDefinition("P", "v=" + std::to_string(i) + ";returnv;"); });
     }},
    {"OnlyOperators", [] { return currentDefinition("P", "y=" + filled("(") + ";returny;"); }},
    {"OnlySigns", [] { return currentDefinition("P", filled("=")); }},
    {"OnlySemicolons", [] { return currentDefinition("P", filled(";")); }},
    {"OlderKeywords", [] { return filled("profile("); }},
    {"ClosingKeywords", [] { return filled("endprofile"); }},
    {"Lines", [] { return filled("\n"); }},
    {"Comments", [] { return filled("'\n"); }},
    {"Quotes", [] { return filled("\"A"); }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, ProfileTime, testing::ValuesIn(kProfiles),
                         [](const auto& tested) { return tested.param.name; });

std::string olderDefinition(const std::string& name, const std::string& statements)
{
    return "Profile(\"" + name + "\",x,x1,y1,x2,y2)" + statements + "endProfile";
}

class OlderProfileTime : public Time {};

TEST_P(OlderProfileTime, Reading)
{
    const std::string text = input();
    mfProfileFileParser_c parser;
    watch_.time("parseProfiles", [&] { parser.parseProfiles("", true, text); });
    std::vector<std::vector<std::string>> tokens;
    watch_.time("getResultTokens", [&] { parser.getResultTokens(tokens); });
    if (tokens.empty())
        return;
    std::vector<CString> row;
    for (const std::string& token : tokens.front())
        row.emplace_back(token.c_str());
    mfFunctionSegments_c table;
    watch_.time("replace", [&] { table.replace(row, L"x1", L"1.000000"); });
}

const TimeCase kOlderProfiles[] = {
    {"ShortStatements",
     [] { return olderDefinition("P", numbered([](int i) { return nameOf(i) + "=1;"; }) + "returny;"); }},
    {"ChainOfNames",
     [] {
         return olderDefinition(
             "P", numbered([](int i) { return nameOf(i + 1) + "=" + nameOf(i) + "+1;"; }) + "returny;");
     }},
    {"OneNameAgainAndAgain", [] { return olderDefinition("P", filled("a=a;") + "returna;"); }},
    {"Doubling", [] { return olderDefinition("P", doubling(16)); }},
    {"OneLongExpression", [] { return olderDefinition("P", "y=" + filled("x1+x*") + "x;returny;"); }},
    {"ManyUsesOfOneLongValue",
     [] {
         return olderDefinition(
             "P", "v=" + repeated("1", 1000) + ";y=" + filled("v+", kMegabyte / 4) + "1;returny;");
     }},
    {"ManyDefinitionsThatDouble",
     [] { return numbered([](int i) { return olderDefinition("P" + std::to_string(i), doubling(14)); }); }},
    {"ManyDefinitions",
     [] {
         return numbered(
             [](int i) { return olderDefinition("P" + std::to_string(i), "v=y1+(y2-y1)*(x-x1);returnv;"); });
     }},
    {"OnlyOperators", [] { return olderDefinition("P", "y=" + filled("(") + ";returny;"); }},
    {"OnlySigns", [] { return olderDefinition("P", filled("=")); }},
    {"ClosingKeywords", [] { return filled("endProfile"); }},
};

INSTANTIATE_TEST_SUITE_P(Reliability, OlderProfileTime, testing::ValuesIn(kOlderProfiles),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace time_test
