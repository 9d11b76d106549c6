// The simulator's log of events, called as functions.
#include "simulator/scenario/default_scenario.h"
#include "simulator/scenario/fault_codes.h"
#include "simulator/storage/event_log.h"
#include "simulator/storage/storage.h"
#include "tests/parts/fault_of.h"

#include <gmock/gmock.h>

#include <limits>

using namespace soapwrapper::simulator;

namespace
{

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

void add(EventLog& log, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) log.add_inline(LsuStatus{LsuAction::kFull, "home"});
}

std::int32_t first_from(const EventLog& log, std::int64_t seqno)
{
    const Event* event = log.first_from(seqno);
    return event ? event->seqno : 0;
}

TEST(SimulatorEventLog, CountsFromOneAndTellsKindAndShape)
{
    EventLog log;
    EXPECT_EQ(log.first_from(0), nullptr);
    log.add_inline(OperationEnded{"op", 5, 0});
    log.add_detached(Activity());
    EXPECT_EQ(log.at(1).kind(), EventKind::kOperation);
    EXPECT_TRUE(log.at(1).is_inline);
    EXPECT_EQ(log.at(2).kind(), EventKind::kActivity);
    EXPECT_FALSE(log.at(2).is_inline);
    EXPECT_EQ(fault_of([&] { log.at(3); }), kUnknownEvent);
}

TEST(SimulatorEventLog, FindsTheFirstFromAnyNumber)
{
    EventLog log;
    add(log, 5);
    log.erase(3);
    EXPECT_EQ(first_from(log, 3), 4);
    EXPECT_EQ(first_from(log, 5), 5);
    EXPECT_EQ(first_from(log, 6), 0);
    EXPECT_EQ(first_from(log, std::numeric_limits<std::int64_t>::min()), 1);
    EXPECT_EQ(first_from(log, std::numeric_limits<std::int64_t>::max()), 0);
    EXPECT_EQ(first_from(log, std::int64_t{kLargest} + 1), 0);
}

TEST(SimulatorEventLog, DropsTheOldestOfTooMany)
{
    EventLog log;
    add(log, EventLog::kMostEvents);
    EXPECT_EQ(first_from(log, 0), 1);
    add(log, 2);
    EXPECT_EQ(first_from(log, 0), 3);
    EXPECT_EQ(fault_of([&] { log.at(2); }), kUnknownEvent);
    log.erase(5000);
    add(log, 1);
    EXPECT_EQ(first_from(log, 0), 3) << "a deleted one has made room";
}

TEST(SimulatorEventLog, KeepsNothingBehindTheLargestNumber)
{
    EventLog log(kLargest - 1);
    add(log, 3);
    EXPECT_EQ(first_from(log, 0), kLargest);
    EXPECT_EQ(first_from(log, kLargest), kLargest);
    log.erase(kLargest);
    add(log, 1);
    EXPECT_EQ(first_from(log, 0), 0);
}

TEST(SimulatorEventLog, AChannelBehindTheLargestNumberIsAtItsEnd)
{
    Storage storage(default_scenario());
    storage.server(0).events = EventLog(kLargest - 1);
    add(storage.server(0).events, 1);
    const std::string channel = storage.event_channels.open({0, "Network_NTAP:filer", 0});
    EXPECT_EQ(storage.next_event(channel).seqno, kLargest);
    EXPECT_EQ(fault_of([&] { storage.next_event(channel); }), kEndOfList);
}

TEST(SimulatorEventChannels, AreBounded)
{
    Storage storage(default_scenario());
    std::string last;
    for (int i = 0; i < 10000; ++i) last = storage.event_channels.open({0, "Network_NTAP:filer", 0});
    const auto one_more = [&] { storage.event_channels.open({0, "Network_NTAP:filer", 0}); };
    EXPECT_EQ(fault_of(one_more), kTooManyOpen);
    storage.event_channels.close(last);
    EXPECT_EQ(fault_of(one_more), 0);
}

} // namespace
