#include "conversion/events_from_sts.h"
#include "tests/kit/log_recorder.h"
#include "tests/unit/canary.h"
#include "tests/unit/events_records.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "soapwrapperStub.h"

using namespace soapwrapper;
using kit::anomaly;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr std::int64_t kMin64 = std::numeric_limits<std::int64_t>::min();

void fill(sts_image_info_v10_t& info)
{
    info.version = 30;
    info.def.version = 31;
    put(info.def.basename, "backup");
    put(info.def.date, "20240131");
    put(info.def.fulldate, "full");
    put(info.def.policy, "daily");
    info.def.saveas = 32;
    info.def.flags = 33;
    put(info.def.format, "tar");
    info.def.isid.version = 34;
    put(info.def.isid.dpaid, "dpa");
    put(info.def.isid.dpaver, "9.1");
    put(info.def.isid.info, "mount=/a");
    put(info.server, "image server");
    put(info.lsu, "image lsu");
    info.size = kMin64;
    info.blockSize = 35;
    for (int i = 0; i < STS_IMAGE_EXPORTS; ++i) {
        info.exports[i].fstype = 40 + i;
        put(info.exports[i].mount, std::string("/mnt/") + static_cast<char>('a' + i));
    }
    info.exports[3].mount[0] = '\0';
    info.status = -36;
}

void expect_image(const ns1__ImageInformation& wire, const sts_image_info_v10_t& info)
{
    EXPECT_EQ(wire.version, 30);
    ASSERT_NE(wire.def, nullptr);
    EXPECT_EQ(wire.def->version, 31);
    EXPECT_EQ(*wire.def->basename, "backup");
    EXPECT_EQ(*wire.def->date, "20240131");
    EXPECT_EQ(*wire.def->fulldate, "full");
    EXPECT_EQ(*wire.def->policy, "daily");
    EXPECT_EQ(wire.def->saveas, 32);
    EXPECT_EQ(wire.def->flags, 33);
    EXPECT_EQ(*wire.def->format, "tar");
    ASSERT_NE(wire.def->isid, nullptr);
    EXPECT_EQ(wire.def->isid->version, 34);
    EXPECT_EQ(*wire.def->isid->dpaid, "dpa");
    EXPECT_EQ(*wire.def->isid->dpaver, "9.1");
    EXPECT_EQ(static_cast<const void*>(wire.def->isid->info->__ptr), info.def.isid.info);
    EXPECT_EQ(wire.def->isid->info->__size, 8);
    EXPECT_EQ(*wire.server, "image server");
    EXPECT_EQ(*wire.lsu, "image lsu");
    EXPECT_EQ(wire.size, kMin64);
    EXPECT_EQ(wire.blockSize, 35);
    ASSERT_NE(wire.exports, nullptr);
    ASSERT_EQ(wire.exports->item.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(wire.exports->item[i]->fstype, 40 + static_cast<int>(i));
        EXPECT_EQ(*wire.exports->item[i]->mount, info.exports[i].mount);
    }
    EXPECT_EQ(wire.status, -36);
}

// Builds the wire event of a host's event for the length of a test, and takes it down.
class Sent
{
  public:
    explicit Sent(const sts_event_v11_t& event) { set_event_from_sts(wire_, &event, session_.get()); }
    ~Sent() { cleanup_soap_event(wire_, session_.get()); }
    Sent(const Sent&) = delete;
    Sent& operator=(const Sent&) = delete;

    const ns1__Event* operator->() const { return &wire_; }
    int choice() const { return wire_.body ? wire_.body->__union_EventBody : -1; }
    const _ns1__union_EventBody& arm() const { return wire_.body->union_EventBody; }
    std::vector<kit::LogLine> lines() const { return session_.lines(); }

  private:
    kit::RecordedSession session_;
    ns1__Event wire_;
};

} // namespace

TEST(SentEvent, CarriesTheHeadOfAnInlineEvent)
{
    const auto event = inline_event(STS_EVENT_LSU_STAT);
    put(event->payload.lsuStat.name, "lsu");
    const Sent sent(*event);
    EXPECT_EQ(sent->seqno, 21);
    EXPECT_EQ(sent->server, "Network_X:host");
    EXPECT_EQ(sent->flags, 2);
    EXPECT_EQ(sent->type, 4);
    EXPECT_NE(sent->body, nullptr);
    EXPECT_THAT(sent.lines(), IsEmpty());
}

TEST(SentEvent, CutsSequenceNumberAndFlagsToTheirLowHalves)
{
    const auto event = detached_event(0);
    event->seqno = 0x0123456789abcdef;
    event->flags = kMin64 | 0x80000004;
    const Sent sent(*event);
    EXPECT_EQ(sent->seqno, static_cast<int>(0x89abcdefu));
    EXPECT_EQ(sent->flags, static_cast<int>(0x80000004u));
    event->seqno = -7;
    event->flags = -1 & ~std::int64_t{STS_EVENT_INLINE};
    const Sent negative(*event);
    EXPECT_EQ(negative->seqno, -7);
    EXPECT_EQ(negative->flags, -3);
}

TEST(SentEvent, DetachedHasNoBodyAndTheHostsNumberOfItsKind)
{
    for (const int kind : {0, 1, 2, 6, 7, -1}) {
        const auto event = detached_event(kind);
        const Sent sent(*event);
        EXPECT_EQ(sent->type, kind);
        EXPECT_EQ(sent->body, nullptr);
        EXPECT_THAT(sent.lines(), IsEmpty());
    }
}

TEST(SentEvent, TakesAServerNameWithoutATerminatorToTheEndOfItsField)
{
    const auto event = detached_event(0);
    std::memset(event->server, 's', sizeof event->server);
    const Sent sent(*event);
    EXPECT_EQ(sent->server, std::string(512, 's'));
}

TEST(SentEvent, OperationCarriesItsResult)
{
    const auto event = inline_event(STS_EVENT_OP);
    put(event->payload.op.name, "operation");
    event->payload.op.bytesTransferred = kMin64;
    event->payload.op.error = -5;
    const Sent sent(*event);
    ASSERT_EQ(sent.choice(), 1);
    EXPECT_EQ(sent.arm().op->name, "operation");
    ASSERT_NE(sent.arm().op->result, nullptr);
    EXPECT_EQ(sent.arm().op->result->image, nullptr);
    EXPECT_EQ(sent.arm().op->result->bytesTransferred, kMin64);
    EXPECT_EQ(sent.arm().op->result->error, -5);
    EXPECT_EQ(sent.arm().op->result->delayInSeconds, -1);
}

TEST(SentEvent, LsuInformationCarriesEveryFieldOfItsRecord)
{
    const auto event = inline_event(STS_EVENT_LSU_INFO);
    event->payload.lsuInfo.fields = kMin64;
    sts_lsu_info_v11_t& info = event->payload.lsuInfo.lsuInfo;
    info.version = 50;
    put(info.server, "lsu server");
    info.def.version = 51;
    put(info.def.name, "lsu");
    info.def.alloc = 52;
    info.def.storage = 53;
    put(info.def.description, "description");
    put(info.def.config, "config");
    info.def.flags = 54;
    info.def.saveas = 55;
    info.def.maxTransfer = 56;
    info.def.blockSize = 57;
    info.def.allocSize = 58;
    put(info.def.label, "label");
    info.def.repSources = 59;
    info.def.repTargets = 60;
    info.capacity = 61;
    info.capacityPhys = 62;
    info.used = 63;
    info.usedPhys = 64;
    info.images = -65;
    const Sent sent(*event);
    ASSERT_EQ(sent.choice(), 2);
    EXPECT_EQ(sent.arm().lsuInfo->fields, kMin64);
    const ns1__LSUInformation* wire = sent.arm().lsuInfo->lsuInfo;
    ASSERT_NE(wire, nullptr);
    EXPECT_EQ(wire->version, 50);
    EXPECT_EQ(wire->server, "lsu server");
    ASSERT_NE(wire->def, nullptr);
    EXPECT_EQ(wire->def->version, 51);
    EXPECT_EQ(*wire->def->name, "lsu");
    EXPECT_EQ(wire->def->alloc, 52);
    EXPECT_EQ(wire->def->storage, 53);
    EXPECT_EQ(*wire->def->description, "description");
    EXPECT_EQ(*wire->def->config, "config");
    EXPECT_EQ(wire->def->flags, 54);
    EXPECT_EQ(wire->def->saveas, 55);
    EXPECT_EQ(wire->def->maxTransfer, 56);
    EXPECT_EQ(wire->def->blockSize, 57);
    EXPECT_EQ(wire->def->allocSize, 58);
    EXPECT_EQ(*wire->def->label, "label");
    EXPECT_EQ(wire->def->repSources, 59);
    EXPECT_EQ(wire->def->repTargets, 60);
    EXPECT_EQ(wire->capacity, 61);
    EXPECT_EQ(wire->capacityPhys, 62);
    EXPECT_EQ(wire->used, 63);
    EXPECT_EQ(wire->usedPhys, 64);
    EXPECT_EQ(wire->images, -65);
}

TEST(SentEvent, ServerAndLsuStatusCarryActionAndName)
{
    const auto server = inline_event(STS_EVENT_SRV_STAT);
    server->payload.srvStat.action = -8;
    put(server->payload.srvStat.name, "server");
    const Sent sent_server(*server);
    ASSERT_EQ(sent_server.choice(), 3);
    EXPECT_EQ(sent_server.arm().srvStat->action, -8);
    EXPECT_EQ(sent_server.arm().srvStat->name, "server");

    const auto lsu = inline_event(STS_EVENT_LSU_STAT);
    lsu->payload.lsuStat.action = 9;
    put(lsu->payload.lsuStat.name, "lsu");
    const Sent sent_lsu(*lsu);
    ASSERT_EQ(sent_lsu.choice(), 4);
    EXPECT_EQ(sent_lsu.arm().lsuStat->action, 9);
    EXPECT_EQ(sent_lsu.arm().lsuStat->name, "lsu");
}

TEST(SentEvent, ImageInformationCarriesTheWholeImageWithItsFourExports)
{
    const auto event = inline_event(STS_EVENT_IMG_INFO);
    event->payload.imgInfo.fields = 77;
    fill(event->payload.imgInfo.imgInfo);
    const Sent sent(*event);
    ASSERT_EQ(sent.choice(), 5);
    EXPECT_EQ(sent.arm().imgInfo->fields, 77);
    ASSERT_NE(sent.arm().imgInfo->imgInfo, nullptr);
    expect_image(*sent.arm().imgInfo->imgInfo, event->payload.imgInfo.imgInfo);
}

TEST(SentEvent, ActivityIsBuiltInFullBehindAChoiceOfNone)
{
    const auto event = inline_event(STS_EVENT_ACTIVITY);
    sts_ev_activity_v11_t& activity = event->payload.actv;
    activity.version = 12;
    activity.action = -1;
    put(activity.eventset, "set");
    activity.time = 0x1fffffffe;
    activity.sev = -3;
    put(activity.vendorType, "vendor");
    put(activity.lsuName, "lsu");
    fill(activity.imgInfo);
    put(activity.dpaid, "dpa");
    put(activity.dpaver, "9.1");
    activity.dpaext = 0x180000000;
    activity.msgLen = -5;
    put(activity.msg, "message");
    const Sent sent(*event);
    ASSERT_EQ(sent.choice(), 0);
    const ns1__EventActivity* wire = sent.arm().actv;
    ASSERT_NE(wire, nullptr);
    EXPECT_EQ(wire->version, 12);
    EXPECT_EQ(wire->action, -1);
    EXPECT_EQ(*wire->eventset, "set");
    EXPECT_EQ(wire->time, -2);
    EXPECT_EQ(wire->sev, -3);
    EXPECT_EQ(*wire->vendorType, "vendor");
    EXPECT_EQ(*wire->lsuName, "lsu");
    ASSERT_NE(wire->imgInfo, nullptr);
    expect_image(*wire->imgInfo, activity.imgInfo);
    EXPECT_EQ(wire->snapInfo, nullptr);
    EXPECT_EQ(wire->volSpec, nullptr);
    EXPECT_EQ(wire->hostSpec, nullptr);
    EXPECT_EQ(*wire->dpaid, "dpa");
    EXPECT_EQ(*wire->dpaver, "9.1");
    EXPECT_EQ(*wire->dpaext, std::numeric_limits<int>::min());
    EXPECT_EQ(wire->msgLen, -5);
    EXPECT_EQ(wire->msg, "message");
}

TEST(SentEvent, TakesTextsWithoutATerminatorToTheEndOfTheirFields)
{
    // The canary fills every text of the payload.
    const auto op = inline_event(STS_EVENT_OP);
    EXPECT_EQ(Sent(*op).arm().op->name, std::string(256, kCanary));
    const auto lsu = inline_event(STS_EVENT_LSU_INFO);
    EXPECT_EQ(*Sent(*lsu).arm().lsuInfo->lsuInfo->def->label, std::string(64, kCanary));
    const auto activity = inline_event(STS_EVENT_ACTIVITY);
    const Sent sent(*activity);
    EXPECT_EQ(sent.arm().actv->eventset->size(), 256u);
    EXPECT_EQ(sent.arm().actv->vendorType->size(), 256u);
    EXPECT_EQ(sent.arm().actv->lsuName->size(), 1024u);
    EXPECT_EQ(sent.arm().actv->dpaid->size(), 64u);
    EXPECT_EQ(sent.arm().actv->dpaver->size(), 32u);
    EXPECT_EQ(sent.arm().actv->msg.size(), 2048u);
}

TEST(SentEvent, OfAnUnknownKindHasAnEmptyBodyAndIsLoggedOnceOnTheWayOutAndOnceOnTheCleanUp)
{
    for (const int kind : {0, 7, 8, 100, -1, std::numeric_limits<int>::min()}) {
        kit::RecordedSession session;
        const auto event = inline_event(kind);
        ns1__Event wire;
        set_event_from_sts(wire, event.get(), session.get());
        EXPECT_EQ(wire.type, kind);
        ASSERT_NE(wire.body, nullptr);
        EXPECT_EQ(wire.body->__union_EventBody, 0);
        EXPECT_EQ(wire.body->union_EventBody.actv, nullptr);
        EXPECT_THAT(session.lines(),
                    ElementsAre(anomaly("set_event_from_sts: Unrecognized inline event type")));
        session.clear();
        cleanup_soap_event(wire, session.get());
        EXPECT_EQ(wire.body, nullptr);
        EXPECT_THAT(session.lines(),
                    ElementsAre(anomaly("cleanup_soap_event: Unrecognized inline event type")));
    }
}

TEST(SentEvent, OfAnUnknownKindIsSilentWithoutACallback)
{
    kit::RecordedSession session;
    session->log_callback = nullptr;
    const auto event = inline_event(7);
    ns1__Event wire;
    set_event_from_sts(wire, event.get(), session.get());
    cleanup_soap_event(wire, session.get());
    EXPECT_THAT(session.lines(), IsEmpty());
}
