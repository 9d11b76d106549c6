#include "simulator/scenario/scenario_reader.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/content_reader.h"
#include "simulator/scenario/json_members.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/settings_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ios>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// Not in an unnamed namespace: the templates find them by the namespace of their last argument.
static void read_json(const Json& value, const std::string& path, Volume& volume);
static void read_json(const Json& value, const std::string& path, SupplierId& isid);
static void read_json(const Json& value, const std::string& path, ImageExport& exported);
static void read_json(const Json& value, const std::string& path, Image& image);
static void read_json(const Json& value, const std::string& path, PathMapping& mapping);
static void read_json(const Json& value, const std::string& path, Snapshot& snapshot);
static void read_json(const Json& value, const std::string& path, ReplicationPartner& partner);
static void read_json(const Json& value, const std::string& path, LsuScenario& lsu);
static void read_json(const Json& value, const std::string& path, ServerScenario& server);

// Refuses what goes by the name of an earlier one.
template <class Items, class Name>
static void require_names_of_their_own(const Items& items, const std::string& path, const char* member,
                                       const Name& name)
{
    std::set<std::string> names;
    std::size_t index = 0;
    for (const auto& item : items) {
        const std::string at = path + "[" + std::to_string(index++) + "]." + member;
        if (name(item).empty()) refuse_json(at, "it may not be empty");
        if (!names.insert(name(item)).second) refuse_json(at, "an earlier one has that name already");
    }
}

static void read_json(const Json& value, const std::string& path, Volume& volume)
{
    if (value.is_object() && value.size() == 1) {
        const auto member = value.begin();
        for (const VolumeKindNames& kind : kVolumeKinds) {
            if (member.key() != kind.name) continue;
            volume.kind = kind.kind;
            JsonMembers members(*member, path + "." + kind.name);
            for (std::size_t i = 0; i < kind.texts.size() && kind.texts[i]; ++i) {
                members.required(kind.texts[i], volume.texts[i]);
            }
            members.finish();
            return;
        }
    }
    refuse_json(path, "an object with one member is expected: nfs, cifs, scsi, device or ndmp");
}

static void read_json(const Json& value, const std::string& path, SupplierId& isid)
{
    JsonMembers members(value, path);
    members.optional("version", isid.version);
    members.optional("dpaid", isid.dpaid);
    members.optional("dpaver", isid.dpaver);
    members.optional("info", isid.info);
    members.finish();
}

static void read_json(const Json& value, const std::string& path, ImageExport& exported)
{
    JsonMembers members(value, path);
    members.optional("fstype", exported.fstype);
    members.required("mount", exported.mount);
    members.finish();
}

static void read_json(const Json& value, const std::string& path, Image& image)
{
    JsonMembers members(value, path);
    members.optional("version", image.version);
    members.required("basename", image.basename);
    members.optional("date", image.date);
    members.optional("fulldate", image.fulldate);
    members.optional("policy", image.policy);
    members.optional("saveas", image.saveas);
    members.optional("flags", image.flags);
    members.optional("format", image.format);
    members.optional("isid", image.isid);
    members.optional("size", image.size);
    members.optional("blockSize", image.block_size);
    members.optional("status", image.status);
    members.optional("exports", image.exports);
    members.finish();
    if (image.basename.empty()) refuse_json(members.path_of("basename"), "it may not be empty");
}

static void read_json(const Json& value, const std::string& path, PathMapping& mapping)
{
    JsonMembers members(value, path);
    members.optional("prefix", mapping.prefix);
    members.optional("originalPath", mapping.original_path);
    members.optional("targetPath", mapping.target_path);
    members.finish();
}

static void read_json(const Json& value, const std::string& path, Snapshot& snapshot)
{
    JsonMembers members(value, path);
    members.required("name", snapshot.name);
    members.optional("type", snapshot.type);
    members.optional("flags", snapshot.flags);
    members.optional("saveas", snapshot.saveas);
    members.optional("isid", snapshot.isid);
    members.required("volume", snapshot.volume);
    members.optional("status", snapshot.status);
    members.optional("size", snapshot.size);
    members.optional("pathMap", snapshot.path_map);
    read_content(members, snapshot.content);
    members.finish();
}

static void read_json(const Json& value, const std::string& path, ReplicationPartner& partner)
{
    JsonMembers members(value, path);
    members.required("server", partner.server);
    members.required("lsu", partner.lsu);
    members.finish();
}

static void read_json(const Json& value, const std::string& path, LsuScenario& lsu)
{
    JsonMembers members(value, path);
    LsuProperties& properties = lsu.properties;
    members.required("name", properties.name);
    members.optional("alloc", properties.alloc);
    members.optional("storage", properties.storage);
    members.optional("description", properties.description);
    members.optional("config", properties.config);
    members.optional("flags", properties.flags);
    members.optional("saveas", properties.saveas);
    members.optional("maxTransfer", properties.max_transfer);
    members.optional("blockSize", properties.block_size);
    members.optional("allocSize", properties.alloc_size);
    members.optional("label", properties.label);
    members.optional("capacity", properties.capacity);
    members.optional("capacityPhys", properties.capacity_phys);
    members.optional("used", properties.used);
    members.optional("usedPhys", properties.used_phys);
    members.optional("replicationSources", properties.sources);
    members.optional("replicationTargets", properties.targets);
    members.optional("volumes", properties.volumes);
    read_content(members, properties.content);
    members.optional("images", lsu.images);
    members.optional("snapshots", lsu.snapshots);
    members.finish();
    require_names_of_their_own(lsu.snapshots, members.path_of("snapshots"), "name",
                               [](const Snapshot& snapshot) { return snapshot.name; });
}

static void read_json(const Json& value, const std::string& path, ServerScenario& server)
{
    JsonMembers members(value, path);
    members.required("prefix", server.prefix);
    members.optional("types", server.types);
    members.optional("capabilities", server.capabilities);
    members.optional("flags", server.flags);
    members.optional("maxSessions", server.max_sessions);
    members.optional("lsus", server.lsus);
    members.finish();
    if (server.prefix.find(':') != std::string::npos) {
        refuse_json(members.path_of("prefix"), "the prefix ends ahead of the colon and may hold none");
    }
    if (server.max_sessions < 1) refuse_json(members.path_of("maxSessions"), "1 or more is expected");
    require_names_of_their_own(server.lsus, members.path_of("lsus"), "name",
                               [](const LsuScenario& lsu) { return lsu.properties.name; });
}

// The parser's own text begins with its number for the error, and with a line and a column.
[[noreturn]] static void refuse_syntax(std::string_view json, const Json::parse_error& error)
{
    const std::string_view ahead = json.substr(0, error.byte == 0 ? 0 : error.byte - 1);
    const auto line = 1 + std::count(ahead.begin(), ahead.end(), '\n');
    const std::size_t last_end = ahead.rfind('\n');
    const std::size_t column = ahead.size() - (last_end == std::string_view::npos ? 0 : last_end + 1) + 1;
    std::string why = error.what();
    const std::size_t reason = why.find(": ", why.find("column"));
    if (reason != std::string::npos) why.erase(0, reason + 2);
    throw ScenarioError("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + why);
}

static Json parse_json(std::string_view json)
{
    try {
        return Json::parse(json);
    } catch (const Json::parse_error& error) {
        refuse_syntax(json, error);
    } catch (const Json::exception& error) {
        throw ScenarioError(std::string("the document can't be read: ") + error.what());
    }
}

Scenario parse_scenario(std::string_view json)
{
    const Json document = parse_json(json);
    Scenario scenario;
    JsonMembers members(document, "");
    read_operations(members, scenario);
    members.required("servers", scenario.servers);
    read_change_lists(members, scenario);
    members.finish();
    if (scenario.servers.empty()) refuse_json("servers", "it holds no server");
    require_names_of_their_own(scenario.servers, "servers", "prefix",
                               [](const ServerScenario& server) { return server.prefix; });
    return scenario;
}

// A tree is told from where the file stands, so that the two can be moved together.
static void look_for_trees_in(Scenario& scenario, const std::filesystem::path& folder)
{
    const auto look = [&folder](Content& content) {
        if (content.directory().empty()) return;
        content = Content::of_directory((folder / content.directory()).string());
    };
    for (ServerScenario& server : scenario.servers) {
        for (LsuScenario& lsu : server.lsus) {
            look(lsu.properties.content);
            for (Snapshot& snapshot : lsu.snapshots) look(snapshot.content);
        }
    }
}

Scenario load_scenario(const std::string& path)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || file.peek() == std::ifstream::traits_type::eof() || !(text << file.rdbuf())) {
        const int error = errno;
        throw ScenarioError(path + ": can't be read: " + (error != 0 ? std::strerror(error) : "it is empty"));
    }
    try {
        Scenario scenario = parse_scenario(text.str());
        look_for_trees_in(scenario, std::filesystem::path(path).parent_path());
        return scenario;
    } catch (const ScenarioError& error) {
        throw ScenarioError(path + ": " + error.what());
    }
}

} // namespace soapwrapper::simulator
