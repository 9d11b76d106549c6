#include "simulator/service/iocontrol.h"

#include "simulator/front/xml_escaped.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/service/call.h"
#include "simulator/storage/model.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace soapwrapper::simulator
{
namespace
{

enum Command {
    kEcho = 1,              // answers the text as plain text
    kCountedEcho = 2,       // answers the text as counted bytes
    kStartSnapDiff = 10102, // a listing of changes begins on a volume
    kStopSnapDiff = 10103,  // and ends
    kGetPathMap = 10104     // answers a snapshot's path map
};

constexpr int kWantsAnswer = 2; // in ioflag
constexpr char kLongestCount[] = "18446744073709551615";

std::string path_map_document(const Snapshot& snapshot)
{
    std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<path_maps>";
    for (const PathMapping& mapping : snapshot.path_map) {
        document += "<path_map><prefix>" + xml_escaped(mapping.prefix) + "</prefix><original_path>" +
                    xml_escaped(mapping.original_path) + "</original_path><target_path>" +
                    xml_escaped(mapping.target_path) + "</target_path></path_map>";
    }
    return document + "</path_maps>";
}

// A snapshot's name is all that the command has to go by, so the server's first one of that name is meant.
const Snapshot& snapshot_of(const StorageServer& server, const std::string& name)
{
    for (const Lsu& lsu : server.lsus) {
        for (const auto& entry : lsu.snapshots) {
            if (entry.second.name == name) return entry.second;
        }
    }
    throw Fault(kUnknownSnapshot, "the server has no snapshot called \"" + printable(name) + "\"");
}

void require_volume(const std::string& args)
{
    if (args.empty()) throw Fault(kBadValue, "the command needs a volume's texts as its args");
}

// Whether the two texts of `args` are the volume's. Behind the first one, a user and a password may follow
// ahead of the semicolon; what these hold is nobody's business.
bool tells_of(const std::string& args, const Volume& volume)
{
    const std::string& host = volume.texts[0];
    const std::string end = ";" + volume.texts[1];
    if (args == host + end) return true;
    return args.size() > host.size() + end.size() && args.compare(0, host.size(), host) == 0 &&
           args[host.size()] == ' ' && args.compare(args.size() - end.size(), end.size(), end) == 0;
}

// The name of the volume among those that are listed; none, if the server doesn't know it.
std::optional<std::string> known_volume(const StorageServer& server, const std::string& args)
{
    std::optional<std::string> name;
    const auto look = [&](const Volume& volume) {
        if (!name && tells_of(args, volume)) name = volume.texts[0] + ";" + volume.texts[1];
    };
    for (const Lsu& lsu : server.lsus) {
        for (const Volume& volume : lsu.properties.volumes) look(volume);
        for (const auto& entry : lsu.snapshots) look(entry.second.volume);
    }
    return name;
}

// The answer is how many listings the volume has now.
std::string start_listing(StorageServer& server, const std::string& session, const std::string& args,
                          int busy)
{
    require_volume(args);
    const std::optional<std::string> volume = known_volume(server, args);
    if (!volume) throw Fault(kUnknownVolume, "the server knows no such volume");
    server.listings.start(session, *volume, busy);
    return std::to_string(server.listings.count(*volume));
}

std::string stop_listing(StorageServer& server, const std::string& session, const std::string& args)
{
    require_volume(args);
    const std::optional<std::string> volume = known_volume(server, args);
    if (!volume) return "0";
    server.listings.stop(session, *volume);
    return std::to_string(server.listings.count(*volume));
}

// A caller that sent a text told by len how large its buffer is, terminator included. A text that it would
// have to cut is no use to it, and a plain one might not even be cut.
void require_fitting(const _ns1__ioControl& request, const std::string& answer)
{
    if (!request.args.empty() &&
        (request.len <= 0 || answer.size() >= static_cast<std::size_t>(request.len))) {
        throw Fault(kBadValue, "the answer doesn't fit into a buffer of len bytes");
    }
}

} // namespace

void handle(Call& call, const _ns1__ioControl& request, _ns1__ioControlResponse& response)
{
    const Model::Use storage = call.model().use();
    const std::string& session = token_of(request.serverHandle);
    StorageServer& server = storage->server(storage->session(session).server);
    const bool wants_answer = (request.ioflag & kWantsAnswer) != 0;
    bool is_counted = false;
    std::string answer;
    switch (request.command) {
    case kEcho:
        answer = request.args;
        break;
    case kCountedEcho:
        answer = request.args;
        is_counted = true;
        break;
    case kStartSnapDiff:
        if (wants_answer) require_fitting(request, kLongestCount);
        answer = start_listing(server, session, request.args, storage->change_list_settings.start_busy);
        break;
    case kStopSnapDiff:
        if (wants_answer) require_fitting(request, kLongestCount);
        answer = stop_listing(server, session, request.args);
        break;
    case kGetPathMap:
        answer = path_map_document(snapshot_of(server, request.args));
        is_counted = true;
        break;
    default:
        throw Fault(kUnknownCommand, "there is no control command " + std::to_string(request.command));
    }
    if (!wants_answer) return;
    require_fitting(request, answer);
    response.args = std::move(answer);
    if (is_counted) response.len = static_cast<int>(response.args.size());
}

} // namespace soapwrapper::simulator
