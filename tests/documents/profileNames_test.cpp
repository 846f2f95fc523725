// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "curveFixture.h"

// The name of a row's profile in a document: the display name of its key or, when
// each curve has its own profiles, its plain name. Runs with both builds of the
// library.

namespace mf::test {
namespace {

using testing::HasSubstr;

class ProfileNames : public CurveTest {
protected:
    static bool usesManager() { return mfProfileManager_c::s_UseNewProfileManager(); }
    Document document(const char* profile) const
    {
        return segmentDocument()
            .set("Segments", segment("", "", "0", profile) + segment("0", "2", "5", profile) +
                                 segment("2", "4", "1", profile))
            .set("ProfileDefinitions", definition("Mine", lineTimes("2", "Mine")));
    }
    std::string rowsNamed(const std::string& shown) const
    {
        return "0-0=0 " + shown + "; 0-2=5 " + shown + "; 2-4=1 " + shown;
    }
};

TEST_F(ProfileNames, TextOfARowIsItsKeyOrItsName)
{
    ASSERT_TRUE(readBuffer(document("Linear")));
    EXPECT_EQ(showSegments(segments()), rowsNamed(usesManager() ? "Linear (Default)" : "Linear"));
    EXPECT_DOUBLE_EQ(function.evaluate(1.0, 0), 2.5);
    EXPECT_DOUBLE_EQ(function.evaluate(3.0, 1), -2.0);
    mfSegment_c* row = nullptr;
    segments().selectSegment(1, row);
    EXPECT_EQ(row->getProfileKey() != nullptr, usesManager());
    EXPECT_EQ(utf8(row->getProfileName()), usesManager() ? "" : "Linear");
    // Without a name of its own the last row does not pass.
    segments().selectSegment(2, row);
    EXPECT_EQ(row->isInvalid(), !usesManager());
}

TEST_F(ProfileNames, UnknownNameGetsTheDefaultProfileOrNoProfile)
{
    ASSERT_TRUE(readBuffer(document("Unknown")));
    EXPECT_EQ(showSegments(segments()), rowsNamed(usesManager() ? "Cubic (Default)" : "Unknown"));
    EXPECT_DOUBLE_EQ(function.evaluate(1.0, 0), usesManager() ? 2.5 : 0.0);
}

TEST_F(ProfileNames, DefinitionsGoToTheManagerOrNowhere)
{
    ASSERT_TRUE(readBuffer(document("Mine")));
    EXPECT_EQ(showSegments(segments()), rowsNamed(usesManager() ? "Mine (Assembly)" : "Mine"));
    std::vector<CString> names;
    manager.getAllProfileNames(names);
    EXPECT_EQ(names.size(), usesManager() ? 11U : 10U);
    EXPECT_EQ(manager.hasDocumentNames(), usesManager());
}

TEST_F(ProfileNames, WrittenAsTheyAreRead)
{
    ASSERT_TRUE(readBuffer(document("Linear")));
    const std::string first = write();
    EXPECT_THAT(first, HasSubstr(usesManager() ? "<Profile>Linear (Default)</Profile>"
                                               : "<Profile>Linear</Profile>"));
    EXPECT_THAT(first, HasSubstr(usesManager() ? "<UniqueName>Linear (Default)</UniqueName>"
                                               : "<ProfileDefinitions/>"));
    ASSERT_TRUE(readBuffer(first));
    EXPECT_EQ(write(), first);
}

}  // namespace
}  // namespace mf::test
