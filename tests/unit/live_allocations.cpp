#include "tests/unit/live_allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace
{
thread_local long t_live = 0;
}

long live_allocations()
{
    return t_live;
}

void* operator new(std::size_t size)
{
    void* block = std::malloc(size != 0 ? size : 1);
    if (!block) throw std::bad_alloc();
    ++t_live;
    return block;
}

// Counted too, because its blocks go back the same way.
void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept
{
    void* block = std::malloc(size != 0 ? size : 1);
    if (block) ++t_live;
    return block;
}

void operator delete(void* block) noexcept
{
    if (block) --t_live;
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}
