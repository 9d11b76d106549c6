// The events of one server that nobody has deleted yet.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_EVENT_LOG_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_EVENT_LOG_H

#include "simulator/storage/event_records.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{

// Not guarded: the model holds a lock.
class EventLog
{
  public:
    // A host that never deletes any loses the oldest.
    static constexpr std::size_t kMostEvents = 10000;

    // `last` is the number that was given last.
    explicit EventLog(std::int32_t last = 0) : last_(last) {}

    // The numbers rise by one. Once the wire has no larger one, nothing is kept any more.
    void add_inline(EventPayload payload) { add(true, std::move(payload)); }
    void add_detached(EventPayload payload) { add(false, std::move(payload)); }

    // The first one that has this number or a larger one; null if there is none at present.
    const Event* first_from(std::int64_t seqno) const;

    // The one of the number. Without it, the fault that tells so.
    const Event& at(std::int32_t seqno) const;
    void erase(std::int32_t seqno);

    // By number.
    const std::map<std::int32_t, Event>& all() const { return events_; }

  private:
    void add(bool is_inline, EventPayload payload);

    std::int32_t last_;
    std::map<std::int32_t, Event> events_;
};

// Where a reader of the events has got to. It belongs to no session.
struct EventChannel {
    std::size_t server = 0;
    std::string server_name; // as the client gave it
    std::int64_t next = 0;
};

} // namespace soapwrapper::simulator

#endif
