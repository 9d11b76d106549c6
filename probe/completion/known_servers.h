// Servers that soapwrapper.conf names.
#ifndef SOAPWRAPPER_PROBE_COMPLETION_KNOWN_SERVERS_H
#define SOAPWRAPPER_PROBE_COMPLETION_KNOWN_SERVERS_H

#include "probe/completion/command_tree.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// The keys of lines whose value is a URL: names of servers without their prefixes.
std::vector<std::string> hosts_with_url(std::istream& configuration);

// Those of the configuration that the library would read with these options, as far as its place can be told
// without loading it.
std::vector<std::string> known_hosts(const std::vector<Choice>& options);

} // namespace soapwrapper::probe

#endif
