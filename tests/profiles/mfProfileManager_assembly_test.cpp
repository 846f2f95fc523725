// SPDX-License-Identifier: MIT

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "tests/profiles/mfProfileManagerTest.h"

// Profiles of documents and assemblies: which are stored, under which keys, and what they
// have to do with the user profiles.

namespace profile_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SameCase {
    const char* name;
    const char* otherName;
    const char* otherDefinition;
    bool same;  // as the profile "Rise" of the definition "text"
};

const SameCase kSameCases[] = {
    {"Equal", "Rise", "text", true},
    {"CaseOfTheName", "RISE", "text", true},
    {"CaseOfTheText", "Rise", "TEXT", true},
    {"BlanksAroundTheName", "  Rise ", "text", true},
    {"BracketedTail", "Rise (User)", "text", true},
    {"BracketedTailAndMark", "Rise (Default)<1>", "text", true},
    {"BlankMoreInTheText", "Rise", "te xt", false},
    {"OtherName", "Rises", "text", false},
    {"NameAndTextChangeOverElsewhere", "Ris", "etext", false},
};

class SameProfile : public ProfileManager, public testing::WithParamInterface<SameCase> {};

TEST_P(SameProfile, ComparesNameAndTextIgnoringCase)
{
    mfProfileKey_c first;
    ASSERT_EQ(manager_.addAssemblyProfile("Rise", L"cam.xml", record("Rise", "text").release(), first), 0);
    EXPECT_EQ(shown(first), "Rise| (cam)|0");

    auto other = record(GetParam().otherName, GetParam().otherDefinition);
    mfProfileKey_c second;
    const int status = manager_.addAssemblyProfile("Rise", L"cam.xml", other.get(), second);
    if (status == 0)
        other.release();
    EXPECT_EQ(status, GetParam().same ? 1 : 0);
    EXPECT_EQ(shown(second), GetParam().same ? "Rise| (cam)|0" : "Rise| (cam)|1");
}

INSTANTIATE_TEST_SUITE_P(Profiles, SameProfile, testing::ValuesIn(kSameCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ProfileManager, NameAndTextAreSeparateWhateverTheirCharacters)
{
    mfProfileKey_c k;
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"cam.xml", record("A\1B", "C").release(), k), 0);
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"cam.xml", record("A", "B\1C").release(), k), 0);
}

TEST_F(ProfileManager, AssemblyProfileThatEqualsAUserProfileIsNotStored)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    const mfProfile_c* cubic = manager_.findProfile(key(L"Cubic", L" (Default)"));
    const auto same = record(cubic->name, cubic->definitionText);
    mfProfileKey_c found;
    EXPECT_EQ(manager_.addAssemblyProfile("Cubic", L"cam.xml", same.get(), found), 1);
    EXPECT_EQ(shown(found), "Cubic| (Default)|0");
    EXPECT_EQ(names(), kBuiltInNames);
}

TEST_F(ProfileManager, RebuiltUserProfileThatEqualsAnAssemblyProfileIsDropped)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    const mfProfile_c* linear = manager_.findProfile(key(L"Linear", L" (Default)"));
    const std::string text = linear->definitionText;
    writeLibrary("a", law("A"));
    setFolders({"a"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    mfProfileKey_c mine;
    EXPECT_EQ(manager_.addAssemblyProfile("Linear", L"cam.xml", record("Linear", text).release(), mine), 0);

    // "Linear" is the last of the built-in table, so the load counts as failed.
    std::filesystem::remove_all(folder_ / "a");
    host_.services.designLibraryPaths = L"";
    EXPECT_FALSE(manager_.rebuildUserProfileMap());
    Names expected = kBuiltInNames;
    expected.back() = L"Linear (cam)";
    EXPECT_EQ(names(), expected);
}

TEST_F(ProfileManager, AssemblyProfilesStayOverARebuild)
{
    mfProfileKey_c k;
    mfProfile_c* mine = record("A", "a").release();
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"cam.xml", mine, k), 0);
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(manager_.findProfile(k), mine);
    Names expected = kBuiltInNames;
    expected.push_back(L"A (cam)");  // user names first
    EXPECT_EQ(names(), expected);
}

TEST_F(ProfileManager, NamesAreInOrderOfArrival)
{
    mfProfileKey_c k;
    manager_.addAssemblyProfile("Z", L"cam.xml", record("Z", "1").release(), k);
    manager_.addAssemblyProfile("A", L"cam.xml", record("A", "2").release(), k);
    manager_.addAssemblyProfile("M", L"a.xml", record("M", "3").release(), k);
    EXPECT_THAT(names(), ElementsAre(CString(L"Z (cam)"), CString(L"A (cam)"), CString(L"M (a)")));
}

struct SourceCase {
    const char* name;
    const wchar_t* file;
    const wchar_t* source;
};

const SourceCase kSourceCases[] = {
    {"PlainName", L"cam.xml", L" (cam)"},
    {"Path", L"/curves/my cam.v2.xml", L" (my cam.v2)"},
    {"NoExtension", L"dir.d/cam", L" (cam)"},
    {"OnlyAnExtension", L".xml", L" ()"},
    {"OnlyAFolder", L"curves/", L" ()"},
    {"AssemblyWord", L"Assembly", L" (Assembly)"},
    {"NoFile", L"", L" (User)"},
};

class Source : public ProfileManager, public testing::WithParamInterface<SourceCase> {};

TEST_P(Source, IsTheStemOfTheFile)
{
    mfProfileKey_c k;
    EXPECT_EQ(manager_.addAssemblyProfile("A", GetParam().file, record("A", "a").release(), k), 0);
    EXPECT_STREQ(k.source, GetParam().source);
}

INSTANTIATE_TEST_SUITE_P(Profiles, Source, testing::ValuesIn(kSourceCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ProfileManager, DocumentWithoutAFileNameGetsTheWordOrTheSuffix)
{
    mfProfileKey_c k;
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", true, record("A", "1").release(), k), 0);
    EXPECT_EQ(shown(k), "A| (Assembly)|0");
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", false, record("A", "2").release(), k), 0);
    EXPECT_EQ(shown(k), "A| (User)|0");
}

TEST_F(ProfileManager, IndexIsOneAboveTheHighestOfNameAndSource)
{
    mfProfileKey_c k;
    const auto add = [&](const char* name, const wchar_t* file, const char* text) {
        EXPECT_EQ(manager_.addAssemblyProfile(name, file, record(name, text).release(), k), 0);
        return shown(k);
    };
    EXPECT_EQ(add("A", L"x", "1"), "A| (x)|0");
    EXPECT_EQ(add("A", L"x", "2"), "A| (x)|1");
    EXPECT_EQ(add("a", L"X", "3"), "a| (X)|2");
    EXPECT_EQ(add("A", L"y", "4"), "A| (y)|0");
    EXPECT_EQ(add("B", L"x", "5"), "B| (x)|0");
    EXPECT_EQ(add("A", L"x", "6"), "A| (x)|3");
}

TEST_F(ProfileManager, NoKeyWithoutRecordOrManager)
{
    mfProfileKey_c k;
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"x", nullptr, k), -1);
    const auto mine = record("A", "a");
    host_.managerAnswer = nullptr;
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"x", mine.get(), k), -1);
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"x", mine.get(), k), -1);
    EXPECT_THAT(names(), IsEmpty());
}

// A profile stored under the current suffix gets its index from the user profiles, even
// if it is an assembly profile. Two of one name then get the same key, so the group has
// more names than records.
TEST_F(ProfileManager, GroupWhoseListAndRecordsHaveComeApartIsLeftOut)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    mfProfileKey_c k;
    mfProfile_c* first = record("A", "1").release();
    mfProfile_c* second = record("A", "2").release();
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", false, first, k), 0);
    EXPECT_EQ(names().size(), 11u);
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", false, second, k), 0);
    EXPECT_EQ(shown(k), "A| (Default)|0");
    EXPECT_EQ(manager_.findProfile(k), second);
    EXPECT_EQ(first->definitionText, "1");  // it stays valid for segments that use it
    EXPECT_EQ(names(), kBuiltInNames);

    // A new profile is no longer compared with the displaced one.
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", false, record("A", "1").release(), k), 0);
}

TEST_F(ProfileManager, ReplacementInAnotherCaseLeavesTheGroupOut)
{
    mfProfileKey_c k;
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", false, record("A", "1").release(), k), 0);
    EXPECT_THAT(names(), ElementsAre(CString(L"A (User)")));
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("B", false, record("B", "1").release(), k), 0);
    // The same key in another case.
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("a", false, record("a", "2").release(), k), 0);
    EXPECT_THAT(names(), IsEmpty());
}

// The entry keeps the key of its first record, and an equal record gets that key.
TEST_F(ProfileManager, EqualProfileGetsTheKeyInTheGroup)
{
    mfProfileKey_c k;
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", false, record("A", "1").release(), k), 0);
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("a", false, record("a", "2").release(), k), 0);
    EXPECT_EQ(shown(k), "a| (User)|0");
    const auto same = record("a", "2");
    EXPECT_EQ(manager_.addAssemblyProfile("a", L"cam.xml", same.get(), k), 1);
    EXPECT_EQ(shown(k), "A| (User)|0");
}

// The name of a file may equal the current suffix. If the case is equal too, its profiles
// get their index from the user profiles, although they are stored with the others.
TEST_F(ProfileManager, SourceAloneDecidesWhereTheIndexIsCounted)
{
    writeLibrary("a", law("A") + law("A", "2*x"));
    setFolders({"a"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    mfProfileKey_c k;
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"User.xml", record("A", "3").release(), k), 0);
    EXPECT_EQ(shown(k), "A| (User)|2");
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"User.xml", record("A", "4").release(), k), 0);
    EXPECT_EQ(shown(k), "A| (User)|2");  // the user profiles are still two
    EXPECT_EQ(manager_.addAssemblyProfile("A", L"user.xml", record("A", "5").release(), k), 0);
    EXPECT_EQ(shown(k), "A| (user)|3");  // after the one of the assembly group
}

TEST_F(ProfileManager, AssemblyProfileHidesAUserProfileOfEqualKey)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    mfProfileKey_c k;
    mfProfile_c* mine = record("A", "mine").release();
    EXPECT_EQ(manager_.addAssemblyProfileFromDocument("A", false, mine, k), 0);
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(manager_.findProfile(key(L"A", L" (User)")), mine);
}

}  // namespace
}  // namespace profile_test
