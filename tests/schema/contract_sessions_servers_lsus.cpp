// Sessions, servers, LSUs, the shared array types and the fault detail, as the service's contract has them.
// Kept by hand: nothing here comes from the type header or from anything made of it.
#include "contract.h"

namespace schema_test
{

const std::vector<ComplexType>& types_of_sessions_servers_lsus()
{
    static const std::vector<ComplexType> table = {
        {"ArrayOfInt", {repeated("item", integer)}},
        {"ArrayOfString", {repeated("item", string)}},
        {"Credential", {value("len", integer), value("type", integer), nillable("cert", bytes)}},
        {"SessionDefinition", {nillable("proxy", string), nillable("id", string), value("flags", integer)}},
        {"ServerHandle", {nillable("token", string)}},
        {"STSException", {value("errorCode", integer)}},
        {"ServerInformation",
         {nillable("server", string), nillable("sth", "ns1:ArrayOfString"), value("flags", integer),
          value("maxconnect", integer), value("nconnect", integer), nillable("cap", "ns1:ArrayOfInt"),
          nillable("requiredInterface", "ns1:ArrayOfString"), nillable("cred", "ns1:ArrayOfInt"),
          nillable("ndmpHost", string)}},
        {"LSU", {nillable("serverHandle", "ns1:ServerHandle"), value("lsuName", string)}},
        {"LSUDefinition",
         {value("version", long_integer), nillable("name", string), value("alloc", integer),
          value("storage", integer), nillable("description", string), nillable("config", string),
          value("flags", integer), value("saveas", integer), value("maxTransfer", long_integer),
          value("blockSize", long_integer), value("allocSize", long_integer), nillable("label", string),
          value("repSources", integer), value("repTargets", integer)}},
        {"LSUInformation",
         {value("version", long_integer), value("server", string), nillable("def", "ns1:LSUDefinition"),
          value("capacity", long_integer), value("capacityPhys", long_integer), value("used", long_integer),
          value("usedPhys", long_integer), value("images", long_integer)}},
        {"LSUSpecification", {value("server", string), value("lsu", string)}},
        {"ArrayOfLSUSpecification", {repeated("item", "ns1:LSUSpecification")}},
        {"LSUReplicationProps",
         {nillable("source", "ns1:ArrayOfLSUSpecification"),
          nillable("target", "ns1:ArrayOfLSUSpecification")}},
        {"LSUListHandle", {nillable("token", string)}},
    };
    return table;
}

const std::vector<ComplexType>& messages_of_sessions_servers_lsus()
{
    static const std::vector<ComplexType> table = {
        {"openServer",
         {nillable("sd", "ns1:SessionDefinition"), value("server", string),
          nillable("cred", "ns1:Credential"), value("requiredInterface", string)}},
        {"openServerResponse", {nillable("serverHandle", "ns1:ServerHandle")}},
        {"openTargetServer",
         {nillable("serverHandle", "ns1:ServerHandle"), value("server", string),
          nillable("cred", "ns1:Credential"), value("interface", string)}},
        {"openTargetServerResponse", {nillable("targetServerHandle", "ns1:ServerHandle")}},
        {"closeServer", {nillable("serverHandle", "ns1:ServerHandle")}},
        {"closeServerResponse", {}},
        {"getServerProp", {nillable("serverHandle", "ns1:ServerHandle")}},
        {"getServerPropResponse", {nillable("info", "ns1:ServerInformation")}},
        {"getServerPropByName", {nillable("sd", "ns1:SessionDefinition"), value("server", string)}},
        {"getServerPropByNameResponse", {nillable("info", "ns1:ServerInformation")}},
        {"openLSUList",
         {nillable("serverHandle", "ns1:ServerHandle"), nillable("lsudef", "ns1:LSUDefinition")}},
        {"openLSUListResponse", {nillable("lsuListHandle", "ns1:LSUListHandle")}},
        {"listLSU", {nillable("lsuListHandle", "ns1:LSUListHandle")}},
        {"listLSUResponse", {value("lsu", string)}},
        {"closeLSUList", {nillable("lsuListHandle", "ns1:LSUListHandle")}},
        {"closeLSUListResponse", {}},
        {"getLSUPropByName", {nillable("lsu", "ns1:LSU")}},
        {"getLSUPropByNameResponse", {nillable("info", "ns1:LSUInformation")}},
        {"getLSUReplicationProp",
         {nillable("lsu", "ns1:LSU"), value("nsource", integer), value("ntarget", integer)}},
        {"getLSUReplicationPropResponse", {nillable("props", "ns1:LSUReplicationProps")}},
        {"labelLSU", {nillable("lsu", "ns1:LSU"), value("lsuLabel", string)}},
        {"labelLSUResponse", {}},
    };
    return table;
}

} // namespace schema_test
