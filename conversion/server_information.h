#ifndef SOAPWRAPPER_CONVERSION_SERVER_INFORMATION_H
#define SOAPWRAPPER_CONVERSION_SERVER_INFORMATION_H

#include "plugin/host/host_records.h"

class ns1__ServerInformation;

namespace soapwrapper
{

// Fills the host's record with what the service names and leaves the rest as it stands: entries behind the
// last value of a list, texts that are nil, capability bits that aren't mentioned. What the record has no
// room for is ignored. Logs the capabilities through `session`, which may be null.
void set_server_info_from_soap(sts_server_info_v8_t* info, const ns1__ServerInformation* wire,
                               const sts_session_def_v7_t* session);

} // namespace soapwrapper

#endif
