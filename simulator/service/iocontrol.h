// Control commands.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_IOCONTROL_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_IOCONTROL_H

#include "simulator/service/call.h"

namespace soapwrapper::simulator
{

void handle(Call& call, const _ns1__ioControl& request, _ns1__ioControlResponse& response);

} // namespace soapwrapper::simulator

#endif
