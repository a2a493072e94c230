// Replaces the global operator new of the foundation test program with one
// that counts. Kept in its own file so that the compiler never sees a
// replaced new and a library delete together.
#include "tests/foundation/CountingAllocator.h"

#include <cstdlib>
#include <new>

namespace {
std::atomic<long> g_allocations{0};
}

long tbtest::allocationCount()
{
    return g_allocations.load();
}

void* operator new(std::size_t size)
{
    ++g_allocations;
    if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}
