// The close of a change list, by either route.
#include "tests/entries/change_list_zapi_fixture.h"

using namespace change_list;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace
{

const LogLine kEnter = record("stspi_close_snap_change_list: enter");
const LogLine kOk = record("stspi_close_snap_change_list: STS_EOK");

class CloseChangeList : public ZapiChangeListTest
{
};

// What the end that is told to the filer logs of itself.
Lines told_the_filer()
{
    return {record("stspi_iocontrol: enter"), return_code("stspi_iocontrol"),
            record("stspi_iocontrol: STS_EOK")};
}

} // namespace

TEST_F(CloseChangeList, OfANullHandleIsRefusedInSilence)
{
    EXPECT_EQ(close_list()(nullptr), STS_ENULLARG);
    EXPECT_THAT(session.lines(), ElementsAre());
}

TEST_F(CloseChangeList, OfAHandleWithoutATokenIsRefusedBehindItsFirstLine)
{
    stsp_change_list bare = {};
    bare.server = &server;
    EXPECT_EQ(close_list()(&bare), STS_EBADARG);
    EXPECT_THAT(session.lines(), ElementsAre(kEnter));
    EXPECT_EQ(service.connections(), 0u);
}

TEST_F(CloseChangeList, OfTheServicesSendsItsTokenAndForgetsIt)
{
    set_isid("");
    open_at_service("C&lt;1&gt;");
    close_at_service();
    EXPECT_EQ(service.request_body(3),
              element("closeSnapChangeList", token_element("fileListHandle", "C&lt;1&gt;")));
    EXPECT_THAT(session.lines(), ElementsAre(kEnter, return_code("stspi_close_snap_change_list"), kOk));
    EXPECT_THAT(registry(), ElementsAre());
    EXPECT_THAT(plugin.calls(), ElementsAre());
}

TEST_F(CloseChangeList, OfTheServicesThatFailsForgetsWhatWasKnownAndCanBeRepeated)
{
    set_isid("");
    open_at_service();
    service.script(fault_answer(fault(2060012)));
    EXPECT_EQ(close_list()(list), STS_EINUSE);
    EXPECT_THAT(session.lines(), ElementsAre(kEnter, return_code("stspi_close_snap_change_list", 1),
                                             failure(rendered_fault(2060012))));
    EXPECT_THAT(registry(), ElementsAre());
    EXPECT_STREQ(list->token, "C1");

    service.script(fault_answer(fault_with_detail("")));
    EXPECT_EQ(close_list()(list), STS_EFAULTDETAIL);
    service.script({Answer::Manner::kCloseAtOnce, ""});
    session.clear();
    EXPECT_EQ(close_list()(list), STS_ESOAPERROR);
    const Lines lines = session.lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2].level, STS_LOG_FAILURE);
    EXPECT_THAT(lines[2].text, testing::Not(testing::HasSubstr("HANDLE_SOAP_FAULT")));
    close_at_service();
}

TEST_F(CloseChangeList, OfThePluginsTellsTheFilerAndEndsTheConnection)
{
    open_at_plugin();
    close_at_plugin();
    EXPECT_THAT(plugin.calls(), ElementsAre("close_list list1", "close server1 0", "close session1 0"));
    EXPECT_EQ(service.request_body(2),
              element("ioControl", token_element("serverHandle", "S1") + element("command", "10103") +
                                       element("args", "filer1 admin s3cret word;/vol/v1") +
                                       element("ioflag", "1") + element("len", "2049")));
    EXPECT_THAT(session.lines(),
                ElementsAreArray(Lines{kEnter} + told_the_filer() +
                                 Lines{record("close_zapi_connection: succeed to close zapi server"),
                                       record("close_zapi_connection: succeed to close zapi session"), kOk}));
    EXPECT_THAT(registry(), ElementsAre());
}

TEST_F(CloseChangeList, OfThePluginsTellsOfTheVolumeAsItWasAtTheOpen)
{
    open_at_plugin();
    put(volume->first, "changed");
    put(volume->second, "since");
    close_at_plugin();
    EXPECT_THAT(service.request_body(2),
                testing::HasSubstr(element("args", "filer1 admin s3cret word;/vol/v1")));
}

TEST_F(CloseChangeList, OfThePluginsThatIsRefusedKeepsEverything)
{
    open_at_plugin();
    plugin.answer(Operation::kCloseList, {2060012});
    EXPECT_EQ(close_list()(list), STS_EINUSE);
    EXPECT_THAT(
        session.lines(),
        ElementsAre(kEnter, record("stspi_close_snap_change_list: API failed in zapi plugin.2060012")));
    EXPECT_THAT(plugin.calls(), ElementsAre("close_list list1"));
    EXPECT_EQ(registry().count(kZapiToken), 1u);
    EXPECT_EQ(service.connections(), 2u);
    close_at_plugin();
}

TEST_F(CloseChangeList, OfThePluginsDoesNotMindAFilerThatRefusesTheEnd)
{
    open_at_plugin();
    service.script(fault_answer(fault(2060005)));
    EXPECT_EQ(close_list()(list), 0);
    EXPECT_EQ(session.lines().back(), kOk);
}

TEST_F(CloseChangeList, OfThePluginsReportsAConnectionThatWontCloseAndIsOverAllTheSame)
{
    open_at_plugin();
    plugin.answer(Operation::kClose, {2060098, 2060099});
    left_open = 2;
    script("ioControlResponse", element("args") + element("len", "0"));
    EXPECT_EQ(close_list()(list), STS_EPLUGIN);
    EXPECT_THAT(
        session.lines(),
        ElementsAreArray(Lines{kEnter} + told_the_filer() +
                         Lines{record("close_zapi_connection: failed to close zapi server"),
                               record("close_zapi_connection: failed to close zapi session"),
                               record("stspi_close_snap_change_list: FAILED to close zapi connection")}));
    EXPECT_THAT(registry(), ElementsAre());
}

TEST_F(CloseChangeList, OfThePluginsIsGoodWhereOnlyItsServerWontClose)
{
    open_at_plugin();
    plugin.answer(Operation::kClose, {2060098});
    left_open = 1;
    close_at_plugin();
    EXPECT_EQ(session.lines().back(), kOk);
    EXPECT_EQ(session.lines()[4], record("close_zapi_connection: failed to close zapi server"));
}

TEST_F(CloseChangeList, OfThePluginsSkipsTheSessionThatNeverCame)
{
    plugin.keep_session_handles();
    open_at_plugin();
    plugin.answer(Operation::kClose, {2060098});
    left_open = 1;
    script("ioControlResponse", element("args") + element("len", "0"));
    EXPECT_EQ(close_list()(list), STS_EPLUGIN);
    EXPECT_THAT(plugin.calls(), ElementsAre("close_list list1", "close server1 0"));
}
