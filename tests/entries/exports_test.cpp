#include "tests/entries/catalogue_fixture.h"

using namespace catalogue;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace
{

std::string volume_element(std::string_view name, int type)
{
    const std::string kinds[] = {
        element("nfs",
                element("exportHost", "one") + element("exportName", "two") + element("exportPath", "three")),
        element("cifs",
                element("exportHost", "one") + element("shareName", "two") + element("exportPath", "three")),
        element("scsi", element("lunWWNN", "one") + element("lunSerial", "two")),
        element("device", element("devicePath", "one")),
        element("ndmp", element("exportfiler", "one") + element("exportpath", "two"))};
    const bool known = type >= 0 && type < 5;
    return element(name, (known ? kinds[type] : "") + element("volumeType", std::to_string(type)));
}

std::string rows(const std::string& first)
{
    std::string items = element("item", first);
    for (int i = 1; i < 16; ++i) items += "<ns1:item/>";
    return items;
}

// The host of the fixture: one name, one port, all sixteen rows of each.
std::string host_element()
{
    return element("host", element("hostname", rows("client1")) + element("port", rows("iqn.1")) +
                               element("flags", "-6"));
}

class Exports : public CatalogueTest
{
  protected:
    Exports()
    {
        put(host->hostname[0], "client1");
        put(host->port[0], "iqn.1");
        host->flags = -6;
        fill_with_canary(exported);
    }

    sts_volume_spec_v11_t nfs_record() const
    {
        sts_volume_spec_v11_t expected;
        fill_with_canary(expected);
        put(expected.first, "one");
        put(expected.second, "two");
        expected.volumeType = 0;
        return expected;
    }

    std::unique_ptr<sts_host_spec_v11_t> host = std::make_unique<sts_host_spec_v11_t>();
    sts_volume_spec_v11_t source = host_volume(STS_VOLUME_NFS);
    sts_volume_spec_v11_t exported;
    sts_volume_spec_v11_t untouched = *canary_record<sts_volume_spec_v11_t>();
};

} // namespace

TEST_F(Exports, CreateSendsTheSnapshotAndAllRowsOfTheHost)
{
    script("createExportResponse", nfs_element("exportedVolume"));
    ASSERT_EQ(create_export()(&lsu, "snap1", host.get(), &exported), 0);
    EXPECT_EQ(service.request_body(0),
              element("createExport", lsu_element() + element("snapName", "snap1") + host_element()));
    EXPECT_TRUE(same_bytes(exported, nfs_record()));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_create_export")));
}

TEST_F(Exports, CreateLogsTheEnterLineAheadOfItsChecks)
{
    EXPECT_EQ(create_export()(&lsu, nullptr, host.get(), &exported), STS_ENULLARG);
    EXPECT_EQ(create_export()(&lsu, "snap1", nullptr, &exported), STS_ENULLARG);
    EXPECT_EQ(create_export()(&lsu, "snap1", host.get(), nullptr), STS_ENULLARG);
    const LogLine enter = record("stspi_create_export: enter");
    EXPECT_THAT(session.lines(), ElementsAre(enter, enter, enter));
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(Exports, CreateWithoutAReferenceOrAServerIsRefusedWithoutALine)
{
    EXPECT_EQ(create_export()(nullptr, "snap1", host.get(), &exported), STS_ENULLARG);
    lsu.server = nullptr;
    EXPECT_EQ(create_export()(&lsu, nullptr, host.get(), &exported), STS_ENULLARG);
    EXPECT_EQ(create_export()(&lsu, "snap1", host.get(), &exported), STS_EBADARG);
    expect_silence();
}

TEST_F(Exports, CreateDoesNotAskForAServiceHandle)
{
    server.service_handle = nullptr;
    service.script(fault_answer(fault(2060026)));
    EXPECT_EQ(create_export()(&lsu, "", host.get(), &exported), 2060026);
    EXPECT_EQ(service.request_body(0),
              element("createExport",
                      element("lsu", token_element("serverHandle", "") + element("lsuName", "lsu1")) +
                          "<ns1:snapName/>" + host_element()));
    EXPECT_TRUE(same_bytes(exported, untouched));
}

TEST_F(Exports, BothLeaveTheRecordForAVolumeOfNoKindThatComesBack)
{
    for (const std::string& kind : {std::string(), nil("nfs"), element("volumeType", "0")}) {
        script("createExportResponse", element("exportedVolume", kind));
        EXPECT_EQ(create_export()(&lsu, "snap1", host.get(), &exported), 0);
        script("addExportResponse", element("exportedVolume", kind));
        EXPECT_EQ(add_export()(&lsu, &source, host.get(), &exported), 0);
        EXPECT_TRUE(same_bytes(exported, untouched)) << kind;
    }
}

TEST_F(Exports, CreateTakesTheChoiceAndNotTheTypeOfTheVolumeThatComesBack)
{
    script("createExportResponse",
           element("exportedVolume", element("ndmp", element("exportfiler", "filer")) +
                                         element("nfs", element("exportHost", "too late")) +
                                         element("volumeType", "2")));
    EXPECT_EQ(create_export()(&lsu, "snap1", host.get(), &exported), 0);
    EXPECT_STREQ(exported.first, "filer");
    EXPECT_STREQ(exported.second, "");
    EXPECT_EQ(exported.volumeType, STS_VOLUME_NDMP);
}

TEST_F(Exports, BothLeaveTheRecordForADeviceThatComesBack)
{
    script("createExportResponse", volume_element("exportedVolume", STS_VOLUME_DEVICE));
    EXPECT_EQ(create_export()(&lsu, "snap1", host.get(), &exported), 0);
    script("addExportResponse", volume_element("exportedVolume", STS_VOLUME_DEVICE));
    EXPECT_EQ(add_export()(&lsu, &source, host.get(), &exported), 0);
    EXPECT_TRUE(same_bytes(exported, untouched));
}

TEST_F(Exports, AddSendsTheSourceVolume)
{
    script("addExportResponse", nfs_element("exportedVolume"));
    ASSERT_EQ(add_export()(&lsu, &source, host.get(), &exported), 0);
    EXPECT_EQ(service.request_body(0),
              element("addExport", lsu_element() + nfs_element("sourceVolSpec") + host_element()));
    EXPECT_TRUE(same_bytes(exported, nfs_record()));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_add_export")));
}

TEST_F(Exports, AddSendsItsRequestBeforeItNeedsTheRecordAndSaysThatThereIsNone)
{
    script("addExportResponse", nfs_element("exportedVolume"));
    EXPECT_EQ(add_export()(&lsu, &source, host.get(), nullptr), 0);
    EXPECT_EQ(service.requests().size(), 1u);
    EXPECT_THAT(session.lines(), ElementsAreArray(log_without_place("stspi_add_export", "volume")));
    script("addExportResponse");
    EXPECT_EQ(add_export()(&lsu, &source, host.get(), nullptr), STS_EPLUGIN);
}

TEST_F(Exports, AddAndDeleteCheckArgumentsServerAndServiceHandle)
{
    lsu.server = nullptr;
    EXPECT_EQ(add_export()(nullptr, &source, host.get(), &exported), STS_ENULLARG);
    EXPECT_EQ(add_export()(&lsu, nullptr, host.get(), &exported), STS_ENULLARG);
    EXPECT_EQ(add_export()(&lsu, &source, nullptr, &exported), STS_ENULLARG);
    EXPECT_EQ(add_export()(&lsu, &source, host.get(), nullptr), STS_EBADARG);
    EXPECT_EQ(delete_export()(nullptr, host.get(), &source), STS_ENULLARG);
    EXPECT_EQ(delete_export()(&lsu, nullptr, &source), STS_ENULLARG);
    EXPECT_EQ(delete_export()(&lsu, host.get(), nullptr), STS_ENULLARG);
    EXPECT_EQ(delete_export()(&lsu, host.get(), &source), STS_EBADARG);
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(add_export()(&lsu, &source, host.get(), &exported), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(delete_export()(&lsu, host.get(), &source), STS_ENOSERVICEHANDLE);
    EXPECT_TRUE(same_bytes(exported, untouched));
    expect_silence();
}

TEST_F(Exports, DeleteSendsTheHostAheadOfTheVolume)
{
    script("deleteExportResponse");
    ASSERT_EQ(delete_export()(&lsu, host.get(), &source), 0);
    EXPECT_EQ(service.request_body(0),
              element("deleteExport", lsu_element() + host_element() + nfs_element("exportedVolume")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_delete_export")));
}

TEST_F(Exports, ClaimSendsVolumesOfAllFiveKindsAndUnknownOnesBare)
{
    std::size_t sent = 0;
    for (const int type : {0, 1, 2, 3, 4, 5, -1}) {
        session.clear();
        script("claimVolumeResponse");
        const sts_volume_spec_v11_t volume = host_volume(type);
        ASSERT_EQ(claim_volume()(&server, &volume), 0);
        EXPECT_EQ(service.request_body(sent++), element("claimVolume", token_element("serverHandle", "S1") +
                                                                           volume_element("volume", type)));
        EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_claim_volume")));
    }
}

TEST_F(Exports, ClaimChecksTheServerThenTheServiceHandleThenLogsThenTheVolume)
{
    EXPECT_EQ(claim_volume()(nullptr, nullptr), STS_EBADARG);
    server.service_handle = nullptr;
    EXPECT_EQ(claim_volume()(&server, nullptr), STS_ENOSERVICEHANDLE);
    expect_silence();
    server.service_handle = service_handle;
    EXPECT_EQ(claim_volume()(&server, nullptr), STS_ENULLARG);
    EXPECT_THAT(session.lines(), ElementsAre(record("stspi_claim_volume: enter")));
    EXPECT_EQ(service.connections(), 0u);
}
