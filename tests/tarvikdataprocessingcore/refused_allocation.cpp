#include "refused_allocation.h"

#include <cstdlib>
#include <new>

namespace
{

thread_local std::size_t refusedSize = 0;

void* allocate(std::size_t size) noexcept
{
    if (size != 0 && size == refusedSize)
        return nullptr;
    return std::malloc(size != 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size)
{
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

RefusedAllocation::RefusedAllocation(std::size_t size) noexcept
    : m_previous(refusedSize)
{
    refusedSize = size;
}

RefusedAllocation::~RefusedAllocation()
{
    refusedSize = m_previous;
}

// The replaced allocation functions. The array and aligned forms keep their own
// pairs: the standard library's array forms call these, and a sanitizer's pair
// among themselves.
void* operator new(std::size_t size)
{
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
