// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/resources.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/motion/mfFunctionDataTest.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/operatorNew.h"

// Runs twice: with the library as it is, and with the one in which each curve has its
// own start-up profiles.

// The objects whose end a test waits for, and those of them that were freed, in order.
namespace {
std::vector<const void*> watched;
std::vector<const void*> deleted;
std::size_t refusedSize = 0;  // new (std::nothrow) returns null for this size

void noteFreed(const void* memory)
{
    if (std::find(watched.begin(), watched.end(), memory) != watched.end())
        deleted.push_back(memory);
}
}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    return request.mayReturnNull && request.size == refusedSize ? nullptr : fromHeap(request);
}

void mf::test::release(void* memory) noexcept
{
    noteFreed(memory);
    std::free(memory);
}

namespace {

using mf::test::FunctionData;
using testing::ElementsAre;
using testing::IsEmpty;

bool withStartUpProfiles()
{
    return !mfProfileManager_c::s_UseNewProfileManager();
}

TEST_F(FunctionData, InitializesStepByStep)
{
    host_.services.resourceLibraryPath = L"/missing/mfres.txt";
    EXPECT_TRUE(data_->initialize());

    std::vector<std::string> expected{"getMotionServices", "getResourceLibraryPath mfres",
                                      // the constructor of the data points
                                      "getMotionServices", "createSplineData"};
    if (withStartUpProfiles())
        expected.insert(expected.end(), {"getMotionServices", "getDesignLibraryPaths"});
    EXPECT_EQ(host_.calls, expected);
    EXPECT_THAT(messages_.shown, IsEmpty());
    EXPECT_NE(data_->getFunctionSegments(), nullptr);
    EXPECT_NE(data_->getFunctionDataPoints(), nullptr);
    EXPECT_NE(data_->getFunctionExpression(), nullptr);
}

TEST_F(FunctionData, ShowsOneMessageWithoutServices)
{
    host_.servicesAnswer = nullptr;
    EXPECT_FALSE(data_->initialize());
    EXPECT_THAT(messages_.shown, ElementsAre(L"Error|Failed to load the resource file|48"));
    EXPECT_THAT(host_.calls, ElementsAre("getMotionServices"));
    EXPECT_EQ(data_->getFunctionSegments(), nullptr);
    EXPECT_EQ(data_->getFunctionDataPoints(), nullptr);
    EXPECT_EQ(data_->getFunctionExpression(), nullptr);
}

TEST_F(FunctionData, TakesNoContextForNoServices)
{
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_FALSE(data_->initialize());
    EXPECT_EQ(messages_.shown.size(), 1u);
}

TEST_F(FunctionData, MayBeInitializedAfterAFailure)
{
    host_.servicesAnswer = nullptr;
    EXPECT_FALSE(data_->initialize());
    host_.servicesAnswer = &host_.services;
    EXPECT_TRUE(data_->initialize());
    EXPECT_NE(data_->getFunctionExpression(), nullptr);
}

// Records the resource module that is current when a spline is made.
class ModuleWatch : public mf::test::FakeServices {
public:
    explicit ModuleWatch(mf::test::Calls& calls) : FakeServices(calls) {}
    const mf::platform::ResourceModule* seen = nullptr;
    bool throws = false;

    ISimSplineData_c* createSplineData() override
    {
        seen = mf::platform::currentResourceModule();
        if (throws)
            throw std::runtime_error("no spline");
        return nullptr;
    }
};

TEST_F(FunctionData, MakesItsKindsUnderTheHostsResources)
{
    const mf::test::TemporaryFolder folder;
    ModuleWatch services(host_.calls);
    services.resourceLibraryPath = CString(folder.write("mfres", "1033=Zeit\n"));
    host_.servicesAnswer = &services;
    const auto* const before = mf::platform::currentResourceModule();

    EXPECT_TRUE(data_->initialize());

    ASSERT_NE(services.seen, nullptr);
    EXPECT_EQ(services.seen->string(1033), L"Zeit");
    EXPECT_EQ(mf::platform::currentResourceModule(), before) << "the module before is current again";
}

TEST_F(FunctionData, MakesItsKindsUnderANullModuleWhenThereAreNoResources)
{
    ModuleWatch services(host_.calls);
    services.seen = mf::platform::currentResourceModule();
    services.resourceLibraryPath = L"/missing";
    host_.servicesAnswer = &services;
    EXPECT_TRUE(data_->initialize());
    EXPECT_EQ(services.seen, nullptr);
    EXPECT_NE(mf::platform::currentResourceModule(), nullptr);
}

TEST_F(FunctionData, RestoresTheModuleWhenTheHostThrows)
{
    ModuleWatch services(host_.calls);
    services.throws = true;
    host_.servicesAnswer = &services;
    const auto* const before = mf::platform::currentResourceModule();
    EXPECT_THROW(data_->initialize(), std::runtime_error);
    EXPECT_EQ(mf::platform::currentResourceModule(), before);
}

// A failed allocation is not an error: that kind is then missing.
TEST_F(FunctionData, LeavesOutAKindThatCannotBeAllocated)
{
    refusedSize = sizeof(mfFunctionSegments_c);
    const bool initialized = data_->initialize();
    refusedSize = 0;
    EXPECT_TRUE(initialized);
    EXPECT_EQ(data_->getFunctionSegments(), nullptr);
    EXPECT_NE(data_->getFunctionDataPoints(), nullptr);
    EXPECT_NE(data_->getFunctionExpression(), nullptr);
    EXPECT_EQ(data_->evaluate(1.0, 0), 0.0);
}

// Without data points the expression is used.
TEST_F(FunctionData, BringsTheExpressionUpToDateWithoutDataPoints)
{
    refusedSize = sizeof(mfFunctionDataPoints_c);
    const bool initialized = data_->initialize();
    refusedSize = 0;
    EXPECT_TRUE(initialized);
    ASSERT_EQ(data_->getFunctionDataPoints(), nullptr);
    data_->setFunctionType(mf::FunctionType_DataPoints);
    EXPECT_EQ(data_->evaluate(1.0, 0), 0.0);
    expression().setParseExpression(L"time");
    expression().setMotorDependentVar(mf::MotorDriveType_Displacment);
    data_->updateForLegacyData(false);
    EXPECT_EQ(expression().getPlottingPointCount(), 100);
}

TEST_F(FunctionData, ReturnsNeutralValuesWithoutAnExpression)
{
    refusedSize = sizeof(mfFunctionExpression_c);
    const bool initialized = data_->initialize();
    refusedSize = 0;
    EXPECT_TRUE(initialized);
    data_->setFunctionType(mf::FunctionType_Expression);
    EXPECT_EQ(data_->evaluate(1.0, 0), 0.0);
    EXPECT_EQ(data_->getMotorDriveType(), mf::MotorDriveType_None);
}

TEST_F(FunctionData, MakesNewKindsWhenInitializedTwice)
{
    EXPECT_TRUE(data_->initialize());
    // The object has lost the first kinds, so the test frees them.
    const std::unique_ptr<IFunctionSegments_c> firstSegments(data_->getFunctionSegments());
    const std::unique_ptr<IFunctionDataPoints_c> firstPoints(data_->getFunctionDataPoints());
    const std::unique_ptr<IFunctionExpression_c> firstExpression(data_->getFunctionExpression());
    EXPECT_TRUE(data_->initialize());
    EXPECT_NE(data_->getFunctionSegments(), firstSegments.get());
    EXPECT_NE(data_->getFunctionDataPoints(), firstPoints.get());
    EXPECT_NE(data_->getFunctionExpression(), firstExpression.get());
    EXPECT_EQ(host_.services.lent.size(), 2u);

    std::vector<CString> names;
    data_->getProfileName(names);
    if (withStartUpProfiles())
        EXPECT_THAT(names, ElementsAre(CString(L"Linear"), CString(L"Linear")));
    else
        EXPECT_THAT(names, IsEmpty());
}

// The value at x = 1 of a row over [0, 2] that rises from 1 to 4 by its own "Linear".
// It is right only if the lists were passed in the right order.
TEST_F(FunctionData, PassesItsListsToTheSegments)
{
    EXPECT_TRUE(data_->initialize());
    std::vector<CString> names;
    data_->getProfileName(names);
    segments().setMotorDependentVar(mf::MotorDriveType_Displacment);
    segments().addSegment(new mfSegment_c(0.0, 0.0, 1.0, L""));
    segments().addSegment(new mfSegment_c(0.0, 2.0, 4.0, L"Linear"));
    segments().parseExpression(1);
    if (withStartUpProfiles()) {
        EXPECT_THAT(names, ElementsAre(CString(L"Linear")));
        EXPECT_EQ(data_->evaluate(1.0, 0), 2.5);
    } else {
        EXPECT_THAT(names, IsEmpty());
        EXPECT_THAT(host_.calls, testing::Not(testing::Contains("getDesignLibraryPaths")));
        EXPECT_EQ(data_->evaluate(1.0, 0), 0.0) << "the host of this test has no profile manager";
    }
}

// The end

TEST_F(FunctionData, DeletesItsKindsInOrder)
{
    EXPECT_TRUE(data_->initialize());
    watched = {data_->getFunctionSegments(), data_->getFunctionDataPoints(), data_->getFunctionExpression()};
    deleted.clear();
    deleted.reserve(watched.size());
    data_.reset();
    EXPECT_EQ(deleted, watched);
    watched.clear();
}

TEST_F(FunctionData, ReleasesTheSplineWhenItEnds)
{
    EXPECT_TRUE(data_->initialize());
    EXPECT_EQ(host_.services.lent.size(), 1u);
    host_.calls.clear();
    data_.reset();
    EXPECT_THAT(host_.calls, ElementsAre("getMotionServices", "releaseSplineData"));
    EXPECT_EQ(host_.services.takenBack.size(), 1u);
}

TEST_F(FunctionData, EndsWithoutAContext)
{
    host_.services.givesSplines = false;
    EXPECT_TRUE(data_->initialize());
    QelSession_c::setMotionFunctionContext(nullptr);
    data_.reset();
}

}  // namespace
