// SPDX-License-Identifier: MIT

#include "mfcurves/host/Context.h"

#include <gmock/gmock.h>
#include <memory>
#include <thread>

#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/interfaces/QelSession.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using mf::host::Context;
using mf::host::Services;

TEST(HostContext, ReturnsItsOwnServicesAndStudy)
{
    Context host;
    EXPECT_EQ(host.getMotionServices(), &host.services());
    EXPECT_EQ(host.getMotionStudy(), &host.study());
}

TEST(HostContext, HasTheBuiltInProfilesAtFirstUse)
{
    Context host;
    QelSession_c::setMotionFunctionContext(&host);
    std::vector<CString> names;
    host.getProfileManager()->getAllProfileNames(names);
    EXPECT_EQ(names.size(), 10u);
    EXPECT_EQ(host.getProfileManager(), &host.profileManager());
}

TEST(HostContext, ReadsTheProfilesOfItsDesignLibrary)
{
    const mf::test::TemporaryFolder library;
    library.write(
        "SegmentTypes.txt",
        "Profile(\"Ramp\",x,x1,y1,x2,y2)\nval=y1+(y2-y1)*(x-x1)/(x2-x1);\nreturn val;\nendProfile\n");
    Context host;
    host.services().setDesignLibraryPaths(library.wide("").c_str());
    QelSession_c::setMotionFunctionContext(&host);
    std::vector<CString> names;
    host.getProfileManager()->getAllProfileNames(names);
    EXPECT_THAT(names, testing::ElementsAre(CString(L"Ramp (User)")));
}

// A record of the manager stays valid until the program has the profiles read again.
TEST(HostContext, ReadsTheProfilesOnce)
{
    Context host;
    QelSession_c::setMotionFunctionContext(&host);
    CString name;
    host.profileManager().defaultDisplayName(name);
    const mfProfileKey_c key = host.profileManager().getProfileKeyFromDisplayName(name);
    mfProfile_c* const record = host.profileManager().findProfile(key);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(host.getProfileManager()->findProfile(key), record);
}

TEST(HostContext, TakesItselfOutOfTheSessionWhenItEnds)
{
    {
        Context host;
        QelSession_c::setMotionFunctionContext(&host);
        EXPECT_EQ(QelSession_c::QelMotionFunctionContext(), &host);
    }
    EXPECT_EQ(QelSession_c::QelMotionFunctionContext(), nullptr);
}

TEST(HostContext, LeavesAnotherContextInTheSession)
{
    Context installed;
    QelSession_c::setMotionFunctionContext(&installed);
    {
        Context other;
    }
    EXPECT_EQ(QelSession_c::QelMotionFunctionContext(), &installed);
}

TEST(HostServices, StartWithoutLibrariesResultsAndWithFactorsOfOne)
{
    Services services;
    std::vector<CString> names;
    services.getMotionResultNames(names);
    EXPECT_EQ(services.getDesignLibraryPaths(), L"");
    EXPECT_EQ(services.getResourceLibraryPath(L"mfres"), L"");
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(services.getMotionResultCount(), 0);
    for (int kind = -1; kind <= mf::host::UnitKind_Torque + 1; ++kind)
        EXPECT_EQ(services.getUnitFactor(kind), 1.0) << kind;
}

TEST(HostServices, ReturnWhatTheProgramSet)
{
    Services services;
    services.setDesignLibraryPaths(L"/a;/b");
    services.setResourceLibraryPath(L"/a/mfres.txt");
    services.setMotionResultNames({L"Angle1", L"Force 2"});
    services.setUnitFactor(mf::host::UnitKind_Force, 2.0);

    std::vector<CString> names;
    services.getMotionResultNames(names);
    EXPECT_EQ(services.getDesignLibraryPaths(), L"/a;/b");
    EXPECT_EQ(services.getResourceLibraryPath(L"mfres"), L"/a/mfres.txt");
    EXPECT_THAT(names, testing::ElementsAre(CString(L"Angle1"), CString(L"Force 2")));
    EXPECT_EQ(services.getMotionResultCount(), 2);
    EXPECT_EQ(services.getUnitFactor(mf::host::UnitKind_Force), 2.0);
    EXPECT_EQ(services.getUnitFactor(mf::host::UnitKind_Torque), 1.0);
}

TEST(HostServices, EveryQuantityHasItsOwnUnitKind)
{
    Services services;
    EXPECT_EQ(services.getMotorUnitKind(mf::MotorDriveType_None), mf::host::UnitKind_None);
    EXPECT_EQ(services.getMotorUnitKind(mf::MotorDriveType_Displacment), mf::host::UnitKind_Displacement);
    EXPECT_EQ(services.getMotorUnitKind(mf::MotorDriveType_Velocity), mf::host::UnitKind_Velocity);
    EXPECT_EQ(services.getMotorUnitKind(mf::MotorDriveType_Acceleration), mf::host::UnitKind_Acceleration);
    EXPECT_EQ(services.getMotorUnitKind(mf::MotorDriveType_e(9)), mf::host::UnitKind_None);
    EXPECT_EQ(services.getForceTorqueUnitKind(mf::ForceTorqueType_None), mf::host::UnitKind_None);
    EXPECT_EQ(services.getForceTorqueUnitKind(mf::ForceTorqueType_Force), mf::host::UnitKind_Force);
    EXPECT_EQ(services.getForceTorqueUnitKind(mf::ForceTorqueType_Torque), mf::host::UnitKind_Torque);
    EXPECT_EQ(services.getForceTorqueUnitKind(mf::ForceTorqueType_e(9)), mf::host::UnitKind_None);
}

TEST(HostServices, SplinesComeFromTheFactoryOfTheProgram)
{
    Services services;
    mf::test::RecordingSpline* made = nullptr;
    services.setSplineFactory([&] {
        auto spline = std::make_unique<mf::test::RecordingSpline>();
        made = spline.get();
        return spline;
    });
    ISimSplineData_c* const spline = services.createSplineData();
    EXPECT_NE(spline, nullptr);
    EXPECT_EQ(spline, made);
    services.releaseSplineData(spline);
}

TEST(HostServices, SplinesAreTheHostsOwnWithoutAFactory)
{
    Services services;
    services.setSplineFactory([] { return nullptr; });
    services.setSplineFactory({});
    ISimSplineData_c* const spline = services.createSplineData();
    ASSERT_NE(spline, nullptr);
    spline->addPoint(0.0, 1.0);
    spline->addPoint(2.0, 5.0);
    EXPECT_EQ(spline->getValue(1.0), 3.0);
    services.releaseSplineData(spline);
}

TEST(HostServices, AFactoryMayHaveNoSpline)
{
    Services services;
    services.setSplineFactory([] { return nullptr; });
    EXPECT_EQ(services.createSplineData(), nullptr);
}

TEST(HostServices, AReleasedSplineIsDestroyedOnce)
{
    struct CountedSpline : mf::test::RecordingSpline {
        explicit CountedSpline(int& destroyed) : destroyed_(destroyed) {}
        ~CountedSpline() override { ++destroyed_; }
        int& destroyed_;
    };
    int destroyed = 0;
    {
        Services services;
        services.setSplineFactory([&] { return std::make_unique<CountedSpline>(destroyed); });
        ISimSplineData_c* const first = services.createSplineData();
        services.createSplineData();
        services.releaseSplineData(first);
        EXPECT_EQ(destroyed, 1);
        services.releaseSplineData(first);
        EXPECT_EQ(destroyed, 1);
    }
    EXPECT_EQ(destroyed, 2);
}

// Functions in several threads share the services of their host.
TEST(HostServices, LendSplinesToManyThreadsAtOnce)
{
    Services services;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&services] {
            for (int round = 0; round < 100; ++round) {
                ISimSplineData_c* const spline = services.createSplineData();
                spline->addPoint(0.0, round);
                EXPECT_EQ(spline->getValue(1.0), round);
                services.releaseSplineData(spline);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(HostServices, AStrangeSplineStaysWithItsOwner)
{
    Services services;
    mf::test::RecordingSpline mine;
    services.releaseSplineData(&mine);
    services.releaseSplineData(nullptr);
    EXPECT_EQ(mine.kind, 2);
}

TEST(HostStudy, TakesTheCycleAngleUnlessTheProgramSaysNo)
{
    mf::host::Study study;
    EXPECT_TRUE(study.isCycleAngleAvailable());
    study.setCycleAngleAvailable(false);
    EXPECT_FALSE(study.isCycleAngleAvailable());
}

}  // namespace
