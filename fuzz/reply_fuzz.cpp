// What a service may answer. The first byte of the input chooses the operation, the rest is what arrives on
// the connection, HTTP header included. What is read goes through the conversion, as it does in the entries.
#include "conversion/server_information.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "soapwrapperPSVWSSoapBindingProxy.h"

namespace
{

// What is left of the reply, for the runtime's reading hook.
struct Arriving {
    const char* at;
    std::size_t left;
};

SOAP_SOCKET connect_nowhere(struct soap*, const char*, const char*, int)
{
    return 0; // never read or written: the other hooks see to that
}

int close_nothing(struct soap*)
{
    return SOAP_OK;
}

int send_nowhere(struct soap*, const char*, size_t)
{
    return SOAP_OK;
}

size_t read_input(struct soap* soap, char* buffer, size_t size)
{
    auto* arriving = static_cast<Arriving*>(soap->user);
    const std::size_t count = std::min(size, arriving->left);
    std::memcpy(buffer, arriving->at, count);
    arriving->at += count;
    arriving->left -= count;
    return count;
}

template <class Request, class Response>
std::unique_ptr<Response> call(PSVWSSoapBindingProxy& proxy,
                               int (PSVWSSoapBindingProxy::*operation)(const char*, const char*, Request*,
                                                                       Response&))
{
    Request request;
    auto response = std::make_unique<Response>();
    const bool good = (proxy.*operation)(nullptr, nullptr, &request, *response) == SOAP_OK;
    return good ? std::move(response) : nullptr;
}

void convert(const ns1__ServerInformation* wire)
{
    if (!wire) return;
    const auto info = std::make_unique<sts_server_info_v8_t>();
    soapwrapper::set_server_info_from_soap(info.get(), wire, nullptr);
}

void server_properties(PSVWSSoapBindingProxy& proxy)
{
    if (const auto reply = call(proxy, &PSVWSSoapBindingProxy::getServerProp)) convert(reply->info);
}

void open_server(PSVWSSoapBindingProxy& proxy)
{
    call(proxy, &PSVWSSoapBindingProxy::openServer);
}

void close_server(PSVWSSoapBindingProxy& proxy)
{
    call(proxy, &PSVWSSoapBindingProxy::closeServer);
}

using Exercise = void (*)(PSVWSSoapBindingProxy&);
constexpr Exercise kExercises[] = {server_properties, open_server, close_server};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    Arriving arriving{reinterpret_cast<const char*>(data) + 1, size - 1};
    PSVWSSoapBindingProxy proxy;
    proxy.user = &arriving;
    proxy.fopen = connect_nowhere;
    proxy.fclose = close_nothing;
    proxy.fsend = send_nowhere;
    proxy.frecv = read_input;
    kExercises[*data % std::size(kExercises)](proxy);
    return 0;
}
