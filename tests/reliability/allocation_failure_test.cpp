// SPDX-License-Identifier: MIT

// The allocator of this program fails at the n-th request, or from the n-th on, for every
// request of a session. Each call then succeeds or passes the exception on to the
// host, the objects can still be destroyed, nothing is leaked, and nothing is printed.

#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlmemory.h>
#include <new>
#include <string>
#include <tuple>

#include "mfcurves/mfcurves.h"
#include "tests/reliability/sessions.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/operatorNew.h"

namespace {

// Requests left until one fails; none fails while it is 0.
long requestsLeft = 0;
bool failsFromThenOn = false;
bool hasFailed = false;
long liveBlocks = 0;
long linesPrinted = 0;  // by the XML engine

bool failsNow()
{
    if (requestsLeft == 0 || --requestsLeft > 0)
        return false;
    hasFailed = true;
    if (failsFromThenOn)
        requestsLeft = 1;
    return true;
}

// The XML engine's requests use the same allocator as those of C++.
void* allocate(std::size_t size)
{
    return mf::test::allocate({size, alignof(std::max_align_t), false, true});
}

void* reallocate(void* block, std::size_t size)
{
    if (block == nullptr)
        return allocate(size);
    return failsNow() ? nullptr : std::realloc(block, size);
}

char* duplicate(const char* text)
{
    const std::size_t size = std::strlen(text) + 1;
    auto* const copy = static_cast<char*>(allocate(size));
    return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    if (failsNow())
        return nullptr;
    void* const block = fromHeap(request);
    if (block != nullptr)
        ++liveBlocks;
    return block;
}

void mf::test::release(void* memory) noexcept
{
    if (memory != nullptr)
        --liveBlocks;
    std::free(memory);
}

namespace {

void countLine(void* /*context*/, const char* /*format*/, ...)
{
    ++linesPrinted;
}

// Whole sessions run thousands of times, so their design library is short.
const char* const kShortLibrary =
    "SegmentType(\"Cubic\",x,x1,y1,x2,y2)\nxbar=(x-x1)/(x2-x1);\n"
    "y=y1+(y2-y1)*(3*xbar^2-2*xbar^3);\nreturn y;\nendSegmentType\n";

// A whole session, from the host's first object to its last. Without folders of a design
// library it has the built-in profiles.
void runSession(const mf::test::Work& work, const CString& libraryPaths)
{
    mf::host::Context host;
    host.services().setDesignLibraryPaths(libraryPaths);
    QelSession_c::setMotionFunctionContext(&host);
    if (host.getProfileManager() != nullptr)
        host.getProfileManager()->rebuildUserProfileMap();
    mfFunctionData_c function;
    if (function.initialize() && mf::test::isWhole(function))
        work.run(function);
}

class AllocationFailure : public testing::TestWithParam<std::tuple<mf::test::Work, bool>> {
protected:
    static void SetUpTestSuite()
    {
        xmlMemSetup(mf::test::release, allocate, reallocate, duplicate);
        xmlSetGenericErrorFunc(nullptr, countLine);
    }

    // Runs the session of the parameter once for each request, which fails.
    static void failEachRequest(const CString& libraryPaths)
    {
        const auto& [work, fromThenOn] = GetParam();
        failsFromThenOn = fromThenOn;
        // Makes what is made once per process, and fills the engine's cache of compiled texts.
        runSession(work, libraryPaths);
        runSession(work, libraryPaths);
        xmlResetLastError();  // the XML engine keeps a copy of its last error for the thread

        long failures = 0;
        for (long request = 1;; ++request) {
            const long liveBefore = liveBlocks;
            hasFailed = false;
            requestsLeft = request;
            try {
                runSession(work, libraryPaths);
            } catch (const std::bad_alloc&) {
                // CMemoryException is one too.
            }
            requestsLeft = 0;
            xmlResetLastError();
            ASSERT_EQ(liveBlocks, liveBefore) << "after request " << request << " failed";
            if (!hasFailed)
                break;
            ++failures;
        }
        EXPECT_GT(failures, 50);
        EXPECT_EQ(linesPrinted, 0);
    }
};

TEST_P(AllocationFailure, SucceedsOrThrowsAndLeaksNothing)
{
    const mf::test::TemporaryFolder folder;
    folder.write("SegmentTypes.txt", kShortLibrary);
    failEachRequest(folder.path().c_str());
}

std::string nameOf(const testing::TestParamInfo<std::tuple<mf::test::Work, bool>>& info)
{
    const auto& [work, fromThenOn] = info.param;
    return std::string(work.name) + (fromThenOn ? "FromThenOn" : "");
}

INSTANTIATE_TEST_SUITE_P(Sessions, AllocationFailure,
                         testing::Combine(testing::ValuesIn(mf::test::kWork), testing::Bool()), nameOf);

using AllocationFailureWithBuiltInProfiles = AllocationFailure;

TEST_P(AllocationFailureWithBuiltInProfiles, SucceedsOrThrowsAndLeaksNothing)
{
    failEachRequest(L"");
}

const mf::test::Work kStart = {"Start", [](mfFunctionData_c&) {}};

INSTANTIATE_TEST_SUITE_P(Sessions, AllocationFailureWithBuiltInProfiles,
                         testing::Combine(testing::Values(kStart), testing::Bool()), nameOf);

}  // namespace
