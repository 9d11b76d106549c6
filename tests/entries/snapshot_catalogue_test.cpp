#include "tests/entries/catalogue_fixture.h"

using namespace catalogue;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace
{

sts_snap_def_v11_t host_snap(std::string_view name)
{
    sts_snap_def_v11_t snap = {};
    put(snap.snapName, name);
    return snap;
}

std::string information()
{
    return element("snapInfo",
                   element("snapDef", element("snapName", "snap1") + element("snapType", "1") +
                                          element("snapFlags", "-2") + element("snapSaveas", "3")) +
                       element("snapServer", "srv") + element("snapLsu", "lsu1") +
                       nfs_element("snapVolSpec") + element("snapStatus", "-4") + element("snapSize", "-5"));
}

class SnapshotCatalogue : public CatalogueTest
{
  protected:
    stsp_list_t* open_list()
    {
        script("openSnapListResponse", token_element("snapListHandle", "N1"));
        stsp_list_t* list = nullptr;
        EXPECT_EQ(open_snap_list()(&lsu, &list), 0);
        session.clear();
        return list;
    }

    void close(stsp_list_t* list)
    {
        script("closeSnapListResponse");
        EXPECT_EQ(close_snap_list()(list), 0);
    }

    LogLine snap_line(const std::string& values) const
    {
        return record("stspi_list_snap sd_snap_name: **<" + values);
    }
};

std::string rollback_request(const std::string& target_token, const std::string& list,
                             const std::string& count)
{
    return element("validateRollback", lsu_element() + snap_element("snapDef", "snap1") +
                                           token_element("targetServerHandle", target_token) +
                                           nfs_element("targetVolSpec") + list +
                                           element("numRollbacks", count));
}

} // namespace

TEST_F(SnapshotCatalogue, OpenListLogsItsReturnCodeUnderTheNameOfTheSisterEntry)
{
    script("openSnapListResponse", token_element("snapListHandle", "N1"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_snap_list()(&lsu, &list), 0);
    EXPECT_EQ(service.request_body(0), element("openSnapList", lsu_element()));
    EXPECT_EQ(list->server, &server);
    EXPECT_STREQ(list->token, "N1");
    EXPECT_THAT(session.lines(), ElementsAre(record("stspi_open_snap_list: enter"),
                                             record("stspi_open_snap_list_by_volume: SOAP return code = 0"),
                                             record("stspi_open_snap_list: STS_EOK")));
    close(list);
}

TEST_F(SnapshotCatalogue, OpenListChecksArgumentsServerAndServiceHandle)
{
    stsp_list_t* list = nullptr;
    lsu.server = nullptr;
    EXPECT_EQ(open_snap_list()(nullptr, &list), STS_ENULLARG);
    EXPECT_EQ(open_snap_list()(&lsu, nullptr), STS_ENULLARG);
    EXPECT_EQ(open_snap_list()(&lsu, &list), STS_EBADARG);
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(open_snap_list()(&lsu, &list), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(list, nullptr);
    expect_silence();
}

TEST_F(SnapshotCatalogue, OpenListByVolumeSendsTheVolume)
{
    const sts_volume_spec_v11_t volume = host_volume(STS_VOLUME_NFS);
    script("openSnapListResponse", token_element("snapListHandle", "N2"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(open_snap_list_by_volume()(&server, &volume, &list), 0);
    EXPECT_EQ(service.request_body(0),
              element("openSnapListByVolume", token_element("serverHandle", "S1") + nfs_element("volSpec")));
    EXPECT_EQ(list->server, &server);
    EXPECT_STREQ(list->token, "N2");
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_open_snap_list_by_volume")));
    close(list);
}

TEST_F(SnapshotCatalogue, OpenListByVolumeChecksArgumentsServerAndServiceHandle)
{
    const sts_volume_spec_v11_t volume = host_volume(STS_VOLUME_NFS);
    stsp_list_t* list = nullptr;
    EXPECT_EQ(open_snap_list_by_volume()(nullptr, nullptr, &list), STS_ENULLARG);
    EXPECT_EQ(open_snap_list_by_volume()(nullptr, &volume, nullptr), STS_ENULLARG);
    EXPECT_EQ(open_snap_list_by_volume()(nullptr, &volume, &list), STS_EBADARG);
    server.service_handle = nullptr;
    EXPECT_EQ(open_snap_list_by_volume()(&server, &volume, &list), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(list, nullptr);
    expect_silence();
}

TEST_F(SnapshotCatalogue, ListWritesTheNextDefinitionAndLogsIt)
{
    stsp_list_t* list = open_list();
    script("listSnapResponse",
           element("snapDef", element("snapName", "snap1") + element("snapType", "1") +
                                  element("snapFlags", "-2") + element("snapSaveas", "3") +
                                  element("isid", element("version", "9"))));
    auto snap = canary_record<sts_snap_def_v11_t>();
    ASSERT_EQ(list_snap()(list, snap.get()), 0);
    auto expected = canary_record<sts_snap_def_v11_t>();
    put(expected->snapName, "snap1");
    expected->snapType = 1;
    expected->snapFlags = -2;
    expected->snapSaveas = 3;
    EXPECT_TRUE(same_bytes(*snap, *expected));
    EXPECT_EQ(service.request_body(1), element("listSnap", token_element("snapListHandle", "N1")));
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_list_snap: enter"), record("stspi_list_snap: SOAP return code = 0"),
                            snap_line("snap1>** sd_snap_type=1 sd_snap_flags=-2 sd_snap_saveas=3"),
                            record("stspi_list_snap: STS_EOK")));
    close(list);
}

TEST_F(SnapshotCatalogue, ListCutsALongNameInTheRecordAndInTheLog)
{
    stsp_list_t* list = open_list();
    script("listSnapResponse", element("snapDef", element("snapName", long_text(2048))));
    auto snap = canary_record<sts_snap_def_v11_t>();
    ASSERT_EQ(list_snap()(list, snap.get()), 0);
    EXPECT_EQ(std::string(snap->snapName), long_text(2047));
    EXPECT_EQ(session.lines()[2],
              snap_line(long_text(2047) + ">** sd_snap_type=0 sd_snap_flags=0 sd_snap_saveas=0"));
    close(list);
}

TEST_F(SnapshotCatalogue, ListAfterTheEndGivesTheServicesCode)
{
    stsp_list_t* list = open_list();
    service.script(fault_answer(fault(2060013)));
    auto snap = canary_record<sts_snap_def_v11_t>();
    EXPECT_EQ(list_snap()(list, snap.get()), 2060013);
    EXPECT_TRUE(same_bytes(*snap, *canary_record<sts_snap_def_v11_t>()));
    close(list);
}

TEST_F(SnapshotCatalogue, ListAndCloseCheckTheHandleTheRecordAndTheToken)
{
    auto snap = canary_record<sts_snap_def_v11_t>();
    EXPECT_EQ(list_snap()(nullptr, snap.get()), STS_ENULLARG);
    EXPECT_EQ(list_snap()(nullptr, nullptr), STS_ENULLARG);
    EXPECT_EQ(close_snap_list()(nullptr), STS_ENULLARG);
    expect_silence();
    stsp_list_t list = {&server, nullptr};
    EXPECT_EQ(list_snap()(&list, nullptr), STS_ENULLARG);
    EXPECT_EQ(list_snap()(&list, snap.get()), STS_EBADARG);
    EXPECT_EQ(close_snap_list()(&list), STS_EBADARG);
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_list_snap: enter"), record("stspi_list_snap: enter"),
                            record("stspi_close_snap_list: enter")));
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(SnapshotCatalogue, CloseSendsTheTokenAndKeepsTheHandleIfItFails)
{
    stsp_list_t* list = open_list();
    service.script(fault_answer(fault(2060012)));
    EXPECT_EQ(close_snap_list()(list), 2060012);
    session.clear();
    close(list);
    EXPECT_EQ(service.request_body(1), element("closeSnapList", token_element("snapListHandle", "N1")));
    EXPECT_EQ(service.request_body(2), service.request_body(1));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_close_snap_list")));
}

TEST_F(SnapshotCatalogue, PropertiesSendTheDefinitionAndRewriteTheWholeRecord)
{
    script("getSnapPropByNameResponse", information());
    sts_snap_def_v11_t snap = host_snap("snap1");
    snap.snapType = -1;
    snap.snapFlags = 2;
    snap.snapSaveas = 3;
    snap.isid.version = 4;
    put(snap.isid.dpaid, "dpa");
    put(snap.isid.dpaver, "9.1");
    put(snap.isid.info, "mount=/a");
    auto info = canary_record<sts_snap_info_v11_t>();
    ASSERT_EQ(get_snap_prop_byname()(&lsu, &snap, info.get()), 0);
    auto expected = std::make_unique<sts_snap_info_v11_t>();
    std::memset(expected.get(), 0, sizeof *expected);
    put(expected->snapDef.snapName, "snap1");
    expected->snapDef.snapType = 1;
    expected->snapDef.snapFlags = -2;
    expected->snapDef.snapSaveas = 3;
    put(expected->snapServer, "srv");
    put(expected->snapLsu, "lsu1");
    put(expected->snapVolSpec.first, "one");
    put(expected->snapVolSpec.second, "two");
    expected->snapStatus = -4;
    expected->snapSize = -5;
    EXPECT_TRUE(same_bytes(*info, *expected));
    EXPECT_EQ(
        service.request_body(0),
        element("getSnapPropByName",
                lsu_element() +
                    element("snapDef", element("snapName", "snap1") + element("snapType", "-1") +
                                           element("snapFlags", "2") + element("snapSaveas", "3") +
                                           element("isid", element("version", "4") + element("dpaid", "dpa") +
                                                               element("dpaver", "9.1") +
                                                               element("info", "bW91bnQ9L2E=")))));
    EXPECT_THAT(session.lines(), ElementsAre(record("stspi_get_snap_prop_byname: enter"),
                                             record("stspi_get_snap_prop_byname LSU:lsu1 snapname:snap1"),
                                             record("stspi_get_snap_prop_byname: SOAP return code = 0"),
                                             record("stspi_get_snap_prop_byname: STS_EOK")));
}

TEST_F(SnapshotCatalogue, PropertiesLogWhatIsAskedForEvenIfTheServiceThenFails)
{
    service.script(fault_answer(fault(2060013)));
    const sts_snap_def_v11_t snap = host_snap("snap1");
    auto info = canary_record<sts_snap_info_v11_t>();
    EXPECT_EQ(get_snap_prop_byname()(&lsu, &snap, info.get()), 2060013);
    EXPECT_EQ(session.lines()[1], record("stspi_get_snap_prop_byname LSU:lsu1 snapname:snap1"));
    EXPECT_TRUE(same_bytes(*info, *canary_record<sts_snap_info_v11_t>()));
}

TEST_F(SnapshotCatalogue, PropertiesWithALongServerNameAreCoveredByTheLsu)
{
    script("getSnapPropByNameResponse",
           element("snapInfo", element("snapServer", long_text(2000)) + element("snapLsu", "lsu1")));
    const sts_snap_def_v11_t snap = host_snap("snap1");
    auto info = canary_record<sts_snap_info_v11_t>();
    ASSERT_EQ(get_snap_prop_byname()(&lsu, &snap, info.get()), 0);
    EXPECT_EQ(std::string(info->snapServer, sizeof info->snapServer), long_text(512));
    EXPECT_STREQ(info->snapLsu, "lsu1");
}

TEST_F(SnapshotCatalogue, PropertiesAndDeleteCheckArgumentsServerAndServiceHandle)
{
    const sts_snap_def_v11_t snap = host_snap("snap1");
    auto info = canary_record<sts_snap_info_v11_t>();
    lsu.server = nullptr;
    EXPECT_EQ(get_snap_prop_byname()(nullptr, &snap, info.get()), STS_ENULLARG);
    EXPECT_EQ(get_snap_prop_byname()(&lsu, nullptr, info.get()), STS_ENULLARG);
    EXPECT_EQ(get_snap_prop_byname()(&lsu, &snap, nullptr), STS_ENULLARG);
    EXPECT_EQ(get_snap_prop_byname()(&lsu, &snap, info.get()), STS_EBADARG);
    EXPECT_EQ(delete_snap()(nullptr, &snap), STS_ENULLARG);
    EXPECT_EQ(delete_snap()(&lsu, nullptr), STS_ENULLARG);
    EXPECT_EQ(delete_snap()(&lsu, &snap), STS_EBADARG);
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(get_snap_prop_byname()(&lsu, &snap, info.get()), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(delete_snap()(&lsu, &snap), STS_ENOSERVICEHANDLE);
    expect_silence();
}

TEST_F(SnapshotCatalogue, DeleteSendsTheDefinition)
{
    script("deleteSnapResponse");
    const sts_snap_def_v11_t snap = host_snap("snap1");
    ASSERT_EQ(delete_snap()(&lsu, &snap), 0);
    EXPECT_EQ(service.request_body(0),
              element("deleteSnap", lsu_element() + snap_element("snapDef", "snap1")));
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_delete_snap")));
}

TEST_F(SnapshotCatalogue, ValidateRollbackOpensAListThatIsReadAndClosedLikeAnyOther)
{
    char target_handle[] = "S2";
    stsp_server target = {};
    target.service_handle = target_handle;
    const sts_snap_def_v11_t snap = host_snap("snap1");
    const sts_volume_spec_v11_t volume = host_volume(STS_VOLUME_NFS);
    char rows[2][STS_ROLLBACK_ROW_SIZE] = {"a", "b&c"};
    script("validateRollbackResponse", token_element("snapListHandle", "N3"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(validate_rollback()(&lsu, &snap, &target, &volume, rows[0], 2, &list), 0);
    EXPECT_EQ(service.request_body(0),
              rollback_request(
                  "S2", element("rollbackList", element("item", "a") + element("item", "b&amp;c")), "2"));
    EXPECT_EQ(list->server, &server);
    EXPECT_STREQ(list->token, "N3");
    EXPECT_THAT(session.lines(), ElementsAreArray(good_log("stspi_validate_rollback")));

    script("listSnapResponse", element("snapDef", element("snapName", "snap2")));
    auto next = canary_record<sts_snap_def_v11_t>();
    EXPECT_EQ(list_snap()(list, next.get()), 0);
    EXPECT_STREQ(next->snapName, "snap2");
    close(list);
    EXPECT_EQ(service.request_body(2), element("closeSnapList", token_element("snapListHandle", "N3")));
}

TEST_F(SnapshotCatalogue, ValidateRollbackWithoutATargetServerSendsAnEmptyTokenAndReadsNoRowOfNone)
{
    const sts_snap_def_v11_t snap = host_snap("snap1");
    const sts_volume_spec_v11_t volume = host_volume(STS_VOLUME_NFS);
    const auto no_rows = std::make_unique<char[]>(1); // one byte: a row that was read would be beyond it
    script("validateRollbackResponse", token_element("snapListHandle", "N3"));
    stsp_list_t* list = nullptr;
    ASSERT_EQ(validate_rollback()(&lsu, &snap, nullptr, &volume, no_rows.get(), 0, &list), 0);
    EXPECT_EQ(service.request_body(0), rollback_request("", "<ns1:rollbackList></ns1:rollbackList>", "0"));
    close(list);
}

TEST_F(SnapshotCatalogue, ValidateRollbackChecksArgumentsServerAndServiceHandle)
{
    const sts_snap_def_v11_t snap = host_snap("snap1");
    const sts_volume_spec_v11_t volume = host_volume(STS_VOLUME_NFS);
    stsp_list_t* list = nullptr;
    lsu.server = nullptr;
    EXPECT_EQ(validate_rollback()(nullptr, &snap, &server, &volume, "", 0, &list), STS_ENULLARG);
    EXPECT_EQ(validate_rollback()(&lsu, nullptr, &server, &volume, "", 0, &list), STS_ENULLARG);
    EXPECT_EQ(validate_rollback()(&lsu, &snap, &server, nullptr, "", 0, &list), STS_ENULLARG);
    EXPECT_EQ(validate_rollback()(&lsu, &snap, &server, &volume, nullptr, 0, &list), STS_ENULLARG);
    EXPECT_EQ(validate_rollback()(&lsu, &snap, &server, &volume, "", 0, &list), STS_EBADARG);
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(validate_rollback()(&lsu, &snap, nullptr, &volume, "", 0, &list), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(list, nullptr);
    expect_silence();
}

TEST_F(SnapshotCatalogue, ValidateRollbackSurvivesAMissingOutHandleAndSaysSo)
{
    const sts_snap_def_v11_t snap = host_snap("snap1");
    const sts_volume_spec_v11_t volume = host_volume(STS_VOLUME_NFS);
    script("validateRollbackResponse", token_element("snapListHandle", "N3"));
    EXPECT_EQ(validate_rollback()(&lsu, &snap, nullptr, &volume, "", 0, nullptr), 0);
    EXPECT_THAT(session.lines(), ElementsAreArray(log_without_place("stspi_validate_rollback", "handle")));
}
