// The operations that the simulator doesn't serve, one by one: each of them is left out on purpose.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_UNSERVED_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_UNSERVED_H

#include "simulator/service/call.h"

namespace soapwrapper::simulator
{

void handle(Call& call, const _ns1__beginCopyImage& request, _ns1__beginCopyImageResponse& response);
void handle(Call& call, const _ns1__copyExtent& request, _ns1__copyExtentResponse& response);
void handle(Call& call, const _ns1__createImage& request, _ns1__createImageResponse& response);
void handle(Call& call, const _ns1__includeInImage& request, _ns1__includeInImageResponse& response);
void handle(Call& call, const _ns1__readImageMeta& request, _ns1__readImageMetaResponse& response);
void handle(Call& call, const _ns1__writeImageMeta& request, _ns1__writeImageMetaResponse& response);

} // namespace soapwrapper::simulator

#endif
