// Which of its two sources the library takes a change list from. It goes by the supplier's text of the newer
// snapshot and by the kind of the volume; here the two are put together so that it goes where it should.
#ifndef SOAPWRAPPER_PROBE_LISTS_CHANGE_ROUTE_H
#define SOAPWRAPPER_PROBE_LISTS_CHANGE_ROUTE_H

#include "plugin/host/host_records.h"

#include <optional>
#include <string>

namespace soapwrapper::probe
{

enum class Route { kService, kZapi };

const char* route_name(Route route);

// What the user wants. The supplier's text is the host's to know: no entry brings it back. Without one, the
// text is made to fit the route, and without a route that is the service.
struct RouteWishes {
    std::optional<Route> route;
    std::optional<std::string> isid;
    std::optional<std::string> mount; // where the host has the volume
    std::optional<sts_volume_spec_v11_t> volume;
};

struct ChangeRoute {
    Route route = Route::kService;
    std::string isid;
    sts_volume_spec_v11_t volume = {};
};

// Where the library goes with these.
Route route_taken(const std::string& isid, const sts_volume_spec_v11_t& volume);

// Wishes that can't be met together are thrown as a Problem.
ChangeRoute plan_route(const RouteWishes& wishes, const sts_snap_info_v11_t& diff);

} // namespace soapwrapper::probe

#endif
