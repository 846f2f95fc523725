// SPDX-License-Identifier: MIT

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/profiles/builtInProfiles.h"
#include "tests/profiles/mfProfileManagerTest.h"

// Rebuilding the user profiles from the design library or the built-in table.

namespace profile_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ProfileManager, EmptyPathTextLoadsTheBuiltInTable)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(names(), kBuiltInNames);
    EXPECT_STREQ(suffix(), L" (Default)");
    CString name;
    manager_.defaultDisplayName(name);
    EXPECT_STREQ(name, L"Cubic (Default)");
    ASSERT_NE(manager_.findProfile(key(L"cubic", L" (default)")), nullptr);
    EXPECT_EQ(manager_.findProfile(key(L"cubic", L" (default)"))->name, "Cubic");
}

TEST_F(ProfileManager, HostWithoutServicesLoadsTheBuiltInTable)
{
    host_.servicesAnswer = nullptr;
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(names(), kBuiltInNames);
}

TEST_F(ProfileManager, NoReadableFileLoadsTheBuiltInTable)
{
    setFolders({"a", "b"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(names(), kBuiltInNames);
}

TEST_F(ProfileManager, SecondRebuildReplacesTheRecords)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(names(), kBuiltInNames);
}

TEST_F(ProfileManager, HostWithoutManagerGetsNoKeys)
{
    host_.managerAnswer = nullptr;
    EXPECT_FALSE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_STREQ(suffix(), L" (Default)");
}

TEST_F(ProfileManager, NoContextIsLikeNoServices)
{
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_FALSE(manager_.rebuildUserProfileMap());
    EXPECT_STREQ(suffix(), L" (Default)");
}

TEST_F(ProfileManager, OnlyTheFirstReadableFileIsRead)
{
    writeLibrary("b", law("B1") + law("B2"));
    writeLibrary("c", law("C"));
    setFolders({"a", "b", "c"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), ElementsAre(CString(L"B1 (User)"), CString(L"B2 (User)")));
}

TEST_F(ProfileManager, BrokenFirstFileFailsWithoutASecondTry)
{
    writeLibrary("a", law("A") + "SegmentType(");
    writeLibrary("b", law("A") + law("(") + law("B"));
    writeLibrary("c", law("C"));
    setFolders({"b", "c"});
    EXPECT_FALSE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_STREQ(suffix(), L" (User)");
    // Text after the last keyword is ignored.
    setFolders({"a"});
    mfProfileManager_c fresh;
    host_.managerAnswer = &fresh;
    EXPECT_TRUE(fresh.rebuildUserProfileMap());
}

TEST_F(ProfileManager, FolderOfTheFilesNameCountsAsReadableAndFails)
{
    std::filesystem::create_directories(folder_ / "a/SegmentTypes.txt");
    writeLibrary("b", law("B"));
    setFolders({"a", "b"});
    EXPECT_FALSE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ProfileManager, EmptyEntriesAndSeparatorsAtTheEndAreHarmless)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    host_.services.designLibraryPaths = L";;" + host_.services.designLibraryPaths + L"/;";
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), ElementsAre(CString(L"A (User)")));
}

TEST_F(ProfileManager, SearchPathsOfAnEarlierRebuildStay)
{
    writeLibrary("a", law("A"));
    writeLibrary("b", law("B"));
    setFolders({"a"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    setFolders({"b"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), ElementsAre(CString(L"A (User)")));

    // A folder that is no longer readable is skipped.
    std::filesystem::remove_all(folder_ / "a");
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), ElementsAre(CString(L"B (User)")));

    // No file is readable now, but one was: the built-in table is not loaded.
    std::filesystem::remove_all(folder_ / "b");
    EXPECT_FALSE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), IsEmpty());

    host_.services.designLibraryPaths = L"";
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(names(), kBuiltInNames);
}

TEST_F(ProfileManager, WithoutServicesFoldersFoundEarlierAreNotRead)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    host_.servicesAnswer = nullptr;
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(names(), kBuiltInNames);
}

TEST_F(ProfileManager, DefaultSuffixStaysForFilesReadLater)
{
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    writeLibrary("a", law("A"));
    setFolders({"a"});
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), ElementsAre(CString(L"A (Default)")));
}

TEST_F(ProfileManager, BuiltInTableThatDoesNotParseFails)
{
    std::string& last = mf::profiles::builtInProfiles().back();
    const std::string text = last;
    last = "segmenttype(";
    EXPECT_FALSE(manager_.rebuildUserProfileMap());
    EXPECT_THAT(names(), IsEmpty());
    last = text;
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
    EXPECT_EQ(names(), kBuiltInNames);
}

struct DuplicateCase {
    const char* name;
    std::string file;
    bool answer;
    Names names;
};

const DuplicateCase kDuplicateCases[] = {
    {"InTheMiddle", law("A") + law("A") + law("B"), true, {L"A (User)", L"B (User)"}},
    {"AtTheEnd", law("A") + law("B") + law("A"), false, {L"A (User)", L"B (User)"}},
    {"CaseOfTheNameIsNothing", law("A") + law("a"), false, {L"A (User)"}},
    {"OtherText", law("A") + law("A", "2*x"), true, {L"A (User)", L"A (User)<1>"}},
    {"NamesOfOneFoldCountTogether",
     law("A") + law("a", "2*x") + law("A", "3*x"),
     true,
     {L"A (User)", L"a (User)<1>", L"A (User)<2>"}},
};

class Duplicate : public ProfileManager, public testing::WithParamInterface<DuplicateCase> {};

TEST_P(Duplicate, DecidesOnlyAtTheEndOfAFile)
{
    writeLibrary("a", GetParam().file);
    setFolders({"a"});
    EXPECT_EQ(manager_.rebuildUserProfileMap(), GetParam().answer);
    EXPECT_EQ(names(), GetParam().names);
}

INSTANTIATE_TEST_SUITE_P(Profiles, Duplicate, testing::ValuesIn(kDuplicateCases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ProfileManager, FailureOfTheNarrowEncodingIsPassedOn)
{
    writeLibrary("a", law("A"));
    setFolders({"a"});
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t& error) {
        error = 5;
        return 0;
    });
    EXPECT_THROW(manager_.rebuildUserProfileMap(), CGeneralException);
    mf::platform::setNarrowEncoder({});
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_TRUE(manager_.rebuildUserProfileMap());
}

}  // namespace
}  // namespace profile_test
