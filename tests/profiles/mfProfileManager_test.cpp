// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfileManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/profiles/mfProfileManagerTest.h"

// A new manager, and finding profiles by their keys and their display names.

namespace profile_test {
namespace {

using testing::IsEmpty;

TEST(UseNewProfileManager, IsFixedByTheBuild)
{
#ifdef MFCURVES_TEST_OLDER
    EXPECT_FALSE(mfProfileManager_c::s_UseNewProfileManager());
#else
    EXPECT_TRUE(mfProfileManager_c::s_UseNewProfileManager());
#endif
}

TEST_F(ProfileManager, StartsEmptyUnderTheUserSuffix)
{
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_STREQ(suffix(), L" (User)");
    CString name;
    manager_.defaultDisplayName(name);
    EXPECT_STREQ(name, L"Cubic (User)");
    EXPECT_EQ(manager_.findProfile(key(L"Cubic", L" (User)")), nullptr);
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(ProfileManager, FindNeedsNameSourceAndIndex)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_NE(manager_.findProfile(key(L"CUBIC", L" (DEFAULT)", 0)), nullptr);
    EXPECT_EQ(manager_.findProfile(key(L"Cubic", L" (Default)", 1)), nullptr);
    EXPECT_EQ(manager_.findProfile(key(L"Cubic", L" (User)", 0)), nullptr);
    EXPECT_EQ(manager_.findProfile(key(L"Cubi", L" (Default)", 0)), nullptr);
    EXPECT_EQ(manager_.findProfile(mfProfileKey_c()), nullptr);
}

// The host's manager makes the keys, whichever object stores the profile.
TEST_F(ProfileManager, SuffixAndIndexAreThoseOfTheHostsManager)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    mfProfileManager_c other;
    mfProfileKey_c k;
    EXPECT_EQ(other.addAssemblyProfileFromDocument("Cubic", false, record("Cubic", "1").release(), k), 0);
    EXPECT_EQ(shown(k), "Cubic| (Default)|1");
    EXPECT_NE(other.findProfile(k), nullptr);
    EXPECT_EQ(manager_.findProfile(k), nullptr);
}

TEST_F(ProfileManager, DocumentNamesAreRememberedToTheByte)
{
    mfProfileKey_c found = key(L"old", L"old", 5);
    manager_.lookupDocumentName("Rise", found);
    EXPECT_TRUE(found.isEmpty());
    manager_.rememberDocumentName("Rise", key(L"Rise", L" (cam)", 1));
    manager_.rememberDocumentName("rise", key(L"Rise", L" (cam)", 2));
    manager_.rememberDocumentName("Rise", key(L"Rise", L" (cam)", 3));
    manager_.lookupDocumentName("Rise", found);
    EXPECT_EQ(shown(found), "Rise| (cam)|3");
    manager_.lookupDocumentName("rise", found);
    EXPECT_EQ(shown(found), "Rise| (cam)|2");
}

// Display names

struct DisplayNameCase {
    const char* name;
    const wchar_t* displayName;
    const char* key;  // name|source|index under the suffix " (User)"
};

const DisplayNameCase kDisplayNameCases[] = {
    {"CurrentSuffix", L"Cubic (User)", "Cubic| (User)|0"},
    {"MarkIsNotReadBack", L"Cubic (User)<1>", "Cubic| (User)|0"},
    {"DigitsAfterTheCurrentSuffix", L"Cubic (User)1", "||0"},
    {"TextAfterTheCurrentSuffix", L"Cubic (User) 1", "Cubic| (User)|0"},
    {"CurrentSuffixTwice", L"A (User) (User)", "A| (User)|0"},
    {"SuffixAlone", L" (User)", "| (User)|0"},
    {"SuffixOfOtherCaseIsForeign", L"Cubic (user)", "Cubic| (user)|0"},
    {"OtherSuffixIsForeign", L"Cubic (Default)", "Cubic| (Default)|0"},
    {"PlainName", L"Cubic", "Cubic| (User)|0"},
    {"NameThatDoesNotExist", L"Nothing", "Nothing| (User)|0"},
    {"Empty", L"", "| (User)|0"},
    {"FileStem", L"Rise (my cam)", "Rise| (my cam)|0"},
    {"MarkAfterAForeignSource", L"Rise (cam)<2>", "Rise| (cam)|0"},
    {"DigitsAfterAForeignSource", L"Rise (cam)12x", "Rise| (cam)|12"},
    {"EachDigitCounts", L"Rise (cam)1234567890", "Rise| (cam)|1234567890"},
    {"DigitsBeyondTheRange", L"Rise (cam)99999999999999999999", "Rise| (cam)|2147483647"},
    {"SignAfterAForeignSource", L"Rise (cam)-1", "Rise| (cam)|0"},
    {"NoClosingBracket", L"Rise (cam", "||0"},
    {"ClosingBracketBefore", L"Ri)se (cam", "||0"},
    {"BracketWithoutBlank", L"Rise(cam)", "Rise(cam)| (User)|0"},
    {"BracketAfterOneCharacter", L"A (cam)", "A| (cam)|0"},
    {"BracketAtTheStart", L" (cam)", " (cam)| (User)|0"},
    {"TwoForeignBrackets", L"Rise (a) (b)3", "Rise| (a)|0"},
    {"NestedBrackets", L"Rise (a(b))", "Rise| (a(b)|0"},
    {"DigitsBeyondAsciiAreNone", L"Rise (cam)\u0661", "Rise| (cam)|0"},
};

class DisplayName : public ProfileManager, public testing::WithParamInterface<DisplayNameCase> {};

TEST_P(DisplayName, ComesApartIntoAKey)
{
    EXPECT_EQ(keyOf(GetParam().displayName), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(Profiles, DisplayName, testing::ValuesIn(kDisplayNameCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ProfileManager, MarkedNameResolvesToTheFirstOfItsName)
{
    writeLibrary("a", law("A") + law("A", "2*x"));
    setFolders({"a"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    const mfProfile_c* found = manager_.findProfile(manager_.getProfileKeyFromDisplayName(L"A (User)<1>"));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->resultExpression, "(x)");
    EXPECT_EQ(manager_.findProfile(key(L"A", L" (User)", 1))->resultExpression, "(2*x)");
}

TEST_F(ProfileManager, ForeignSourceIsFoundInTheAssemblyGroup)
{
    mfProfileKey_c k;
    mfProfile_c* mine = record("Rise", "1").release();
    EXPECT_EQ(manager_.addAssemblyProfile("Rise", L"my cam.xml", mine, k), 0);
    EXPECT_EQ(manager_.findProfile(manager_.getProfileKeyFromDisplayName(L"Rise (my cam)")), mine);
}

}  // namespace
}  // namespace profile_test
