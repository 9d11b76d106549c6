// The true cause of a failure, and how a command line that can't be followed is answered.
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

using Words = std::vector<std::string>;

class ProbeCauses : public ProbeTest
{
  protected:
    ProbeCauses() { answer_all(); }

    ProcessResult logged_in(Words words) const
    {
        return probe(std::move(words), {{"SOAPWRAPPER_CREDENTIAL", "open sesame"}});
    }
    static std::string reply(const std::string& status, const std::string& body)
    {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
               body;
    }
    std::string cleartext() const
    {
        return "warning: the credential went over " + service.url() +
               " in the clear; see require_tls in soapwrapper.conf\n";
    }
};

TEST_F(ProbeCauses, DiscoveryTellsAllItsAttemptsInOrder)
{
    // No resolver is asked about a name with so long a part.
    const std::string host(70, 'x');
    const ProcessResult result = probe({"discover", "Network_store:" + host, "--json"});
    EXPECT_EQ(result.exit_code, 4);
    const std::string https = "https://" + host + ":8086";
    const std::string http = "http://" + host + ":8085";
    EXPECT_THAT(result.err,
                StartsWith("STS_ESOAPERROR(2060017): the host's name could not be resolved; check "
                           "its spelling and the DNS\n    at " +
                           https + "\n    SOAP"));
    EXPECT_THAT(result.err, EndsWith("    Attempts:\n      " + https +
                                     ": the host's name could not be resolved (tried twice)\n      " + http +
                                     ": the host's name could not be resolved (tried twice)\n"));
    const json error = json::parse(result.out).at("error");
    EXPECT_EQ(error.at("url"), https);
    ASSERT_EQ(error.at("attempts").size(), 2U);
    EXPECT_EQ(error.at("attempts").at(1),
              json({{"url", http}, {"failure", "the host's name could not be resolved"}, {"times", 2}}));
}

TEST_F(ProbeCauses, DiscoveryAtOneUrlHasNoListOfAttempts)
{
    service.refuse("getServerPropByName", "no such server", 4711);
    const ProcessResult result = probe({"discover", kName, "--json"});
    EXPECT_THAT(result.err, Not(HasSubstr("Attempts")));
    EXPECT_EQ(json::parse(result.out).at("error").at("url"), service.url());
    EXPECT_EQ(json::parse(result.out).at("error").count("attempts"), 0U);
}

TEST_F(ProbeCauses, WhatAnswersInTheServicesPlaceIsToldApart)
{
    const std::map<std::string, std::string> answers = {
        {reply("404 Not Found", "not here"), "the answer is the HTTP status 404 instead of SOAP; "},
        {reply("503 Service Unavailable", "<html/>"), "the answer is the HTTP status 503 instead of SOAP; "},
        {reply("200 OK", "<html><p>hello</p></html>"), "the answer is no SOAP that can be read; "},
        {reply("200 OK", "garbage"), "the answer is no SOAP that can be read; "},
        {"", "the connection ended before the answer did"}};
    for (const auto& [answer, meaning] : answers) {
        service.answer_raw("getServerPropByName", answer);
        EXPECT_THAT(probe({"discover", kName}).err, StartsWith("STS_ESOAPERROR(2060017): " + meaning))
            << answer;
    }
}

TEST_F(ProbeCauses, AFailureBehindTheLoginNamesTheUrlToo)
{
    service.refuse("openLSUList", "no lists today", 4711);
    for (const Words& more : {Words{}, Words{"--no-discover"}}) {
        Words words = {"lsus", kName, "--json"};
        words.insert(words.end(), more.begin(), more.end());
        const ProcessResult result = logged_in(words);
        EXPECT_EQ(result.exit_code, 4);
        EXPECT_THAT(result.err, HasSubstr("\n    at " + service.url() + "\n"));
        EXPECT_EQ(json::parse(result.out).at("error").at("url"), service.url());
    }
}

TEST_F(ProbeCauses, AFailureBeforeTheServiceIsAskedNamesNoUrl)
{
    const ProcessResult result = probe({"discover", "Disk_store:filer", "--json"});
    EXPECT_EQ(json::parse(result.out).at("error").count("url"), 0U);
}

TEST_F(ProbeCauses, TheUrlOfALostServiceStandsAtTheFailureOfItsProperties)
{
    service.answer_raw("getServerProp", "");
    const ProcessResult result = logged_in({"server", kName});
    EXPECT_THAT(result.err,
                StartsWith("STS_ENOSERVICEHANDLE(2060026): the connection ended before the answer "
                           "did"));
    EXPECT_THAT(result.err, HasSubstr("\n    at " + service.url() + "\n"));
}

TEST_F(ProbeCauses, ALoginInTheClearIsWarnedOfOnce)
{
    for (const Words& words : {Words{"server", kName}, Words{"server", kName, "--no-discover"}}) {
        const ProcessResult result = logged_in(words);
        EXPECT_EQ(result.exit_code, 0);
        EXPECT_EQ(result.login_warning, cleartext());
        EXPECT_THAT(result.err, IsEmpty());
    }
    service.refuse("openServer", "wrong credential", 4711);
    EXPECT_EQ(logged_in({"server", kName}).login_warning, cleartext()) << "it went there all the same";
}

TEST_F(ProbeCauses, ACredentialThatWentNowhereIsNotWarnedOf)
{
    EXPECT_THAT(probe({"discover", kName}).login_warning, IsEmpty());
    EXPECT_THAT(probe({"server", kName}, {{"SOAPWRAPPER_CREDENTIAL", ""}}).login_warning, IsEmpty());
    EXPECT_THAT(logged_in({"server", "Network_store", "--no-discover"}).login_warning, IsEmpty());
    const std::string configuration = "filer = " + service.url() + "\n";
    folder.write("soapwrapper.conf", configuration + "require_tls = yes\n");
    const ProcessResult forbidden = logged_in({"server", kName, "--no-discover"});
    EXPECT_THAT(forbidden.err,
                StartsWith("STS_ESOAPERROR(2060017): require_tls in soapwrapper.conf forbids a "
                           "connection without TLS\n"));
    EXPECT_THAT(forbidden.login_warning, IsEmpty());
    const kit::DeadPort port;
    folder.write("soapwrapper.conf", "filer = " + port.url() + "\n");
    EXPECT_THAT(logged_in({"server", kName, "--no-discover"}).login_warning, IsEmpty());
}

TEST_F(ProbeCauses, ALoginInAUrlOfTheConfigurationIsShownNowhere)
{
    const std::string address = service.url().substr(std::string("http://").size());
    folder.write("soapwrapper.conf", "filer = http://admin:hunter2@" + address + "\n");
    service.refuse("openServer", "wrong credential", 4711);
    for (const char* command : {"discover", "server", "check"}) {
        const ProcessResult result = logged_in({command, kName, "--log", "record"});
        const std::string all = result.out + result.err + result.login_warning;
        EXPECT_THAT(all, HasSubstr("http://(login)@" + address)) << command;
        EXPECT_THAT(all, Not(HasSubstr("hunter2"))) << command;
    }
    EXPECT_THAT(logged_in({"server", kName, "--json"}).out, Not(HasSubstr("hunter2")));
}

TEST_F(ProbeCauses, AMistypedCommandOrOptionIsAnsweredWithTheNearest)
{
    const std::vector<std::pair<Words, std::string>> cases = {
        {{"snapshto"}, "there is no command snapshto; did you mean snapshot?"},
        {{"snapshot", "creat"}, "there is no command snapshot creat; did you mean snapshot create?"},
        {{"cancel"}, "there is no command cancel; did you mean operation cancel?"},
        {{"frobnicate"}, "there is no command frobnicate"},
        {{"lsus", kName, "--limt", "5"},
         "there is no --limt among the options of lsus; did you mean --limit?"},
        {{"lsus", kName, "--jsn"}, "there is no --jsn among the options of lsus; did you mean --json?"},
        {{"snapshot", "create", kName, "s", "--volme", "nfs:a:b"},
         "there is no --volme among the options of snapshot create; did you mean --volume?"}};
    for (const auto& [words, text] : cases) {
        const ProcessResult result = run_process(PROBE_PROGRAM, words);
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, StartsWith("soapwrapper-probe: " + text + "\n"));
    }
}

TEST_F(ProbeCauses, AUsageErrorIsASentenceWithTheUsageAndTheWayToHelp)
{
    const std::vector<std::pair<Words, std::string>> cases = {
        {{}, "a command is missing"},
        {{"rollback"}, "rollback needs a command behind it: check"},
        {{"lsu", kName}, "LSU is missing"},
        {{"lsu"}, "NAME and LSU are missing"},
        {{"snapshots", kName}, "LSU or --volume is required"},
        {{"export", "add", kName, "l", "--volume", "nfs:a:b"}, "--host is missing"},
        {{"lsus", kName, "one", "two"}, "the argument one is one too many"},
        {{"images", kName, "l", "--type", "many"}, "--type takes a number within its range, not many"},
        {{"lsus", kName, "--limit"}, "--limit needs a value"},
        {{"lsus", kName, "--json", "--separator", ","}, "--json and --separator cannot be given together"},
        {{"changes", kName, "l", "a", "b", "--route", "fax"}, "--route: fax not in {service,zapi}"}};
    for (const auto& [words, text] : cases) {
        const ProcessResult result = run_process(PROBE_PROGRAM, words);
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_THAT(result.err, StartsWith("soapwrapper-probe: " + text + "\nUsage: soapwrapper-probe"));
    }
    EXPECT_THAT(
        run_process(PROBE_PROGRAM, {"lsu", kName}).err,
        EndsWith("\nUsage: soapwrapper-probe lsu [OPTIONS] NAME LSU\nHelp:  soapwrapper-probe lsu --help\n"));
}

TEST_F(ProbeCauses, AMistypedTextOfAnyKindIsCleanedAndAnswered)
{
    for (const std::string& word :
         {std::string("\x1b[2J"), std::string(100000, 'x'), std::string("--\xff=\n")}) {
        const ProcessResult result = run_process(PROBE_PROGRAM, {word});
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_THAT(result.err, AllOf(StartsWith("soapwrapper-probe: there is no "), Not(HasSubstr("\x1b"))));
    }
}

} // namespace
