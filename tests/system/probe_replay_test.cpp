// What the probe records, replayed by the simulator.
#include "probe_process.h"
#include "tests/kit/scripted_service.h"
#include "tests/system/simulator_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <filesystem>
#include <regex>

namespace
{

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Words = std::vector<std::string>;

constexpr char kName[] = "Network_NTAP:filer";
constexpr char kCredential[] = "open-sesame-42";

class ProbeRecordings : public testing::Test
{
  protected:
    // A command against a service that the configuration names for the host `filer` or another.
    ProcessResult run(const SimulatorProcess& service, Words words, const std::string& scheme = "http",
                      const std::string& host = "filer") const
    {
        const int port = scheme == "http" ? service.http_port() : service.https_port();
        const std::string url = scheme + "://127.0.0.1:" + std::to_string(port);
        words.insert(words.end(), {"--library", PROBE_LIBRARY, "--config",
                                   folder_.write("test.conf", host + " = " + url + "\n")});
        return run_process(PROBE_PROGRAM, words, {{"SOAPWRAPPER_CREDENTIAL", kCredential}});
    }
    ProcessResult record(const SimulatorProcess& service, Words words, const std::string& scheme = "http")
    {
        words.insert(words.end(), {"--record", (folder_ / "one").string()});
        const ProcessResult result = run(service, words, scheme);
        recorded_ += read_file(folder_ / "one");
        return result;
    }

    // What was recorded so far, for a simulator's command line.
    Words replay_of_all() const { return {"--replay", folder_.write("all", recorded_), "-v"}; }

    // As standard output would be if the service were reached at no port.
    static std::string without_ports(std::string text, const SimulatorProcess& service)
    {
        for (const int port : {service.http_port(), service.https_port()}) {
            text = std::regex_replace(text, std::regex(":" + std::to_string(port)), ":PORT");
        }
        return text;
    }

    TemporaryFolder folder_;
    std::string recorded_;
};

TEST_F(ProbeRecordings, LetEachCommandSayWhatItSaidOverHttpAndHttps)
{
    json scenario = json::parse(run_process(SIMULATOR_PROGRAM, {"--print-scenario"}).out);
    scenario["time"] = "requests";
    scenario["operations"] = {{"retryInterval", 0}};
    const std::string file = folder_.write("scenario.json", scenario.dump());
    const std::vector<std::pair<std::string, Words>> session = {
        {"https", {"discover", kName}},
        {"http", {"lsus", kName, "--json"}},
        {"https", {"images", kName, "home"}},
        {"http",
         {"snapshot", "create", kName, "s", "--volume", "nfs:filer1:/vol/home:/vol/home", "--target", "home",
          "--name", "nightly", "--json"}},
        {"https", {"snapshots", kName, "home"}},
        {"http", {"changes", kName, "projects", "weekly.1", "weekly.2", "--separator", "|"}},
        {"http", {"events", kName}},
        {"https", {"image", "delete", kName, "home", "none", "01/01/2026", "--yes", "--json"}}};
    std::vector<ProcessResult> before;
    std::vector<std::string> outputs;
    {
        const SimulatorProcess service({"--scenario", file, "--credential", kCredential});
        for (const auto& [scheme, words] : session) {
            before.push_back(record(service, words, scheme));
            outputs.push_back(without_ports(before.back().out, service));
        }
    }
    const SimulatorProcess replay(replay_of_all());
    for (std::size_t i = 0; i < session.size(); ++i) {
        const ProcessResult now = run(replay, session[i].second, session[i].first);
        EXPECT_EQ(now.exit_code, before[i].exit_code) << session[i].second[0] << before[i].err;
        EXPECT_EQ(without_ports(now.out, replay), outputs[i]);
        EXPECT_THAT(outputs[i], Not(IsEmpty()));
    }
    EXPECT_EQ(before.front().exit_code, 0);
    EXPECT_EQ(before.back().exit_code, 4);
}

TEST_F(ProbeRecordings, LetEachTroubleComeAgain)
{
    const Words troubles = {"2060005",         "cut",   "empty",      "garbage",
                            "malformed-chunk", "reset", "http-error", "dribble:1"};
    Words arguments = {"--credential", kCredential};
    for (const std::string& each : troubles) {
        arguments.insert(arguments.end(), {"--fault", "openLSUList=" + each + ",1"});
    }
    std::vector<ProcessResult> before;
    {
        const SimulatorProcess service(arguments);
        for (std::size_t i = 0; i < troubles.size(); ++i) {
            before.push_back(record(service, {"lsus", kName}));
            before.back().err = without_ports(before.back().err, service);
        }
    }
    const SimulatorProcess replay(replay_of_all());
    for (std::size_t i = 0; i < troubles.size(); ++i) {
        const ProcessResult now = run(replay, {"lsus", kName});
        EXPECT_EQ(now.exit_code, before[i].exit_code) << troubles[i];
        EXPECT_EQ(now.out, before[i].out) << troubles[i];
        EXPECT_EQ(without_ports(now.err, replay), before[i].err) << troubles[i];
        EXPECT_EQ(now.exit_code == 0, troubles[i] == "dribble:1") << troubles[i];
    }
}

TEST_F(ProbeRecordings, HoldNoCredentialAndNoToken)
{
    const SimulatorProcess service({"--credential", kCredential});
    record(service, {"lsus", kName}, "https");
    EXPECT_THAT(recorded_, AllOf(HasSubstr("openServer"), HasSubstr("<ns1:cert>***</ns1:cert>"),
                                 HasSubstr("[token 1]"), Not(HasSubstr(kCredential))));
    for (const char* encoded : {"b3Blbi1zZXNhbWUtND", "9wZW4tc2VzYW1lLTQy", "vcGVuLXNlc2FtZS00M"}) {
        EXPECT_THAT(recorded_, Not(HasSubstr(encoded)));
    }
    EXPECT_FALSE(std::regex_search(recorded_, std::regex("[0-9a-f]{32}")));
    EXPECT_EQ(std::filesystem::status(folder_ / "one").permissions(),
              static_cast<std::filesystem::perms>(0600));
    EXPECT_THAT(recorded_.substr(0, recorded_.find('\n')),
                AllOf(HasSubstr("{\"recording\":1,"), HasSubstr("soapwrapper-probe " SOAPWRAPPER_VERSION)));
}

TEST_F(ProbeRecordings, OfARefusedConnectionAreToldAtTheReplaysStart)
{
    const kit::DeadPort port;
    folder_.write("dead.conf", "filer = " + port.url() + "\n");
    run_process(PROBE_PROGRAM, {"discover", kName, "--library", PROBE_LIBRARY, "--config",
                                (folder_ / "dead.conf").string(), "--record", (folder_ / "one").string()});
    SimulatorProcess replay({"--replay", (folder_ / "one").string()});
    EXPECT_EQ(replay.stop(SIGTERM), 0);
    EXPECT_THAT(replay.errors(), HasSubstr("failed when this was recorded; they will not fail now"));
}

TEST_F(ProbeRecordings, ThatCannotBeWrittenFailTheCommandBehindItsOutput)
{
    const SimulatorProcess service({"--credential", kCredential});
    const ProcessResult full = run(service, {"lsus", kName, "--record", "/dev/full"});
    EXPECT_EQ(full.exit_code, 4);
    EXPECT_THAT(full.out, HasSubstr("home"));
    EXPECT_THAT(full.err, HasSubstr("record: it could not be written"));
    const ProcessResult nowhere = run(service, {"lsus", kName, "--record", (folder_ / "no/file").string()});
    EXPECT_EQ(nowhere.exit_code, 2);
    EXPECT_THAT(nowhere.out, IsEmpty());
}

TEST_F(ProbeRecordings, AreReplayedUnderAnotherHostAndForAnotherCredential)
{
    {
        const SimulatorProcess service({"--credential", kCredential});
        record(service, {"lsus", kName});
    }
    SimulatorProcess replay(replay_of_all());
    EXPECT_THAT(replay.urls(), Contains("operation listLSU 5"));
    EXPECT_THAT(run(replay, {"lsus", "Network_NTAP:127.0.0.1"}, "https", "127.0.0.1").out,
                HasSubstr("archive"));
    const ProcessResult missing =
        run(replay, {"claim", "Network_NTAP:127.0.0.1", "--volume", "nfs:a:b"}, "http", "127.0.0.1");
    EXPECT_EQ(missing.exit_code, 4);
    EXPECT_THAT(missing.err, HasSubstr("the recording holds no answer to claimVolume"));
    EXPECT_EQ(replay.stop(SIGTERM), 0);
    EXPECT_THAT(replay.errors(),
                AllOf(HasSubstr("closeServer: replayed"), Not(HasSubstr("was another")),
                      HasSubstr("openServer: replayed 2 again"), HasSubstr("claimVolume: no answer left")));
}

TEST(SimulatorReplay, RefusesWhatIsNoRecordingAndOptionsThatSimulate)
{
    const TemporaryFolder folder;
    const std::string good =
        folder.write("good", "{\"recording\":1,\"program\":\"\",\"library\":\"\",\"time\":\"\"}\n");
    const std::string bad = folder.write("bad", "{}\n");
    const ProcessResult refused = run_process(SIMULATOR_PROGRAM, {"--replay", bad});
    EXPECT_EQ(refused.exit_code, 2);
    EXPECT_THAT(refused.err, HasSubstr("line 1: the member \"recording\" is missing"));
    for (const Words& more :
         {Words{"--fault", "openServer=1"}, Words{"--scenario", good}, Words{"--credential", "x"},
          Words{"--page", "127.0.0.1:0"}, Words{"--dump", "x"}}) {
        Words words = {"--replay", good};
        words.insert(words.end(), more.begin(), more.end());
        const ProcessResult result = run_process(SIMULATOR_PROGRAM, words);
        EXPECT_EQ(result.exit_code, 2) << more[0];
        EXPECT_THAT(result.err, HasSubstr(more[0] + " excludes --replay"));
    }
    EXPECT_EQ(run_process(SIMULATOR_PROGRAM, {"--replay-times"}).exit_code, 2);
}

} // namespace
