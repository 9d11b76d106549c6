#include "probe/events/event_channel.h"

#include "plugin/host/event_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/host_records.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"
#include "probe/output/problem.h"

#include <chrono>
#include <cstdint>
#include <cstring>
#include <optional>
#include <thread>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

constexpr int kMostTries = 5;
constexpr std::chrono::milliseconds kFirstPause{20};

} // namespace

EventChannel::EventChannel(const Probe& probe) : probe_(probe)
{
    probe.library.entry(slot::stspi_close_evchannel);
    probe.library.entry(slot::stspi_get_event);
}

EventChannel::~EventChannel()
{
    if (!handle_) return;
    if (const auto problem = try_to_close()) warn("the event channel could not be closed", *problem);
}

void EventChannel::open(const std::string& server_name, const sts_cred_t* credential,
                        const std::string& required_interface, std::int64_t from)
{
    constexpr const void* kNothing = nullptr;
    constexpr std::int32_t kNoFlags = 0;
    work_.emplace(probe_.interruption);
    // A channel without a token is refused, but there, and then closed like any other.
    require(probe_, slot::stspi_open_evchannel_v11, probe_.session.record(), server_name.c_str(), credential,
            required_interface.c_str(), kNothing, kNothing, kNoFlags, from, &handle_);
    if (handle_) return;
    throw Problem(ExitCode::kOperation, "no handle", std::nullopt,
                  "the event channel was opened, but the library gave no handle for it");
}

int EventChannel::next(sts_event_v11_t& event) const
{
    std::memset(&event, 0, sizeof event);
    return call(probe_, slot::stspi_get_event, handle_, &event);
}

void EventChannel::close()
{
    const auto problem = try_to_close();
    if (problem) throw Problem(*problem);
}

std::optional<Problem> EventChannel::try_to_close()
{
    stsp_evc_t* const handle = std::exchange(handle_, nullptr);
    auto pause = kFirstPause;
    for (int tried = 1;; ++tried) {
        auto problem = clean_up(probe_, slot::stspi_close_evchannel, handle);
        if (!problem) return std::nullopt;
        // The handle is gone, but in this one case. The status doesn't tell: the channel's own end may be
        // refused with the same number as that of the login behind it.
        if (probe_.session.last_anomaly() != "retry event channel internal serverhandle") {
            // The channel was ended by an earlier try, so this one's complaint is about nothing.
            const bool login_ended = !probe_.session.last_record("stspi_close_server: STS_EOK").empty();
            if (tried > 1 && login_ended) return std::nullopt;
            keep_unclosed(handle); // if TLS couldn't be set up, it is there even so
            return problem;
        }
        if (tried == kMostTries) {
            keep_unclosed(handle);
            return problem;
        }
        std::this_thread::sleep_for(pause);
        pause *= 2;
    }
}

} // namespace soapwrapper::probe
