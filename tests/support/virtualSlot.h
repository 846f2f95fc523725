// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>
#include <gmock/gmock.h>
#include <vector>

namespace mf::test {

/// The index of a virtual operation in its class's table, read from a pointer to it by the
/// Itanium ABI. A virtual destructor takes two slots.
template <typename Operation>
int slotOf(Operation operation)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof(operation) == sizeof(words));
    std::memcpy(words, &operation, sizeof(words));
#if defined(__aarch64__) || defined(__arm__)
    EXPECT_EQ(words[1] & 1, 1) << "the operation is not virtual";
    return static_cast<int>(words[0] / static_cast<std::ptrdiff_t>(sizeof(void*)));
#else
    EXPECT_EQ(words[0] & 1, 1) << "the operation is not virtual";
    return static_cast<int>((words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
#endif
}

/// The slots of the operations, in the order given.
template <typename... Operations>
std::vector<int> slotsOf(Operations... operations)
{
    return {slotOf(operations)...};
}

/// first, first + 1 and so on, as many as there are operations.
inline std::vector<int> slotsFrom(int first, std::size_t count)
{
    std::vector<int> slots;
    for (std::size_t i = 0; i < count; ++i)
        slots.push_back(first + static_cast<int>(i));
    return slots;
}

constexpr int kBehindTheDestructor = 2;

}  // namespace mf::test
