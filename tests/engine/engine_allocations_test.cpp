// SPDX-License-Identifier: MIT

// An evaluation allocates nothing, and a derivative that found no memory can be requested
// again. This program counts all allocations of the process, and can make them fail.

#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <string>

#include "tests/engine/compiled.h"
#include "tests/support/operatorNew.h"

namespace {

std::atomic<long> allocations = 0;
std::atomic<long> allocationsLeft = -1;  // negative: without a limit

}  // namespace

void* mf::test::allocate(const MemoryRequest& request)
{
    ++allocations;
    if (allocationsLeft == 0)
        return nullptr;
    if (allocationsLeft > 0)
        --allocationsLeft;
    return fromHeap(request);
}

void mf::test::release(void* memory) noexcept
{
    std::free(memory);
}

namespace engine_test {
namespace {

class Allocations : public testing::TestWithParam<const char*> {};

TEST_P(Allocations, DoNotOccurInAnEvaluation)
{
    const Orders compiled(GetParam());
    ASSERT_TRUE(compiled);
    for (int order = 0; order < 4; ++order)
        compiled.at(0.25, order);

    const long before = allocations;
    for (int i = 0; i < 100; ++i) {
        for (int order = 0; order < 4; ++order)
            compiled.at(-1.0 + i * 0.05, order);
    }
    EXPECT_EQ(allocations - before, 0);
}

// The derivative, or null if it takes more than `count` allocations.
Calculator derivativeWithin(long count, const Calculator& calculator)
{
    allocationsLeft = count;
    Calculator result;
    try {
        result = derivative(calculator);
    } catch (const std::bad_alloc&) {
    }
    allocationsLeft = -1;
    return result;
}

TEST_P(Allocations, ThatFailLeaveTheOrdersAsTheyAre)
{
    const Orders expected(GetParam());
    bool failed = true;
    for (long allowed = 0; failed; ++allowed) {
        ASSERT_LT(allowed, 1000);
        failed = false;
        // Blanks make it a text that is not in the cache.
        Calculator orders[4] = {
            compile(GetParam() + std::string(static_cast<std::size_t>(allowed) + 1, ' '))};
        for (int order = 1; order < 4; ++order) {
            orders[order] = derivativeWithin(allowed, orders[order - 1]);
            failed |= orders[order] == nullptr;
            if (orders[order] == nullptr)
                orders[order] = derivative(orders[order - 1]);
        }
        for (int order = 0; order < 4; ++order) {
            for (const double x : {0.25, 0.75, 1.5})
                ASSERT_EQ(evaluate(orders[order], x), expected.at(x, order))
                    << "order " << order << " at " << x;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Engine, Allocations,
    testing::Values("5", "x", "(3.0+(-5.0-3.0)*(10*((x-0.5)/(2.0-0.5))^3-15*((x-0.5)/(2.0-0.5))^4))",
                    "10*sin(2*pi*x)+x^2*exp(-x)/(1+x)", "if(x: ln(x), 1/x, step(x,0,1,2,3))",
                    "max(x,min(x^2,1),cheby(x,0,1,2,3))%0.3", "x^x+atan2(x,2)^2.5+hypot(x,1)"));

TEST(AllocationCount, SeesACompile)
{
    const long before = allocations;
    const Calculator calculator = compile("x+12345.678");
    EXPECT_GT(allocations, before);
}

TEST(AllocationCount, IsZeroForManyParameters)
{
    const Calculator calculator = compileFree(L"a*b+sin(c)");
    ASSERT_TRUE(calculator);
    MMEP_Data arguments[] = {MMEP_Data(1.0), MMEP_Data(2.0), MMEP_Data(3.0)};
    MMEP_Data result;
    calculator->Evaluate(3, arguments, result);
    const long before = allocations;
    for (int i = 0; i < 100; ++i) {
        *arguments[0].getValue() = i;
        calculator->Evaluate(3, arguments, result);
    }
    EXPECT_EQ(allocations - before, 0);
}

}  // namespace
}  // namespace engine_test
