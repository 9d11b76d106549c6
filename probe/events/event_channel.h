// A channel of events, opened as a host opens one.
#ifndef SOAPWRAPPER_PROBE_EVENTS_EVENT_CHANNEL_H
#define SOAPWRAPPER_PROBE_EVENTS_EVENT_CHANNEL_H

#include "plugin/host/entry_points.h"
#include "probe/library/interruption.h"
#include "probe/library/probe.h"
#include "probe/output/problem.h"

#include <cstdint>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

class EventChannel
{
  public:
    // Entries that the library lacks are a Problem: what couldn't be closed again isn't opened.
    explicit EventChannel(const Probe& probe);

    // Closes a channel that is still open, and warns if that fails.
    ~EventChannel();
    EventChannel(const EventChannel&) = delete;
    EventChannel& operator=(const EventChannel&) = delete;

    // Events from this number on. A refusal is thrown.
    void open(const std::string& server_name, const sts_cred_t* credential,
              const std::string& required_interface, std::int64_t from);

    // Writes the next event to a cleared record; the status is the library's.
    int next(sts_event_v11_t& event) const;

    // Closes the channel. A refusal is thrown.
    void close();

  private:
    std::optional<Problem> try_to_close();

    const Probe& probe_;
    std::optional<Interruption::Work> work_;
    stsp_evc_t* handle_ = nullptr;
};

} // namespace soapwrapper::probe

#endif
