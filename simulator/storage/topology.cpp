#include "simulator/storage/topology.h"

#include "simulator/scenario/operation_settings.h"
#include "simulator/scenario/records.h"
#include "simulator/storage/holdings.h"
#include "simulator/storage/long_operations.h"
#include "simulator/storage/model.h"
#include "simulator/storage/start_requests.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

// A host's record has no room for more.
constexpr std::size_t kLongestText = 4095;

struct Topology {
    Target source;
    std::vector<Target> targets;
    std::string text; // the client's, or made up
};

// "SERVER/LSU>SERVER/LSU", a pair for each target, with semicolons between them.
std::string text_of(const Target& source, const std::vector<Target>& targets)
{
    std::string text;
    for (const Target& target : targets) {
        text += text.empty() ? "" : ";";
        text += source.server_name + "/" + source.lsu_name + ">" + target.server_name + "/" + target.lsu_name;
    }
    return text;
}

Topology topology_of(Storage& storage, const VolumeStart& start)
{
    const Session& session = storage.session(start.session);
    Topology topology;
    topology.source = target_at(storage, session, position_of(storage, session.server, start.volume));
    topology.targets = find_targets(storage, session, start.targets);
    topology.text = start.topology.empty() ? text_of(topology.source, topology.targets) : start.topology;
    bounded(topology.text, kLongestText, "topology");
    return topology;
}

// A partner is kept without its host, so that each client is told it as it reaches the machine.
void add_partner(std::vector<ReplicationPartner>& partners, const Storage& storage, const Target& partner)
{
    const std::string& prefix = storage.server(partner.position.server).scenario.prefix;
    const auto is_it = [&](const ReplicationPartner& each) {
        return each.server.substr(0, each.server.find(':')) == prefix && each.lsu == partner.lsu_name;
    };
    if (std::none_of(partners.begin(), partners.end(), is_it)) partners.push_back({prefix, partner.lsu_name});
}

LongOperation operation_of(OperationKind kind, const Topology& topology)
{
    LongOperation operation;
    operation.kind = kind;
    operation.server = topology.source.position.server;
    return operation;
}

OperationResult result_of(const Topology& topology)
{
    OperationResult result;
    result.topology = topology.text;
    return result;
}

} // namespace

LongOperation validate_operation(Model& model, const VolumeStart& start)
{
    const Topology topology = topology_of(*model.use(), start);
    LongOperation operation = operation_of(OperationKind::kValidate, topology);
    operation.effect = [topology](Storage&) { return result_of(topology); };
    return operation;
}

// The source replicates to its targets from then on.
LongOperation provision_operation(Model& model, const VolumeStart& start)
{
    const Topology topology = topology_of(*model.use(), start);
    LongOperation operation = operation_of(OperationKind::kProvision, topology);
    operation.effect = [topology](Storage& storage) {
        Lsu& source = lsu_at(storage, topology.source.position);
        for (const Target& target : topology.targets) {
            add_partner(source.properties.targets, storage, target);
            add_partner(lsu_at(storage, target.position).properties.sources, storage, topology.source);
        }
        return result_of(topology);
    };
    return operation;
}

} // namespace soapwrapper::simulator
