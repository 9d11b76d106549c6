// The mapping for a caller whose record has mounts already: then the path map is asked for. All else of it is
// tested through the open.
#include "changelist/transformation_mapping.h"
#include "plugin/base/handle_records.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>

#include <memory>

using namespace kit;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace
{

class TransformationMapping : public testing::Test
{
  protected:
    TransformationMapping()
    {
        server.endpoint = url.data();
        server.service_handle = service_handle;
        server.session = session.get();
        lsu.server = &server;
        put(lsu.name, "lsu1");
        put(diff->snapName, "diff1");
        put(diff->isid.info, "mount=/new|share,use_zapi=1");
        info.parsed_isid.mpfs_vec = {{"/old", "/old"}};
        info.parsed_isid.use_zapi = 5;
        info.repl_patterns = {{"old", "old", "old"}};
        info.qtree_paths = {"old"};
        info.base_export = info.diff_export = info.diff_export_filer = "old";
    }

    void script_map(const std::string& args)
    {
        service.script(answer(reply("ioControlResponse", element("args", args) + element("len", "0"))));
    }
    void script_export()
    {
        service.script(answer(
            reply("getSnapPropByNameResponse",
                  element("snapInfo",
                          element("snapServer", "s") + element("snapLsu", "l") +
                              element("snapVolSpec", element("ndmp", element("exportfiler", "filer1") +
                                                                         element("exportpath", "/vol/diff")) +
                                                         element("volumeType", "4")) +
                              element("snapStatus", "0") + element("snapSize", "0")))));
    }

    bool get(const sts_snap_def_v11_t* base = nullptr)
    {
        return soapwrapper::get_transformation_mapping(&lsu, base, diff.get(), session.get(), info);
    }

    void expect_untouched()
    {
        ASSERT_THAT(info.parsed_isid.mpfs_vec, SizeIs(1));
        EXPECT_EQ(info.parsed_isid.mpfs_vec[0].mount_path, "/old");
        EXPECT_EQ(info.parsed_isid.use_zapi, 5);
        ASSERT_THAT(info.repl_patterns, SizeIs(1));
        EXPECT_EQ(info.repl_patterns[0].prefix, "old");
        EXPECT_THAT(info.qtree_paths, testing::ElementsAre("old"));
        EXPECT_EQ(info.base_export, "old");
        EXPECT_EQ(info.diff_export, "old");
        EXPECT_EQ(info.diff_export_filer, "old");
    }

    ScriptedService service;
    RecordedSession session;
    std::string url = service.url();
    char service_handle[3] = "S1";
    stsp_server server = {};
    stsp_lsu_v7_t lsu = {};
    std::unique_ptr<sts_snap_def_v11_t> diff = std::make_unique<sts_snap_def_v11_t>();
    snapdiff_session_info info;
};

} // namespace

TEST_F(TransformationMapping, AsksForThePathMapByTheSnapshotsNameAndReadsIt)
{
    script_map("&lt;maps&gt;&lt;path_map&gt;&lt;prefix&gt;/p/&lt;/prefix&gt;"
               "&lt;target_path&gt;q1&lt;/target_path&gt;&lt;original_path&gt;/src&lt;/original_path&gt;"
               "&lt;/path_map&gt;&lt;path_map&gt;&lt;original_path&gt;same&lt;/original_path&gt;"
               "&lt;/path_map&gt;&lt;/maps&gt;");
    script_export();
    ASSERT_TRUE(get());
    EXPECT_EQ(service.request_body(0),
              element("ioControl", element("serverHandle", element("token", "S1")) +
                                       element("command", "10104") + element("args", "diff1") +
                                       element("ioflag", "3") + element("len", "4096")));
    ASSERT_THAT(info.repl_patterns, SizeIs(1));
    EXPECT_EQ(info.repl_patterns[0].prefix, "/p/");
    EXPECT_EQ(info.repl_patterns[0].target_path, "q1");
    EXPECT_EQ(info.repl_patterns[0].original_path, "/src");
    EXPECT_THAT(info.qtree_paths, testing::ElementsAre("/p/q1", "same"));
    EXPECT_EQ(info.parsed_isid.mpfs_vec.at(0).mount_path, "/new");
    EXPECT_EQ(info.parsed_isid.use_zapi, 1);
    EXPECT_EQ(info.base_export, "");
    EXPECT_EQ(info.diff_export, "/vol/diff");
    EXPECT_EQ(info.diff_export_filer, "filer1");
    EXPECT_THAT(session.lines(), Contains(record("prefix: /p/ input q1 output /src")));
}

TEST_F(TransformationMapping, ADocumentWithoutAMapClearsWhatWasKnownAndLogsNoPattern)
{
    script_map("&lt;maps/&gt;");
    script_export();
    ASSERT_TRUE(get());
    EXPECT_THAT(info.repl_patterns, IsEmpty());
    EXPECT_THAT(info.qtree_paths, IsEmpty());
    EXPECT_THAT(session.texts(), Not(Contains(testing::StartsWith("prefix: "))));
}

TEST_F(TransformationMapping, FailsAsAWholeWhereThePathMapCantBeHad)
{
    service.script(fault_answer(fault(2060005)));
    EXPECT_FALSE(get());
    EXPECT_EQ(session.lines().back(), failure("iocontrol failed with 2060005"));
    EXPECT_THAT(service.requests(), SizeIs(1));
    expect_untouched();
}

TEST_F(TransformationMapping, FailsAsAWholeWhereThePathMapCantBeRead)
{
    script_map("no document");
    EXPECT_FALSE(get());
    EXPECT_EQ(session.lines().back(), failure("parse_pattern_xml returned 2"));
    script_map("&lt;maps&gt;&lt;path_map/&gt;&lt;/maps&gt;");
    EXPECT_FALSE(get());
    EXPECT_EQ(session.lines().back(), failure("parse_pattern_xml returned 5"));
    EXPECT_THAT(service.requests(), SizeIs(2));
    expect_untouched();
}

TEST_F(TransformationMapping, SurvivesAPathMapLargerThanItsBuffer)
{
    for (const std::size_t size : {4095u, 4096u, 4097u, 100000u}) {
        script_map("&lt;maps&gt;" + std::string(size - 6, ' '));
        EXPECT_FALSE(get());
        EXPECT_EQ(session.lines().back(), failure("parse_pattern_xml returned 2"));
    }
}

TEST_F(TransformationMapping, LeavesTheRecordWhereASnapshotCantBeRead)
{
    script_map("&lt;maps/&gt;");
    script_export();
    service.script(fault_answer(fault(2060013)));
    EXPECT_FALSE(get(diff.get()));
    EXPECT_EQ(session.lines().back(), failure("stspi_get_snap_prop_byname failed for diff "));
    expect_untouched();
}

TEST_F(TransformationMapping, TakesASupplierTextThatFillsItsField)
{
    info.parsed_isid.mpfs_vec.clear();
    std::memset(diff->isid.info, 'x', sizeof diff->isid.info);
    script_export();
    EXPECT_TRUE(get());
    EXPECT_THAT(session.texts(), Contains("isid: " + std::string(4096, 'x')));
}
