// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"

using namespace mf::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// --------------------------------------------------------- tokens and profiles

struct ReplaceCase {
    const char* name;
    std::vector<CString> before;
    const wchar_t* from;
    const wchar_t* to;
    std::vector<CString> after;
};

void PrintTo(const ReplaceCase& c, std::ostream* os)
{
    *os << c.name;
}

const ReplaceCase kReplaceCases[] = {
    {"EachEqualToken", {L"a", L"+", L"b", L"*", L"a"}, L"a", L"-1", {L"(-1)", L"+", L"b", L"*", L"(-1)"}},
    {"PartsOfTokensStay", {L"a1", L"xa", L"A"}, L"a", L"2", {L"a1", L"xa", L"A"}},
    {"BracketedTokenIsNotLookedAtAgain", {L"(2)", L"2"}, L"(2)", L"2", {L"(2)", L"2"}},
    {"NameThatGivesItself", {L"a"}, L"a", L"a", {L"(a)"}},
    {"EmptyNameIsNowhere", {L"", L"a"}, L"", L"2", {L"", L"a"}},
    {"EmptyNumber", {L"a"}, L"a", L"", {L"()"}},
    {"NoTokens", {}, L"a", L"2", {}},
};

class Replace : public testing::TestWithParam<ReplaceCase> {};

TEST_P(Replace, BracketsWholeTokens)
{
    const ReplaceCase& c = GetParam();
    mfFunctionSegments_c table;
    std::vector<CString> tokens = c.before;
    table.replace(tokens, c.from, c.to);
    EXPECT_EQ(tokens, c.after);
}

INSTANTIATE_TEST_SUITE_P(Segments, Replace, testing::ValuesIn(kReplaceCases),
                         [](const auto& tested) { return tested.param.name; });

class ProfilesToSave : public testing::Test {
protected:
    void giveKey(int row, const wchar_t* name, mfProfile_c* profile)
    {
        mfProfileKey_c key;
        key.name = name;
        key.source = L" (User)";
        rowOf(table, row).setProfileKey(key);
        rowOf(table, row).setProfile(profile);
    }

    const FakeHost host;
    mfFunctionSegments_c table;
    mfProfile_c cubic;
    mfProfile_c linear;
    std::vector<CString> names = {L"is emptied"};
    std::vector<mfProfile_c*> profiles = {nullptr};
};

TEST_F(ProfilesToSave, EmptyTableHasNone)
{
    EXPECT_TRUE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, IsEmpty());
    EXPECT_THAT(profiles, IsEmpty());
}

TEST_F(ProfilesToSave, EachNameOnceInOrderOfRows)
{
    fill(table, "0:0 0:1 1:2");
    giveKey(0, L"Linear", &linear);
    giveKey(1, L"Cubic", &cubic);
    giveKey(2, L"Linear", &cubic);  // the first record is used
    EXPECT_TRUE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L"Linear (User)"), CString(L"Cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&linear, &cubic));
}

TEST_F(ProfilesToSave, NamesCountWithCase)
{
    fill(table, "0:0 0:1");
    giveKey(0, L"Cubic", &cubic);
    giveKey(1, L"cubic", &cubic);
    EXPECT_TRUE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L"Cubic (User)"), CString(L"cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&cubic, &cubic));
}

TEST_F(ProfilesToSave, NameWithoutARecordFails)
{
    fill(table, "0:0 0:1");
    giveKey(0, L"Gone", nullptr);
    giveKey(1, L"Cubic", &cubic);
    EXPECT_FALSE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L"Gone (User)"), CString(L"Cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&cubic));
}

TEST_F(ProfilesToSave, RowsWithoutAKeyAreOneEmptyName)
{
    fill(table, "0:0 0:1 1:2");
    giveKey(1, L"Cubic", &cubic);
    EXPECT_FALSE(table.getProfilesToSave(names, profiles));
    EXPECT_THAT(names, ElementsAre(CString(L""), CString(L"Cubic (User)")));
    EXPECT_THAT(profiles, ElementsAre(&cubic));
}

}  // namespace
