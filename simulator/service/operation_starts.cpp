#include "simulator/service/operation_starts.h"

#include "simulator/service/call.h"
#include "simulator/service/start_wire.h"
#include "simulator/service/wire.h"
#include "simulator/storage/difference.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/rollback.h"
#include "simulator/storage/snapshot_operations.h"
#include "simulator/storage/start_requests.h"
#include "simulator/storage/topology.h"

#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

// What a request asks for. The two families name it by the same elements.

template <class Request>
VolumeStart volume_start(const Request& request, const ns1__SnapDefinition* definition, const char* element)
{
    VolumeStart start;
    start.session = token_of(request.serverHandle);
    start.volume = volume_of(request.sourceVolSpec, "sourceVolSpec");
    start.definition = definition_of(definition, element);
    return start;
}

template <class Request>
VolumeStart targeted_start(const Request& request)
{
    VolumeStart start = volume_start(request, request.targetSnapDef, "targetSnapDef");
    start.targets = targets_of(request.targetLSUSpecs, request.ntargets);
    return start;
}

template <class Request>
VolumeStart topology_start(const Request& request)
{
    VolumeStart start = targeted_start(request);
    start.topology = request.targetTopology;
    return start;
}

template <class Request>
SnapshotStart snapshot_start(const Request& request, const std::string& name)
{
    const ns1__LSU& lsu = required(request.lsu, "lsu");
    return {token_of(lsu.serverHandle), lsu.lsuName, name, {}};
}

template <class Request>
SnapshotStart copy_start(const Request& request)
{
    SnapshotStart start = snapshot_start(request, required(request.snapDef, "snapDef").snapName);
    start.targets = targets_of(request.targetLSUSpecs, request.ntargets);
    return start;
}

template <class Request>
LongOperation rollback_operation_of(Model& model, const Request& request)
{
    // In two steps: the first one's use of the storage ends with it.
    const Rollback rollback = rollback_of(*model.use(), request);
    return rollback_operation(model, rollback);
}

template <class Request>
DifferenceStart difference_start(const Request& request)
{
    DifferenceStart start;
    start.session = token_of(request.serverHandle);
    start.snapshot = required(request.snapshot, "snapshot").snapName;
    start.target_session = token_of(request.targetServerHandle, "targetServerHandle");
    for (const ns1__VolumeSpecification* item :
         items_of(request.rollbackList, request.numRollbacks, "rollbackList")) {
        start.volumes.push_back(volume_of(item, "item"));
    }
    return start;
}

} // namespace

ns1__OperationID* start_operation(Call& call, LongOperation operation)
{
    const Model::Use storage = call.model().use();
    return wire_handle(call, soap_new_ns1__OperationID,
                       storage.operations().start(std::move(operation), storage->now()));
}

void start_operation(Call& call, const std::string& name, LongOperation operation)
{
    const Model::Use storage = call.model().use();
    storage.operations().start_named(name, std::move(operation), storage->now());
}

void handle(Call& call, const _ns1__asyncCreateSnapByName& request,
            _ns1__asyncCreateSnapByNameResponse& response)
{
    response.opid = start_operation(call, create_operation(call.model(), targeted_start(request)));
}

void handle(Call& call, const _ns1__asyncPrepareSnapByName& request,
            _ns1__asyncPrepareSnapByNameResponse& response)
{
    response.opid = start_operation(call, prepare_operation(call.model(), targeted_start(request)));
}

void handle(Call& call, const _ns1__asyncValidateSnapByName& request,
            _ns1__asyncValidateSnapByNameResponse& response)
{
    response.opid = start_operation(call, validate_operation(call.model(), topology_start(request)));
}

void handle(Call& call, const _ns1__asyncCopySnapByName& request, _ns1__asyncCopySnapByNameResponse& response)
{
    response.opid = start_operation(call, copy_operation(call.model(), copy_start(request)));
}

void handle(Call& call, const _ns1__asyncImportSnapByName& request,
            _ns1__asyncImportSnapByNameResponse& response)
{
    response.opid = start_operation(
        call, import_operation(call.model(), volume_start(request, request.sourceSnapDef, "sourceSnapDef")));
}

void handle(Call& call, const _ns1__asyncPostProcessSnapByName& request,
            _ns1__asyncPostProcessSnapByNameResponse& response)
{
    response.opid = start_operation(
        call, post_process_operation(call.model(), snapshot_start(request, request.snapName)));
}

void handle(Call& call, const _ns1__asyncRollbackSnap& request, _ns1__asyncRollbackSnapResponse& response)
{
    response.opid = start_operation(call, rollback_operation_of(call.model(), request));
}

void handle(Call& call, const _ns1__asyncProvisionTopology& request,
            _ns1__asyncProvisionTopologyResponse& response)
{
    response.opid = start_operation(call, provision_operation(call.model(), topology_start(request)));
}

void handle(Call& call, const _ns1__asyncGetSnapDiff& request, _ns1__asyncGetSnapDiffResponse& response)
{
    response.opid = start_operation(call, difference_operation(call.model(), difference_start(request)));
}

void handle(Call& call, const _ns1__namedAsyncCreateSnapByName& request,
            _ns1__namedAsyncCreateSnapByNameResponse&)
{
    start_operation(call, request.opname, create_operation(call.model(), targeted_start(request)));
}

void handle(Call& call, const _ns1__namedAsyncPrepareSnapByName& request,
            _ns1__namedAsyncPrepareSnapByNameResponse&)
{
    start_operation(call, request.opname, prepare_operation(call.model(), targeted_start(request)));
}

void handle(Call& call, const _ns1__namedAsyncValidateSnapByName& request,
            _ns1__namedAsyncValidateSnapByNameResponse&)
{
    start_operation(call, request.opname, validate_operation(call.model(), topology_start(request)));
}

void handle(Call& call, const _ns1__namedAsyncCopySnapByName& request,
            _ns1__namedAsyncCopySnapByNameResponse&)
{
    start_operation(call, request.opname, copy_operation(call.model(), copy_start(request)));
}

void handle(Call& call, const _ns1__namedAsyncImportSnapByName& request,
            _ns1__namedAsyncImportSnapByNameResponse&)
{
    start_operation(
        call, request.opname,
        import_operation(call.model(), volume_start(request, request.sourceSnapDef, "sourceSnapDef")));
}

void handle(Call& call, const _ns1__namedAsyncPostProcessSnapByName& request,
            _ns1__namedAsyncPostProcessSnapByNameResponse&)
{
    start_operation(call, request.opname,
                    post_process_operation(call.model(), snapshot_start(request, request.snapName)));
}

void handle(Call& call, const _ns1__namedAsyncRollbackSnap& request, _ns1__namedAsyncRollbackSnapResponse&)
{
    start_operation(call, request.opname, rollback_operation_of(call.model(), request));
}

void handle(Call& call, const _ns1__namedAsyncProvisionTopology& request,
            _ns1__namedAsyncProvisionTopologyResponse&)
{
    start_operation(call, request.opname, provision_operation(call.model(), topology_start(request)));
}

void handle(Call& call, const _ns1__namedAsyncGetSnapDiff& request, _ns1__namedAsyncGetSnapDiffResponse&)
{
    start_operation(call, request.opname, difference_operation(call.model(), difference_start(request)));
}

} // namespace soapwrapper::simulator
