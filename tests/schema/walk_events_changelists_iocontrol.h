// Events and their payloads, snapshot change lists, I/O control: the members of each class under the
// names of their elements, in wire order.
#ifndef SCHEMA_TEST_WALK_EVENTS_CHANGELISTS_IOCONTROL_H
#define SCHEMA_TEST_WALK_EVENTS_CHANGELISTS_IOCONTROL_H

#include "soapwrapperStub.h"

namespace schema_test
{

template <class Walker>
void walk(Walker& w, ns1__EventChannelHandle& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, ns1__Event& m)
{
    w("seqno", m.seqno, "server", m.server, "flags", m.flags, "type", m.type, "body", m.body);
}

template <class Walker>
void walk(Walker& w, ns1__EventBody& m)
{
    auto& u = m.union_EventBody;
    w.choice(m.__union_EventBody, "op", u.op, "lsuInfo", u.lsuInfo, "srvStat", u.srvStat, "lsuStat",
             u.lsuStat, "imgInfo", u.imgInfo, "actv", u.actv, "srvInfo", u.srvInfo, "imgRep", u.imgRep);
}

template <class Walker>
void walk(Walker& w, ns1__EventActivity& m)
{
    w("version", m.version, "action", m.action, "eventset", m.eventset, "time", m.time, "sev", m.sev,
      "vendorType", m.vendorType, "lsuName", m.lsuName, "imgInfo", m.imgInfo, "snapInfo", m.snapInfo,
      "volSpec", m.volSpec, "hostSpec", m.hostSpec, "dpaid", m.dpaid, "dpaver", m.dpaver, "dpaext", m.dpaext,
      "msgLen", m.msgLen, "msg", m.msg);
}

template <class Walker>
void walk(Walker& w, ns1__EventLSUInformation& m)
{
    w("fields", m.fields, "lsuInfo", m.lsuInfo);
}

template <class Walker>
void walk(Walker& w, ns1__EventImageInformation& m)
{
    w("fields", m.fields, "imgInfo", m.imgInfo);
}

template <class Walker>
void walk(Walker& w, ns1__EventServerInformation& m)
{
    w("fields", m.fields, "srvInfo", m.srvInfo);
}

template <class Walker>
void walk(Walker& w, ns1__EventImageReplication& m)
{
    w("lsu", m.lsu, "name", m.name, "origServer", m.origServer, "origLsu", m.origLsu, "origName", m.origName);
}

template <class Walker>
void walk(Walker& w, ns1__ServerStatus& m)
{
    w("action", m.action, "name", m.name);
}

template <class Walker>
void walk(Walker& w, ns1__LSUStatus& m)
{
    w("action", m.action, "name", m.name);
}

template <class Walker>
void walk(Walker& w, ns1__FileListHandle& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, ns1__DiffObjectSpecification& m)
{
    w("objectName", m.objectName, "objectType", m.objectType, "objectState", m.objectState);
}

template <class Walker>
void walk(Walker& w, ns1__ArrayOfDiffObjectSpecification& m)
{
    w("item", m.item);
}

template <class Walker>
void walk(Walker& w, _ns1__openEventChannel& m)
{
    w("sd", m.sd, "server", m.server, "cred", m.cred, "interface", m.interface, "flags", m.flags, "evseqno",
      m.evseqno);
}

template <class Walker>
void walk(Walker& w, _ns1__openEventChannelResponse& m)
{
    w("pevcHandle", m.pevcHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__closeEventChannel& m)
{
    w("evcHandle", m.evcHandle);
}

template <class Walker>
void walk(Walker&, _ns1__closeEventChannelResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__getEvent& m)
{
    w("evcHandle", m.evcHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__getEventResponse& m)
{
    w("event", m.event);
}

template <class Walker>
void walk(Walker& w, _ns1__getEventPayload& m)
{
    w("serverHandle", m.serverHandle, "event", m.event);
}

template <class Walker>
void walk(Walker& w, _ns1__getEventPayloadResponse& m)
{
    w("payload", m.payload);
}

template <class Walker>
void walk(Walker& w, _ns1__deleteEvent& m)
{
    w("serverHandle", m.serverHandle, "event", m.event);
}

template <class Walker>
void walk(Walker&, _ns1__deleteEventResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__openSnapChangeList& m)
{
    w("lsu", m.lsu, "baseSnapshot", m.baseSnapshot, "diffSnapshot", m.diffSnapshot, "sourceVolSpec",
      m.sourceVolSpec, "diffFlag", m.diffFlag);
}

template <class Walker>
void walk(Walker& w, _ns1__openSnapChangeListResponse& m)
{
    w("fileListHandle", m.fileListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__listFile& m)
{
    w("fileListHandle", m.fileListHandle, "filterPathNum", m.filterPathNum, "filterPathList",
      m.filterPathList);
}

template <class Walker>
void walk(Walker& w, _ns1__listFileResponse& m)
{
    w("fileAttrList", m.fileAttrList, "numFiles", m.numFiles, "error", m.error, "retryInterval",
      m.retryInterval);
}

template <class Walker>
void walk(Walker& w, _ns1__closeSnapChangeList& m)
{
    w("fileListHandle", m.fileListHandle);
}

template <class Walker>
void walk(Walker&, _ns1__closeSnapChangeListResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__ioControl& m)
{
    w("serverHandle", m.serverHandle, "command", m.command, "args", m.args, "ioflag", m.ioflag, "len", m.len);
}

template <class Walker>
void walk(Walker& w, _ns1__ioControlResponse& m)
{
    w("args", m.args, "len", m.len);
}

} // namespace schema_test

#endif
