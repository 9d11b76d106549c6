// What the tests of server sessions have in common: handles, replies and the library's lines about them.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_SERVER_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_SERVER_FIXTURE_H

#include "plugin/base/handle_records.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct FreeServer {
    void operator()(stsp_server_t* server) const
    {
        std::free(server->endpoint);
        std::free(server->service_handle);
        delete server;
    }
};

// A handle that a test owns. One that was closed must be released from it.
using ServerHandle = std::unique_ptr<stsp_server_t, FreeServer>;

// A handle as an open makes it, pointing where the test wants. A null token leaves it without one.
inline ServerHandle make_server(kit::RecordedSession& session, std::string_view url, bool use_https = false,
                                const char* token = "T")
{
    ServerHandle server(new stsp_server_t());
    server->endpoint = static_cast<char*>(std::calloc(1, soapwrapper::kEndpointSize));
    url.copy(server->endpoint, soapwrapper::kEndpointSize - 1);
    server->service_handle = token ? strdup(token) : nullptr;
    server->session = session.get();
    server->use_https = use_https;
    return server;
}

// The interface list of a server, as "major;minor;sdk;type;url" rows.
inline std::string interfaces(const std::vector<std::string>& rows)
{
    std::string items;
    for (const std::string& row : rows) items += kit::element("item", row);
    return kit::element("requiredInterface", items);
}

// What a service says of a server: the members that matter to a test, and the rest.
inline std::string information(std::string_view members = "")
{
    return kit::element("info", kit::element("server", "the server") + kit::element("sth") +
                                    kit::element("flags", "1") + kit::element("maxconnect", "2") +
                                    kit::element("nconnect", "3") + kit::element("cap") +
                                    kit::element("cred") + kit::nil("ndmpHost") + std::string(members));
}

inline kit::Answer discovered(const std::vector<std::string>& rows)
{
    return kit::answer(kit::reply("getServerPropByNameResponse", information(interfaces(rows))));
}

inline kit::Answer opened(std::string_view token = "T")
{
    return kit::answer(
        kit::reply("openServerResponse", kit::element("serverHandle", kit::element("token", token))));
}

inline kit::Answer closed()
{
    return kit::answer(kit::reply("closeServerResponse"));
}

class ServerTest : public testing::Test
{
  protected:
    ServerTest() { host().remove_configuration(); }
    ~ServerTest() override { host().remove_configuration(); }

    static kit::Host& host() { return kit::Host::instance(); }
    static std::string configuration_path() { return host().configuration_file().string(); }

    // A server name that no other test has used: what discovery finds stays for the life of the process.
    std::string own_name(std::string_view host_part = "host") const
    {
        return std::string("Network_") + testing::UnitTest::GetInstance()->current_test_info()->name() + ":" +
               std::string(host_part);
    }

    // Who asks, as requests say it.
    std::string session_element()
    {
        return kit::element("sd", kit::element("proxy", session_->proxy) + kit::element("id", session_.id()) +
                                      kit::element("flags", "7"));
    }

    // Discovery by a URL from the file, which is then removed.
    void discover(const std::string& name, const std::vector<std::string>& rows)
    {
        kit::ScriptedService service;
        service.script(discovered(rows));
        host().write_configuration(name.substr(name.find(':') + 1) + "=" + service.url() + "\n");
        auto info = std::make_unique<sts_server_info_v8_t>();
        ASSERT_EQ(kit::get_server_prop_byname()(session_.get(), name.c_str(), info.get()), 0);
        host().remove_configuration();
        session_.clear();
    }

    // An open with the credential "abc".
    int open(const std::string& name, stsp_server_t** server, const char* interface_name = nullptr)
    {
        return kit::open_server()(session_.get(), name.c_str(), kit::Credential("abc").get(), interface_name,
                                  server);
    }

    kit::ScriptedService service_;
    kit::RecordedSession session_;
};

#endif
