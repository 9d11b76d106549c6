#include "conversion/events_from_sts.h"
#include "tests/kit/log_recorder.h"
#include "tests/unit/events_records.h"
#include "tests/unit/live_allocations.h"

#include <gmock/gmock.h>

#include "soapwrapperStub.h"

using namespace soapwrapper;
using testing::IsEmpty;

TEST(EventCleanUp, GivesBackAllThatAnEventOfAnyKindTook)
{
    for (const int kind : {1, 2, 3, 4, 5, 6, 0, 7, -1}) {
        const auto event = inline_event(kind);
        ns1__Event wire;
        wire.server.reserve(600); // the caller's, and kept
        const long before = live_allocations();
        set_event_from_sts(wire, event.get(), nullptr);
        EXPECT_GT(live_allocations(), before) << kind;
        cleanup_soap_event(wire, nullptr);
        EXPECT_EQ(live_allocations(), before) << kind;
        EXPECT_EQ(wire.body, nullptr);
    }
}

TEST(EventCleanUp, LeavesTheHostsRecordAlone)
{
    for (const int kind : {1, 2, 3, 4, 5, 6, 7}) {
        const auto event = inline_event(kind);
        const auto before = std::make_unique<sts_event_v11_t>(*event);
        ns1__Event wire;
        set_event_from_sts(wire, event.get(), nullptr);
        cleanup_soap_event(wire, nullptr);
        EXPECT_TRUE(same_bytes(*event, *before)) << kind;
    }
}

TEST(EventCleanUp, OfADetachedEventDoesNothing)
{
    kit::RecordedSession session;
    for (const int kind : {0, 1, 2, 6, 7}) {
        const auto event = detached_event(kind);
        ns1__Event wire;
        wire.server.reserve(600);
        const long before = live_allocations();
        set_event_from_sts(wire, event.get(), session.get());
        cleanup_soap_event(wire, session.get());
        EXPECT_EQ(live_allocations(), before);
    }
    EXPECT_THAT(session.lines(), IsEmpty());
}

TEST(EventCleanUp, ServerAndLsuStatusNeedTheBodyAndOneObjectOnly)
{
    for (const int kind : {3, 4}) {
        const auto event = inline_event(kind);
        event->payload.srvStat.name[0] = '\0';
        event->payload.lsuStat.name[0] = '\0';
        ns1__Event wire;
        wire.server.reserve(600);
        const long before = live_allocations();
        set_event_from_sts(wire, event.get(), nullptr);
        EXPECT_EQ(live_allocations(), before + 2);
        cleanup_soap_event(wire, nullptr);
    }
}

TEST(EventCleanUp, SurvivesABodyThatIsNotThereAndOneWithoutItsObject)
{
    for (const int kind : {1, 2, 3, 4, 5, 6, 7}) {
        ns1__Event wire;
        wire.flags = STS_EVENT_INLINE;
        wire.type = kind;
        wire.body = nullptr;
        const long before = live_allocations();
        cleanup_soap_event(wire, nullptr);
        wire.body = new ns1__EventBody();
        wire.body->__union_EventBody = kind;
        wire.body->union_EventBody.actv = nullptr;
        cleanup_soap_event(wire, nullptr);
        EXPECT_EQ(wire.body, nullptr);
        EXPECT_EQ(live_allocations(), before);
    }
}

TEST(EventCleanUp, SurvivesObjectsWithNothingBehindThem)
{
    const auto clean_up = [](int kind, auto* _ns1__union_EventBody::*arm, auto* object) {
        ns1__Event wire;
        wire.flags = STS_EVENT_INLINE;
        wire.type = kind;
        wire.body = new ns1__EventBody();
        wire.body->union_EventBody.*arm = object;
        cleanup_soap_event(wire, nullptr);
    };
    const long before = live_allocations();
    clean_up(1, &_ns1__union_EventBody::op, new ns1__OperationStatus());
    clean_up(2, &_ns1__union_EventBody::lsuInfo, new ns1__EventLSUInformation());
    clean_up(5, &_ns1__union_EventBody::imgInfo, new ns1__EventImageInformation());
    clean_up(6, &_ns1__union_EventBody::actv, new ns1__EventActivity());
    EXPECT_EQ(live_allocations(), before);
}
