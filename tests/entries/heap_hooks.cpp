#include "tests/entries/heap_hooks.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

// The real ones: those of the sanitizer where there is one, else those of the C library.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SYSTEM(name) __interceptor_##name
#else
#define SYSTEM(name) __libc_##name
#endif
extern "C" {
void* SYSTEM(malloc)(std::size_t size);
void* SYSTEM(calloc)(std::size_t count, std::size_t size);
void* SYSTEM(realloc)(void* block, std::size_t size);
void SYSTEM(free)(void* block);
}

namespace hooks
{
namespace
{

thread_local NoMemory* t_no_memory = nullptr;
thread_local FreedBlocks* t_freed = nullptr;

bool refused(Allocator allocator, std::size_t size)
{
    return t_no_memory && t_no_memory->refuses(allocator, size);
}

void look_at(void* block)
{
    if (block && t_freed) t_freed->look_at(block, malloc_usable_size(block));
}

void* allocate(Allocator allocator, std::size_t size)
{
    return refused(allocator, size) ? nullptr : SYSTEM(malloc)(size == 0 ? 1 : size);
}

} // namespace

NoMemory::NoMemory(Allocator allocator, std::size_t size, std::size_t granted)
    : allocator_(allocator), size_(size), granted_(granted)
{
    t_no_memory = this;
}

NoMemory::~NoMemory()
{
    t_no_memory = nullptr;
}

bool NoMemory::refuses(Allocator allocator, std::size_t size)
{
    if (allocator != allocator_ || size != size_) return false;
    if (granted_ > 0) {
        --granted_;
        return false;
    }
    ++refusals_;
    return true;
}

FreedBlocks::FreedBlocks(std::string_view text) : text_(text)
{
    t_freed = this;
}

FreedBlocks::~FreedBlocks()
{
    t_freed = nullptr;
}

void FreedBlocks::look_at(const void* block, std::size_t size)
{
    ++count_;
    const std::string_view bytes(static_cast<const char*>(block), size);
    if (bytes.find(text_) != bytes.npos) ++with_text_;
}

} // namespace hooks

#define SHOWN __attribute__((visibility("default")))

extern "C" {

SHOWN void* malloc(std::size_t size)
{
    return hooks::refused(hooks::Allocator::kMalloc, size) ? nullptr : SYSTEM(malloc)(size);
}

SHOWN void* calloc(std::size_t count, std::size_t size)
{
    return hooks::refused(hooks::Allocator::kCalloc, count * size) ? nullptr : SYSTEM(calloc)(count, size);
}

SHOWN void* realloc(void* block, std::size_t size)
{
    hooks::look_at(block); // it may move
    return SYSTEM(realloc)(block, size);
}

SHOWN void free(void* block)
{
    hooks::look_at(block);
    SYSTEM(free)(block);
}

} // extern "C"

SHOWN void* operator new(std::size_t size)
{
    if (void* block = hooks::allocate(hooks::Allocator::kOperatorNew, size)) return block;
    throw std::bad_alloc();
}
SHOWN void* operator new[](std::size_t size)
{
    return operator new(size);
}
SHOWN void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept
{
    return hooks::allocate(hooks::Allocator::kOperatorNewNothrow, size);
}
SHOWN void* operator new[](std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept
{
    return hooks::allocate(hooks::Allocator::kOperatorNewNothrow, size);
}
SHOWN void operator delete(void* block) noexcept
{
    free(block);
}
SHOWN void operator delete[](void* block) noexcept
{
    free(block);
}
SHOWN void operator delete(void* block, std::size_t /*size*/) noexcept
{
    free(block);
}
SHOWN void operator delete[](void* block, std::size_t /*size*/) noexcept
{
    free(block);
}
SHOWN void operator delete(void* block, const std::nothrow_t& /*nothrow*/) noexcept
{
    free(block);
}
SHOWN void operator delete[](void* block, const std::nothrow_t& /*nothrow*/) noexcept
{
    free(block);
}
