// What the rewriting of paths needs to know, gathered before a change list is opened.
#ifndef SOAPWRAPPER_CHANGELIST_TRANSFORMATION_MAPPING_H
#define SOAPWRAPPER_CHANGELIST_TRANSFORMATION_MAPPING_H

#include "changelist/session_registry.h"
#include "plugin/host/host_records.h"

namespace soapwrapper
{

// Reads the diff snapshot's supplier text and both snapshots' exports, which must be NDMP volumes. `base` may
// be null. On false the failure has been logged, and `info` is as it came in.
bool get_transformation_mapping(const stsp_lsu_v7_t* lsu, const sts_snap_def_v11_t* base,
                                const sts_snap_def_v11_t* diff, const sts_session_def_v7_t* session,
                                snapdiff_session_info& info);

} // namespace soapwrapper

#endif
