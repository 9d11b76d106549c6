#include "changelist/open_lists.h"

#include "changelist/session_registry.h"
#include "plugin/base/plugin_globals.h"
#include "plugin/base/wipe.h"

#include <string>
#include <utility>

namespace soapwrapper
{
namespace
{

using Node = decltype(snapdiff_info_per_session)::node_type;

void wipe_secrets(Node& node)
{
    if (node.empty()) return;
    wipe(node.key());
    wipe(node.mapped().diff_export_filer);
}

} // namespace

void register_list(const char* token, snapdiff_session_info&& info)
{
    std::string key(token);
    const WipeAtEnd wiped(key);
    const MutexLock lock(snapdiff_session_map_mutex);
    snapdiff_info_per_session.try_emplace(std::move(key), std::move(info));
}

void unregister_list(const char* token)
{
    std::string key(token);
    const WipeAtEnd wiped(key);
    Node node;
    {
        const MutexLock lock(snapdiff_session_map_mutex);
        const auto found = snapdiff_info_per_session.find(key);
        if (found == snapdiff_info_per_session.end()) return;
        Listing* listing = Listing::find(found->second);
        (listing ? listing->closed_ : node) = snapdiff_info_per_session.extract(found);
    }
    wipe_secrets(node);
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
    std::string key(token);
    const WipeAtEnd wiped(key);
    const MutexLock lock(snapdiff_session_map_mutex);
    snapdiff_session_info& info = snapdiff_info_per_session.try_emplace(std::move(key)).first->second;
    if (find(info)) return;
    info_ = &info;
    next_ = std::exchange(first, this);
}

Listing::~Listing()
{
    if (!info_) return;
    {
        const MutexLock lock(snapdiff_session_map_mutex);
        Listing** link = &first;
        while (*link != this) link = &(*link)->next_;
        *link = next_;
    }
    wipe_secrets(closed_);
}

} // namespace soapwrapper
