// The payloads of events as the service sends them.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_EVENT_WIRE_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_EVENT_WIRE_H

#include "simulator/service/call.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/model.h"

#include <string>

namespace soapwrapper::simulator
{

// The whole of a payload; empty for a server's properties, which the event itself doesn't hold.
ns1__EventBody* wire_payload(const Call& call, const EventPayload& payload, const std::string& server_name);
ns1__EventBody* wire_server_payload(const Call& call, const ServerProperties& properties);

// What a detached event brings along: of an activity how long its message is, otherwise nothing.
ns1__EventBody* wire_announcement(const Call& call, const EventPayload& payload);

} // namespace soapwrapper::simulator

#endif
