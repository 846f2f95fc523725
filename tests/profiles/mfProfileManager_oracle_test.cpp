// SPDX-License-Identifier: MIT

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

// Compares the registry with a simple one that searches all its records each time.

namespace mf::test {
namespace {

struct Record {
    std::string name;
    std::string text;
};

struct KeyOrder {
    bool operator()(const mfProfileKey_c& a, const mfProfileKey_c& b) const
    {
        return mfProfileKey_c::keyLess(a, b);
    }
};

struct Group {
    std::map<mfProfileKey_c, Record, KeyOrder> records;
    std::vector<CString> names;  // in order of arrival
};

CString displayName(const mfProfileKey_c& key)
{
    CString name;
    key.keyDisplayName(name);
    return name;
}

bool isSame(const Record& a, const Record& b)
{
    mfSegmentTypeParser_c parser;
    const CString nameOfA = parser.baseProfileName(a.name).c_str();
    const CString nameOfB = parser.baseProfileName(b.name).c_str();
    return nameOfA.CompareNoCase(nameOfB) == 0 &&
           CString(a.text.c_str()).CompareNoCase(CString(b.text.c_str())) == 0;
}

class SlowRegistry {
public:
    bool rebuild(const std::vector<Record>& records, bool isBuiltIn)
    {
        user = {};
        usesDefaultTable_ = usesDefaultTable_ || isBuiltIn;
        bool result = false;
        for (const Record& record : records) {
            mfProfileKey_c key;
            result = add(user, record.name, L"", record, key) == 0;
        }
        return result;
    }

    int add(Group& group, const std::string& name, const wchar_t* stem, const Record& record,
            mfProfileKey_c& key)
    {
        for (const Group* held : {&user, &assembly})
            for (const auto& [heldKey, heldRecord] : held->records)
                if (isSame(heldRecord, record)) {
                    key = heldKey;
                    return 1;
                }
        key.name = name.c_str();
        key.source = stem[0] == L'\0' ? suffix() : CString(L" (") + stem + L")";
        key.index = nextIndex(key, key.source == suffix() ? user : assembly);
        if (const auto place = group.records.find(key); place != group.records.end())
            place->second = record;
        else
            group.records.emplace(key, record);
        group.names.push_back(displayName(key));
        return 0;
    }

    const Record* find(const mfProfileKey_c& key) const
    {
        for (const Group* group : {&assembly, &user})
            for (const auto& [heldKey, record] : group->records)
                if (heldKey == key)
                    return &record;
        return nullptr;
    }

    std::vector<CString> names() const
    {
        std::vector<CString> all;
        for (const Group* group : {&user, &assembly})
            if (fits(*group))
                all.insert(all.end(), group->names.begin(), group->names.end());
        return all;
    }

    Group user;
    Group assembly;

private:
    CString suffix() const { return usesDefaultTable_ ? L" (Default)" : L" (User)"; }

    static int nextIndex(const mfProfileKey_c& key, const Group& group)
    {
        int highest = -1;
        for (const auto& [held, record] : group.records)
            if (held.sameNameAndSource(key))
                highest = std::max(highest, held.index);
        return highest + 1;
    }

    static bool fits(const Group& group)
    {
        if (group.records.size() != group.names.size())
            return false;
        for (const auto& [key, record] : group.records)
            if (std::find(group.names.begin(), group.names.end(), displayName(key)) == group.names.end())
                return false;
        return true;
    }

    bool usesDefaultTable_ = false;
};

class ProfileManagerOracle : public testing::Test {
protected:
    ProfileManagerOracle()
    {
        std::vector<mfProfile_c*> records;
        mfSegmentTypeParser_c().readProfiles("", records);
        for (mfProfile_c* record : records) {
            builtIn_.push_back({record->name, record->definitionText});
            delete record;
        }
    }

    template <class Choice>
    Choice anyOf(const std::vector<Choice>& choices)
    {
        return choices[std::uniform_int_distribution<std::size_t>(0, choices.size() - 1)(random_)];
    }

    // Ignoring case, these are three names and six texts.
    Record anyRecord()
    {
        const std::string name = anyOf<std::string>({"A", "a", "B", "\u00C4", "\u00E4", "Cubic"});
        const std::string value = anyOf<std::string>({"x", "2*x"});
        return {name, "segmenttype(\"" + name + "\",x,x1,y1,x2,y2)y=" + value + ";returny;endsegmenttype"};
    }

    void rebuild()
    {
        const bool isBuiltIn = anyOf<int>({0, 0, 0, 0, 1}) == 1;
        std::vector<Record> records;
        std::string file;
        for (int i = anyOf<int>({1, 2, 5, 9}); i > 0; --i) {
            records.push_back(anyRecord());
            file += records.back().text + "\n";
        }
        folder_.write("SegmentTypes.txt", file);
        host_.services.designLibraryPaths = isBuiltIn ? CString() : CString(folder_.path().c_str());
        EXPECT_EQ(manager_->rebuildUserProfileMap(),
                  slow_.rebuild(isBuiltIn ? builtIn_ : records, isBuiltIn));
    }

    void addToAssembly()
    {
        const Record record = anyRecord();
        const std::string name = anyOf<std::string>({record.name, "A", "a", "\u00E4"});
        const CString stem = anyOf<CString>({L"", L"x", L"X", L"User", L"Default", L"default"});
        auto profile = std::make_unique<mfProfile_c>();
        profile->name = record.name + anyOf<std::string>({"", " (x)", " "});
        profile->definitionText = record.text;
        mfProfileKey_c key;
        mfProfileKey_c expectedKey;
        const int expected =
            slow_.add(slow_.assembly, name, stem, {profile->name, profile->definitionText}, expectedKey);
        const int status = manager_->addAssemblyProfile(name, stem, profile.get(), key);
        if (status == 0)
            profile.release();
        EXPECT_EQ(status, expected);
        EXPECT_EQ(displayName(key), displayName(expectedKey));
        EXPECT_EQ(key.index, expectedKey.index);
    }

    void expectSame()
    {
        std::vector<CString> names;
        manager_->getAllProfileNames(names);
        ASSERT_EQ(names, slow_.names());
        for (const Group* group : {&slow_.user, &slow_.assembly})
            for (const auto& [key, record] : group->records) {
                const Record* expected = slow_.find(key);
                const mfProfile_c* found = manager_->findProfile(key);
                ASSERT_NE(found, nullptr);
                EXPECT_EQ(found->name, expected->name);
                EXPECT_EQ(found->definitionText, expected->text);
                mfProfileKey_c next = key;
                next.index = 1000;
                EXPECT_EQ(manager_->findProfile(next), nullptr);
            }
    }

    TemporaryFolder folder_;
    FakeHost host_;
    std::optional<mfProfileManager_c> manager_;
    SlowRegistry slow_;
    std::vector<Record> builtIn_;
    std::mt19937 random_;
};

TEST_F(ProfileManagerOracle, RandomSessionsLeaveTheSameRegistry)
{
    for (unsigned session = 0; session < 60; ++session) {
        random_.seed(session);
        manager_.emplace();
        host_.managerAnswer = &*manager_;
        slow_ = {};
        for (int step = 0; step < 30; ++step) {
            if (anyOf<int>({0, 1, 2, 3, 4}) == 0)
                rebuild();
            else
                addToAssembly();
            ASSERT_NO_FATAL_FAILURE(expectSame()) << "session " << session << ", step " << step;
            ASSERT_FALSE(HasFailure()) << "session " << session << ", step " << step;
        }
    }
}

}  // namespace
}  // namespace mf::test
