#include "conversion/lsu_pair.h"

#include "conversion/field_text.h"
#include "plugin/host/host_records.h"

#include "soapwrapperStub.h"

namespace soapwrapper
{

void set_lsu_spec_from_soap(sts_lsu_spec_v11_t& spec, const ns1__LSUSpecification* wire)
{
    if (!wire) return;
    set_text(spec.server, wire->server);
    set_text(spec.lsu, wire->lsu);
}

void set_lsu_spec_array_from_soap(sts_lsu_spec_v11_t* specs, const ns1__ArrayOfLSUSpecification* wire)
{
    if (!wire) return;
    for (const ns1__LSUSpecification* item : wire->item) set_lsu_spec_from_soap(*specs++, item);
}

void set_lsu_spec_array_from_sts(ns1__ArrayOfLSUSpecification& wire, const sts_lsu_spec_v11_t* specs,
                                 unsigned int count)
{
    for (unsigned int i = 0; i < count; ++i) {
        auto* item = new ns1__LSUSpecification();
        item->server = text_of(specs[i].server);
        item->lsu = text_of(specs[i].lsu);
        wire.item.push_back(item);
    }
}

void cleanup_lsu_spec_array(ns1__ArrayOfLSUSpecification& wire)
{
    for (const ns1__LSUSpecification* item : wire.item) delete item;
    wire.item.clear();
}

} // namespace soapwrapper
