#include "tests/entries/memory_hooks.h"

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace hooks
{
namespace
{

thread_local NoMemoryFor* t_shortage = nullptr;

bool is_in_library(const void* address)
{
    Dl_info info{};
    return dladdr(address, &info) != 0 && info.dli_fname && std::strstr(info.dli_fname, "libsoapwrapper.so");
}

bool is_refused(std::size_t size, const void* caller)
{
    return t_shortage && t_shortage->refuses(size, caller);
}

} // namespace

NoMemoryFor::NoMemoryFor(std::size_t size) : size_(size)
{
    t_shortage = this;
}

NoMemoryFor::~NoMemoryFor()
{
    t_shortage = nullptr;
}

bool NoMemoryFor::refuses(std::size_t size, const void* caller)
{
    if (size != size_ || !is_in_library(caller)) return false;
    ++refusals_;
    return true;
}

} // namespace hooks

extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size)
{
    using Malloc = void* (*)(std::size_t);
    static const auto next = reinterpret_cast<Malloc>(dlsym(RTLD_NEXT, "malloc"));
    if (hooks::is_refused(size, __builtin_return_address(0))) return nullptr;
    return next(size);
}

__attribute__((visibility("default"))) void* operator new[](std::size_t size,
                                                            const std::nothrow_t& /*tag*/) noexcept
{
    if (hooks::is_refused(size, __builtin_return_address(0))) return nullptr;
    try {
        return operator new[](size); // so that a sanitizer sees blocks go back as they came
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
