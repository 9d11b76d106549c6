// Sessions, servers, LSUs, the shared array types and the fault detail: the members of each class under the
// names of their elements, in wire order.
#ifndef SCHEMA_TEST_WALK_SESSIONS_SERVERS_LSUS_H
#define SCHEMA_TEST_WALK_SESSIONS_SERVERS_LSUS_H

#include "soapwrapperStub.h"

namespace schema_test
{

template <class Walker>
void walk(Walker& w, ns1__ArrayOfInt& m)
{
    w("item", m.item);
}

template <class Walker>
void walk(Walker& w, ns1__ArrayOfString& m)
{
    w("item", m.item);
}

template <class Walker>
void walk(Walker& w, ns1__Credential& m)
{
    w("len", m.len, "type", m.type, "cert", m.cert);
}

template <class Walker>
void walk(Walker& w, ns1__SessionDefinition& m)
{
    w("proxy", m.proxy, "id", m.id, "flags", m.flags);
}

template <class Walker>
void walk(Walker& w, ns1__ServerHandle& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, ns1__STSException& m)
{
    w("errorCode", m.errorCode);
}

template <class Walker>
void walk(Walker& w, ns1__ServerInformation& m)
{
    w("server", m.server, "sth", m.sth, "flags", m.flags, "maxconnect", m.maxconnect, "nconnect", m.nconnect,
      "cap", m.cap, "requiredInterface", m.requiredInterface, "cred", m.cred, "ndmpHost", m.ndmpHost);
}

template <class Walker>
void walk(Walker& w, ns1__LSU& m)
{
    w("serverHandle", m.serverHandle, "lsuName", m.lsuName);
}

template <class Walker>
void walk(Walker& w, ns1__LSUDefinition& m)
{
    w("version", m.version, "name", m.name, "alloc", m.alloc, "storage", m.storage, "description",
      m.description, "config", m.config, "flags", m.flags, "saveas", m.saveas, "maxTransfer", m.maxTransfer,
      "blockSize", m.blockSize, "allocSize", m.allocSize, "label", m.label, "repSources", m.repSources,
      "repTargets", m.repTargets);
}

template <class Walker>
void walk(Walker& w, ns1__LSUInformation& m)
{
    w("version", m.version, "server", m.server, "def", m.def, "capacity", m.capacity, "capacityPhys",
      m.capacityPhys, "used", m.used, "usedPhys", m.usedPhys, "images", m.images);
}

template <class Walker>
void walk(Walker& w, ns1__LSUSpecification& m)
{
    w("server", m.server, "lsu", m.lsu);
}

template <class Walker>
void walk(Walker& w, ns1__ArrayOfLSUSpecification& m)
{
    w("item", m.item);
}

template <class Walker>
void walk(Walker& w, ns1__LSUReplicationProps& m)
{
    w("source", m.source, "target", m.target);
}

template <class Walker>
void walk(Walker& w, ns1__LSUListHandle& m)
{
    w("token", m.token);
}

template <class Walker>
void walk(Walker& w, _ns1__openServer& m)
{
    w("sd", m.sd, "server", m.server, "cred", m.cred, "requiredInterface", m.requiredInterface);
}

template <class Walker>
void walk(Walker& w, _ns1__openServerResponse& m)
{
    w("serverHandle", m.serverHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__openTargetServer& m)
{
    w("serverHandle", m.serverHandle, "server", m.server, "cred", m.cred, "interface", m.interface);
}

template <class Walker>
void walk(Walker& w, _ns1__openTargetServerResponse& m)
{
    w("targetServerHandle", m.targetServerHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__closeServer& m)
{
    w("serverHandle", m.serverHandle);
}

template <class Walker>
void walk(Walker&, _ns1__closeServerResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__getServerProp& m)
{
    w("serverHandle", m.serverHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__getServerPropResponse& m)
{
    w("info", m.info);
}

template <class Walker>
void walk(Walker& w, _ns1__getServerPropByName& m)
{
    w("sd", m.sd, "server", m.server);
}

template <class Walker>
void walk(Walker& w, _ns1__getServerPropByNameResponse& m)
{
    w("info", m.info);
}

template <class Walker>
void walk(Walker& w, _ns1__openLSUList& m)
{
    w("serverHandle", m.serverHandle, "lsudef", m.lsudef);
}

template <class Walker>
void walk(Walker& w, _ns1__openLSUListResponse& m)
{
    w("lsuListHandle", m.lsuListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__listLSU& m)
{
    w("lsuListHandle", m.lsuListHandle);
}

template <class Walker>
void walk(Walker& w, _ns1__listLSUResponse& m)
{
    w("lsu", m.lsu);
}

template <class Walker>
void walk(Walker& w, _ns1__closeLSUList& m)
{
    w("lsuListHandle", m.lsuListHandle);
}

template <class Walker>
void walk(Walker&, _ns1__closeLSUListResponse&)
{
}

template <class Walker>
void walk(Walker& w, _ns1__getLSUPropByName& m)
{
    w("lsu", m.lsu);
}

template <class Walker>
void walk(Walker& w, _ns1__getLSUPropByNameResponse& m)
{
    w("info", m.info);
}

template <class Walker>
void walk(Walker& w, _ns1__getLSUReplicationProp& m)
{
    w("lsu", m.lsu, "nsource", m.nsource, "ntarget", m.ntarget);
}

template <class Walker>
void walk(Walker& w, _ns1__getLSUReplicationPropResponse& m)
{
    w("props", m.props);
}

template <class Walker>
void walk(Walker& w, _ns1__labelLSU& m)
{
    w("lsu", m.lsu, "lsuLabel", m.lsuLabel);
}

template <class Walker>
void walk(Walker&, _ns1__labelLSUResponse&)
{
}

} // namespace schema_test

#endif
