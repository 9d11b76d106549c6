#include "simulator/storage/operations_view.h"

#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/simulated_time.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/storage.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// What an operation that ended well came to. The handle of an image that was copied isn't told: it opens it.
std::string words_of(const LongOperation& operation)
{
    const OperationResult& result = operation.result;
    if (operation.is_running() || operation.error != 0) return "";
    if (!result.topology.empty()) return "topology " + result.topology;
    if (!result.snapshot_name.empty()) {
        return "snapshot " + result.snapshot_name + " on " + result.lsu_name;
    }
    if (operation.kind == OperationKind::kDiff) {
        const std::size_t count = result.differences.size();
        return std::to_string(count) + (count == 1 ? " difference" : " differences");
    }
    return "";
}

OperationView view_of(const Storage& storage, const LongOperation& operation)
{
    const Instant now = storage.now();
    OperationView view;
    view.number = operation.number;
    view.kind = operation.kind;
    view.server = storage.server(operation.server).scenario.prefix;
    if (operation.is_named) view.name = operation.name;
    view.is_running = operation.is_running();
    view.error = operation.error;
    view.bytes = operation.bytes;
    view.bytes_moved = operation.bytes_moved(now);
    view.length = operation.end - operation.begin;
    view.elapsed = std::min(now, operation.end) - operation.begin;
    view.result = words_of(operation);
    return view;
}

} // namespace

std::vector<OperationView> newest_operations(const Storage& storage, const OperationRegistry& operations,
                                             std::size_t most)
{
    std::vector<const LongOperation*> found;
    operations.for_each([&](const LongOperation& operation) { found.push_back(&operation); });
    std::sort(found.begin(), found.end(), [](const LongOperation* one, const LongOperation* other) {
        return one->number > other->number;
    });
    if (found.size() > most) found.resize(most);
    std::vector<OperationView> views;
    views.reserve(found.size());
    for (const LongOperation* operation : found) views.push_back(view_of(storage, *operation));
    return views;
}

} // namespace soapwrapper::simulator
