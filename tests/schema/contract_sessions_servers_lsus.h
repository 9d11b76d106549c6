// Sessions, servers, LSUs, the shared array types and the fault detail, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#ifndef SCHEMA_TEST_CONTRACT_SESSIONS_SERVERS_LSUS_H
#define SCHEMA_TEST_CONTRACT_SESSIONS_SERVERS_LSUS_H

// clang-format off
#define TYPES_OF_SESSIONS_SERVERS_LSUS(TYPE) \
    TYPE(ArrayOfInt, REPEATED(item, integer)) \
    TYPE(ArrayOfString, REPEATED(item, string)) \
    TYPE(Credential, VALUE(len, integer) VALUE(type, integer) NILLABLE(cert, bytes)) \
    TYPE(SessionDefinition, NILLABLE(proxy, string) NILLABLE(id, string) VALUE(flags, integer)) \
    TYPE(ServerHandle, NILLABLE(token, string)) \
    TYPE(STSException, VALUE(errorCode, integer)) \
    TYPE(ServerInformation, \
        NILLABLE(server, string) NILLABLE(sth, "ns1:ArrayOfString") VALUE(flags, integer) \
        VALUE(maxconnect, integer) VALUE(nconnect, integer) NILLABLE(cap, "ns1:ArrayOfInt") \
        NILLABLE(requiredInterface, "ns1:ArrayOfString") NILLABLE(cred, "ns1:ArrayOfInt") \
        NILLABLE(ndmpHost, string)) \
    TYPE(LSU, NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(lsuName, string)) \
    TYPE(LSUDefinition, \
        VALUE(version, long_integer) NILLABLE(name, string) VALUE(alloc, integer) VALUE(storage, integer) \
        NILLABLE(description, string) NILLABLE(config, string) VALUE(flags, integer) VALUE(saveas, integer) \
        VALUE(maxTransfer, long_integer) VALUE(blockSize, long_integer) VALUE(allocSize, long_integer) \
        NILLABLE(label, string) VALUE(repSources, integer) VALUE(repTargets, integer)) \
    TYPE(LSUInformation, \
        VALUE(version, long_integer) VALUE(server, string) NILLABLE(def, "ns1:LSUDefinition") \
        VALUE(capacity, long_integer) VALUE(capacityPhys, long_integer) VALUE(used, long_integer) \
        VALUE(usedPhys, long_integer) VALUE(images, long_integer)) \
    TYPE(LSUSpecification, VALUE(server, string) VALUE(lsu, string)) \
    TYPE(ArrayOfLSUSpecification, REPEATED(item, "ns1:LSUSpecification")) \
    TYPE(LSUReplicationProps, \
        NILLABLE(source, "ns1:ArrayOfLSUSpecification") NILLABLE(target, "ns1:ArrayOfLSUSpecification")) \
    TYPE(LSUListHandle, NILLABLE(token, string))

#define MESSAGES_OF_SESSIONS_SERVERS_LSUS(MESSAGE) \
    MESSAGE(openServer, \
        NILLABLE(sd, "ns1:SessionDefinition") VALUE(server, string) NILLABLE(cred, "ns1:Credential") \
        VALUE(requiredInterface, string)) \
    MESSAGE(openServerResponse, NILLABLE(serverHandle, "ns1:ServerHandle")) \
    MESSAGE(openTargetServer, \
        NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(server, string) NILLABLE(cred, "ns1:Credential") \
        VALUE(interface, string)) \
    MESSAGE(openTargetServerResponse, NILLABLE(targetServerHandle, "ns1:ServerHandle")) \
    MESSAGE(closeServer, NILLABLE(serverHandle, "ns1:ServerHandle")) \
    MESSAGE(closeServerResponse, ) \
    MESSAGE(getServerProp, NILLABLE(serverHandle, "ns1:ServerHandle")) \
    MESSAGE(getServerPropResponse, NILLABLE(info, "ns1:ServerInformation")) \
    MESSAGE(getServerPropByName, NILLABLE(sd, "ns1:SessionDefinition") VALUE(server, string)) \
    MESSAGE(getServerPropByNameResponse, NILLABLE(info, "ns1:ServerInformation")) \
    MESSAGE(openLSUList, NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(lsudef, "ns1:LSUDefinition")) \
    MESSAGE(openLSUListResponse, NILLABLE(lsuListHandle, "ns1:LSUListHandle")) \
    MESSAGE(listLSU, NILLABLE(lsuListHandle, "ns1:LSUListHandle")) \
    MESSAGE(listLSUResponse, VALUE(lsu, string)) \
    MESSAGE(closeLSUList, NILLABLE(lsuListHandle, "ns1:LSUListHandle")) \
    MESSAGE(closeLSUListResponse, ) \
    MESSAGE(getLSUPropByName, NILLABLE(lsu, "ns1:LSU")) \
    MESSAGE(getLSUPropByNameResponse, NILLABLE(info, "ns1:LSUInformation")) \
    MESSAGE(getLSUReplicationProp, NILLABLE(lsu, "ns1:LSU") VALUE(nsource, integer) VALUE(ntarget, integer)) \
    MESSAGE(getLSUReplicationPropResponse, NILLABLE(props, "ns1:LSUReplicationProps")) \
    MESSAGE(labelLSU, NILLABLE(lsu, "ns1:LSU") VALUE(lsuLabel, string)) \
    MESSAGE(labelLSUResponse, )
// clang-format on

#endif
