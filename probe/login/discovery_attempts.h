// What a failed discovery tells: the service is looked for in several places.
#ifndef SOAPWRAPPER_PROBE_LOGIN_DISCOVERY_ATTEMPTS_H
#define SOAPWRAPPER_PROBE_LOGIN_DISCOVERY_ATTEMPTS_H

#include "probe/library/session.h"
#include "probe/output/problem.h"

#include <vector>

namespace soapwrapper::probe
{

// Makes the failure of the attempt that says most of the service that of the discovery. The status stays the
// one that the library returned, which is that of its last attempt.
Problem told_by_attempts(const Problem& returned, const std::vector<LoggedRequest>& requests);

} // namespace soapwrapper::probe

#endif
