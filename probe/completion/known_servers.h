// Servers that soapwrapper.conf names.
#ifndef SOAPWRAPPER_PROBE_COMPLETION_KNOWN_SERVERS_H
#define SOAPWRAPPER_PROBE_COMPLETION_KNOWN_SERVERS_H

#include "probe/completion/command_tree.h"
#include "probe/library/configuration_file.h"

#include <string>
#include <vector>

namespace soapwrapper::probe
{

// The keys whose value is a URL: names of servers without their prefixes.
std::vector<std::string> hosts_with_url(const ConfigurationFile& configuration);

// Those of the configuration that the library would read with these options; none if its place can't be told
// without loading it.
std::vector<std::string> known_hosts(const std::vector<Choice>& options);

} // namespace soapwrapper::probe

#endif
