// What becomes an event when something happens to a server, told by whoever changed it, once it is changed.
// Not guarded.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_ANNOUNCEMENTS_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_ANNOUNCEMENTS_H

#include "simulator/scenario/records.h"
#include "simulator/storage/event_records.h"
#include "simulator/storage/export_account.h"
#include "simulator/storage/storage_server.h"

#include <cstdint>

namespace soapwrapper::simulator
{

void announce_start(StorageServer& server);

// After a session has been opened or closed: only the last one that there is room for makes a difference.
void announce_session_opened(StorageServer& server);
void announce_session_closed(StorageServer& server);

void announce_label(StorageServer& server, const Lsu& lsu);
void announce_rollback(StorageServer& server, const Lsu& lsu);
// Says so if the LSU had room with the bytes that were used `before`, and has none now.
void announce_growth(StorageServer& server, const Lsu& lsu, std::int64_t before);

void announce_image_deleted(StorageServer& server, const Lsu& lsu, const Image& image);

// To the copy's server.
void announce_image_copied(StorageServer& server, const Lsu& lsu, const Image& image,
                           const StorageServer& origin_server, const Lsu& origin_lsu, const Image& origin);

void announce_snapshot_created(StorageServer& server, const Lsu& lsu, const Snapshot& snapshot,
                               std::int64_t date);
void announce_snapshot_deleted(StorageServer& server, const Lsu& lsu, const Snapshot& snapshot,
                               std::int64_t date);

void announce_export(StorageServer& server, const Export& exported, std::int64_t date);
void announce_export_ended(StorageServer& server, const Export& exported, std::int64_t date);

void announce_operation(StorageServer& server, const OperationEnded& ended);

} // namespace soapwrapper::simulator

#endif
