// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <exception>
#include <vector>

namespace mf::curve {

/// Up to how many registers the stack is fastest, and up to how many (64 kB) it is used.
constexpr std::size_t kFewRegisters = 64;
constexpr std::size_t kMostRegistersOnStack = 8192;

/// Room for `count` doubles that the thread keeps; null if there is no memory for it.
inline double* threadRegisters(std::size_t count) noexcept
try {
    thread_local std::vector<double> registers;
    if (registers.size() < count)
        registers.resize(count);
    return registers.data();
} catch (const std::exception&) {
    return nullptr;
}

template <class Use>
[[gnu::noinline]] void withManyOnStack(const Use& use)
{
    double registers[kMostRegistersOnStack];
    use(registers);
}

/// Calls use(registers) with room for `count` doubles. False, without a call, if there is no
/// memory for it.
template <class Use>
bool withRegisters(std::size_t count, const Use& use)
{
    if (count <= kFewRegisters) {
        double registers[kFewRegisters];
        use(registers);
        return true;
    }
    if (count <= kMostRegistersOnStack) {
        withManyOnStack(use);
        return true;
    }
    double* const registers = threadRegisters(count);
    if (registers != nullptr)
        use(registers);
    return registers != nullptr;
}

}  // namespace mf::curve
