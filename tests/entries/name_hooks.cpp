#include "tests/entries/name_hooks.h"

#include <arpa/inet.h>
#include <dlfcn.h>
#include <netdb.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace hooks
{
namespace
{

std::atomic<bool> g_resolve{false};

bool is_in_domain(const char* name)
{
    constexpr char kDomain[] = "example.com";
    const std::size_t size = name ? std::strlen(name) : 0;
    return size >= sizeof kDomain - 1 && strcasecmp(name + size - (sizeof kDomain - 1), kDomain) == 0;
}

bool is_loopback(const char* name)
{
    in6_addr address;
    return name && inet_pton(AF_INET6, name, &address) == 1 && IN6_IS_ADDR_LOOPBACK(&address);
}

} // namespace

LoopbackNames::LoopbackNames()
{
    g_resolve = true;
}

LoopbackNames::~LoopbackNames()
{
    g_resolve = false;
}

} // namespace hooks

extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* name, const char* service,
                                                                  const addrinfo* hints, addrinfo** found)
{
    void* const system = dlsym(RTLD_NEXT, "getaddrinfo");
    if (!system) std::abort();
    const bool is_ours = hooks::g_resolve && (hooks::is_in_domain(name) || hooks::is_loopback(name));
    return reinterpret_cast<decltype(getaddrinfo)*>(system)(is_ours ? "127.0.0.1" : name, service, hints,
                                                            found);
}
