// SPDX-License-Identifier: MIT

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <vector>

#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/operatorNew.h"

// The n-th request for memory of this program can be made to fail.
namespace {

long requestsLeft = 0;  // until one fails; none fails while it is 0

}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    if (requestsLeft > 0 && --requestsLeft == 0)
        return nullptr;
    return fromHeap(request);
}

void mf::test::release(void* memory) noexcept
{
    std::free(memory);
}

namespace {

std::unique_ptr<mfProfile_c> record(const char* name, const char* definition)
{
    auto result = std::make_unique<mfProfile_c>();
    result->name = name;
    result->definitionText = definition;
    return result;
}

// True when the n-th request fails while a record replaces another.
bool failsAt(long n)
{
    mf::test::FakeHost host;
    mfProfileManager_c manager;
    host.managerAnswer = &manager;
    mfProfileKey_c place;
    // A record displaced before, so that no room is left.
    EXPECT_EQ(manager.addAssemblyProfileFromDocument("A", false, record("A", "0").release(), place), 0);
    mfProfile_c* former = record("A", "1").release();
    EXPECT_EQ(manager.addAssemblyProfileFromDocument("A", false, former, place), 0);
    auto next = record("A", "2");
    const auto equal = record("A", "1");

    mfProfileKey_c found;
    requestsLeft = n;
    try {
        EXPECT_EQ(manager.addAssemblyProfileFromDocument("A", false, next.get(), found), 0);
        requestsLeft = 0;
        EXPECT_EQ(manager.findProfile(place), next.release());
        return false;
    } catch (const std::bad_alloc&) {
        requestsLeft = 0;
    }
    EXPECT_EQ(manager.findProfile(place), former) << "request " << n;
    EXPECT_EQ(manager.addAssemblyProfile("A", L"cam.xml", equal.get(), found), 1) << "request " << n;
    return true;
}

TEST(OutOfMemory, ProfileThatWasToBeReplacedStays)
{
    long n = 1;
    while (failsAt(n))
        ++n;
    EXPECT_GT(n, 5);
}

// True when the n-th request fails while a design library of two profiles is read.
bool failsWhileReadingAt(long n, const mf::test::TemporaryFolder& folder)
{
    mf::test::FakeHost host;
    host.services.designLibraryPaths = folder.path().c_str();
    mfProfileManager_c manager;
    host.managerAnswer = &manager;
    requestsLeft = n;
    try {
        const bool isRead = manager.rebuildUserProfileMap();
        const bool hasFailed = requestsLeft == 0;
        requestsLeft = 0;
        EXPECT_NE(isRead, hasFailed) << "request " << n;
        std::vector<CString> names;
        manager.getAllProfileNames(names);
        EXPECT_EQ(names.size(), isRead ? 2U : 0U) << "request " << n;
        return hasFailed;
    } catch (const std::bad_alloc&) {
        return true;
    }
}

// The standard library turns a failed request in the middle of a line into a failed read.
TEST(OutOfMemory, LibraryThatIsReadOnlyInPartGivesNoProfiles)
{
    const mf::test::TemporaryFolder folder;
    folder.write(
        "SegmentTypes.txt",
        "SegmentType(\"First\",x,x1,y1,x2,y2) y=y1+(y2-y1)*(x-x1)/(x2-x1); return y; endSegmentType\n"
        "SegmentType(\"Second\",x,x1,y1,x2,y2) y=y1+(y2-y1)*((x-x1)/(x2-x1))^2; return y; "
        "endSegmentType\n");
    long n = 1;
    while (failsWhileReadingAt(n, folder))
        ++n;
    EXPECT_GT(n, 50);
}

}  // namespace
