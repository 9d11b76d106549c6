// What the tests of the change lists share: a server handle under the test's control, two snapshots of an
// NDMP volume, the three entries by their slots, and the log lines that every open begins with.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_FIXTURE_H

#include "changelist/session_registry.h"
#include "plugin/base/handle_records.h"
#include "tests/kit/entry_lines.h"
#include "tests/kit/host.h"
#include "tests/kit/log_recorder.h"
#include "tests/kit/scripted_service.h"
#include "tests/kit/soap_text.h"
#include "tests/kit/wire_elements.h"
#include "tests/unit/canary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace change_list
{

using kit::Lines;
using kit::return_code;
using kit::token_element;

inline auto open_list()
{
    return kit::Host::instance().snapshot_slot<decltype(stspi_open_snap_change_list)>(39);
}
inline auto close_list()
{
    return kit::Host::instance().snapshot_slot<decltype(stspi_close_snap_change_list)>(40);
}
inline auto list_file()
{
    return kit::Host::instance().snapshot_slot<decltype(stspi_list_file)>(41);
}

// What the library knows of the open lists.
inline std::map<std::string, snapdiff_session_info>& registry()
{
    return *kit::Host::instance().symbol<std::map<std::string, snapdiff_session_info>>(
        "snapdiff_info_per_session");
}

inline std::string ndmp_element(std::string_view name, std::string_view filer, std::string_view path)
{
    return kit::element(
        name, kit::element("ndmp", kit::element("exportfiler", filer) + kit::element("exportpath", path)) +
                  kit::element("volumeType", "4"));
}

inline std::string snap_info(const std::string& volume)
{
    return kit::element("snapInfo", kit::element("snapServer", "srv") + kit::element("snapLsu", "lsu1") +
                                        volume + kit::element("snapStatus", "1") +
                                        kit::element("snapSize", "2"));
}

// An entry as the service delivers it.
inline std::string file_element(std::string_view path, int change = 0)
{
    return kit::element("item",
                        kit::element("name", path) + kit::element("changetype", std::to_string(change)));
}

inline std::string files_reply(const std::string& items, int count, int error = 0, int retry = 0)
{
    return kit::reply("listFileResponse", kit::element("fileAttrList", items) +
                                              kit::element("numFiles", std::to_string(count)) +
                                              kit::element("error", std::to_string(error)) +
                                              kit::element("retryInterval", std::to_string(retry)));
}

class ChangeListTest : public testing::Test
{
  protected:
    ChangeListTest()
    {
        kit::Host::instance().remove_configuration();
        server.endpoint = url.data();
        server.service_handle = service_handle;
        server.session = session.get();
        put(server.server_name, "Network_TEST:filer1");
        lsu.server = &server;
        put(lsu.name, "lsu1");
        put(base->snapName, "base1");
        put(diff->snapName, "diff1");
        put(volume->first, "filer1 admin s3cret word");
        put(volume->second, "/vol/v1");
        volume->volumeType = STS_VOLUME_NDMP;
    }

    ~ChangeListTest() override
    {
        for (const std::string& text : session.texts()) {
            EXPECT_THAT(text, testing::Not(testing::HasSubstr("s3cret")));
        }
        EXPECT_THAT(registry(), testing::IsEmpty());
    }

    void set_isid(std::string_view text) { put(diff->isid.info, text); }

    void script(std::string_view name, std::string_view content = "")
    {
        service.script(kit::answer(kit::reply(name, content)));
    }
    static kit::Answer export_answer(const std::string& path)
    {
        return kit::answer(
            kit::reply("getSnapPropByNameResponse", snap_info(ndmp_element("snapVolSpec", "filer1", path))));
    }
    void script_export(const std::string& path) { service.script(export_answer(path)); }
    // The two snapshots' exports.
    void script_mapping() { script_mapping(service); }
    void script_mapping(kit::ScriptedService& at) const
    {
        at.script({export_answer(base_export), export_answer(diff_export)});
    }
    void script_list(std::string_view token)
    {
        script("openSnapChangeListResponse", token_element("fileListHandle", token));
    }

    int open() { return open_list()(&lsu, base.get(), diff.get(), volume.get(), 7, &list); }

    // A list of the service; the log and the requests so far are no longer of interest.
    void open_at_service(std::string_view token = "C1")
    {
        script_mapping();
        script_list(token);
        ASSERT_EQ(open(), 0);
        session.clear();
    }

    void close_at_service()
    {
        script("closeSnapChangeListResponse");
        EXPECT_EQ(close_list()(list), 0);
    }

    // What is logged until the first snapshot is asked for.
    Lines isid_log(const std::string& use_zapi) const
    {
        return {kit::record("stspi_open_snap_change_list: enter"),
                kit::record("Now going to invoke iocontrol to get the XML: enter"),
                kit::record(std::string("isid: ") + diff->isid.info), kit::record("use_zapi: " + use_zapi)};
    }
    static Lines asked_for(const std::string& snap)
    {
        return {kit::record("stspi_get_snap_prop_byname: enter"),
                kit::record("stspi_get_snap_prop_byname LSU:lsu1 snapname:" + snap)};
    }
    static Lines read(const std::string& snap)
    {
        return asked_for(snap) + Lines{return_code("stspi_get_snap_prop_byname"),
                                       kit::record("stspi_get_snap_prop_byname: STS_EOK")};
    }
    // What is logged until the route is chosen.
    Lines mapping_log(const std::string& use_zapi) const
    {
        return isid_log(use_zapi) + read("base1") + read("diff1") +
               Lines{kit::record("export path for base is " + base_export),
                     kit::record("export path for diff is " + diff_export)};
    }

    const std::string base_export = "/vol/v1/.snapshot/base1";
    const std::string diff_export = "/vol/v1/.snapshot/diff1";
    kit::ScriptedService service;
    kit::RecordedSession session;
    std::string url = service.url();
    char service_handle[3] = "S1";
    stsp_server server = {};
    stsp_lsu_v7_t lsu = {};
    std::unique_ptr<sts_snap_def_v11_t> base = std::make_unique<sts_snap_def_v11_t>();
    std::unique_ptr<sts_snap_def_v11_t> diff = std::make_unique<sts_snap_def_v11_t>();
    std::unique_ptr<sts_volume_spec_v11_t> volume = std::make_unique<sts_volume_spec_v11_t>();
    stsp_change_list_t* list = nullptr;
};

} // namespace change_list

#endif
