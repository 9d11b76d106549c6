// Events as a host may hand them over.
#ifndef SOAPWRAPPER_TESTS_UNIT_EVENTS_RECORDS_H
#define SOAPWRAPPER_TESTS_UNIT_EVENTS_RECORDS_H

#include "plugin/host/event_records.h"
#include "tests/unit/canary.h"

#include <cstdint>
#include <memory>

// An event with a value of its own in each field of its head, and a canary in its payload.
inline std::unique_ptr<sts_event_v11_t> inline_event(std::int32_t kind)
{
    auto event = std::make_unique<sts_event_v11_t>();
    fill_with_canary(*event);
    event->version = 11;
    event->seqno = 21;
    put(event->server, "Network_X:host");
    event->flags = STS_EVENT_INLINE;
    event->inline_kind = kind;
    return event;
}

inline std::unique_ptr<sts_event_v11_t> detached_event(std::int32_t kind)
{
    auto event = inline_event(STS_EVENT_ACTIVITY);
    event->flags = 4;
    event->payload_length = 100;
    event->detached_kind = kind;
    return event;
}

#endif
