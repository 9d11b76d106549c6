#include "probe/lists/change_route.h"

#include "plugin/host/host_records.h"
#include "probe/output/problem.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace soapwrapper::probe
{
namespace
{

constexpr char kMount[] = "mount=";
constexpr char kUseZapi[] = "use_zapi=";

template <std::size_t Size>
std::string text_of(const char (&field)[Size])
{
    return {field, strnlen(field, Size)};
}

template <std::size_t Size>
void put(char (&field)[Size], const std::string& text)
{
    std::memset(field, 0, Size);
    text.copy(field, Size - 1);
}

bool has_mount(const std::string& isid)
{
    return isid.find(kMount) != std::string::npos;
}

bool asks_for_zapi(const std::string& isid)
{
    const std::size_t key = isid.find(kUseZapi);
    return key != std::string::npos &&
           static_cast<std::int32_t>(std::strtol(isid.c_str() + key + std::strlen(kUseZapi), nullptr, 10)) ==
               1;
}

std::string isid_for(const RouteWishes& wishes, const sts_volume_spec_v11_t& volume)
{
    if (wishes.isid) return *wishes.isid;
    std::string use_zapi = wishes.route == Route::kZapi ? "use_zapi=1" : "use_zapi=0";
    if (!wishes.mount) return use_zapi;
    return kMount + *wishes.mount + "|" + text_of(volume.first) + ":" + text_of(volume.second) + "," +
           use_zapi;
}

// The volume of a snapshot that is read by NDMP, as others reach it.
sts_volume_spec_v11_t as_nfs(const sts_volume_spec_v11_t& ndmp)
{
    sts_volume_spec_v11_t nfs = {};
    const std::string path = text_of(ndmp.second);
    put(nfs.first, text_of(ndmp.first));
    put(nfs.second, path.substr(0, path.find("/.snapshot/")));
    nfs.volumeType = STS_VOLUME_NFS;
    return nfs;
}

} // namespace

const char* route_name(Route route)
{
    return route == Route::kZapi ? "zapi" : "service";
}

Route route_taken(const std::string& isid, const sts_volume_spec_v11_t& volume)
{
    const bool zapi = has_mount(isid) ? volume.volumeType == STS_VOLUME_NDMP : asks_for_zapi(isid);
    return zapi ? Route::kZapi : Route::kService;
}

ChangeRoute plan_route(const RouteWishes& wishes, const sts_snap_info_v11_t& diff)
{
    if (wishes.mount && wishes.mount->find_first_of(",|") != std::string::npos) {
        throw usage_problem("the mount " + *wishes.mount +
                            " holds a comma or a bar, which end a mount in the supplier's text");
    }
    ChangeRoute plan;
    plan.volume = wishes.volume.value_or(diff.snapVolSpec);
    plan.isid = isid_for(wishes, plan.volume);
    if (plan.isid.size() >= sizeof diff.snapDef.isid.info) {
        throw usage_problem("the supplier's text has " + std::to_string(plan.isid.size()) +
                            " bytes, and at most " + std::to_string(sizeof diff.snapDef.isid.info - 1) +
                            " fit into the host's record");
    }
    // With a mount the volume makes the difference, and of a volume that is read by NDMP there are others.
    const bool wants_service = wishes.route ? *wishes.route == Route::kService : !wishes.isid;
    if (wants_service && !wishes.volume && has_mount(plan.isid) &&
        plan.volume.volumeType == STS_VOLUME_NDMP) {
        plan.volume = as_nfs(plan.volume);
    }
    plan.route = route_taken(plan.isid, plan.volume);
    if (wishes.route && *wishes.route != plan.route) {
        throw usage_problem(
            std::string("with this text and this volume the library takes the other route, ") +
                route_name(plan.route),
            "With a mount in the text an NDMP volume makes it zapi and any other the service; without one, "
            "use_zapi=1 in the text makes it zapi.");
    }
    return plan;
}

} // namespace soapwrapper::probe
