#include "simulator/storage/start_requests.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/storage.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// A host's record has no room for more.
static constexpr std::size_t kLongestServerName = 511;
const std::string& bounded(const std::string& text, std::size_t longest, const char* element)
{
    if (text.size() > longest) {
        throw Fault(kBadValue,
                    "the " + std::string(element) + " has more than " + std::to_string(longest) + " bytes");
    }
    return text;
}

Target target_at(const Storage& storage, const Session& session, LsuPosition position)
{
    return {position, bounded(session.name, kLongestServerName, "name of the server"),
            storage.server(position.server).lsus[position.lsu].properties.name};
}

std::vector<Target> find_targets(const Storage& storage, const Session& session,
                                 const std::vector<NamedLsu>& targets)
{
    std::vector<Target> found;
    for (const NamedLsu& named : targets) {
        const std::string& name = bounded(named.server.empty() ? session.name : named.server,
                                          kLongestServerName, "name of a target's server");
        const std::size_t server = storage.server_index(name);
        const LsuPosition position{server, storage.lsu_index(server, named.lsu)};
        for (const Target& other : found) {
            if (other.position == position) throw Fault(kBadValue, "a target is named twice");
        }
        found.push_back({position, name, named.lsu});
    }
    return found;
}

} // namespace soapwrapper::simulator
