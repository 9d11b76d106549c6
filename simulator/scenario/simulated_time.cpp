#include "simulator/scenario/simulated_time.h"

#include <chrono>
#include <cstdint>

namespace soapwrapper::simulator
{

Instant SimulatedTime::now() const
{
    if (kind_ == TimeKind::kRequests) return std::chrono::seconds(requests_);
    return std::chrono::duration_cast<Instant>(std::chrono::steady_clock::now() - start_);
}

std::int64_t SimulatedTime::date() const
{
    using std::chrono::seconds;
    if (kind_ == TimeKind::kRequests) return std::chrono::duration_cast<seconds>(now()).count();
    return std::chrono::duration_cast<seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace soapwrapper::simulator
