// Asynchronous operations: their results, starting, waiting and cancelling, as the service's contract has
// them. Kept by hand: nothing here comes from the type header or from anything made of it.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_ASYNC_OPERATIONS_H
#define SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_ASYNC_OPERATIONS_H

// clang-format off
#define TYPES_OF_ASYNC_OPERATIONS(TYPE) \
    TYPE(OperationID, NILLABLE(token, kString)) \
    TYPE(AIOResult, \
        NILLABLE(image, "ns1:ImageHandle") VALUE(bytesTransferred, kLongInteger) VALUE(error, kInteger) \
        VALUE(delayInSeconds, kInteger)) \
    TYPE(AIOResultSnap, \
        VALUE(totalBytesTransferred, kLongInteger) VALUE(error, kInteger) VALUE(retryInterval, kInteger) \
        VALUE(resultSnapType, kInteger) CHOICE(1, validateSnap, "ns1:AIOResultValidateSnap") \
        CHOICE(2, provisionTopology, "ns1:AIOResultProvisionTopology") \
        CHOICE(3, createSnap, "ns1:AIOResultCreateSnap") CHOICE(4, importSnap, "ns1:AIOResultImportSnap") \
        CHOICE(5, copySnap, "ns1:AIOResultCopySnap") CHOICE(6, getSnapDiff, "ns1:AIOResultGetSnapDiff")) \
    TYPE(AIOResultValidateSnap, VALUE(targetTopology, kString)) \
    TYPE(AIOResultProvisionTopology, VALUE(targetTopology, kString)) \
    TYPE(AIOResultCreateSnap, VALUE(targetSnapName, kString) NILLABLE(targetSnapLsu, "ns1:LSUSpecification")) \
    TYPE(AIOResultImportSnap, VALUE(targetSnapName, kString) NILLABLE(targetSnapLsu, "ns1:LSUSpecification")) \
    TYPE(AIOResultCopySnap, VALUE(targetSnapName, kString) NILLABLE(targetSnapLsu, "ns1:LSUSpecification")) \
    TYPE(AIOResultGetSnapDiff, \
        VALUE(numDiffs, kInteger) NILLABLE(diffObjectList, "ns1:ArrayOfDiffObjectSpecification")) \
    TYPE(OperationStatus, VALUE(name, kString) NILLABLE(result, "ns1:AIOResult"))

#define MESSAGES_OF_ASYNC_OPERATIONS(MESSAGE) \
    MESSAGE(asyncCreateSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(imageset, kString) VALUE(pendingflag, kInteger)) \
    MESSAGE(asyncCreateSnapByNameResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncPrepareSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(imageset, kString) VALUE(pendingflag, kInteger)) \
    MESSAGE(asyncPrepareSnapByNameResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncValidateSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(targetTopology, kString)) \
    MESSAGE(asyncValidateSnapByNameResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncCopySnapByName, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(snapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(imageset, kString) VALUE(pendingflag, kInteger)) \
    MESSAGE(asyncCopySnapByNameResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncImportSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(sourceSnapDef, "ns1:SnapDefinition") VALUE(imageset, kString) VALUE(pendingflag, kInteger)) \
    MESSAGE(asyncImportSnapByNameResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncPostProcessSnapByName, NILLABLE(lsu, "ns1:LSU") VALUE(snapName, kString)) \
    MESSAGE(asyncPostProcessSnapByNameResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncRollbackSnap, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(snapDef, "ns1:SnapDefinition") \
        NILLABLE(targetServerHandle, "ns1:ServerHandle") NILLABLE(targetVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(rollbackList, "ns1:ArrayOfString") VALUE(numRollbacks, kInteger) \
        VALUE(rollbackFlag, kInteger)) \
    MESSAGE(asyncRollbackSnapResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncProvisionTopology, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(targetTopology, kString) VALUE(imageset, kString) VALUE(pendingflag, kInteger)) \
    MESSAGE(asyncProvisionTopologyResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncGetSnapDiff, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(snapshot, "ns1:SnapDefinition") \
        NILLABLE(targetServerHandle, "ns1:ServerHandle") \
        NILLABLE(rollbackList, "ns1:ArrayOfVolumeSpecification") VALUE(numRollbacks, kInteger) \
        VALUE(diffFlag, kInteger)) \
    MESSAGE(asyncGetSnapDiffResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncCopyImage, \
        NILLABLE(targetLSU, "ns1:LSU") NILLABLE(targetImage, "ns1:ImageDefinition") \
        NILLABLE(sourceLSU, "ns1:LSU") NILLABLE(sourceImage, "ns1:ImageDefinition") VALUE(imageset, kString) \
        VALUE(eventflag, kInteger)) \
    MESSAGE(asyncCopyImageResponse, NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncEndCopyImage, NILLABLE(imageHandle, "ns1:ImageHandle") NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncEndCopyImageResponse, ) \
    MESSAGE(asyncWait, NILLABLE(sd, "ns1:SessionDefinition") NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncWaitResponse, NILLABLE(result, "ns1:AIOResult")) \
    MESSAGE(asyncWaitSnap, NILLABLE(sd, "ns1:SessionDefinition") NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncWaitSnapResponse, NILLABLE(result, "ns1:AIOResultSnap")) \
    MESSAGE(asyncCancel, NILLABLE(sd, "ns1:SessionDefinition") NILLABLE(opid, "ns1:OperationID")) \
    MESSAGE(asyncCancelResponse, ) \
    MESSAGE(namedAsyncCreateSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(imageset, kString) VALUE(pendingflag, kInteger) VALUE(opname, kString)) \
    MESSAGE(namedAsyncCreateSnapByNameResponse, ) \
    MESSAGE(namedAsyncPrepareSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(imageset, kString) VALUE(pendingflag, kInteger) VALUE(opname, kString)) \
    MESSAGE(namedAsyncPrepareSnapByNameResponse, ) \
    MESSAGE(namedAsyncValidateSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(targetTopology, kString) VALUE(opname, kString)) \
    MESSAGE(namedAsyncValidateSnapByNameResponse, ) \
    MESSAGE(namedAsyncCopySnapByName, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(snapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(imageset, kString) VALUE(pendingflag, kInteger) VALUE(opname, kString)) \
    MESSAGE(namedAsyncCopySnapByNameResponse, ) \
    MESSAGE(namedAsyncImportSnapByName, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(sourceSnapDef, "ns1:SnapDefinition") VALUE(imageset, kString) VALUE(pendingflag, kInteger) \
        VALUE(opname, kString)) \
    MESSAGE(namedAsyncImportSnapByNameResponse, ) \
    MESSAGE(namedAsyncPostProcessSnapByName, \
        NILLABLE(lsu, "ns1:LSU") VALUE(snapName, kString) VALUE(opname, kString)) \
    MESSAGE(namedAsyncPostProcessSnapByNameResponse, ) \
    MESSAGE(namedAsyncRollbackSnap, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(snapDef, "ns1:SnapDefinition") \
        NILLABLE(targetServerHandle, "ns1:ServerHandle") NILLABLE(targetVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(rollbackList, "ns1:ArrayOfString") VALUE(numRollbacks, kInteger) \
        VALUE(rollbackFlag, kInteger) VALUE(opname, kString)) \
    MESSAGE(namedAsyncRollbackSnapResponse, ) \
    MESSAGE(namedAsyncProvisionTopology, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        NILLABLE(targetSnapDef, "ns1:SnapDefinition") \
        NILLABLE(targetLSUSpecs, "ns1:ArrayOfLSUSpecification") VALUE(ntargets, kInteger) \
        VALUE(targetTopology, kString) VALUE(imageset, kString) VALUE(pendingflag, kInteger) \
        VALUE(opname, kString)) \
    MESSAGE(namedAsyncProvisionTopologyResponse, ) \
    MESSAGE(namedAsyncGetSnapDiff, \
        NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(snapshot, "ns1:SnapDefinition") \
        NILLABLE(targetServerHandle, "ns1:ServerHandle") \
        NILLABLE(rollbackList, "ns1:ArrayOfVolumeSpecification") VALUE(numRollbacks, kInteger) \
        VALUE(diffFlag, kBoolean) VALUE(opname, kString)) \
    MESSAGE(namedAsyncGetSnapDiffResponse, ) \
    MESSAGE(namedAsyncCopyImage, \
        NILLABLE(targetLSU, "ns1:LSU") NILLABLE(targetImage, "ns1:ImageDefinition") \
        NILLABLE(sourceLSU, "ns1:LSU") NILLABLE(sourceImage, "ns1:ImageDefinition") VALUE(opname, kString) \
        VALUE(imageset, kString) VALUE(eventflag, kInteger)) \
    MESSAGE(namedAsyncCopyImageResponse, ) \
    MESSAGE(namedAsyncEndCopyImage, NILLABLE(imageHandle, "ns1:ImageHandle") VALUE(opname, kString)) \
    MESSAGE(namedAsyncEndCopyImageResponse, ) \
    MESSAGE(namedAsyncWait, NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(opname, kString)) \
    MESSAGE(namedAsyncWaitResponse, NILLABLE(result, "ns1:AIOResult")) \
    MESSAGE(namedAsyncWaitSnap, NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(opname, kString)) \
    MESSAGE(namedAsyncWaitSnapResponse, NILLABLE(result, "ns1:AIOResultSnap")) \
    MESSAGE(namedAsyncStatus, NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(opname, kString)) \
    MESSAGE(namedAsyncStatusResponse, ) \
    MESSAGE(namedAsyncCancel, NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(opname, kString)) \
    MESSAGE(namedAsyncCancelResponse, )
// clang-format on

#endif
