// The requests that start long operations.
#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_OPERATION_STARTS_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_OPERATION_STARTS_H

#include "simulator/service/call.h"
#include "simulator/storage/long_operations.h"

#include <string>

namespace soapwrapper::simulator
{

// Returns the id by which the operation goes.
ns1__OperationID* start_operation(Call& call, LongOperation operation);
// Under the client's name.
void start_operation(Call& call, const std::string& name, LongOperation operation);

// By an id of the service's.
void handle(Call& call, const _ns1__asyncCreateSnapByName& request,
            _ns1__asyncCreateSnapByNameResponse& response);
void handle(Call& call, const _ns1__asyncPrepareSnapByName& request,
            _ns1__asyncPrepareSnapByNameResponse& response);
void handle(Call& call, const _ns1__asyncValidateSnapByName& request,
            _ns1__asyncValidateSnapByNameResponse& response);
void handle(Call& call, const _ns1__asyncCopySnapByName& request,
            _ns1__asyncCopySnapByNameResponse& response);
void handle(Call& call, const _ns1__asyncImportSnapByName& request,
            _ns1__asyncImportSnapByNameResponse& response);
void handle(Call& call, const _ns1__asyncPostProcessSnapByName& request,
            _ns1__asyncPostProcessSnapByNameResponse& response);
void handle(Call& call, const _ns1__asyncRollbackSnap& request, _ns1__asyncRollbackSnapResponse& response);
void handle(Call& call, const _ns1__asyncProvisionTopology& request,
            _ns1__asyncProvisionTopologyResponse& response);
void handle(Call& call, const _ns1__asyncGetSnapDiff& request, _ns1__asyncGetSnapDiffResponse& response);

// By a name of the client's.
void handle(Call& call, const _ns1__namedAsyncCreateSnapByName& request,
            _ns1__namedAsyncCreateSnapByNameResponse& response);
void handle(Call& call, const _ns1__namedAsyncPrepareSnapByName& request,
            _ns1__namedAsyncPrepareSnapByNameResponse& response);
void handle(Call& call, const _ns1__namedAsyncValidateSnapByName& request,
            _ns1__namedAsyncValidateSnapByNameResponse& response);
void handle(Call& call, const _ns1__namedAsyncCopySnapByName& request,
            _ns1__namedAsyncCopySnapByNameResponse& response);
void handle(Call& call, const _ns1__namedAsyncImportSnapByName& request,
            _ns1__namedAsyncImportSnapByNameResponse& response);
void handle(Call& call, const _ns1__namedAsyncPostProcessSnapByName& request,
            _ns1__namedAsyncPostProcessSnapByNameResponse& response);
void handle(Call& call, const _ns1__namedAsyncRollbackSnap& request,
            _ns1__namedAsyncRollbackSnapResponse& response);
void handle(Call& call, const _ns1__namedAsyncProvisionTopology& request,
            _ns1__namedAsyncProvisionTopologyResponse& response);
void handle(Call& call, const _ns1__namedAsyncGetSnapDiff& request,
            _ns1__namedAsyncGetSnapDiffResponse& response);

} // namespace soapwrapper::simulator

#endif
