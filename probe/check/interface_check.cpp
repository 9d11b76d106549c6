#include "probe/check/interface_check.h"

#include "probe/check/check_report.h"
#include "probe/check/service_url.h"
#include "probe/output/offered_interface.h"
#include "probe/output/url_login.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace soapwrapper::probe
{
namespace
{

constexpr std::int32_t kHighestVersion = 110102; // 11.1.2

// The number that the library compares by, in 32 bits that wrap.
std::int32_t version_of(const OfferedInterface& offered)
{
    const auto part = [&](std::size_t value) { return static_cast<std::uint32_t>(offered.number(value)); };
    return static_cast<std::int32_t>(part(0) * 10000U + part(1) * 100U + part(2));
}

std::string shown(const OfferedInterface& offered)
{
    return offered.version() + ' ' + offered.type() + ' ' + shown_url(offered.url());
}

void add_chosen(const OfferedInterface& offered, const std::optional<std::string>& own_url,
                CheckReport& report)
{
    const std::string text = shown(offered) + ": chosen";
    const ServiceUrl url = parse_url(offered.url());
    if (offered.type() == "https" && own_url && !parse_url(*own_url).https) {
        report.add(Mark::kWarning, "interface",
                   text + ", but soapwrapper.conf's URL is used instead, without TLS",
                   "write https:// into soapwrapper.conf");
    } else if (offered.url().empty()) {
        report.add(Mark::kWarning, "interface", text + ", but without a URL: it is not used for the login",
                   "have the service name its URL, or write it into soapwrapper.conf");
    } else if (!url.is_callable()) {
        report.add(Mark::kWrong, "interface", text + ", but its URL cannot be called: " + url.fault,
                   "have the service name another URL, or write one into soapwrapper.conf");
    } else if (offered.type() != "https") {
        report.add(Mark::kWarning, "interface", text + "; the login goes in the clear",
                   "have the service offer https, and set require_tls = yes");
    } else {
        report.add(Mark::kOk, "interface", text);
    }
}

void add_other(const OfferedInterface& offered, const OfferedInterface* chosen, CheckReport& report)
{
    if (!offered.well_formed()) {
        report.add(Mark::kWarning, "interface", offered.row + ": malformed, it does not have five values",
                   "report it to the service's maker");
        return;
    }
    std::string reason = "it has no version";
    const std::int32_t version = version_of(offered);
    if (version > kHighestVersion) {
        reason = "newer than 11.1.2, the highest that the library speaks";
    } else if (chosen && version < version_of(*chosen)) {
        reason = "an older version";
    } else if (chosen) {
        reason = offered.type() == "http" && chosen->type() == "https"
                     ? "https is offered for the same version"
                     : "the same as the one above";
    }
    report.add(Mark::kInfo, "interface", shown(offered) + ": not chosen, " + reason);
}

} // namespace

void check_interfaces(const std::vector<OfferedInterface>& offers, const std::optional<std::string>& own_url,
                      CheckReport& report)
{
    const auto chosen = std::find_if(offers.begin(), offers.end(),
                                     [](const OfferedInterface& offered) { return offered.chosen; });
    for (const OfferedInterface& offered : offers) {
        if (offered.chosen) {
            add_chosen(offered, own_url, report);
        } else {
            add_other(offered, chosen == offers.end() ? nullptr : &*chosen, report);
        }
    }
    const bool any = std::any_of(offers.begin(), offers.end(),
                                 [](const OfferedInterface& offered) { return offered.well_formed(); });
    if (any) return;
    report.add(Mark::kWarning, "interface",
               "the service names none: the login is plain, at the configuration's URL or on port 8085",
               "have the service name its interfaces");
}

} // namespace soapwrapper::probe
