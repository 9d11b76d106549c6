// Events and their payloads, snapshot change lists, I/O control, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#include "contract.h"

namespace schema_test
{

const std::vector<ComplexType>& types_of_events_changelists_iocontrol()
{
    static const std::vector<ComplexType> table = {
        {"EventChannelHandle", {nillable("token", string)}},
        {"Event",
         {value("seqno", integer), value("server", string), value("flags", integer), value("type", integer),
          nillable("body", "ns1:EventBody")}},
        {"EventBody",
         {choice(1, "op", "ns1:OperationStatus"), choice(2, "lsuInfo", "ns1:EventLSUInformation"),
          choice(3, "srvStat", "ns1:ServerStatus"), choice(4, "lsuStat", "ns1:LSUStatus"),
          choice(5, "imgInfo", "ns1:EventImageInformation"), choice(6, "actv", "ns1:EventActivity"),
          choice(7, "srvInfo", "ns1:EventServerInformation"),
          choice(8, "imgRep", "ns1:EventImageReplication")}},
        {"EventActivity",
         {value("version", long_integer), value("action", integer), nillable("eventset", string),
          value("time", integer), value("sev", integer), nillable("vendorType", string),
          nillable("lsuName", string), nillable("imgInfo", "ns1:ImageInformation"),
          nillable("snapInfo", "ns1:SnapInformation"), nillable("volSpec", "ns1:VolumeSpecification"),
          nillable("hostSpec", "ns1:HostSpecification"), nillable("dpaid", string),
          nillable("dpaver", string), nillable("dpaext", integer), value("msgLen", integer),
          value("msg", string)}},
        {"EventLSUInformation", {value("fields", long_integer), nillable("lsuInfo", "ns1:LSUInformation")}},
        {"EventImageInformation",
         {value("fields", long_integer), nillable("imgInfo", "ns1:ImageInformation")}},
        {"EventServerInformation",
         {value("fields", long_integer), nillable("srvInfo", "ns1:ServerInformation")}},
        {"EventImageReplication",
         {value("lsu", string), nillable("name", "ns1:ImageDefinition"), value("origServer", string),
          value("origLsu", string), nillable("origName", "ns1:ImageDefinition")}},
        {"ServerStatus", {value("action", integer), value("name", string)}},
        {"LSUStatus", {value("action", integer), value("name", string)}},
        {"FileListHandle", {nillable("token", string)}},
        {"DiffObjectSpecification",
         {value("objectName", string), value("objectType", integer), value("objectState", integer)}},
        {"ArrayOfDiffObjectSpecification", {repeated("item", "ns1:DiffObjectSpecification")}},
    };
    return table;
}

const std::vector<ComplexType>& messages_of_events_changelists_iocontrol()
{
    static const std::vector<ComplexType> table = {
        {"openEventChannel",
         {nillable("sd", "ns1:SessionDefinition"), value("server", string),
          nillable("cred", "ns1:Credential"), value("interface", string), value("flags", integer),
          value("evseqno", integer)}},
        {"openEventChannelResponse", {nillable("pevcHandle", "ns1:EventChannelHandle")}},
        {"closeEventChannel", {nillable("evcHandle", "ns1:EventChannelHandle")}},
        {"closeEventChannelResponse", {}},
        {"getEvent", {nillable("evcHandle", "ns1:EventChannelHandle")}},
        {"getEventResponse", {nillable("event", "ns1:Event")}},
        {"getEventPayload", {nillable("serverHandle", "ns1:ServerHandle"), nillable("event", "ns1:Event")}},
        {"getEventPayloadResponse", {nillable("payload", "ns1:EventBody")}},
        {"deleteEvent", {nillable("serverHandle", "ns1:ServerHandle"), nillable("event", "ns1:Event")}},
        {"deleteEventResponse", {}},
        {"openSnapChangeList",
         {nillable("lsu", "ns1:LSU"), nillable("baseSnapshot", "ns1:SnapDefinition"),
          nillable("diffSnapshot", "ns1:SnapDefinition"),
          nillable("sourceVolSpec", "ns1:VolumeSpecification"), value("diffFlag", integer)}},
        {"openSnapChangeListResponse", {nillable("fileListHandle", "ns1:FileListHandle")}},
        {"listFile",
         {nillable("fileListHandle", "ns1:FileListHandle"), value("filterPathNum", integer),
          nillable("filterPathList", "ns1:ArrayOfString")}},
        {"listFileResponse",
         {nillable("fileAttrList", "ns1:ArrayOfFileAttr"), value("numFiles", integer),
          value("error", integer), value("retryInterval", integer)}},
        {"closeSnapChangeList", {nillable("fileListHandle", "ns1:FileListHandle")}},
        {"closeSnapChangeListResponse", {}},
        {"ioControl",
         {nillable("serverHandle", "ns1:ServerHandle"), value("command", integer), value("args", string),
          value("ioflag", integer), value("len", integer)}},
        {"ioControlResponse", {value("args", string), value("len", integer)}},
    };
    return table;
}

} // namespace schema_test
