#include "simulator/storage/event_log.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/storage/event_records.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{

void EventLog::add(bool is_inline, EventPayload payload)
{
    if (last_ == std::numeric_limits<std::int32_t>::max()) return;
    ++last_;
    events_.emplace_hint(events_.end(), last_,
                         Event{last_, is_inline, std::move(payload), std::chrono::steady_clock::now()});
    if (events_.size() > kMostEvents) events_.erase(events_.begin());
}

const Event* EventLog::first_from(std::int64_t seqno) const
{
    if (seqno > last_) return nullptr;
    const auto found = events_.lower_bound(seqno < 0 ? 0 : static_cast<std::int32_t>(seqno));
    return found == events_.end() ? nullptr : &found->second;
}

const Event& EventLog::at(std::int32_t seqno) const
{
    const auto found = events_.find(seqno);
    if (found == events_.end()) {
        throw Fault(kUnknownEvent, "the server has no event with the number " + std::to_string(seqno));
    }
    return found->second;
}

void EventLog::erase(std::int32_t seqno)
{
    at(seqno);
    events_.erase(seqno);
}

} // namespace soapwrapper::simulator
