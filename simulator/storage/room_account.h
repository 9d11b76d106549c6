// How much of one kind is kept for clients.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_ROOM_ACCOUNT_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_ROOM_ACCOUNT_H

#include <atomic>
#include <cstddef>
#include <memory>

namespace soapwrapper::simulator
{

// Taking is not guarded. Any thread may give back, at any time.
class RoomAccount
{
  public:
    // `what` is what the room is for, as a fault tells it.
    RoomAccount(std::size_t most, const char* what) : most_(most), what_(what) {}

    // Is given back as the last copy of it ends.
    using Share = std::shared_ptr<const void>;

    // The fault that there is no room for anything.
    void require_room() const;
    // Room for so many, or the fault that there is none. Alone, something may be larger than all the room: it
    // is as large as the storage, which nobody but the user makes so large.
    Share take(std::size_t count);

  private:
    [[noreturn]] void refuse() const;

    const std::size_t most_;
    const char* const what_;
    std::shared_ptr<std::atomic<std::size_t>> taken_ = std::make_shared<std::atomic<std::size_t>>(0);
};

} // namespace soapwrapper::simulator

#endif
