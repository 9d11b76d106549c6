#include "probe/output/url_login.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::probe
{
namespace
{

constexpr char kLogin[] = "(login)";

} // namespace

std::string shown_url(const std::string& url)
{
    const std::size_t at = url.rfind('@');
    if (at == std::string::npos) return url;
    const std::size_t slashes = url.find("//");
    const std::string scheme = slashes < at ? url.substr(0, slashes + 2) : std::string();
    return scheme + kLogin + url.substr(at);
}

std::string without_url_logins(std::string_view text)
{
    std::string shown;
    for (std::size_t slashes = text.find("://"); slashes != std::string_view::npos;
         slashes = text.find("://")) {
        const std::size_t begin = slashes + 3;
        const std::string_view url = text.substr(begin, text.find_first_of(" \t\r\n\"'<>", begin) - begin);
        const std::size_t at = url.rfind('@');
        shown += text.substr(0, begin);
        if (at != std::string_view::npos) shown += kLogin;
        text.remove_prefix(begin + (at == std::string_view::npos ? 0 : at));
    }
    return shown.append(text);
}

} // namespace soapwrapper::probe
