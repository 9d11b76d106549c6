// Discovery of a server that the file doesn't know: https on port 8086 and http on port 8085, twice.
#include "tests/entries/discovery_fixture.h"

using namespace kit;
using testing::ElementsAreArray;

namespace
{

class DiscoveryLadder : public Discovery
{
  protected:
    DiscoveryLadder() : host_part_(host_part_at(service_.port())), name_(own_name(host_part_)) {}

    std::string https_url() const { return "https://" + host_part_ + ":8086"; }
    std::string http_url() const { return "http://" + host_part_ + ":8085"; }

    // The lines of an attempt that the service refuses with this status.
    Lines refused_lines(const std::string& url, int status) const
    {
        return {line("soap_endpoint = " + url), line("SOAP return code = 1"),
                failure(rendered_fault(status))};
    }

    // The lines of an attempt that the service answers with one good row.
    Lines answered_lines(const std::string& url) const
    {
        return {line("soap_endpoint = " + url),
                line("SOAP return code = 0"),
                record("set_server_info_from_soap: capabilities = "),
                record("Interface received: 11;1;2;http;http://chosen"),
                record("Interface selected: major 11 minor 1 sdk 2 type http url http://chosen"),
                line("STS_EOK")};
    }

    // The lines of an attempt whose answer says nothing of the server.
    static Lines useless_lines(const std::string& url)
    {
        return {line("soap_endpoint = " + url), line("SOAP return code = 0"),
                failure("stspi_get_server_prop_byname: the reply has no info")};
    }

    static Lines after_https(const std::string& timeout)
    {
        return {line("could not use https with timeout=" + timeout + "; trying http now")};
    }
    static Lines after_http(const std::string& timeout)
    {
        return {line("could not use http as well with timeout=" + timeout)};
    }

    static Answer refusal(int status) { return fault_answer(fault(status)); }
    static Answer useless() { return answer(reply("getServerPropByNameResponse", nil("info"))); }
    static Answer good() { return discovered({"11;1;2;http;http://chosen"}); }

    std::vector<bool> tls_of_requests() const
    {
        std::vector<bool> tls;
        for (const Request& request : service_.requests()) tls.push_back(request.tls);
        return tls;
    }

    std::string host_part_;
    std::string name_;
};

} // namespace

TEST_F(DiscoveryLadder, EndsAtTheFirstAttemptThatSucceeds)
{
    service_.script(good());
    EXPECT_EQ(ask(name_), 0);
    EXPECT_THAT(session_.lines(), ElementsAreArray(opening_lines(name_) + answered_lines(https_url())));
    EXPECT_THAT(tls_of_requests(), ElementsAreArray({true}));
}

TEST_F(DiscoveryLadder, GoesOnToHttp)
{
    service_.script({refusal(5), good()});
    EXPECT_EQ(ask(name_), 0);
    EXPECT_THAT(session_.lines(), ElementsAreArray(opening_lines(name_) + refused_lines(https_url(), 5) +
                                                   after_https("10") + answered_lines(http_url())));
    EXPECT_THAT(tls_of_requests(), ElementsAreArray({true, false}));
}

TEST_F(DiscoveryLadder, BeginsAgainWithoutATimeOut)
{
    service_.script({refusal(5), refusal(6), good()});
    EXPECT_EQ(ask(name_), 0);
    EXPECT_THAT(session_.lines(), ElementsAreArray(opening_lines(name_) + refused_lines(https_url(), 5) +
                                                   after_https("10") + refused_lines(http_url(), 6) +
                                                   after_http("10") + answered_lines(https_url())));
    EXPECT_THAT(tls_of_requests(), ElementsAreArray({true, false, true}));
}

TEST_F(DiscoveryLadder, TriesHttpWithoutATimeOutLast)
{
    service_.script({refusal(5), refusal(6), refusal(7), good()});
    EXPECT_EQ(ask(name_), 0);
    EXPECT_THAT(session_.lines(), ElementsAreArray(opening_lines(name_) + refused_lines(https_url(), 5) +
                                                   after_https("10") + refused_lines(http_url(), 6) +
                                                   after_http("10") + refused_lines(https_url(), 7) +
                                                   after_https("0") + answered_lines(http_url())));
    EXPECT_THAT(tls_of_requests(), ElementsAreArray({true, false, true, false}));
}

TEST_F(DiscoveryLadder, ReturnsTheStatusOfTheLastOfFourAttempts)
{
    service_.script({refusal(5), refusal(6), refusal(7), refusal(8), good()});
    EXPECT_EQ(ask(name_), 8);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(opening_lines(name_) + refused_lines(https_url(), 5) + after_https("10") +
                                 refused_lines(http_url(), 6) + after_http("10") +
                                 refused_lines(https_url(), 7) + after_https("0") +
                                 refused_lines(http_url(), 8) + after_http("0")));
    EXPECT_EQ(service_.connections(), 4U);
}

TEST_F(DiscoveryLadder, AsksEachUrlOverItsOwnPath)
{
    service_.script({refusal(5), refusal(6), refusal(7), refusal(8)});
    EXPECT_EQ(ask(name_), 8);
    const std::vector<Request> requests = service_.requests();
    ASSERT_EQ(requests.size(), 4U);
    for (const std::size_t i : {0U, 2U}) EXPECT_EQ(requests[i].head.rfind("POST /x:8086 ", 0), 0U);
    for (const std::size_t i : {1U, 3U}) EXPECT_EQ(requests[i].head.rfind("POST /x:8085 ", 0), 0U);
}

TEST_F(DiscoveryLadder, GoesOnAfterInterfacesThatAreAllTooNew)
{
    service_.script({discovered({"11;2;0;http;u"}), good()});
    EXPECT_EQ(ask(name_), 0);
    EXPECT_THAT(session_.texts(), testing::Contains("Could not find a compatible plugin version"));
    EXPECT_EQ(service_.connections(), 2U);
}

TEST_F(DiscoveryLadder, GoesOnAfterAReplyWithoutInformation)
{
    service_.script({useless(), useless(), good()});
    EXPECT_EQ(ask(name_), 0);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(opening_lines(name_) + useless_lines(https_url()) + after_https("10") +
                                 useless_lines(http_url()) + after_http("10") + answered_lines(https_url())));
}

TEST_F(DiscoveryLadder, EndsAfterFourRepliesWithoutInformation)
{
    service_.script({useless(), useless(), useless(), useless(), good()});
    EXPECT_EQ(ask(name_), 2060046);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(opening_lines(name_) + useless_lines(https_url()) + after_https("10") +
                                 useless_lines(http_url()) + after_http("10") + useless_lines(https_url()) +
                                 after_https("0") + useless_lines(http_url()) + after_http("0")));
    const sts_server_info_v8_t untouched{};
    EXPECT_EQ(std::memcmp(info_.get(), &untouched, sizeof untouched), 0);
}

TEST_F(DiscoveryLadder, EndsAtAFaultThatBears0)
{
    service_.script({refusal(0), good()});
    EXPECT_EQ(ask(name_), 0);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
    EXPECT_EQ(service_.connections(), 1U);
}

TEST_F(DiscoveryLadder, GoesOnAfterAConnectionThatIsRefused)
{
    const DeadPort port;
    const std::string name = own_name(host_part_at(port.port()));
    EXPECT_EQ(ask(name), 2060017);
    std::vector<std::string> decisions;
    for (const std::string& text : session_.texts()) {
        if (text.find("could not use") != std::string::npos) decisions.push_back(text);
    }
    EXPECT_THAT(decisions,
                testing::ElementsAre(
                    "stspi_get_server_prop_byname: could not use https with timeout=10; trying http now",
                    "stspi_get_server_prop_byname: could not use http as well with timeout=10",
                    "stspi_get_server_prop_byname: could not use https with timeout=0; trying http now",
                    "stspi_get_server_prop_byname: could not use http as well with timeout=0"));
}

TEST_F(DiscoveryLadder, CutsItsUrlsAt511Characters)
{
    host_part_ += std::string(600, 'y');
    service_.script(good());
    EXPECT_EQ(ask(own_name(host_part_)), 0);
    EXPECT_THAT(session_.texts(), testing::Contains("stspi_get_server_prop_byname: soap_endpoint = " +
                                                    https_url().substr(0, 511)));
}

TEST_F(DiscoveryLadder, IsClimbedWhereTheFileHasOtherServersOnly)
{
    host().write_configuration("another=http://nobody.invalid\n");
    service_.script(good());
    EXPECT_EQ(ask(name_), 0);
    EXPECT_EQ(session_.texts().at(5), "find_ss_name_in_conf: Storage server match not found");
    EXPECT_EQ(session_.texts().at(6), "stspi_get_server_prop_byname: soap_endpoint = " + https_url());
}

TEST_F(DiscoveryLadder, LeadsAnOpenToTheChoice)
{
    service_.script(discovered({"11;1;2;https;" + service_.tls_url() + "/chosen"}));
    EXPECT_EQ(ask(name_), 0);
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(name_, &server), 0);
    const ServerHandle owner(server);
    EXPECT_TRUE(server->use_https);
    EXPECT_EQ(server->endpoint, service_.tls_url() + "/chosen");
    EXPECT_TRUE(service_.requests().at(1).tls);
}
