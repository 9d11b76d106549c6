// Where an open goes: the file, what discovery chose, and the fallback; and whether it uses TLS.
#include "tests/entries/server_fixture.h"

using namespace kit;
using testing::StartsWith;

namespace
{

class OpenServerEndpoint : public ServerTest
{
  protected:
    // The lines of an open up to its call, where the file doesn't exist.
    std::vector<LogLine> opening_lines(const std::string& host_part, const std::string& endpoint)
    {
        return {record("stspi_open_server: enter"),
                record("stspi_open_server: new server_name = " + host_part),
                record("find_ss_name_in_conf: Attempting to open config file " + configuration_path()),
                record("find_ss_name_in_conf: Config file not found"),
                record("stspi_open_server: soap_endpoint = " + endpoint)};
    }
};

} // namespace

TEST_F(OpenServerEndpoint, FallsBackToHttpOnPort8085)
{
    const DeadPort port; // "host:PORT" as the host part leaves ":8085" as a path that nobody serves
    const std::string host_part = "127.0.0.1:" + std::to_string(port.port()) + "/x";
    stsp_server_t* server = nullptr;
    EXPECT_EQ(open(own_name(host_part), &server), 2060017);
    std::vector<LogLine> lines = session_.lines();
    const std::vector<LogLine> opening = opening_lines(host_part, "http://" + host_part + ":8085");
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(std::vector<LogLine>(lines.begin(), lines.begin() + 5), opening);
    EXPECT_EQ(server, nullptr);
}

TEST_F(OpenServerEndpoint, SendsThePlainRequestThereWhereNothingIsKnown)
{
    service_.script(opened());
    const std::string host_part = "127.0.0.1:" + std::to_string(service_.port()) + "/x";
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name(host_part), &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->endpoint, "http://" + host_part + ":8085");
    EXPECT_FALSE(server->use_https);
    EXPECT_FALSE(service_.requests().at(0).tls);
    EXPECT_THAT(service_.requests().at(0).head, StartsWith("POST /x:8085 HTTP/1.1\r\n"));
}

TEST_F(OpenServerEndpoint, UsesWhatDiscoveryChose)
{
    discover(own_name(), {"11;1;2;http;" + service_.url() + "/chosen"});
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name(), &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->endpoint, service_.url() + "/chosen");
    EXPECT_FALSE(server->use_https);
    EXPECT_THAT(service_.requests().at(0).head, StartsWith("POST /chosen HTTP/1.1\r\n"));
    EXPECT_THAT(session_.texts().at(4), "stspi_open_server: soap_endpoint = " + service_.url() + "/chosen");
}

TEST_F(OpenServerEndpoint, UsesTlsWhereDiscoveryChoseHttps)
{
    discover(own_name(), {"11;1;2;https;" + service_.tls_url()});
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name(), &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->endpoint, service_.tls_url());
    EXPECT_TRUE(server->use_https);
    EXPECT_TRUE(service_.requests().at(0).tls);
}

TEST_F(OpenServerEndpoint, PrefersTheFilesUrlAndYetUsesTlsWhereDiscoveryChoseHttps)
{
    discover(own_name(), {"11;1;2;https;https://nobody.invalid"});
    host().write_configuration("host=" + service_.tls_url() + "/from-the-file\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name(), &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->endpoint, service_.tls_url() + "/from-the-file");
    EXPECT_TRUE(server->use_https);
    EXPECT_TRUE(service_.requests().at(0).tls);
}

TEST_F(OpenServerEndpoint, PrefersTheFilesUrlWhereDiscoveryChoseHttp)
{
    discover(own_name(), {"11;1;2;http;http://nobody.invalid"});
    host().write_configuration("host=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name(), &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->endpoint, service_.url());
    EXPECT_FALSE(server->use_https);
}

TEST_F(OpenServerEndpoint, TriesAPlainConnectionToAnHttpsUrlOfTheFileThatDiscoveryNeverReached)
{
    host().write_configuration("host=" + service_.tls_url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name(), &server), 0);
    const ServerHandle owner(server);
    EXPECT_FALSE(server->use_https);
    EXPECT_FALSE(service_.requests().at(0).tls);
}

TEST_F(OpenServerEndpoint, TakesOnlyTheTypeHttpsForHttps)
{
    discover(own_name(), {"11;1;2;HTTPS;" + service_.url()});
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name(), &server), 0);
    const ServerHandle owner(server);
    EXPECT_FALSE(server->use_https);
}

TEST_F(OpenServerEndpoint, DecidesAboutTlsByTheTypeAndNotByTheUrl)
{
    discover(own_name("typed-https"), {"11;1;2;https;" + service_.url()});
    discover(own_name("typed-http"), {"11;1;2;http;" + service_.tls_url()});
    service_.script({opened(), opened()});
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open(own_name("typed-https"), &server), 0);
    const ServerHandle typed_https(server);
    EXPECT_TRUE(server->use_https);
    ASSERT_EQ(open(own_name("typed-http"), &server), 0);
    const ServerHandle typed_http(server);
    EXPECT_FALSE(server->use_https);
    EXPECT_FALSE(service_.requests().at(1).tls);
}

TEST_F(OpenServerEndpoint, SearchesTheMapByTheWholeName)
{
    const std::string host_part = "127.0.0.1:" + std::to_string(service_.port()) + "/fallback";
    discover(own_name(host_part), {"11;1;2;http;http://nobody.invalid"});
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_Other:" + host_part, &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(server->endpoint, "http://" + host_part + ":8085");
}

TEST_F(OpenServerEndpoint, SearchesTheFileByThePartBehindTheFirstColon)
{
    host().write_configuration(
        "b=http://nobody.invalid\nNetwork_X:a:b=http://nobody.invalid\na:b=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:a:b", &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(session_.texts().at(1), "stspi_open_server: new server_name = a:b");
}

TEST_F(OpenServerEndpoint, TakesAnEmptyHostForAnEmptyKey)
{
    host().write_configuration("=" + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    ASSERT_EQ(open("Network_X:", &server), 0);
    const ServerHandle owner(server);
    EXPECT_EQ(session_.texts().at(1), "stspi_open_server: new server_name = ");
}
