#include "conversion/snap_definition.h"

#include "conversion/field_text.h"
#include "conversion/supplier_id.h"
#include "conversion/volume.h"
#include "plugin/base/bounded_text.h"
#include "plugin/host/host_records.h"

#include <cstddef>

#include "soapwrapperStub.h"

namespace soapwrapper
{

void set_snap_def_from_soap(sts_snap_def_v11_t& def, const ns1__SnapDefinition* wire)
{
    if (!wire) return;
    set_text(def.snapName, wire->snapName);
    def.snapType = wire->snapType;
    def.snapFlags = wire->snapFlags;
    def.snapSaveas = wire->snapSaveas;
}

void set_snap_info_from_soap(sts_snap_info_v11_t& info, const ns1__SnapInformation* wire)
{
    if (!wire) return;
    set_snap_def_from_soap(info.snapDef, wire->snapDef);
    // Through the record's own bytes, because the bound is wider than the field; the order matters, because
    // the LSU's name then covers what ran over.
    char* record = reinterpret_cast<char*>(&info);
    V_strlcpy(record + offsetof(sts_snap_info_v11_t, snapServer), wire->snapServer.c_str(),
              sizeof info.snapLsu);
    set_text(info.snapLsu, wire->snapLsu);
    set_volume_spec_from_soap(info.snapVolSpec, wire->snapVolSpec);
    info.snapStatus = wire->snapStatus;
    info.snapSize = wire->snapSize;
}

void set_snap_def_from_sts(ns1__SnapDefinition& wire, const sts_snap_def_v11_t* def)
{
    ns1__IndependentSupplierId* isid = new_supplier_id(def->isid);
    wire.snapName = text_of(def->snapName);
    wire.snapType = def->snapType;
    wire.snapFlags = def->snapFlags;
    wire.snapSaveas = def->snapSaveas;
    wire.isid = isid;
}

void cleanup_snap_def(ns1__SnapDefinition& wire)
{
    delete_supplier_id(wire.isid);
}

} // namespace soapwrapper
