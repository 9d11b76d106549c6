#include "simulator/page/page.h"

#include "simulator/front/embedded_file.h"
#include "simulator/front/http.h"

#include <string>
#include <string_view>
#include <vector>

namespace soapwrapper::simulator
{

std::vector<EmbeddedFile> page_assets();

namespace
{

bool ends_with(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

std::string content_type_of(std::string_view name)
{
    if (ends_with(name, ".html")) return "text/html; charset=utf-8";
    if (ends_with(name, ".css")) return "text/css; charset=utf-8";
    return "text/javascript; charset=utf-8";
}

Answer answer_of(const EmbeddedFile& asset)
{
    Answer answer;
    answer.content_type = content_type_of(asset.name);
    answer.body = asset.bytes;
    answer.fields = {
        // Another release of the program may stand behind the same address at the next look.
        {"Cache-Control", "no-cache"},
        {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"},
        // What a client sends is shown here: if it ever became markup, it could still neither run nor reach
        // out.
        {"Content-Security-Policy",
         "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; connect-src 'self'; "
         "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    };
    return answer;
}

std::string path_of(std::string_view name)
{
    return name == "index.html" ? "/" : "/page/" + std::string(name);
}

} // namespace

std::vector<Route> page_routes()
{
    std::vector<Route> routes;
    for (const EmbeddedFile& asset : page_assets()) {
        routes.push_back({"GET", path_of(asset.name), [asset](const Request&) { return answer_of(asset); },
                          Audience::kPeople});
    }
    return routes;
}

} // namespace soapwrapper::simulator
