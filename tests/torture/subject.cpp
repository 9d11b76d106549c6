#include "tests/torture/subject.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>

using namespace kit;

namespace torture
{
namespace
{

constexpr char kNameWithTls[] = "Network_Tls:host";

// Discovery decides about TLS, so a name that is to use it must have been discovered once.
const char* name_with_tls()
{
    static const char* const name = [] {
        ScriptedService service;
        service.script(
            answer(reply("getServerPropByNameResponse",
                         element("info", element("requiredInterface",
                                                 element("item", "11;1;2;https;" + service.tls_url()))))));
        Host::instance().write_configuration("host=" + service.url() + "\n");
        RecordedSession session;
        const auto info = std::make_unique<sts_server_info_v8_t>();
        if (get_server_prop_byname()(session.get(), kNameWithTls, info.get()) != 0) {
            throw std::runtime_error("discovery failed");
        }
        return kNameWithTls;
    }();
    return name;
}

} // namespace

Entry Entry::requiring(std::vector<std::string> elements) const
{
    Entry entry = *this;
    entry.required = std::move(elements);
    return entry;
}

std::vector<Answer> Entry::conversation(const Answer& tortured, bool succeeds) const
{
    std::vector<Answer> all;
    for (const std::string& each : ahead) all.push_back(answer(each));
    all.push_back(tortured);
    for (const std::string& each : succeeds ? behind_success : behind_failure) all.push_back(answer(each));
    return all;
}

void FreeServer::operator()(stsp_server_t* server) const
{
    std::free(server->endpoint);
    std::free(server->service_handle);
    delete server;
}

Subject::Subject(const std::string& url, bool tls)
    : credential("secret"), name(tls ? name_with_tls() : "Network_Plain:host"), url_(url), tls_(tls)
{
    Host::instance().write_configuration("host=" + url + "\n");
    open_handle();
}

Subject::~Subject()
{
    Host::instance().remove_configuration();
}

void Subject::open_handle()
{
    server.reset(new stsp_server_t());
    server->endpoint = static_cast<char*>(std::calloc(1, soapwrapper::kEndpointSize));
    url_.copy(server->endpoint, soapwrapper::kEndpointSize - 1);
    server->service_handle = strdup("T");
    server->session = session.get();
    server->use_https = tls_;
}

} // namespace torture
