// The open of a change list: its checks, what it reads ahead, and the service's route.
#include "tests/entries/change_list_fixture.h"

using namespace change_list;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::SizeIs;

namespace
{

const LogLine kMappingFailed = failure("get_transformation_mapping failed");
const LogLine kNoList = failure("Unable to open file list handle using zapi or THUPlugin");

class OpenChangeList : public ChangeListTest
{
  protected:
    void expect_mapping_failure(const Lines& why)
    {
        list = reinterpret_cast<stsp_change_list_t*>(this);
        EXPECT_EQ(open(), STS_ESOAPERROR);
        EXPECT_EQ(list, nullptr);
        EXPECT_THAT(session.lines(), ElementsAreArray(isid_log("-1") + why + Lines{kMappingFailed}));
    }
};

} // namespace

TEST_F(OpenChangeList, ChecksReferenceServerAndServiceHandleInSilence)
{
    auto* const before = reinterpret_cast<stsp_change_list_t*>(this);
    list = before;
    EXPECT_EQ(open_list()(nullptr, base.get(), diff.get(), volume.get(), 0, &list), STS_ENULLARG);
    EXPECT_EQ(list, before);
    lsu.server = nullptr;
    EXPECT_EQ(open(), STS_EBADARG);
    EXPECT_EQ(list, nullptr);
    list = before;
    lsu.server = &server;
    server.service_handle = nullptr;
    EXPECT_EQ(open_list()(&lsu, nullptr, nullptr, nullptr, 0, &list), STS_ENOSERVICEHANDLE);
    EXPECT_EQ(list, nullptr);
    EXPECT_THAT(session.lines(), testing::IsEmpty());
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(OpenChangeList, NeedsAPlaceForTheListAheadOfAllButTheReference)
{
    EXPECT_EQ(open_list()(nullptr, nullptr, nullptr, nullptr, 0, nullptr), STS_ENULLARG);
    EXPECT_THAT(session.lines(), testing::IsEmpty());
    server.service_handle = nullptr;
    EXPECT_EQ(open_list()(&lsu, base.get(), diff.get(), volume.get(), 0, nullptr), STS_ENULLARG);
    EXPECT_THAT(session.lines(), ElementsAre(anomaly("stspi_open_snap_change_list: no place for the list")));
    server.session = nullptr;
    EXPECT_EQ(open_list()(&lsu, base.get(), diff.get(), volume.get(), 0, nullptr), STS_ENULLARG);
    lsu.server = nullptr;
    EXPECT_EQ(open_list()(&lsu, base.get(), diff.get(), volume.get(), 0, nullptr), STS_ENULLARG);
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(OpenChangeList, ChecksDiffSnapshotAndVolumeBehindItsFirstLine)
{
    EXPECT_EQ(open_list()(&lsu, base.get(), nullptr, volume.get(), 0, &list), STS_ENULLARG);
    EXPECT_EQ(open_list()(&lsu, base.get(), diff.get(), nullptr, 0, &list), STS_ENULLARG);
    const LogLine enter = record("stspi_open_snap_change_list: enter");
    EXPECT_THAT(session.lines(), ElementsAre(enter, enter));
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(OpenChangeList, FailsWhereTheBaseSnapshotCantBeReadAndNeverAsksForTheOther)
{
    service.script(fault_answer(fault(2060013)));
    expect_mapping_failure(asked_for("base1") +
                           Lines{return_code("stspi_get_snap_prop_byname", 1),
                                 failure(rendered_fault(2060013)),
                                 failure("stspi_get_snap_prop_byname failed for base ")});
    EXPECT_EQ(service.connections(), 1u);
}

TEST_F(OpenChangeList, FailsWhereTheBaseSnapshotIsOnAnotherKindOfVolume)
{
    script("getSnapPropByNameResponse",
           snap_info(
               element("snapVolSpec", element("nfs", element("exportHost", "h") + element("exportName", "n") +
                                                         element("exportPath", "p")) +
                                          element("volumeType", "0"))));
    expect_mapping_failure(read("base1") + Lines{failure("volume must be NDMP for base export")});
    EXPECT_EQ(service.connections(), 1u);
}

TEST_F(OpenChangeList, FailsWhereTheDiffSnapshotCantBeRead)
{
    script_export(base_export);
    service.script(fault_answer(fault(2060013)));
    expect_mapping_failure(read("base1") + asked_for("diff1") +
                           Lines{return_code("stspi_get_snap_prop_byname", 1),
                                 failure(rendered_fault(2060013)),
                                 failure("stspi_get_snap_prop_byname failed for diff ")});
}

TEST_F(OpenChangeList, FailsWhereTheDiffSnapshotHasNoVolumeThoughTheBaseHasOne)
{
    script_export(base_export);
    script("getSnapPropByNameResponse", element("snapInfo"));
    expect_mapping_failure(read("base1") + read("diff1") +
                           Lines{failure("volume must be NDMP for diff export")});
}

TEST_F(OpenChangeList, GivesTheServicesListAndFilesWhatItLearnt)
{
    set_isid("use_zapi=0");
    script_mapping();
    script_list("a token of 26 characters..");
    ASSERT_EQ(open(), 0);

    EXPECT_EQ(service.request_body(2),
              element("openSnapChangeList",
                      lsu_element() + snap_element("baseSnapshot", "base1") +
                          element("diffSnapshot",
                                  element("snapName", "diff1") + element("snapType", "0") +
                                      element("snapFlags", "0") + element("snapSaveas", "0") +
                                      element("isid", element("version", "0") + "<ns1:dpaid/><ns1:dpaver/>" +
                                                          element("info", "dXNlX3phcGk9MA=="))) +
                          ndmp_element("sourceVolSpec", "filer1", "/vol/v1") + element("diffFlag", "7")));
    EXPECT_THAT(session.lines(),
                ElementsAreArray(mapping_log("0") + Lines{return_code("stspi_open_snap_change_list"),
                                                          record("stspi_open_snap_change_list: 0")}));

    EXPECT_EQ(list->server, &server);
    EXPECT_STREQ(list->token, "a token of 26 characters..");
    EXPECT_EQ(list->zapi_list_cell, nullptr);
    EXPECT_EQ(list->zapi_server_cell, nullptr);
    EXPECT_EQ(list->zapi_session_cell, nullptr);
    EXPECT_EQ(list->volume_copy, nullptr);

    ASSERT_THAT(registry(), SizeIs(1));
    const snapdiff_session_info& info = registry().at(list->token);
    EXPECT_EQ(info.parsed_isid.use_zapi, 0);
    EXPECT_EQ(info.base_export, base_export);
    EXPECT_EQ(info.diff_export, diff_export);
    EXPECT_EQ(info.diff_export_filer, "filer1");
    EXPECT_EQ(info.retry_interval, 0);
    EXPECT_EQ(info.last_reply_time, 0);
    EXPECT_THAT(info.entry_buffer, SizeIs(0));
    EXPECT_THAT(info.repl_patterns, SizeIs(0));
    EXPECT_THAT(info.qtree_paths, SizeIs(0));
    close_at_service();
}

TEST_F(OpenChangeList, AsksForNoPathMapWhateverMountsTheTextNames)
{
    set_isid("mount=/mnt/s1|filer1:/vol/v1,mount=/mnt/s2");
    volume->volumeType = STS_VOLUME_NFS; // with mounts that means the service
    open_at_service();
    EXPECT_THAT(service.requests(), SizeIs(3));
    const snapdiff_session_info& info = registry().at("C1");
    ASSERT_THAT(info.parsed_isid.mpfs_vec, SizeIs(2));
    EXPECT_EQ(info.parsed_isid.mpfs_vec[0].mount_path, "/mnt/s1");
    EXPECT_EQ(info.parsed_isid.mpfs_vec[0].filer_share, "filer1:/vol/v1");
    EXPECT_EQ(info.parsed_isid.mpfs_vec[1].mount_path, "/mnt/s2");
    EXPECT_EQ(info.parsed_isid.use_zapi, -1);
    close_at_service();
}

TEST_F(OpenChangeList, CutsTheVolumesTextAtItsFirstBlankForTheServiceAndTheCaller)
{
    put(volume->first, " leading blank");
    const auto expected = std::make_unique<sts_volume_spec_v11_t>(*volume);
    expected->first[0] = '\0';
    open_at_service();
    EXPECT_THAT(service.request_body(2),
                testing::HasSubstr(element("ndmp", "<ns1:exportfiler/>" + element("exportpath", "/vol/v1"))));
    EXPECT_TRUE(same_bytes(*volume, *expected)); // but for one byte, the record is as it was
    close_at_service();

    put(volume->first, "filer1");
    open_at_service();
    EXPECT_STREQ(volume->first, "filer1");
    close_at_service();
}

TEST_F(OpenChangeList, WithoutABaseSnapshotNeverAsksTheService)
{
    base.reset();
    script_export(diff_export);
    EXPECT_EQ(open(), STS_ESOAPERROR);
    EXPECT_EQ(list, nullptr);
    EXPECT_THAT(session.lines(),
                ElementsAreArray(isid_log("-1") + read("diff1") +
                                 Lines{record("export path for base is "),
                                       record("export path for diff is " + diff_export), kNoList,
                                       record("stspi_open_snap_change_list: 2060017")}));
    EXPECT_THAT(service.requests(), SizeIs(1));
    EXPECT_STREQ(volume->first, "filer1 admin s3cret word");
}

TEST_F(OpenChangeList, ReturnsTheServicesFaultAtOnceWithTheVolumeCutAllTheSame)
{
    script_mapping();
    service.script(fault_answer(fault(2060005, "SOAP-ENV:Client")));
    EXPECT_EQ(open(), STS_EBUSY);
    EXPECT_EQ(list, nullptr);
    EXPECT_STREQ(volume->first, "filer1");
    EXPECT_THAT(session.lines(),
                ElementsAreArray(mapping_log("-1") + Lines{return_code("stspi_open_snap_change_list", 1),
                                                           failure(rendered_fault(2060005))}));
}

TEST_F(OpenChangeList, ReturnsAFaultOfAnotherCodeAndOneWithoutAStatusAtOnce)
{
    script_mapping();
    service.script(fault_answer(fault(2060099, "ns1:Odd")));
    EXPECT_EQ(open(), 2060099);
    script_mapping();
    service.script(fault_answer(fault_with_detail("")));
    EXPECT_EQ(open(), STS_EFAULTDETAIL);
    EXPECT_EQ(session.lines().back().level, STS_LOG_FAILURE);
    EXPECT_THAT(session.lines().back().text, testing::EndsWith("HANDLE_SOAP_FAULT: 2060021"));
}

TEST_F(OpenChangeList, SaysThatNobodyHasAListWhereTheServiceCantBeReachedOrFailsByItself)
{
    for (const Answer& answer :
         {Answer{Answer::Manner::kCloseAtOnce, ""}, fault_answer(fault(2060005, "SOAP-ENV:Server"))}) {
        session.clear();
        script_mapping();
        service.script(answer);
        list = reinterpret_cast<stsp_change_list_t*>(this);
        EXPECT_EQ(open(), STS_ESOAPERROR);
        EXPECT_EQ(list, nullptr);
        const Lines lines = session.lines();
        const std::size_t head = mapping_log("-1").size();
        ASSERT_THAT(lines, SizeIs(head + 4));
        EXPECT_THAT(lines[head].text,
                    testing::StartsWith("stspi_open_snap_change_list: SOAP return code = "));
        EXPECT_EQ(lines[head + 1].level, STS_LOG_FAILURE);
        EXPECT_THAT(lines[head + 1].text, testing::Not(testing::HasSubstr("HANDLE_SOAP_FAULT")));
        EXPECT_EQ(lines[head + 2], kNoList);
        EXPECT_EQ(lines[head + 3], record("stspi_open_snap_change_list: 2060017"));
    }
}

TEST_F(OpenChangeList, GoesOnToItsEndWhereTheReturnCodeIsThatOfAFaultAndThereIsNone)
{
    // The SOAP runtime returns an HTTP status that it doesn't know as it stands, and these two are its own
    // for faults.
    for (const int http_status : {1, 12}) {
        session.clear();
        script_mapping();
        service.script({Answer::Manner::kReply, http_message("", http_status, "Odd")});
        EXPECT_EQ(open(), STS_ESOAPERROR);
        EXPECT_EQ(list, nullptr);
        const Lines lines = session.lines();
        const std::size_t head = mapping_log("-1").size();
        ASSERT_THAT(lines, SizeIs(head + 4));
        EXPECT_EQ(lines[head], return_code("stspi_open_snap_change_list", http_status));
        EXPECT_EQ(lines[head + 1].level, STS_LOG_FAILURE);
        EXPECT_THAT(lines[head + 1].text, testing::Not(testing::HasSubstr("HANDLE_SOAP_FAULT")));
        EXPECT_EQ(lines[head + 2], kNoList);
        EXPECT_EQ(lines[head + 3], record("stspi_open_snap_change_list: 2060017"));
    }
}

TEST_F(OpenChangeList, CantUseAReplyWithoutAHandleOrAToken)
{
    const std::pair<std::string, std::string> replies[] = {
        {"", "fileListHandle"},
        {nil("fileListHandle"), "fileListHandle"},
        {element("fileListHandle"), "token"},
        {element("fileListHandle", nil("token")), "token"},
    };
    for (const auto& [reply, lacking] : replies) {
        session.clear();
        script_mapping();
        script("openSnapChangeListResponse", reply);
        EXPECT_EQ(open(), STS_EPLUGIN) << reply;
        EXPECT_EQ(list, nullptr);
        EXPECT_THAT(
            session.lines(),
            ElementsAreArray(mapping_log("-1") +
                             Lines{return_code("stspi_open_snap_change_list"),
                                   failure("stspi_open_snap_change_list: the reply has no " + lacking)}));
        EXPECT_THAT(registry(), SizeIs(0));
    }
}

TEST_F(OpenChangeList, TakesAnEmptyToken)
{
    open_at_service("");
    EXPECT_STREQ(list->token, "");
    EXPECT_THAT(registry(), SizeIs(1));
    close_at_service();
}

TEST_F(OpenChangeList, ASecondListOfTheSameTokenLeavesTheFirstOnesRecord)
{
    open_at_service();
    stsp_change_list_t* const first = list;
    registry().at("C1").retry_interval = 5;
    script_export("/other/base");
    script_export("/other/diff");
    script_list("C1");
    ASSERT_EQ(open(), 0);
    ASSERT_THAT(registry(), SizeIs(1));
    EXPECT_EQ(registry().at("C1").diff_export, diff_export);
    EXPECT_EQ(registry().at("C1").retry_interval, 5);
    close_at_service();
    EXPECT_THAT(registry(), SizeIs(0));
    list = first;
    close_at_service(); // nothing is filed any more, and nothing is said of that
}

TEST_F(OpenChangeList, WorksForASessionThatNobodyListensTo)
{
    server.session = nullptr;
    open_at_service();
    close_at_service();
    EXPECT_THAT(session.lines(), testing::IsEmpty());
}
