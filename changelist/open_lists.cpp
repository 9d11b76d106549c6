#include "changelist/open_lists.h"

#include "plugin/plugin_globals.h"

#include <utility>

namespace soapwrapper
{

void register_list(const char* token, snapdiff_session_info&& info)
{
    const MutexLock lock(snapdiff_session_map_mutex);
    snapdiff_info_per_session.try_emplace(token, std::move(info));
}

void unregister_list(const char* token)
{
    decltype(snapdiff_info_per_session)::node_type node; // dies outside the lock
    {
        const MutexLock lock(snapdiff_session_map_mutex);
        const auto found = snapdiff_info_per_session.find(token);
        if (found == snapdiff_info_per_session.end()) return;
        Listing* listing = Listing::find(found->second);
        (listing ? listing->closed_ : node) = snapdiff_info_per_session.extract(found);
    }
}

Listing* Listing::first = nullptr;

Listing* Listing::find(const snapdiff_session_info& info)
{
    Listing* listing = first;
    while (listing && listing->info_ != &info) listing = listing->next_;
    return listing;
}

Listing::Listing(const char* token)
{
    const MutexLock lock(snapdiff_session_map_mutex);
    snapdiff_session_info& info = snapdiff_info_per_session.try_emplace(token).first->second;
    if (find(info)) return;
    info_ = &info;
    next_ = std::exchange(first, this);
}

Listing::~Listing()
{
    if (!info_) return;
    const MutexLock lock(snapdiff_session_map_mutex);
    Listing** link = &first;
    while (*link != this) link = &(*link)->next_;
    *link = next_;
}

} // namespace soapwrapper
