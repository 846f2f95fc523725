// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

// A profile manager with its host and its design library, and profiles to put into it.

namespace profile_test {

using Names = std::vector<CString>;

inline const Names kBuiltInNames = {
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

// One definition; `value` makes definitions of one name different.
inline std::string law(const std::string& name, const std::string& value = "x")
{
    return "SegmentType(\"" + name + "\",x,x1,y1,x2,y2)y=" + value + ";return y;endSegmentType\n";
}

inline std::unique_ptr<mfProfile_c> record(const std::string& name, const std::string& definition)
{
    auto result = std::make_unique<mfProfile_c>();
    result->name = name;
    result->definitionText = definition;
    return result;
}

inline mfProfileKey_c key(const wchar_t* name, const wchar_t* source, std::int32_t index = 0)
{
    mfProfileKey_c result;
    result.name = name;
    result.source = source;
    result.index = index;
    return result;
}

inline std::string shown(const mfProfileKey_c& k)
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
        host_.services.designLibraryPaths = folder_.list(names).c_str();
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

    mf::test::TemporaryFolder folder_;
    mf::test::FakeHost host_;
    mfProfileManager_c manager_;
};

}  // namespace profile_test
