#include "simulator/storage/open_table.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

void require_room_to_open(std::size_t used)
{
    // A client that forgets to close its lists is told before the memory is gone.
    constexpr std::size_t kMaxOpen = 10000;
    if (used >= kMaxOpen) throw Fault(kTooManyOpen, "too many are open");
}

void refuse_handle(const char* what)
{
    throw Fault(kBadHandle, std::string("the ") + what + " handle was never issued or is closed");
}

} // namespace soapwrapper::simulator
