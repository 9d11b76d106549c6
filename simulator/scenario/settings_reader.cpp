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

static void require_no_less_than_0(int number, const std::string& path)
{
    if (number < 0) refuse_json(path, "0 or more is expected");
}

static void read_json(const Json& value, const std::string& path, ChangeListSettings& settings)
{
    JsonMembers members(value, path);
    members.optional("batch", settings.batch);
    members.optional("busy", settings.busy);
    members.optional("retryInterval", settings.retry_interval);
    members.optional("pace", settings.pace);
    members.optional("startBusy", settings.start_busy);
    members.finish();
    if (settings.batch < 1 || settings.batch > kLargestBatch) {
        refuse_json(members.path_of("batch"),
                    "a number from 1 to " + std::to_string(kLargestBatch) + " is expected");
    }
    require_no_less_than_0(settings.busy, members.path_of("busy"));
    require_no_less_than_0(settings.retry_interval, members.path_of("retryInterval"));
    require_no_less_than_0(settings.pace, members.path_of("pace"));
    require_no_less_than_0(settings.start_busy, members.path_of("startBusy"));
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

void read_change_lists(JsonMembers& members, Scenario& scenario)
{
    members.optional("changeLists", scenario.change_lists);
}

} // namespace soapwrapper::simulator
