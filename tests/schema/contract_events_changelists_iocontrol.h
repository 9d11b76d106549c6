// Events and their payloads, snapshot change lists, I/O control, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_EVENTS_CHANGELISTS_IOCONTROL_H
#define SOAPWRAPPER_TESTS_SCHEMA_CONTRACT_EVENTS_CHANGELISTS_IOCONTROL_H

// clang-format off
#define TYPES_OF_EVENTS_CHANGELISTS_IOCONTROL(TYPE) \
    TYPE(EventChannelHandle, NILLABLE(token, kString)) \
    TYPE(Event, \
        VALUE(seqno, kInteger) VALUE(server, kString) VALUE(flags, kInteger) VALUE(type, kInteger) \
        NILLABLE(body, "ns1:EventBody")) \
    TYPE(EventBody, \
        CHOICE(1, op, "ns1:OperationStatus") CHOICE(2, lsuInfo, "ns1:EventLSUInformation") \
        CHOICE(3, srvStat, "ns1:ServerStatus") CHOICE(4, lsuStat, "ns1:LSUStatus") \
        CHOICE(5, imgInfo, "ns1:EventImageInformation") CHOICE(6, actv, "ns1:EventActivity") \
        CHOICE(7, srvInfo, "ns1:EventServerInformation") CHOICE(8, imgRep, "ns1:EventImageReplication")) \
    TYPE(EventActivity, \
        VALUE(version, kLongInteger) VALUE(action, kInteger) NILLABLE(eventset, kString) VALUE(time, kInteger) \
        VALUE(sev, kInteger) NILLABLE(vendorType, kString) NILLABLE(lsuName, kString) \
        NILLABLE(imgInfo, "ns1:ImageInformation") NILLABLE(snapInfo, "ns1:SnapInformation") \
        NILLABLE(volSpec, "ns1:VolumeSpecification") NILLABLE(hostSpec, "ns1:HostSpecification") \
        NILLABLE(dpaid, kString) NILLABLE(dpaver, kString) NILLABLE(dpaext, kInteger) VALUE(msgLen, kInteger) \
        VALUE(msg, kString)) \
    TYPE(EventLSUInformation, VALUE(fields, kLongInteger) NILLABLE(lsuInfo, "ns1:LSUInformation")) \
    TYPE(EventImageInformation, VALUE(fields, kLongInteger) NILLABLE(imgInfo, "ns1:ImageInformation")) \
    TYPE(EventServerInformation, VALUE(fields, kLongInteger) NILLABLE(srvInfo, "ns1:ServerInformation")) \
    TYPE(EventImageReplication, \
        VALUE(lsu, kString) NILLABLE(name, "ns1:ImageDefinition") VALUE(origServer, kString) \
        VALUE(origLsu, kString) NILLABLE(origName, "ns1:ImageDefinition")) \
    TYPE(ServerStatus, VALUE(action, kInteger) VALUE(name, kString)) \
    TYPE(LSUStatus, VALUE(action, kInteger) VALUE(name, kString)) \
    TYPE(FileListHandle, NILLABLE(token, kString)) \
    TYPE(DiffObjectSpecification, \
        VALUE(objectName, kString) VALUE(objectType, kInteger) VALUE(objectState, kInteger)) \
    TYPE(ArrayOfDiffObjectSpecification, REPEATED(item, "ns1:DiffObjectSpecification"))

#define MESSAGES_OF_EVENTS_CHANGELISTS_IOCONTROL(MESSAGE) \
    MESSAGE(openEventChannel, \
        NILLABLE(sd, "ns1:SessionDefinition") VALUE(server, kString) NILLABLE(cred, "ns1:Credential") \
        VALUE(interface, kString) VALUE(flags, kInteger) VALUE(evseqno, kInteger)) \
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
        VALUE(diffFlag, kInteger)) \
    MESSAGE(openSnapChangeListResponse, NILLABLE(fileListHandle, "ns1:FileListHandle")) \
    MESSAGE(listFile, \
        NILLABLE(fileListHandle, "ns1:FileListHandle") VALUE(filterPathNum, kInteger) \
        NILLABLE(filterPathList, "ns1:ArrayOfString")) \
    MESSAGE(listFileResponse, \
        NILLABLE(fileAttrList, "ns1:ArrayOfFileAttr") VALUE(numFiles, kInteger) VALUE(error, kInteger) \
        VALUE(retryInterval, kInteger)) \
    MESSAGE(closeSnapChangeList, NILLABLE(fileListHandle, "ns1:FileListHandle")) \
    MESSAGE(closeSnapChangeListResponse, ) \
    MESSAGE(ioControl, \
        NILLABLE(serverHandle, "ns1:ServerHandle") VALUE(command, kInteger) VALUE(args, kString) \
        VALUE(ioflag, kInteger) VALUE(len, kInteger)) \
    MESSAGE(ioControlResponse, VALUE(args, kString) VALUE(len, kInteger))
// clang-format on

#endif
