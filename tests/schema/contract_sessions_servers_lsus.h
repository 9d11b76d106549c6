// Sessions, servers, LSUs, the shared array types and the fault detail, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_SESSIONS_SERVERS_LSUS_H
#define SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_SESSIONS_SERVERS_LSUS_H

// clang-format off
#define TYPES_OF_SESSIONS_SERVERS_LSUS(TYPE) \
    TYPE(ArrayOfInt, REPEATED(item, kInteger)) \
    TYPE(ArrayOfString, REPEATED(item, kString)) \
    TYPE(Credential, VALUE(len, kInteger) VALUE(type, kInteger) NILLABLE(cert, kBytes)) \
    TYPE(SessionDefinition, NILLABLE(proxy, kString) NILLABLE(id, kString) VALUE(flags, kInteger)) \
    TYPE(ServerHandle, NILLABLE(token, kString)) \
    TYPE(STSException, VALUE(errorCode, kInteger)) \
    TYPE(ServerInformation, \
        NILLABLE(server, kString) NILLABLE(sth, "ns1:ArrayOfString") VALUE(flags, kInteger) \
        VALUE(maxconnect, kInteger) VALUE(nconnect, kInteger) NILLABLE(cap, "ns1:ArrayOfInt") \
        NILLABLE(requiredInterface, "ns1:ArrayOfString") NILLABLE(cred, "ns1:ArrayOfInt") \
        NILLABLE(ndmpHost, kString)) \
    TYPE(LSU, NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(lsuName, kString)) \
    TYPE(LSUDefinition, \
        VALUE(version, kLongInteger) NILLABLE(name, kString) VALUE(alloc, kInteger) VALUE(storage, kInteger) \
        NILLABLE(description, kString) NILLABLE(config, kString) VALUE(flags, kInteger) VALUE(saveas, kInteger) \
        VALUE(maxTransfer, kLongInteger) VALUE(blockSize, kLongInteger) VALUE(allocSize, kLongInteger) \
        NILLABLE(label, kString) VALUE(repSources, kInteger) VALUE(repTargets, kInteger)) \
    TYPE(LSUInformation, \
        VALUE(version, kLongInteger) VALUE(server, kString) NILLABLE(def, "ns1:LSUDefinition") \
        VALUE(capacity, kLongInteger) VALUE(capacityPhys, kLongInteger) VALUE(used, kLongInteger) \
        VALUE(usedPhys, kLongInteger) VALUE(images, kLongInteger)) \
    TYPE(LSUSpecification, VALUE(server, kString) VALUE(lsu, kString)) \
    TYPE(ArrayOfLSUSpecification, REPEATED(item, "ns1:LSUSpecification")) \
    TYPE(LSUReplicationProps, \
        NILLABLE(source, "ns1:ArrayOfLSUSpecification") NILLABLE(target, "ns1:ArrayOfLSUSpecification")) \
    TYPE(LSUListHandle, NILLABLE(token, kString))

#define MESSAGES_OF_SESSIONS_SERVERS_LSUS(MESSAGE) \
    MESSAGE(openServer, \
        NILLABLE(sd, "ns1:SessionDefinition") VALUE(server, kString) NILLABLE(cred, "ns1:Credential") \
        VALUE(requiredInterface, kString)) \
    MESSAGE(openServerResponse, NILLABLE(serverHandle, "ns1:ServerHandle")) \
    MESSAGE(openTargetServer, \
        NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(server, kString) NILLABLE(cred, "ns1:Credential") \
        VALUE(interface, kString)) \
    MESSAGE(openTargetServerResponse, NILLABLE(targetServerHandle, "ns1:ServerHandle")) \
    MESSAGE(closeServer, NILLABLE(serverHandle, "ns1:ServerHandle")) \
    MESSAGE(closeServerResponse, ) \
    MESSAGE(getServerProp, NILLABLE(serverHandle, "ns1:ServerHandle")) \
    MESSAGE(getServerPropResponse, NILLABLE(info, "ns1:ServerInformation")) \
    MESSAGE(getServerPropByName, NILLABLE(sd, "ns1:SessionDefinition") VALUE(server, kString)) \
    MESSAGE(getServerPropByNameResponse, NILLABLE(info, "ns1:ServerInformation")) \
    MESSAGE(openLSUList, NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(lsudef, "ns1:LSUDefinition")) \
    MESSAGE(openLSUListResponse, NILLABLE(lsuListHandle, "ns1:LSUListHandle")) \
    MESSAGE(listLSU, NILLABLE(lsuListHandle, "ns1:LSUListHandle")) \
    MESSAGE(listLSUResponse, VALUE(lsu, kString)) \
    MESSAGE(closeLSUList, NILLABLE(lsuListHandle, "ns1:LSUListHandle")) \
    MESSAGE(closeLSUListResponse, ) \
    MESSAGE(getLSUPropByName, NILLABLE(lsu, "ns1:LSU")) \
    MESSAGE(getLSUPropByNameResponse, NILLABLE(info, "ns1:LSUInformation")) \
    MESSAGE(getLSUReplicationProp, NILLABLE(lsu, "ns1:LSU") VALUE(nsource, kInteger) VALUE(ntarget, kInteger)) \
    MESSAGE(getLSUReplicationPropResponse, NILLABLE(props, "ns1:LSUReplicationProps")) \
    MESSAGE(labelLSU, NILLABLE(lsu, "ns1:LSU") VALUE(lsuLabel, kString)) \
    MESSAGE(labelLSUResponse, )
// clang-format on

#endif
