// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfileManager.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/builtInProfiles.h"
#include "mfcurves/profiles/mfProfile.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using mf::test::FakeHost;
using mf::test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<CString>;

// One definition; `value` makes definitions of one name different.
std::string law(const std::string& name, const std::string& value = "x")
{
    return "SegmentType(\"" + name + "\",x,x1,y1,x2,y2)y=" + value + ";return y;endSegmentType\n";
}

std::unique_ptr<mfProfile_c> record(const std::string& name, const std::string& definition)
{
    auto result = std::make_unique<mfProfile_c>();
    result->name = name;
    result->definitionText = definition;
    return result;
}

mfProfileKey_c key(const wchar_t* name, const wchar_t* source, std::int32_t index = 0)
{
    mfProfileKey_c result;
    result.name = name;
    result.source = source;
    result.index = index;
    return result;
}

std::string shown(const mfProfileKey_c& k)
{
    return mf::platform::toUtf8(k.name.View()) + "|" + mf::platform::toUtf8(k.source.View()) + "|" +
           std::to_string(k.index);
}

// A host with one manager, and the folders of its design library.
class ProfileManager : public testing::Test {
protected:
    ProfileManager() { host_.managerAnswer = &manager_; }

    void setFolders(std::initializer_list<const char*> names)
    {
        std::string text;
        for (const char* name : names)
            text += (text.empty() ? "" : ";") + (folder_ / name).string();
        host_.services.designLibraryPaths = text.c_str();
    }
    void writeLibrary(const std::string& directory, const std::string& text)
    {
        std::filesystem::create_directory(folder_ / directory);
        folder_.write(directory + "/SegmentTypes.txt", text);
    }
    Names names()
    {
        Names result = {L"old"};
        EXPECT_TRUE(manager_.getAllProfileNames(result));
        return result;
    }
    std::string keyOf(const wchar_t* displayName)
    {
        return shown(manager_.getProfileKeyFromDisplayName(displayName));
    }
    CString suffix()
    {
        CString result;
        manager_.currentSourceSuffix(result);
        return result;
    }

    TemporaryFolder folder_;
    FakeHost host_;
    mfProfileManager_c manager_;
};

// ---------------------------------------------------------------- start

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

// ---------------------------------------------------------------- rebuild

const Names kBuiltInNames = {
    L"Cubic (Default)",
    L"Quarter-Sine (Default)",
    L"Quarter-Cosine (Default)",
    L"Half-Cosine (Default)",
    L"3-4-5-Polynomial (Default)",
    L"4-5-6-7-Polynomial (Default)",
    L"5-6-7-8-9-Polynomial (Default)",
    L"Cycloidal (Default)",
    L"Quadratic (Default)",
    L"Linear (Default)",
};

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

// ---------------------------------------------------------------- assembly profiles

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

// ---------------------------------------------------------------- display names

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
