// The control call for buffers of the library's own.
#ifndef SOAPWRAPPER_OPERATIONS_IO_CONTROL_H
#define SOAPWRAPPER_OPERATIONS_IO_CONTROL_H

#include "plugin/base/handle_records.h"
#include "plugin/host/handles.h"

#include <cstdint>

namespace soapwrapper
{

// stspi_iocontrol, but that an answer longer than the buffer is only cut: the service is not trusted with
// what lies behind its end.
int bounded_io_control(stsp_server_t* server, std::int32_t command, char* buffer, std::int32_t ioflag,
                       std::int32_t len);

} // namespace soapwrapper

#endif
