// What a probe that ends before its time leaves open at the simulator: nothing.
#include "probe_process.h"
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace
{

using nlohmann::json;
using testing::HasSubstr;

constexpr char kName[] = "Network_NTAP:filer";

using Words = std::vector<std::string>;

class ProbeEndingAtTheSimulator : public testing::Test
{
  protected:
    ProbeEndingAtTheSimulator()
    {
        folder_.write("soapwrapper.conf",
                      "filer = http://127.0.0.1:" + std::to_string(simulator_.http_port()) + "\n");
    }

    Words complete(Words arguments) const
    {
        arguments.insert(arguments.end(), {"--library", PROBE_LIBRARY, "--plugin-path",
                                           (folder_ / "libsoapwrapper.so").string(), "--no-discover"});
        return arguments;
    }

    // Sessions, and what else is open.
    int open_things() const
    {
        const ClientSocket client(simulator_.http_port());
        client.send("GET /api/state HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        const json state = json::parse(parse_reply(client.receive_all()).body);
        int things = 0;
        for (const json& server : state.at("servers")) {
            things += server.at("sessionCount").get<int>() + server.at("openCount").get<int>();
        }
        return things;
    }

    const std::map<std::string, std::string> kCredential = {{"SOAPWRAPPER_CREDENTIAL", "simulator"}};
    TemporaryFolder folder_;
    // Where these operations take a minute.
    SimulatorProcess simulator_{{"--delay", "listLSU=60000", "--delay", "getServerProp=60000", "--delay",
                                 "openEventChannel=60000", "--delay", "deleteEvent=60000", "--delay",
                                 "listFile=60000", "--delay", "asyncWaitSnap=60000"}};
};

TEST_F(ProbeEndingAtTheSimulator, NothingStaysOpenBehindALimitOfTime)
{
    const Words commands[] = {
        {"lsus", kName},
        {"events", kName},
        {"changes", kName, "projects", "weekly.1", "weekly.2"},
        {"snapshot", "create", kName, "new", "--volume", "nfs:filer1:/vol/home"},
    };
    for (Words command : commands) {
        command.insert(command.end(), {"--timeout", "0.4"});
        const ProcessResult result = run_process(PROBE_PROGRAM, complete(command), kCredential);
        EXPECT_EQ(result.exit_code, 4) << command.front();
        EXPECT_THAT(result.err, HasSubstr("timeout: the service did not answer within 0.4 seconds"));
        EXPECT_EQ(open_things(), 0) << command.front() << '\n' << result.err;
    }
}

} // namespace
