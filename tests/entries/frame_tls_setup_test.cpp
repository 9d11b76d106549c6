// What a call does where TLS can't even be set up, and what setting it up costs.
#include "tests/entries/discovery_fixture.h"
#include "tests/entries/runtime_hooks.h"
#include "tests/kit/new_process.h"

using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace
{

const LogLine& set_up_failure()
{
    static const LogLine line = failure("SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"SSL/TLS error\"\n"
                                        "Detail: Can't setup context\nHANDLE_SOAP_FAULT: 2060021");
    return line;
}

// The library keeps a TLS context once it has one, so each test is a process's first.
class TlsSetUp : public Discovery
{
};

} // namespace

TEST_F(TlsSetUp, FailureEndsEachEntryBeforeAnyConnection)
{
    IN_A_NEW_PROCESS({
        const hooks::NoTlsContexts none;
        const ServerHandle server = make_server(session_, service_.tls_url(), true);

        EXPECT_EQ(close_server()(server.get()), 2060021);
        EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_close_server: enter"), set_up_failure()));
        session_.clear();

        EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 2060021);
        EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_get_server_prop: enter"), set_up_failure()));
        session_.clear();

        stsp_server_t* target = nullptr;
        EXPECT_EQ(open_target_server()(server.get(), "t", Credential("").get(), "", &target), 2060021);
        EXPECT_THAT(session_.lines(),
                    ElementsAre(record("stspi_open_target_server: enter"), set_up_failure()));
        EXPECT_EQ(target, nullptr);
        EXPECT_EQ(service_.connections(), 0U);
    });
}

TEST_F(TlsSetUp, FailureEndsAnOpenBehindItsEndpointLine)
{
    IN_A_NEW_PROCESS({
        discover(own_name(), {"11;1;2;https;" + service_.tls_url()});
        const hooks::NoTlsContexts none;
        stsp_server_t* server = nullptr;
        EXPECT_EQ(open(own_name(), &server), 2060021);
        EXPECT_EQ(server, nullptr);
        EXPECT_EQ(service_.connections(), 0U);
        const Lines lines = session_.lines();
        EXPECT_EQ(lines.size(), 6U);
        EXPECT_EQ(lines.at(4), record("stspi_open_server: soap_endpoint = " + service_.tls_url()));
        EXPECT_EQ(lines.at(5), set_up_failure());
    });
}

TEST_F(TlsSetUp, FailureSendsDiscoveryOnToHttp)
{
    IN_A_NEW_PROCESS({
        const std::string name = own_name(host_part_at(service_.port()));
        const std::string http_url = "http://" + host_part_at(service_.port()) + ":8085";
        service_.script(discovered({"11;1;2;http;u"}));
        const hooks::NoTlsContexts none;
        EXPECT_EQ(ask(name), 0);
        EXPECT_THAT(session_.lines(),
                    ElementsAreArray(
                        opening_lines(name) +
                        Lines{set_up_failure(), line("could not use https with timeout=10; trying http now"),
                              line("soap_endpoint = " + http_url), line("SOAP return code = 0"),
                              record("set_server_info_from_soap: capabilities = "),
                              record("Interface received: 11;1;2;http;u"),
                              record("Interface selected: major 11 minor 1 sdk 2 type http url u"),
                              line("STS_EOK")}));
        EXPECT_EQ(service_.connections(), 1U);
    });
}

TEST_F(TlsSetUp, FailureIsReturnedWithNobodyListeningToo)
{
    IN_A_NEW_PROCESS({
        const hooks::NoTlsContexts none;
        session_->log_callback = nullptr;
        const ServerHandle server = make_server(session_, service_.tls_url(), true);
        EXPECT_EQ(close_server()(server.get()), 2060021);
    });
}

TEST_F(TlsSetUp, FailureIsNotRemembered)
{
    IN_A_NEW_PROCESS({
        ServerHandle server = make_server(session_, service_.tls_url(), true);
        {
            const hooks::NoTlsContexts none;
            EXPECT_EQ(close_server()(server.get()), 2060021);
        }
        service_.script(closed());
        EXPECT_EQ(close_server()(server.release()), 0);
    });
}

TEST_F(TlsSetUp, IsNotTriedForAPlainHandle)
{
    IN_A_NEW_PROCESS({
        const hooks::NoTlsContexts none;
        const std::size_t before = hooks::tls_contexts_asked_for();
        ServerHandle server = make_server(session_, service_.tls_url(), false);
        service_.script(closed());
        EXPECT_EQ(close_server()(server.release()), 0);
        EXPECT_EQ(hooks::tls_contexts_asked_for(), before);
    });
}

TEST_F(TlsSetUp, IsDoneOnceForAllCalls)
{
    IN_A_NEW_PROCESS({
        const std::size_t before = hooks::tls_contexts_asked_for();
        const ServerHandle server = make_server(session_, service_.tls_url(), true);
        for (int i = 0; i < 5; ++i) {
            service_.script(answer(reply("getServerPropResponse", information())));
            EXPECT_EQ(get_server_prop()(server.get(), info_.get()), 0);
        }
        EXPECT_EQ(hooks::tls_contexts_asked_for(), before + 1);
    });
}
