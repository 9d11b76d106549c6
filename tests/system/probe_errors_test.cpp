// How soapwrapper-probe tells what went wrong.
#include "probe_fixture.h"
#include "tests/kit/scripted_service.h"

#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

TEST_F(ProbeTest, ErrorOfANamedStatusTellsItsMeaningAndWhatTheServiceSaid)
{
    service.refuse("getServerPropByName", "come back tomorrow", 2060005);
    const ProcessResult result = probe({"discover", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(
        result.err,
        AllOf(StartsWith("STS_EBUSY(2060005): the service is busy and asks to come back later\n    at " +
                         service.url() + "\n    SOAP"),
              HasSubstr("\n    \"come back tomorrow\"\n"), EndsWith("HANDLE_SOAP_FAULT: 2060005\n")));
}

TEST_F(ProbeTest, ErrorOfAnotherNumberIsTheServicesOwn)
{
    for (const int number : {12345, -7}) {
        service.refuse("getServerPropByName", "no", number);
        const ProcessResult result = probe({"discover", kName});
        EXPECT_EQ(result.exit_code, 4);
        EXPECT_THAT(result.err, StartsWith("service status(" + std::to_string(number) +
                                           "): the storage service's own status\n"));
    }
}

TEST_F(ProbeTest, ErrorOfAFaultWithoutANumberSaysSo)
{
    service.refuse_without_detail("getServerPropByName", "no reason");
    const ProcessResult result = probe({"discover", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err,
                AllOf(StartsWith("STS_EFAULTDETAIL(2060021): the service refused without saying why\n"),
                      HasSubstr("no reason")));
}

TEST_F(ProbeTest, ErrorOfARefusalWithTheStatusOfSuccessIsNoSuccess)
{
    service.refuse("getServerPropByName", "sly", 0);
    const ProcessResult result = probe({"discover", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err,
                AllOf(StartsWith("STS_EOK(0): the service refused, but with the status of success\n"),
                      HasSubstr("sly")));
}

TEST_F(ProbeTest, ErrorOfAServiceThatIsNotThere)
{
    const kit::DeadPort port;
    folder.write("soapwrapper.conf", "filer = " + port.url() + "\n");
    const ProcessResult result = probe({"discover", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err,
                AllOf(StartsWith("STS_ESOAPERROR(2060017): the connection was refused; check host and "
                                 "port, and that the service runs\n    at " +
                                 port.url() + "\n"),
                      HasSubstr("\n    \"Connection refused\"\n")));
}

TEST_F(ProbeTest, ErrorOfAnAnswerThatIsNotSoap)
{
    for (const char* answer : {"HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\ngarbage", "garbage", "",
                               "HTTP/1.1 503 Service Unavailable\r\nContent-Length: 0\r\n\r\n"}) {
        service.answer_raw("getServerPropByName", answer);
        const ProcessResult result = probe({"discover", kName});
        EXPECT_EQ(result.exit_code, 4) << answer;
        EXPECT_THAT(result.err, StartsWith("STS_ESOAPERROR(2060017): ")) << answer;
    }
}

TEST_F(ProbeTest, ErrorOfANameThatBelongsToAnotherPlugIn)
{
    const ProcessResult result = probe({"discover", "Disk_store:filer"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_EQ(result.err, "STS_ENOTMINE(2060009): the server name Disk_store:filer bears another plug-in's "
                          "prefix; those of this library begin with Network_\n");
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTest, ErrorOfANameWithoutAColon)
{
    const std::vector<std::vector<std::string>> commands = {{"discover", "Network_store"},
                                                            {"server", "Network_store"},
                                                            {"server", "Network_store", "--no-discover"}};
    for (const std::vector<std::string>& words : commands) {
        const ProcessResult result = probe(words, {{"SOAPWRAPPER_CREDENTIAL", "open sesame"}});
        EXPECT_EQ(result.exit_code, 4);
        EXPECT_THAT(
            result.err,
            StartsWith("STS_ENULLARG(2060001): the server name Network_store has no colon; it is a prefix, "
                       "a colon and a host, such as Network_storage:filer1.example.com\n"));
    }
    EXPECT_THAT(service.operations(), IsEmpty());
}

TEST_F(ProbeTest, ErrorIsAlsoPrintedAsJson)
{
    service.refuse("getServerPropByName", "come\nback", 2060005);
    const ProcessResult result = probe({"discover", kName, "--json"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_EBUSY(2060005): "));
    const json document = json::parse(result.out);
    EXPECT_EQ(document.size(), 2U);
    const json& error = document.at("error");
    EXPECT_EQ(error.at("name"), "STS_EBUSY");
    EXPECT_EQ(error.at("status"), 2060005);
    EXPECT_EQ(error.at("meaning"), "the service is busy and asks to come back later");
    EXPECT_THAT(std::string(error.at("detail")), AllOf(HasSubstr("\"come\nback\"\n"), EndsWith(": 2060005")));
}

TEST_F(ProbeTest, ErrorTextIsCleanedForTerminalAndJson)
{
    service.refuse("getServerPropByName", "red &#27;]0;owned&#7; \xC2\x9B end", 2060005);
    const auto is_clean = AllOf(HasSubstr("red \xEF\xBF\xBD]0;owned\xEF\xBF\xBD \xEF\xBF\xBD end"),
                                Not(HasSubstr("\x1B")), Not(HasSubstr("\x07")), Not(HasSubstr("\xC2\x9B")));
    const ProcessResult result = probe({"discover", kName, "--json", "--log", "failure"});
    EXPECT_THAT(result.err, is_clean);
    EXPECT_THAT(std::string(json::parse(result.out).at("error").at("detail")), is_clean);
}

TEST_F(ProbeTest, ErrorTextOfAnySizeStaysReadable)
{
    std::string flood;
    for (int i = 0; i < 5000; ++i) flood += "line " + std::to_string(i) + "\n";
    service.refuse("getServerPropByName", flood, 2060005);
    const ProcessResult result = probe({"discover", kName});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_LT(std::count(result.err.begin(), result.err.end(), '\n'), 50);
    EXPECT_THAT(result.err, AllOf(HasSubstr("line 1\n"), EndsWith("HANDLE_SOAP_FAULT: 2060005\n")));
}

} // namespace
