// A client that starts the simulator's long operations and asks after them. A scenario lets each request come
// a second after the last one, and an operation take three seconds: of the three requests that follow its
// start, two find it running.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_OPERATIONS_H
#define SOAPWRAPPER_TESTS_SYSTEM_SIMULATOR_OPERATIONS_H

#include "tests/kit/wire_elements.h"
#include "tests/system/probe_process.h"
#include "tests/system/simulator_catalogue.h"

#include <string>
#include <utility>
#include <vector>

namespace simulator_operations
{

using namespace simulator_catalogue;

constexpr long kBusy = 2060005;
constexpr long kUnknownServer = 2069001;
constexpr long kTooManyOpen = 2069012;
constexpr long kUnreadableTree = 2069013;
constexpr long kUnknownOperation = 2069030;
constexpr long kCancelled = 2069031;
constexpr long kSnapshotsInTheWay = 2069032;

// All kinds take three seconds, but these.
inline std::string settings(const std::string& other_seconds = "")
{
    std::string seconds = other_seconds;
    for (const char* kind : {"create", "copy", "prepare", "postProcess", "validate", "import", "rollback",
                             "provision", "diff", "copyImage"}) {
        if (other_seconds.find('"' + std::string(kind) + '"') != std::string::npos) continue;
        seconds += (seconds.empty() ? "\"" : ", \"") + std::string(kind) + "\": 3";
    }
    return R"("time": "requests", "operations": {"retryInterval": 7, "seconds": {)" + seconds + "}}";
}

inline const char* const kServers = R"("servers": [
  {"prefix": "Near", "lsus": [
    {"name": "home", "used": 1000,
     "volumes": [{"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}}],
     "files": [{"path": "b", "size": 200, "modified": 5}, {"path": "c", "size": 100},
               {"path": "d", "type": "directory"}],
     "images": [{"basename": "weekly", "date": "1", "policy": "p", "size": 300, "exports": [{"mount": "/m"}]}],
     "snapshots": [
       {"name": "old", "type": 4, "flags": 5, "saveas": 6, "size": 3000,
        "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}},
        "files": [{"path": "a"}, {"path": "b", "size": 150}, {"path": "c", "size": 100}]},
       {"name": "new", "size": 10,
        "volume": {"nfs": {"exportHost": "filer1", "exportName": "/vol/home", "exportPath": "/vol/home"}}}]},
    {"name": "side"}]},
  {"prefix": "Far", "lsus": [
    {"name": "vault",
     "volumes": [{"nfs": {"exportHost": "vault1", "exportName": "/vault", "exportPath": "/vault"}}],
     "snapshots": [
       {"name": "kept",
        "volume": {"nfs": {"exportHost": "vault1", "exportName": "/vault", "exportPath": "/vault"}}}]},
    {"name": "spare"}]}])";

inline std::string scenario(const std::string& other_seconds = "", const char* servers = kServers)
{
    return "{" + settings(other_seconds) + ", " + servers + "}";
}

using kit::number;

inline std::string definition(const std::string& role, const std::string& name)
{
    return element(role, element("snapName", name) + number("snapType", 1) + number("snapFlags", 2) +
                             number("snapSaveas", 3) + nil("isid"));
}

// Server and LSU.
using Targets = std::vector<std::pair<std::string, std::string>>;

inline std::string targets(const Targets& named)
{
    std::string items;
    for (const auto& [server, lsu] : named) {
        items += element("item", element("server", server) + element("lsu", lsu));
    }
    return element("targetLSUSpecs", items) + number("ntargets", static_cast<long>(named.size()));
}

inline const std::string kSet = element("imageset", "set") + element("pendingflag", "1");

// An operation's name, as the last element of a request of the named family.
inline std::string opname(const std::string& name)
{
    return element("opname", name);
}

class OperationsClient : public Client
{
  protected:
    explicit OperationsClient(const std::string& text = scenario())
        : OperationsClient(TemporaryFolder(), text)
    {
    }
    OperationsClient(const TemporaryFolder& folder, const std::string& text)
        : Client({"--scenario", folder.write("operations.json", text)})
    {
    }

    // What the requests tell, without the element that only the named family has.
    std::string create(const std::string& name, const Targets& at = {}) const
    {
        return volume_and(definition("targetSnapDef", name)) + targets(at) + kSet;
    }
    std::string import(const std::string& name) const
    {
        return volume_and(definition("sourceSnapDef", name)) + kSet;
    }
    std::string topology(const std::string& text, const Targets& at) const
    {
        return volume_and(definition("targetSnapDef", "any")) + targets(at) + element("targetTopology", text);
    }
    std::string copy(const std::string& name, const Targets& at) const
    {
        return lsu(near_, "home") + snapshot(name) + targets(at) + kSet;
    }
    std::string post_process(const std::string& name) const
    {
        return lsu(near_, "home") + element("snapName", name);
    }
    std::string rollback(const std::string& name, const std::vector<std::string>& given_up = {},
                         const std::string& target_token = "",
                         const std::string& volume = home_volume()) const
    {
        std::string items;
        for (const std::string& each : given_up) items += element("item", each);
        return lsu(near_, "home") + snapshot(name) +
               element("targetServerHandle", element("token", target_token)) +
               element("targetVolSpec", volume) + element("rollbackList", items) +
               number("numRollbacks", static_cast<long>(given_up.size())) + number("rollbackFlag", 0);
    }
    std::string diff(const std::string& name, const std::vector<std::string>& volumes = {},
                     const std::string& target_token = "") const
    {
        std::string items;
        for (const std::string& each : volumes) items += element("item", each);
        return server_handle(near_) + definition("snapshot", name) +
               element("targetServerHandle", element("token", target_token)) +
               element("rollbackList", items) + number("numRollbacks", static_cast<long>(volumes.size())) +
               number("diffFlag", 0);
    }

    // The operation's id; empty if it wasn't started.
    std::string start(const std::string& operation, const std::string& content) const
    {
        return text_of(text_of(ask(operation, content).body, "opid"), "token");
    }
    static std::string by_id(const std::string& id)
    {
        return element("sd", element("flags", "0")) + element("opid", element("token", id));
    }
    HttpReply wait(const std::string& id) const { return ask("asyncWaitSnap", by_id(id)); }
    // What it says as the operation's status; -1 if it says none.
    static long error_of(const HttpReply& reply)
    {
        const std::string error = text_of(text_of(reply.body, "result"), "error");
        return error.empty() ? -1 : std::stol(error);
    }
    // Lets an operation's three seconds pass. Returns what the last one's wait has for a result.
    std::string end(const std::string& id) const
    {
        EXPECT_EQ(error_of(wait(id)), kBusy);
        EXPECT_EQ(error_of(wait(id)), kBusy);
        return text_of(wait(id).body, "result");
    }
    long failure(const std::string& id) const { return std::stol("0" + text_of(end(id), "error")); }

    std::string by_name(const std::string& name) const { return server_handle(near_) + opname(name); }

    std::vector<std::string> snapshots(const std::string& token, const std::string& of) const
    {
        std::vector<std::string> names = rest(kSnapshots, open("openSnapList", lsu(token, of)));
        names.pop_back();
        return names;
    }
    std::string properties(const std::string& token, const std::string& of, const std::string& name) const
    {
        return text_of(ask("getSnapPropByName", lsu(token, of) + snapshot(name)).body, "snapInfo");
    }
    // What the volumes have used of their LSU.
    std::string used() const { return text_of(ask("getLSUPropByName", lsu(near_, "home")).body, "used"); }

    static std::string vault() { return nfs("vault1", "/vault", ""); }

    const std::string near_ = open_server("Near:filer");
    const std::string far_ = open_server("Far:else");

  private:
    std::string volume_and(const std::string& content) const
    {
        return server_handle(near_) + element("sourceVolSpec", home_volume()) + content;
    }
};

// The rows of a difference: name, type and state.
inline std::vector<std::string> rows(std::string result)
{
    std::vector<std::string> rows;
    for (;;) {
        const std::string item = text_of(result, "item");
        if (item.empty()) return rows;
        rows.push_back(text_of(item, "objectName") + " " + text_of(item, "objectType") + " " +
                       text_of(item, "objectState"));
        result.erase(0, result.find("</ns1:item>") + 11);
    }
}

} // namespace simulator_operations

#endif
