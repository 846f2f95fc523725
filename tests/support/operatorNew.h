// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Test programs that count, refuse or watch memory replace every form of operator new and
// delete by operatorNew.cpp (mfcurves_replaces_new in CMake) and define these two functions.
namespace mf::test {

struct MemoryRequest {
    std::size_t size;
    std::size_t alignment;
    bool isArray;
    bool mayReturnNull;  // the form with std::nothrow
};

/// Returns the requested memory. If it returns null, operator new throws or, with
/// mayReturnNull, returns null.
void* allocate(const MemoryRequest& request);
/// `memory` may be null.
void release(void* memory) noexcept;

/// The memory that the request gets without a test; to be freed by std::free.
void* fromHeap(const MemoryRequest& request);

}  // namespace mf::test
