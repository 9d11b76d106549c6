#include "tests/entries/event_channel_events.h"
#include "tests/entries/event_channel_fixture.h"

#include <limits>

using namespace kit;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr char kEntry[] = "stspi_get_event";
constexpr int kMin32 = std::numeric_limits<int>::min();
constexpr int kMax32 = std::numeric_limits<int>::max();

class GetEvent : public EventChannelTest
{
  protected:
    GetEvent() : server_(make_server(session_, service_.url()))
    {
        put(server_->server_name, kName);
        channel_.server = server_.get();
        channel_.session = session_.get();
        channel_.token = token_;
        reset();
    }

    // The record as the host may have left it.
    void reset()
    {
        fill_with_canary(*event_);
        fill_with_canary(*expected_);
        session_.clear();
    }

    static std::string event_xml(long long seqno, long long flags, long long type, const std::string& body)
    {
        return element("event", number("seqno", seqno) + element("server", "wire server") +
                                    number("flags", flags) + number("type", type) +
                                    (body.empty() ? nil("body") : element("body", body)));
    }

    int get(const Answer& event_answer)
    {
        service_.script(event_answer);
        return get_event()(&channel_, event_.get());
    }
    int get(long long flags, long long type, const std::string& body = "", long long seqno = 21)
    {
        return get(answer(reply("getEventResponse", event_xml(seqno, flags, type, body))));
    }

    void expect_head(std::int64_t flags, std::int64_t seqno = 21)
    {
        expected_->version = 11;
        expected_->seqno = seqno;
        put(expected_->server, kName);
        expected_->flags = flags;
    }

    // After an event that was delivered.
    void expect_inline(std::int32_t kind)
    {
        expect_head(2);
        expected_->inline_kind = kind;
        EXPECT_TRUE(same_bytes(*event_, *expected_)) << kind;
        EXPECT_EQ(session_.lines().back(), ok(kEntry));
    }

    void expect_received_line(const std::string& line)
    {
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kEntry), return_code(kEntry, 0), record(line), ok(kEntry)));
    }

    char token_[2] = "C";
    ServerHandle server_;
    stsp_evc_t channel_{};
    std::unique_ptr<sts_event_v11_t> event_ = std::make_unique<sts_event_v11_t>();
    std::unique_ptr<sts_event_v11_t> expected_ = std::make_unique<sts_event_v11_t>();
};

} // namespace

TEST_F(GetEvent, RefusesNullArgumentsAndAChannelWithoutServerSilently)
{
    EXPECT_EQ(get_event()(nullptr, event_.get()), 2060001);
    EXPECT_EQ(get_event()(&channel_, nullptr), 2060001);
    channel_.server = nullptr;
    EXPECT_EQ(get_event()(&channel_, nullptr), 2060001) << "the record is tested first";
    EXPECT_EQ(get_event()(&channel_, event_.get()), 2060022);
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_TRUE(same_bytes(*event_, *expected_));
}

TEST_F(GetEvent, RefusesAServerWithoutServiceHandleOrEndpointAfterEnter)
{
    const ServerHandle without_token = make_server(session_, service_.url(), false, nullptr);
    channel_.server = without_token.get();
    EXPECT_EQ(get_event()(&channel_, event_.get()), 2060022);
    const ServerHandle without_endpoint = make_server(session_, service_.url());
    std::free(without_endpoint->endpoint);
    without_endpoint->endpoint = nullptr;
    channel_.server = without_endpoint.get();
    EXPECT_EQ(get_event()(&channel_, event_.get()), 2060022);
    EXPECT_THAT(session_.lines(), ElementsAre(enter(kEntry), enter(kEntry)));
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(GetEvent, SendsTheChannelsToken)
{
    EXPECT_EQ(get(0, 7), 0);
    EXPECT_EQ(last_request(), element("getEvent", element("evcHandle", element("token", "C"))));
}

TEST_F(GetEvent, LogsWhatItReceivedUnderBothNamesOfTheServer)
{
    EXPECT_EQ(get(2, 3, srv_stat_xml()), 0);
    expect_received_line("received event <Network_X:host> response.server <wire server> seqno=21 "
                         "flags=0x2soap_type=3");
    EXPECT_TRUE(session_.ids_were_right());
}

TEST_F(GetEvent, LogsNumbersWithTheirSignAndFlagsIn64Bits)
{
    EXPECT_EQ(get(-3, 7, "", kMin32), 0);
    expect_received_line("received event <Network_X:host> response.server <wire server> seqno=-2147483648 "
                         "flags=0xfffffffffffffffdsoap_type=7");
    reset();
    EXPECT_EQ(get(0x7a5bcdec, 8, "", kMax32), 0);
    expect_received_line("received event <Network_X:host> response.server <wire server> seqno=2147483647 "
                         "flags=0x7a5bcdecsoap_type=8");
}

TEST_F(GetEvent, FilesAnEventUnderTheChannelsNameWithWidenedNumbers)
{
    EXPECT_EQ(get(kMin32, 7, "", -5), 0);
    expect_head(kMin32, -5);
    expected_->detached_kind = 0;
    EXPECT_TRUE(same_bytes(*event_, *expected_));
    reset();
    EXPECT_EQ(get(-1, 3, srv_stat_xml(), kMax32), 0);
    expect_head(-1, kMax32);
    expected_->inline_kind = 3;
    expected_->payload.srvStat.action = 73;
    put(expected_->payload.srvStat.name, "server");
    EXPECT_TRUE(same_bytes(*event_, *expected_));
}

TEST_F(GetEvent, DeliversAnOperation)
{
    EXPECT_EQ(get(2, 1, op_xml()), 0);
    put(expected_->payload.op.name, "operation");
    expected_->payload.op.bytesTransferred = -70;
    expected_->payload.op.error = -71;
    expect_inline(1);
}

TEST_F(GetEvent, DeliversAnLsuInformation)
{
    EXPECT_EQ(get(2, 2, lsu_info_xml()), 0);
    put_lsu_info(expected_->payload.lsuInfo);
    expect_inline(2);
}

TEST_F(GetEvent, DeliversAServerStatus)
{
    EXPECT_EQ(get(2, 3, srv_stat_xml()), 0);
    expected_->payload.srvStat.action = 73;
    put(expected_->payload.srvStat.name, "server");
    expect_inline(3);
}

TEST_F(GetEvent, DeliversAnLsuStatus)
{
    EXPECT_EQ(get(2, 4, lsu_stat_xml()), 0);
    expected_->payload.lsuStat.action = 74;
    put(expected_->payload.lsuStat.name, "lsu");
    expect_inline(4);
}

TEST_F(GetEvent, DeliversAnImageInformation)
{
    EXPECT_EQ(get(2, 5, img_info_xml()), 0);
    expected_->payload.imgInfo.fields = 75;
    put_image(expected_->payload.imgInfo.imgInfo);
    expect_inline(5);
}

TEST_F(GetEvent, DeliversAnActivity)
{
    EXPECT_EQ(get(2, 6, activity_xml()), 0);
    put_activity(expected_->payload.actv);
    expect_inline(6);
}

TEST_F(GetEvent, WritesAnInlineKindInto32BitsOfItsSlot)
{
    EXPECT_EQ(get(2, 4, lsu_stat_xml()), 0);
    const std::uint64_t canary = 0x5a5a5a5a;
    EXPECT_EQ(event_->payload_length, static_cast<std::int64_t>(canary << 32 | 4));
}

TEST_F(GetEvent, RefusesAnUnknownInlineTypeWithItsHeadWritten)
{
    for (const int type : {0, 7, 8, 9, -1, kMin32, kMax32}) {
        reset();
        EXPECT_EQ(get(2, type, srv_stat_xml()), 2060022);
        expect_head(2);
        EXPECT_TRUE(same_bytes(*event_, *expected_)) << type;
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kEntry), return_code(kEntry, 0),
                                record("received event <Network_X:host> response.server <wire server> "
                                       "seqno=21 flags=0x2soap_type=" +
                                       std::to_string(type)),
                                failure("stspi_get_event: Unrecognized inline event type")));
    }
}

TEST_F(GetEvent, TranslatesTheKindOfADetachedEvent)
{
    EXPECT_EQ(get(0, 7), 0);
    expect_head(0);
    expected_->detached_kind = 0;
    EXPECT_TRUE(same_bytes(*event_, *expected_));
    reset();
    EXPECT_EQ(get(1, 8), 0);
    expect_head(1);
    expected_->detached_kind = 1;
    EXPECT_TRUE(same_bytes(*event_, *expected_));
    EXPECT_EQ(session_.lines().back(), ok(kEntry));
}

TEST_F(GetEvent, AnnouncesADetachedActivityWithItsLengthAlone)
{
    for (const int length : {100, 0, -1, kMin32, kMax32}) {
        reset();
        EXPECT_EQ(get(0, 6, activity_xml(length)), 0);
        expect_head(0);
        expected_->payload_length = length;
        expected_->detached_kind = 2;
        expected_->detached_reserved = 0;
        EXPECT_TRUE(same_bytes(*event_, *expected_)) << length;
        EXPECT_EQ(session_.lines().back(), ok(kEntry));
    }
}

TEST_F(GetEvent, LeavesTheLengthOfADetachedActivityThatDoesNotTellIt)
{
    for (const std::string& body : {std::string(), srv_stat_xml(), nil("actv")}) {
        reset();
        EXPECT_EQ(get(0, 6, body), 0);
        expect_head(0);
        expected_->detached_kind = 2;
        expected_->detached_reserved = 0;
        EXPECT_TRUE(same_bytes(*event_, *expected_)) << body;
    }
}

TEST_F(GetEvent, RefusesAnUnknownDetachedTypeWithItsHeadWritten)
{
    for (const int type : {0, 1, 2, 5, 9, -1, kMin32, kMax32}) {
        reset();
        EXPECT_EQ(get(4, type), 2060022);
        expect_head(4);
        EXPECT_TRUE(same_bytes(*event_, *expected_)) << type;
        EXPECT_EQ(session_.lines().back(), failure("stspi_get_event: Unrecognized detached event type"));
    }
}

TEST_F(GetEvent, WritesNothingOfAnInlineEventWithoutItsArmButItsHeadAndKind)
{
    const std::string other_arm = srv_stat_xml();
    for (const std::string& body : {std::string(), other_arm, nil("op")}) {
        for (const int type : {1, 4, 5}) {
            reset();
            EXPECT_EQ(get(2, type, body), 0);
            expect_inline(type);
        }
    }
    reset();
    EXPECT_EQ(get(2, 3, activity_xml()), 0);
    expect_inline(3);
}

TEST_F(GetEvent, ClearsAnLsuInformationOrAnActivityWithoutItsArm)
{
    for (const std::string& body : {std::string(), srv_stat_xml(), nil("lsuInfo"), nil("actv")}) {
        reset();
        EXPECT_EQ(get(2, 2, body), 0);
        std::memset(&expected_->payload.lsuInfo, 0, sizeof expected_->payload.lsuInfo);
        expect_inline(2);
        reset();
        EXPECT_EQ(get(2, 6, body), 0);
        std::memset(&expected_->payload.actv, 0, sizeof expected_->payload.actv);
        expect_inline(6);
    }
}

TEST_F(GetEvent, CutsTextsAtTheirBounds)
{
    EXPECT_EQ(get(2, 4, element("lsuStat", number("action", 1) + element("name", long_text(3000)))), 0);
    expected_->payload.lsuStat.action = 1;
    put(expected_->payload.lsuStat.name, long_text(1023));
    expect_inline(4);
    reset();
    std::memset(server_->server_name, 'n', sizeof server_->server_name - 1);
    EXPECT_EQ(get(0, 7), 0);
    EXPECT_EQ(std::string(event_->server), std::string(511, 'n'));
}

TEST_F(GetEvent, CannotUseAReplyWithoutAnEvent)
{
    for (const std::string& content : {std::string(), nil("event")}) {
        reset();
        EXPECT_EQ(get(answer(reply("getEventResponse", content))), 2060046);
        EXPECT_TRUE(same_bytes(*event_, *expected_));
        EXPECT_THAT(session_.lines(), ElementsAre(enter(kEntry), return_code(kEntry, 0),
                                                  failure("stspi_get_event: the reply has no event")));
    }
}

TEST_F(GetEvent, ReturnsTheFaultThatEndsAChannelAndLeavesTheRecordAlone)
{
    for (const int status : {2060013, 0, -1}) {
        reset();
        EXPECT_EQ(get(fault_answer(fault(status))), status);
        EXPECT_TRUE(same_bytes(*event_, *expected_));
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kEntry), return_code(kEntry, 1), failure(rendered_fault(status))));
    }
}

TEST_F(GetEvent, MapsOtherFailuresLikeAnyCall)
{
    EXPECT_EQ(get(fault_answer(fault_with_detail(""))), 2060021);
    EXPECT_EQ(get(fault_answer(fault(2060013, "SOAP-ENV:Server"))), 2060017);
    EXPECT_EQ(get({Answer::Manner::kReset, ""}), 2060017);
    EXPECT_EQ(get(answer("<garbage")), 2060017);
    EXPECT_TRUE(same_bytes(*event_, *expected_));
}

TEST_F(GetEvent, IsSilentWithoutASessionOrACallback)
{
    channel_.session = nullptr;
    EXPECT_EQ(get(0, 7), 0);
    EXPECT_EQ(get(2, 0), 2060022);
    channel_.session = session_.get();
    session_->log_callback = nullptr;
    EXPECT_EQ(get(2, 3, srv_stat_xml()), 0);
    EXPECT_EQ(get(0, 0), 2060022);
    EXPECT_THAT(session_.lines(), IsEmpty());
}
