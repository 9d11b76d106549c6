#include "simulator/scenario/scenario_reader.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/content_reader.h"
#include "simulator/scenario/findings.h"
#include "simulator/scenario/json_document.h"
#include "simulator/scenario/json_members.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scenario_error.h"
#include "simulator/scenario/scenario_file.h"
#include "simulator/scenario/scenario_finding.h"
#include "simulator/scenario/settings_reader.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace soapwrapper::simulator
{

// Not in an unnamed namespace: the templates find them by the namespace of their last argument.
static void read_json(const Json& value, const JsonPlace& place, Volume& volume);
static void read_json(const Json& value, const JsonPlace& place, SupplierId& isid);
static void read_json(const Json& value, const JsonPlace& place, ImageExport& exported);
static void read_json(const Json& value, const JsonPlace& place, Image& image);
static void read_json(const Json& value, const JsonPlace& place, PathMapping& mapping);
static void read_json(const Json& value, const JsonPlace& place, Snapshot& snapshot);
static void read_json(const Json& value, const JsonPlace& place, ReplicationPartner& partner);
static void read_json(const Json& value, const JsonPlace& place, LsuScenario& lsu);
static void read_json(const Json& value, const JsonPlace& place, ServerScenario& server);

// Refuses what goes by the name of an earlier one. What has no name was refused already.
template <class Items, class Name>
static void require_names_of_their_own(const Items& items, const JsonPlace& place, const char* member,
                                       const Name& name)
{
    std::set<std::string> names;
    std::size_t index = 0;
    for (const auto& item : items) {
        const JsonPlace at = place.entry(index++);
        if (name(item).empty() || names.insert(name(item)).second) continue;
        at.member(member).refuse("an earlier one has that name already");
    }
}

static void read_json(const Json& value, const JsonPlace& place, Volume& volume)
{
    if (value.is_object() && value.size() == 1) {
        const auto member = value.begin();
        for (const VolumeKindNames& kind : kVolumeKinds) {
            if (member.key() != kind.name) continue;
            volume.kind = kind.kind;
            JsonMembers members(*member, place.member(kind.name));
            for (std::size_t i = 0; i < kind.texts.size() && kind.texts[i]; ++i) {
                members.required(kind.texts[i], volume.texts[i]);
            }
            members.finish();
            return;
        }
    }
    place.refuse("an object with one member is expected: nfs, cifs, scsi, device or ndmp");
}

static void read_json(const Json& value, const JsonPlace& place, SupplierId& isid)
{
    JsonMembers members(value, place);
    members.optional("version", isid.version);
    members.optional("dpaid", isid.dpaid);
    members.optional("dpaver", isid.dpaver);
    members.optional("info", isid.info);
    members.finish();
}

static void read_json(const Json& value, const JsonPlace& place, ImageExport& exported)
{
    JsonMembers members(value, place);
    members.optional("fstype", exported.fstype);
    members.required("mount", exported.mount);
    members.finish();
}

static void read_json(const Json& value, const JsonPlace& place, Image& image)
{
    JsonMembers members(value, place);
    members.optional("version", image.version);
    members.required_name("basename", image.basename);
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
}

static void read_json(const Json& value, const JsonPlace& place, PathMapping& mapping)
{
    JsonMembers members(value, place);
    members.optional("prefix", mapping.prefix);
    members.optional("originalPath", mapping.original_path);
    members.optional("targetPath", mapping.target_path);
    members.finish();
}

static void read_json(const Json& value, const JsonPlace& place, Snapshot& snapshot)
{
    JsonMembers members(value, place);
    members.required_name("name", snapshot.name);
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

static void read_json(const Json& value, const JsonPlace& place, ReplicationPartner& partner)
{
    JsonMembers members(value, place);
    members.required("server", partner.server);
    members.required("lsu", partner.lsu);
    members.finish();
}

static void read_json(const Json& value, const JsonPlace& place, LsuScenario& lsu)
{
    JsonMembers members(value, place);
    LsuProperties& properties = lsu.properties;
    members.required_name("name", properties.name);
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
    require_names_of_their_own(lsu.snapshots, place.member("snapshots"), "name",
                               [](const Snapshot& snapshot) { return snapshot.name; });
}

static void read_json(const Json& value, const JsonPlace& place, ServerScenario& server)
{
    JsonMembers members(value, place);
    if (members.required_name("prefix", server.prefix) && server.prefix.find(':') != std::string::npos) {
        members.refuse("prefix", "the prefix ends ahead of the colon and may hold none");
    }
    members.optional("types", server.types);
    members.optional("capabilities", server.capabilities);
    members.optional("flags", server.flags);
    if (members.optional("maxSessions", server.max_sessions) && server.max_sessions < 1) {
        members.refuse("maxSessions", "1 or more is expected");
    }
    members.optional("lsus", server.lsus);
    members.finish();
    require_names_of_their_own(server.lsus, place.member("lsus"), "name",
                               [](const LsuScenario& lsu) { return lsu.properties.name; });
}

Scenario read_scenario(std::string_view json, Findings& findings)
{
    Scenario scenario;
    const std::optional<Json> document = parse_json(json, findings);
    if (!document) return scenario;
    const JsonPlace place(findings);
    JsonMembers members(*document, place);
    read_operations(members, scenario);
    if (members.required("servers", scenario.servers) && scenario.servers.empty()) {
        members.refuse("servers", "it holds no server");
    }
    read_change_lists(members, scenario);
    members.finish();
    require_names_of_their_own(scenario.servers, place.member("servers"), "prefix",
                               [](const ServerScenario& server) { return server.prefix; });
    return scenario;
}

// Of the first errors, a line each.
static std::string lines_of(const Findings& findings, const std::string& ahead)
{
    constexpr std::size_t kMostLines = 100;
    std::string lines;
    for (const ScenarioFinding& finding : findings.first_errors(kMostLines)) {
        lines += (lines.empty() ? "" : "\n") + ahead + to_string(finding);
    }
    return lines;
}

static Scenario read_faultless_scenario(std::string_view json, const std::string& ahead)
{
    Findings findings;
    Scenario scenario = read_scenario(json, findings);
    if (findings.errors() != 0) throw ScenarioError(lines_of(findings, ahead));
    return scenario;
}

Scenario parse_scenario(std::string_view json)
{
    return read_faultless_scenario(json, "");
}

static std::string text_of_file(const std::string& path)
{
    try {
        return read_scenario_file(path);
    } catch (const ScenarioError& error) {
        throw ScenarioError(path + ": " + error.what());
    }
}

void look_for_trees_in(Scenario& scenario, const std::filesystem::path& folder)
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

Scenario load_scenario(const std::string& path, std::string* text_read)
{
    std::string text = text_of_file(path);
    Scenario scenario = read_faultless_scenario(text, path + ": ");
    look_for_trees_in(scenario, std::filesystem::path(path).parent_path());
    if (text_read) *text_read = std::move(text);
    return scenario;
}

} // namespace soapwrapper::simulator
