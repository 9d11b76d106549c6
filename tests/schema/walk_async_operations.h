// Asynchronous operations: their results, starting, waiting and cancelling: the members of each class under
// the names of their elements, in wire order.
#ifndef SCHEMA_TEST_WALK_ASYNC_OPERATIONS_H
#define SCHEMA_TEST_WALK_ASYNC_OPERATIONS_H

#include "soapwrapperStub.h"

namespace schema_test
{

template <class Walker>
void walk(Walker& w, ns1__OperationID& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResult& m)
{
    w("image", m.image, "bytesTransferred", m.bytesTransferred, "error", m.error, "delayInSeconds",
      m.delayInSeconds);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResultSnap& m)
{
    w("totalBytesTransferred", m.totalBytesTransferred, "error", m.error, "retryInterval", m.retryInterval,
      "resultSnapType", m.resultSnapType);
    auto& u = m.union_AIOResultSnap;
    w.choice(m.__union_AIOResultSnap, "validateSnap", u.validateSnap, "provisionTopology",
             u.provisionTopology, "createSnap", u.createSnap, "importSnap", u.importSnap, "copySnap",
             u.copySnap, "getSnapDiff", u.getSnapDiff);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResultValidateSnap& m)
{
    w("targetTopology", m.targetTopology);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResultProvisionTopology& m)
{
    w("targetTopology", m.targetTopology);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResultCreateSnap& m)
{
    w("targetSnapName", m.targetSnapName, "targetSnapLsu", m.targetSnapLsu);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResultImportSnap& m)
{
    w("targetSnapName", m.targetSnapName, "targetSnapLsu", m.targetSnapLsu);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResultCopySnap& m)
{
    w("targetSnapName", m.targetSnapName, "targetSnapLsu", m.targetSnapLsu);
}

template <class Walker>
void walk(Walker& w, ns1__AIOResultGetSnapDiff& m)
{
    w("numDiffs", m.numDiffs, "diffObjectList", m.diffObjectList);
}

template <class Walker>
void walk(Walker& w, ns1__OperationStatus& m)
{
    w("name", m.name, "result", m.result);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncCreateSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "imageset", m.imageset, "pendingflag",
      m.pendingflag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncCreateSnapByNameResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncPrepareSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "imageset", m.imageset, "pendingflag",
      m.pendingflag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncPrepareSnapByNameResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncValidateSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "targetTopology", m.targetTopology);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncValidateSnapByNameResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncCopySnapByName& m)
{
    w("lsu", m.lsu, "snapDef", m.snapDef, "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets,
      "imageset", m.imageset, "pendingflag", m.pendingflag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncCopySnapByNameResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncImportSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "sourceSnapDef", m.sourceSnapDef,
      "imageset", m.imageset, "pendingflag", m.pendingflag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncImportSnapByNameResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncPostProcessSnapByName& m)
{
    w("lsu", m.lsu, "snapName", m.snapName);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncPostProcessSnapByNameResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncRollbackSnap& m)
{
    w("lsu", m.lsu, "snapDef", m.snapDef, "targetServerHandle", m.targetServerHandle, "targetVolSpec",
      m.targetVolSpec, "rollbackList", m.rollbackList, "numRollbacks", m.numRollbacks, "rollbackFlag",
      m.rollbackFlag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncRollbackSnapResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncProvisionTopology& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "targetTopology", m.targetTopology,
      "imageset", m.imageset, "pendingflag", m.pendingflag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncProvisionTopologyResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncGetSnapDiff& m)
{
    w("serverHandle", m.serverHandle, "snapshot", m.snapshot, "targetServerHandle", m.targetServerHandle,
      "rollbackList", m.rollbackList, "numRollbacks", m.numRollbacks, "diffFlag", m.diffFlag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncGetSnapDiffResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncCopyImage& m)
{
    w("targetLSU", m.targetLSU, "targetImage", m.targetImage, "sourceLSU", m.sourceLSU, "sourceImage",
      m.sourceImage, "imageset", m.imageset, "eventflag", m.eventflag);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncCopyImageResponse& m)
{
    w("opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncEndCopyImage& m)
{
    w("imageHandle", m.imageHandle, "opid", m.opid);
}

template <class Walker>
void walk(Walker&, _ns1__asyncEndCopyImageResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__asyncWait& m)
{
    w("sd", m.sd, "opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncWaitResponse& m)
{
    w("result", m.result);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncWaitSnap& m)
{
    w("sd", m.sd, "opid", m.opid);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncWaitSnapResponse& m)
{
    w("result", m.result);
}

template <class Walker>
void walk(Walker& w, _ns1__asyncCancel& m)
{
    w("sd", m.sd, "opid", m.opid);
}

template <class Walker>
void walk(Walker&, _ns1__asyncCancelResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncCreateSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "imageset", m.imageset, "pendingflag",
      m.pendingflag, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncCreateSnapByNameResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncPrepareSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "imageset", m.imageset, "pendingflag",
      m.pendingflag, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncPrepareSnapByNameResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncValidateSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "targetTopology", m.targetTopology,
      "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncValidateSnapByNameResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncCopySnapByName& m)
{
    w("lsu", m.lsu, "snapDef", m.snapDef, "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets,
      "imageset", m.imageset, "pendingflag", m.pendingflag, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncCopySnapByNameResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncImportSnapByName& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "sourceSnapDef", m.sourceSnapDef,
      "imageset", m.imageset, "pendingflag", m.pendingflag, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncImportSnapByNameResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncPostProcessSnapByName& m)
{
    w("lsu", m.lsu, "snapName", m.snapName, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncPostProcessSnapByNameResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncRollbackSnap& m)
{
    w("lsu", m.lsu, "snapDef", m.snapDef, "targetServerHandle", m.targetServerHandle, "targetVolSpec",
      m.targetVolSpec, "rollbackList", m.rollbackList, "numRollbacks", m.numRollbacks, "rollbackFlag",
      m.rollbackFlag, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncRollbackSnapResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncProvisionTopology& m)
{
    w("serverHandle", m.serverHandle, "sourceVolSpec", m.sourceVolSpec, "targetSnapDef", m.targetSnapDef,
      "targetLSUSpecs", m.targetLSUSpecs, "ntargets", m.ntargets, "targetTopology", m.targetTopology,
      "imageset", m.imageset, "pendingflag", m.pendingflag, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncProvisionTopologyResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncGetSnapDiff& m)
{
    w("serverHandle", m.serverHandle, "snapshot", m.snapshot, "targetServerHandle", m.targetServerHandle,
      "rollbackList", m.rollbackList, "numRollbacks", m.numRollbacks, "diffFlag", m.diffFlag, "opname",
      m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncGetSnapDiffResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncCopyImage& m)
{
    w("targetLSU", m.targetLSU, "targetImage", m.targetImage, "sourceLSU", m.sourceLSU, "sourceImage",
      m.sourceImage, "opname", m.opname, "imageset", m.imageset, "eventflag", m.eventflag);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncCopyImageResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncEndCopyImage& m)
{
    w("imageHandle", m.imageHandle, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncEndCopyImageResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncWait& m)
{
    w("serverHandle", m.serverHandle, "opname", m.opname);
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncWaitResponse& m)
{
    w("result", m.result);
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncWaitSnap& m)
{
    w("serverHandle", m.serverHandle, "opname", m.opname);
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncWaitSnapResponse& m)
{
    w("result", m.result);
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncStatus& m)
{
    w("serverHandle", m.serverHandle, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncStatusResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__namedAsyncCancel& m)
{
    w("serverHandle", m.serverHandle, "opname", m.opname);
}

template <class Walker>
void walk(Walker&, _ns1__namedAsyncCancelResponse&)
{
}

} // namespace schema_test

#endif
