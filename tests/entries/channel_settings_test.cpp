// What soapwrapper.conf may ask of every connection: that it is encrypted, and that what it says is followed
// or nothing is sent at all.
#include "tests/entries/channel_fixture.h"
#include "tests/kit/entry_lines.h"

#include <filesystem>

using namespace kit;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

constexpr char kNoPlain[] = "require_tls in soapwrapper.conf forbids a plain connection";
constexpr char kUnusable[] = "soapwrapper.conf has a value that can't be followed";

class RequireTls : public Channel
{
};

// A value that can't be followed: of which key, and the line.
struct Unusable {
    const char* key;
    const char* value;
};

void PrintTo(const Unusable& unusable, std::ostream* out)
{
    *out << unusable.key << " = " << unusable.value;
}

class UnusableSetting : public Channel, public testing::WithParamInterface<Unusable>
{
};

class ChannelSettings : public Channel
{
};

} // namespace

TEST_F(RequireTls, RefusesAPlainHandleWithoutTouchingTheService)
{
    configure("require_tls = yes\n");
    EXPECT_EQ(close_plainly(), 2060017);
    EXPECT_THAT(session_.lines(), ElementsAreArray(refused_close(service_.url(), kNoPlain, service_.url())));
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(RequireTls, RefusesAnHttpsUrlThatTheHandleCallsPlainly)
{
    configure("require_tls = yes\n");
    EXPECT_EQ(close(service_.tls_url(), false), 2060017);
    EXPECT_EQ(session_.lines().back(), refusal(kNoPlain, service_.tls_url()));
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(RequireTls, RefusesAnHttpUrlOfAHandleThatWouldEncrypt)
{
    configure("require_tls = yes\n");
    EXPECT_EQ(close(service_.url(), true), 2060017);
    EXPECT_EQ(session_.lines().back(), refusal(kNoPlain, service_.url()));
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(RequireTls, LetsAnEncryptedCallPass)
{
    configure("require_tls = yes\n");
    service_.script(closed());
    EXPECT_EQ(close_over_tls(), 0);
    EXPECT_TRUE(service_.requests().at(0).tls);
}

TEST_F(RequireTls, FailsThePropertiesAsAServiceThatCantBeReached)
{
    configure("require_tls = yes\n");
    const ServerHandle server = make_server(session_, service_.url());
    const auto info = std::make_unique<sts_server_info_v8_t>();
    EXPECT_EQ(get_server_prop()(server.get(), info.get()), 2060026);
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(RequireTls, RefusesTheLoginAtAPlainUrlOfTheFile)
{
    configure("require_tls = yes\nfiler = " + service_.url() + "\n");
    stsp_server_t* server = nullptr;
    EXPECT_EQ(open("Network_NTAP:filer", &server), 2060017);
    EXPECT_EQ(server, nullptr);
    EXPECT_EQ(session_.lines().back(), refusal(kNoPlain, service_.url()));
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(RequireTls, RefusesTheLoginAtAPlainUrlThatDiscoveryHasChosen)
{
    const std::string name = own_name();
    discover(name, {"11;1;2;http;" + service_.url()});
    configure("require_tls = yes\n");
    stsp_server_t* server = nullptr;
    EXPECT_EQ(open(name, &server), 2060017);
    EXPECT_EQ(session_.lines().back(), refusal(kNoPlain, service_.url()));
    EXPECT_EQ(service_.connections(), 0U);
}

// Where the encrypted port is blocked, discovery must not go on to the other.
TEST_F(RequireTls, EndsTheFallbackOfDiscoveryToPlainConnections)
{
    const std::string host_part = "127.0.0.1:" + std::to_string(service_.port()) + "/x";
    const std::string name = own_name(host_part);
    configure("require_tls = yes\n");
    service_.script({{Answer::Manner::kCloseAtOnce, ""}, {Answer::Manner::kCloseAtOnce, ""}});
    const auto info = std::make_unique<sts_server_info_v8_t>();
    EXPECT_EQ(get_server_prop_byname()(session_.get(), name.c_str(), info.get()), 2060017);
    EXPECT_EQ(session_.lines().at(12), refusal(kNoPlain, "http://" + host_part + ":8085"));
    EXPECT_EQ(service_.connections(), 2U) << "one for each pass over https";
    EXPECT_THAT(service_.requests(), IsEmpty());
}

TEST_F(RequireTls, LetsPlainCallsPassWhereItIsTurnedOff)
{
    for (const char* value : {"no", "NO", "false", "0"}) {
        SCOPED_TRACE(value);
        configure("require_tls = " + std::string(value) + "\n");
        service_.script(closed());
        EXPECT_EQ(close_plainly(), 0);
    }
}

TEST_F(RequireTls, IsTurnedOnByEachWordForYes)
{
    for (const char* value : {"yes", "YES", "true", "1", " y e s "}) {
        SCOPED_TRACE(value);
        configure("Require_TLS = " + std::string(value) + "\n");
        EXPECT_EQ(close_plainly(), 2060017);
    }
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_P(UnusableSetting, FailsEveryCallAndNamesItsKey)
{
    configure(std::string(GetParam().key) + "=" + GetParam().value + "\n");
    EXPECT_EQ(close_plainly(), 2060017);
    EXPECT_THAT(session_.lines(), ElementsAreArray(refused_close(service_.url(), kUnusable, GetParam().key)));
    EXPECT_EQ(close_over_tls(), 2060017);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(refused_close(service_.tls_url(), kUnusable, GetParam().key)));
    EXPECT_EQ(service_.connections(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Channel, UnusableSetting,
                         testing::Values(Unusable{"require_tls", ""}, Unusable{"require_tls", "maybe"},
                                         Unusable{"require_tls", "2"}, Unusable{"tls_min_version", ""},
                                         Unusable{"tls_min_version", "1.1"},
                                         Unusable{"tls_min_version", "1.4"},
                                         Unusable{"tls_min_version", "TLSv1.2"}, Unusable{"tls_ca_file", ""},
                                         Unusable{"tls_ca_file", "nowhere.pem"},
                                         Unusable{"tls_ca_file", "/dev/null"},
                                         Unusable{"tls_ca_file", "soapwrapper.conf"}));

TEST_F(ChannelSettings, ThatCantBeFollowedEndDiscoveryWithoutAConnection)
{
    configure("tls_min_version = 1\n");
    const std::string host_part = "127.0.0.1:" + std::to_string(service_.port()) + "/x";
    const auto info = std::make_unique<sts_server_info_v8_t>();
    EXPECT_EQ(get_server_prop_byname()(session_.get(), own_name(host_part).c_str(), info.get()), 2060017);
    EXPECT_EQ(service_.connections(), 0U);
    const std::vector<LogLine> lines = session_.lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), refusal(kUnusable, "tls_min_version")), 4);
}

TEST_F(ChannelSettings, AreReadWhenTheHostInitialisesAndNotAtACall)
{
    host().write_configuration("require_tls = yes\n");
    service_.script(closed());
    EXPECT_EQ(close_plainly(), 0);

    host().initialise();
    host().remove_configuration();
    EXPECT_EQ(close_plainly(), 2060017);

    host().initialise();
    service_.script(closed());
    EXPECT_EQ(close_plainly(), 0);
}

TEST_F(ChannelSettings, AreReadAlsoByAHandshakeThatRefusesTheVersion)
{
    host().write_configuration("require_tls = yes\n");
    const std::string path = (host().configuration_file().parent_path() / "libsoapwrapper.so").string();
    stspi_plugin_def_t definition;
    EXPECT_EQ(host().symbol<decltype(stspi_init)>("stspi_init")(10, path.c_str(), &definition), 2060008);
    EXPECT_EQ(close_plainly(), 2060017);
}

TEST_F(ChannelSettings, AreTakenFromTheFirstLineWithTheirKey)
{
    configure("#require_tls = no\nrequire_tls = yes\nrequire_tls = no\n");
    EXPECT_EQ(close_plainly(), 2060017);
}

// Without a file, with an empty one and with one that has other keys a call is the same to the byte.
TEST_F(ChannelSettings, OfAFileThatHasNoneLeaveACallAsItIsWithoutAFile)
{
    const auto lines_and_requests = [&](bool tls) {
        service_.script(closed());
        EXPECT_EQ(tls ? close_over_tls() : close_plainly(), 0);
        const Request request = service_.requests().back();
        return std::make_tuple(session_.texts(), request.head, request.body);
    };
    for (const bool tls : {false, true}) {
        SCOPED_TRACE(tls ? "tls" : "plain");
        const auto without_file = lines_and_requests(tls);
        for (const char* text : {"", "start_snapdiff_max_wait = 1\nfiler = http://filer\n",
                                 "connect_timeout = -1\nreply_timeout = soon\ntext_encoding = EBCDIC\n",
                                 "require_tls = no\nconnect_timeout = 0\ntext_encoding = latin-1\n"}) {
            SCOPED_TRACE(text);
            configure(text);
            EXPECT_EQ(lines_and_requests(tls), without_file);
        }
        host().remove_configuration();
        host().initialise();
    }
}

TEST_F(ChannelSettings, AreReadWithoutALogLine)
{
    session_.clear();
    configure("require_tls = yes\ntls_min_version = 1.3\nconnect_timeout = 5\n");
    EXPECT_THAT(session_.lines(), IsEmpty());
}

// A server may have the name of a key. The one line then says both.
TEST_F(ChannelSettings, StayTheUrlOfAServerThatIsNamedAfterOne)
{
    configure("connect_timeout = " + service_.url() + "\n");
    service_.script(opened());
    stsp_server_t* server = nullptr;
    EXPECT_EQ(open("Network_NTAP:connect_timeout", &server), 0);
    const ServerHandle owner(server);
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(server->endpoint, service_.url());
}
