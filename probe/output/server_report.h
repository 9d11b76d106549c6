// What a server says of itself, in the form that is asked for.
#ifndef SOAPWRAPPER_PROBE_OUTPUT_SERVER_REPORT_H
#define SOAPWRAPPER_PROBE_OUTPUT_SERVER_REPORT_H

#include "plugin/host/host_records.h"
#include "probe/output/output.h"

#include <string>

namespace soapwrapper::probe
{

// `name` is how the server was asked for. `selection` is the library's own line on the interface that it
// chose; without one no interface is marked.
void report_server(Output& output, const std::string& name, const sts_server_info_v8_t& info,
                   const std::string& selection);

} // namespace soapwrapper::probe

#endif
