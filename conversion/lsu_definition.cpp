#include "conversion/lsu_definition.h"

#include "conversion/field_text.h"
#include "plugin/base/bounded_text.h"
#include "plugin/host/host_records.h"

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

// The fields between the name and the block sizes, the same in both forms of the record.
template <class Definition>
void set_common_fields(Definition& def, const ns1__LSUDefinition& wire)
{
    set_text(def.name, wire.name);
    def.alloc = wire.alloc;
    def.storage = wire.storage;
    set_text(def.description, wire.description);
    set_text(def.config, wire.config);
    def.flags = wire.flags;
    def.saveas = wire.saveas;
    def.maxTransfer = wire.maxTransfer;
    def.blockSize = wire.blockSize;
    def.allocSize = wire.allocSize;
}

} // namespace

void set_lsu_def_from_soap_v10(sts_lsu_def_v9_t& def, const ns1__LSUDefinition* wire)
{
    if (!wire) return;
    set_common_fields(def, *wire);
    set_text(def.label, wire->label);
}

void set_lsu_def_from_soap_v11(sts_lsu_def_v11_t& def, const ns1__LSUDefinition* wire)
{
    if (!wire) return;
    set_common_fields(def, *wire);
    V_strlcpy(def.label, wire->label ? wire->label->c_str() : "", sizeof def.label);
    def.repSources = wire->repSources;
    def.repTargets = wire->repTargets;
}

void set_lsu_info_from_soap(sts_lsu_info_v11_t& info, const ns1__LSUInformation* wire)
{
    if (!wire) return;
    info.version = wire->version;
    set_text(info.server, wire->server);
    set_lsu_def_from_soap_v11(info.def, wire->def);
    info.capacity = wire->capacity;
    info.capacityPhys = wire->capacityPhys;
    info.used = wire->used;
    info.usedPhys = wire->usedPhys;
    info.images = wire->images;
}

} // namespace soapwrapper
