// Asking how long operations stand, and stopping them. An answer comes at once: whoever wants to wait asks
// again.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_OPERATION_WAITS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_OPERATION_WAITS_H

#include "simulator/service/call.h"

namespace soapwrapper::simulator
{

void handle(Call& call, const _ns1__asyncWait& request, _ns1__asyncWaitResponse& response);
void handle(Call& call, const _ns1__asyncWaitSnap& request, _ns1__asyncWaitSnapResponse& response);
void handle(Call& call, const _ns1__asyncCancel& request, _ns1__asyncCancelResponse& response);
void handle(Call& call, const _ns1__namedAsyncWait& request, _ns1__namedAsyncWaitResponse& response);
void handle(Call& call, const _ns1__namedAsyncWaitSnap& request, _ns1__namedAsyncWaitSnapResponse& response);
void handle(Call& call, const _ns1__namedAsyncStatus& request, _ns1__namedAsyncStatusResponse& response);
void handle(Call& call, const _ns1__namedAsyncCancel& request, _ns1__namedAsyncCancelResponse& response);

} // namespace soapwrapper::simulator

#endif
