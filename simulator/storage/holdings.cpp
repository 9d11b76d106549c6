#include "simulator/storage/holdings.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/storage/announcements.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// A client that goes on making them is told before the memory is gone.
constexpr std::size_t kMostSnapshots = 1000;
constexpr std::size_t kMostImages = 1000;

const Volume* find_volume(const Lsu& lsu, const Volume& volume)
{
    const std::vector<Volume>& volumes = lsu.properties.volumes;
    const auto found =
        std::find_if(volumes.begin(), volumes.end(), [&](const Volume& held) { return means(volume, held); });
    return found == volumes.end() ? nullptr : &*found;
}

} // namespace

LsuPosition position_of(const Storage& storage, std::size_t server, const Volume& volume)
{
    const std::vector<Lsu>& lsus = storage.server(server).lsus;
    auto found = std::find_if(lsus.begin(), lsus.end(),
                              [&](const Lsu& lsu) { return find_volume(lsu, volume) != nullptr; });
    if (found == lsus.end()) {
        found =
            std::find_if(lsus.begin(), lsus.end(), [&](const Lsu& lsu) { return knows_volume(lsu, volume); });
    }
    if (found == lsus.end()) throw Fault(kUnknownVolume, "the server knows no such volume");
    return {server, static_cast<std::size_t>(found - lsus.begin())};
}

const Volume& held_volume(const Lsu& lsu, const Volume& volume)
{
    if (const Volume* held = find_volume(lsu, volume)) return *held;
    for (const auto& entry : lsu.snapshots) {
        if (means(volume, entry.second.volume)) return entry.second.volume;
    }
    return volume;
}

void require_place_for(const Lsu& lsu, const std::string& snapshot_name)
{
    if (std::any_of(lsu.snapshots.begin(), lsu.snapshots.end(),
                    [&](const auto& entry) { return entry.second.name == snapshot_name; })) {
        throw Fault(kInUse, "the LSU has a snapshot called \"" + printable(snapshot_name) + "\" already");
    }
    if (lsu.snapshots.size() >= kMostSnapshots) {
        throw Fault(kTooManyOpen, "the LSU has no room for another snapshot");
    }
}

void add_snapshot(Storage& storage, LsuPosition position, Snapshot snapshot)
{
    Lsu& lsu = lsu_at(storage, position);
    require_place_for(lsu, snapshot.name);
    const std::int64_t before = lsu.properties.used;
    lsu.occupy(snapshot.size);
    snapshot.made = storage.date();
    const Snapshot& added = lsu.snapshots.emplace(storage.next_serial(), std::move(snapshot)).first->second;
    StorageServer& server = storage.server(position.server);
    announce_snapshot_created(server, lsu, added, storage.date());
    announce_growth(server, lsu, before);
}

void delete_snapshot(Storage& storage, LsuPosition position, Serial serial)
{
    Lsu& lsu = lsu_at(storage, position);
    const auto found = lsu.snapshots.find(serial);
    const Snapshot snapshot = std::move(found->second);
    lsu.snapshots.erase(found);
    lsu.release(snapshot.size);
    announce_snapshot_deleted(storage.server(position.server), lsu, snapshot, storage.date());
}

Serial add_image(Storage& storage, LsuPosition position, Image image)
{
    Lsu& lsu = lsu_at(storage, position);
    if (lsu.images.size() >= kMostImages) {
        throw Fault(kTooManyOpen, "the LSU has no room for another image");
    }
    const std::int64_t before = lsu.properties.used;
    lsu.occupy(image.size);
    const Serial serial = storage.next_serial();
    lsu.images.emplace(serial, std::move(image));
    announce_growth(storage.server(position.server), lsu, before);
    return serial;
}

void delete_image(Storage& storage, LsuPosition position, Serial serial)
{
    Lsu& lsu = lsu_at(storage, position);
    const auto found = lsu.images.find(serial);
    const Image image = std::move(found->second);
    lsu.images.erase(found);
    lsu.release(image.size);
    announce_image_deleted(storage.server(position.server), lsu, image);
}

} // namespace soapwrapper::simulator
