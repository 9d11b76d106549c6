#include "service/discovery.h"

#include "plugin/base/session_log.h"
#include "plugin/host/host_records.h"

#include <string.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace soapwrapper
{
namespace
{

constexpr std::int32_t kHighestVersion = 110102; // 11.1.2
constexpr std::size_t kValuesPerRow = 5;

std::vector<std::string> split(std::string_view row)
{
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t end = row.find(';');
        parts.emplace_back(row.substr(0, end));
        if (end == std::string_view::npos) return parts;
        row.remove_prefix(end + 1);
    }
}

int to_number(const std::string& text)
{
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

// One number to compare by, in 32 bits that wrap: parts of 100 and more run into the next one's place.
std::int32_t version_of(const interface_detail& detail)
{
    const auto part = [](int number) { return static_cast<std::uint32_t>(number); };
    return static_cast<std::int32_t>(part(detail.major) * 10000U + part(detail.minor) * 100U +
                                     part(detail.sdk));
}

bool is_better(const interface_detail& candidate, const interface_detail& best)
{
    const std::int32_t version = version_of(candidate);
    if (version > kHighestVersion) return false;
    const std::int32_t best_version = version_of(best);
    if (version != best_version) return version > best_version;
    return best.type == "http" && candidate.type == "https";
}

} // namespace

bool determine_endpoint(const InterfaceRow* rows, interface_detail& detail,
                        const sts_session_def_v7_t* session)
{
    interface_detail best;
    bool any_well_formed = false;
    for (std::size_t i = 0; i < STS_INTERFACES && rows[i][0] != '\0'; ++i) {
        const std::string_view row(rows[i], strnlen(rows[i], STS_INTERFACE_SIZE));
        log_message(session, STS_LOG_RECORD, "Interface received: ", row);
        std::vector<std::string> parts = split(row);
        if (parts.size() != kValuesPerRow) {
            log_message(session, STS_LOG_RECORD, "Incorrect number of values specified: ", row);
            continue;
        }
        any_well_formed = true;
        interface_detail candidate{to_number(parts[0]), to_number(parts[1]), to_number(parts[2]),
                                   std::move(parts[3]), std::move(parts[4])};
        if (is_better(candidate, best)) best = std::move(candidate);
    }
    if (!any_well_formed) {
        log_message(session, STS_LOG_RECORD, "No interface received from storage server");
        detail = interface_detail();
        return true;
    }
    if (version_of(best) == 0) return false;
    detail = std::move(best);
    return true;
}

} // namespace soapwrapper
