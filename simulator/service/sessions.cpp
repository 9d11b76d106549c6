#include "simulator/service/sessions.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/model.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

ns1__ArrayOfString* wire_strings(const Call& call, const std::vector<std::string>& strings)
{
    ns1__ArrayOfString* array = call.make(soap_new_ns1__ArrayOfString);
    array->item = strings;
    return array;
}

ns1__ArrayOfInt* wire_numbers(const Call& call, const std::vector<int>& numbers)
{
    ns1__ArrayOfInt* array = call.make(soap_new_ns1__ArrayOfInt);
    array->item = numbers;
    return array;
}

} // namespace

Credential credential_of(const ns1__Credential* wire)
{
    const ns1__Credential& credential = required(wire, "cred");
    const int size = credential.cert ? credential.cert->__size : 0;
    if (credential.len != size) {
        throw Fault(kCredentialRefused, "the credential is refused: its len isn't the number of its bytes");
    }
    Credential read;
    read.type = credential.type;
    if (size > 0) {
        read.bytes.assign(reinterpret_cast<const char*>(credential.cert->__ptr),
                          static_cast<std::size_t>(size));
    }
    return read;
}

ns1__ServerInformation* wire_server(const Call& call, const ServerProperties& properties)
{
    ns1__ServerInformation* info = call.make(soap_new_ns1__ServerInformation);
    info->server = call.text(properties.name);
    info->sth = wire_strings(call, properties.types);
    info->flags = properties.flags;
    info->maxconnect = properties.max_sessions;
    info->nconnect = properties.open_sessions;
    info->cap = wire_numbers(call, properties.capabilities);
    info->requiredInterface = wire_strings(call, properties.interfaces);
    info->cred = wire_numbers(call, properties.credential_types);
    info->ndmpHost = call.text(properties.ndmp_host);
    return info;
}

void handle(Call& call, const _ns1__openServer& request, _ns1__openServerResponse& response)
{
    const Credential credential = credential_of(request.cred);
    response.serverHandle = wire_handle(call, soap_new_ns1__ServerHandle,
                                        call.model().use().open_server(request.server, credential));
}

// Closing the source leaves the target open.
void handle(Call& call, const _ns1__openTargetServer& request, _ns1__openTargetServerResponse& response)
{
    const std::string& source = token_of(request.serverHandle);
    const Credential credential = credential_of(request.cred);
    const Model::Use storage = call.model().use();
    storage->session(source);
    response.targetServerHandle =
        wire_handle(call, soap_new_ns1__ServerHandle, storage.open_server(request.server, credential));
}

void handle(Call& call, const _ns1__closeServer& request, _ns1__closeServerResponse&)
{
    call.model().use()->close_session(token_of(request.serverHandle));
}

void handle(Call& call, const _ns1__getServerProp& request, _ns1__getServerPropResponse& response)
{
    const Model::Use storage = call.model().use();
    const Session& session = storage->session(token_of(request.serverHandle));
    response.info = wire_server(call, storage.properties(session.name));
}

void handle(Call& call, const _ns1__getServerPropByName& request, _ns1__getServerPropByNameResponse& response)
{
    response.info = wire_server(call, call.model().use().properties(request.server));
}

} // namespace soapwrapper::simulator
