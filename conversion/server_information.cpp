#include "conversion/server_information.h"

#include "plugin/base/bounded_text.h"
#include "plugin/base/session_log.h"
#include "plugin/host/host_records.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "soapwrapperH.h"

namespace soapwrapper
{
namespace
{

constexpr unsigned kBitsPerWord = 32;

template <std::size_t Rows, std::size_t Size>
void copy_rows(char (&rows)[Rows][Size], const std::vector<std::string>& texts)
{
    const std::size_t count = std::min(texts.size(), Rows);
    for (std::size_t i = 0; i < count; ++i) V_strlcpy(rows[i], texts[i].c_str(), Size);
}

template <std::size_t Words>
void set_bits(std::uint32_t (&words)[Words], const std::vector<int>& numbers)
{
    for (const int number : numbers) {
        const auto bit = static_cast<unsigned>(number);
        if (number < 0 || bit / kBitsPerWord >= Words) continue;
        words[bit / kBitsPerWord] |= std::uint32_t{1} << (bit % kBitsPerWord);
    }
}

void log_capabilities(const sts_session_def_v7_t* session, const ns1__ArrayOfInt* capabilities)
{
    if (!somebody_listens(session)) return;
    std::string list;
    if (capabilities) {
        for (const int number : capabilities->item) {
            if (!list.empty()) list += ',';
            list += std::to_string(number);
        }
    }
    log_message(session, STS_LOG_RECORD, "set_server_info_from_soap: capabilities = ", list);
}

} // namespace

void set_server_info_from_soap(sts_server_info_v8_t* info, const ns1__ServerInformation* wire,
                               const sts_session_def_v7_t* session)
{
    info->maxconnect = wire->maxconnect;
    info->nconnect = wire->nconnect;
    info->flags = wire->flags;
    if (wire->server) V_strlcpy(info->server, wire->server->c_str(), sizeof info->server);
    if (wire->ndmpHost) V_strlcpy(info->ndmpHost, wire->ndmpHost->c_str(), sizeof info->ndmpHost);
    if (wire->cred) {
        const std::vector<int>& types = wire->cred->item;
        std::copy_n(types.begin(), std::min(types.size(), std::size(info->cred)), info->cred);
    }
    if (wire->requiredInterface) copy_rows(info->requiredInterface, wire->requiredInterface->item);
    if (wire->sth) copy_rows(info->sth, wire->sth->item);
    if (wire->cap) set_bits(info->cap, wire->cap->item);
    log_capabilities(session, wire->cap);
}

} // namespace soapwrapper
