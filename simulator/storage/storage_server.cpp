#include "simulator/storage/storage_server.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/scenario/text.h"
#include "simulator/storage/serial.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <string>

namespace soapwrapper::simulator
{

void Lsu::occupy(std::int64_t size)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    for (std::int64_t* used : {&properties.used, &properties.used_phys}) {
        if (size > 0) *used = *used > kMost - size ? kMost : *used + size;
    }
}

void Lsu::release(std::int64_t size)
{
    for (std::int64_t* used : {&properties.used, &properties.used_phys}) {
        if (size > 0 && *used > 0) *used -= std::min(size, *used);
    }
}

std::map<Serial, Snapshot>::iterator find_snapshot(Lsu& lsu, const std::string& name)
{
    const auto found = std::find_if(lsu.snapshots.begin(), lsu.snapshots.end(),
                                    [&](const auto& entry) { return entry.second.name == name; });
    if (found == lsu.snapshots.end()) {
        throw Fault(kUnknownSnapshot, "the LSU has no snapshot called \"" + printable(name) + "\"");
    }
    return found;
}

bool knows_volume(const Lsu& lsu, const Volume& volume)
{
    return std::any_of(lsu.properties.volumes.begin(), lsu.properties.volumes.end(),
                       [&](const Volume& held) { return means(volume, held); }) ||
           std::any_of(lsu.snapshots.begin(), lsu.snapshots.end(),
                       [&](const auto& entry) { return means(volume, entry.second.volume); });
}

bool knows_volume(const StorageServer& server, const Volume& volume)
{
    return std::any_of(server.lsus.begin(), server.lsus.end(),
                       [&](const Lsu& lsu) { return knows_volume(lsu, volume); });
}

std::string host_of(const std::string& server_name)
{
    return server_name.substr(server_name.find(':') + 1);
}

} // namespace soapwrapper::simulator
