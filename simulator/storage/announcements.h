// What becomes an event when something happens to the storage. All with the model's lock held, by whoever
// changed the storage, once it is changed.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_ANNOUNCEMENTS_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_ANNOUNCEMENTS_H

#include "simulator/scenario/records.h"
#include "simulator/storage/storage.h"

#include <cstdint>
#include <string>

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

void announce_snapshot_created(const Storage& storage, StorageServer& server, const Lsu& lsu,
                               const Snapshot& snapshot);
void announce_snapshot_deleted(const Storage& storage, StorageServer& server, const Lsu& lsu,
                               const Snapshot& snapshot);

void announce_export(const Storage& storage, StorageServer& server, const Export& exported);
void announce_export_ended(const Storage& storage, StorageServer& server, const Export& exported);

// `error` is 0 if all went well.
void announce_operation(StorageServer& server, const std::string& name, std::int64_t bytes_transferred,
                        int error);

} // namespace soapwrapper::simulator

#endif
