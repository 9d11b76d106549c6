// What a line of the configuration means to the library, and what may be wrong with it.
#ifndef SOAPWRAPPER_PROBE_CHECK_SETTING_CHECK_H
#define SOAPWRAPPER_PROBE_CHECK_SETTING_CHECK_H

#include "probe/check/certificate.h"
#include "probe/check/check_report.h"
#include "probe/library/configuration_file.h"

#include <string>
#include <string_view>

namespace soapwrapper::probe
{

// The line of a setting, and where it stands.
struct SettingLine {
    const char* key; // as the library writes it
    const ConfigurationLine& line;
    const ConfigurationFile& file;
    const std::string& ca_file;     // that tls_ca_file leads to
    const Authorities& authorities; // of that file
};

// The key of the library's that this is, in any case of letters; null: it is none.
const char* setting_named(std::string_view key);

void check_setting(const SettingLine& setting, CheckReport& report);

// Of a line whose key is no setting's: the name of a server, with the URL of its service.
void check_server(const ConfigurationLine& line, const ChannelRules& rules, CheckReport& report);

std::string subject_of(const ConfigurationLine& line);

// The key, fit to be seen.
std::string shown_key(const ConfigurationLine& line);

} // namespace soapwrapper::probe

#endif
