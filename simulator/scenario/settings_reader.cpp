#include "simulator/scenario/settings_reader.h"

#include "simulator/scenario/json_members.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/simulated_time.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

// A day: longer ones are a slip of the pen.
static constexpr int kMostSeconds = 24 * 60 * 60;

// An entry with the longest of paths takes some 5 KB of the answer.
static constexpr int kLargestBatch = 100000;

// Not in an unnamed namespace: the templates find them by the namespace of their last argument.
static void read_json(const Json& value, const JsonPlace& place, SecondsByKind& seconds)
{
    JsonMembers members(value, place);
    for (std::size_t i = 0; i < kOperationKinds; ++i) {
        const char* kind = kOperationKindNames[i];
        if (!members.optional(kind, seconds.of[i])) continue;
        if (seconds.of[i] < 0 || seconds.of[i] > kMostSeconds) {
            members.refuse(kind, "0 to 86400 seconds are expected");
        }
    }
    members.finish();
}

static void read_json(const Json& value, const JsonPlace& place, OperationSettings& settings)
{
    JsonMembers members(value, place);
    members.optional("retryInterval", settings.retry_interval);
    members.optional("seconds", settings.seconds);
    members.finish();
}

static void read_no_less_than_0(JsonMembers& members, const char* name, int& number)
{
    if (members.optional(name, number) && number < 0) members.refuse(name, "0 or more is expected");
}

static void read_json(const Json& value, const JsonPlace& place, ChangeListSettings& settings)
{
    JsonMembers members(value, place);
    if (members.optional("batch", settings.batch) && (settings.batch < 1 || settings.batch > kLargestBatch)) {
        members.refuse("batch", "a number from 1 to " + std::to_string(kLargestBatch) + " is expected");
    }
    read_no_less_than_0(members, "busy", settings.busy);
    read_no_less_than_0(members, "retryInterval", settings.retry_interval);
    read_no_less_than_0(members, "pace", settings.pace);
    read_no_less_than_0(members, "startBusy", settings.start_busy);
    members.finish();
}

void read_operations(JsonMembers& members, Scenario& scenario)
{
    std::string time = "clock";
    if (members.optional("time", time) && time != "clock" && time != "requests") {
        members.refuse("time", "clock or requests is expected");
    }
    scenario.time = time == "requests" ? TimeKind::kRequests : TimeKind::kClock;
    members.optional("operations", scenario.operations);
}

void read_change_lists(JsonMembers& members, Scenario& scenario)
{
    members.optional("changeLists", scenario.change_lists);
}

} // namespace soapwrapper::simulator
