// Records of the storage as JSON.
#ifndef SOAPWRAPPER_SIMULATOR_API_RECORD_JSON_H
#define SOAPWRAPPER_SIMULATOR_API_RECORD_JSON_H

#include "simulator/scenario/content.h"
#include "simulator/scenario/records.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>

namespace soapwrapper::simulator
{

// As scenarios have them.
nlohmann::json volume_json(const Volume& volume);
nlohmann::json image_json(const Image& image);
nlohmann::json snapshot_json(const Snapshot& snapshot);

const char* name_of(FileType type);
const char* name_of(ChangeKind kind);

template <class Json, class Value>
Json value_or_null(const std::optional<Value>& value)
{
    return value ? Json(*value) : Json(nullptr);
}

} // namespace soapwrapper::simulator

#endif
