#include "simulator/service/change_list_requests.h"

#include "simulator/scenario/change_list.h"
#include "simulator/scenario/content.h"
#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/change_list_delivery.h"
#include "simulator/storage/model.h"
#include "simulator/storage/room_account.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// What an open needs to know of the storage before it goes and reads.
struct Pair {
    std::string session;
    SnapshotView base;
    SnapshotView diff;
};

SnapshotView view_of(Lsu& lsu, const ns1__SnapDefinition* wanted, const char* element)
{
    return view_of(find_snapshot(lsu, required(wanted, element).snapName)->second);
}

Pair pair_of(Storage& storage, const _ns1__openSnapChangeList& request)
{
    const Place place = place_of(storage, request.lsu);
    const Volume source = volume_of(request.sourceVolSpec, "sourceVolSpec");
    Pair pair{place.session, view_of(place.lsu, request.baseSnapshot, "baseSnapshot"),
              view_of(place.lsu, request.diffSnapshot, "diffSnapshot")};
    if (!knows_volume(place.lsu, source)) throw Fault(kUnknownVolume, "the LSU knows no such volume");
    storage.listed_changes.require_room(); // ahead of what takes memory
    return pair;
}

template <class Number>
Number* number(const Call& call, Number* (*factory)(soap*, int), std::int64_t value)
{
    Number* made = call.make(factory);
    *made = static_cast<Number>(value);
    return made;
}

ns1__FileAttr* wire_entry(const Call& call, const ListedChange& change)
{
    const auto wide = [&call](std::int64_t value) { return number(call, soap_new_LONG64, value); };
    const auto narrow = [&call](int value) { return number(call, soap_new_int, value); };
    const FileRecord& record = change.record;
    ns1__FileAttr* entry = call.make(soap_new_ns1__FileAttr);
    entry->name = change.name;
    entry->ftype = narrow(static_cast<int>(record.type));
    entry->changetype = narrow(static_cast<int>(change.kind));
    entry->modtime = wide(record.modified);
    entry->accesstime = wide(record.accessed);
    entry->createtime = wide(record.created);
    entry->changetime = wide(record.changed);
    entry->size = wide(record.size);
    entry->ownerid = narrow(record.owner);
    entry->groupid = narrow(record.group);
    entry->permissions = wide(record.permissions);
    entry->inode = narrow(record.inode);
    entry->gnum = narrow(record.generation);
    return entry;
}

PathFilters filters_of(const _ns1__listFile& request)
{
    std::vector<std::string> paths;
    if (request.filterPathList) paths = request.filterPathList->item;
    if (request.filterPathNum < 0 || static_cast<std::size_t>(request.filterPathNum) != paths.size()) {
        throw Fault(kBadValue, "filterPathNum is not the number of paths in the filterPathList");
    }
    return PathFilters(paths);
}

const char* const kHandle = "fileListHandle";

} // namespace

void handle(Call& call, const _ns1__openSnapChangeList& request, _ns1__openSnapChangeListResponse& response)
{
    const Pair pair = pair_of(*call.model().use(), request);
    ChangeList list(pair.base, pair.diff);

    const Model::Use storage = call.model().use();
    storage->session(pair.session); // it may have ended in the meantime
    RoomAccount::Share room = storage->listed_changes.take(list.size());
    auto delivery =
        std::make_shared<ChangeListDelivery>(std::move(list), storage->change_list_settings, std::move(room));
    response.fileListHandle = wire_handle(call, soap_new_ns1__FileListHandle,
                                          storage->change_lists.open({pair.session, std::move(delivery)}));
}

// The filters count for this call alone: what they keep back is gone. Whatever is wrong with a request is
// found before anything is taken from the list.
void handle(Call& call, const _ns1__listFile& request, _ns1__listFileResponse& response)
{
    const std::string& token = token_of(request.fileListHandle, kHandle);
    const std::shared_ptr<ChangeListDelivery> delivery = call.model().use()->change_lists.at(token).delivery;
    const ChangeListDelivery::Batch batch = delivery->next(filters_of(request));
    response.fileAttrList = call.make(soap_new_ns1__ArrayOfFileAttr);
    for (const ListedChange& entry : batch.entries) {
        response.fileAttrList->item.push_back(wire_entry(call, entry));
    }
    response.numFiles = static_cast<int>(batch.entries.size());
    response.error = batch.busy ? kBusy : 0;
    response.retryInterval = batch.retry_interval;
}

void handle(Call& call, const _ns1__closeSnapChangeList& request, _ns1__closeSnapChangeListResponse&)
{
    call.model().use()->change_lists.close(token_of(request.fileListHandle, kHandle));
}

} // namespace soapwrapper::simulator
