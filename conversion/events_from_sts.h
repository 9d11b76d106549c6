// A host's event as requests say it, so that the service can tell which event is meant. The trip isn't there
// and back: an activity goes out with an empty body, and a detached event under the host's number of its
// kind.
#ifndef SOAPWRAPPER_CONVERSION_EVENTS_FROM_STS_H
#define SOAPWRAPPER_CONVERSION_EVENTS_FROM_STS_H

#include "plugin/host/event_records.h"
#include "plugin/host/host_records.h"

class ns1__Event;

namespace soapwrapper
{

// Fills the caller's object and gives an inline event a body from operator new. The host's event must outlive
// it. A kind beyond the six is logged as an anomaly through `session`, which may be null, and its body goes
// out empty.
void set_event_from_sts(ns1__Event& wire, const sts_event_v11_t* event, const sts_session_def_v7_t* session);

// Deletes all that set_event_from_sts made and nulls the body. An unknown kind is logged once more.
void cleanup_soap_event(ns1__Event& wire, const sts_session_def_v7_t* session);

} // namespace soapwrapper

#endif
