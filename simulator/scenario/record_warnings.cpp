#include "simulator/scenario/record_warnings.h"

#include "plugin/host/host_records.h"
#include "simulator/scenario/change_list.h"
#include "simulator/scenario/content.h"
#include "simulator/scenario/json_members.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/text.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr int kCapabilities = STS_CAPABILITY_WORDS * 32;

// `size` is that of the record's array, with the terminator.
void look_at_text(const JsonPlace& place, const std::string& text, std::size_t size)
{
    if (text.size() < size) return;
    place.warn("it has " + std::to_string(text.size()) + " bytes, and a host's record holds " +
               std::to_string(size - 1));
}

void look_at_number(const JsonPlace& place, std::size_t number, std::size_t most)
{
    if (number <= most) return;
    place.warn("there are " + std::to_string(number) + ", and a host's record holds " + std::to_string(most));
}

void look_at_partners(const JsonPlace& place, const std::vector<ReplicationPartner>& partners)
{
    for (std::size_t i = 0; i < partners.size(); ++i) {
        look_at_text(place.entry(i).member("server"), partners[i].server, STS_SERVER_NAME_SIZE);
        look_at_text(place.entry(i).member("lsu"), partners[i].lsu, STS_LSU_NAME_SIZE);
    }
}

// The third text is no part of what a host gets.
void look_at_volume(const JsonPlace& place, const Volume& volume)
{
    for (const VolumeKindNames& kind : kVolumeKinds) {
        if (kind.kind != volume.kind) continue;
        for (std::size_t i = 0; i < 2 && kind.texts[i]; ++i) {
            look_at_text(place.member(kind.name).member(kind.texts[i]), volume.texts[i],
                         STS_VOLUME_TEXT_SIZE);
        }
    }
}

void look_at_supplier(const JsonPlace& place, const std::optional<SupplierId>& isid)
{
    if (!isid) return;
    look_at_text(place.member("dpaid"), isid->dpaid, sizeof(sts_isid_t::dpaid));
    look_at_text(place.member("dpaver"), isid->dpaver, sizeof(sts_isid_t::dpaver));
    look_at_text(place.member("info"), isid->info, sizeof(sts_isid_t::info));
}

void look_at_image(const JsonPlace& place, const Image& image)
{
    look_at_text(place.member("basename"), image.basename, sizeof(sts_image_def_v10_t::basename));
    look_at_text(place.member("date"), image.date, sizeof(sts_image_def_v10_t::date));
    look_at_text(place.member("fulldate"), image.fulldate, sizeof(sts_image_def_v10_t::fulldate));
    look_at_text(place.member("policy"), image.policy, sizeof(sts_image_def_v10_t::policy));
    look_at_text(place.member("format"), image.format, sizeof(sts_image_def_v10_t::format));
    look_at_supplier(place.member("isid"), image.isid);
    look_at_number(place.member("exports"), image.exports.size(), STS_IMAGE_EXPORTS);
    for (std::size_t i = 0; i < image.exports.size(); ++i) {
        look_at_text(place.member("exports").entry(i).member("mount"), image.exports[i].mount,
                     sizeof(sts_export_v7_t::mount));
    }
}

// As it stands in a change list. Escaping makes three bytes of one at most.
void look_at_listed_names(const JsonPlace& place, const Snapshot& snapshot)
{
    if (snapshot.volume.kind != VolumeKind::kNdmp || !snapshot.content.directory().empty()) return;
    const std::size_t ahead = snapshot.volume.texts[1].size() + 1;
    for (const auto& [path, record] : *snapshot.content.files()) {
        if (ahead + 3 * path.size() < STS_PATH_SIZE) continue;
        if (ahead + escaped_path(path).size() < STS_PATH_SIZE) continue;
        place.member("files").warn("\"" + printable(path) +
                                   "\" has a longer name in a change list than the " +
                                   std::to_string(STS_PATH_SIZE - 1) + " bytes that a host's record holds");
    }
}

void look_at_snapshot(const JsonPlace& place, const Snapshot& snapshot)
{
    look_at_text(place.member("name"), snapshot.name, STS_SNAP_NAME_SIZE);
    look_at_supplier(place.member("isid"), snapshot.isid);
    look_at_volume(place.member("volume"), snapshot.volume);
    look_at_listed_names(place, snapshot);
}

void look_at_lsu(const JsonPlace& place, const LsuScenario& lsu)
{
    const LsuProperties& properties = lsu.properties;
    look_at_text(place.member("name"), properties.name, STS_LSU_NAME_SIZE);
    look_at_text(place.member("label"), properties.label, sizeof(sts_lsu_def_v11_t::label));
    look_at_text(place.member("description"), properties.description, sizeof(sts_lsu_def_v11_t::description));
    look_at_text(place.member("config"), properties.config, sizeof(sts_lsu_def_v11_t::config));
    look_at_partners(place.member("replicationSources"), properties.sources);
    look_at_partners(place.member("replicationTargets"), properties.targets);
    for (std::size_t i = 0; i < properties.volumes.size(); ++i) {
        look_at_volume(place.member("volumes").entry(i), properties.volumes[i]);
    }
    for (std::size_t i = 0; i < lsu.images.size(); ++i) {
        look_at_image(place.member("images").entry(i), lsu.images[i]);
    }
    for (std::size_t i = 0; i < lsu.snapshots.size(); ++i) {
        look_at_snapshot(place.member("snapshots").entry(i), lsu.snapshots[i]);
    }
}

} // namespace

void warn_of_what_records_cut(const ServerScenario& server, const JsonPlace& place)
{
    // With the colon and one character of the host.
    look_at_text(place.member("prefix"), server.prefix, STS_SERVER_NAME_SIZE - 2);
    look_at_number(place.member("types"), server.types.size(), STS_SERVER_TYPES);
    for (std::size_t i = 0; i < server.types.size(); ++i) {
        look_at_text(place.member("types").entry(i), server.types[i], STS_SERVER_TYPE_SIZE);
    }
    for (std::size_t i = 0; i < server.capabilities.size(); ++i) {
        if (server.capabilities[i] >= 0 && server.capabilities[i] < kCapabilities) continue;
        place.member("capabilities")
            .entry(i)
            .warn("the library knows the capabilities 0 to " + std::to_string(kCapabilities - 1));
    }
    for (std::size_t i = 0; i < server.lsus.size(); ++i) {
        look_at_lsu(place.member("lsus").entry(i), server.lsus[i]);
    }
}

} // namespace soapwrapper::simulator
