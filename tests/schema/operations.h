// The 74 operations in the order of the proxy's slots.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_OPERATIONS_H
#define SOAPWRAPPER_TESTS_SCHEMA_OPERATIONS_H

#include "soapwrapperPSVWSSoapBindingProxy.h"

#include <string>

// One of them is answered by the response of another.
// clang-format off
#define PSVWS_OPERATIONS(OPERATION, ANSWERED_AS) \
    OPERATION(addExport) \
    OPERATION(asyncCancel) \
    OPERATION(asyncCopyImage) \
    OPERATION(asyncCopySnapByName) \
    OPERATION(asyncCreateSnapByName) \
    OPERATION(asyncEndCopyImage) \
    OPERATION(asyncGetSnapDiff) \
    OPERATION(asyncPostProcessSnapByName) \
    OPERATION(asyncPrepareSnapByName) \
    OPERATION(asyncRollbackSnap) \
    OPERATION(asyncValidateSnapByName) \
    OPERATION(asyncProvisionTopology) \
    OPERATION(asyncImportSnapByName) \
    OPERATION(asyncWait) \
    OPERATION(asyncWaitSnap) \
    OPERATION(beginCopyImage) \
    OPERATION(claimVolume) \
    OPERATION(closeEventChannel) \
    OPERATION(closeImage) \
    OPERATION(closeImageList) \
    OPERATION(closeLSUList) \
    OPERATION(closeServer) \
    OPERATION(closeSnapChangeList) \
    OPERATION(closeSnapList) \
    OPERATION(copyExtent) \
    OPERATION(createExport) \
    OPERATION(createImage) \
    OPERATION(deleteEvent) \
    OPERATION(deleteExport) \
    OPERATION(deleteImage) \
    OPERATION(deleteSnap) \
    OPERATION(getEvent) \
    OPERATION(getEventPayload) \
    OPERATION(getImageProp) \
    OPERATION(getImagePropByName) \
    OPERATION(getLSUPropByName) \
    OPERATION(getLSUReplicationProp) \
    OPERATION(getServerProp) \
    OPERATION(getServerPropByName) \
    OPERATION(getSnapPropByName) \
    OPERATION(includeInImage) \
    OPERATION(labelLSU) \
    OPERATION(listFile) \
    OPERATION(listImage) \
    OPERATION(listLSU) \
    OPERATION(listSnap) \
    OPERATION(namedAsyncCancel) \
    OPERATION(namedAsyncCopyImage) \
    OPERATION(namedAsyncCopySnapByName) \
    OPERATION(namedAsyncCreateSnapByName) \
    OPERATION(namedAsyncEndCopyImage) \
    OPERATION(namedAsyncGetSnapDiff) \
    OPERATION(namedAsyncPostProcessSnapByName) \
    OPERATION(namedAsyncPrepareSnapByName) \
    OPERATION(namedAsyncRollbackSnap) \
    OPERATION(namedAsyncStatus) \
    OPERATION(namedAsyncValidateSnapByName) \
    OPERATION(namedAsyncProvisionTopology) \
    OPERATION(namedAsyncImportSnapByName) \
    OPERATION(namedAsyncWait) \
    OPERATION(namedAsyncWaitSnap) \
    OPERATION(openEventChannel) \
    OPERATION(openImage) \
    OPERATION(openImageList) \
    OPERATION(openLSUList) \
    OPERATION(openServer) \
    OPERATION(openSnapChangeList) \
    OPERATION(openSnapList) \
    ANSWERED_AS(openSnapListByVolume, openSnapList) \
    OPERATION(openTargetServer) \
    OPERATION(readImageMeta) \
    OPERATION(validateRollback) \
    OPERATION(ioControl) \
    OPERATION(writeImageMeta)
// clang-format on

namespace schema
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
#define VISIT_ANSWERED_AS(NAME, ANSWER)                                                                      \
    visit(Operation<_ns1__##NAME, _ns1__##ANSWER##Response>{                                                 \
        #NAME, #ANSWER "Response", &PSVWSSoapBindingProxy::NAME, &PSVWSSoapBindingProxy::NAME,               \
        &PSVWSSoapBindingProxy::send_##NAME, &PSVWSSoapBindingProxy::recv_##NAME});
#define VISIT(NAME) VISIT_ANSWERED_AS(NAME, NAME)
    PSVWS_OPERATIONS(VISIT, VISIT_ANSWERED_AS)
#undef VISIT
#undef VISIT_ANSWERED_AS
}

} // namespace schema

#endif
