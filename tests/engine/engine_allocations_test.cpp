// An evaluation allocates nothing: this binary counts what the whole process takes
// from the allocator.

#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

#include "tests/engine/compiled.h"

namespace {

std::atomic<long> allocations = 0;

void* counted(std::size_t size, std::size_t alignment)
{
    ++allocations;
    void* const memory = alignment <= alignof(std::max_align_t)
                             ? std::malloc(size == 0 ? 1 : size)
                             : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

}  // namespace

void* operator new(std::size_t size)
{
    return counted(size, 1);
}

void* operator new[](std::size_t size)
{
    return counted(size, 1);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return counted(size, static_cast<std::size_t>(alignment));
}

void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return counted(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept
{
    std::free(memory);
}

namespace engine_test {
namespace {

class Allocations : public testing::TestWithParam<const char*> {};

TEST_P(Allocations, OfAnEvaluationAreNone)
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
