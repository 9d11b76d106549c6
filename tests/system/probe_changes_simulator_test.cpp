// soapwrapper-probe changes by both routes, against the simulator and the stand-in for the second plug-in.
#include "probe_process.h"
#include "tests/system/simulator_change_lists.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <sstream>

namespace
{

using nlohmann::json;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Words = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

class ProbeRoutes : public testing::Test
{
  protected:
    explicit ProbeRoutes(const SimulatorProcess::Arguments& arguments = {"-v"}) : simulator_(arguments)
    {
        folder_.write("soapwrapper.conf",
                      "filer = http://127.0.0.1:" + std::to_string(simulator_.http_port()) + "\n");
    }

    ProcessResult run(Words words, Environment environment = {}) const
    {
        environment.emplace("SOAPWRAPPER_CREDENTIAL", "simulator");
        words.insert(words.end(), {"--no-discover", "--library", PROBE_LIBRARY, "--plugin-path",
                                   (folder_ / "libsoapwrapper.so").string()});
        return run_process(PROBE_PROGRAM, words, environment);
    }
    ProcessResult changes(const Words& more, const std::string& base = "weekly.1",
                          const Environment& environment = {}) const
    {
        Words words = {"changes", "Network_NTAP:filer", "projects", base, "weekly.2"};
        words.insert(words.end(), more.begin(), more.end());
        return run(words, environment);
    }
    // By way of the stand-in, with its usual password.
    ProcessResult zapi_changes(Words more, const std::string& base = "weekly.1",
                               Environment environment = {}) const
    {
        environment.emplace("SOAPWRAPPER_ZAPI_PASSWORD", "simulator");
        more.insert(more.end(), {"--route", "zapi", "--zapi-user", "admin", "--manager", ZAPI_STANDIN});
        return changes(more, base, environment);
    }
    static std::vector<std::string> lines(const std::string& text, bool sorted = true)
    {
        std::vector<std::string> all;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) all.push_back(line);
        if (sorted) std::sort(all.begin(), all.end());
        return all;
    }
    static json last(const ProcessResult& result) { return json::parse(lines(result.out, false).back()); }

    TemporaryFolder folder_;
    SimulatorProcess simulator_;
};

const Words kBare = {"--separator", "|"};

Words bare(const Words& more)
{
    Words words = kBare;
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

TEST_F(ProbeRoutes, BothRoutesTellTheSame)
{
    const std::vector<std::string> expected = {
        "changed|directory|4096|2026-01-12T00:00:00Z|/mnt/p/bridge",
        "changed|directory|4096|2026-01-12T00:00:00Z|/mnt/p/tunnel",
        "changed|file|215040|2026-01-12T00:00:00Z|/mnt/p/bridge/plan.dwg",
        "created|file|65536|2026-01-12T00:00:00Z|/mnt/p/bridge/L\xc3\xa4ngsschnitt.pdf",
        "deleted|file|512|2026-01-05T00:00:00Z|/mnt/p/tunnel/old notes.txt"};
    EXPECT_EQ(lines(changes(bare({"--route", "service", "--mount", "/mnt/p"})).out), expected);
    EXPECT_EQ(lines(zapi_changes(bare({"--mount", "/mnt/p"})).out), expected);
    EXPECT_EQ(lines(changes(kBare).out), lines(zapi_changes(kBare).out)) << "as the filer sees them";
}

TEST_F(ProbeRoutes, TheSumTellsTheRoute)
{
    EXPECT_EQ(last(changes({"--json"})).at("route"), "service");
    EXPECT_EQ(last(zapi_changes({"--json"})).at("route"), "zapi");
    EXPECT_EQ(last(zapi_changes({"--json", "--mount", "/mnt/p"})).at("route"), "zapi");
}

TEST_F(ProbeRoutes, AFiltersEffectIsTheSameByBothRoutes)
{
    const Words filtered = bare({"--filter", "tunnel", "--filter", "nope"});
    EXPECT_EQ(lines(changes(filtered).out).size(), 2U);
    EXPECT_EQ(lines(changes(filtered).out), lines(zapi_changes(filtered).out));
}

TEST_F(ProbeRoutes, WithoutABaseTheSecondPlugInListsAll)
{
    const ProcessResult result = zapi_changes(kBare, "-");
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(lines(result.out).size(), 6U);
    EXPECT_THAT(lines(result.out), Each(StartsWith("created|")));
}

TEST_F(ProbeRoutes, AWrongPasswordIsRefusedAndNeverShown)
{
    const ProcessResult result =
        zapi_changes({"--log", "record"}, "weekly.1", {{"SOAPWRAPPER_ZAPI_PASSWORD", "s3cret word"}});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, HasSubstr("(2069002)"));
    EXPECT_THAT(result.err, HasSubstr("the filer refuses the user or the password"));
    EXPECT_THAT(result.out + result.err, Not(HasSubstr("s3cret")));
    EXPECT_EQ(simulator_.stop(SIGTERM), 0);
    EXPECT_THAT(simulator_.errors(), Not(HasSubstr("s3cret")));
    EXPECT_THAT(simulator_.errors(), HasSubstr("closeServer: ok"));
}

TEST_F(ProbeRoutes, APasswordWithBlanksArrivesWhole)
{
    const ProcessResult result = zapi_changes(
        kBare, "weekly.1",
        {{"SOAPWRAPPER_ZAPI_PASSWORD", "two  words "}, {"SOAPWRAPPER_SIM_ZAPI_PASSWORD", "two  words "}});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(lines(result.out).size(), 5U);
}

TEST_F(ProbeRoutes, AListThatTheSecondPlugInLacksComesFromTheServiceWithAWarning)
{
    // Its filer has the volume and none of the snapshots.
    const std::string other = folder_.write(
        "other.json", R"({"servers": [{"prefix": "N", "lsus": [{"name": "l", "volumes": [)"
                      R"({"ndmp": {"exportfiler": "filer1", "exportpath": "/vol/projects"}}]}]}]})");
    const ProcessResult result = zapi_changes({"--json"}, "weekly.1", {{"SOAPWRAPPER_SIM_SCENARIO", other}});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(last(result).at("route"), "service");
    EXPECT_EQ(last(result).at("entries"), 5);
    EXPECT_EQ(result.err,
              "warning: the second plug-in did not open the list, so it comes from the service\n");
}

TEST_F(ProbeRoutes, WithoutAManagerTheRouteFailsAndTheReasonIsTold)
{
    const ProcessResult result = changes({"--route", "zapi", "--zapi-user", "admin"}, "weekly.1",
                                         {{"SOAPWRAPPER_ZAPI_PASSWORD", "simulator"}});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_ENULLARG(2060001): no plug-in manager is loaded, so there is no "
                                       "second plug-in for the route zapi; load one with --manager"));
}

TEST_F(ProbeRoutes, AManagerThatIsNoneIsALibraryThatCannotBeLoaded)
{
    const std::string text = folder_.write("manager.so", "no library");
    for (const std::string& path : {text, std::string("/nowhere/manager.so")}) {
        const ProcessResult result = changes({"--manager", path});
        EXPECT_EQ(result.exit_code, 3);
        EXPECT_THAT(result.err, StartsWith("library: the plug-in manager could not be loaded\n"));
    }
    const ProcessResult result = changes({"--manager", PROBE_LIBRARY});
    EXPECT_EQ(result.exit_code, 3);
    EXPECT_THAT(result.err, StartsWith("library: the plug-in manager does not export stsm_init\n"));
}

TEST_F(ProbeRoutes, SnapshotsThatAreNotReadByNdmpHaveNoChanges)
{
    const ProcessResult result =
        run({"changes", "Network_NTAP:filer", "home", "nightly.0105", "nightly.0106"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err, StartsWith("STS_ESOAPERROR(2060017): nightly.0105 is a snapshot of nfs:"));
    EXPECT_THAT(result.err, HasSubstr(", and the library lists changes of NDMP volumes only\n"));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(ProbeRoutes, ASnapshotOrAnLsuThatIsNotThereIsNamed)
{
    const ProcessResult snapshot = changes({}, "weekly.9");
    EXPECT_EQ(snapshot.exit_code, 4);
    EXPECT_THAT(snapshot.err, HasSubstr("): snapshot weekly.9 of LSU projects: "));
    const ProcessResult lsu = run({"changes", "Network_NTAP:filer", "nowhere", "weekly.1", "weekly.2"});
    EXPECT_EQ(lsu.exit_code, 4);
    EXPECT_THAT(lsu.err, HasSubstr("): snapshot weekly.1 of LSU nowhere: "));
}

TEST_F(ProbeRoutes, AVolumeThatTheLsuDoesNotKnowMayBeTheCause)
{
    const ProcessResult result = changes({"--volume", "ndmp:filer1:/vol/other"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_THAT(result.err,
                HasSubstr("; the cause may be that --volume is ndmp:filer1:/vol/other, while weekly.2 "
                          "lies on ndmp:filer1:/vol/projects\n"));
}

TEST_F(ProbeRoutes, OddWishesAreWarnedOfAndMetAllTheSame)
{
    const ProcessResult same = changes(kBare, "weekly.2");
    EXPECT_EQ(same.exit_code, 0);
    EXPECT_THAT(same.err,
                StartsWith("warning: BASE and DIFF are both weekly.2, and nothing differs from itself\n"));
    const ProcessResult shown = changes(bare({"--mount", "/mnt/p", "--filter", "/mnt/p/tunnel"}));
    EXPECT_EQ(shown.exit_code, 0);
    EXPECT_THAT(shown.out, IsEmpty());
    EXPECT_THAT(shown.err,
                StartsWith("warning: the filter /mnt/p/tunnel begins with the mount, but a filter is a "
                           "path below the volume: /tunnel may be meant\n"));
    const ProcessResult relative = changes(bare({"--mount", "mnt/p"}));
    EXPECT_EQ(relative.exit_code, 0);
    EXPECT_THAT(relative.err, StartsWith("warning: the mount \"mnt/p\" is not an absolute path"));
}

class ProbeDiscovery : public testing::Test
{
  protected:
    // An address of this process's own, where the well-known ports are free.
    static std::string own_address()
    {
        const auto id = static_cast<unsigned int>(getpid());
        return "127." + std::to_string(1 + id % 250) + '.' + std::to_string(id / 250 % 256) + '.' +
               std::to_string(2 + id / 64000 % 250);
    }
    ProcessResult run(Words words) const
    {
        words.insert(words.end(), {"Network_NTAP:" + address_, "--library", PROBE_LIBRARY, "--plugin-path",
                                   (folder_ / "libsoapwrapper.so").string()});
        return run_process(PROBE_PROGRAM, words, {{"SOAPWRAPPER_CREDENTIAL", "simulator"}});
    }

    const std::string address_ = own_address();
    TemporaryFolder folder_;
};

TEST_F(ProbeDiscovery, WhatTheServiceSaysOverTlsIsToldAndNotThePlainPortThatIsClosed)
{
    const SimulatorProcess simulator(SimulatorProcess::Exactly{
        {"--no-http", "--https", address_ + ":8086", "--fault", "getServerPropByName=2060012"}});
    const ProcessResult result = run({"discover", "--json"});
    EXPECT_EQ(result.exit_code, 4);
    const json error = json::parse(result.out).at("error");
    EXPECT_EQ(error.at("name"), "STS_ESOAPERROR");
    EXPECT_EQ(error.at("status"), 2060017);
    EXPECT_EQ(error.at("url"), "https://" + address_ + ":8086");
    EXPECT_THAT(std::string(error.at("meaning")),
                HasSubstr("failed with STS_EINUSE(2060012): the resource is"));
    EXPECT_THAT(std::string(error.at("detail")), HasSubstr("HANDLE_SOAP_FAULT: 2060012"));
    EXPECT_THAT(result.err,
                HasSubstr("      http://" + address_ + ":8085: the connection was refused (tried twice)\n"));
}

TEST_F(ProbeDiscovery, ALoginOverTlsIsNotWarnedOf)
{
    const SimulatorProcess simulator(SimulatorProcess::Exactly{{"--no-http", "--https", address_ + ":8086"}});
    const ProcessResult result = run({"server"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.login_warning, "");
}

class ProbeRoutesInBatches : private simulator_change_lists::ScenarioFile, public ProbeRoutes
{
  protected:
    ProbeRoutesInBatches()
        : ScenarioFile(R"({"batch": 7, "busy": 2})", 3000), ProbeRoutes({"--scenario", ScenarioFile::path()})
    {
    }
};

TEST_F(ProbeRoutesInBatches, ALongListIsWholeAndHasNothingTwice)
{
    const ProcessResult result = run({"changes", "Network_NTAP:filer", "data", "a", "b", "--separator", "|"});
    EXPECT_EQ(result.exit_code, 0);
    std::vector<std::string> all = lines(result.out);
    EXPECT_EQ(all.size(), 3000U);
    EXPECT_TRUE(std::adjacent_find(all.begin(), all.end()) == all.end());
}

} // namespace
