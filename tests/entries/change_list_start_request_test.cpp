// What makes a filer ready ahead of a list of the second plug-in's: for which servers it is asked, how often,
// and what stands between two tries.
#include "tests/entries/change_list_zapi_fixture.h"

using namespace change_list;
using namespace kit;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace
{

const LogLine kNoList = failure("Unable to open file list handle using zapi or THUPlugin");

LogLine busy(int seconds)
{
    return record("stspi_open_snap_change_list: start_snapdiff busy, sleeping for " +
                  std::to_string(seconds) + " seconds");
}

class StartRequest : public ZapiChangeListTest
{
  protected:
    StartRequest() { put(server.server_name, "Network_NTAP:filer1"); }

    void script_start(int status)
    {
        if (status == 0) {
            script("ioControlResponse", element("args") + element("len", "0"));
        } else {
            service.script(fault_answer(fault(status)));
        }
    }
    void script_starts(const std::vector<int>& statuses)
    {
        script_mapping();
        for (const int status : statuses) script_start(status);
    }

    // The log behind the settings, without what the control entry says of itself.
    Lines tries() const
    {
        Lines lines;
        bool behind = false;
        for (const LogLine& line : session.lines()) {
            if (behind && line.text.find("stspi_iocontrol") == std::string::npos &&
                line.text.find("SOAP 1.1 fault") == std::string::npos) {
                lines.push_back(line);
            }
            if (line.text == "stspi_open_snap_change_list: succeed to open zapi connection") behind = true;
        }
        return lines;
    }

    Lines settings(const std::vector<std::string>& interval, const std::vector<std::string>& longest) const
    {
        const std::string file = Host::instance().configuration_file().string();
        Lines lines;
        for (const auto* one : {&interval, &longest}) {
            lines.push_back(record("get_conf_setting: Attempting to open config file " + file));
            for (const std::string& text : *one) lines.push_back(record(text));
        }
        return lines;
    }
};

class ServerNames : public StartRequest,
                    public testing::WithParamInterface<std::pair<const char*, const char*>>
{
};
class NamesToAsk : public ServerNames
{
};
class NamesNotToAsk : public ServerNames
{
};

// A name, and what is left of it.
INSTANTIATE_TEST_SUITE_P(Names, NamesToAsk,
                         testing::Values(std::pair("Network_NTAP:filer1", "Network_NTAP"),
                                         std::pair("Network_NTAP:a:b", "Network_NTAP"),
                                         std::pair("Network_NTAP", "Network_NTAP"),
                                         std::pair("::Network_NTAP:f", "::Network_NTAP")));
INSTANTIATE_TEST_SUITE_P(Names, NamesNotToAsk,
                         testing::Values(std::pair("Network_NTAP2:filer1", "Network_NTAP2"),
                                         std::pair("Network_NTA:filer1", "Network_NTA"),
                                         std::pair("network_ntap:filer1", "network_ntap"),
                                         std::pair("a:Network_NTAP", "a"), std::pair("", ""),
                                         std::pair(":::", ":::")));

} // namespace

TEST_P(NamesToAsk, AreCutAtTheirFirstColonForGoodAndAsked)
{
    put(server.server_name, GetParam().first);
    script_starts({0});
    ASSERT_EQ(open(), 0);
    EXPECT_STREQ(server.server_name, GetParam().second);
    EXPECT_THAT(service.requests(), SizeIs(3));
    EXPECT_THAT(clock.sleeps(), IsEmpty());
    EXPECT_THAT(tries(), ElementsAreArray(no_settings() + Lines{opened()}));
    close_at_plugin();
    EXPECT_STREQ(server.server_name, GetParam().second);
}

TEST_P(NamesNotToAsk, AreCutAllTheSameAndOnlyTheEndIsSent)
{
    put(server.server_name, GetParam().first);
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_STREQ(server.server_name, GetParam().second);
    EXPECT_THAT(service.requests(), SizeIs(2));
    close_at_plugin();
    EXPECT_THAT(service.requests(), SizeIs(3));
}

TEST_F(StartRequest, SendsBothTextsOfTheVolumeWithTheLengthOfItsBuffer)
{
    script_starts({0});
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(service.request_body(2),
              element("ioControl", token_element("serverHandle", "S1") + element("command", "10102") +
                                       element("args", "filer1 admin s3cret word;/vol/v1") +
                                       element("ioflag", "1") + element("len", "2049")));
    close_at_plugin();
}

TEST_F(StartRequest, SendsTheLongestTextsWhole)
{
    put(volume->first, "h u " + long_text(1019));
    put(volume->second, long_text(1023));
    script_starts({0});
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(service.request_body(2), testing::HasSubstr("<ns1:args>h u " + long_text(1019) + ";" +
                                                            long_text(1023) + "</ns1:args>"));
    close_at_plugin();
}

TEST_F(StartRequest, WaitsLongerAheadOfEachTryUntilTheFilerIsReady)
{
    script_starts({2060005, 2060005, 2060005, 2060005, 0});
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(clock.sleeps(), ElementsAre(30u, 60u, 90u, 120u));
    EXPECT_THAT(tries(),
                ElementsAreArray(no_settings() + Lines{busy(30), busy(60), busy(90), busy(120), opened()}));
    close_at_plugin();
}

TEST_F(StartRequest, TriesAgainAfterAFailureOfAnotherKind)
{
    script_starts({2060013, 2060005});
    service.script({Answer::Manner::kCloseAtOnce, ""});
    script_start(0);
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(clock.sleeps(), ElementsAre(30u, 60u, 90u));
    EXPECT_THAT(tries(),
                testing::IsSupersetOf(
                    Lines{record("stspi_open_snap_change_list: STS_START_SNAPDIFF ioctl call unsuccessful. "
                                 "Return value = 2060013"),
                          busy(60),
                          record("stspi_open_snap_change_list: STS_START_SNAPDIFF ioctl call unsuccessful. "
                                 "Return value = 2060017")}));
    close_at_plugin();
}

TEST_F(StartRequest, GivesUpAfterFiveTriesAndFallsBackToTheService)
{
    script_starts({2060005, 2060005, 2060005, 2060005, 2060005});
    script_list("C1");
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(clock.sleeps(), ElementsAre(30u, 60u, 90u, 120u));
    EXPECT_THAT(tries(), ElementsAreArray(no_settings() +
                                          Lines{busy(30), busy(60), busy(90), busy(120), busy(150),
                                                return_code("stspi_open_snap_change_list"), opened()}));
    // No list was asked for, and none is closed.
    EXPECT_THAT(plugin.calls(),
                ElementsAre("open_session zapi_via_soap 15", testing::StartsWith("open_server"),
                            "close server1 0", "close session1 0"));
    EXPECT_EQ(list->zapi_list_cell, nullptr);
    close_at_service();
}

TEST_F(StartRequest, GivesTheConnectionBackAheadOfTheServiceWithoutAWordWhereItGivesUp)
{
    Host::instance().write_configuration("start_snapdiff_max_wait=0\n");
    plugin.answer(Operation::kClose, {2060098, 2060099}); // nor does it matter what becomes of that
    left_open = 2;
    script_starts({2060005});
    service.script({Answer::Manner::kCloseAtOnce, ""});
    EXPECT_EQ(open(), STS_ESOAPERROR);
    EXPECT_THAT(plugin.calls(), testing::IsSupersetOf({"close server1 0", "close session1 0"}));
    EXPECT_THAT(session.texts(), Not(Contains(testing::HasSubstr("close"))));
}

TEST_F(StartRequest, GivesBackOnlyWhatItHasOfTheConnectionWhereItGivesUp)
{
    Host::instance().write_configuration("start_snapdiff_max_wait=0\n");
    plugin.keep_session_handles();
    base.reset();
    script_export(diff_export);
    script_start(2060005);
    EXPECT_EQ(open(), STS_ETIMEDOUT);
    EXPECT_EQ(plugin.calls().back(), "close server1 0");
}

TEST_F(StartRequest, TakesTheDefaultForAnIntervalBelowZeroAndLogsWhatItWasSetTo)
{
    Host::instance().write_configuration("start_snapdiff_retry_interval=-5\n");
    script_starts({2060005, 2060005, 0});
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(clock.sleeps(), ElementsAre(30u, 60u));
    EXPECT_THAT(tries(),
                Contains(record("stspi_open_snap_change_list: start_snapdiff_retry_interval set to -5")));
    EXPECT_THAT(tries(), Contains(busy(30)));
    EXPECT_THAT(tries(), Contains(busy(60)));
    close_at_plugin();
}

TEST_F(StartRequest, GivesUpWithAStatusOfItsOwnWhereThereIsNoBaseSnapshot)
{
    base.reset();
    script_export(diff_export);
    for (int i = 0; i < 5; ++i) script_start(2060005);
    EXPECT_EQ(open(), STS_ETIMEDOUT);
    EXPECT_EQ(list, nullptr);
    const Lines lines = tries();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2],
              failure("Filer is unable to service snapdiff requests, even after retries."));
    EXPECT_EQ(lines.back(), opened(STS_ETIMEDOUT));
    EXPECT_THAT(lines, Not(Contains(kNoList)));
}

TEST_F(StartRequest, ForgetsThatStatusWhereTheServiceHasNoListEither)
{
    Host::instance().write_configuration("start_snapdiff_max_wait=0\n");
    script_starts({2060005});
    service.script({Answer::Manner::kCloseAtOnce, ""});
    EXPECT_EQ(open(), STS_ESOAPERROR);
    EXPECT_THAT(tries(), Contains(kNoList));
}

TEST_F(StartRequest, TakesItsTimesFromTheSettings)
{
    Host::instance().write_configuration(
        "start_snapdiff_retry_interval = 7\nSTART_snapdiff_MAX_WAIT = 0x10\n");
    base.reset();
    script_export(diff_export);
    for (int i = 0; i < 3; ++i) script_start(2060005);
    EXPECT_EQ(open(), STS_ETIMEDOUT);
    EXPECT_THAT(clock.sleeps(), ElementsAre(7u, 14u)); // 14 is not beyond 16, and 21 is
    EXPECT_THAT(tries(), Contains(busy(21)));
}

TEST_F(StartRequest, LogsEachSettingThatIsPresent)
{
    Host::instance().write_configuration("start_snapdiff_retry_interval=7\nstart_snapdiff_max_wait=-1\n");
    script_mapping();
    ASSERT_EQ(open(), 0);
    const std::string interval = "start_snapdiff_retry_interval";
    const std::string longest = "start_snapdiff_max_wait";
    EXPECT_THAT(tries(),
                ElementsAreArray(settings({"get_conf_setting: found value 7 for parameter " + interval,
                                           "stspi_open_snap_change_list: " + interval + " set to 7"},
                                          {"get_conf_setting: found value -1 for parameter " + longest,
                                           "stspi_open_snap_change_list: " + longest + " set to -1"}) +
                                 Lines{opened()}));
    close_at_plugin();
}

TEST_F(StartRequest, FallsBackToTheDefaultOfASettingThatIsNoNumberAndIsSilentOnIt)
{
    Host::instance().write_configuration("start_snapdiff_retry_interval=7s\nstart_snapdiff_max_wait=10\n");
    base.reset();
    script_export(diff_export);
    script_start(2060005);
    EXPECT_EQ(open(), STS_ETIMEDOUT);
    EXPECT_THAT(tries(), Contains(busy(30)));
    EXPECT_THAT(session.texts(), Not(Contains(testing::StartsWith(
                                     "stspi_open_snap_change_list: start_snapdiff_retry_interval set to"))));
    EXPECT_THAT(session.texts(), Contains("stspi_open_snap_change_list: start_snapdiff_max_wait set to 10"));
}

TEST_F(StartRequest, WithALongestWaitOfZeroIsMadeOnce)
{
    Host::instance().write_configuration("start_snapdiff_max_wait=0\n");
    base.reset();
    script_export(diff_export);
    script_start(2060005);
    EXPECT_EQ(open(), STS_ETIMEDOUT);
    EXPECT_THAT(clock.sleeps(), IsEmpty());
    EXPECT_THAT(service.requests(), SizeIs(2));
}

TEST_F(StartRequest, WithANegativeLongestWaitIsLeftOutAndTheNameIsCutAllTheSame)
{
    Host::instance().write_configuration("start_snapdiff_max_wait=-1\n");
    script_mapping();
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(service.requests(), SizeIs(2));
    EXPECT_STREQ(server.server_name, "Network_NTAP");
    close_at_plugin();
}

TEST_F(StartRequest, WithAnIntervalOfZeroGoesOnWithoutASleepForAsLongAsTheFilerIsBusy)
{
    Host::instance().write_configuration("start_snapdiff_retry_interval=0\n");
    script_starts({2060005, 2060005, 2060005, 2060005, 2060005, 2060005, 2060005, 2060005, 0});
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(clock.sleeps(), IsEmpty());
    EXPECT_THAT(tries(), testing::Contains(busy(0)).Times(8));
    close_at_plugin();
}
