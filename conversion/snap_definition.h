// Snapshots. To the service goes the whole definition; back comes all but the supplier id. A field whose
// element is nil stays as it stood.
#ifndef SOAPWRAPPER_CONVERSION_SNAP_DEFINITION_H
#define SOAPWRAPPER_CONVERSION_SNAP_DEFINITION_H

#include "plugin/host/host_records.h"

class ns1__SnapDefinition;
class ns1__SnapInformation;

namespace soapwrapper
{

void set_snap_def_from_soap(sts_snap_def_v11_t& def, const ns1__SnapDefinition* wire);

// The server's name has the bound of the LSU's and may run on into the field behind it, which is written
// next.
void set_snap_info_from_soap(sts_snap_info_v11_t& info, const ns1__SnapInformation* wire);

// The supplier id becomes objects from operator new; `def` must outlive them, because the supplier's text is
// not copied. cleanup_snap_def deletes them.
void set_snap_def_from_sts(ns1__SnapDefinition& wire, const sts_snap_def_v11_t* def);
void cleanup_snap_def(ns1__SnapDefinition& wire);

} // namespace soapwrapper

#endif
