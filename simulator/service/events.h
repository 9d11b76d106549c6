// Event channels.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_EVENTS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_EVENTS_H

#include "simulator/service/call.h"

namespace soapwrapper::simulator
{

void handle(Call& call, const _ns1__openEventChannel& request, _ns1__openEventChannelResponse& response);
void handle(Call& call, const _ns1__closeEventChannel& request, _ns1__closeEventChannelResponse& response);
void handle(Call& call, const _ns1__getEvent& request, _ns1__getEventResponse& response);
void handle(Call& call, const _ns1__getEventPayload& request, _ns1__getEventPayloadResponse& response);
void handle(Call& call, const _ns1__deleteEvent& request, _ns1__deleteEventResponse& response);

} // namespace soapwrapper::simulator

#endif
