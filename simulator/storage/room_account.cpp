#include "simulator/storage/room_account.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

void RoomAccount::refuse() const
{
    throw Fault(kTooManyOpen, std::string("there is no room for more ") + what_);
}

void RoomAccount::require_room() const
{
    if (*taken_ >= most_) refuse();
}

RoomAccount::Share RoomAccount::take(std::size_t count)
{
    const std::size_t taken = *taken_;
    if (taken != 0 && (taken >= most_ || count > most_ - taken)) refuse();
    // Should there be no memory for the share, it is given back at once.
    *taken_ += count;
    return Share(taken_.get(), [account = taken_, count](const void*) { *account -= count; });
}

} // namespace soapwrapper::simulator
