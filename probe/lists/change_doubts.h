// What is odd about the change list that was asked for, as far as the properties of its snapshots tell.
#ifndef SOAPWRAPPER_PROBE_LISTS_CHANGE_DOUBTS_H
#define SOAPWRAPPER_PROBE_LISTS_CHANGE_DOUBTS_H

#include "plugin/host/host_records.h"
#include "probe/lists/change_route.h"
#include "probe/output/problem.h"

#include <string>
#include <vector>

namespace soapwrapper::probe
{

struct NamedSnapshot {
    std::string name;
    const sts_snap_info_v11_t* info;
};

struct ChangeQuestion {
    std::vector<NamedSnapshot> snapshots; // the base, if there is one, and the other
    RouteWishes wishes;
    std::vector<std::string> filters;
    Route route;
    bool has_manager; // of plug-ins
};

// What doesn't stop the list, but makes another one of it than was meant.
std::vector<std::string> warnings_about(const ChangeQuestion& question);

// A failure to open the list, with the cause that is at hand. One that happened on the way to the service has
// a cause of its own.
Problem with_cause(const Problem& problem, const ChangeQuestion& question);

} // namespace soapwrapper::probe

#endif
