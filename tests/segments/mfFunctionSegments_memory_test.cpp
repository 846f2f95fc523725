// SPDX-License-Identifier: MIT

// Each allocation fails in turn. After any failure a table can be destroyed, leaks nothing
// and frees nothing twice, and a failed edit changes no row.

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <ostream>
#include <string>

#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/FakeHost.h"
#include "tests/support/operatorNew.h"

namespace {

long theAllocationsLeft = -1;  // negative: without a limit

}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    if (theAllocationsLeft == 0)
        return nullptr;
    if (theAllocationsLeft > 0)
        --theAllocationsLeft;
    return fromHeap(request);
}

void mf::test::release(void* memory) noexcept
{
    std::free(memory);
}

using namespace mf::test;

namespace {

// Limits the allocations while this object exists.
class Allocations {
public:
    explicit Allocations(long count) { theAllocationsLeft = count; }
    ~Allocations() { theAllocationsLeft = -1; }
    Allocations(const Allocations&) = delete;
    Allocations& operator=(const Allocations&) = delete;
};

struct Work {
    const char* name;
    void (*run)(mfFunctionSegments_c& table);
    bool isEdit;  // the rows stay as they are when it fails
};

void PrintTo(const Work& work, std::ostream* os)
{
    *os << work.name;
}

const CString kLongName = L"a name that needs memory of its own";

void lookAtSamples(const mfFunctionSegments_c& table)
{
    for (int row = 0; row < table.getSegmentCount(); ++row)
        rowOf(table, row).getPlottingData0();
}

const Work kWorks[] = {
    {"Add",
     [](mfFunctionSegments_c& table) {
         auto segment = std::make_unique<mfSegment_c>(3.0, 4.0, 5.0, kLongName);
         table.addSegment(segment.get());
         segment.release();
     },
     true},
    {"InsertInside",
     [](mfFunctionSegments_c& table) {
         auto segment = std::make_unique<mfSegment_c>(3.0, 4.0, 5.0, kLongName);
         table.insertSegment(2, segment.get());
         segment.release();
     },
     true},
    {"InsertAtTheEnd",
     [](mfFunctionSegments_c& table) {
         auto segment = std::make_unique<mfSegment_c>(3.0, 4.0, 5.0, kLongName);
         table.insertSegment(table.getSegmentCount(), segment.get());
         segment.release();
     },
     true},
    {"MoveEnd", [](mfFunctionSegments_c& table) { table.modifySegment(1, kEndXColumn, 0.0, 9.0, 0.0, L""); },
     true},
    {"MoveStart",
     [](mfFunctionSegments_c& table) { table.modifySegment(3, kStartXColumn, 0.5, 0.0, 0.0, L""); }, true},
    {"Delete", [](mfFunctionSegments_c& table) { table.deleteSegment(2); }, true},
    {"Copy",
     [](mfFunctionSegments_c& table) {
         mfFunctionSegments_c copied;
         copied.Copy(&table);
     },
     true},
    {"CopyInto",
     [](mfFunctionSegments_c& table) {
         mfFunctionSegments_c source;
         fill(source, "0:0 0:1=2/A 1:2=3/B");
         table.Copy(&source);
     },
     false},
    {"CopyARow",
     [](mfFunctionSegments_c& table) {
         mfSegment_c copied;
         copied.copy(&rowOf(table, 1));
     },
     true},
    {"SetAKeyTwice",
     [](mfFunctionSegments_c& table) {
         const mfProfileKey_c key = *rowOf(table, 1).getProfileKey();
         rowOf(table, 1).setProfileKey(key);
         rowOf(table, 1).setProfileKey(*rowOf(table, 1).getProfileKey());
     },
     true},
    {"Parse",
     [](mfFunctionSegments_c& table) {
         for (int row = 0; row < table.getSegmentCount(); ++row)
             table.parseExpression(row);
     },
     true},
    {"ParseAndSample",
     [](mfFunctionSegments_c& table) {
         table.setMotorDependentVar(mf::MotorDriveType_Displacment);
         for (int row = 0; row < table.getSegmentCount(); ++row)
             table.parseExpression(row);
         table.calculateValue();
         lookAtSamples(table);
     },
     true},
    {"SampleAgain",
     [](mfFunctionSegments_c& table) {
         rowOf(table, 1).setProfileExpr(L"x^2+sin(3*x)+0.125");
         rowOf(table, 1).setProfileIndepVar(L"x");
         for (const auto quantity : {mf::MotorDriveType_Displacment, mf::MotorDriveType_Velocity}) {
             table.setMotorDependentVar(quantity);
             table.calculateValue(1);
             lookAtSamples(table);
         }
     },
     true},
    {"ListProfiles",
     [](mfFunctionSegments_c& table) {
         std::vector<CString> names;
         std::vector<mfProfile_c*> profiles;
         table.getProfilesToSave(names, profiles);
     },
     true},
    {"OlderProfiles",
     [](mfFunctionSegments_c& table) {
         table.initializeSegment({kLongName}, {{kLongName, L"+", L"y1"}}, {L"x"}, {L"x1"}, {L"y1"}, {L"x2"},
                                 {L"y2"});
         std::vector<CString> tokens = table.getProfileExpr(kLongName);
         table.replace(tokens, kLongName, L"-1.000000");
     },
     true},
};

class OutOfMemory : public testing::TestWithParam<Work> {
protected:
    OutOfMemory()
    {
        host.managerAnswer = &manager;
        EXPECT_TRUE(manager.rebuildUserProfileMap());
    }

    FakeHost host;
    mfProfileManager_c manager;
};

// True when the work was completed with that many allocations.
bool finishes(const Work& work, mfFunctionSegments_c& table, long allocations)
{
    const Allocations limit(allocations);
    try {
        work.run(table);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

TEST_P(OutOfMemory, LeavesTheTableUsable)
{
    const char* const rows = "0:0=1 0:1=2/A 2:3=4/B 3:5=6/C";
    bool finished = false;
    long allocations = 0;
    for (; !finished; ++allocations) {
        ASSERT_LT(allocations, 100'000);
        mfFunctionSegments_c table;
        fill(table, rows);
        rowOf(table, 1).setProfileKey(manager.getProfileKeyFromDisplayName(L"Linear (Default)"));

        finished = finishes(GetParam(), table, allocations);

        if (GetParam().isEdit && !finished) {
            EXPECT_EQ(showAll(table), "0:0=1/ 0:1=2/A 2:3=4/B 3:5=6/C");
        }
        // The failed work can be repeated.
        EXPECT_TRUE(finishes(GetParam(), table, -1));
    }
    EXPECT_GT(allocations, 1) << "nothing was allocated";
}

INSTANTIATE_TEST_SUITE_P(Segments, OutOfMemory, testing::ValuesIn(kWorks),
                         [](const auto& tested) { return tested.param.name; });

class LateSamples : public testing::Test {
protected:
    LateSamples()
    {
        fill(table, "0:0 0:99 99:99=5");
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
        for (int row = 1; row <= 2; ++row) {
            rowOf(table, row).setProfileExpr(L"x^4");
            rowOf(table, row).setProfileIndepVar(L"x");
        }
    }

    mfFunctionSegments_c table;
};

TEST_F(LateSamples, NeedNoMemoryUntilTheFirstUse)
{
    {
        const Allocations none(0);
        EXPECT_NO_THROW(table.calculateValue());
        EXPECT_THROW(rowOf(table, 1).getPlottingData0(), std::bad_alloc);
        EXPECT_THROW(rowOf(table, 2).getPlottingData3(), std::bad_alloc);
    }
    EXPECT_EQ(rowOf(table, 1).getPlottingData3()[2].y(), 48.0);
    const Allocations none(0);
    for (int order = 0; order <= 3; ++order)
        EXPECT_NO_THROW(rowOf(table, 1).getPlottingData(order));
}

TEST_F(LateSamples, AreComputedAtTheFirstUseWithEnoughMemory)
{
    const mfSegment_c& row = rowOf(table, 1);
    table.calculateValue();
    long allocations = 0;
    for (const mfPoint2D_c* points = nullptr; points == nullptr; ++allocations) {
        ASSERT_LT(allocations, 1000);
        const Allocations limit(allocations);
        try {
            points = row.getPlottingData1();
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(row.getPlottingDataLength(), 100);
        }
    }
    EXPECT_GT(allocations, 4);  // at least the arrays
    const double atTwo[] = {16.0, 32.0, 48.0, 48.0};
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(row.getPlottingData(order)[2].y(), atTwo[order]);
}

}  // namespace
