// Another storage takes the place of the one that requests are at work on.
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/storage/current_model.h"
#include "simulator/storage/events_view.h"
#include "simulator/storage/operations_view.h"
#include "simulator/storage/snapshot_operations.h"
#include "simulator/storage/storage_view.h"
#include "tests/parts/fault_of.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace
{

using namespace soapwrapper::simulator;
using testing::SizeIs;

const Credential kCredential{kCredentialType, "secret"};

// The volume lies in the last LSU of the last server, of as many each.
Scenario scenario(int size)
{
    std::string servers;
    for (int i = 0; i < size; ++i) {
        std::string lsus;
        for (int j = 0; j < size; ++j) {
            lsus += (j == 0 ? "" : ",") + std::string(R"({"name": "l)") + std::to_string(j) + "\"" +
                    (j + 1 < size ? "}" : R"(, "volumes": [{"device": {"devicePath": "d"}}]})");
        }
        servers += (i == 0 ? "" : ",") + std::string(R"({"prefix": ")") +
                   (i + 1 < size ? std::to_string(i) : "last") + R"(", "lsus": [)" + lsus + "]}";
    }
    return parse_scenario(R"({"operations": {"seconds": {"create": 0}}, "servers": [)" + servers + "]}");
}

VolumeStart start_of(const std::string& session, const std::string& snapshot)
{
    VolumeStart start;
    start.session = session;
    start.volume = {VolumeKind::kDevice, {"d", "", ""}};
    start.definition.name = snapshot;
    return start;
}

TEST(SimulatorReload, ARequestThatIsUnderWayKeepsToTheStorageThatItBeganWith)
{
    CurrentModel current(scenario(3), {}, "secret");
    const std::shared_ptr<Model> model = current.get();
    const std::string session = model->use().open_server("last:host", kCredential);
    const LongOperation operation = create_operation(*model, start_of(session, "s"));
    current.load(scenario(1));
    const Model::Use old = model->use();
    old.operations().start(operation, old->now());
    EXPECT_EQ(old->session(session).server, 2U);
    EXPECT_THAT(current.get()->use()->servers(), SizeIs(1));
    EXPECT_EQ(fault_of([&] { current.get()->use()->session(session); }), kBadHandle);
    EXPECT_EQ(fault_of([&] { create_operation(*current.get(), start_of(session, "s")); }), kBadHandle);
}

TEST(SimulatorReload, TheOneThatIsReplacedLivesUntilItsLastRequestHasEnded)
{
    CurrentModel current(scenario(1), {}, "secret");
    std::shared_ptr<Model> model = current.get();
    const std::weak_ptr<Model> watched = model;
    current.load(scenario(1));
    EXPECT_FALSE(watched.expired());
    model.reset();
    EXPECT_TRUE(watched.expired());
}

// Nobody waits for another, whatever is replaced in the meantime.
TEST(SimulatorReload, RequestsAndLooksGoOnWhileStoragesAreReplaced)
{
    CurrentModel current(scenario(4), {}, "secret");
    std::atomic<bool> is_over{false};
    std::vector<std::thread> threads;
    for (int client = 0; client < 3; ++client) {
        threads.emplace_back([&, client] {
            for (int i = 0; !is_over; ++i) {
                const std::string name = std::to_string(client) + "." + std::to_string(i % 100);
                const std::shared_ptr<Model> model = current.get();
                const std::string session = model->use().open_server("last:host", kCredential);
                const int fault = fault_of([&] {
                    const LongOperation operation = create_operation(*model, start_of(session, name));
                    const Model::Use storage = model->use();
                    storage.operations().start(operation, storage->now());
                });
                EXPECT_TRUE(fault == 0 || fault == kInUse) << fault;
                model->use()->close_session(session);
            }
        });
    }
    threads.emplace_back([&] {
        while (!is_over) {
            const std::shared_ptr<Model> model = current.get();
            const Model::Use storage = model->use();
            const std::size_t servers = view_of(*storage).servers.size();
            EXPECT_TRUE(servers == 1 || servers == 4);
            newest_operations(*storage, storage.operations(), 200);
            newest_events(*storage, {std::nullopt, 0, std::nullopt, 200});
        }
    });
    for (int i = 0; i < 100; ++i) {
        current.get()->use(); // so that all get on
        current.load(scenario(i % 2 == 0 ? 1 : 4));
    }
    is_over = true;
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(current.get()->use()->servers(), SizeIs(4));
}

} // namespace
