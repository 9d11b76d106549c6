#include "tests/entries/server_fixture.h"

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

class Tls : public ServerTest
{
};

} // namespace

TEST_F(Tls, EncryptsACallOfAnHttpsHandleWithoutCheckingThePeer)
{
    ServerHandle server = make_server(session_, service_.tls_url(), true);
    service_.script(closed());
    EXPECT_EQ(close_server()(server.release()), 0);
    EXPECT_TRUE(service_.requests().at(0).tls);
    EXPECT_THAT(session_.lines(),
                ElementsAre(record("stspi_close_server: enter"),
                            record("stspi_close_server: soap_endpoint = " + service_.tls_url()),
                            record("stspi_close_server: SOAP return code = 0"),
                            record("stspi_close_server: STS_EOK")));
}

TEST_F(Tls, CarriesAFaultOfTheService)
{
    const ServerHandle server = make_server(session_, service_.tls_url(), true);
    service_.script(fault_answer(fault(2060013)));
    EXPECT_EQ(close_server()(server.get()), 2060013);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(2060013)));
}

TEST_F(Tls, IsNotUsedByAPlainHandleWhateverTheUrlSays)
{
    ServerHandle server = make_server(session_, service_.tls_url(), false);
    service_.script(closed());
    EXPECT_EQ(close_server()(server.release()), 0);
    EXPECT_FALSE(service_.requests().at(0).tls);
}

TEST_F(Tls, IsNotUsedByAPlainHandleWhateverTheCaseOfTheScheme)
{
    ServerHandle server =
        make_server(session_, "HTTPS://127.0.0.1:" + std::to_string(service_.port()), false);
    service_.script(closed());
    EXPECT_EQ(close_server()(server.release()), 0);
    EXPECT_FALSE(service_.requests().at(0).tls);
}

TEST_F(Tls, ReportsAPeerThatSpeaksNoTlsLikeAnyOtherTransportError)
{
    const ServerHandle server = make_server(session_, service_.tls_url(), true);
    service_.script({Answer::Manner::kRefuseHandshake, ""});
    EXPECT_EQ(close_server()(server.get()), 2060017);
    const std::vector<LogLine> lines = session_.lines();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[2], record("stspi_close_server: SOAP return code = 30"));
    EXPECT_EQ(lines[3].level, 4);
    EXPECT_THAT(lines[3].text, HasSubstr("Detail: SSL/TLS handshake failed\n"));
    EXPECT_THAT(lines[3].text, testing::Not(HasSubstr("HANDLE_SOAP_FAULT")));
}

TEST_F(Tls, ReportsAPeerThatHangsUpInTheHandshake)
{
    const ServerHandle server = make_server(session_, service_.tls_url(), true);
    service_.script({{Answer::Manner::kCloseAtOnce, ""}, {Answer::Manner::kResetAtOnce, ""}});
    EXPECT_EQ(close_server()(server.get()), 2060017);
    EXPECT_EQ(close_server()(server.get()), 2060017);
}
