// The long operations as people are shown them: copies, without a token.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_OPERATIONS_VIEW_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_OPERATIONS_VIEW_H

#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/simulated_time.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

struct OperationView {
    Serial number = 0;
    OperationKind kind = OperationKind::kCreate;
    std::string server;              // its prefix
    std::optional<std::string> name; // that a client gave it
    bool is_running = false;
    int error = 0; // busy, while it runs
    std::int64_t bytes = 0;
    std::int64_t bytes_moved = 0;
    Instant length{0};
    Instant elapsed{0};
    std::string result; // in words
};

// The newest, the last one first.
std::vector<OperationView> newest_operations(const Storage& storage, const OperationRegistry& operations,
                                             std::size_t most);

} // namespace soapwrapper::simulator

#endif
