#include "probe/wire/real_calls.h"

#include <dlfcn.h>

#include <cstdlib>

namespace soapwrapper::probe::wire
{
namespace
{

template <class Function>
void find(Function*& function, const char* name)
{
    void* found = dlsym(RTLD_NEXT, name);
    if (!found) std::abort(); // it can't be: this program is linked with the libraries that have them
    function = reinterpret_cast<Function*>(found);
}

RealCalls find_all()
{
    RealCalls calls = {};
    find(calls.getaddrinfo, "getaddrinfo");
    find(calls.connect, "connect");
    find(calls.getsockopt, "getsockopt");
    find(calls.send, "send");
    find(calls.recv, "recv");
    find(calls.close, "close");
    find(calls.fopen, "fopen");
    find(calls.sleep, "sleep");
    return calls;
}

RealTlsCalls find_all_for_tls()
{
    RealTlsCalls calls = {};
    find(calls.connect, "SSL_connect");
    find(calls.write, "SSL_write");
    find(calls.read, "SSL_read");
    return calls;
}

} // namespace

const RealCalls& real_calls()
{
    static const RealCalls calls = find_all();
    return calls;
}

const RealTlsCalls& real_tls_calls()
{
    static const RealTlsCalls calls = find_all_for_tls();
    return calls;
}

} // namespace soapwrapper::probe::wire
