// What LSUs there are, and what the service says of one.
#include "conversion/field_text.h"
#include "conversion/lsu_definition.h"
#include "conversion/lsu_pair.h"
#include "conversion/wire_objects.h"
#include "operations/list_handle.h"
#include "operations/reference_checks.h"
#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/host/entry_points.h"
#include "service/service_call.h"
#include "service/wire_session.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

using namespace soapwrapper;

namespace
{

// The filter of an open. The version and the replication counts of a newer record are not taken.
class WireLsuFilter
{
  public:
    template <class Definition>
    explicit WireLsuFilter(const Definition& def)
        : name_(text_of(def.name)), description_(text_of(def.description)), config_(text_of(def.config)),
          label_(text_of(def.label))
    {
        wire_.name = &name_;
        wire_.alloc = def.alloc;
        wire_.storage = def.storage;
        wire_.description = &description_;
        wire_.config = &config_;
        wire_.flags = def.flags;
        wire_.saveas = def.saveas;
        wire_.maxTransfer = def.maxTransfer;
        wire_.blockSize = def.blockSize;
        wire_.allocSize = def.allocSize;
        wire_.label = &label_;
    }
    WireLsuFilter(const WireLsuFilter&) = delete;
    WireLsuFilter& operator=(const WireLsuFilter&) = delete;

    ns1__LSUDefinition* get() { return &wire_; }

  private:
    std::string name_;
    std::string description_;
    std::string config_;
    std::string label_;
    ns1__LSUDefinition wire_;
};

template <class Definition>
int open_lsu_list(const char* entry, stsp_server_t* server, const Definition* filter, stsp_list_t** list)
{
    if (!server || !list) return STS_ENULLARG;
    if (!server->service_handle) return STS_ENOSERVICEHANDLE;
    const EntryLog log(server->session, entry);
    log.enter();
    ServiceCall call(*server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireServerHandle server_handle(server->service_handle);
    std::optional<WireLsuFilter> wire_filter;
    if (filter) wire_filter.emplace(*filter);
    _ns1__openLSUList request;
    request.serverHandle = server_handle.get();
    request.lsudef = wire_filter ? wire_filter->get() : nullptr;
    _ns1__openLSUListResponse response;
    if (const Failure failure = call.send(&Service::openLSUList, request, response)) return *failure;
    return hand_out_list(response.lsuListHandle, "lsuListHandle", server, list, log);
}

void set_def(sts_lsu_def_v9_t& def, const ns1__LSUDefinition* wire)
{
    set_lsu_def_from_soap_v10(def, wire);
}

void set_def(sts_lsu_def_v11_t& def, const ns1__LSUDefinition* wire)
{
    set_lsu_def_from_soap_v11(def, wire);
}

template <class Information>
int get_lsu_prop(const char* entry, const stsp_lsu_v7_t* lsu, Information* info)
{
    if (!lsu || !info) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, entry);
    log.enter();
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    _ns1__getLSUPropByName request;
    request.lsu = wire_lsu.get();
    _ns1__getLSUPropByNameResponse response;
    if (const Failure failure = call.send(&Service::getLSUPropByName, request, response)) return *failure;
    if (!response.info) return log.reply_lacks("info");
    // Of the newer record `version` stays 0, whatever came: not the conversion that events use.
    const ns1__LSUInformation& wire = *response.info;
    std::memset(info, 0, sizeof *info);
    set_text(info->server, wire.server);
    set_def(info->def, wire.def);
    info->capacity = wire.capacity;
    info->capacityPhys = wire.capacityPhys;
    info->used = wire.used;
    info->usedPhys = wire.usedPhys;
    info->images = wire.images;
    return log.ok();
}

// Fills the host's array if the service returned exactly as many partners as there is room for; a list that
// is absent counts as an empty one.
bool take_partners(sts_lsu_spec_v11_t* specs, std::uint32_t count, const ns1__ArrayOfLSUSpecification* wire)
{
    if ((wire ? wire->item.size() : 0) != count) return false;
    set_lsu_spec_array_from_soap(specs, wire);
    return true;
}

} // namespace

extern "C" int stspi_open_lsu_list_v10(stsp_server_t* server, const sts_lsu_def_v9_t* filter,
                                       stsp_list_t** list)
{
    return open_lsu_list("stspi_open_lsu_list_v10", server, filter, list);
}

extern "C" int stspi_open_lsu_list_v11(stsp_server_t* server, const sts_lsu_def_v11_t* filter,
                                       stsp_list_t** list)
{
    return open_lsu_list("stspi_open_lsu_list_v11", server, filter, list);
}

extern "C" int stspi_list_lsu(stsp_list_t* list, char* name)
{
    const EntryLog log(session_of(list), "stspi_list_lsu");
    log.enter();
    if (!list) return STS_ENULLARG;
    ServiceCall call(*list->server, log);
    if (const Failure failure = call.secure()) return *failure;
    if (!list->token) return STS_EBADARG;

    WireToken<ns1__LSUListHandle> list_handle(list->token);
    _ns1__listLSU request;
    request.lsuListHandle = list_handle.get();
    _ns1__listLSUResponse response;
    if (const Failure failure = call.send(&Service::listLSU, request, response)) return *failure;
    if (name) {
        V_strlcpy(name, response.lsu.c_str(), STS_LSU_NAME_SIZE);
    } else {
        log.anomaly("no place for the name");
    }
    return log.ok();
}

extern "C" int stspi_close_lsu_list(stsp_list_t* list)
{
    const EntryLog log(session_of(list), "stspi_close_lsu_list");
    log.enter();
    if (!list) return STS_ENULLARG;
    ServiceCall call(*list->server, log);
    if (const Failure failure = call.secure()) return *failure;
    if (!list->token) return STS_EBADARG;

    WireToken<ns1__LSUListHandle> list_handle(list->token);
    _ns1__closeLSUList request;
    request.lsuListHandle = list_handle.get();
    _ns1__closeLSUListResponse response;
    if (const Failure failure = call.send(&Service::closeLSUList, request, response)) return *failure;
    destroy_list(list);
    return log.ok();
}

extern "C" int stspi_get_lsu_prop_byname_v10(const stsp_lsu_v7_t* lsu, sts_lsu_info_v9_t* info)
{
    return get_lsu_prop("stspi_get_lsu_prop_byname_v10", lsu, info);
}

extern "C" int stspi_get_lsu_prop_byname_v11(const stsp_lsu_v7_t* lsu, sts_lsu_info_v11_t* info)
{
    return get_lsu_prop("stspi_get_lsu_prop_byname_v11", lsu, info);
}

extern "C" int stspi_get_lsu_replication_prop(const stsp_lsu_v7_t* lsu, uint32_t nsource,
                                              sts_lsu_spec_v11_t* sources, uint32_t ntarget,
                                              sts_lsu_spec_v11_t* targets)
{
    if (!lsu) return STS_ENULLARG;
    if (const int status = check_server(lsu->server)) return status;
    const EntryLog log(lsu->server->session, "stspi_get_lsu_replication_prop");
    log.enter();
    if (nsource != 0 && !sources) {
        log.failure("Number of sources is greater than 0 but source array is null");
        return STS_EBADARG;
    }
    if (ntarget != 0 && !targets) {
        log.failure("Number of targets is greater than 0 but target array is null");
        return STS_EBADARG;
    }
    ServiceCall call(*lsu->server, log);
    if (const Failure failure = call.secure()) return *failure;

    WireLsu wire_lsu(*lsu);
    _ns1__getLSUReplicationProp request;
    request.lsu = wire_lsu.get();
    request.nsource = static_cast<int>(nsource);
    request.ntarget = static_cast<int>(ntarget);
    _ns1__getLSUReplicationPropResponse response;
    if (const Failure failure = call.send(&Service::getLSUReplicationProp, request, response)) {
        return *failure;
    }
    if (!response.props) return log.reply_lacks("props");
    if (!take_partners(sources, nsource, response.props->source)) {
        log.failure("Number of sources returned does not match number requested");
        return STS_EBADARG;
    }
    if (!take_partners(targets, ntarget, response.props->target)) {
        log.failure("Number of targets returned does not match number requested");
        return STS_EBADARG;
    }
    return log.ok();
}
