// Asking for a server by its name, as a host does before it opens one.
#ifndef SOAPWRAPPER_PROBE_LOGIN_SERVER_DISCOVERY_H
#define SOAPWRAPPER_PROBE_LOGIN_SERVER_DISCOVERY_H

#include "plugin/host/host_records.h"
#include "probe/library/probe.h"
#include "probe/output/problem.h"

#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

struct ServerDiscovery {
    std::unique_ptr<sts_server_info_v8_t> info; // may be filled even if there was a problem
    std::string selection;                      // the library's line on the interface it chose, or empty
    std::optional<Problem> problem;
};

// Has the name claimed by the library, as a host does before anything else. A name that isn't its own is
// thrown.
void claim_name(const Probe& probe, const std::string& name);

// A problem with what is wrong with the name, if it is that and no service was asked.
Problem with_name_trouble(const Problem& problem, const std::string& name);

// Has the name claimed by the library (a name that isn't its own is thrown as a Problem), then looks for the
// service behind it. From then on the library knows where that service is.
ServerDiscovery discover_server(const Probe& probe, const std::string& name);

} // namespace soapwrapper::probe

#endif
