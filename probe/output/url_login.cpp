#include "probe/output/url_login.h"

#include <strings.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

constexpr char kLogin[] = "(login)";

// As the library knows them, in any case of letters.
std::string scheme_of(const std::string& url)
{
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (strncasecmp(url.c_str(), scheme.data(), scheme.size()) == 0) return url.substr(0, scheme.size());
    }
    return {};
}

} // namespace

std::string shown_url(const std::string& url)
{
    const std::size_t at = url.rfind('@');
    if (at == std::string::npos) return url;
    return scheme_of(url) + kLogin + url.substr(at);
}

std::string without_url_logins(std::string_view text)
{
    std::string shown;
    for (std::size_t slashes = text.find("://"); slashes != std::string_view::npos;
         slashes = text.find("://")) {
        const std::size_t begin = slashes + 3;
        const std::string_view url = text.substr(begin, text.find_first_of(" \t\r\n", begin) - begin);
        const std::size_t at = url.rfind('@');
        shown += text.substr(0, begin);
        if (at != std::string_view::npos) shown += kLogin;
        text.remove_prefix(begin + (at == std::string_view::npos ? 0 : at));
    }
    return shown.append(text);
}

} // namespace soapwrapper::probe
