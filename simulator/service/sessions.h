// Opening and closing servers, and what they say about themselves.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_SESSIONS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_SESSIONS_H

#include "simulator/service/call.h"
#include "simulator/storage/model.h"

namespace soapwrapper::simulator
{

Credential credential_of(const ns1__Credential* wire);
ns1__ServerInformation* wire_server(const Call& call, const ServerProperties& properties);

void handle(Call& call, const _ns1__openServer& request, _ns1__openServerResponse& response);
void handle(Call& call, const _ns1__openTargetServer& request, _ns1__openTargetServerResponse& response);
void handle(Call& call, const _ns1__closeServer& request, _ns1__closeServerResponse& response);
void handle(Call& call, const _ns1__getServerProp& request, _ns1__getServerPropResponse& response);
void handle(Call& call, const _ns1__getServerPropByName& request,
            _ns1__getServerPropByNameResponse& response);

} // namespace soapwrapper::simulator

#endif
