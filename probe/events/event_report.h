// Events as the probe shows them: what one is, and what happened.
#ifndef SOAPWRAPPER_PROBE_EVENTS_EVENT_REPORT_H
#define SOAPWRAPPER_PROBE_EVENTS_EVENT_REPORT_H

#include "plugin/host/event_records.h"
#include "probe/output/output.h"

namespace soapwrapper::probe
{

// An event as it was read.
struct ReadEvent {
    sts_event_v11_t record = {};
    bool is_known = true; // false: of a kind that the library has no place for; only the head is there
    // The payload of a detached activity, if it could be fetched.
    sts_ev_activity_v11_t activity = {};
    bool has_activity = false;

    bool is_inline() const { return (record.flags & STS_EVENT_INLINE) != 0; }
    // Its payload has to be asked for, and there is a way to.
    bool is_detached_activity() const
    {
        return is_known && !is_inline() && record.detached_kind == STS_DETACHED_ACTIVITY;
    }
};

// Prints the event in the form that is asked for: a line of text, or a line of JSON.
void show_event(Output& output, const ReadEvent& event);

} // namespace soapwrapper::probe

#endif
