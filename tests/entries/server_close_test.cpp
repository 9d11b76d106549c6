#include "tests/entries/server_fixture.h"

using namespace kit;
using testing::ElementsAre;

namespace
{

class CloseServer : public ServerTest
{
};

} // namespace

TEST_F(CloseServer, RefusesANullHandle)
{
    EXPECT_EQ(close_server()(nullptr), 2060001);
}

TEST_F(CloseServer, RefusesAHandleWithoutAServiceHandleAfterItsEndpointLine)
{
    const ServerHandle server = make_server(session_, service_.url(), false, nullptr);
    EXPECT_EQ(close_server()(server.get()), 2060022);
    EXPECT_THAT(session_.lines(),
                ElementsAre(record("stspi_close_server: enter"),
                            record("stspi_close_server: soap_endpoint = " + service_.url())));
    EXPECT_EQ(service_.connections(), 0U);
    EXPECT_STREQ(server->endpoint, service_.url().c_str());
}

TEST_F(CloseServer, SendsTheTokenAndEndsTheHandle)
{
    ServerHandle server = make_server(session_, service_.url(), false, "the token");
    service_.script(closed());
    EXPECT_EQ(close_server()(server.release()), 0);
    EXPECT_EQ(service_.request_body(0),
              element("closeServer", element("serverHandle", element("token", "the token"))));
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_close_server: enter"),
                                              record("stspi_close_server: soap_endpoint = " + service_.url()),
                                              record("stspi_close_server: SOAP return code = 0"),
                                              record("stspi_close_server: STS_EOK")));
    EXPECT_TRUE(session_.ids_were_right());
}

TEST_F(CloseServer, KeepsTheHandleAfterARefusalForASecondTry)
{
    ServerHandle server = make_server(session_, service_.url());
    service_.script({fault_answer(fault(2060005)),
                     {Answer::Manner::kCloseAtOnce, ""},
                     fault_answer(fault_with_detail("")),
                     closed()});
    EXPECT_EQ(close_server()(server.get()), 2060005);
    EXPECT_EQ(close_server()(server.get()), 2060017);
    EXPECT_EQ(close_server()(server.get()), 2060021);
    EXPECT_STREQ(server->service_handle, "T");
    EXPECT_EQ(close_server()(server.release()), 0);
    EXPECT_EQ(service_.connections(), 4U);
}

TEST_F(CloseServer, KeepsTheHandleAfterAFaultThatBears0)
{
    const ServerHandle server = make_server(session_, service_.url());
    service_.script(fault_answer(fault(0)));
    EXPECT_EQ(close_server()(server.get()), 0);
    EXPECT_STREQ(server->service_handle, "T");
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
}

TEST_F(CloseServer, WorksWithoutASession)
{
    ServerHandle server = make_server(session_, service_.url());
    server->session = nullptr;
    service_.script({fault_answer(fault(9)), closed()});
    EXPECT_EQ(close_server()(server.get()), 9);
    EXPECT_EQ(close_server()(server.release()), 0);
}

TEST_F(CloseServer, LeavesOtherHandlesOfTheServerAlone)
{
    ServerHandle first = make_server(session_, service_.url(), false, "first");
    ServerHandle second = make_server(session_, service_.url(), false, "second");
    service_.script({closed(), closed()});
    EXPECT_EQ(close_server()(first.release()), 0);
    EXPECT_EQ(close_server()(second.release()), 0);
    EXPECT_EQ(service_.request_body(1),
              element("closeServer", element("serverHandle", element("token", "second"))));
}
