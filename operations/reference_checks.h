// The two checks that most entries make of the server that a reference leads to. An entry whose own differ
// writes them out.
#ifndef SOAPWRAPPER_OPERATIONS_REFERENCE_CHECKS_H
#define SOAPWRAPPER_OPERATIONS_REFERENCE_CHECKS_H

#include "plugin/base/handle_records.h"
#include "plugin/host/handles.h"
#include "plugin/host/status.h"

namespace soapwrapper
{

inline int check_server(const stsp_server_t* server)
{
    if (!server) return STS_EBADARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    return STS_EOK;
}

} // namespace soapwrapper

#endif
