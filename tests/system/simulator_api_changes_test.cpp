// The stream that tells those who watch the simulator that something has changed.
#include "tests/system/simulator_api.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <vector>

namespace simulator_api
{
namespace
{

// Somebody who watches.
class Watcher
{
  public:
    // One that is told nothing gives up long after it should have been.
    explicit Watcher(int port) : socket_(port)
    {
        const timeval long_enough{30, 0};
        setsockopt(socket_.fd(), SOL_SOCKET, SO_RCVTIMEO, &long_enough, sizeof long_enough);
        socket_.send(request_text("GET", "/api/changes"));
    }

    // Reads what it is told, until `is_enough` says so; null if the stream ends first.
    template <class Predicate>
    json wait_for(Predicate is_enough)
    {
        for (;;) {
            for (json told = next(); !told.is_null(); told = next()) {
                if (is_enough(told)) return told;
            }
            char buffer[4096];
            const ssize_t count = read(socket_.fd(), buffer, sizeof buffer);
            if (count <= 0) return nullptr;
            text_.append(buffer, static_cast<std::size_t>(count));
        }
    }
    json first()
    {
        return wait_for([](const json&) { return true; });
    }
    const ClientSocket& socket() const { return socket_; }
    const std::string& head() const { return head_; }

  private:
    // The next that has been read whole; null if there is none.
    json next()
    {
        const std::string begin = "event: change\ndata: ";
        const std::size_t at = text_.find(begin);
        const std::size_t end = at == std::string::npos ? at : text_.find("\n\n", at);
        if (end == std::string::npos) return nullptr;
        if (head_.empty()) head_ = text_.substr(0, at);
        const std::string data = text_.substr(at + begin.size(), end - at - begin.size());
        text_.erase(0, end);
        return json::parse(data);
    }

    ClientSocket socket_;
    std::string head_;
    std::string text_;
};

class SimulatorApiChanges : public ApiClient
{
};

TEST_F(SimulatorApiChanges, AWatcherIsToldAtOnceWhereThingsStand)
{
    Watcher watcher(port());
    const json told = watcher.first();
    EXPECT_EQ(told.at("instance"), get("/api/state").at("instance"));
    EXPECT_EQ(told.at("revision"), get("/api/state").at("revision"));
    EXPECT_EQ(told.at("requests"), 2);
    EXPECT_THAT(watcher.head(), HasSubstr("\r\nContent-Type: text/event-stream\r\n"));
    EXPECT_THAT(watcher.head(), HasSubstr("\r\nCache-Control: no-store\r\n"));
}

TEST_F(SimulatorApiChanges, ARequestAndAChangeByTheApiAreTold)
{
    Watcher watcher(port());
    const json revision = watcher.first().at("revision");
    label("x");
    json told = watcher.wait_for([](const json& each) { return each.at("requests") == 3; });
    EXPECT_EQ(told.at("revision"), revision.get<int>() + 1);
    EXPECT_EQ(post("/api/reset").status, 204);
    told = watcher.wait_for([&](const json& each) { return each.at("revision") == revision.get<int>() + 2; });
    EXPECT_EQ(told.at("requests"), 3);
    EXPECT_EQ(remove("/api/faults").status, 204);
    EXPECT_EQ(
        watcher.wait_for([&](const json& each) { return each.at("revision") == revision.get<int>() + 3; })
            .at("requests"),
        3);
}

TEST_F(SimulatorApiChanges, ToLookIsNoChange)
{
    const json revision = get("/api/state").at("revision");
    for (const char* path :
         {"operations", "events", "requests", "faults", "contract", "scenario", "report"}) {
        get(std::string("/api/") + path);
    }
    EXPECT_EQ(get("/api/state").at("revision"), revision);
}

TEST_F(SimulatorApiChanges, AWatcherThatIsSlowIsToldTheLastOfManyChanges)
{
    Watcher watcher(port());
    watcher.first();
    for (int i = 0; i < 200; ++i) label("x");
    EXPECT_EQ(watcher.wait_for([](const json& told) { return told.at("requests") == 202; }).at("requests"),
              202);
}

TEST_F(SimulatorApiChanges, ThirtyTwoMayWatchAndAPlaceIsFreeOnceOneHasGone)
{
    std::vector<std::unique_ptr<Watcher>> watchers;
    for (int i = 0; i < 32; ++i) {
        watchers.push_back(std::make_unique<Watcher>(port()));
        watchers.back()->first();
    }
    EXPECT_EQ(refusal("/api/changes", 503), "too many are watching already");
    watchers.pop_back();
    // The simulator notices in its own time.
    for (;;) {
        Watcher watcher(port());
        if (!watcher.first().is_null()) break;
    }
}

TEST_F(SimulatorApiChanges, StreamsEndWithTheSimulator)
{
    Watcher watcher(port());
    watcher.first();
    simulator_.send_signal(SIGTERM);
    EXPECT_TRUE(watcher.wait_for([](const json&) { return false; }).is_null());
    EXPECT_EQ(simulator_.wait(), 0);
}

} // namespace
} // namespace simulator_api
