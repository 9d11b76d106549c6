// The interfaces that a service offers: which one the library chose, and why not the others.
#ifndef SOAPWRAPPER_PROBE_CHECK_INTERFACE_CHECK_H
#define SOAPWRAPPER_PROBE_CHECK_INTERFACE_CHECK_H

#include "probe/check/check_report.h"
#include "probe/output/offered_interface.h"

#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::probe
{

// `own_url`: the configuration's for the server, which goes ahead of the one that the service names.
void check_interfaces(const std::vector<OfferedInterface>& offers, const std::optional<std::string>& own_url,
                      CheckReport& report);

} // namespace soapwrapper::probe

#endif
