// A change list on its way to a client.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_CHANGE_LIST_DELIVERY_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_CHANGE_LIST_DELIVERY_H

#include "simulator/scenario/change_list.h"
#include "simulator/scenario/scenario.h"
#include "simulator/storage/room_account.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <vector>

namespace soapwrapper::simulator
{

// Any thread may call.
class ChangeListDelivery
{
  public:
    // `room` is what the list takes, for as long as this lives.
    ChangeListDelivery(ChangeList list, const ChangeListSettings& settings, RoomAccount::Share room);

    struct Batch {
        std::vector<ListedChange> entries; // none: the end, unless busy
        bool busy = false;
        int retry_interval = 0;
    };
    Batch next(const PathFilters& filters);

    // Of all, how many were read or passed over. These never wait, however long a next() takes.
    std::size_t size() const { return size_; }
    std::size_t read() const { return read_; }

  private:
    const RoomAccount::Share room_;
    const std::size_t size_;
    std::atomic<std::size_t> read_{0};
    std::mutex mutex_;
    ChangeList list_;
    const ChangeListSettings settings_;
    int busy_left_;
};

} // namespace soapwrapper::simulator

#endif
