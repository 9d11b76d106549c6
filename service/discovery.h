// Which of the interfaces that a service offers is the one to speak, and what was chosen before.
#ifndef SOAPWRAPPER_SERVICE_DISCOVERY_H
#define SOAPWRAPPER_SERVICE_DISCOVERY_H

#include "plugin/host/host_records.h"

#include <map>
#include <string>

// One chosen interface.
struct interface_detail {
    int major = 0;
    int minor = 0;
    int sdk = 0;
    std::string type; // "http" or "https"
    std::string url;
};

// The last choice per whole server name. Entries are replaced and never removed. Guarded by gMutex.
extern std::map<std::string, interface_detail> gServerEndPointMap;

namespace soapwrapper
{

using InterfaceRow = char[STS_INTERFACE_SIZE];

// The highest version in `rows` (STS_INTERFACES of them at most, up to the first empty one) that this
// plug-in can speak; at equal versions https beats http. With no well-formed row at all `detail` is cleared
// and the result is true; false means that rows were offered and none will do.
bool determine_endpoint(const InterfaceRow* rows, interface_detail& detail,
                        const sts_session_def_v7_t* session);

} // namespace soapwrapper

#endif
