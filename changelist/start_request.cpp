#include "changelist/start_request.h"

#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/base/wipe.h"
#include "plugin/host/entry_points.h"
#include "service/clock.h"
#include "service/configuration.h"

#include <string.h>

#include <cstdint>
#include <cstring>

namespace soapwrapper
{
namespace
{

constexpr char kServerThatNeedsAStart[] = "Network_NTAP";
constexpr std::size_t kVolumeArgumentSize = 2049;
constexpr int kDefaultInterval = 30;
constexpr int kDefaultLongest = 120;

int setting(const char* key, int default_value, const EntryLog& log)
{
    int value = 0;
    if (!get_conf_setting_as_int(log.session(), key, value)) return default_value;
    log.record(key, " set to ", value);
    return value;
}

// The cut stays for the rest of the handle's life.
bool needs_a_start(stsp_server_t& server)
{
    char* rest = nullptr;
    const char* name = strtok_r(server.server_name, ":", &rest);
    return name && std::strcmp(name, kServerThatNeedsAStart) == 0;
}

int send_command(stsp_server_t& server, std::int32_t command, const sts_volume_spec_v11_t& volume)
{
    char argument[kVolumeArgumentSize];
    const WipeAtEnd wiped(argument);
    V_snprintf(argument, sizeof argument, "%s;%s", volume.first, volume.second);
    return stspi_iocontrol(&server, command, argument, STS_IOCTL_INPUT, sizeof argument);
}

} // namespace

int start_snapdiff(stsp_server_t& server, const sts_volume_spec_v11_t& volume, const EntryLog& log)
{
    std::int64_t interval = setting("start_snapdiff_retry_interval", kDefaultInterval, log);
    if (interval < 0) interval = kDefaultInterval; // the tries would have no end
    const std::int64_t longest = setting("start_snapdiff_max_wait", kDefaultLongest, log);
    if (!needs_a_start(server) || longest < 0) return STS_EOK;

    // The pause ahead of a try is one interval shorter than what its failure announces.
    for (std::int64_t step = interval;; step += interval) {
        if (step > interval) pause_for(static_cast<unsigned int>(step - interval));
        const int status = send_command(server, STS_START_SNAPDIFF, volume);
        if (status == STS_EOK) return STS_EOK;
        if (status == STS_EBUSY) {
            log.record("start_snapdiff busy, sleeping for ", step, " seconds");
        } else {
            log.record("STS_START_SNAPDIFF ioctl call unsuccessful. Return value = ", status);
        }
        if (longest < step) return STS_ETIMEDOUT;
    }
}

void stop_snapdiff(stsp_server_t& server, const sts_volume_spec_v11_t& volume)
{
    send_command(server, STS_STOP_SNAPDIFF, volume);
}

} // namespace soapwrapper
