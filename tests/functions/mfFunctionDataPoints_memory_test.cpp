// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <utility>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/interfaces/QelSession.h"
#include "tests/functions/dataPointTables.h"
#include "tests/support/operatorNew.h"

// All memory of this program is allocated here: blocks and bytes are counted, and a test
// can make one of the next allocations fail. Each block is preceded by its size.
namespace {

constexpr std::size_t kPrefix = 64;  // leaves blocks aligned for all that is allocated here

long blocksOut = 0;
long bytesOut = 0;
long allocationsUntilFailure = -1;  // negative: none fails

// What a common allocator uses for a block: eight bytes of its own, in steps of 16.
long bytesOf(std::size_t size)
{
    return static_cast<long>(std::max<std::size_t>((size + 8 + 15) / 16 * 16, 32));
}

}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    if (allocationsUntilFailure >= 0 && allocationsUntilFailure-- == 0)
        return nullptr;
    if (request.alignment > kPrefix)
        return nullptr;
    void* const block = std::aligned_alloc(kPrefix, (request.size + 2 * kPrefix - 1) / kPrefix * kPrefix);
    if (block == nullptr)
        return nullptr;
    ::new (block) std::size_t(request.size);
    ++blocksOut;
    bytesOut += bytesOf(request.size);
    return static_cast<char*>(block) + kPrefix;
}

void mf::test::release(void* memory) noexcept
{
    if (memory == nullptr)
        return;
    void* const block = static_cast<char*>(memory) - kPrefix;
    --blocksOut;
    bytesOut -= bytesOf(*static_cast<std::size_t*>(block));
    std::free(block);
}

namespace {

constexpr int kEdits = 1'000'000;
constexpr int kMostRows = 12;

// The rows ascend without touching, and the spline has exactly their points.
testing::AssertionResult isSound(mfFunctionDataPoints_c& function)
{
    const std::map<double, double>& points = function.getSplineData()->getPointMap();
    auto point = points.begin();
    const mfDataPoints_c* before = nullptr;
    for (int i = 0; i < function.getDataPointsCount(); ++i) {
        mfDataPoints_c* row = nullptr;
        if (!function.selectDataPoint(i, row) || row->getPointCount() != 1)
            return testing::AssertionFailure() << "row " << i << " has not one point";
        if (before != nullptr && !(before->getEndX() < row->getStartX()))
            return testing::AssertionFailure() << "row " << i << " does not lie above the row before it";
        before = row;
        if (point == points.end() || *point != std::pair<const double, double>(row->getX(0), row->getY(0)))
            return testing::AssertionFailure() << "the spline does not have the point of row " << i;
        ++point;
    }
    if (point != points.end())
        return testing::AssertionFailure() << "the spline has more points than the table";
    return testing::AssertionSuccess();
}

class Editor {
public:
    void edit(mfFunctionDataPoints_c& function)
    {
        const int count = function.getDataPointsCount();
        const int row = number(-1, count);
        switch (count > kMostRows ? 0 : number(0, 9)) {
            case 0:
                function.deleteDataPoint(row);
                break;
            case 1:
                function.deleteDataPoints({index(count), index(count), index(count)});
                break;
            case 2:
                function.modifyDataPoint(row, 1, 0.0, place());
                break;
            case 3:
            case 4:
            case 5:
                function.modifyDataPoint(row, 0, place(), 0.0);
                break;
            default:
                insert(function, number(-1, count + 1));
        }
    }

private:
    // Few different X, so that rows clash often.
    double place() { return number(-8, 8) * 0.25; }
    int number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }
    std::size_t index(int count) { return static_cast<std::size_t>(number(0, count + 2)); }
    void insert(mfFunctionDataPoints_c& function, int row)
    {
        auto list = std::make_unique<mfDataPoints_c>();
        list->addPoint(place(), place());
        if (function.insertDataPoint(row, list.get()))
            static_cast<void>(list.release());  // a row of one point always finds a place
    }

    std::mt19937 random_{2024};
};

TEST(RandomEdits, AMillionKeepTheTableSoundAndLeakNothing)
{
    mf::host::Context host;
    QelSession_c::setMotionFunctionContext(&host);
    const long blocksBefore = blocksOut;
    {
        mfFunctionDataPoints_c function;
        Editor editor;
        int longest = 0;
        for (int i = 0; i < kEdits; ++i) {
            editor.edit(function);
            ASSERT_TRUE(isSound(function)) << "after edit " << i;
            longest = std::max(longest, function.getDataPointsCount());
        }
        EXPECT_EQ(longest, kMostRows + 1);  // or the edits did not reach far
    }
    EXPECT_EQ(blocksOut, blocksBefore);
}

TEST(MillionRows, TakeLessThanHalfAGigabyteWithTheirSpline)
{
    mf::host::Context host;
    QelSession_c::setMotionFunctionContext(&host);
    const long bytesBefore = bytesOut;
    mfFunctionDataPoints_c function;
    function.setInterpolationType(mf::DataPointInterpolationType_Akima);
    for (int i = 0; i < 1'000'000; ++i) {
        auto row = std::make_unique<mfDataPoints_c>();
        row->addPoint(i, i % 7);
        ASSERT_TRUE(function.appendDataPoint(row.release()));
    }
    function.RegenSplineData();
    EXPECT_EQ(function.evaluate(700'003.0, 0), 3.0);
    RecordProperty("bytes", std::to_string(bytesOut - bytesBefore));
    EXPECT_LT(bytesOut - bytesBefore, 500'000'000);
}

// Makes each allocation of `act` fail in turn, on a function of three rows. After each
// failure the function can still be edited and destroyed, and no block is lost.
template <typename Act>
void failEachAllocationOf(const Act& act)
{
    mf::host::Context host;
    QelSession_c::setMotionFunctionContext(&host);
    int failures = 0;
    for (bool isDone = false; !isDone; ++failures) {
        ASSERT_LT(failures, 1000);
        const long blocksBefore = blocksOut;
        {
            auto function = std::make_unique<mfFunctionDataPoints_c>();
            mf::test::fill(*function, "1 2,3 4");
            allocationsUntilFailure = failures;
            try {
                act(*function);
                isDone = true;
            } catch (const std::bad_alloc&) {
                allocationsUntilFailure = -1;
                function->deleteDataPoint(0);
                auto list = std::make_unique<mfDataPoints_c>();
                list->addPoint(100.0, 1.0);
                ASSERT_TRUE(function->insertDataPoint(function->getDataPointsCount(), list.release()));
                EXPECT_EQ(function->evaluate(100.0, 0), 1.0);
            }
            allocationsUntilFailure = -1;
        }
        EXPECT_EQ(blocksOut, blocksBefore) << "after failure " << failures;
    }
    EXPECT_GT(failures, 1) << "nothing was allocated";
}

TEST(OutOfMemory, Insertion)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) {
        auto list = std::make_unique<mfDataPoints_c>();
        list->addPoint(1.5, 9.0);
        ASSERT_TRUE(function.insertDataPoint(1, list.get()));
        static_cast<void>(list.release());  // only where nothing was thrown
    });
}

TEST(OutOfMemory, ModificationOfAnX)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) { function.modifyDataPoint(0, 0, 9.0, 0.0); });
}

TEST(OutOfMemory, RefusedModification)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) { function.modifyDataPoint(0, 0, 2.5, 0.0); });
}

TEST(OutOfMemory, ModificationOfAY)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) { function.modifyDataPoint(0, 1, 0.0, 5.0); });
}

TEST(OutOfMemory, Deletion)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) { function.deleteDataPoint(1); });
}

TEST(OutOfMemory, DeletionOfRows)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) { function.deleteDataPoints({0, 2}); });
}

TEST(OutOfMemory, Copy)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) {
        mfFunctionDataPoints_c copy;
        copy.Copy(&function);
    });
}

TEST(OutOfMemory, Expansion)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) { function.expandDataPoints(1); });
}

TEST(OutOfMemory, PlotAndOlderData)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& function) {
        function.calculateValue();
        function.updateForLegacyData(true);
        function.updateForLegacyData(false);
    });
}

TEST(OutOfMemory, Construction)
{
    failEachAllocationOf([](mfFunctionDataPoints_c& /*function*/) { const mfFunctionDataPoints_c other; });
}

}  // namespace
