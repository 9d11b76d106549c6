// Events and their payloads, snapshot change lists, I/O control, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#ifndef SCHEMA_TEST_CONTRACT_EVENTS_CHANGELISTS_IOCONTROL_H
#define SCHEMA_TEST_CONTRACT_EVENTS_CHANGELISTS_IOCONTROL_H

// clang-format off
#define TYPES_OF_EVENTS_CHANGELISTS_IOCONTROL(TYPE) \
    TYPE(EventChannelHandle, NILLABLE(token, string)) \
    TYPE(Event, \
        VALUE(seqno, integer) VALUE(server, string) VALUE(flags, integer) VALUE(type, integer) \
        NILLABLE(body, "ns1:EventBody")) \
    TYPE(EventBody, \
        CHOICE(1, op, "ns1:OperationStatus") CHOICE(2, lsuInfo, "ns1:EventLSUInformation") \
        CHOICE(3, srvStat, "ns1:ServerStatus") CHOICE(4, lsuStat, "ns1:LSUStatus") \
        CHOICE(5, imgInfo, "ns1:EventImageInformation") CHOICE(6, actv, "ns1:EventActivity") \
        CHOICE(7, srvInfo, "ns1:EventServerInformation") CHOICE(8, imgRep, "ns1:EventImageReplication")) \
    TYPE(EventActivity, \
        VALUE(version, long_integer) VALUE(action, integer) NILLABLE(eventset, string) VALUE(time, integer) \
        VALUE(sev, integer) NILLABLE(vendorType, string) NILLABLE(lsuName, string) \
        NILLABLE(imgInfo, "ns1:ImageInformation") NILLABLE(snapInfo, "ns1:SnapInformation") \
        NILLABLE(volSpec, "ns1:VolumeSpecification") NILLABLE(hostSpec, "ns1:HostSpecification") \
        NILLABLE(dpaid, string) NILLABLE(dpaver, string) NILLABLE(dpaext, integer) VALUE(msgLen, integer) \
        VALUE(msg, string)) \
    TYPE(EventLSUInformation, VALUE(fields, long_integer) NILLABLE(lsuInfo, "ns1:LSUInformation")) \
    TYPE(EventImageInformation, VALUE(fields, long_integer) NILLABLE(imgInfo, "ns1:ImageInformation")) \
    TYPE(EventServerInformation, VALUE(fields, long_integer) NILLABLE(srvInfo, "ns1:ServerInformation")) \
    TYPE(EventImageReplication, \
        VALUE(lsu, string) NILLABLE(name, "ns1:ImageDefinition") VALUE(origServer, string) \
        VALUE(origLsu, string) NILLABLE(origName, "ns1:ImageDefinition")) \
    TYPE(ServerStatus, VALUE(action, integer) VALUE(name, string)) \
    TYPE(LSUStatus, VALUE(action, integer) VALUE(name, string)) \
    TYPE(FileListHandle, NILLABLE(token, string)) \
    TYPE(DiffObjectSpecification, \
        VALUE(objectName, string) VALUE(objectType, integer) VALUE(objectState, integer)) \
    TYPE(ArrayOfDiffObjectSpecification, REPEATED(item, "ns1:DiffObjectSpecification"))

#define MESSAGES_OF_EVENTS_CHANGELISTS_IOCONTROL(MESSAGE) \
    MESSAGE(openEventChannel, \
        NILLABLE(sd, "ns1:SessionDefinition") VALUE(server, string) NILLABLE(cred, "ns1:Credential") \
        VALUE(interface, string) VALUE(flags, integer) VALUE(evseqno, integer)) \
    MESSAGE(openEventChannelResponse, NILLABLE(pevcHandle, "ns1:EventChannelHandle")) \
    MESSAGE(closeEventChannel, NILLABLE(evcHandle, "ns1:EventChannelHandle")) \
    MESSAGE(closeEventChannelResponse, ) \
    MESSAGE(getEvent, NILLABLE(evcHandle, "ns1:EventChannelHandle")) \
    MESSAGE(getEventResponse, NILLABLE(event, "ns1:Event")) \
    MESSAGE(getEventPayload, NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(event, "ns1:Event")) \
    MESSAGE(getEventPayloadResponse, NILLABLE(payload, "ns1:EventBody")) \
    MESSAGE(deleteEvent, NILLABLE(serverHandle, "ns1:ServerHandle") NILLABLE(event, "ns1:Event")) \
    MESSAGE(deleteEventResponse, ) \
    MESSAGE(openSnapChangeList, \
        NILLABLE(lsu, "ns1:LSU") NILLABLE(baseSnapshot, "ns1:SnapDefinition") \
        NILLABLE(diffSnapshot, "ns1:SnapDefinition") NILLABLE(sourceVolSpec, "ns1:VolumeSpecification") \
        VALUE(diffFlag, integer)) \
    MESSAGE(openSnapChangeListResponse, NILLABLE(fileListHandle, "ns1:FileListHandle")) \
    MESSAGE(listFile, \
        NILLABLE(fileListHandle, "ns1:FileListHandle") VALUE(filterPathNum, integer) \
        NILLABLE(filterPathList, "ns1:ArrayOfString")) \
    MESSAGE(listFileResponse, \
        NILLABLE(fileAttrList, "ns1:ArrayOfFileAttr") VALUE(numFiles, integer) VALUE(error, integer) \
        VALUE(retryInterval, integer)) \
    MESSAGE(closeSnapChangeList, NILLABLE(fileListHandle, "ns1:FileListHandle")) \
    MESSAGE(closeSnapChangeListResponse, ) \
    MESSAGE(ioControl, \
        NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(command, integer) VALUE(args, string) \
        VALUE(ioflag, integer) VALUE(len, integer)) \
    MESSAGE(ioControlResponse, VALUE(args, string) VALUE(len, integer))
// clang-format on

#endif
