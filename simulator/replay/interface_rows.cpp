#include "simulator/replay/interface_rows.h"

#include "messages/lower_case.h"
#include "messages/markup.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{
namespace
{

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::string_view kAuthorityBegin = "://";

bool has_prefix(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

bool is_http(std::string_view type)
{
    return type == "http" || type == "https";
}

// [begin, end) of host and port; the end of the URL if there are none.
struct Authority {
    std::size_t begin;
    std::size_t end;
};

Authority authority_in(std::string_view url)
{
    const std::size_t mark = url.find(kAuthorityBegin);
    const std::size_t begin = mark == kNowhere ? url.size() : mark + kAuthorityBegin.size();
    return {begin, std::min(url.find('/', begin), url.size())};
}

// What stands ahead of the row's type, its type and its URL; three empty texts if it is no row.
struct Row {
    std::string_view version;
    std::string_view type;
    std::string_view url;
};

Row row_in(std::string_view text)
{
    constexpr int kSemicolons = 4;
    const std::size_t url = text.rfind(';');
    if (std::count(text.begin(), text.end(), ';') != kSemicolons) return {};
    const std::size_t type = text.rfind(';', url - 1);
    return {text.substr(0, type + 1), text.substr(type + 1, url - type - 1), text.substr(url + 1)};
}

// Empty, if the text is to stay as it is.
std::string own_row(std::string_view text, const std::set<std::string>& hosts, const ReplayUrls& urls)
{
    const Row row = row_in(text);
    const std::string host = host_in_url(row.url);
    if (!is_http(row.type) || host.empty() || hosts.count(host) == 0) return {};
    const bool is_tls = (row.type == "https" || urls.http.empty()) && !urls.https.empty();
    const std::string type = is_tls ? "https" : "http";
    const std::string_view path = row.url.substr(authority_in(row.url).end);
    return std::string(row.version).append(type + ";" + (is_tls ? urls.https : urls.http)).append(path);
}

} // namespace

std::string host_in_url(std::string_view url)
{
    if (!has_prefix(url, "http")) return {};
    const Authority authority = authority_in(url);
    std::string_view host = url.substr(authority.begin, authority.end - authority.begin);
    const std::size_t colon = host.rfind(':');
    const std::size_t bracket = host.rfind(']');
    if (colon != kNowhere && (bracket == kNowhere || bracket < colon)) host = host.substr(0, colon);
    return messages::lower_case(host);
}

std::string with_own_interfaces(std::string_view reply, const std::set<std::string>& hosts,
                                const ReplayUrls& urls)
{
    std::string result;
    for (std::size_t at = 0; at < reply.size();) {
        const std::size_t tag_end = std::min(reply.find('>', at), reply.size());
        const std::size_t begin = std::min(tag_end + 1, reply.size());
        const std::size_t end = std::min(reply.find('<', begin), reply.size());
        const std::string_view text = reply.substr(begin, end - begin);
        const std::string own = own_row(messages::without_blanks_around(text), hosts, urls);
        result += reply.substr(at, begin - at);
        result += own.empty() ? text : own;
        at = end;
    }
    return result;
}

} // namespace soapwrapper::simulator
