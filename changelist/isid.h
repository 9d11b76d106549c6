// The directions that a snapshot's supplier text carries for listing its changes.
#ifndef SOAPWRAPPER_CHANGELIST_ISID_H
#define SOAPWRAPPER_CHANGELIST_ISID_H

#include "changelist/session_registry.h"
#include "plugin/host/host_records.h"

#include <string>

namespace soapwrapper
{

// Reads every "mount=PATH|SHARE" and the first "use_zapi=NUMBER" of a comma-separated text, wherever they
// stand in it. Mounts are appended; use_zapi is -1 if the text doesn't name it. Every text is accepted: the
// result is always true.
bool parse_isid(const std::string& text, isid_contents* contents, const sts_session_def_v7_t* session);

} // namespace soapwrapper

#endif
