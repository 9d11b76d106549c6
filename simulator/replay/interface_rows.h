// The interfaces in a recorded reply, by which a client finds the service again.
#ifndef SOAPWRAPPER_SIMULATOR_REPLAY_INTERFACE_ROWS_H
#define SOAPWRAPPER_SIMULATOR_REPLAY_INTERFACE_ROWS_H

#include <set>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// Where the replay is reached; one of them may be empty.
struct ReplayUrls {
    std::string http;
    std::string https;
};

// Without its port; empty if the URL has none.
std::string host_in_url(std::string_view url);

// The reply with the replay's URLs in each row "major;minor;sdk;type;url" that leads to one of these hosts.
// A row of a type that the replay doesn't serve becomes one of the other.
std::string with_own_interfaces(std::string_view reply, const std::set<std::string>& hosts,
                                const ReplayUrls& urls);

} // namespace soapwrapper::simulator

#endif
