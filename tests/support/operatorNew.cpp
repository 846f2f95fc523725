// SPDX-License-Identifier: MIT

#include "tests/support/operatorNew.h"

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kUsualAlignment = alignof(std::max_align_t);

void* allocateOrThrow(const mf::test::MemoryRequest& request)
{
    if (void* const memory = mf::test::allocate(request))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

void* mf::test::fromHeap(const MemoryRequest& request)
{
    const std::size_t size = request.size == 0 ? 1 : request.size;
    if (request.alignment <= kUsualAlignment)
        return std::malloc(size);
    return std::aligned_alloc(request.alignment,
                              (size + request.alignment - 1) / request.alignment * request.alignment);
}

void* operator new(std::size_t size)
{
    return allocateOrThrow({size, kUsualAlignment, false, false});
}
void* operator new[](std::size_t size)
{
    return allocateOrThrow({size, kUsualAlignment, true, false});
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    return allocateOrThrow({size, static_cast<std::size_t>(alignment), false, false});
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return allocateOrThrow({size, static_cast<std::size_t>(alignment), true, false});
}
void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept
{
    return mf::test::allocate({size, kUsualAlignment, false, true});
}
void* operator new[](std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept
{
    return mf::test::allocate({size, kUsualAlignment, true, true});
}

void operator delete(void* memory) noexcept
{
    mf::test::release(memory);
}
void operator delete[](void* memory) noexcept
{
    mf::test::release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    mf::test::release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept
{
    mf::test::release(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept
{
    mf::test::release(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept
{
    mf::test::release(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    mf::test::release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    mf::test::release(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*nothrow*/) noexcept
{
    mf::test::release(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*nothrow*/) noexcept
{
    mf::test::release(memory);
}
