// SPDX-License-Identifier: MIT
// How much memory a long table uses when every row is parsed, sampled and evaluated in all four
// orders, and how much a curve of many rows uses. The allocator of this program counts the
// requested bytes.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <vector>

#include "mfcurves/mfcurves.h"
#include "tests/segments/segmentTables.h"
#include "tests/support/operatorNew.h"

namespace {

constexpr std::size_t kHead = 64;  // leaves blocks aligned for all that is allocated here

std::size_t liveBytes = 0;

}  // namespace

// Each block starts with the requested size.
void* mf::test::allocate(const MemoryRequest& request)
{
    auto* const block = static_cast<std::byte*>(
        fromHeap({kHead + request.size, kHead, request.isArray, request.mayReturnNull}));
    if (block == nullptr)
        return nullptr;
    new (block) std::size_t(request.size);
    liveBytes += request.size;
    return block + kHead;
}

void mf::test::release(void* memory) noexcept
{
    if (memory == nullptr)
        return;
    auto* const block = static_cast<std::byte*>(memory) - kHead;
    liveBytes -= *std::launder(reinterpret_cast<std::size_t*>(block));
    std::free(block);
}

namespace {

// The memory per row does not depend on the number of rows; a build without optimisation uses
// fewer rows.
#ifdef NDEBUG
constexpr int kRows = 100'000;
#else
constexpr int kRows = 2'000;
#endif
constexpr int kRowsThatFillTheCache = 10'000;
constexpr double kLength = 0.001;  // of a row: 100 seconds of motion in milliseconds
constexpr double kBytesAllowed = 2'500.0;

class Memory : public testing::Test {
protected:
    Memory()
    {
        QelSession_c::setMotionFunctionContext(&host_);
        EXPECT_TRUE(host_.profileManager().rebuildUserProfileMap());
        EXPECT_TRUE(host_.profileManager().getAllProfileNames(names_));
    }
    ~Memory() override { QelSession_c::setMotionFunctionContext(nullptr); }

    // Appends rows of the built-in laws in turn, so that the mean is over all laws.
    void append(mfFunctionSegments_c& table, int rows)
    {
        for (int i = 0; i < rows; ++i) {
            const int row = table.getSegmentCount();
            mf::test::addRow(table, host_.profileManager(), (row - 1) * kLength, row * kLength, row % 7,
                             names_[row % names_.size()]);
            table.parseExpression(row);
            table.calculateValue(row);
            for (int order = 0; order <= 3; ++order)
                table.evaluate((row - 0.5) * kLength, order);
        }
    }

    mf::host::Context host_;
    std::vector<CString> names_;
};

// The engine caches some megabytes of texts for any number of tables; the cache is filled before
// the count.
TEST_F(Memory, OfALongTableIsAFewThousandBytesARow)
{
    ASSERT_EQ(names_.size(), 10u);
    mfFunctionSegments_c table;
    table.setIndependentVar(mf::IndependentVariableType_Time);
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.addSegment(new mfSegment_c(0.0, 0.0, 0.0, L"Initial"));
    append(table, kRowsThatFillTheCache);
    const std::size_t before = liveBytes;
    append(table, kRows);
    const double bytesPerRow = static_cast<double>(liveBytes - before) / kRows;
    std::printf("%.0f bytes a row\n", bytesPerRow);
    EXPECT_LT(bytesPerRow, kBytesAllowed);
    EXPECT_GT(bytesPerRow, sizeof(mfSegment_c)) << "the allocator does not count";
}

// Rows of known forms store their numbers, and the definition stores its names.
TEST(CurveMemory, OfAThousandBuiltInRowsIsHalfAMegabyte)
{
    const char* const laws[] = {"Cubic",
                                "Quarter-Sine",
                                "Quarter-Cosine",
                                "Half-Cosine",
                                "3-4-5-Polynomial",
                                "4-5-6-7-Polynomial",
                                "5-6-7-8-9-Polynomial",
                                "Cycloidal",
                                "Quadratic",
                                "Linear"};
    mf::SegmentShape shape;
    for (int i = 1; i <= 1000; ++i)
        shape.rows.push_back({3.0 * i, static_cast<double>(i % 7), laws[i % 10]});
    mf::CurveDefinition definition;
    definition.shape = shape;
    const mf::Curve first(definition);  // makes what all curves share, before the count
    const std::size_t before = liveBytes;
    const mf::Curve curve(definition);
    const double bytes = static_cast<double>(liveBytes - before);
    std::printf("%.0f bytes a row\n", bytes / 1000);
    EXPECT_LT(bytes, 500'000.0);
    EXPECT_GT(bytes, 1000.0 * sizeof(mf::CurveRow)) << "the allocator does not count";
}

}  // namespace
