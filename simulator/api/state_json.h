#ifndef SOAPWRAPPER_SIMULATOR_API_STATE_JSON_H
#define SOAPWRAPPER_SIMULATOR_API_STATE_JSON_H

#include "simulator/storage/operations_view.h"
#include "simulator/storage/storage_view.h"

#include <nlohmann/json_fwd.hpp>

#include <vector>

namespace soapwrapper::simulator
{

// What the servers hold, and what clients hold of them.
nlohmann::json servers_json(const StorageView& storage);

nlohmann::json operations_json(const std::vector<OperationView>& operations);

} // namespace soapwrapper::simulator

#endif
