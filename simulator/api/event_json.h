#ifndef SOAPWRAPPER_SIMULATOR_API_EVENT_JSON_H
#define SOAPWRAPPER_SIMULATOR_API_EVENT_JSON_H

#include "simulator/storage/event_records.h"
#include "simulator/storage/events_view.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string_view>

namespace soapwrapper::simulator
{

// An event in words, with what it tells.
nlohmann::json event_json(const EventView& view);

const char* name_of(EventKind kind);
std::optional<EventKind> event_kind_of(std::string_view name);

} // namespace soapwrapper::simulator

#endif
