#include "simulator/api/record_json.h"

#include "simulator/scenario/content.h"
#include "simulator/scenario/records.h"

#include <nlohmann/json.hpp>

#include <cstddef>

namespace soapwrapper::simulator
{

using nlohmann::json;

json volume_json(const Volume& volume)
{
    json object = json::object();
    for (const VolumeKindNames& kind : kVolumeKinds) {
        if (kind.kind != volume.kind) continue;
        json& texts = object[kind.name];
        for (std::size_t i = 0; i < kind.texts.size() && kind.texts[i]; ++i) {
            texts[kind.texts[i]] = volume.texts[i];
        }
    }
    return object;
}

json image_json(const Image& image)
{
    return {{"basename", image.basename}, {"date", image.date}, {"fulldate", image.fulldate},
            {"policy", image.policy},     {"size", image.size}, {"status", image.status}};
}

json snapshot_json(const Snapshot& snapshot)
{
    return {{"name", snapshot.name},
            {"type", snapshot.type},
            {"status", snapshot.status},
            {"size", snapshot.size},
            {"volume", volume_json(snapshot.volume)},
            {"made", value_or_null<json>(snapshot.made)}};
}

const char* name_of(FileType type)
{
    switch (type) {
    case FileType::kRegular:
        return "file";
    case FileType::kDirectory:
        return "directory";
    case FileType::kBlockDevice:
        return "block-device";
    case FileType::kCharacterDevice:
        return "character-device";
    case FileType::kSymlink:
        return "symlink";
    case FileType::kSocket:
        return "socket";
    case FileType::kFifo:
        return "fifo";
    }
    return "";
}

const char* name_of(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::kCreated:
        return "created";
    case ChangeKind::kDeleted:
        return "deleted";
    case ChangeKind::kChanged:
        return "changed";
    }
    return "";
}

} // namespace soapwrapper::simulator
