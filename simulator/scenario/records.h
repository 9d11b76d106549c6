// What the storage holds, as plain records.
#ifndef SOAPWRAPPER_SIMULATOR_SCENARIO_RECORDS_H
#define SOAPWRAPPER_SIMULATOR_SCENARIO_RECORDS_H

#include "simulator/scenario/content.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// Numbered like the wire's volumeType.
enum class VolumeKind { kNfs, kCifs, kScsi, kDevice, kNdmp };

// Its kind's texts, in the order of kVolumeKinds; those that the kind hasn't stay empty.
struct Volume {
    VolumeKind kind = VolumeKind::kNfs;
    std::array<std::string, 3> texts;
};

struct VolumeKindNames {
    VolumeKind kind;
    const char* name;
    std::array<const char*, 3> texts; // null behind the last one
};

inline constexpr VolumeKindNames kVolumeKinds[] = {
    {VolumeKind::kNfs, "nfs", {"exportHost", "exportName", "exportPath"}},
    {VolumeKind::kCifs, "cifs", {"exportHost", "shareName", "exportPath"}},
    {VolumeKind::kScsi, "scsi", {"lunWWNN", "lunSerial", nullptr}},
    {VolumeKind::kDevice, "device", {"devicePath", nullptr, nullptr}},
    {VolumeKind::kNdmp, "ndmp", {"exportfiler", "exportpath", nullptr}}};

// Whether a client that asks for the one means the other. A host gets no third text to see, so one that it
// leaves empty fits any.
bool means(const Volume& asked, const Volume& held);

struct SupplierId {
    std::int64_t version = 0;
    std::string dpaid;
    std::string dpaver;
    std::string info;
};

struct ImageExport {
    int fstype = 0;
    std::string mount;
};

struct Image {
    std::int64_t version = 10;
    std::string basename;
    std::string date;
    std::string fulldate;
    std::string policy;
    int saveas = 0;
    int flags = 0;
    std::string format;
    std::optional<SupplierId> isid;
    std::int64_t size = 0;
    std::int64_t block_size = 0;
    int status = 0;
    std::vector<ImageExport> exports;
};

// Where the files of a copied snapshot lay at their origin.
struct PathMapping {
    std::string prefix;
    std::string original_path;
    std::string target_path;
};

struct Snapshot {
    std::string name;
    int type = 0;
    int flags = 0;
    int saveas = 0;
    std::optional<SupplierId> isid;
    Volume volume;
    int status = 0;
    std::int64_t size = 0;
    std::vector<PathMapping> path_map;
    Content content;
    std::optional<std::int64_t>
        made; // the storage's date, if it was made since the start; clients aren't told
};

// A partner's server without a colon stands for the machine that the client reached.
struct ReplicationPartner {
    std::string server;
    std::string lsu;
};

struct LsuProperties {
    std::string name;
    int alloc = 0;
    int storage = 0;
    std::string description;
    std::string config;
    int flags = 0;
    int saveas = 0;
    std::int64_t max_transfer = 0;
    std::int64_t block_size = 0;
    std::int64_t alloc_size = 0;
    std::string label;
    std::int64_t capacity = 0;
    std::int64_t capacity_phys = 0;
    std::int64_t used = 0;
    std::int64_t used_phys = 0;
    std::vector<ReplicationPartner> sources;
    std::vector<ReplicationPartner> targets;
    std::vector<Volume> volumes; // that it holds, besides those of its snapshots
    Content content;             // of the volumes, as they are at present
};

} // namespace soapwrapper::simulator

#endif
