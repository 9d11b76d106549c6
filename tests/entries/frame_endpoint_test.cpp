// An endpoint that is no http:// or https:// URL with a host: nothing is sent anywhere, least of all to what
// the host has in the place of its standard descriptors.
#include "tests/entries/discovery_fixture.h"
#include "tests/entries/event_channel_fixture.h"
#include "tests/entries/standard_descriptors.h"

#include <functional>

using namespace kit;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

constexpr int kUnreachable = 2060017;

const std::vector<std::string> kBadUrls = {"",
                                           "/",
                                           "/x",
                                           "//127.0.0.1:1",
                                           "x",
                                           "127.0.0.1:1",
                                           "http:",
                                           "http:/",
                                           "http://",
                                           "https://",
                                           "HTTP://",
                                           "http:127.0.0.1",
                                           "http://:1",
                                           "https://:8086",
                                           "http:///x",
                                           "http://?x",
                                           "http://[]:1",
                                           "http://u@:1",
                                           "http://127.0.0.1:1/x@",
                                           "https://u:p@",
                                           "file:///x",
                                           "soap.udp://127.0.0.1:1",
                                           "udp://127.0.0.1:1",
                                           "httpg://127.0.0.1:1",
                                           "ftp://127.0.0.1:1",
                                           "\"http://127.0.0.1:1\"",
                                           "'http://127.0.0.1:1'",
                                           " http://127.0.0.1:1",
                                           "http://127.0.0.1:1 ",
                                           "http:// 127.0.0.1:1",
                                           "http://127.0.0.1:1/a b",
                                           "http://127.0.0.1:1/a\tb",
                                           "http://127.0.0.1:1/x\rX-Injected:yes",
                                           "http://127.0.0.1:1/x\nX-Injected:yes",
                                           "http://127.0.0.1:1/\x01",
                                           "http://127.0.0.1:1/\x7f"};

class Endpoints : public Discovery
{
  protected:
    // Calls within the host's descriptors, which stay as they were, and gives the call's status.
    int undisturbed(const std::function<int()>& call)
    {
        const std::string believable = opened("from standard input").bytes;
        int status = 0;
        int left = 0;
        int written = 0;
        bool raised = false;
        {
            const StandardDescriptors descriptors(believable);
            status = call();
            left = descriptors.left_in_input();
            written = descriptors.written_to_errors();
            raised = StandardDescriptors::raised_sigpipe();
        }
        EXPECT_EQ(left, static_cast<int>(believable.size()));
        EXPECT_EQ(written, 0);
        EXPECT_FALSE(raised);
        return status;
    }

    int open_undisturbed(const std::string& name)
    {
        stsp_server_t* server = nullptr;
        const int status = undisturbed([&] { return open(name, &server); });
        EXPECT_EQ(server, nullptr);
        return status;
    }

    int discover_undisturbed(const std::string& name)
    {
        return undisturbed([&] { return ask(name); });
    }

    // The failure as that of an address that can't be reached, and the URL in it.
    void expect_told(const std::string& entry, const std::string& url)
    {
        const std::vector<LogLine> lines = session_.lines();
        EXPECT_THAT(lines, Contains(record(entry + ": SOAP return code = 28")));
        EXPECT_THAT(lines, Contains(testing::AllOf(
                               testing::Field(&LogLine::level, 4),
                               testing::Field(&LogLine::text,
                                              HasSubstr("Detail: " + (url.empty() ? "[no detail]" : url))))));
        session_.clear();
    }
};

} // namespace

TEST_F(Endpoints, OfAHandleWithoutAHostReachNobody)
{
    for (const std::string& url : kBadUrls) {
        SCOPED_TRACE(url);
        for (const bool tls : {false, true}) {
            const ServerHandle server = make_server(session_, url, tls);
            EXPECT_EQ(undisturbed([&] { return close_server()(server.get()); }), kUnreachable);
            expect_told("stspi_close_server", url);
            EXPECT_EQ(undisturbed([&] { return get_server_prop()(server.get(), info_.get()); }), 2060026);
        }
    }
}

TEST_F(Endpoints, OfAHandleThatHasNoneAtAllReachNobody)
{
    const ServerHandle server = make_server(session_, "");
    std::free(std::exchange(server->endpoint, nullptr));
    EXPECT_EQ(undisturbed([&] { return get_server_prop()(server.get(), info_.get()); }), 2060026);
}

TEST_F(Endpoints, MadeOfANameWithoutAHostReachNobody)
{
    for (const std::string host : {"", "/srv", ":1", " 127.0.0.1", "?", "u@", "\t", "127.0.0.1\r\nX:y"}) {
        SCOPED_TRACE(host);
        EXPECT_EQ(open_undisturbed(own_name(host)), kUnreachable);
        expect_told("stspi_open_server", "http://" + host + ":8085");
        EXPECT_EQ(discover_undisturbed(own_name(host)), kUnreachable);
        expect_told("stspi_get_server_prop_byname", "https://" + host + ":8086");
    }
}

TEST_F(Endpoints, OfALineOfTheFileWithoutAHostReachNobody)
{
    for (const std::string url : {"", "http://", "https://:8086", "/x", "//host:1", "file:///x",
                                  "soap.udp://127.0.0.1:1", "\"http://127.0.0.1:1\""}) {
        SCOPED_TRACE(url);
        host().write_configuration("storage.example = " + url + "\n");
        EXPECT_EQ(open_undisturbed(own_name("storage.example")), kUnreachable);
        expect_told("stspi_open_server", url);
        EXPECT_EQ(discover_undisturbed(own_name("storage.example")), kUnreachable);
        expect_told("stspi_get_server_prop_byname", url);
    }
}

TEST_F(Endpoints, OfAnInterfaceOfTheServiceWithoutAHostReachNobody)
{
    int number = 0;
    for (const std::string type : {"http", "https"}) {
        for (const std::string url : {"https://:8086", "http://", "/x", "soap.udp://127.0.0.1:1",
                                      "http://127.0.0.1:1/x&#13;X-Injected:yes"}) {
            SCOPED_TRACE(url);
            const std::string name = own_name("chosen" + std::to_string(++number));
            discover(name, {"11;1;2;" + type + ";" + url});
            EXPECT_EQ(open_undisturbed(name), kUnreachable);
        }
    }
}

TEST_F(Endpoints, OfAnEventChannelWithoutAHostReachNobody)
{
    stsp_evc_t* channel = nullptr;
    const Credential credential("abc");
    EXPECT_EQ(undisturbed([&] {
                  return open_evchannel()(session_.get(), own_name("").c_str(), credential.get(), nullptr,
                                          nullptr, nullptr, 0, 0, &channel);
              }),
              kUnreachable);
    EXPECT_EQ(channel, nullptr);
    for (const bool tls : {false, true}) {
        const ServerHandle server = make_server(session_, "https://:8086", tls);
        char token[] = "E";
        stsp_evc made = {server.get(), session_.get(), token};
        const auto event = std::make_unique<sts_event_v11_t>();
        EXPECT_EQ(undisturbed([&] { return get_event()(&made, event.get()); }), kUnreachable);
    }
}

TEST_F(Endpoints, WithASchemeInAnyCaseAreCalled)
{
    for (const std::string scheme : {"http", "HTTP", "Http"}) {
        service_.script(closed());
        ServerHandle server =
            make_server(session_, scheme + "://127.0.0.1:" + std::to_string(service_.port()) + "/a/b?c#d");
        EXPECT_EQ(close_server()(server.release()), 0);
    }
    for (const std::string scheme : {"https", "HTTPS"}) {
        service_.script(closed());
        ServerHandle server =
            make_server(session_, scheme + "://127.0.0.1:" + std::to_string(service_.port()), true);
        EXPECT_EQ(close_server()(server.release()), 0);
    }
    ASSERT_EQ(service_.requests().size(), 5U);
    EXPECT_FALSE(service_.requests()[2].tls);
    EXPECT_TRUE(service_.requests()[4].tls);
}

TEST_F(Endpoints, AreCalledByAHostWithoutStandardDescriptors)
{
    service_.script({closed(), closed()});
    ServerHandle plain = make_server(session_, service_.url());
    ServerHandle tls = make_server(session_, service_.tls_url(), true);
    EXPECT_EQ(undisturbed([&] { return close_server()(plain.release()); }), 0);
    EXPECT_EQ(undisturbed([&] { return close_server()(tls.release()); }), 0);
}
