#include "changelist/isid.h"

#include "changelist/session_registry.h"
#include "plugin/base/session_log.h"
#include "plugin/host/host_records.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace soapwrapper
{
namespace
{

constexpr std::string_view kMount = "mount=";
constexpr std::string_view kUseZapi = "use_zapi=";

// A value without a "|" stands for both sides.
mount_path_filer_share split_mount(const std::string& value)
{
    const std::size_t bar = value.find('|');
    if (bar == std::string::npos) return {value, value};
    return {value.substr(0, bar), value.substr(bar + 1)};
}

} // namespace

bool parse_isid(const std::string& text, isid_contents* contents, const sts_session_def_v7_t* session)
{
    std::size_t position = 0;
    while ((position = text.find(kMount, position)) != std::string::npos) {
        const std::size_t value = position + kMount.size();
        // The value's first character is never taken for its end.
        const std::size_t comma = text.find(',', value + 1);
        contents->mpfs_vec.push_back(split_mount(text.substr(value, comma - value)));
        // A last value is searched again from its start, and may hold a mount of its own.
        position = comma == std::string::npos ? value : comma + 1;
    }
    const std::size_t key = text.find(kUseZapi);
    contents->use_zapi = -1;
    if (key != std::string::npos) {
        const char* number = text.c_str() + key + kUseZapi.size();
        contents->use_zapi = static_cast<std::int32_t>(std::strtol(number, nullptr, 10));
    }
    log_message(session, STS_LOG_RECORD, "use_zapi: ", contents->use_zapi);
    return true;
}

} // namespace soapwrapper
