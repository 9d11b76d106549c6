// Events of the simulator through the built library, as a host reads them.
#include "plugin/base/handle_records.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/soap_text.h"
#include "tests/system/simulator_process.h"
#include "tests/system/soap_client.h"

#include <gmock/gmock.h>

#include <memory>

namespace
{

using kit::element;

constexpr int kEnd = 2060013;
constexpr char kServer[] = "Network_NTAP:filer";

template <class Entry>
Entry* slot(std::size_t number)
{
    return kit::Host::instance().main_slot<Entry>(number);
}

class EventsThroughTheLibrary : public testing::Test
{
  protected:
    explicit EventsThroughTheLibrary(const SimulatorProcess::Arguments& arguments = {})
        : simulator_(arguments)
    {
        kit::Host::instance().write_configuration(
            "filer = http://127.0.0.1:" + std::to_string(simulator_.http_port()) + "\n");
        const kit::Credential credential("simulator");
        EXPECT_EQ(kit::open_server()(session_.get(), kServer, credential.get(), nullptr, &server_), 0);
        EXPECT_EQ(slot<decltype(stspi_open_evchannel_v11)>(27)(session_.get(), kServer, credential.get(),
                                                               nullptr, nullptr, nullptr, 0, 0, &channel_),
                  0);
        lsu_.server = server_;
        std::strcpy(lsu_.name, "home");
        // What the server tells at its start.
        EXPECT_EQ(next(), 0);
        EXPECT_EQ(event_->inline_kind, STS_EVENT_SRV_STAT);
        EXPECT_EQ(event_->payload.srvStat.action, 1);
        EXPECT_STREQ(event_->payload.srvStat.name, kServer);
        EXPECT_EQ(next(), 0);
        EXPECT_EQ(event_->detached_kind, STS_DETACHED_SRV_INFO);
    }
    ~EventsThroughTheLibrary() override
    {
        if (channel_) {
            EXPECT_EQ(close(), 0);
        }
        EXPECT_EQ(kit::close_server()(server_), 0);
    }

    int next()
    {
        *event_ = {};
        return slot<decltype(stspi_get_event)>(15)(channel_, event_.get());
    }
    int close() { return slot<decltype(stspi_close_evchannel)>(5)(channel_); }
    int remove() { return slot<decltype(stspi_delete_event)>(12)(server_, event_.get()); }
    int fetch(int kind)
    {
        event_->detached_kind = kind;
        return slot<decltype(stspi_get_event_payload)>(44)(server_, activity_.get(), event_.get());
    }
    void delete_snapshot(const char* name)
    {
        auto snap = std::make_unique<sts_snap_def_v11_t>();
        std::strcpy(snap->snapName, name);
        const auto entry = kit::Host::instance().snapshot_slot<decltype(stspi_delete_snap)>(15);
        EXPECT_EQ(entry(&lsu_, snap.get()), 0);
    }

    // What no entry of the library asks for.
    void ask_for(const std::string& operation, const std::string& content) const
    {
        EXPECT_EQ(ask(simulator_.http_port(), operation, content).status, 200);
    }
    std::string server_handle() const
    {
        return element("serverHandle", element("token", server_->service_handle));
    }

    SimulatorProcess simulator_;
    kit::RecordedSession session_;
    stsp_server_t* server_ = nullptr;
    stsp_evc_t* channel_ = nullptr;
    stsp_lsu_v7_t lsu_ = {};
    std::unique_ptr<sts_event_v11_t> event_ = std::make_unique<sts_event_v11_t>();
    std::unique_ptr<sts_ev_activity_v11_t> activity_ = std::make_unique<sts_ev_activity_v11_t>();
};

TEST_F(EventsThroughTheLibrary, AnActivityIsAnnouncedFetchedAndDeleted)
{
    EXPECT_EQ(next(), kEnd);
    delete_snapshot("nightly.0105");
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(event_->version, 11);
    EXPECT_EQ(event_->seqno, 3);
    EXPECT_STREQ(event_->server, kServer);
    EXPECT_EQ(event_->flags, 0);
    EXPECT_EQ(event_->detached_kind, STS_DETACHED_ACTIVITY);
    const std::string text = "snapshot nightly.0105 of LSU home deleted";
    EXPECT_EQ(event_->payload_length, static_cast<std::int64_t>(text.size()));

    EXPECT_EQ(fetch(STS_DETACHED_ACTIVITY), 2060022) << "under this number it isn't brought";
    EXPECT_EQ(fetch(STS_DETACHED_ACTIVITY_PAYLOAD), 0);
    EXPECT_EQ(activity_->msg, text);
    EXPECT_EQ(activity_->msgLen, event_->payload_length);
    EXPECT_EQ(activity_->action, 2);
    EXPECT_STREQ(activity_->eventset, "snapshots");
    EXPECT_STREQ(activity_->lsuName, "home");
    EXPECT_STREQ(activity_->vendorType, "soapwrapper-sim");
    EXPECT_STREQ(activity_->dpaid, "simulator");
    EXPECT_STREQ(activity_->dpaver, "1.0");
    EXPECT_EQ(activity_->dpaext, 1);
    EXPECT_GT(activity_->time, 1700000000);

    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(remove(), 2069020);
    EXPECT_EQ(fetch(STS_DETACHED_ACTIVITY_PAYLOAD), 2069020);
}

TEST_F(EventsThroughTheLibrary, AnExportComesWithItsPayloadAndIsDeletedWithoutIt)
{
    auto hosts = std::make_unique<sts_host_spec_v11_t>();
    std::strcpy(hosts->hostname[0], "h1");
    auto volume = std::make_unique<sts_volume_spec_v11_t>();
    const auto create = kit::Host::instance().snapshot_slot<decltype(stspi_create_export)>(12);
    EXPECT_EQ(create(&lsu_, "nightly.0105", hosts.get(), volume.get()), 0);
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(event_->flags, STS_EVENT_INLINE);
    EXPECT_EQ(event_->inline_kind, STS_EVENT_ACTIVITY);
    EXPECT_STREQ(event_->payload.actv.msg, "snapshot nightly.0105 of LSU home exported");
    EXPECT_EQ(remove(), 0) << "the library sends an activity back with an empty body";
    EXPECT_EQ(remove(), 2069020);
}

TEST_F(EventsThroughTheLibrary, ADeletedImageComesWithItsRecord)
{
    auto image = std::make_unique<sts_image_def_v10_t>();
    std::strcpy(image->basename, "home_1767571200_C1_F1");
    EXPECT_EQ(slot<decltype(stspi_delete_image)>(14)(&lsu_, image.get(), 0), 0);
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(event_->inline_kind, STS_EVENT_IMG_INFO);
    const sts_ev_img_info_v11_t& told = event_->payload.imgInfo;
    EXPECT_EQ(told.fields, 255);
    EXPECT_STREQ(told.imgInfo.def.basename, "home_1767571200_C1_F1");
    EXPECT_STREQ(told.imgInfo.server, kServer);
    EXPECT_STREQ(told.imgInfo.lsu, "home");
    EXPECT_EQ(told.imgInfo.size, 214748364800);
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(next(), kEnd);
}

TEST_F(EventsThroughTheLibrary, ALabelComesWithTheLsuAndItsStatus)
{
    ask_for("labelLSU",
            element("lsu", server_handle() + element("lsuName", "home")) + element("lsuLabel", "renamed"));
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(event_->inline_kind, STS_EVENT_LSU_INFO);
    const sts_ev_lsu_info_v11_t& told = event_->payload.lsuInfo;
    EXPECT_EQ(told.fields, 255);
    EXPECT_STREQ(told.lsuInfo.def.name, "home");
    EXPECT_STREQ(told.lsuInfo.def.label, "renamed");
    EXPECT_EQ(told.lsuInfo.capacity, 1099511627776);
    EXPECT_EQ(told.lsuInfo.images, 3);
    EXPECT_EQ(remove(), 0);
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(event_->inline_kind, STS_EVENT_LSU_STAT);
    EXPECT_EQ(event_->payload.lsuStat.action, 1);
    EXPECT_STREQ(event_->payload.lsuStat.name, "home");
    EXPECT_EQ(remove(), 0);
}

TEST_F(EventsThroughTheLibrary, AnOperationComesWithItsNameAndItsResult)
{
    sts_opname_t name = {};
    std::strcpy(name.name, "mine");
    const auto start =
        kit::Host::instance().snapshot_slot<decltype(stspi_named_async_postprocess_snap_byname)>(24);
    EXPECT_EQ(start(&lsu_, "nightly.0105", name), 0);
    ask_for("namedAsyncCancel", server_handle() + element("opname", "mine"));
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(event_->inline_kind, STS_EVENT_OP);
    EXPECT_STREQ(event_->payload.op.name, "mine");
    EXPECT_EQ(event_->payload.op.error, 2069031);
    EXPECT_EQ(remove(), 0);
}

class EventsOfABusyServer : public EventsThroughTheLibrary
{
  protected:
    EventsOfABusyServer() : EventsThroughTheLibrary({"--fault", "closeServer=2060005,1"}) {}
};

TEST_F(EventsOfABusyServer, AChannelWhoseLoginStaysIsClosedAgain)
{
    EXPECT_EQ(close(), 2060005);
    session_.clear();
    EXPECT_EQ(close(), 2060022) << "the channel was closed by the first call, and the second one says so";
    channel_ = nullptr;
    EXPECT_THAT(session_.texts(), testing::Contains("stspi_close_server: STS_EOK"));
}

} // namespace
