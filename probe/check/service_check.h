// The way to a service, gone by the probe itself: names, connections and certificates.
#ifndef SOAPWRAPPER_PROBE_CHECK_SERVICE_CHECK_H
#define SOAPWRAPPER_PROBE_CHECK_SERVICE_CHECK_H

#include "probe/check/check_report.h"
#include "probe/check/configuration_check.h"

#include <chrono>
#include <string>

namespace soapwrapper::probe
{

// What each attempt may take.
constexpr std::chrono::milliseconds kAttemptLimit = std::chrono::seconds(10);

// Makes the attempts that the library's discovery would make for a host: the part of a server's name behind
// its first colon.
void check_attempts(const std::string& host, const ConfigurationLook& configuration, CheckReport& report,
                    std::chrono::milliseconds limit = kAttemptLimit);

} // namespace soapwrapper::probe

#endif
