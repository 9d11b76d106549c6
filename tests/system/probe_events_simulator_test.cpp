// The probe's events against the simulator.
#include "probe_process.h"
#include "tests/system/simulator_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kName[] = "Network_NTAP:filer";

class ProbeEventsOfTheSimulator : public testing::Test
{
  protected:
    ProbeEventsOfTheSimulator()
    {
        folder_.write("soapwrapper.conf",
                      "filer = http://127.0.0.1:" + std::to_string(simulator_.http_port()) + "\n");
    }

    std::string run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--library", PROBE_LIBRARY, "--plugin-path",
                                           (folder_ / "libsoapwrapper.so").string(), "--no-discover"});
        const ProcessResult result =
            run_process(PROBE_PROGRAM, arguments, {{"SOAPWRAPPER_CREDENTIAL", "simulator"}});
        EXPECT_EQ(result.exit_code, 0) << result.err;
        return result.out;
    }

    SimulatorProcess simulator_;
    TemporaryFolder folder_;
};

TEST_F(ProbeEventsOfTheSimulator, TellWhatTheProbeDidBefore)
{
    run({"snapshot", "delete", kName, "home", "nightly.0105", "--yes"});
    run({"export", "create", kName, "home", "nightly.0106", "--host", "h1"});
    run({"image", "delete", kName, "home", "home_1767571200_C1_F1", "01/05/2026", "--yes"});
    EXPECT_EQ(run({"events", kName, "--separator", "|"}),
              "1|inline|server-status|server Network_NTAP:filer: action 1\n"
              "2|detached|server-info|\n"
              "3|detached|activity|snapshot nightly.0105 of LSU home deleted\n"
              "4|inline|activity|snapshot nightly.0106 of LSU home exported\n"
              "5|inline|image-info|image home_1767571200_C1_F1 01/05/2026 of LSU home: 214748364800 bytes, "
              "status 0\n");
    const json last = json::parse(run({"events", kName, "--json", "--from", "5"}));
    EXPECT_EQ(last.at("lsu"), "home");
    EXPECT_EQ(last.at("size"), 214748364800);
}

TEST_F(ProbeEventsOfTheSimulator, AreGoneForAllOnceTheyWereDeleted)
{
    EXPECT_THAT(run({"events", kName, "--delete", "--from", "2"}), HasSubstr("server-info"));
    EXPECT_THAT(run({"events", kName}), HasSubstr("server-status"));
    run({"events", kName, "--delete"});
    EXPECT_THAT(run({"events", kName}), IsEmpty());
    EXPECT_THAT(run({"events", "Network_VAULT:filer"}), HasSubstr("server-status"));
}

} // namespace
