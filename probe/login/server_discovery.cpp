#include "probe/login/server_discovery.h"

#include "plugin/host/host_records.h"
#include "probe/library/probe.h"
#include "probe/library/slots.h"

#include <memory>
#include <string>

namespace soapwrapper::probe
{

ServerDiscovery discover_server(const Probe& probe, const std::string& name)
{
    require(probe, slot::stspi_claim, name.c_str());
    ServerDiscovery found;
    found.info = std::make_unique<sts_server_info_v8_t>();
    const int status = call(probe, slot::stspi_get_server_prop_byname, probe.session.record(), name.c_str(),
                            found.info.get());
    found.selection = probe.session.last_record("Interface selected: ");
    found.problem = problem_of(probe, status);
    return found;
}

} // namespace soapwrapper::probe
