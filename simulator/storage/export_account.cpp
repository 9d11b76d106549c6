#include "simulator/storage/export_account.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/storage/serial.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// A look-up for each name: a client that tells very many would keep everybody else waiting otherwise.
using Names = std::unordered_set<std::string_view>;

std::size_t bytes_of(const std::vector<std::string>& names)
{
    std::size_t bytes = 0;
    for (const std::string& name : names) bytes += sizeof name + name.size();
    return bytes;
}

} // namespace

Export* ExportAccount::find(const Volume& volume)
{
    const auto found = std::find_if(exports_.begin(), exports_.end(),
                                    [&](const Export& each) { return means(volume, each.volume); });
    return found == exports_.end() ? nullptr : &*found;
}

bool ExportAccount::holds(Serial snapshot) const
{
    return std::any_of(exports_.begin(), exports_.end(),
                       [&](const Export& each) { return each.snapshot == snapshot; });
}

const Export& ExportAccount::add(Export made)
{
    if (exports_.size() >= kMost) throw Fault(kTooManyOpen, "the server has no room for another export");
    const std::size_t bytes = bytes_of(made.hosts);
    require_room(bytes);
    exports_.push_back(std::move(made));
    bytes_ += bytes;
    return exports_.back();
}

void ExportAccount::add_hosts(Export& exported, const std::vector<std::string>& hosts)
{
    if (hosts.empty()) {
        bytes_ -= bytes_of(exported.hosts);
        exported.hosts.clear();
    }
    if (exported.hosts.empty()) return;
    Names known(exported.hosts.begin(), exported.hosts.end());
    std::vector<std::string> added;
    for (const std::string& host : hosts) {
        if (known.insert(host).second) added.push_back(host);
    }
    const std::size_t bytes = bytes_of(added);
    require_room(bytes);
    exported.hosts.insert(exported.hosts.end(), added.begin(), added.end());
    bytes_ += bytes;
}

void ExportAccount::remove_hosts(Export& exported, const std::vector<std::string>& hosts)
{
    const Names known(exported.hosts.begin(), exported.hosts.end());
    for (const std::string& host : hosts) {
        if (known.count(host) == 0) {
            throw Fault(kUnknownExport, "the volume isn't exported to one of the hosts");
        }
    }
    const Names named(hosts.begin(), hosts.end());
    bytes_ -= bytes_of(exported.hosts);
    exported.hosts.erase(std::remove_if(exported.hosts.begin(), exported.hosts.end(),
                                        [&](const std::string& host) { return named.count(host) != 0; }),
                         exported.hosts.end());
    bytes_ += bytes_of(exported.hosts);
}

void ExportAccount::erase(const Export& exported)
{
    bytes_ -= bytes_of(exported.hosts);
    exports_.erase(exports_.begin() + (&exported - exports_.data()));
}

void ExportAccount::require_room(std::size_t bytes) const
{
    if (bytes > kMostBytes - bytes_)
        throw Fault(kTooManyOpen, "the exports have no room for the hosts' names");
}

} // namespace soapwrapper::simulator
