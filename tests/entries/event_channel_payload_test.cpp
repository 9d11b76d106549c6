// The two entries that send a host's event back: what goes out, and what the host gets.
#include "tests/entries/event_channel_events.h"
#include "tests/entries/event_channel_fixture.h"

#include <limits>

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr char kPayload[] = "stspi_get_event_payload";
constexpr char kDelete[] = "stspi_delete_event";

class SentEvents : public EventChannelTest
{
  protected:
    SentEvents() : server_(make_server(session_, service_.url()))
    {
        fill_with_canary(*event_);
        event_->seqno = 21;
        put(event_->server, kName);
        event_->flags = 4;
        event_->detached_kind = 6;
        reset();
    }

    void reset()
    {
        fill_with_canary(*activity_);
        fill_with_canary(*expected_);
        session_.clear();
    }

    int payload(const Answer& payload_answer)
    {
        service_.script(payload_answer);
        return get_event_payload()(server_.get(), activity_.get(), event_.get());
    }
    int payload(const std::string& content)
    {
        return payload(answer(reply("getEventPayloadResponse", content)));
    }
    int remove(const Answer& delete_answer)
    {
        service_.script(delete_answer);
        return delete_event()(server_.get(), event_.get());
    }
    int remove() { return remove(answer(reply("deleteEventResponse"))); }

    static std::string request(const char* operation, long long flags, long long type,
                               const std::string& body)
    {
        return element(operation,
                       element("serverHandle", element("token", "T")) +
                           element("event", number("seqno", 21) + element("server", kName) +
                                                number("flags", flags) + number("type", type) + body));
    }

    void make_inline(std::int32_t kind)
    {
        event_->flags = 2;
        event_->inline_kind = kind;
    }

    ServerHandle server_;
    std::unique_ptr<sts_event_v11_t> event_ = std::make_unique<sts_event_v11_t>();
    std::unique_ptr<sts_ev_activity_v11_t> activity_ = std::make_unique<sts_ev_activity_v11_t>();
    std::unique_ptr<sts_ev_activity_v11_t> expected_ = std::make_unique<sts_ev_activity_v11_t>();
};

class GetEventPayload : public SentEvents
{
};

class DeleteEvent : public SentEvents
{
};

} // namespace

TEST_F(GetEventPayload, TestsRecordAndEventThenServerThenServiceHandleSilently)
{
    const ServerHandle without_token = make_server(session_, service_.url(), false, nullptr);
    EXPECT_EQ(get_event_payload()(nullptr, nullptr, event_.get()), 2060001);
    EXPECT_EQ(get_event_payload()(nullptr, activity_.get(), nullptr), 2060001);
    EXPECT_EQ(get_event_payload()(nullptr, activity_.get(), event_.get()), 2060022);
    EXPECT_EQ(get_event_payload()(without_token.get(), nullptr, event_.get()), 2060001);
    EXPECT_EQ(get_event_payload()(without_token.get(), activity_.get(), event_.get()), 2060026);
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_EQ(service_.connections(), 0U);
    EXPECT_TRUE(same_bytes(*activity_, *expected_));
}

TEST_F(GetEventPayload, BringsAnActivityForKind6)
{
    EXPECT_EQ(payload(element("payload", activity_xml())), 0);
    put_activity(*expected_);
    EXPECT_TRUE(same_bytes(*activity_, *expected_));
    EXPECT_EQ(last_request(), request("getEventPayload", 4, 6, nil("body")));
    EXPECT_THAT(session_.lines(), ElementsAre(enter(kPayload), return_code(kPayload, 0), ok(kPayload)));
    EXPECT_TRUE(session_.ids_were_right());
}

TEST_F(GetEventPayload, CannotUseAReplyWithoutAnActivityForKind6)
{
    const std::pair<std::string, const char*> replies[] = {
        {"", "payload"},
        {nil("payload"), "payload"},
        {element("payload"), "actv"},
        {element("payload", nil("actv")), "actv"},
        {element("payload", lsu_stat_xml()), "actv"},
    };
    for (const auto& [content, missing] : replies) {
        reset();
        EXPECT_EQ(payload(content), 2060046) << content;
        EXPECT_TRUE(same_bytes(*activity_, *expected_)) << content;
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kPayload), return_code(kPayload, 0),
                                failure(std::string(kPayload) + ": the reply has no " + missing)));
    }
}

TEST_F(GetEventPayload, NeedsNoPayloadForAnyOtherKind)
{
    for (const auto& [kind, status] : {std::pair(0, 0), {1, 0}, {2, 2060022}}) {
        event_->detached_kind = kind;
        for (const std::string& content : {std::string(), nil("payload")}) {
            EXPECT_EQ(payload(content), status);
            EXPECT_TRUE(same_bytes(*activity_, *expected_));
        }
    }
}

TEST_F(GetEventPayload, AsksTheServiceAndCopiesNothingForKinds0And1)
{
    for (const int kind : {0, 1}) {
        reset();
        event_->detached_kind = kind;
        EXPECT_EQ(payload(element("payload", activity_xml())), 0);
        EXPECT_TRUE(same_bytes(*activity_, *expected_));
        EXPECT_EQ(last_request(), request("getEventPayload", 4, kind, nil("body")));
        EXPECT_EQ(session_.lines().back(), ok(kPayload));
    }
}

TEST_F(GetEventPayload, AsksTheServiceAndRefusesAnyOtherKind)
{
    for (const int kind : {2, 3, 5, 7, 8, -1, std::numeric_limits<int>::min()}) {
        reset();
        event_->detached_kind = kind;
        EXPECT_EQ(payload(element("payload", activity_xml())), 2060022);
        EXPECT_TRUE(same_bytes(*activity_, *expected_));
        EXPECT_EQ(last_request(), request("getEventPayload", 4, kind, nil("body")));
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kPayload), return_code(kPayload, 0),
                                failure("stspi_get_event_payload: Unrecognized detached event type")));
    }
}

TEST_F(GetEventPayload, RefusesAnEventAsGetEventAnnouncedIt)
{
    char token[] = "C";
    stsp_evc_t channel{server_.get(), session_.get(), token};
    service_.script(answer(
        reply("getEventResponse",
              element("event", number("seqno", 21) + element("server", "wire server") + number("flags", 4) +
                                   number("type", 6) + element("body", activity_xml())))));
    ASSERT_EQ(get_event()(&channel, event_.get()), 0);
    EXPECT_EQ(payload(element("payload", activity_xml())), 2060022);
    EXPECT_THAT(last_request(), HasSubstr(number("type", 2) + nil("body")));
    event_->detached_kind = 6;
    EXPECT_EQ(payload(element("payload", activity_xml())), 0);
}

TEST_F(GetEventPayload, GoesByTheDetachedKindOfAnInlineEventToo)
{
    make_inline(3);
    event_->payload.srvStat.action = 73;
    put(event_->payload.srvStat.name, "server");
    EXPECT_EQ(payload(element("payload", activity_xml())), 0);
    put_activity(*expected_);
    EXPECT_TRUE(same_bytes(*activity_, *expected_));
    EXPECT_EQ(last_request(), request("getEventPayload", 2, 3, element("body", srv_stat_xml())));
}

TEST_F(GetEventPayload, MayFillTheEventsOwnPayload)
{
    make_inline(6);
    std::memset(&event_->payload, 0, sizeof event_->payload);
    service_.script(answer(reply("getEventPayloadResponse", element("payload", activity_xml()))));
    EXPECT_EQ(get_event_payload()(server_.get(), &event_->payload.actv, event_.get()), 0);
    put_activity(*expected_);
    EXPECT_TRUE(same_bytes(event_->payload.actv, *expected_));
}

TEST_F(GetEventPayload, ReturnsAFaultAndLeavesTheRecordAlone)
{
    for (const int status : {2060013, 0}) {
        session_.clear();
        EXPECT_EQ(payload(fault_answer(fault(status))), status);
        EXPECT_TRUE(same_bytes(*activity_, *expected_));
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kPayload), return_code(kPayload, 1), failure(rendered_fault(status))));
    }
    EXPECT_EQ(payload(fault_answer(fault_with_detail(""))), 2060021);
    EXPECT_EQ(payload(fault_answer(fault(5, "SOAP-ENV:Server"))), 2060017);
    EXPECT_EQ(payload(Answer{Answer::Manner::kReset, ""}), 2060017);
    EXPECT_TRUE(same_bytes(*activity_, *expected_));
}

TEST_F(GetEventPayload, LogsAnUnknownInlineKindOnTheWayOutAndAsSoonAsTheCallIsBack)
{
    make_inline(7);
    EXPECT_EQ(payload(fault_answer(fault(2060013))), 2060013);
    EXPECT_EQ(last_request(), request("getEventPayload", 2, 7, element("body")));
    EXPECT_THAT(session_.lines(),
                ElementsAre(enter(kPayload), anomaly("set_event_from_sts: Unrecognized inline event type"),
                            anomaly("cleanup_soap_event: Unrecognized inline event type"),
                            return_code(kPayload, 1), failure(rendered_fault(2060013))));
}

TEST_F(DeleteEvent, TestsServerAndServiceHandleSilentlyAndTheEventAfterEnter)
{
    const ServerHandle without_token = make_server(session_, service_.url(), false, nullptr);
    EXPECT_EQ(delete_event()(nullptr, nullptr), 2060022);
    EXPECT_EQ(delete_event()(without_token.get(), nullptr), 2060026);
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_EQ(delete_event()(server_.get(), nullptr), 2060001);
    EXPECT_THAT(session_.lines(), ElementsAre(enter(kDelete)));
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(DeleteEvent, SendsADetachedEventUnderTheHostsNumberAndWithoutABody)
{
    for (const int kind : {0, 1, 2, 6, -1}) {
        session_.clear();
        event_->detached_kind = kind;
        EXPECT_EQ(remove(), 0);
        EXPECT_EQ(last_request(), request("deleteEvent", 4, kind, nil("body")));
        EXPECT_THAT(session_.lines(), ElementsAre(enter(kDelete), return_code(kDelete, 0), ok(kDelete)));
    }
}

TEST_F(DeleteEvent, SendsAnInlineEventWithItsPayload)
{
    sts_event_payload_v11_t& payload = event_->payload;
    make_inline(1);
    put(payload.op.name, "operation");
    payload.op.bytesTransferred = -70;
    payload.op.error = -71;
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(last_request(), request("deleteEvent", 2, 1, element("body", op_xml(-1))));

    make_inline(2);
    put_lsu_info(payload.lsuInfo);
    payload.lsuInfo.lsuInfo.def.version = 51;
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(last_request(), request("deleteEvent", 2, 2, element("body", lsu_info_xml())));

    make_inline(3);
    payload.srvStat.action = 73;
    put(payload.srvStat.name, "server");
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(last_request(), request("deleteEvent", 2, 3, element("body", srv_stat_xml())));

    make_inline(4);
    payload.lsuStat.action = 74;
    put(payload.lsuStat.name, "lsu");
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(last_request(), request("deleteEvent", 2, 4, element("body", lsu_stat_xml())));
}

TEST_F(DeleteEvent, SendsAnImageWithItsSupplierAndItsFourExports)
{
    make_inline(5);
    event_->payload.imgInfo.fields = 75;
    sts_image_info_v10_t& info = event_->payload.imgInfo.imgInfo;
    put_image(info);
    info.def.version = 31;
    put(info.def.fulldate, "full");
    put(info.def.format, "tar");
    info.def.isid.version = 34;
    put(info.def.isid.dpaid, "dpa");
    put(info.def.isid.dpaver, "9.1");
    put(info.def.isid.info, "mount=/a");
    const char* mounts[] = {"/a", "/b", "/c", "/d"};
    for (int i = 0; i < 4; ++i) {
        info.exports[i].fstype = 40;
        put(info.exports[i].mount, mounts[i]);
    }
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(last_request(), request("deleteEvent", 2, 5, element("body", img_info_xml())));
}

TEST_F(DeleteEvent, SendsAnActivityWithAnEmptyBody)
{
    make_inline(6);
    put_activity(event_->payload.actv);
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(last_request(), request("deleteEvent", 2, 6, element("body")));
    EXPECT_THAT(session_.lines(), ElementsAre(enter(kDelete), return_code(kDelete, 0), ok(kDelete)));
}

TEST_F(DeleteEvent, SendsAnUnknownInlineKindWithAnEmptyBodyAndLogsItTwice)
{
    for (const int kind : {0, 7, -1}) {
        session_.clear();
        make_inline(kind);
        EXPECT_EQ(remove(), 0);
        EXPECT_EQ(last_request(), request("deleteEvent", 2, kind, element("body")));
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kDelete), anomaly("set_event_from_sts: Unrecognized inline event type"),
                                anomaly("cleanup_soap_event: Unrecognized inline event type"),
                                return_code(kDelete, 0), ok(kDelete)));
    }
}

TEST_F(DeleteEvent, SendsTheLowHalvesOfSequenceNumberAndFlags)
{
    event_->seqno = 0x1ffffffff;
    event_->flags = std::numeric_limits<std::int64_t>::min() + 0x80000000;
    EXPECT_EQ(remove(), 0);
    EXPECT_THAT(last_request(), HasSubstr(number("seqno", -1)));
    EXPECT_THAT(last_request(), HasSubstr(number("flags", std::numeric_limits<int>::min())));
}

TEST_F(DeleteEvent, LeavesTheHostsRecordAlone)
{
    for (const int kind : {1, 2, 5, 6, 7}) {
        make_inline(kind);
        // Texts without a terminator must do, as long as they are texts.
        std::memset(&event_->payload, 'x', sizeof event_->payload);
        const auto before = std::make_unique<sts_event_v11_t>(*event_);
        EXPECT_EQ(remove(), 0);
        EXPECT_TRUE(same_bytes(*event_, *before)) << kind;
    }
}

TEST_F(DeleteEvent, ReturnsAFault)
{
    make_inline(5);
    for (const int status : {2060013, 0}) {
        session_.clear();
        EXPECT_EQ(remove(fault_answer(fault(status))), status);
        EXPECT_THAT(session_.lines(),
                    ElementsAre(enter(kDelete), return_code(kDelete, 1), failure(rendered_fault(status))));
    }
    EXPECT_EQ(remove(fault_answer(fault_with_detail(""))), 2060021);
    EXPECT_EQ(remove({Answer::Manner::kReset, ""}), 2060017);
}

TEST_F(DeleteEvent, IsSilentWithoutASessionOrACallback)
{
    make_inline(7);
    server_->session = nullptr;
    EXPECT_EQ(remove(), 0);
    server_->session = session_.get();
    session_->log_callback = nullptr;
    EXPECT_EQ(remove(fault_answer(fault(5))), 5);
    EXPECT_THAT(session_.lines(), IsEmpty());
}

TEST_F(DeleteEvent, GoesOverTlsThroughAnHttpsHandle)
{
    server_ = make_server(session_, service_.tls_url(), true);
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(payload(element("payload", activity_xml())), 0);
    ASSERT_EQ(service_.requests().size(), 2U);
    for (const Request& request : service_.requests()) EXPECT_TRUE(request.tls);
}
