#include "simulator/service/operation_waits.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/operation_settings.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"

#include <cstddef>

namespace soapwrapper::simulator
{
namespace
{

// The wire's choices, by their kinds.
enum Choice {
    kNoResult = 0,
    kValidateSnap,
    kProvisionTopology,
    kCreateSnap,
    kImportSnap,
    kCopySnap,
    kGetSnapDiff
};

template <class Result>
Result* wire_snapshot_result(const Call& call, Result* (*factory)(soap*, int), const OperationResult& result)
{
    Result* wire = call.make(factory);
    wire->targetSnapName = result.snapshot_name;
    wire->targetSnapLsu = call.make(soap_new_ns1__LSUSpecification);
    wire->targetSnapLsu->server = result.server_name;
    wire->targetSnapLsu->lsu = result.lsu_name;
    return wire;
}

template <class Result>
Result* wire_topology_result(const Call& call, Result* (*factory)(soap*, int), const OperationResult& result)
{
    Result* wire = call.make(factory);
    wire->targetTopology = result.topology;
    return wire;
}

ns1__AIOResultGetSnapDiff* wire_differences(const Call& call, const OperationResult& result)
{
    ns1__AIOResultGetSnapDiff* wire = call.make(soap_new_ns1__AIOResultGetSnapDiff);
    wire->numDiffs = static_cast<int>(result.differences.size());
    wire->diffObjectList = call.make(soap_new_ns1__ArrayOfDiffObjectSpecification);
    for (const DifferingObject& object : result.differences) {
        ns1__DiffObjectSpecification* item = call.make(soap_new_ns1__DiffObjectSpecification);
        item->objectName = object.name;
        item->objectType = object.type;
        item->objectState = object.state;
        wire->diffObjectList->item.push_back(item);
    }
    return wire;
}

// The arm of the result. The kinds that aren't told here have none.
void fill_in_result(const Call& call, const LongOperation& operation, ns1__AIOResultSnap& wire)
{
    const OperationResult& result = operation.result;
    auto& arm = wire.union_AIOResultSnap;
    switch (operation.kind) {
    case OperationKind::kValidate:
        wire.__union_AIOResultSnap = kValidateSnap;
        arm.validateSnap = wire_topology_result(call, soap_new_ns1__AIOResultValidateSnap, result);
        break;
    case OperationKind::kProvision:
        wire.__union_AIOResultSnap = kProvisionTopology;
        arm.provisionTopology = wire_topology_result(call, soap_new_ns1__AIOResultProvisionTopology, result);
        break;
    case OperationKind::kCreate:
        wire.__union_AIOResultSnap = kCreateSnap;
        arm.createSnap = wire_snapshot_result(call, soap_new_ns1__AIOResultCreateSnap, result);
        break;
    case OperationKind::kImport:
        wire.__union_AIOResultSnap = kImportSnap;
        arm.importSnap = wire_snapshot_result(call, soap_new_ns1__AIOResultImportSnap, result);
        break;
    case OperationKind::kCopy:
        wire.__union_AIOResultSnap = kCopySnap;
        arm.copySnap = wire_snapshot_result(call, soap_new_ns1__AIOResultCopySnap, result);
        break;
    case OperationKind::kDiff:
        wire.__union_AIOResultSnap = kGetSnapDiff;
        arm.getSnapDiff = wire_differences(call, result);
        break;
    case OperationKind::kRollback:
    case OperationKind::kPrepare:
    case OperationKind::kPostProcess:
    case OperationKind::kCopyImage:
        break;
    }
}

int delay_of(const Model::Use& storage, const LongOperation& operation)
{
    return operation.is_running() ? storage.operations().retry_interval() : 0;
}

ns1__AIOResultSnap* wire_snapshot_state(const Call& call, const Model::Use& storage,
                                        const LongOperation& operation)
{
    ns1__AIOResultSnap* wire = call.make(soap_new_ns1__AIOResultSnap);
    wire->totalBytesTransferred = operation.bytes_moved(storage->now());
    wire->error = operation.error;
    wire->retryInterval = delay_of(storage, operation);
    // Without a result the number has to be one that clients know to have none.
    if (operation.error == 0 && operation.kind != OperationKind::kCopyImage) {
        wire->resultSnapType = static_cast<int>(operation.kind);
        fill_in_result(call, operation, *wire);
    }
    return wire;
}

ns1__AIOResult* wire_state(const Call& call, const Model::Use& storage, const LongOperation& operation)
{
    ns1__AIOResult* wire = call.make(soap_new_ns1__AIOResult);
    const std::string& image = operation.result.image;
    if (!image.empty()) wire->image = wire_handle(call, soap_new_ns1__ImageHandle, image);
    wire->bytesTransferred = operation.bytes_moved(storage->now());
    wire->error = operation.error;
    wire->delayInSeconds = delay_of(storage, operation);
    return wire;
}

// What goes by an id goes without a server's handle: the id is known to nobody else.
template <class Request>
const std::string& id_of(const Request& request)
{
    required(request.sd, "sd");
    return token_of(request.opid, "opid");
}

template <class Request>
const LongOperation& by_id(const Model::Use& storage, const Request& request)
{
    return storage.operations().by_token(id_of(request));
}

template <class Request>
const LongOperation& by_name(const Model::Use& storage, const Request& request)
{
    const std::size_t server = storage->session(token_of(request.serverHandle)).server;
    return storage.operations().by_name(server, request.opname);
}

} // namespace

void handle(Call& call, const _ns1__asyncWait& request, _ns1__asyncWaitResponse& response)
{
    const Model::Use storage = call.model().use();
    response.result = wire_state(call, storage, by_id(storage, request));
}

void handle(Call& call, const _ns1__asyncWaitSnap& request, _ns1__asyncWaitSnapResponse& response)
{
    const Model::Use storage = call.model().use();
    response.result = wire_snapshot_state(call, storage, by_id(storage, request));
}

void handle(Call& call, const _ns1__asyncCancel& request, _ns1__asyncCancelResponse&)
{
    const Model::Use storage = call.model().use();
    storage.operations().cancel_by_token(*storage, id_of(request));
}

void handle(Call& call, const _ns1__namedAsyncWait& request, _ns1__namedAsyncWaitResponse& response)
{
    const Model::Use storage = call.model().use();
    response.result = wire_state(call, storage, by_name(storage, request));
}

void handle(Call& call, const _ns1__namedAsyncWaitSnap& request, _ns1__namedAsyncWaitSnapResponse& response)
{
    const Model::Use storage = call.model().use();
    response.result = wire_snapshot_state(call, storage, by_name(storage, request));
}

// The fault is the answer, unless all went well.
void handle(Call& call, const _ns1__namedAsyncStatus& request, _ns1__namedAsyncStatusResponse&)
{
    const Model::Use storage = call.model().use();
    const LongOperation& operation = by_name(storage, request);
    if (operation.error == 0) return;
    throw Fault(operation.error,
                operation.is_running() ? "the operation is running" : "the operation has failed");
}

void handle(Call& call, const _ns1__namedAsyncCancel& request, _ns1__namedAsyncCancelResponse&)
{
    const Model::Use storage = call.model().use();
    const std::size_t server = storage->session(token_of(request.serverHandle)).server;
    storage.operations().cancel_by_name(*storage, server, request.opname);
}

} // namespace soapwrapper::simulator
