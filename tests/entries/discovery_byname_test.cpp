// Discovery of a server whose URL stands in the file: one attempt, and what is made of its reply.
#include "tests/entries/discovery_fixture.h"

#include <future>

using namespace kit;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

LogLine capabilities(const std::string& list = "")
{
    return record("set_server_info_from_soap: capabilities = " + list);
}

class DiscoveryByFile : public Discovery
{
  protected:
    // The lines ahead of the attempt, where the file has the server.
    static Lines file_lines(const std::string& name)
    {
        Lines lines = opening_lines(name);
        lines.back() = record("find_ss_name_in_conf: Config file found");
        lines.push_back(record("find_ss_name_in_conf: Storage server match found"));
        return lines;
    }

    Lines attempt_lines(const std::string& url, int code)
    {
        return {line("soap_endpoint = " + url), line("SOAP return code = " + std::to_string(code))};
    }
};

} // namespace

TEST_F(DiscoveryByFile, RefusesNullArgumentsSilently)
{
    EXPECT_EQ(get_server_prop_byname()(nullptr, "Network_X:h", info_.get()), 2060001);
    EXPECT_EQ(get_server_prop_byname()(session_.get(), nullptr, info_.get()), 2060001);
    EXPECT_EQ(get_server_prop_byname()(session_.get(), "Network_X:h", nullptr), 2060001);
    EXPECT_THAT(session_.lines(), IsEmpty());
}

TEST_F(DiscoveryByFile, RefusesANameWithoutAColonAfterTwoLines)
{
    EXPECT_EQ(ask("Network_X"), 2060001);
    EXPECT_THAT(session_.lines(), ElementsAreArray({line("enter"), line("server_name = Network_X")}));
}

TEST_F(DiscoveryByFile, SendsTheWholeNameAndTheSession)
{
    service_.script(discovered({"11;1;2;http;u"}));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(service_.request_body(0),
              element("getServerPropByName", session_element() + element("server", own_name())));
}

TEST_F(DiscoveryByFile, LogsItsWholeCourse)
{
    service_.script(
        answer(reply("getServerPropByNameResponse",
                     element("info", element("cap", element("item", "5") + element("item", "3")) +
                                         interfaces({"11;1;1;http;one", "bad", "11;1;2;https;two"})))));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_THAT(
        session_.lines(),
        ElementsAreArray(
            file_lines(own_name()) + attempt_lines(service_.url(), 0) +
            Lines{capabilities("5,3"), record("Interface received: 11;1;1;http;one"),
                  record("Interface received: bad"), record("Incorrect number of values specified: bad"),
                  record("Interface received: 11;1;2;https;two"),
                  record("Interface selected: major 11 minor 1 sdk 2 type https url two"), line("STS_EOK")}));
}

TEST_F(DiscoveryByFile, FillsTheHostsRecord)
{
    service_.script(discovered({"11;1;2;http;u", "11;1;1;http;v"}));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_STREQ(info_->server, "the server");
    EXPECT_EQ(info_->flags, 1);
    EXPECT_EQ(info_->maxconnect, 2);
    EXPECT_EQ(info_->nconnect, 3);
    EXPECT_STREQ(info_->requiredInterface[0], "11;1;2;http;u");
    EXPECT_STREQ(info_->requiredInterface[1], "11;1;1;http;v");
    EXPECT_STREQ(info_->requiredInterface[2], "");
}

TEST_F(DiscoveryByFile, UsesTlsForAUrlThatBeginsWithHttps)
{
    service_.script(discovered({"11;1;2;http;u"}));
    EXPECT_EQ(ask_by_file(own_name(), service_.tls_url()), 0);
    EXPECT_TRUE(service_.requests().at(0).tls);
}

TEST_F(DiscoveryByFile, UsesNoTlsForAUrlThatBeginsWithHttpsInAnotherCase)
{
    service_.script(discovered({"11;1;2;http;u"}));
    EXPECT_EQ(ask_by_file(own_name(), "HTTPS://127.0.0.1:" + std::to_string(service_.port())), 0);
    EXPECT_FALSE(service_.requests().at(0).tls);
}

TEST_F(DiscoveryByFile, ReturnsTheStatusOfItsOneAttemptAndTriesNothingElse)
{
    service_.script({fault_answer(fault(2060012)), discovered({"11;1;2;http;u"})});
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 2060012);
    EXPECT_THAT(session_.lines(), ElementsAreArray(file_lines(own_name()) + attempt_lines(service_.url(), 1) +
                                                   Lines{failure(rendered_fault(2060012))}));
    EXPECT_EQ(service_.connections(), 1U);
}

TEST_F(DiscoveryByFile, Returns2060017ForADeadAddress)
{
    const DeadPort port;
    EXPECT_EQ(ask_by_file(own_name(), port.url()), 2060017);
    const Lines lines = session_.lines();
    ASSERT_EQ(lines.size(), 9U);
    EXPECT_EQ(lines[7], line("SOAP return code = 28"));
    EXPECT_EQ(lines[8].level, 4);
}

TEST_F(DiscoveryByFile, Returns0ForAFaultThatBears0)
{
    service_.script(fault_answer(fault(0)));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
}

TEST_F(DiscoveryByFile, RefusesInterfacesThatAreAllTooNewAndFillsTheRecordAllTheSame)
{
    service_.script(discovered({"11;2;0;http;u"}));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 2060008);
    EXPECT_THAT(session_.lines(),
                ElementsAreArray(file_lines(own_name()) + attempt_lines(service_.url(), 0) +
                                 Lines{capabilities(), record("Interface received: 11;2;0;http;u"),
                                       failure("Could not find a compatible plugin version")}));
    EXPECT_STREQ(info_->server, "the server");
    EXPECT_STREQ(info_->requiredInterface[0], "11;2;0;http;u");
}

TEST_F(DiscoveryByFile, AcceptsAServerThatNamesNoInterface)
{
    const std::string host_part = host_part_at(dead_port_.port());
    const std::string name = own_name(host_part);
    for (const std::string& rows : {interfaces({}), nil("requiredInterface"), std::string()}) {
        service_.script(answer(reply("getServerPropByNameResponse", information(rows))));
        EXPECT_EQ(ask_by_file(name, service_.url()), 0);
        EXPECT_THAT(
            session_.lines(),
            ElementsAreArray(file_lines(name) + attempt_lines(service_.url(), 0) +
                             Lines{capabilities(), record("No interface received from storage server"),
                                   record("Interface selected: major 0 minor 0 sdk 0 type  url "),
                                   line("STS_EOK")}));
    }
    EXPECT_EQ(endpoint_of_open(name), "http://" + host_part + ":8085");
}

TEST_F(DiscoveryByFile, CannotUseAReplyWithoutInformationAndChoosesNothingThatStoodInTheRecord)
{
    const std::string host_part = host_part_at(dead_port_.port());
    const std::string name = own_name(host_part);
    std::memset(info_.get(), 0, sizeof *info_);
    std::strcpy(info_->requiredInterface[0], ("11;1;2;http;" + dead_url("stale")).c_str());
    const sts_server_info_v8_t before = *info_;
    for (const std::string& content : {std::string(), nil("info")}) {
        service_.script(answer(reply("getServerPropByNameResponse", content)));
        EXPECT_EQ(ask_by_file(name, service_.url()), 2060046);
        EXPECT_EQ(std::memcmp(info_.get(), &before, sizeof before), 0);
        EXPECT_THAT(session_.lines(),
                    ElementsAreArray(file_lines(name) + attempt_lines(service_.url(), 0) +
                                     Lines{failure("stspi_get_server_prop_byname: the reply has no info")}));
    }
    EXPECT_EQ(endpoint_of_open(name), "http://" + host_part + ":8085");
}

TEST_F(DiscoveryByFile, ReadsTheRowsOfTheRecordAndNotOfTheReply)
{
    std::strcpy(info_->requiredInterface[1], ("11;1;2;http;" + dead_url("left")).c_str());
    service_.script(discovered({"11;1;1;http;u"}));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(endpoint_of_open(own_name()), dead_url("left"));
}

TEST_F(DiscoveryByFile, IgnoresMoreRowsThanTheRecordHolds)
{
    std::vector<std::string> rows;
    for (int i = 0; i < 40; ++i)
        rows.push_back("10;0;" + std::to_string(i) + ";http;" + dead_url(std::to_string(i)));
    service_.script(discovered(rows));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(endpoint_of_open(own_name()), dead_url("31"));
}

TEST_F(DiscoveryByFile, CutsAUrlOfTheFileAt511Characters)
{
    const std::string url = service_.url() + "/" + std::string(600, 'p');
    service_.script(discovered({}));
    EXPECT_EQ(ask_by_file(own_name(), url), 0);
    EXPECT_THAT(session_.texts(),
                testing::Contains("stspi_get_server_prop_byname: soap_endpoint = " + url.substr(0, 511)));
}

TEST_F(DiscoveryByFile, RemembersTheChoiceForAnOpen)
{
    service_.script(discovered({"11;1;2;http;" + dead_url("chosen")}));
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(endpoint_of_open(own_name()), dead_url("chosen"));
}

TEST_F(DiscoveryByFile, ReplacesAnEarlierChoice)
{
    service_.script({discovered({"11;1;2;http;" + dead_url("first")}),
                     discovered({"11;0;0;http;" + dead_url("second")})});
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    std::memset(info_.get(), 0, sizeof *info_);
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(endpoint_of_open(own_name()), dead_url("second"));
}

TEST_F(DiscoveryByFile, KeepsAnEarlierChoiceWhereItFails)
{
    service_.script({discovered({"11;1;2;http;" + dead_url("first")}), fault_answer(fault(5)),
                     discovered({"11;2;0;http;" + dead_url("too-new")}),
                     answer(reply("getServerPropByNameResponse"))});
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 5);
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 2060008);
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 2060046);
    EXPECT_EQ(endpoint_of_open(own_name()), dead_url("first"));
}

TEST_F(DiscoveryByFile, KeepsAnEarlierChoiceWhereTheNewOneHasNoUrl)
{
    service_.script({discovered({"11;1;1;http;" + dead_url("first")}), discovered({"11;1;2;https;"})});
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(ask_by_file(own_name(), service_.url()), 0);
    EXPECT_EQ(session_.texts().at(session_.texts().size() - 2),
              "Interface selected: major 11 minor 1 sdk 2 type https url ");
    EXPECT_EQ(endpoint_of_open(own_name()), dead_url("first"));
}

TEST_F(DiscoveryByFile, KeepsChoicesOfDifferentNamesApart)
{
    service_.script({discovered({"11;1;2;http;" + dead_url("first")}),
                     discovered({"11;1;2;http;" + dead_url("second")})});
    EXPECT_EQ(ask_by_file(own_name("a"), service_.url()), 0);
    EXPECT_EQ(ask_by_file(own_name("b"), service_.url()), 0);
    EXPECT_EQ(endpoint_of_open(own_name("a")), dead_url("first"));
    EXPECT_EQ(endpoint_of_open(own_name("b")), dead_url("second"));
}

TEST_F(DiscoveryByFile, KeepsTheChoiceOfTheOneThatEndsLast)
{
    const std::string name = own_name();
    Answer held = discovered({"11;1;2;http;" + dead_url("last")});
    held.manner = Answer::Manner::kHold;
    service_.script({held, discovered({"11;1;2;http;" + dead_url("first")})});
    host().write_configuration("host=" + service_.url() + "\n");
    RecordedSession other;
    std::future<int> slow = std::async(std::launch::async, [&] {
        const auto info = std::make_unique<sts_server_info_v8_t>();
        return get_server_prop_byname()(other.get(), name.c_str(), info.get());
    });
    service_.wait_for_requests(1);
    EXPECT_EQ(ask(name), 0) << "nothing is locked while a service thinks";
    host().remove_configuration();
    EXPECT_EQ(endpoint_of_open(name), dead_url("first"));
    service_.release();
    EXPECT_EQ(slow.get(), 0);
    EXPECT_EQ(endpoint_of_open(name), dead_url("last"));
}
