#include "conversion/export_host.h"

#include "conversion/field_text.h"
#include "plugin/base/bounded_text.h"
#include "plugin/host/host_records.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

// Through the record's own bytes, because nothing stops at the end of the rows.
void set_rows(sts_host_spec_v11_t& host, std::size_t offset, const ns1__ArrayOfString* texts)
{
    if (!texts) return;
    char* record = reinterpret_cast<char*>(&host);
    for (const std::string& text : texts->item) {
        if (offset >= sizeof host) return;
        const std::size_t room = sizeof host - offset;
        V_strlcpy(record + offset, text.c_str(), std::min<std::size_t>(room, STS_HOST_TEXT_SIZE));
        offset += STS_HOST_TEXT_SIZE;
    }
}

} // namespace

void set_host_spec_from_soap(sts_host_spec_v11_t& host, const ns1__HostSpecification* wire)
{
    if (!wire) return;
    set_rows(host, offsetof(sts_host_spec_v11_t, hostname), wire->hostname);
    set_rows(host, offsetof(sts_host_spec_v11_t, port), wire->port);
    host.flags = wire->flags;
}

void set_host_spec_from_sts(ns1__HostSpecification& wire, const sts_host_spec_v11_t* host)
{
    auto* hostname = new ns1__ArrayOfString();
    hostname->item = texts_of_rows(host->hostname);
    auto* port = new ns1__ArrayOfString();
    port->item = texts_of_rows(host->port);
    wire.hostname = hostname;
    wire.port = port;
    wire.flags = host->flags;
}

std::vector<std::string> texts_of_rows(const char (&rows)[STS_EXPORT_HOSTS][STS_HOST_TEXT_SIZE])
{
    std::vector<std::string> texts;
    texts.reserve(STS_EXPORT_HOSTS);
    for (const auto& row : rows) texts.emplace_back(text_of(row));
    return texts;
}

} // namespace soapwrapper
