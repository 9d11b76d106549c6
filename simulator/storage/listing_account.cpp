#include "simulator/storage/listing_account.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"

#include <cstddef>
#include <string>

namespace soapwrapper::simulator
{

void ListingAccount::start(const std::string& session, const std::string& volume, int busy)
{
    int& refusals = refusals_[volume];
    if (refusals < busy) {
        ++refusals;
        throw Fault(kBusy, "the filer is busy");
    }
    refusals = 0;
    ++running_[{session, volume}];
}

void ListingAccount::stop(const std::string& session, const std::string& volume)
{
    const auto found = running_.find({session, volume});
    if (found != running_.end() && --found->second == 0) running_.erase(found);
}

void ListingAccount::end(const std::string& session)
{
    const auto first = running_.lower_bound({session, ""});
    auto last = first;
    while (last != running_.end() && last->first.first == session) ++last;
    running_.erase(first, last);
}

std::size_t ListingAccount::count(const std::string& volume) const
{
    std::size_t sum = 0;
    for (const auto& [key, count] : running_) {
        if (key.second == volume) sum += count;
    }
    return sum;
}

} // namespace soapwrapper::simulator
