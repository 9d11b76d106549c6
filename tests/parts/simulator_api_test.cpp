// Who may load what by the simulator's API.
#include "simulator/api/api.h"
#include "simulator/scenario/scenario_reader.h"

#include <gmock/gmock.h>

namespace
{

using namespace soapwrapper::simulator;

constexpr char kFirst[] = R"({"servers": [{"prefix": "first"}]})";
constexpr char kTree[] = R"({"servers": [{"prefix": "t", "lsus": [{"name": "l", "tree": "/"}]}]})";

class SimulatorApi : public testing::Test
{
  protected:
    int status_of_post(const std::string& scenario, bool is_from_loopback) const
    {
        Request request;
        request.method = "POST";
        request.path = "/api/scenario";
        request.body = scenario;
        request.is_from_loopback = is_from_loopback;
        return serve_api(api_, request).status;
    }

    CurrentModel model_{parse_scenario(kFirst), {}, "secret"};
    Interference interference_;
    Recorder recorder_{"secret"};
    Scenarios scenarios_{{"first", kFirst, parse_scenario(kFirst)}, model_};
    Changes changes_{"instance", [] { return 0; }};
    const Api api_{model_, interference_, recorder_, scenarios_, changes_, {}};
};

TEST_F(SimulatorApi, AScenarioWithATreeIsTakenFromThisMachineOnly)
{
    EXPECT_EQ(status_of_post(kTree, false), 403);
    EXPECT_EQ(scenarios_.name(), "first");
    EXPECT_EQ(status_of_post(kFirst, false), 204);
    EXPECT_EQ(status_of_post(kTree, true), 204);
    EXPECT_EQ(scenarios_.text(), kTree);
}

TEST_F(SimulatorApi, ATreeOfASnapshotIsOneToo)
{
    const std::string scenario =
        R"({"servers": [{"prefix": "t", "lsus": [{"name": "a"}, {"name": "b", "snapshots": [
        {"name": "s", "volume": {"device": {"devicePath": "d"}}, "tree": "."}]}]}]})";
    EXPECT_EQ(status_of_post(scenario, false), 403);
}

} // namespace
