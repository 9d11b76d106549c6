// Long copies of images, from one LSU to another.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_IMAGE_COPIES_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_IMAGE_COPIES_H

#include "simulator/service/call.h"

namespace soapwrapper::simulator
{

void handle(Call& call, const _ns1__asyncCopyImage& request, _ns1__asyncCopyImageResponse& response);
void handle(Call& call, const _ns1__asyncEndCopyImage& request, _ns1__asyncEndCopyImageResponse& response);
void handle(Call& call, const _ns1__namedAsyncCopyImage& request,
            _ns1__namedAsyncCopyImageResponse& response);
void handle(Call& call, const _ns1__namedAsyncEndCopyImage& request,
            _ns1__namedAsyncEndCopyImageResponse& response);

} // namespace soapwrapper::simulator

#endif
