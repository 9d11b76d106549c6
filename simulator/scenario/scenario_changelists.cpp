#include "simulator/scenario/scenario_changelists.h"

#include "simulator/scenario/json_members.h"
#include "simulator/scenario/scenario.h"

#include <string>

namespace soapwrapper::simulator
{
namespace
{

// An entry with the longest of paths takes some 5 KB of the answer.
constexpr int kLargestBatch = 100000;

void require_no_less_than_0(int number, const std::string& path)
{
    if (number < 0) refuse_json(path, "0 or more is expected");
}

} // namespace

void read_json(const Json& value, const std::string& path, ChangeListSettings& settings)
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

} // namespace soapwrapper::simulator
