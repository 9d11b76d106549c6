// The library's configuration, line by line: what it means to the library, and what its writer may have
// meant.
#ifndef SOAPWRAPPER_PROBE_CHECK_CONFIGURATION_CHECK_H
#define SOAPWRAPPER_PROBE_CHECK_CONFIGURATION_CHECK_H

#include "probe/check/certificate.h"
#include "probe/check/check_report.h"
#include "probe/library/configuration_file.h"
#include "probe/library/plugin_library.h"

#include <optional>
#include <string>

namespace soapwrapper::probe
{

// What the rest of the check needs of it.
struct ConfigurationLook {
    ConfigurationFile file{""};
    ChannelRules rules;
    Authorities authorities; // of tls_ca_file; without a store, services' certificates aren't checked
};

// Looks at the file that the library finds, which was told that it stands at this path, or at the one that
// replaces it.
ConfigurationLook check_configuration(const std::string& told_path,
                                      const std::optional<ReplacedConfiguration>& replaced,
                                      CheckReport& report);

} // namespace soapwrapper::probe

#endif
