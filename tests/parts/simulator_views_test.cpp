// What people are shown of a storage that clients have filled.
#include "simulator/scenario/fault_codes.h"
#include "simulator/scenario/scenario_reader.h"
#include "simulator/storage/events_view.h"
#include "simulator/storage/storage_view.h"
#include "tests/parts/fault_of.h"

#include <gmock/gmock.h>

#include <chrono>

namespace
{

using namespace soapwrapper::simulator;
using testing::ElementsAre;
using testing::SizeIs;

class SimulatorViews : public testing::Test
{
  protected:
    std::string open_session() { return storage_.open_session("A:host"); }
    std::string open_list(const std::string& session)
    {
        return storage_.lsu_lists.open({session, 0, {{0, 0}, {0, 0}}, 1});
    }
    ServerView server() const { return view_of(storage_).servers.at(0); }

    Storage storage_{parse_scenario(R"({"servers": [
        {"prefix": "A", "maxSessions": 100000, "lsus": [{"name": "l"}]}, {"prefix": "B"}]})")};
};

TEST_F(SimulatorViews, OfVeryManySessionsTheNewestAreShown)
{
    for (std::size_t i = 0; i < StorageView::kMostShown + 5; ++i) open_session();
    const ServerView shown = server();
    EXPECT_EQ(shown.session_count, StorageView::kMostShown + 5);
    ASSERT_THAT(shown.sessions, SizeIs(StorageView::kMostShown));
    EXPECT_EQ(shown.sessions.front().number, 6U);
    EXPECT_EQ(shown.sessions.back().number, StorageView::kMostShown + 5);
}

TEST_F(SimulatorViews, OfVeryManyListsTheNewestOfEachKindAreShown)
{
    const std::string session = open_session();
    for (std::size_t i = 0; i < StorageView::kMostShown + 5; ++i) open_list(session);
    storage_.event_channels.open({0, "A:host", 0});
    const ServerView shown = server();
    EXPECT_EQ(shown.open_count, StorageView::kMostShown + 6);
    ASSERT_THAT(shown.open, SizeIs(StorageView::kMostShown + 1));
    EXPECT_EQ(shown.open.front().number, 6U);
    EXPECT_STREQ(shown.open.back().kind, "event channel");
}

TEST_F(SimulatorViews, ANumberIsNeverGivenTwice)
{
    storage_.close_session(open_session());
    const std::string second = open_session();
    open_list(second);
    const ServerView shown = server();
    ASSERT_THAT(shown.sessions, SizeIs(1));
    EXPECT_EQ(shown.sessions[0].number, 2U);
    EXPECT_EQ(shown.open.at(0).session, 2U);
    EXPECT_EQ(shown.open.at(0).entries, 2U);
    EXPECT_EQ(shown.open.at(0).read, 1U);
}

TEST_F(SimulatorViews, OfVeryManyHostsTheFirstAreShown)
{
    const std::vector<std::string> hosts(StorageView::kMostHosts + 5, "host");
    storage_.server(0).exports.add({0, 0, {VolumeKind::kDevice, {"d", "", ""}}, hosts});
    const ServerView shown = server();
    EXPECT_THAT(shown.exports.at(0).hosts, SizeIs(StorageView::kMostHosts));
    EXPECT_EQ(shown.exports.at(0).host_count, StorageView::kMostHosts + 5);
    EXPECT_EQ(shown.exports.at(0).snapshot, std::nullopt);
}

TEST_F(SimulatorViews, EventsOfSeveralServersStandInTheOrderInWhichTheyHappened)
{
    storage_.server(0).events.add_inline(LsuStatus{LsuAction::kFull, "0"});
    storage_.server(1).events.add_inline(LsuStatus{LsuAction::kFull, "1"});
    storage_.server(0).events.add_inline(LsuStatus{LsuAction::kFull, "2"});
    storage_.server(1).events.add_inline(LsuStatus{LsuAction::kFull, "3"});
    std::vector<std::string> names;
    for (const EventView& view : newest_events(storage_, {std::nullopt, 0, EventKind::kLsuStatus, 2})) {
        names.push_back(view.server + std::get<LsuStatus>(view.event.payload).name);
    }
    EXPECT_THAT(names, ElementsAre("B3", "A2"));
    EXPECT_EQ(fault_of([&] { newest_events(storage_, {"C", 0, std::nullopt, 2}); }), kUnknownServer);
}

} // namespace
