// Which requests the simulator's front hands to whom, and what it tells of them.
#include "simulator/front/address.h"
#include "simulator/front/routes.h"
#include "tests/parts/simulator_front.h"

#include <gmock/gmock.h>

#include <future>
#include <string>
#include <vector>

namespace
{

using namespace simulator_front;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;

// For a test, who takes a request is the text that it is answered with; a refusal, its status and methods.
std::string taker(const std::vector<Route>& routes, const Visitors& visitors, const std::string& method,
                  const std::string& path)
{
    const Choice choice = choose_route(routes, visitors, method, path);
    if (choice.route) return choice.route->handler({}).body;
    std::string text = std::to_string(choice.refused.status);
    for (const auto& [name, value] : choice.refused.fields) text.append(" ").append(value);
    return text;
}

constexpr Visitors kHostsOnly{true, false};
constexpr Visitors kPeopleOnly{false, true};
constexpr Visitors kBoth{true, true};

TEST(SimulatorRoutes, APathWinsOverAWildcardAndTheLongerWildcardOverTheShorter)
{
    const std::vector<Route> routes = {{"GET", "", says("rest")},
                                       {"GET", "/*", says("root")},
                                       {"GET", "/api/faults/*", says("fault")},
                                       {"GET", "/api/*", says("api")},
                                       {"GET", "/api/faults", says("faults")}};
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/api/faults"), "faults");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/api/faults/3"), "fault");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/api/faults/3/4"), "fault");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/api/faultsandmore"), "api");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/api/"), "api");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/api"), "root");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "*"), "rest");
    EXPECT_EQ(taker(routes, kHostsOnly, "POST", "/api/faults"), "405 GET") << "the path decides first";
}

TEST(SimulatorRoutes, AnEmptyMethodIsEachOfThem)
{
    const std::vector<Route> routes = {{"GET", "/api/state", says("state")}, {"", "/api/*", says("any")}};
    EXPECT_EQ(taker(routes, kHostsOnly, "PUT", "/api/x"), "any");
    EXPECT_EQ(taker(routes, kHostsOnly, "BREW", "/api/x"), "any");
    EXPECT_EQ(taker(routes, kHostsOnly, "PUT", "/api/state"), "405 GET");
}

TEST(SimulatorRoutes, TheFirstOfEqualRoutesIsTaken)
{
    const std::vector<Route> routes = {{"GET", "/", says("for people"), Audience::kPeople},
                                       {"GET", "/", says("for all"), Audience::kAll}};
    EXPECT_EQ(taker(routes, kBoth, "GET", "/"), "for people");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/"), "for all");
    EXPECT_EQ(taker(routes, kBoth, "PUT", "/"), "405 GET, HEAD") << "each method is named once";
}

TEST(SimulatorRoutes, RoutesForOthersDoNotExist)
{
    const std::vector<Route> routes = {{"POST", "", says("soap")},
                                       {"GET", "/", says("page"), Audience::kPeople},
                                       {"GET", "/api/*", says("api"), Audience::kPeople},
                                       {"GET", "/ns1.xsd", says("schema"), Audience::kAll}};
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/"), "405 POST");
    EXPECT_EQ(taker(routes, kHostsOnly, "POST", "/"), "soap");
    EXPECT_EQ(taker(routes, kHostsOnly, "POST", "/api/x"), "soap");
    EXPECT_EQ(taker(routes, kHostsOnly, "GET", "/ns1.xsd"), "schema");
    EXPECT_EQ(taker(routes, kBoth, "GET", "/"), "page");
    EXPECT_EQ(taker(routes, kBoth, "POST", "/elsewhere"), "soap");
    EXPECT_EQ(taker(routes, kBoth, "GET", "/api/x"), "api");
    EXPECT_EQ(taker(routes, kPeopleOnly, "POST", "/elsewhere"), "404");
    EXPECT_EQ(taker(routes, kPeopleOnly, "GET", "/ns1.xsd"), "schema");
}

TEST(SimulatorRoutes, AHeadIsAskedForAsAGetOfPeopleAndRefusedForHosts)
{
    const std::vector<Route> routes = {{"GET", "/page", says("page"), Audience::kPeople},
                                       {"GET", "/hosts", says("hosts")},
                                       {"HEAD", "/own", says("head"), Audience::kPeople},
                                       {"GET", "/own", says("get"), Audience::kPeople}};
    EXPECT_EQ(taker(routes, kBoth, "HEAD", "/page"), "page");
    EXPECT_EQ(taker(routes, kBoth, "HEAD", "/own"), "head");
    EXPECT_EQ(taker(routes, kBoth, "HEAD", "/hosts"), "405 GET");
}

TEST(SimulatorRoutes, PeopleAreWhereTheListenerHasThem)
{
    const auto have_people = [](Serves serves, bool on_loopback) {
        return visitors_of(serves, on_loopback).people;
    };
    EXPECT_FALSE(have_people(Serves::kHosts, true));
    EXPECT_TRUE(have_people(Serves::kHostsAndPeopleOnLoopback, true));
    EXPECT_FALSE(have_people(Serves::kHostsAndPeopleOnLoopback, false));
    EXPECT_TRUE(have_people(Serves::kPeople, false));
    EXPECT_TRUE(visitors_of(Serves::kHostsAndPeopleOnLoopback, true).hosts);
    EXPECT_FALSE(visitors_of(Serves::kPeople, true).hosts);
}

TEST(SimulatorRoutes, ALoopbackIsANumberOfIt)
{
    for (const char* host : {"127.0.0.1", "127.255.0.9", "::1", "::ffff:127.0.0.1"}) {
        EXPECT_TRUE(is_loopback({host, 1})) << host;
    }
    for (const char* host :
         {"128.0.0.1", "0.0.0.0", "::", "::2", "::ffff:10.0.0.1", "fe80::1", "localhost", ""}) {
        EXPECT_FALSE(is_loopback({host, 1})) << host;
    }
}

// The body of what a listener of that kind answers.
std::string answered_at(Serves serves, const std::string& request)
{
    const RunningServer server({},
                               {{"POST", "", says("soap")}, {"GET", "/", says("page"), Audience::kPeople}},
                               listener(false, serves));
    const ClientSocket client(server.port());
    client.send(request);
    return parse_reply(client.receive_all()).body;
}

TEST(SimulatorRoutes, AListenerServesWhomItIsFor)
{
    EXPECT_EQ(answered_at(Serves::kHosts, get_text("/")), "405 Method Not Allowed\n");
    EXPECT_EQ(answered_at(Serves::kHosts, kEmptyPost), "soap");
    EXPECT_EQ(answered_at(Serves::kHostsAndPeopleOnLoopback, get_text("/")), "page");
    EXPECT_EQ(answered_at(Serves::kPeople, get_text("/")), "page");
    EXPECT_EQ(answered_at(Serves::kPeople, kEmptyPost), "405 Method Not Allowed\n");
}

TEST(SimulatorRoutes, AHeadHasTheLengthAndNoBody)
{
    const RunningServer server({}, {{"GET", "/", says("a page"), Audience::kPeople}},
                               listener(false, Serves::kPeople));
    const ClientSocket client(server.port());
    client.send("HEAD / HTTP/1.1\r\nHost: x\r\n\r\n");
    const HttpReply reply = parse_reply(client.receive_all());
    EXPECT_EQ(reply.status, 200);
    EXPECT_THAT(reply.head, HasSubstr("\r\nContent-Length: 6"));
    EXPECT_EQ(reply.body, "");
}

// The request as the handler had it.
class SimulatorRequest : public testing::Test
{
  protected:
    Request handed_over(const std::string& text, bool is_tls = false, const char* host = "127.0.0.1")
    {
        std::promise<Request> taken;
        const Handler take = [&taken](const Request& request) {
            taken.set_value(request);
            return Answer();
        };
        const RunningServer server({}, {{"", "", take}}, listener(is_tls, Serves::kHosts, host));
        port_ = server.port();
        if (is_tls) {
            const TlsClient client(port_, {}, host);
            client.send(text);
            client.receive_all();
        } else {
            const ClientSocket client(port_, host);
            client.send(text);
            client.receive_all();
        }
        return taken.get_future().get();
    }

    int port_ = 0;
};

TEST_F(SimulatorRequest, HasItsQueryDecodedAndInItsOrder)
{
    const Request request =
        handed_over(get_text("/a%20path?wsdl&name=a%20b%26c&name=d+e&empty=&=f&nul=%00g"));
    EXPECT_EQ(request.path, "/a path");
    EXPECT_THAT(request.query,
                ElementsAre(Pair("wsdl", ""), Pair("name", "a b&c"), Pair("name", "d e"), Pair("empty", ""),
                            Pair("", "f"), Pair("nul", std::string("\0g", 2))));
    ASSERT_NE(query_of(request, "WSDL"), nullptr);
    EXPECT_EQ(*query_of(request, "name"), "a b&c");
    EXPECT_EQ(query_of(request, "nam"), nullptr);
    EXPECT_EQ(query_of(request, "names"), nullptr);
    EXPECT_THAT(handed_over(get_text("/")).query, testing::IsEmpty());
}

TEST_F(SimulatorRequest, HasTheFieldsOfItsHeadInTheirOrder)
{
    const Request request = handed_over("POST / HTTP/1.1\r\nHost: x:1\r\nCookie: a=b\r\nX-Twice: one\r\n"
                                        "x-twice: two\r\nX-Empty:\r\nContent-Length: 4\r\n\r\nbody");
    EXPECT_THAT(request.fields,
                ElementsAre(Pair("Host", "x:1"), Pair("Cookie", "a=b"), Pair("X-Twice", "one"),
                            Pair("x-twice", "two"), Pair("X-Empty", ""), Pair("Content-Length", "4")));
    EXPECT_EQ(request.body, "body");
    ASSERT_NE(field_of(request, "x-TWICE"), nullptr);
    EXPECT_EQ(*field_of(request, "x-TWICE"), "one");
    EXPECT_EQ(field_of(request, "X-Twic"), nullptr);
    EXPECT_EQ(field_of(request, "a"), nullptr);
}

TEST_F(SimulatorRequest, NamesTheAddressThatTheClientReached)
{
    for (const bool is_tls : {false, true}) {
        const Request request = handed_over(kEmptyPost, is_tls, "127.0.0.2");
        EXPECT_EQ(request.server, "127.0.0.2:" + std::to_string(port_));
        EXPECT_THAT(request.client, Not(HasSubstr(":" + std::to_string(port_))));
        EXPECT_EQ(request.is_tls, is_tls);
        EXPECT_TRUE(request.is_from_loopback);
    }
}

} // namespace
