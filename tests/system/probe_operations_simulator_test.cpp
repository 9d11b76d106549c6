// Long operations from end to end: the probe, the library and the simulator.
#include "probe_process.h"
#include "simulator_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <memory>

namespace
{

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using Words = std::vector<std::string>;

const std::string kName = "Network_NTAP:filer1";
const std::string kVolume = "nfs:filer1:/vol/home:/vol/home";

class ProbeAndSimulator : public ::testing::Test
{
  protected:
    // The built-in storage, where a second passes with each request and nobody is told to wait.
    ProbeAndSimulator()
    {
        json scenario = json::parse(run_process(SIMULATOR_PROGRAM, {"--print-scenario"}).out);
        scenario["time"] = "requests";
        scenario["operations"] = {{"retryInterval", 0}};
        const std::string file = folder_.write("scenario.json", scenario.dump());
        simulator_ = std::make_unique<SimulatorProcess>(SimulatorProcess::Arguments{"--scenario", file});
        folder_.write("soapwrapper.conf",
                      "filer1 = http://127.0.0.1:" + std::to_string(simulator_->http_port()) + "\n");
    }

    ProcessResult run(Words arguments) const
    {
        arguments.insert(arguments.end(), {"--library", PROBE_LIBRARY, "--plugin-path",
                                           (folder_ / "libsoapwrapper.so").string()});
        return run_process(PROBE_PROGRAM, arguments, {{"SOAPWRAPPER_CREDENTIAL", "simulator"}});
    }

    std::string snapshots() const { return run({"snapshots", kName, "home", "--separator", "|"}).out; }

  private:
    TemporaryFolder folder_;
    std::unique_ptr<SimulatorProcess> simulator_;
};

TEST_F(ProbeAndSimulator, ASnapshotThatIsCreatedIsThereAfterwards)
{
    const ProcessResult made =
        run({"snapshot", "create", kName, "probe.1", "--volume", kVolume, "--target", "home", "--json"});
    ASSERT_EQ(made.exit_code, 0) << made.err;
    EXPECT_THAT(made.err, IsEmpty());
    const json document = json::parse(made.out);
    EXPECT_EQ(document.at("snapshot"), "probe.1");
    EXPECT_EQ(document.at("server"), kName);
    EXPECT_EQ(document.at("lsu"), "home");
    EXPECT_THAT(snapshots(), HasSubstr("probe.1|"));
}

TEST_F(ProbeAndSimulator, AnOperationOutlivesTheProbeThatStartedIt)
{
    const Words create = {"snapshot", "create",   kName,  "probe.1",   "--volume",
                          kVolume,    "--target", "home", "--no-wait", "--json"};
    const std::string id = json::parse(run(create).out).at("operation_id");
    const ProcessResult waited = run({"operation", "wait", kName, id});
    EXPECT_EQ(waited.exit_code, 0) << waited.err;
    EXPECT_THAT(waited.out, AllOf(HasSubstr(id), HasSubstr("probe.1")));
}

TEST_F(ProbeAndSimulator, AnOperationWithANameCanBeAskedForUntilItHasEnded)
{
    run({"snapshot", "create", kName, "probe.1", "--volume", kVolume, "--target", "home", "--no-wait",
         "--name", "mine"});
    EXPECT_EQ(run({"operation", "wait", kName, "--name", "mine"}).exit_code, 0);
    const ProcessResult status = run({"operation", "status", kName, "--name", "mine", "--separator", "|"});
    EXPECT_EQ(status.out, "operation_name|mine\nstate|ended\n") << status.err;
}

TEST_F(ProbeAndSimulator, ARefusedOperationMakesNoSnapshot)
{
    const ProcessResult refused = run(
        {"snapshot", "create", kName, "probe.1", "--volume", "nfs:nobody:/nothing:/", "--target", "home"});
    EXPECT_EQ(refused.exit_code, 4);
    EXPECT_THAT(refused.err, HasSubstr("HANDLE_SOAP_FAULT: "));
    EXPECT_THAT(snapshots(), Not(HasSubstr("probe.1|")));
}

} // namespace
