// SPDX-License-Identifier: MIT

#include "mfcurves/segments/mfSegment.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <ostream>
#include <type_traits>

#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "tests/support/FakeHost.h"

using namespace mf::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kMotor = 0;
constexpr int kForceOrTorque = 1;

mfProfileKey_c keyNamed(const wchar_t* name, int index = 0)
{
    mfProfileKey_c key;
    key.name = name;
    key.source = L" (Default)";
    key.index = index;
    return key;
}

TEST(NewSegment, SpansZeroToOne)
{
    mfSegment_c segment;
    EXPECT_EQ(segment.getStartX(), 0.0);
    EXPECT_EQ(segment.getEndX(), 1.0);
    EXPECT_EQ(segment.getValue(), 0.0);
    EXPECT_EQ(segment.getProfileName(), L"");
    EXPECT_EQ(segment.getProfileExpr(), L"");
    EXPECT_EQ(segment.getProflieIndepVar(), L"");
    EXPECT_EQ(segment.getProfileKey(), nullptr);
    EXPECT_EQ(segment.getProfile(), nullptr);
    EXPECT_EQ(segment.getDisplayName(), L"");
    EXPECT_FALSE(segment.isInvalid());
    EXPECT_EQ(segment.getPlottingDataCount(), 1);
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(segment.getPlottingData(order), nullptr);
}

TEST(NewSegment, IsAPlainClassAsIsItsCalculator)
{
    EXPECT_FALSE(std::is_polymorphic_v<mfSegment_c>);
    EXPECT_FALSE(std::is_polymorphic_v<mfSegmentCalculator_c>);
}

TEST(NewSegment, TakesNumbersAndName)
{
    const mfSegment_c segment(1.0, 2.0, 3.0, L"Cubic");
    EXPECT_EQ(segment.getStartX(), 1.0);
    EXPECT_EQ(segment.getEndX(), 2.0);
    EXPECT_EQ(segment.getValue(), 3.0);
    EXPECT_EQ(segment.getProfileName(), L"Cubic");
    EXPECT_EQ(segment.getPlottingDataCount(), 1);
}

TEST(Segment, StoresEveryNumber)
{
    mfSegment_c segment;
    segment.setStartX(std::numeric_limits<double>::quiet_NaN());
    segment.setEndX(-std::numeric_limits<double>::infinity());
    segment.setValue(-0.0);
    segment.setProfileName(L"name");
    segment.setProfileExpr(L"expression");
    segment.setProfileIndepVar(L"variable");
    segment.setPlottingDataCount(-5);
    EXPECT_TRUE(std::isnan(segment.getStartX()));
    EXPECT_EQ(segment.getEndX(), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::signbit(segment.getValue()));
    EXPECT_EQ(segment.getProfileName(), L"name");
    EXPECT_EQ(segment.getProfileExpr(), L"expression");
    EXPECT_EQ(segment.getProflieIndepVar(), L"variable");
    EXPECT_EQ(segment.getPlottingDataCount(), -5);
}

// ----------------------------------------------------------------------- keys

class SegmentKey : public testing::Test {
protected:
    FakeHost host;
    mfSegment_c segment;
    mfProfile_c record;
};

TEST_F(SegmentKey, IsCopiedAndShown)
{
    const mfProfileKey_c key = keyNamed(L"Cubic", 2);
    segment.setProfileKey(key);
    EXPECT_NE(segment.getProfileKey(), &key);
    EXPECT_TRUE(*segment.getProfileKey() == key);
    EXPECT_EQ(segment.getDisplayName(), L"Cubic (Default)<2>");
    EXPECT_THAT(host.calls, ElementsAre("getProfileManager"));
}

TEST_F(SegmentKey, DiscardsTheEarlierRecord)
{
    segment.setProfile(&record);
    segment.setProfileKey(keyNamed(L"Cubic"));  // the host has no manager
    EXPECT_EQ(segment.getProfile(), nullptr);
}

TEST_F(SegmentKey, StaysWhenARecordIsSet)
{
    segment.setProfileKey(keyNamed(L"Cubic"));
    segment.setProfile(&record);
    EXPECT_EQ(segment.getProfile(), &record);
    EXPECT_TRUE(*segment.getProfileKey() == keyNamed(L"Cubic"));
}

TEST_F(SegmentKey, OfEmptyNameIsNotLookedUp)
{
    segment.setProfile(&record);
    segment.setProfileKey(keyNamed(L""));
    EXPECT_TRUE(*segment.getProfileKey() == keyNamed(L""));
    EXPECT_EQ(segment.getProfile(), nullptr);
    EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(SegmentKey, IsLookedUpInTheManager)
{
    mfProfileManager_c manager;
    host.managerAnswer = &manager;
    ASSERT_TRUE(manager.rebuildUserProfileMap());
    segment.setProfileKey(keyNamed(L"linear"));  // keys have no case
    ASSERT_NE(segment.getProfile(), nullptr);
    EXPECT_EQ(segment.getProfile()->name, "Linear");
    segment.setProfileKey(keyNamed(L"Unknown"));
    EXPECT_EQ(segment.getProfile(), nullptr);
}

TEST_F(SegmentKey, OfTheSegmentItselfMayBePassed)
{
    segment.setProfileKey(keyNamed(L"Cubic", 1));
    segment.setProfileKey(*segment.getProfileKey());
    EXPECT_TRUE(*segment.getProfileKey() == keyNamed(L"Cubic", 1));
}

TEST(SegmentKeyWithoutAHost, LeavesTheRecordUnknown)
{
    mfSegment_c segment;
    segment.setProfileKey(keyNamed(L"Cubic"));
    EXPECT_EQ(segment.getProfile(), nullptr);
    EXPECT_EQ(segment.getDisplayName(), L"Cubic (Default)");
}

// -------------------------------------------------------------------- copying

TEST_F(SegmentKey, CopyCopiesNumbersTextsKeyAndPlannedCount)
{
    mfSegment_c source(1.0, 2.0, 3.0, L"name");
    source.setProfileExpr(L"2*x");
    source.setProfileIndepVar(L"x");
    source.setPlottingDataCount(50);
    source.initializePlottingData(kMotor, mf::MotorDriveType_Displacment);
    source.setProfileKey(keyNamed(L"Cubic"));
    source.setProfile(&record);
    ICalculator* compiled = source.getCalculator(0);
    ASSERT_NE(compiled, nullptr);

    EXPECT_TRUE(segment.copy(&source));

    EXPECT_EQ(segment.getStartX(), 1.0);
    EXPECT_EQ(segment.getEndX(), 2.0);
    EXPECT_EQ(segment.getValue(), 3.0);
    EXPECT_EQ(segment.getProfileName(), L"name");
    EXPECT_EQ(segment.getProfileExpr(), L"2*x");
    EXPECT_EQ(segment.getProflieIndepVar(), L"x");
    EXPECT_EQ(segment.getPlottingDataCount(), 50);
    EXPECT_TRUE(*segment.getProfileKey() == keyNamed(L"Cubic"));
    EXPECT_NE(segment.getProfileKey(), source.getProfileKey());
    EXPECT_EQ(segment.getProfile(), nullptr);  // the key no longer resolves
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(segment.getPlottingData(order), nullptr);
    EXPECT_NE(segment.getCalculator(0), compiled);
}

TEST_F(SegmentKey, CopyFromASegmentWithoutAKeyKeepsTheTargets)
{
    segment.setProfileKey(keyNamed(L"Cubic"));
    segment.setProfile(&record);
    mfSegment_c source;
    EXPECT_TRUE(segment.copy(&source));
    EXPECT_TRUE(*segment.getProfileKey() == keyNamed(L"Cubic"));
    EXPECT_EQ(segment.getProfile(), &record);
}

TEST_F(SegmentKey, CopyOfNullChangesNothing)
{
    segment.setStartX(0.5);
    EXPECT_FALSE(segment.copy(nullptr));
    EXPECT_EQ(segment.getStartX(), 0.5);
}

TEST_F(SegmentKey, CopyOfItselfChangesNothing)
{
    segment.setProfileKey(keyNamed(L"Cubic"));
    segment.setProfile(&record);
    EXPECT_TRUE(segment.copy(&segment));
    EXPECT_EQ(segment.getProfile(), &record);
}

// Only one of two such objects may be destroyed, so an empty one is assigned to the copy,
// which then shares nothing.
TEST_F(SegmentKey, CopyConstructionAndAssignmentShareAllPointers)
{
    const mfSegment_c bare;
    segment.setEndX(5.0);
    segment.setProfileExpr(L"2*x");
    segment.setProfileIndepVar(L"x");
    segment.setProfileKey(keyNamed(L"Cubic"));
    segment.setProfile(&record);
    segment.initializePlottingData(kMotor, mf::MotorDriveType_Displacment);
    ICalculator* compiled = segment.getCalculator(0);

    mfSegment_c shared(segment);
    EXPECT_EQ(shared.getEndX(), 5.0);
    EXPECT_EQ(shared.getProfileExpr(), L"2*x");
    EXPECT_EQ(shared.getProfileKey(), segment.getProfileKey());
    EXPECT_EQ(shared.getProfile(), &record);
    EXPECT_EQ(shared.getPlottingData3(), segment.getPlottingData3());
    shared.setProfileExpr(L"3*x");  // its calculators still use the text of the source
    EXPECT_EQ(shared.getCalculator(0), compiled);

    shared = bare;
    EXPECT_EQ(shared.getEndX(), 1.0);
    EXPECT_EQ(shared.getProfileKey(), nullptr);
    EXPECT_EQ(shared.getPlottingData3(), nullptr);
}

TEST_F(SegmentKey, CopyConstructionAndAssignmentCopyEveryField)
{
    const mfSegment_c bare;
    mfFunctionSegments_c table;
    auto* source = new mfSegment_c(0.0, 0.0, 3.0, L"name");
    table.addSegment(source);
    source->setStartX(1.0);
    source->setEndX(2.0);
    source->setProfileExpr(L"2*x");
    source->setProfileIndepVar(L"x");
    source->setProfileKey(keyNamed(L"Cubic"));
    source->setProfile(&record);
    table.checkInvalid(0);
    table.setMotorDependentVar(mf::MotorDriveType_Velocity);
    table.calculateValue(0);

    mfSegment_c constructed(*source);
    mfSegment_c assigned;
    assigned = *source;
    for (mfSegment_c* shared : {&constructed, &assigned}) {
        EXPECT_EQ(shared->getStartX(), 1.0);
        EXPECT_EQ(shared->getEndX(), 2.0);
        EXPECT_EQ(shared->getValue(), 3.0);
        EXPECT_EQ(shared->getProfileName(), L"name");
        EXPECT_EQ(shared->getProfileExpr(), L"2*x");
        EXPECT_EQ(shared->getProflieIndepVar(), L"x");
        EXPECT_EQ(shared->getProfileKey(), source->getProfileKey());
        EXPECT_EQ(shared->getProfile(), &record);
        EXPECT_TRUE(shared->isInvalid());
        EXPECT_EQ(shared->getPlottingDataCount(), 100);
        EXPECT_EQ(shared->getPlottingDataLength(), 100);
        EXPECT_EQ(shared->getPlottingDataOrders(), 2);
        for (int order = 0; order <= 3; ++order)
            EXPECT_EQ(shared->getPlottingData(order), source->getPlottingData(order)) << order;
        EXPECT_EQ(shared->getCalculator(0), source->getCalculator(0));
        *shared = bare;  // so that it shares nothing
    }
}

TEST_F(SegmentKey, CopyConstructionSharesAFormulaThatWasNotUsedYet)
{
    const mfSegment_c bare;
    mfFunctionSegments_c table;
    auto* source = new mfSegment_c;
    table.addSegment(source);
    source->setProfileExpr(L"2*x");
    source->setProfileIndepVar(L"x");
    table.calculateValue(0);
    source->initializePlottingData(kMotor, mf::MotorDriveType_None);  // deletes only the samples

    mfSegment_c shared(*source);
    ASSERT_NE(shared.getCalculator(0), nullptr);
    EXPECT_EQ(shared.getCalculator(0), source->getCalculator(0));
    shared = bare;
}

TEST_F(SegmentKey, AssignmentOfItselfChangesNothing)
{
    segment.setEndX(5.0);
    segment.setProfileExpr(L"2*x");
    segment.setProfileIndepVar(L"x");
    segment.setProfileKey(keyNamed(L"Cubic"));
    segment.initializePlottingData(kMotor, mf::MotorDriveType_Displacment);
    const mfPoint2D_c* third = segment.getPlottingData3();
    ICalculator* compiled = segment.getCalculator(0);
    const mfSegment_c& same = segment;
    segment = same;
    EXPECT_EQ(segment.getEndX(), 5.0);
    EXPECT_TRUE(*segment.getProfileKey() == keyNamed(L"Cubic"));
    EXPECT_EQ(segment.getPlottingData3(), third);
    EXPECT_EQ(segment.getCalculator(0), compiled);
}

// ------------------------------------------------------------------- plotting

struct BuildCase {
    const char* name;
    int motionObjectType;
    int kind;
    int derivatives;
};

void PrintTo(const BuildCase& c, std::ostream* os)
{
    *os << "object " << c.motionObjectType << ", quantity " << c.kind;
}

const BuildCase kBuildCases[] = {
    {"MotorDisplacement", kMotor, mf::MotorDriveType_Displacment, 3},
    {"MotorVelocity", kMotor, mf::MotorDriveType_Velocity, 2},
    {"MotorAcceleration", kMotor, mf::MotorDriveType_Acceleration, 1},
    {"MotorWithoutQuantity", kMotor, mf::MotorDriveType_None, 0},
    {"MotorOfUnknownQuantity", kMotor, 4, 0},
    {"Force", kForceOrTorque, mf::MotorDriveType_None, 1},
    {"ForceWithAMotorsQuantity", kForceOrTorque, mf::MotorDriveType_Displacment, 1},
    {"UnknownObject", 2, mf::MotorDriveType_Displacment, 0},
    {"NegativeObject", -1, mf::MotorDriveType_Displacment, 0},
};

class InitializePlottingData : public testing::TestWithParam<BuildCase> {
protected:
    static void build(mfSegment_c& segment, int motionObjectType, int kind)
    {
        segment.initializePlottingData(motionObjectType, static_cast<mf::MotorDriveType_e>(kind));
    }
};

TEST_P(InitializePlottingData, BuildsValueAndDerivatives)
{
    const BuildCase& c = GetParam();
    mfSegment_c segment;
    segment.setPlottingDataCount(3);
    build(segment, c.motionObjectType, c.kind);

    mfPoint2D_c* const arrays[] = {segment.getPlottingData0(), segment.getPlottingData1(),
                                   segment.getPlottingData2(), segment.getPlottingData3()};
    for (int order = 0; order <= 3; ++order) {
        EXPECT_EQ(segment.getPlottingData(order), arrays[order]);
        ASSERT_EQ(arrays[order] != nullptr, order <= c.derivatives) << "order " << order;
        for (int i = 0; order <= c.derivatives && i < 3; ++i) {
            EXPECT_EQ(arrays[order][i].x(), 0.0);
            EXPECT_EQ(arrays[order][i].y(), 0.0);
        }
    }
    EXPECT_EQ(segment.getPlottingDataLength(), 3);
    EXPECT_EQ(segment.getPlottingDataOrders(), c.derivatives);
}

TEST_P(InitializePlottingData, DoesNotChangeOtherDerivatives)
{
    const BuildCase& c = GetParam();
    mfSegment_c segment;
    segment.setPlottingDataCount(2);
    build(segment, kMotor, mf::MotorDriveType_Displacment);
    for (int order = 0; order <= 3; ++order)
        segment.getPlottingData(order)[1] = mfPoint2D_c(7.0, order);

    segment.setPlottingDataCount(4);
    EXPECT_EQ(segment.getPlottingData0()[1].x(), 7.0);  // setting the count builds nothing
    build(segment, c.motionObjectType, c.kind);

    for (int order = 0; order <= 3; ++order) {
        const bool built = order <= c.derivatives;
        EXPECT_EQ(segment.getPlottingData(order)[1].x(), built ? 0.0 : 7.0) << "order " << order;
        EXPECT_EQ(segment.getPlottingData(order)[1].y(), built ? 0.0 : order) << "order " << order;
    }
    EXPECT_EQ(segment.getPlottingDataLength(), 4);
}

TEST_P(InitializePlottingData, BuildsNoPointsForACountBelowOne)
{
    const BuildCase& c = GetParam();
    for (const int count : {0, -1, std::numeric_limits<int>::min()}) {
        mfSegment_c segment;
        segment.setPlottingDataCount(2);
        build(segment, c.motionObjectType, c.kind);
        segment.setPlottingDataCount(count);
        build(segment, c.motionObjectType, c.kind);
        for (int order = 0; order <= 3; ++order)
            EXPECT_EQ(segment.getPlottingData(order), nullptr);
        EXPECT_EQ(segment.getPlottingDataLength(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Segment, InitializePlottingData, testing::ValuesIn(kBuildCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(PlottingData, OutsideTheOrdersIsNull)
{
    mfSegment_c segment;
    segment.initializePlottingData(kMotor, mf::MotorDriveType_Displacment);
    for (const int order : {-1, 4, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(segment.getPlottingData(order), nullptr);
}

}  // namespace
