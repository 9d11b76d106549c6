#include "probe/login/clear_login.h"

#include "probe/library/failure.h"
#include "probe/library/session.h"
#include "probe/output/text.h"

#include <strings.h>

#include <cstddef>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

constexpr std::string_view kHttps = "https:";

bool is_https(const std::string& url)
{
    return strncasecmp(url.c_str(), kHttps.data(), kHttps.size()) == 0;
}

} // namespace

bool uses_tls(const std::string& selection, const std::string& url)
{
    if (!is_https(url)) return false;
    const std::string chosen = " type https url ";
    const std::size_t type = selection.find(" type ");
    if (type == std::string::npos || selection.compare(type, chosen.size(), chosen) != 0) return false;
    // A type that goes on with blanks and what looks like a URL is another type.
    const std::string chosen_url = selection.substr(type + chosen.size());
    return !chosen_url.empty() && chosen_url.find(' ') == std::string::npos;
}

std::optional<LoggedRequest> sent_login(const Session& session)
{
    const auto requests = session.requests();
    if (requests.empty() || requests.back().url.empty()) return std::nullopt;
    const LoggedRequest& login = requests.back();
    const std::optional<Failure> failure = failure_of(login);
    const bool went = login.failure.empty() || (failure && was_sent(*failure));
    return went ? std::optional(login) : std::nullopt;
}

void warn_of_clear_login(const Session& session, const std::string& selection)
{
    static bool warned = false;
    const auto login = sent_login(session);
    if (warned || !login || uses_tls(selection, login->url)) return;
    warned = true;
    std::cerr << "warning: the credential went over " << clean_line(login->url)
              << " in the clear; see require_tls in soapwrapper.conf\n";
}

} // namespace soapwrapper::probe
