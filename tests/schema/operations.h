// The 74 operations in the order of the proxy's slots, and the 205 wire classes in the contract's order.
#ifndef SCHEMA_TEST_OPERATIONS_H
#define SCHEMA_TEST_OPERATIONS_H

#include "soapwrapperPSVWSSoapBindingProxy.h"

#include <string>

// The second name is that of the operation whose response answers.
// clang-format off
#define PSVWS_OPERATIONS(OPERATION) \
    OPERATION(addExport, addExport) \
    OPERATION(asyncCancel, asyncCancel) \
    OPERATION(asyncCopyImage, asyncCopyImage) \
    OPERATION(asyncCopySnapByName, asyncCopySnapByName) \
    OPERATION(asyncCreateSnapByName, asyncCreateSnapByName) \
    OPERATION(asyncEndCopyImage, asyncEndCopyImage) \
    OPERATION(asyncGetSnapDiff, asyncGetSnapDiff) \
    OPERATION(asyncPostProcessSnapByName, asyncPostProcessSnapByName) \
    OPERATION(asyncPrepareSnapByName, asyncPrepareSnapByName) \
    OPERATION(asyncRollbackSnap, asyncRollbackSnap) \
    OPERATION(asyncValidateSnapByName, asyncValidateSnapByName) \
    OPERATION(asyncProvisionTopology, asyncProvisionTopology) \
    OPERATION(asyncImportSnapByName, asyncImportSnapByName) \
    OPERATION(asyncWait, asyncWait) \
    OPERATION(asyncWaitSnap, asyncWaitSnap) \
    OPERATION(beginCopyImage, beginCopyImage) \
    OPERATION(claimVolume, claimVolume) \
    OPERATION(closeEventChannel, closeEventChannel) \
    OPERATION(closeImage, closeImage) \
    OPERATION(closeImageList, closeImageList) \
    OPERATION(closeLSUList, closeLSUList) \
    OPERATION(closeServer, closeServer) \
    OPERATION(closeSnapChangeList, closeSnapChangeList) \
    OPERATION(closeSnapList, closeSnapList) \
    OPERATION(copyExtent, copyExtent) \
    OPERATION(createExport, createExport) \
    OPERATION(createImage, createImage) \
    OPERATION(deleteEvent, deleteEvent) \
    OPERATION(deleteExport, deleteExport) \
    OPERATION(deleteImage, deleteImage) \
    OPERATION(deleteSnap, deleteSnap) \
    OPERATION(getEvent, getEvent) \
    OPERATION(getEventPayload, getEventPayload) \
    OPERATION(getImageProp, getImageProp) \
    OPERATION(getImagePropByName, getImagePropByName) \
    OPERATION(getLSUPropByName, getLSUPropByName) \
    OPERATION(getLSUReplicationProp, getLSUReplicationProp) \
    OPERATION(getServerProp, getServerProp) \
    OPERATION(getServerPropByName, getServerPropByName) \
    OPERATION(getSnapPropByName, getSnapPropByName) \
    OPERATION(includeInImage, includeInImage) \
    OPERATION(labelLSU, labelLSU) \
    OPERATION(listFile, listFile) \
    OPERATION(listImage, listImage) \
    OPERATION(listLSU, listLSU) \
    OPERATION(listSnap, listSnap) \
    OPERATION(namedAsyncCancel, namedAsyncCancel) \
    OPERATION(namedAsyncCopyImage, namedAsyncCopyImage) \
    OPERATION(namedAsyncCopySnapByName, namedAsyncCopySnapByName) \
    OPERATION(namedAsyncCreateSnapByName, namedAsyncCreateSnapByName) \
    OPERATION(namedAsyncEndCopyImage, namedAsyncEndCopyImage) \
    OPERATION(namedAsyncGetSnapDiff, namedAsyncGetSnapDiff) \
    OPERATION(namedAsyncPostProcessSnapByName, namedAsyncPostProcessSnapByName) \
    OPERATION(namedAsyncPrepareSnapByName, namedAsyncPrepareSnapByName) \
    OPERATION(namedAsyncRollbackSnap, namedAsyncRollbackSnap) \
    OPERATION(namedAsyncStatus, namedAsyncStatus) \
    OPERATION(namedAsyncValidateSnapByName, namedAsyncValidateSnapByName) \
    OPERATION(namedAsyncProvisionTopology, namedAsyncProvisionTopology) \
    OPERATION(namedAsyncImportSnapByName, namedAsyncImportSnapByName) \
    OPERATION(namedAsyncWait, namedAsyncWait) \
    OPERATION(namedAsyncWaitSnap, namedAsyncWaitSnap) \
    OPERATION(openEventChannel, openEventChannel) \
    OPERATION(openImage, openImage) \
    OPERATION(openImageList, openImageList) \
    OPERATION(openLSUList, openLSUList) \
    OPERATION(openServer, openServer) \
    OPERATION(openSnapChangeList, openSnapChangeList) \
    OPERATION(openSnapList, openSnapList) \
    OPERATION(openSnapListByVolume, openSnapList) \
    OPERATION(openTargetServer, openTargetServer) \
    OPERATION(readImageMeta, readImageMeta) \
    OPERATION(validateRollback, validateRollback) \
    OPERATION(ioControl, ioControl) \
    OPERATION(writeImageMeta, writeImageMeta)

#define PSVWS_WIRE_CLASSES(WIRE_CLASS) \
    WIRE_CLASS(ns1__ArrayOfInt) \
    WIRE_CLASS(ns1__ArrayOfString) \
    WIRE_CLASS(ns1__Credential) \
    WIRE_CLASS(ns1__SessionDefinition) \
    WIRE_CLASS(ns1__ServerHandle) \
    WIRE_CLASS(ns1__STSException) \
    WIRE_CLASS(ns1__ServerInformation) \
    WIRE_CLASS(ns1__LSU) \
    WIRE_CLASS(ns1__LSUDefinition) \
    WIRE_CLASS(ns1__LSUInformation) \
    WIRE_CLASS(ns1__LSUSpecification) \
    WIRE_CLASS(ns1__ArrayOfLSUSpecification) \
    WIRE_CLASS(ns1__LSUReplicationProps) \
    WIRE_CLASS(ns1__LSUListHandle) \
    WIRE_CLASS(ns1__IndependentSupplierId) \
    WIRE_CLASS(ns1__ImageDefinition) \
    WIRE_CLASS(ns1__ImageInformation) \
    WIRE_CLASS(ns1__Export) \
    WIRE_CLASS(ns1__ArrayOfExport) \
    WIRE_CLASS(ns1__ImageHandle) \
    WIRE_CLASS(ns1__ImageListHandle) \
    WIRE_CLASS(ns1__ReadResult) \
    WIRE_CLASS(ns1__SnapDefinition) \
    WIRE_CLASS(ns1__SnapInformation) \
    WIRE_CLASS(ns1__SnapListHandle) \
    WIRE_CLASS(ns1__VolumeSpecification) \
    WIRE_CLASS(ns1__NFSVolumeSpecification) \
    WIRE_CLASS(ns1__CIFSVolumeSpecification) \
    WIRE_CLASS(ns1__SCSIVolumeSpecification) \
    WIRE_CLASS(ns1__DeviceVolumeSpecification) \
    WIRE_CLASS(ns1__NDMPVolumeSpecification) \
    WIRE_CLASS(ns1__ArrayOfVolumeSpecification) \
    WIRE_CLASS(ns1__HostSpecification) \
    WIRE_CLASS(ns1__FileAttr) \
    WIRE_CLASS(ns1__ArrayOfFileAttr) \
    WIRE_CLASS(ns1__OperationID) \
    WIRE_CLASS(ns1__AIOResult) \
    WIRE_CLASS(ns1__AIOResultSnap) \
    WIRE_CLASS(ns1__AIOResultValidateSnap) \
    WIRE_CLASS(ns1__AIOResultProvisionTopology) \
    WIRE_CLASS(ns1__AIOResultCreateSnap) \
    WIRE_CLASS(ns1__AIOResultImportSnap) \
    WIRE_CLASS(ns1__AIOResultCopySnap) \
    WIRE_CLASS(ns1__AIOResultGetSnapDiff) \
    WIRE_CLASS(ns1__OperationStatus) \
    WIRE_CLASS(ns1__EventChannelHandle) \
    WIRE_CLASS(ns1__Event) \
    WIRE_CLASS(ns1__EventBody) \
    WIRE_CLASS(ns1__EventActivity) \
    WIRE_CLASS(ns1__EventLSUInformation) \
    WIRE_CLASS(ns1__EventImageInformation) \
    WIRE_CLASS(ns1__EventServerInformation) \
    WIRE_CLASS(ns1__EventImageReplication) \
    WIRE_CLASS(ns1__ServerStatus) \
    WIRE_CLASS(ns1__LSUStatus) \
    WIRE_CLASS(ns1__FileListHandle) \
    WIRE_CLASS(ns1__DiffObjectSpecification) \
    WIRE_CLASS(ns1__ArrayOfDiffObjectSpecification) \
    WIRE_CLASS(_ns1__openServer) \
    WIRE_CLASS(_ns1__openServerResponse) \
    WIRE_CLASS(_ns1__openTargetServer) \
    WIRE_CLASS(_ns1__openTargetServerResponse) \
    WIRE_CLASS(_ns1__closeServer) \
    WIRE_CLASS(_ns1__closeServerResponse) \
    WIRE_CLASS(_ns1__getServerProp) \
    WIRE_CLASS(_ns1__getServerPropResponse) \
    WIRE_CLASS(_ns1__getServerPropByName) \
    WIRE_CLASS(_ns1__getServerPropByNameResponse) \
    WIRE_CLASS(_ns1__openLSUList) \
    WIRE_CLASS(_ns1__openLSUListResponse) \
    WIRE_CLASS(_ns1__listLSU) \
    WIRE_CLASS(_ns1__listLSUResponse) \
    WIRE_CLASS(_ns1__closeLSUList) \
    WIRE_CLASS(_ns1__closeLSUListResponse) \
    WIRE_CLASS(_ns1__getLSUPropByName) \
    WIRE_CLASS(_ns1__getLSUPropByNameResponse) \
    WIRE_CLASS(_ns1__getLSUReplicationProp) \
    WIRE_CLASS(_ns1__getLSUReplicationPropResponse) \
    WIRE_CLASS(_ns1__labelLSU) \
    WIRE_CLASS(_ns1__labelLSUResponse) \
    WIRE_CLASS(_ns1__openImageList) \
    WIRE_CLASS(_ns1__openImageListResponse) \
    WIRE_CLASS(_ns1__listImage) \
    WIRE_CLASS(_ns1__listImageResponse) \
    WIRE_CLASS(_ns1__closeImageList) \
    WIRE_CLASS(_ns1__closeImageListResponse) \
    WIRE_CLASS(_ns1__getImageProp) \
    WIRE_CLASS(_ns1__getImagePropResponse) \
    WIRE_CLASS(_ns1__getImagePropByName) \
    WIRE_CLASS(_ns1__getImagePropByNameResponse) \
    WIRE_CLASS(_ns1__deleteImage) \
    WIRE_CLASS(_ns1__deleteImageResponse) \
    WIRE_CLASS(_ns1__createImage) \
    WIRE_CLASS(_ns1__createImageResponse) \
    WIRE_CLASS(_ns1__openImage) \
    WIRE_CLASS(_ns1__openImageResponse) \
    WIRE_CLASS(_ns1__closeImage) \
    WIRE_CLASS(_ns1__closeImageResponse) \
    WIRE_CLASS(_ns1__readImageMeta) \
    WIRE_CLASS(_ns1__readImageMetaResponse) \
    WIRE_CLASS(_ns1__writeImageMeta) \
    WIRE_CLASS(_ns1__writeImageMetaResponse) \
    WIRE_CLASS(_ns1__copyExtent) \
    WIRE_CLASS(_ns1__copyExtentResponse) \
    WIRE_CLASS(_ns1__includeInImage) \
    WIRE_CLASS(_ns1__includeInImageResponse) \
    WIRE_CLASS(_ns1__beginCopyImage) \
    WIRE_CLASS(_ns1__beginCopyImageResponse) \
    WIRE_CLASS(_ns1__openSnapList) \
    WIRE_CLASS(_ns1__openSnapListResponse) \
    WIRE_CLASS(_ns1__openSnapListByVolume) \
    WIRE_CLASS(_ns1__listSnap) \
    WIRE_CLASS(_ns1__listSnapResponse) \
    WIRE_CLASS(_ns1__closeSnapList) \
    WIRE_CLASS(_ns1__closeSnapListResponse) \
    WIRE_CLASS(_ns1__getSnapPropByName) \
    WIRE_CLASS(_ns1__getSnapPropByNameResponse) \
    WIRE_CLASS(_ns1__deleteSnap) \
    WIRE_CLASS(_ns1__deleteSnapResponse) \
    WIRE_CLASS(_ns1__validateRollback) \
    WIRE_CLASS(_ns1__validateRollbackResponse) \
    WIRE_CLASS(_ns1__createExport) \
    WIRE_CLASS(_ns1__createExportResponse) \
    WIRE_CLASS(_ns1__addExport) \
    WIRE_CLASS(_ns1__addExportResponse) \
    WIRE_CLASS(_ns1__deleteExport) \
    WIRE_CLASS(_ns1__deleteExportResponse) \
    WIRE_CLASS(_ns1__claimVolume) \
    WIRE_CLASS(_ns1__claimVolumeResponse) \
    WIRE_CLASS(_ns1__asyncCreateSnapByName) \
    WIRE_CLASS(_ns1__asyncCreateSnapByNameResponse) \
    WIRE_CLASS(_ns1__asyncPrepareSnapByName) \
    WIRE_CLASS(_ns1__asyncPrepareSnapByNameResponse) \
    WIRE_CLASS(_ns1__asyncValidateSnapByName) \
    WIRE_CLASS(_ns1__asyncValidateSnapByNameResponse) \
    WIRE_CLASS(_ns1__asyncCopySnapByName) \
    WIRE_CLASS(_ns1__asyncCopySnapByNameResponse) \
    WIRE_CLASS(_ns1__asyncImportSnapByName) \
    WIRE_CLASS(_ns1__asyncImportSnapByNameResponse) \
    WIRE_CLASS(_ns1__asyncPostProcessSnapByName) \
    WIRE_CLASS(_ns1__asyncPostProcessSnapByNameResponse) \
    WIRE_CLASS(_ns1__asyncRollbackSnap) \
    WIRE_CLASS(_ns1__asyncRollbackSnapResponse) \
    WIRE_CLASS(_ns1__asyncProvisionTopology) \
    WIRE_CLASS(_ns1__asyncProvisionTopologyResponse) \
    WIRE_CLASS(_ns1__asyncGetSnapDiff) \
    WIRE_CLASS(_ns1__asyncGetSnapDiffResponse) \
    WIRE_CLASS(_ns1__asyncCopyImage) \
    WIRE_CLASS(_ns1__asyncCopyImageResponse) \
    WIRE_CLASS(_ns1__asyncEndCopyImage) \
    WIRE_CLASS(_ns1__asyncEndCopyImageResponse) \
    WIRE_CLASS(_ns1__asyncWait) \
    WIRE_CLASS(_ns1__asyncWaitResponse) \
    WIRE_CLASS(_ns1__asyncWaitSnap) \
    WIRE_CLASS(_ns1__asyncWaitSnapResponse) \
    WIRE_CLASS(_ns1__asyncCancel) \
    WIRE_CLASS(_ns1__asyncCancelResponse) \
    WIRE_CLASS(_ns1__namedAsyncCreateSnapByName) \
    WIRE_CLASS(_ns1__namedAsyncCreateSnapByNameResponse) \
    WIRE_CLASS(_ns1__namedAsyncPrepareSnapByName) \
    WIRE_CLASS(_ns1__namedAsyncPrepareSnapByNameResponse) \
    WIRE_CLASS(_ns1__namedAsyncValidateSnapByName) \
    WIRE_CLASS(_ns1__namedAsyncValidateSnapByNameResponse) \
    WIRE_CLASS(_ns1__namedAsyncCopySnapByName) \
    WIRE_CLASS(_ns1__namedAsyncCopySnapByNameResponse) \
    WIRE_CLASS(_ns1__namedAsyncImportSnapByName) \
    WIRE_CLASS(_ns1__namedAsyncImportSnapByNameResponse) \
    WIRE_CLASS(_ns1__namedAsyncPostProcessSnapByName) \
    WIRE_CLASS(_ns1__namedAsyncPostProcessSnapByNameResponse) \
    WIRE_CLASS(_ns1__namedAsyncRollbackSnap) \
    WIRE_CLASS(_ns1__namedAsyncRollbackSnapResponse) \
    WIRE_CLASS(_ns1__namedAsyncProvisionTopology) \
    WIRE_CLASS(_ns1__namedAsyncProvisionTopologyResponse) \
    WIRE_CLASS(_ns1__namedAsyncGetSnapDiff) \
    WIRE_CLASS(_ns1__namedAsyncGetSnapDiffResponse) \
    WIRE_CLASS(_ns1__namedAsyncCopyImage) \
    WIRE_CLASS(_ns1__namedAsyncCopyImageResponse) \
    WIRE_CLASS(_ns1__namedAsyncEndCopyImage) \
    WIRE_CLASS(_ns1__namedAsyncEndCopyImageResponse) \
    WIRE_CLASS(_ns1__namedAsyncWait) \
    WIRE_CLASS(_ns1__namedAsyncWaitResponse) \
    WIRE_CLASS(_ns1__namedAsyncWaitSnap) \
    WIRE_CLASS(_ns1__namedAsyncWaitSnapResponse) \
    WIRE_CLASS(_ns1__namedAsyncStatus) \
    WIRE_CLASS(_ns1__namedAsyncStatusResponse) \
    WIRE_CLASS(_ns1__namedAsyncCancel) \
    WIRE_CLASS(_ns1__namedAsyncCancelResponse) \
    WIRE_CLASS(_ns1__openEventChannel) \
    WIRE_CLASS(_ns1__openEventChannelResponse) \
    WIRE_CLASS(_ns1__closeEventChannel) \
    WIRE_CLASS(_ns1__closeEventChannelResponse) \
    WIRE_CLASS(_ns1__getEvent) \
    WIRE_CLASS(_ns1__getEventResponse) \
    WIRE_CLASS(_ns1__getEventPayload) \
    WIRE_CLASS(_ns1__getEventPayloadResponse) \
    WIRE_CLASS(_ns1__deleteEvent) \
    WIRE_CLASS(_ns1__deleteEventResponse) \
    WIRE_CLASS(_ns1__openSnapChangeList) \
    WIRE_CLASS(_ns1__openSnapChangeListResponse) \
    WIRE_CLASS(_ns1__listFile) \
    WIRE_CLASS(_ns1__listFileResponse) \
    WIRE_CLASS(_ns1__closeSnapChangeList) \
    WIRE_CLASS(_ns1__closeSnapChangeListResponse) \
    WIRE_CLASS(_ns1__ioControl) \
    WIRE_CLASS(_ns1__ioControlResponse)
// clang-format on

namespace schema_test
{

// One operation: its types and its four forms. The member pointers hold the forms to their exact signatures.
template <class RequestType, class ResponseType>
struct Operation {
    using Request = RequestType;
    using Response = ResponseType;
    using Proxy = PSVWSSoapBindingProxy;

    std::string name;
    std::string response_name;
    int (Proxy::*short_form)(Request*, Response&);
    int (Proxy::*long_form)(const char* endpoint, const char* action, Request*, Response&);
    int (Proxy::*send)(const char* endpoint, const char* action, Request*);
    int (Proxy::*receive)(Response&);
};

// Calls `visit` with each operation, in slot order.
template <class Visitor>
void each_operation(Visitor&& visit)
{
#define SCHEMA_TEST_VISIT(NAME, ANSWER)                                                                      \
    visit(Operation<_ns1__##NAME, _ns1__##ANSWER##Response>{                                                 \
        #NAME, #ANSWER "Response", &PSVWSSoapBindingProxy::NAME, &PSVWSSoapBindingProxy::NAME,               \
        &PSVWSSoapBindingProxy::send_##NAME, &PSVWSSoapBindingProxy::recv_##NAME});
    PSVWS_OPERATIONS(SCHEMA_TEST_VISIT)
#undef SCHEMA_TEST_VISIT
}

template <class WireClass>
struct Tag {
    using Class = WireClass;
    std::string class_name;
};

// Calls `visit` with a tag for each wire class: types first, then messages.
template <class Visitor>
void each_wire_class(Visitor&& visit)
{
#define SCHEMA_TEST_VISIT(CLASS) visit(Tag<CLASS>{#CLASS});
    PSVWS_WIRE_CLASSES(SCHEMA_TEST_VISIT)
#undef SCHEMA_TEST_VISIT
}

} // namespace schema_test

#endif
