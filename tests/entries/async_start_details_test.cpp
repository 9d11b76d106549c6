#include "tests/entries/async_start_cases.h"

using namespace kit;
using testing::HasSubstr;

namespace
{

// One operation in both of its forms.
class StartDetails : public testing::Test
{
  protected:
    // What the operation sends with these arguments; the same call in the form with an id and with a name.
    std::string sent(std::string_view entry)
    {
        arguments_.server_record.endpoint = url_.data();
        arguments_.server_record.session = session_.get();
        stsp_async_t* async = nullptr;
        arguments_.async = &async;
        const StartCase& start = start_case(entry);
        service_.script(start.good_answer());
        EXPECT_EQ(start.call(arguments_), 0);
        const AsyncHandle owner(async);
        return service_.request_body(service_.requests().size() - 1);
    }

    ScriptedService service_;
    RecordedSession session_;
    std::string url_ = service_.url();
    StartArguments arguments_;
};

} // namespace

TEST_F(StartDetails, SendsAnEmptyImageSetAndAnEmptyName)
{
    arguments_.image_set = sts_imageset_t{};
    arguments_.name = sts_opname_t{};
    for (const char* entry :
         {"stspi_async_create_snap_byname", "stspi_async_prepare_snap_byname", "stspi_async_copy_snap_byname",
          "stspi_async_import_snap_byname", "stspi_async_provision_topology"}) {
        EXPECT_THAT(sent(entry), HasSubstr("<ns1:imageset/><ns1:pendingflag>")) << entry;
    }
    for (const StartCase& start : start_cases()) {
        if (!start.named) continue;
        EXPECT_THAT(sent(start.entry), HasSubstr("<ns1:opname/></ns1:named")) << start.entry;
    }
}

TEST_F(StartDetails, SendsNamesAsFarAsTheirTerminatorOrTheEndOfTheirRecord)
{
    const std::string full(STS_ASYNC_NAME_SIZE, 'f');
    full.copy(arguments_.image_set.name, STS_ASYNC_NAME_SIZE);
    full.copy(arguments_.name.name, STS_ASYNC_NAME_SIZE);
    std::string request = sent("stspi_named_async_create_snap_byname");
    EXPECT_THAT(request, HasSubstr(element("imageset", full)));
    EXPECT_THAT(request, HasSubstr(element("opname", full)));
    arguments_.image_set.name[3] = '\0';
    arguments_.name.name[4] = '\0';
    request = sent("stspi_named_async_create_snap_byname");
    EXPECT_THAT(request, HasSubstr(element("imageset", "fff")));
    EXPECT_THAT(request, HasSubstr(element("opname", "ffff")));
}

TEST_F(StartDetails, SendsAnEmptyListOfTargetsWithoutReadingTheArray)
{
    const UnreadablePage page;
    arguments_.targets = page.as<sts_lsu_spec_v11_t>();
    arguments_.ntargets = 0;
    for (const char* entry : {"stspi_async_create_snap_byname", "stspi_named_async_create_snap_byname",
                              "stspi_async_prepare_snap_byname", "stspi_async_validate_snap_byname",
                              "stspi_async_provision_topology", "stspi_async_copy_snap_byname",
                              "stspi_named_async_copy_snap_byname"}) {
        EXPECT_THAT(sent(entry),
                    HasSubstr("<ns1:targetLSUSpecs></ns1:targetLSUSpecs>" + number("ntargets", 0)))
            << entry;
    }
}

TEST_F(StartDetails, SendsEachKindOfVolume)
{
    const auto kind = [this](std::int32_t type) {
        arguments_.volume_record = volume(type, "v");
        return sent("stspi_async_create_snap_byname");
    };
    const auto source = [](std::string_view content, int type) {
        return HasSubstr(element("sourceVolSpec", std::string(content) + number("volumeType", type)));
    };
    EXPECT_THAT(kind(0), HasSubstr(element("sourceVolSpec", nfs_content("v"))));
    EXPECT_THAT(kind(1), source(element("cifs", element("exportHost", "v-1") + element("shareName", "v-2") +
                                                    element("exportPath", "v-3")),
                                1));
    EXPECT_THAT(kind(2), source(element("scsi", element("lunWWNN", "v-1") + element("lunSerial", "v-2")), 2));
    EXPECT_THAT(kind(3), source(element("device", element("devicePath", "v-1")), 3));
    EXPECT_THAT(kind(4),
                source(element("ndmp", element("exportfiler", "v-1") + element("exportpath", "v-2")), 4));
    EXPECT_THAT(kind(9), source("", 9));
}

TEST_F(StartDetails, RollsBackWithoutATargetServerByAnEmptyToken)
{
    arguments_.target_server = nullptr;
    for (const char* entry : {"stspi_async_rollback_snap", "stspi_named_async_rollback_snap"}) {
        EXPECT_THAT(sent(entry), HasSubstr("<ns1:targetServerHandle><ns1:token/></ns1:targetServerHandle>"))
            << entry;
    }
}

TEST_F(StartDetails, RollsBackWithAnEmptyListWithoutReadingTheArray)
{
    const UnreadablePage page;
    arguments_.rollback_list = page.as<char>();
    arguments_.num_rollbacks = 0;
    for (const char* entry : {"stspi_async_rollback_snap", "stspi_named_async_rollback_snap"}) {
        EXPECT_THAT(sent(entry),
                    HasSubstr("<ns1:rollbackList></ns1:rollbackList>" + number("numRollbacks", 0)))
            << entry;
    }
}

TEST_F(StartDetails, WalksARollbackListByRowsOf1024Characters)
{
    const std::string full_row(STS_ROLLBACK_ROW_SIZE, 'r');
    std::string rows = full_row + std::string(STS_ROLLBACK_ROW_SIZE, '\0') + "third";
    rows.resize(3UL * STS_ROLLBACK_ROW_SIZE);
    arguments_.rollback_list = rows.data();
    arguments_.num_rollbacks = 3;
    for (const char* entry : {"stspi_async_rollback_snap", "stspi_named_async_rollback_snap"}) {
        EXPECT_THAT(sent(entry), HasSubstr(element("rollbackList", element("item", full_row) + "<ns1:item/>" +
                                                                       element("item", "third")) +
                                           number("numRollbacks", 3)))
            << entry;
    }
}

TEST_F(StartDetails, SendsAnyDifferenceFlagButZeroAsTrueUnderAName)
{
    for (const auto& [flag, truth] : {std::pair(0, "false"), {1, "true"}, {2, "true"}, {-1, "true"}}) {
        arguments_.diff_flag = flag;
        EXPECT_THAT(sent("stspi_named_async_get_snap_diff"), HasSubstr(element("diffFlag", truth)));
        EXPECT_THAT(sent("stspi_async_get_snap_diff"), HasSubstr(number("diffFlag", flag)));
    }
}

TEST_F(StartDetails, SendsVolumesOfADifferenceEmptyIfTheyAreNotNfs)
{
    arguments_.volume_records = {volume(STS_VOLUME_CIFS, "c"), volume(STS_VOLUME_NFS, "n")};
    arguments_.volumes = arguments_.volume_records.data();
    for (const char* entry : {"stspi_async_get_snap_diff", "stspi_named_async_get_snap_diff"}) {
        EXPECT_THAT(sent(entry), HasSubstr(element("rollbackList", element("item", number("volumeType", 0)) +
                                                                       element("item", nfs_content("n")))))
            << entry;
    }
}

TEST_F(StartDetails, ComputesADifferenceToNoVolumesWithoutReadingTheArray)
{
    const UnreadablePage page;
    arguments_.volumes = page.as<sts_volume_spec_v11_t>();
    arguments_.num_rollbacks = 0;
    for (const char* entry : {"stspi_async_get_snap_diff", "stspi_named_async_get_snap_diff"}) {
        EXPECT_THAT(sent(entry),
                    HasSubstr("<ns1:rollbackList></ns1:rollbackList>" + number("numRollbacks", 0)))
            << entry;
    }
}

TEST_F(StartDetails, SurvivesADifferenceWithoutItsTargetServer)
{
    for (const char* entry : {"stspi_async_get_snap_diff", "stspi_named_async_get_snap_diff"}) {
        arguments_.target_server = nullptr;
        EXPECT_THAT(sent(entry), HasSubstr("<ns1:targetServerHandle><ns1:token/></ns1:targetServerHandle>"));
        arguments_.target_server = &arguments_.target_server_record;
        arguments_.target_server_record.service_handle = nullptr;
        EXPECT_THAT(sent(entry), HasSubstr("<ns1:targetServerHandle><ns1:token/></ns1:targetServerHandle>"));
    }
}

TEST_F(StartDetails, PostProcessesWithoutATestOfTheServiceHandle)
{
    arguments_.server_record.service_handle = nullptr;
    for (const char* entry :
         {"stspi_async_postprocess_snap_byname", "stspi_named_async_postprocess_snap_byname"}) {
        EXPECT_THAT(sent(entry), HasSubstr("<ns1:serverHandle><ns1:token/></ns1:serverHandle>")) << entry;
    }
}

TEST_F(StartDetails, SendsCountsThatItNeverCompares)
{
    arguments_.num_rollbacks = 1;
    EXPECT_THAT(sent("stspi_async_rollback_snap"),
                HasSubstr(element("rollbackList", element("item", "first row")) + number("numRollbacks", 1)));
    arguments_.ntargets = 1;
    EXPECT_THAT(sent("stspi_async_copy_snap_byname"),
                HasSubstr(element("targetLSUSpecs",
                                  element("item", lsu_spec_content("target-server-1", "target-lsu-1"))) +
                          number("ntargets", 1)));
}

TEST_F(StartDetails, EscapesWhatXmlReserves)
{
    arguments_.topology = "a<b&c\"d";
    arguments_.snap_name = "]]>";
    EXPECT_THAT(sent("stspi_async_validate_snap_byname"), HasSubstr("a&lt;b&amp;c"));
    EXPECT_THAT(sent("stspi_async_postprocess_snap_byname"), HasSubstr("]]&gt;"));
}
