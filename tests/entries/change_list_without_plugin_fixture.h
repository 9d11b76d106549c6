// What the entries do where the second plug-in can't be reached, for whatever reason. One test a program,
// because a process tries the start once.
#ifndef SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_WITHOUT_PLUGIN_FIXTURE_H
#define SOAPWRAPPER_TESTS_ENTRIES_CHANGE_LIST_WITHOUT_PLUGIN_FIXTURE_H

#include "tests/entries/change_list_fixture.h"
#include "tests/kit/clock.h"

namespace change_list
{

class WithoutPluginTest : public ChangeListTest
{
  protected:
    // The start is tried once, the second plug-in's route fails each time, and the service's goes on as if
    // there had never been another.
    void expect_opens_without_plugin()
    {
        using kit::record;
        const Lines failed = {record("stspi_open_snap_change_list: failed to open zapi connection")};
        const Lines start = {record("open_zapi_connection:  doing sts_init"),
                             record("open_zapi_connection: failed to open sts_init")};
        const Lines no_session = {record("open_zapi_connection: failed to open zapi session")};
        set_isid("use_zapi=1");
        for (const Lines& why : {start, no_session, no_session}) {
            session.clear();
            script_mapping();
            EXPECT_EQ(open(), STS_ENULLARG);
            EXPECT_EQ(list, nullptr);
            EXPECT_THAT(session.lines(), testing::ElementsAreArray(mapping_log("1") + why + failed));
        }
        set_isid("");
        open_at_service();
        close_at_service();
    }

    // For a handle as if the second plug-in had given it out, every operation stands in for itself.
    void expect_operations_not_initialised()
    {
        char token[] = "T";
        sts_handle_s* no_handle = nullptr;
        stsp_change_list zapi_list = {};
        zapi_list.server = &server;
        zapi_list.token = token;
        zapi_list.zapi_list_cell = &no_handle;
        session.clear();
        sts_file_attr_v11_t entry = {};
        EXPECT_EQ(list_file()(&zapi_list, 0, nullptr, &entry), STS_ENOTINIT);
        EXPECT_EQ(close_list()(&zapi_list), STS_ENOTINIT);
        EXPECT_THAT(session.lines(),
                    testing::ElementsAre(
                        kit::record("stspi_close_snap_change_list: enter"),
                        kit::record("stspi_close_snap_change_list: API failed in zapi plugin.2060010")));
        EXPECT_EQ(registry().count(token), 1u); // the listing found nothing filed, and filed an empty record
        registry().erase(token);
    }

    kit::Clock clock;
};

} // namespace change_list

#endif
