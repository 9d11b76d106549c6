// The interfaces that a service offers: which one the library chose, and why not the others.
#ifndef SOAPWRAPPER_PROBE_CHECK_INTERFACE_CHECK_H
#define SOAPWRAPPER_PROBE_CHECK_INTERFACE_CHECK_H

#include "probe/check/check_report.h"
#include "probe/output/offered_interface.h"

#include <vector>

namespace soapwrapper::probe
{

void check_interfaces(const std::vector<OfferedInterface>& offers, CheckReport& report);

} // namespace soapwrapper::probe

#endif
