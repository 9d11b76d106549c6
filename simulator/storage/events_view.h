// The events of several servers as people are shown them.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_EVENTS_VIEW_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_EVENTS_VIEW_H

#include "simulator/storage/event_records.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct EventsWanted {
    std::optional<std::string> server; // its prefix; without one, of all servers
    std::int64_t after = 0;            // this number
    std::optional<EventKind> kind;
    std::size_t most = 0;
};

struct EventView {
    std::string server; // its prefix
    Event event;        // a copy
};

// The newest, the last one first, or the fault that there is no such server.
std::vector<EventView> newest_events(const Storage& storage, const EventsWanted& wanted);

} // namespace soapwrapper::simulator

#endif
