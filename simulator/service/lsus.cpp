#include "simulator/service/lsus.h"

#include "simulator/scenario/fault.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/records.h"
#include "simulator/service/call.h"
#include "simulator/service/wire.h"
#include "simulator/storage/announcements.h"
#include "simulator/storage/model.h"
#include "simulator/storage/storage.h"
#include "simulator/storage/storage_server.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace soapwrapper::simulator
{
namespace
{

constexpr int kRecordVersion = 11;
// A host's record has no room for more.
constexpr std::size_t kLongestLabel = 63;

bool asks_for(const std::string* filter, const std::string& value)
{
    return !filter || filter->empty() || *filter == value;
}

ns1__LSUDefinition* wire_definition(const Call& call, const LsuProperties& lsu)
{
    ns1__LSUDefinition* definition = call.make(soap_new_ns1__LSUDefinition);
    definition->version = kRecordVersion;
    definition->name = call.text(lsu.name);
    definition->alloc = lsu.alloc;
    definition->storage = lsu.storage;
    definition->description = call.text(lsu.description);
    definition->config = call.text(lsu.config);
    definition->flags = lsu.flags;
    definition->saveas = lsu.saveas;
    definition->maxTransfer = lsu.max_transfer;
    definition->blockSize = lsu.block_size;
    definition->allocSize = lsu.alloc_size;
    definition->label = call.text(lsu.label);
    definition->repSources = static_cast<int>(lsu.sources.size());
    definition->repTargets = static_cast<int>(lsu.targets.size());
    return definition;
}

ns1__ArrayOfLSUSpecification* wire_partners(const Call& call, const std::vector<ReplicationPartner>& partners,
                                            const std::string& server_name)
{
    ns1__ArrayOfLSUSpecification* array = call.make(soap_new_ns1__ArrayOfLSUSpecification);
    for (const ReplicationPartner& partner : partners) {
        ns1__LSUSpecification* item = call.make(soap_new_ns1__LSUSpecification);
        const bool is_whole = partner.server.find(':') != std::string::npos;
        item->server = is_whole ? partner.server : partner.server + ":" + host_of(server_name);
        item->lsu = partner.lsu;
        array->item.push_back(item);
    }
    return array;
}

} // namespace

ns1__LSUInformation* wire_lsu(const Call& call, const LsuProperties& lsu, std::size_t images,
                              const std::string& server_name)
{
    ns1__LSUInformation* info = call.make(soap_new_ns1__LSUInformation);
    info->version = kRecordVersion;
    info->server = server_name;
    info->def = wire_definition(call, lsu);
    info->capacity = lsu.capacity;
    info->capacityPhys = lsu.capacity_phys;
    info->used = lsu.used;
    info->usedPhys = lsu.used_phys;
    info->images = static_cast<LONG64>(images);
    return info;
}

void handle(Call& call, const _ns1__openLSUList& request, _ns1__openLSUListResponse& response)
{
    const Model::Use storage = call.model().use();
    const std::string& token = token_of(request.serverHandle);
    Cursor cursor{token, storage->session(token).server, {}, 0};
    const std::vector<Lsu>& lsus = storage->server(cursor.server).lsus;
    const ns1__LSUDefinition* filter = request.lsudef;
    for (std::size_t i = 0; i < lsus.size(); ++i) {
        const LsuProperties& lsu = lsus[i].properties;
        const bool fits = !filter || (asks_for(filter->name, lsu.name) && asks_for(filter->label, lsu.label));
        if (fits) cursor.entries.push_back({i, 0});
    }
    response.lsuListHandle =
        wire_handle(call, soap_new_ns1__LSUListHandle, storage->lsu_lists.open(std::move(cursor)));
}

void handle(Call& call, const _ns1__listLSU& request, _ns1__listLSUResponse& response)
{
    const Model::Use storage = call.model().use();
    response.lsu = storage->next_lsu(token_of(request.lsuListHandle, "lsuListHandle"));
}

void handle(Call& call, const _ns1__closeLSUList& request, _ns1__closeLSUListResponse&)
{
    const Model::Use storage = call.model().use();
    storage->lsu_lists.close(token_of(request.lsuListHandle, "lsuListHandle"));
}

void handle(Call& call, const _ns1__getLSUPropByName& request, _ns1__getLSUPropByNameResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    response.info = wire_lsu(call, place.lsu.properties, place.lsu.images.size(), place.server_name);
}

// All partners that there are: a client that asks for another number sees by the answer that it is wrong.
void handle(Call& call, const _ns1__getLSUReplicationProp& request,
            _ns1__getLSUReplicationPropResponse& response)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    ns1__LSUReplicationProps* props = call.make(soap_new_ns1__LSUReplicationProps);
    props->source = wire_partners(call, place.lsu.properties.sources, place.server_name);
    props->target = wire_partners(call, place.lsu.properties.targets, place.server_name);
    response.props = props;
}

void handle(Call& call, const _ns1__labelLSU& request, _ns1__labelLSUResponse&)
{
    const Model::Use storage = call.model().use();
    const Place place = place_of(*storage, request.lsu);
    if (request.lsuLabel.size() > kLongestLabel) {
        throw Fault(kBadValue, "a label has at most " + std::to_string(kLongestLabel) + " characters");
    }
    place.lsu.properties.label = request.lsuLabel;
    announce_label(place.server, place.lsu);
}

} // namespace soapwrapper::simulator
