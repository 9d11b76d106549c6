// What a service may answer. The first byte of the input chooses the operation, and by its highest bit
// whether texts are UTF-8; the rest is what arrives on the connection, HTTP header included. What is read
// goes through the conversion, as it does in the entries.
#include "conversion/events_from_soap.h"
#include "conversion/file_attributes.h"
#include "conversion/image_definition.h"
#include "conversion/lsu_definition.h"
#include "conversion/server_information.h"
#include "conversion/snap_definition.h"
#include "operations/async_result.h"
#include "plugin/base/bounded_text.h"
#include "service/reply_bounds.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "soapwrapperPSVWSSoapBindingProxy.h"

namespace
{

// What is left of the reply, and what it has cost, for the runtime's hooks.
struct Arriving {
    const char* at;
    std::size_t left;
    soapwrapper::ReplyBounds bounds{};
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
    arriving->bounds.came_over_wire(count);
    return count;
}

int check_block(struct soap* soap, const char*, size_t count)
{
    return static_cast<Arriving*>(soap->user)->bounds.check(soap, count);
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

// Into a record of its own on the heap, so that a write past its end is seen.
template <class Record, class Wire>
void convert(void (*conversion)(Record&, const Wire*), const Wire* wire)
{
    const auto record = std::make_unique<Record>();
    conversion(*record, wire);
}

void server_properties(PSVWSSoapBindingProxy& proxy)
{
    const auto reply = call(proxy, &PSVWSSoapBindingProxy::getServerProp);
    if (!reply || !reply->info) return;
    const auto info = std::make_unique<sts_server_info_v8_t>();
    soapwrapper::set_server_info_from_soap(info.get(), reply->info, nullptr);
}

void open_server(PSVWSSoapBindingProxy& proxy)
{
    call(proxy, &PSVWSSoapBindingProxy::openServer);
}

void close_server(PSVWSSoapBindingProxy& proxy)
{
    call(proxy, &PSVWSSoapBindingProxy::closeServer);
}

void lsu_properties(PSVWSSoapBindingProxy& proxy)
{
    const auto reply = call(proxy, &PSVWSSoapBindingProxy::getLSUPropByName);
    if (reply) convert(soapwrapper::set_lsu_info_from_soap, reply->info);
}

void image_properties(PSVWSSoapBindingProxy& proxy)
{
    const auto reply = call(proxy, &PSVWSSoapBindingProxy::getImagePropByName);
    if (reply) convert(soapwrapper::set_image_info_from_soap, reply->info);
}

void snapshot_properties(PSVWSSoapBindingProxy& proxy)
{
    const auto reply = call(proxy, &PSVWSSoapBindingProxy::getSnapPropByName);
    if (reply) convert(soapwrapper::set_snap_info_from_soap, reply->snapInfo);
}

void snapshot_result(PSVWSSoapBindingProxy& proxy)
{
    const auto reply = call(proxy, &PSVWSSoapBindingProxy::asyncWaitSnap);
    if (!reply) return;
    const soapwrapper::EntryLog log(nullptr, "");
    const auto record = std::make_unique<sts_async_snap_result_t>();
    soapwrapper::set_async_snap_result(*record, reply->result, log);
    if (record->result_kind == STS_RESULT_DIFFERENCE) delete[] record->body.difference.diffs;
}

void event(PSVWSSoapBindingProxy& proxy)
{
    const auto reply = call(proxy, &PSVWSSoapBindingProxy::getEventPayload);
    if (!reply || !reply->payload) return;
    const auto& arm = reply->payload->union_EventBody;
    switch (reply->payload->__union_EventBody) {
    case 1:
        return convert(soapwrapper::set_ev_op_from_soap, arm.op);
    case 2:
        return convert(soapwrapper::set_ev_lsu_info_from_soap, arm.lsuInfo);
    case 3:
        return convert(soapwrapper::set_ev_srv_stat_from_soap, arm.srvStat);
    case 4:
        return convert(soapwrapper::set_ev_lsu_stat_from_soap, arm.lsuStat);
    case 5:
        return convert(soapwrapper::set_ev_img_info_from_soap, arm.imgInfo);
    case 6:
        return convert(soapwrapper::set_ev_actv_from_soap, arm.actv);
    default:
        return;
    }
}

void files(PSVWSSoapBindingProxy& proxy)
{
    const auto reply = call(proxy, &PSVWSSoapBindingProxy::listFile);
    if (!reply || !reply->fileAttrList) return;
    for (const ns1__FileAttr* file : reply->fileAttrList->item) {
        if (file) convert(soapwrapper::set_file_attr_from_soap, file);
    }
}

using Exercise = void (*)(PSVWSSoapBindingProxy&);
constexpr Exercise kExercises[] = {
    server_properties,   open_server,     close_server, lsu_properties, image_properties,
    snapshot_properties, snapshot_result, event,        files};

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
    proxy.fpreparerecv = check_block;
    proxy.maxlevel = soapwrapper::kDeepestLevel;
    const bool utf8 = (*data & 0x80U) != 0;
    if (utf8) soap_set_mode(&proxy, SOAP_C_UTFSTRING);
    soapwrapper::keep_characters_whole(utf8);
    kExercises[(*data & 0x7FU) % std::size(kExercises)](proxy);
    return 0;
}
