#include "probe/login/server_discovery.h"

#include "plugin/host/host_records.h"
#include "plugin/host/status.h"
#include "probe/library/probe.h"
#include "probe/library/session.h"
#include "probe/library/slots.h"
#include "probe/login/discovery_attempts.h"
#include "probe/output/problem.h"

#include <memory>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

namespace
{

// TLS that can't be set up fails an attempt before the library tells its URL; then it is the one that it
// makes up from the name, unless soapwrapper.conf has one.
std::vector<LoggedRequest> attempts(const Session& session, const std::string& name)
{
    std::vector<LoggedRequest> requests = session.requests();
    const bool is_in_file = !session.last_record("find_ss_name_in_conf: Storage server match found").empty();
    const std::string url =
        is_in_file ? "the URL in soapwrapper.conf" : "https://" + name.substr(name.find(':') + 1) + ":8086";
    for (LoggedRequest& request : requests) {
        if (request.url.empty()) request.url = url;
    }
    return requests;
}

std::string trouble_with(const std::string& name, int status)
{
    if (status == STS_ENOTMINE) {
        return "the server name " + name +
               " bears another plug-in's prefix; those of this library begin with Network_";
    }
    if (status == STS_ENULLARG && name.find(':') == std::string::npos) {
        return "the server name " + name +
               " has no colon; it is a prefix, a colon and a host, such as "
               "Network_storage:filer1.example.com";
    }
    return {};
}

} // namespace

Problem with_name_trouble(const Problem& problem, const std::string& name)
{
    const std::string trouble = trouble_with(name, problem.status().value_or(STS_EOK));
    if (trouble.empty() || !problem.url().empty()) return problem;
    return Problem(problem.code(), problem.name(), problem.status(), trouble, problem.detail());
}

void claim_name(const Probe& probe, const std::string& name)
{
    const auto refused = problem_of(probe, call(probe, slot::stspi_claim, name.c_str()));
    if (refused) throw Problem(with_name_trouble(*refused, name));
}

ServerDiscovery discover_server(const Probe& probe, const std::string& name)
{
    claim_name(probe, name);
    ServerDiscovery found;
    found.info = std::make_unique<sts_server_info_v8_t>();
    const int status = call(probe, slot::stspi_get_server_prop_byname, probe.session.record(), name.c_str(),
                            found.info.get());
    found.selection = probe.session.last_record("Interface selected: ");
    if (const auto problem = problem_of(probe, status)) {
        found.problem = told_by_attempts(with_name_trouble(*problem, name), attempts(probe.session, name));
    }
    return found;
}

} // namespace soapwrapper::probe
