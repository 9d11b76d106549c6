#include "simulator/scenario/scenario_warnings.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/findings.h"
#include "simulator/scenario/json_members.h"
#include "simulator/scenario/record_warnings.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/text.h"

#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// What goes by a name that may be given once: where it was given first.
using Places = std::map<std::vector<std::string>, std::string>;

// The place that has the name already, or an empty text.
std::string earlier_place(Places& places, std::vector<std::string> name, const JsonPlace& place)
{
    const auto [found, is_new] = places.emplace(std::move(name), place.path());
    return is_new ? "" : found->second;
}

// A host asks each plug-in whether a server's name is its own. The library claims what begins like this.
bool is_claimed_by_the_library(const std::string& prefix)
{
    constexpr std::string_view kClaimed = "Network_";
    return prefix.compare(0, kClaimed.size(), kClaimed) == 0;
}

bool is_path_of_a_directory_entry(const std::string& path)
{
    std::size_t begin = 0;
    while (begin <= path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string_view step = std::string_view(path).substr(begin, end - begin);
        if (step.empty() || step == "." || step == "..") return false;
        begin = end + 1;
    }
    return true;
}

void look_at_files(const JsonPlace& place, const FileTree& files)
{
    for (const auto& [path, record] : files) {
        if (!is_path_of_a_directory_entry(path)) {
            place.warn("\"" + printable(path) + "\" has a step that is empty, \".\" or \"..\"");
        }
        if (record.type == FileType::kDirectory) continue;
        const std::string directory = path + "/";
        const auto below = files.lower_bound(directory);
        if (below == files.end() || below->first.compare(0, directory.size(), directory) != 0) continue;
        place.warn("\"" + printable(below->first) + "\" lies below \"" + printable(path) +
                   "\", which is no directory");
    }
}

void look_at_tree(const JsonPlace& place, const std::string& path)
{
    if (DIR* directory = opendir(path.c_str())) {
        closedir(directory);
    } else {
        place.warn("the directory " + printable(path) + " can't be read: " + std::strerror(errno));
    }
}

void look_at_content(const JsonPlace& place, const Content& content)
{
    if (content.directory().empty()) {
        look_at_files(place.member("files"), *content.files());
    } else {
        look_at_tree(place.member("tree"), content.directory());
    }
}

// A capacity of 0 is one that nobody has told.
bool is_more_than(std::int64_t number, std::int64_t capacity)
{
    return capacity > 0 && number > capacity;
}

void look_at_sizes(const JsonPlace& place, const LsuScenario& lsu)
{
    const LsuProperties& properties = lsu.properties;
    if (is_more_than(properties.used, properties.capacity)) {
        place.member("used").warn("it is more than the capacity");
    }
    if (is_more_than(properties.used_phys, properties.capacity_phys)) {
        place.member("usedPhys").warn("it is more than capacityPhys");
    }
    const auto look = [&](const JsonPlace& at, std::int64_t size) {
        if (is_more_than(size, properties.capacity)) {
            at.member("size").warn("it is more than the LSU's capacity");
        }
    };
    for (std::size_t i = 0; i < lsu.images.size(); ++i) {
        look(place.member("images").entry(i), lsu.images[i].size);
    }
    for (std::size_t i = 0; i < lsu.snapshots.size(); ++i) {
        look(place.member("snapshots").entry(i), lsu.snapshots[i].size);
    }
}

void look_for_images_alike(const JsonPlace& place, const std::vector<Image>& images)
{
    Places known;
    for (std::size_t i = 0; i < images.size(); ++i) {
        const Image& image = images[i];
        if (image.basename.empty()) continue;
        const std::string earlier =
            earlier_place(known, {image.basename, image.date, image.fulldate, image.policy}, place.entry(i));
        if (earlier.empty()) continue;
        place.entry(i).warn(earlier +
                            " has the same basename, date, fulldate and policy: a host can't name one"
                            " of them alone");
    }
}

bool is_of_ndmp(const Snapshot& snapshot)
{
    return snapshot.volume.kind == VolumeKind::kNdmp;
}

// Two of them can be compared. Where none tells what it holds, nobody means them to be.
void look_for_untold_content(const JsonPlace& place, const std::vector<Snapshot>& snapshots)
{
    const bool is_any_told = std::any_of(snapshots.begin(), snapshots.end(), [](const Snapshot& snapshot) {
        return is_of_ndmp(snapshot) && snapshot.content.is_told();
    });
    for (std::size_t i = 0; is_any_told && i < snapshots.size(); ++i) {
        if (!is_of_ndmp(snapshots[i]) || snapshots[i].content.is_told()) continue;
        place.entry(i).warn("it has no tree and no files, so all that others hold differs from it");
    }
}

// What is to be looked at over more than one LSU.
class Comparison
{
  public:
    explicit Comparison(const Scenario& scenario)
    {
        for (const ServerScenario& server : scenario.servers) {
            servers_.insert(server.prefix);
            for (const LsuScenario& lsu : server.lsus) lsus_.emplace(server.prefix, lsu.properties.name);
        }
    }

    void look_at_partners(const JsonPlace& place, const std::vector<ReplicationPartner>& partners) const;
    void look_for_shared_exports(const JsonPlace& place, const std::vector<Snapshot>& snapshots);

  private:
    std::set<std::string> servers_;
    std::set<std::pair<std::string, std::string>> lsus_;
    Places exports_;
};

// A server with a colon may be any other one.
void Comparison::look_at_partners(const JsonPlace& place,
                                  const std::vector<ReplicationPartner>& partners) const
{
    for (std::size_t i = 0; i < partners.size(); ++i) {
        const auto& [server, lsu] = partners[i];
        if (server.find(':') != std::string::npos) continue;
        if (servers_.count(server) == 0) {
            place.entry(i).member("server").warn("there is no server with the prefix \"" + printable(server) +
                                                 "\"");
        } else if (lsus_.count({server, lsu}) == 0) {
            place.entry(i).member("lsu").warn("the server " + printable(server) + " has no LSU \"" +
                                              printable(lsu) + "\"");
        }
    }
}

// Filers are no server's own: the second plug-in goes to them by their name.
void Comparison::look_for_shared_exports(const JsonPlace& place, const std::vector<Snapshot>& snapshots)
{
    for (std::size_t i = 0; i < snapshots.size(); ++i) {
        const auto& texts = snapshots[i].volume.texts;
        if (!is_of_ndmp(snapshots[i]) || texts[1].empty()) continue;
        const std::string earlier = earlier_place(exports_, {texts[0], texts[1]}, place.entry(i));
        if (earlier.empty()) continue;
        place.entry(i).member("volume").warn("the filer shows " + earlier + " at that exportpath");
    }
}

// A host tells no third text, and means the first LSU that has the volume.
void look_for_shared_volumes(const JsonPlace& lsus, const ServerScenario& server)
{
    Places known;
    for (std::size_t i = 0; i < server.lsus.size(); ++i) {
        const std::vector<Volume>& volumes = server.lsus[i].properties.volumes;
        for (std::size_t k = 0; k < volumes.size(); ++k) {
            const auto& texts = volumes[k].texts;
            if (texts[0].empty() && texts[1].empty()) continue;
            const std::string kind = std::to_string(static_cast<int>(volumes[k].kind));
            const std::string earlier = earlier_place(known, {kind, texts[0], texts[1]}, lsus.entry(i));
            if (earlier.empty() || earlier == lsus.entry(i).path()) continue;
            lsus.entry(i).member("volumes").entry(k).warn(earlier + " has that volume too");
        }
    }
}

void look_at_lsu(const JsonPlace& place, const LsuScenario& lsu)
{
    look_at_content(place, lsu.properties.content);
    look_at_sizes(place, lsu);
    look_for_images_alike(place.member("images"), lsu.images);
    for (std::size_t i = 0; i < lsu.snapshots.size(); ++i) {
        look_at_content(place.member("snapshots").entry(i), lsu.snapshots[i].content);
    }
}

void compare_lsus(const Scenario& scenario, const JsonPlace& servers)
{
    Comparison comparison(scenario);
    for (std::size_t i = 0; i < scenario.servers.size(); ++i) {
        const JsonPlace lsus = servers.entry(i).member("lsus");
        look_for_shared_volumes(lsus, scenario.servers[i]);
        for (std::size_t k = 0; k < scenario.servers[i].lsus.size(); ++k) {
            const LsuScenario& lsu = scenario.servers[i].lsus[k];
            const JsonPlace place = lsus.entry(k);
            comparison.look_at_partners(place.member("replicationSources"), lsu.properties.sources);
            comparison.look_at_partners(place.member("replicationTargets"), lsu.properties.targets);
            comparison.look_for_shared_exports(place.member("snapshots"), lsu.snapshots);
            look_for_untold_content(place.member("snapshots"), lsu.snapshots);
        }
    }
}

} // namespace

void warn_of_what_is_hardly_meant(const Scenario& scenario, Findings& findings)
{
    const JsonPlace servers = JsonPlace(findings).member("servers");
    for (std::size_t i = 0; i < scenario.servers.size(); ++i) {
        const ServerScenario& server = scenario.servers[i];
        const JsonPlace place = servers.entry(i);
        if (!server.prefix.empty() && !is_claimed_by_the_library(server.prefix)) {
            place.member("prefix").warn("the library claims no server whose name doesn't begin with"
                                        " \"Network_\"");
        }
        warn_of_what_records_cut(server, place);
        for (std::size_t k = 0; k < server.lsus.size(); ++k) {
            look_at_lsu(place.member("lsus").entry(k), server.lsus[k]);
        }
    }
    if (findings.errors() == 0) compare_lsus(scenario, servers);
}

} // namespace soapwrapper::simulator
