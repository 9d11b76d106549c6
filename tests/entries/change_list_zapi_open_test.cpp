// The open of a change list through the second plug-in: the choice of the route, the connection and the list.
#include "tests/entries/change_list_zapi_fixture.h"

#include <stdexcept>

using namespace change_list;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace
{

const char kOpenServer[] = "open_server session1 \"ZAPI:filer1\" \"admin\" \"s3cret word\" \"\"";
const char kOpenList[] = "open_list server1 base=/vol/v1/.snapshot/base1 diff=/vol/v1/.snapshot/diff1 "
                         "volume=filer1 admin s3cret word;/vol/v1;4 flags=7";
const LogLine kNoList = failure("Unable to open file list handle using zapi or THUPlugin");
const LogLine kNoConnection = record("stspi_open_snap_change_list: failed to open zapi connection");

class OpenZapiChangeList : public ZapiChangeListTest
{
  protected:
    // The open fails while it connects: at once, and without the service.
    void expect_no_connection(int status, const Lines& why)
    {
        script_mapping();
        list = reinterpret_cast<stsp_change_list_t*>(this);
        EXPECT_EQ(open(), status);
        EXPECT_EQ(list, nullptr);
        EXPECT_THAT(session.lines(), ElementsAreArray(mapping_log("1") + why + Lines{kNoConnection}));
        EXPECT_STREQ(volume->first, "filer1 admin s3cret word");
    }
};

struct Route {
    const char* isid;
    int volume_type;
    bool zapi;
};

class ChooseRoute : public ZapiChangeListTest, public testing::WithParamInterface<Route>
{
};

INSTANTIATE_TEST_SUITE_P(
    Routes, ChooseRoute,
    testing::Values(Route{"", STS_VOLUME_NDMP, false}, Route{"use_zapi=1", STS_VOLUME_NDMP, true},
                    Route{"use_zapi=1", STS_VOLUME_NFS, true}, Route{"use_zapi=0", STS_VOLUME_NDMP, false},
                    Route{"use_zapi=-1", STS_VOLUME_NDMP, false}, Route{"use_zapi=2", STS_VOLUME_NDMP, false},
                    Route{"mount=/m", STS_VOLUME_NDMP, true}, Route{"mount=/m", STS_VOLUME_NFS, false},
                    Route{"mount=/m,use_zapi=1", STS_VOLUME_NFS, false},
                    Route{"mount=/m,use_zapi=0", STS_VOLUME_NDMP, true}));

} // namespace

TEST_P(ChooseRoute, ByTheVolumeWhereThereAreMountsAndByTheTextWhereThereAreNone)
{
    set_isid(GetParam().isid);
    volume->volumeType = GetParam().volume_type;
    if (GetParam().zapi) {
        open_at_plugin();
        close_at_plugin();
    } else {
        open_at_service();
        EXPECT_THAT(plugin.calls(), ElementsAre());
        close_at_service();
    }
}

TEST_F(OpenZapiChangeList, OpensASessionAServerAndTheListWithTheExportsOfBothSnapshots)
{
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(plugin.calls(), ElementsAre("open_session zapi_via_soap 15", kOpenServer, kOpenList));
    EXPECT_THAT(session.lines(),
                ElementsAreArray(mapping_log("1") + connected() + no_settings() + Lines{opened()}));
    EXPECT_EQ(service.connections(), 2u);

    EXPECT_EQ(list->server, &server);
    EXPECT_STREQ(list->token, kZapiToken);
    EXPECT_EQ(plugin.name_of(*list->zapi_session_cell), "session1");
    EXPECT_EQ(plugin.name_of(*list->zapi_server_cell), "server1");
    EXPECT_EQ(plugin.name_of(*list->zapi_list_cell), "list1");
    EXPECT_NE(list->volume_copy, volume.get());
    EXPECT_TRUE(same_bytes(*list->volume_copy, *volume));
    EXPECT_STREQ(volume->first, "filer1 admin s3cret word");
    ASSERT_EQ(registry().count(kZapiToken), 1u);
    EXPECT_EQ(registry().at(kZapiToken).parsed_isid.use_zapi, 1);
    EXPECT_EQ(registry().at(kZapiToken).diff_export, diff_export);
    close_at_plugin();
}

TEST_F(OpenZapiChangeList, NeedsNoBaseSnapshot)
{
    base.reset();
    script_export(diff_export);
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(plugin.calls().back(), "open_list server1 base=null diff=/vol/v1/.snapshot/diff1 "
                                     "volume=filer1 admin s3cret word;/vol/v1;4 flags=7");
    EXPECT_EQ(registry().at(kZapiToken).base_export, "");
    close_at_plugin();
}

TEST_F(OpenZapiChangeList, ThePluginsLogLinesReachTheHostsCallbackUnderAnIdOfTheirOwn)
{
    static std::vector<std::string> ids;
    sts_session_def_v7_t caller = {};
    caller.session_id = "the host's";
    caller.log_callback = [](const char* id, const char* text, int) {
        if (std::string_view(text) == "from afar") ids.emplace_back(id);
        return 0;
    };
    server.session = &caller;
    open_at_plugin();
    plugin.log("from afar");
    EXPECT_THAT(ids, ElementsAre("zapi_via_soap"));
    close_at_plugin();
}

TEST_F(OpenZapiChangeList, ReadsHostUserAndPasswordWhateverBlanksTheyAreSplitBy)
{
    put(volume->first, "filer1  s3cret  two blanks ");
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(plugin.calls()[1], "open_server session1 \"ZAPI:filer1\" \"\" \"s3cret  two blanks \" \"\"");
    close_at_plugin();
    plugin.forget_calls();

    put(volume->first, "  ");
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(plugin.calls()[1], "open_server session2 \"ZAPI:\" \"\" \"\" \"\"");
    close_at_plugin();
}

TEST_F(OpenZapiChangeList, CutsTheServersNameTo511Characters)
{
    put(volume->first, long_text(600) + " u p");
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(plugin.calls()[1], "open_server session1 \"ZAPI:" + long_text(506) + "\" \"u\" \"p\" \"\"");
    close_at_plugin();
}

TEST_F(OpenZapiChangeList, HasRoomForTheLongestUserAndPassword)
{
    put(volume->first, "h " + long_text(1020) + " ");
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(plugin.calls()[1], "open_server session1 \"ZAPI:h\" \"" + long_text(1020) + "\" \"\" \"\"");
    close_at_plugin();
    plugin.forget_calls();

    put(volume->first, "h  " + long_text(1020));
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(plugin.calls()[1], "open_server session2 \"ZAPI:h\" \"\" \"" + long_text(1020) + "\" \"\"");
    close_at_plugin();
}

TEST_F(OpenZapiChangeList, LetsTheExceptionOfATextWithFewerThanTwoBlanksThrough)
{
    for (const char* text : {"", "filer1", "filer1 s3cret"}) {
        put(volume->first, text);
        script_mapping();
        try {
            open();
            ADD_FAILURE() << text;
        } catch (const std::out_of_range& thrown) {
            EXPECT_STREQ(thrown.what(), "basic_string::substr") << text;
        }
        EXPECT_EQ(list, nullptr);
    }
    EXPECT_THAT(plugin.calls(), ElementsAre());
}

TEST_F(OpenZapiChangeList, FailsAtOnceWhereNoSessionOpens)
{
    plugin.answer(Operation::kOpenSession, {2060099});
    expect_no_connection(STS_ENULLARG, {record("open_zapi_connection: failed to open zapi session")});
    EXPECT_THAT(plugin.calls(), ElementsAre("open_session zapi_via_soap 15"));
}

TEST_F(OpenZapiChangeList, ClosesTheSessionWhereNoServerOpens)
{
    plugin.answer(Operation::kOpenServer, {2060099});
    expect_no_connection(2060099, {record("open_zapi_connection: succeed to open zapi session"),
                                   record("open_zapi_connection: failed to open zapi server"),
                                   record("open_zapi_connection: succeed to close zapi session")});
    EXPECT_THAT(plugin.calls(),
                ElementsAre("open_session zapi_via_soap 15", kOpenServer, "close session1 0"));
}

TEST_F(OpenZapiChangeList, SaysSoWhereThatSessionWontClose)
{
    plugin.answer(Operation::kOpenServer, {2060099});
    plugin.answer(Operation::kClose, {2060098});
    left_open = 1;
    expect_no_connection(2060099, {record("open_zapi_connection: succeed to open zapi session"),
                                   record("open_zapi_connection: failed to open zapi server"),
                                   record("open_zapi_connection: failed to close zapi session")});
}

TEST_F(OpenZapiChangeList, ClosesNoSessionThatItHasNoHandleOf)
{
    plugin.keep_session_handles();
    plugin.answer(Operation::kOpenServer, {2060099});
    expect_no_connection(2060099, {record("open_zapi_connection: succeed to open zapi session"),
                                   record("open_zapi_connection: failed to open zapi server")});
}

TEST_F(OpenZapiChangeList, FallsBackToTheServiceWhereThePluginRefusesTheList)
{
    plugin.answer(Operation::kOpenList, {2060099});
    left_open = 2; // the connection stays
    script_mapping();
    script_list("C1");
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(plugin.calls().back(), "close_list null");
    EXPECT_EQ(list->zapi_list_cell, nullptr);
    EXPECT_EQ(list->zapi_server_cell, nullptr);
    EXPECT_EQ(list->zapi_session_cell, nullptr);
    EXPECT_EQ(list->volume_copy, nullptr);
    EXPECT_STREQ(list->token, "C1");
    EXPECT_EQ(registry().at("C1").diff_export, diff_export); // nothing of it went astray
    EXPECT_THAT(
        session.lines(),
        ElementsAreArray(mapping_log("1") + connected() + no_settings() +
                         Lines{record("stspi_open_snap_change_list: ZAPI failed with return value = 2060099"),
                               return_code("stspi_open_snap_change_list"), opened()}));
    EXPECT_STREQ(volume->first, "filer1");
    close_at_service();
}

TEST_F(OpenZapiChangeList, ReturnsTheServicesFaultAtOnceWhereItFallsBackInVain)
{
    plugin.answer(Operation::kOpenList, {2060099});
    left_open = 2;
    script_mapping();
    service.script(fault_answer(fault(2060013)));
    EXPECT_EQ(open(), STS_ENOENT);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(session.lines().back(), failure(rendered_fault(2060013)));
}

TEST_F(OpenZapiChangeList, HasNoListWhereThePluginAndTheServiceRefuse)
{
    plugin.answer(Operation::kOpenList, {2060099});
    left_open = 2;
    script_mapping();
    service.script({Answer::Manner::kCloseAtOnce, ""});
    EXPECT_EQ(open(), STS_ESOAPERROR);
    EXPECT_EQ(list, nullptr);
    const Lines lines = session.lines();
    ASSERT_GT(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], kNoList);
    EXPECT_EQ(lines.back(), opened(STS_ESOAPERROR));
}

TEST_F(OpenZapiChangeList, HasNoListWhereThePluginRefusesAndThereIsNoBaseSnapshot)
{
    base.reset();
    plugin.answer(Operation::kOpenList, {2060099});
    left_open = 2;
    script_export(diff_export);
    EXPECT_EQ(open(), STS_ESOAPERROR);
    EXPECT_EQ(list, nullptr);
    EXPECT_THAT(
        session.lines(),
        ElementsAreArray(
            isid_log("1") + read("diff1") +
            Lines{record("export path for base is "), record("export path for diff is " + diff_export)} +
            connected() + no_settings() +
            Lines{record("stspi_open_snap_change_list: ZAPI failed with return value = 2060099"), kNoList,
                  opened(STS_ESOAPERROR)}));
    EXPECT_EQ(service.connections(), 1u);
}

TEST_F(OpenZapiChangeList, TwoListsOnOneVolumeShareATokenAndTheFirstOnesRecord)
{
    open_at_plugin();
    stsp_change_list_t* const first = list;
    registry().at(kZapiToken).base_export = "the first one's";
    open_at_plugin();
    EXPECT_STREQ(list->token, first->token);
    EXPECT_NE(list->token, first->token);
    ASSERT_EQ(registry().size(), 1u);
    EXPECT_EQ(registry().at(kZapiToken).base_export, "the first one's");
    close_at_plugin();
    EXPECT_EQ(registry().size(), 0u);
    list = first;
    close_at_plugin();
}
