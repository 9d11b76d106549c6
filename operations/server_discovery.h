// Finding a service by the name of a server, with no handle at hand.
#ifndef SOAPWRAPPER_OPERATIONS_SERVER_DISCOVERY_H
#define SOAPWRAPPER_OPERATIONS_SERVER_DISCOVERY_H

#include "plugin/host/host_records.h"

#include <string>

namespace soapwrapper
{

// Asks one URL for the properties of the server and remembers its best interface. `timeout` is for the
// connection, in seconds; 0 waits for as long as it takes. Returns a status.
int get_server_prop_from_URL(const sts_session_def_v7_t* session, const std::string& server_name,
                             const char* url, sts_server_info_v8_t* info, unsigned int timeout);

} // namespace soapwrapper

#endif
