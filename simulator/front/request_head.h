// What the HTTP library knows of a request once its head is there.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_REQUEST_HEAD_H
#define SOAPWRAPPER_SIMULATOR_FRONT_REQUEST_HEAD_H

#include "simulator/front/http.h"

#include <microhttpd.h>

#include <string_view>

namespace soapwrapper::simulator
{

// The HTTP status to refuse it with, or 0 if all is well.
int judge_head(MHD_Connection* connection, std::string_view method, std::string_view version);

// Those of one kind.
Fields values_of(MHD_Connection* connection, MHD_ValueKind kind);

} // namespace soapwrapper::simulator

#endif
