// How snapshots and images come and go, by whatever road.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_HOLDINGS_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_HOLDINGS_H

#include "simulator/scenario/records.h"
#include "simulator/storage/serial.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

// An LSU by where it stands, which stays good without a session.
struct LsuPosition {
    std::size_t server = 0;
    std::size_t lsu = 0;

    bool operator==(const LsuPosition& other) const { return server == other.server && lsu == other.lsu; }
};

inline Lsu& lsu_at(Storage& storage, LsuPosition position)
{
    return storage.server(position.server).lsus[position.lsu];
}

// The LSU of the server that holds the volume or else has a snapshot of it, or the fault that there is none.
LsuPosition position_of(const Storage& storage, std::size_t server, const Volume& volume);

// The volume as the LSU has it, with the text that a client may leave out.
const Volume& held_volume(const Lsu& lsu, const Volume& volume);

// The fault that tells why the LSU can't take a snapshot of the name, if it can't.
void require_place_for(const Lsu& lsu, const std::string& snapshot_name);

// The one place where each of them happens, with the bytes that the LSU has in use and with the event.
void add_snapshot(Storage& storage, LsuPosition position, Snapshot snapshot);
void delete_snapshot(Storage& storage, LsuPosition position, Serial snapshot);
Serial add_image(Storage& storage, LsuPosition position, Image image);
void delete_image(Storage& storage, LsuPosition position, Serial image);

} // namespace soapwrapper::simulator

#endif
