// How the simulator's events are read, and who may.
#include "tests/system/simulator_events.h"

namespace
{

using namespace simulator_events;

constexpr long kCredentialRefused = 2069002;

class SimulatorEventChannels : public EventsClient
{
};

TEST_F(SimulatorEventChannels, ReadWhatThereIsFromTheNumberThatTheyAreOpenedWith)
{
    label("x");
    EXPECT_THAT(take_all(open_channel()), ElementsAre("1 2 3", "2 0 7", "3 2 2", "4 2 4", kEnd));
    EXPECT_THAT(take_all(open_channel("Near:filer", "3")), ElementsAre("3 2 2", "4 2 4", kEnd));
    EXPECT_THAT(take_all(open_channel("Near:filer", "4")), ElementsAre("4 2 4", kEnd));
    EXPECT_THAT(take_all(open_channel("Near:filer", "-2147483648")), testing::SizeIs(5));
}

TEST_F(SimulatorEventChannels, OpenedAheadOfTimeWaitForTheirNumber)
{
    const std::string channel = open_channel("Near:filer", "4");
    EXPECT_EQ(take(channel), kEnd);
    label("x");
    EXPECT_THAT(take_all(channel), ElementsAre("4 2 4", kEnd));
    EXPECT_THAT(take_all(open_channel("Near:filer", "2147483647")), ElementsAre(kEnd));
}

TEST_F(SimulatorEventChannels, AtTheirEndGoOnWithWhatHappensNext)
{
    const std::string channel = channel_at_the_end();
    EXPECT_EQ(take(channel), kEnd);
    label("x");
    EXPECT_THAT(take_all(channel), ElementsAre("3 2 2", "4 2 4", kEnd));
    EXPECT_EQ(take(channel), kEnd);
}

TEST_F(SimulatorEventChannels, EachHaveAPositionOfTheirOwn)
{
    const std::string first = open_channel();
    const std::string second = open_channel();
    EXPECT_NE(first, second);
    EXPECT_THAT(take(first), StartsWith(element("seqno", "1")));
    EXPECT_THAT(take(first), StartsWith(element("seqno", "2")));
    EXPECT_THAT(take(second), StartsWith(element("seqno", "1")));
    EXPECT_EQ(take(first), kEnd);
}

TEST_F(SimulatorEventChannels, PassOverWhatWasDeleted)
{
    label("x");
    const std::string before = open_channel();
    EXPECT_THAT(take(before), StartsWith(element("seqno", "1")));
    EXPECT_EQ(remove("2"), 200);
    EXPECT_EQ(remove("4"), 200);
    EXPECT_THAT(take_all(before), ElementsAre("3 2 2", kEnd));
    EXPECT_THAT(take_all(open_channel()), ElementsAre("1 2 3", "3 2 2", kEnd));
    EXPECT_EQ(remove("2"), 500);
    label("y");
    EXPECT_THAT(take_all(before), ElementsAre("5 2 2", "6 2 4", kEnd)) << "numbers aren't given twice";
}

TEST_F(SimulatorEventChannels, AreClosedOnce)
{
    const std::string channel = open_channel();
    EXPECT_EQ(channel.size(), 32U);
    EXPECT_EQ(ask("closeEventChannel", channel_handle(channel)).status, 200);
    EXPECT_EQ(fault_code(next_event(channel)), kBadHandle);
    EXPECT_EQ(fault("closeEventChannel", channel_handle(channel)), kBadHandle);
    EXPECT_EQ(fault("closeEventChannel", nil("evcHandle")), kMissingElement);
    EXPECT_EQ(fault("getEvent", element("evcHandle", nil("token"))), kMissingElement);
    EXPECT_EQ(fault_code(next_event(near_)), kBadHandle) << "a session is no channel";
    EXPECT_EQ(fault("getServerProp", server_handle(open_channel())), kBadHandle) << "nor the other way round";
}

TEST_F(SimulatorEventChannels, BelongToNoSession)
{
    const std::string channel = channel_at_the_end();
    const std::string sessions = text_of(ask("getServerProp", server_handle(near_)).body, "nconnect");
    EXPECT_EQ(sessions, "1");
    label("x");
    EXPECT_EQ(ask("closeServer", server_handle(near_)).status, 200);
    EXPECT_THAT(take_all(channel), ElementsAre("3 2 2", "4 2 4", kEnd));
}

TEST_F(SimulatorEventChannels, AreOpenedByNameAndCredentialLikeAServer)
{
    const std::string wrong =
        element("cred", element("len", "9") + element("type", "1") + element("cert", "c2ltdWxhdG9z"));
    EXPECT_EQ(fault("openEventChannel", channel_request("Near:filer", "0", wrong)), kCredentialRefused);
    EXPECT_EQ(fault("openEventChannel", channel_request("Near:filer", "0", nil("cred"))), kMissingElement);
    EXPECT_EQ(fault("openEventChannel", channel_request("Nowhere:filer")), kUnknownServer);
    EXPECT_EQ(fault("openEventChannel", channel_request("Near")), kUnknownServer);
    EXPECT_EQ(fault("openEventChannel", channel_request("Near:" + std::string(512, 'x'))), kUnknownServer);
    EXPECT_NE(open_channel("Near:" + std::string(511, 'x')), "");
}

TEST_F(SimulatorEventChannels, APayloadIsToldOfInlineEventsToo)
{
    EXPECT_EQ(payload("1"), element("srvStat", element("action", "1") + element("name", "Near:filer")));
    EXPECT_EQ(payload("1"), text_of(take(open_channel()), "body"));
}

TEST_F(SimulatorEventChannels, AnEventIsKnownByItsNumberAloneWhateverElseComesBack)
{
    const std::string odd =
        element("event", element("seqno", "1") + element("server", "Far:else") + element("flags", "2") +
                             element("type", "6") + element("body"));
    EXPECT_THAT(ask("getEventPayload", server_handle(near_) + odd).body, HasSubstr("srvStat"));
    EXPECT_EQ(ask("deleteEvent", server_handle(near_) + odd).status, 200);
    EXPECT_THAT(take_all(open_channel()), ElementsAre("2 0 7", kEnd));
    EXPECT_THAT(take_all(open_channel("Far:else")), ElementsAre("1 2 3", "2 0 7", kEnd));
}

TEST_F(SimulatorEventChannels, AnEventThatIsNotThereIsToldByACodeOfItsOwn)
{
    for (const char* seqno : {"0", "3", "-1", "-2147483648", "2147483647"}) {
        EXPECT_EQ(fault_code(ask_payload(seqno)), kUnknownEvent) << seqno;
        EXPECT_EQ(fault("deleteEvent", server_handle(near_) + event(seqno)), kUnknownEvent) << seqno;
    }
    for (const char* operation : {"getEventPayload", "deleteEvent"}) {
        EXPECT_EQ(fault(operation, server_handle("nope") + event("1")), kBadHandle);
        EXPECT_EQ(fault(operation, nil("serverHandle") + event("1")), kMissingElement);
        EXPECT_EQ(fault(operation, server_handle(near_) + nil("event")), kMissingElement);
        EXPECT_THAT(ask(operation, server_handle(near_) + event("99999999999")).status, 500);
    }
    EXPECT_THAT(take_all(open_channel()), ElementsAre("1 2 3", "2 0 7", kEnd));
}

TEST(SimulatorEventFaults, CanBeAskedFor)
{
    const SimulatorProcess simulator({"--fault", "getEvent=2060005", "--fault", "closeServer=2060012,1"});
    const std::string channel = text_of(
        ask(simulator.http_port(), "openEventChannel", channel_request("Network_NTAP:filer")).body, "token");
    EXPECT_EQ(fault_code(ask(simulator.http_port(), "getEvent", channel_handle(channel))), kBusy);
    EXPECT_EQ(fault_code(ask(simulator.http_port(), "closeServer", server_handle("any"))), kInUse);
}

} // namespace
