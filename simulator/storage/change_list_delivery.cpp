#include "simulator/storage/change_list_delivery.h"

#include "simulator/scenario/change_list.h"
#include "simulator/scenario/scenario.h"
#include "simulator/storage/room_account.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <utility>

namespace soapwrapper::simulator
{

ChangeListDelivery::ChangeListDelivery(ChangeList list, const ChangeListSettings& settings,
                                       RoomAccount::Share room)
    : room_(std::move(room)), size_(list.size()), list_(std::move(list)), settings_(settings),
      busy_left_(settings.busy)
{
}

ChangeListDelivery::Batch ChangeListDelivery::next(const PathFilters& filters)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    Batch batch;
    if (busy_left_ > 0) {
        --busy_left_;
        batch.busy = true;
        batch.retry_interval = settings_.retry_interval;
        return batch;
    }
    while (batch.entries.size() < static_cast<std::size_t>(settings_.batch)) {
        std::optional<ListedChange> entry = list_.next(filters);
        if (!entry) break;
        batch.entries.push_back(std::move(*entry));
    }
    read_ = list_.position();
    if (!list_.at_end()) batch.retry_interval = settings_.pace;
    return batch;
}

} // namespace soapwrapper::simulator
