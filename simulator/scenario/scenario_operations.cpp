#include "simulator/scenario/scenario_operations.h"

#include "simulator/scenario/json_members.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/simulated_time.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

// A day: longer ones are a slip of the pen.
constexpr int kMostSeconds = 24 * 60 * 60;

// Not in an unnamed namespace: the templates find them by the namespace of their last argument.
static void read_json(const Json& value, const std::string& path, SecondsByKind& seconds)
{
    JsonMembers members(value, path);
    for (std::size_t i = 0; i < kOperationKinds; ++i) {
        const char* kind = kOperationKindNames[i];
        members.optional(kind, seconds.of[i]);
        if (seconds.of[i] < 0 || seconds.of[i] > kMostSeconds) {
            refuse_json(members.path_of(kind), "0 to 86400 seconds are expected");
        }
    }
    members.finish();
}

static void read_json(const Json& value, const std::string& path, OperationSettings& settings)
{
    JsonMembers members(value, path);
    members.optional("retryInterval", settings.retry_interval);
    members.optional("seconds", settings.seconds);
    members.finish();
}

void read_operations(JsonMembers& members, Scenario& scenario)
{
    std::string time = "clock";
    members.optional("time", time);
    if (time != "clock" && time != "requests")
        refuse_json(members.path_of("time"), "clock or requests is expected");
    scenario.time = time == "requests" ? TimeKind::kRequests : TimeKind::kClock;
    members.optional("operations", scenario.operations);
}

} // namespace soapwrapper::simulator
