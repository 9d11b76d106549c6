// The entries of a list of the service's: order, pacing, filters, ends and failures.
#include "tests/entries/change_list_listing_fixture.h"

#include <stdexcept>

using namespace change_list;
using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::SizeIs;

namespace
{

constexpr std::size_t kFilterSize = 1024;

class ListFiles : public ListingTest
{
};

} // namespace

TEST_F(ListFiles, ChecksListEntryAndToken)
{
    EXPECT_EQ(list_file()(nullptr, 0, nullptr, entry.get()), STS_ENULLARG);
    EXPECT_EQ(list_file()(list, 0, nullptr, nullptr), STS_ENULLARG);
    stsp_change_list bare = {};
    bare.server = &server;
    EXPECT_EQ(list_file()(&bare, 0, nullptr, entry.get()), STS_EBADARG);
    EXPECT_THAT(session.lines(), ElementsAre());
    EXPECT_THAT(service.requests(), SizeIs(3));
}

TEST_F(ListFiles, FillsEveryFieldOfAnEntry)
{
    script_files(element("item", element("name", "/a") + element("ftype", "1") + element("changetype", "2") +
                                     element("modtime", "3") + element("accesstime", "-4") +
                                     element("createtime", "5") + element("changetime", "6") +
                                     element("size", "7000000000") + element("ownerid", "8") +
                                     element("groupid", "9") + element("permissions", "10") +
                                     element("inode", "11") + element("gnum", "-12")),
                 1);
    ASSERT_EQ(next(), 0);
    EXPECT_STREQ(entry->name, "/a");
    EXPECT_EQ(entry->ftype, 1);
    EXPECT_EQ(entry->changetype, 2);
    EXPECT_EQ(entry->modtime, 3);
    EXPECT_EQ(entry->accesstime, -4);
    EXPECT_EQ(entry->createtime, 5);
    EXPECT_EQ(entry->changetime, 6);
    EXPECT_EQ(entry->size, 7000000000);
    EXPECT_EQ(entry->ownerid, 8);
    EXPECT_EQ(entry->groupid, 9);
    EXPECT_EQ(entry->permissions, 10);
    EXPECT_EQ(entry->inode, 11);
    EXPECT_EQ(entry->gnum, -12);
    EXPECT_THAT(info().entry_buffer, SizeIs(0));
    EXPECT_EQ(service.request_body(3),
              element("listFile", token_element("fileListHandle", "C1") + element("filterPathNum", "0") +
                                      element("filterPathList")));
    EXPECT_THAT(session.lines(), ElementsAre(code(0), file_name("/a"), kOk));
}

TEST_F(ListFiles, HandsABatchOutFromItsFirstAndThenFromItsLast)
{
    script_files(file_element("/A") + file_element("/B\\20") + file_element("/C") + file_element("/D"), 4, 0,
                 9);
    clock.set_time(1000);
    EXPECT_EQ(next_path(), "/A");
    EXPECT_THAT(info().entry_buffer, SizeIs(3));
    EXPECT_EQ(next_path(), "/D");
    EXPECT_EQ(next_path(), "/C");
    EXPECT_EQ(next_path(), "/B ");
    EXPECT_THAT(session.lines(), ElementsAre(code(0, 9), file_name("/A"), kOk, file_name("/D"), kFromBuffer,
                                             file_name("/C"), kFromBuffer, file_name("/B\\20"), kFromBuffer));
    EXPECT_THAT(clock.sleeps(), ElementsAre()); // what is here already needs no waiting for
    EXPECT_THAT(service.requests(), SizeIs(4));
}

TEST_F(ListFiles, ABufferedEntryIsTheHostsWholeRecord)
{
    script_files(file_element("/A") + element("item", element("name", "/B") + element("size", "5")), 2);
    ASSERT_EQ(next(), 0);
    fill_with_canary(*entry);
    ASSERT_EQ(next(), 0);
    sts_file_attr_v11_t expected = {};
    put(expected.name, "/B");
    expected.size = 5;
    EXPECT_STREQ(entry->name, "/B");
    EXPECT_EQ(entry->size, 5);
    EXPECT_EQ(entry->modtime, 0); // nil, in a record that began empty
}

TEST_F(ListFiles, CutsAPathOf4096Characters)
{
    script_files(file_element(long_text(4096)), 1);
    EXPECT_EQ(next_path(), long_text(4095));
}

TEST_F(ListFiles, CutsAPathAheadOfRewritingIt)
{
    const std::string path = long_text(4093) + "\\41B";
    script_files(file_element(path) + file_element(path), 2);
    EXPECT_EQ(next_path(), long_text(4093) + "\4"); // what the cut leaves of the escape
    EXPECT_EQ(next_path(), long_text(4093) + "\4");
}

TEST_F(ListFiles, WaitsForWhatIsLeftOfThePauseThatTheLastReplyAskedFor)
{
    clock.set_time(1000);
    script_files(file_element("/A"), 1, 0, 30);
    EXPECT_EQ(next_path(), "/A");
    EXPECT_EQ(info().retry_interval, 30);
    EXPECT_EQ(info().last_reply_time, 1000);
    clock.set_time(1012);
    script_files(file_element("/B"), 1);
    session.clear();
    EXPECT_EQ(next_path(), "/B");
    EXPECT_THAT(clock.sleeps(), ElementsAre(18u));
    EXPECT_THAT(
        session.lines(),
        ElementsAre(record("stspi_list_file: Sleeping for 18 seconds until list_file can be serviced again."),
                    code(0), file_name("/B"), kOk));
    EXPECT_EQ(info().retry_interval, 0);
    EXPECT_EQ(info().last_reply_time, 1030);
}

TEST_F(ListFiles, DoesNotWaitForAPauseThatIsOver)
{
    clock.set_time(1000);
    script_files(file_element("/A"), 1, 0, 30);
    EXPECT_EQ(next_path(), "/A");
    clock.set_time(1030);
    service.script({Answer::Manner::kCloseAtOnce, ""});
    EXPECT_EQ(next(), STS_ESOAPERROR);
    EXPECT_THAT(clock.sleeps(), ElementsAre());
    EXPECT_EQ(info().retry_interval, 0);
    EXPECT_EQ(info().last_reply_time, 0);
}

TEST_F(ListFiles, TakesANegativePauseForNone)
{
    clock.set_time(1000);
    script_files(file_element("/A"), 1, 0, -30);
    EXPECT_EQ(next_path(), "/A");
    script_files("", 0);
    EXPECT_EQ(next(), STS_ENOENT);
    EXPECT_THAT(clock.sleeps(), ElementsAre());
}

TEST_F(ListFiles, HoldsNoLockWhileItSleeps)
{
    clock.set_time(1000);
    script_files("", 0, STS_EBUSY, 5);
    EXPECT_EQ(next(), STS_EBUSY);
    pthread_mutex_t* const mutex = Host::instance().symbol<pthread_mutex_t>("snapdiff_session_map_mutex");
    int free_mutex = -1;
    clock.on_sleep([&](unsigned int) {
        free_mutex = pthread_mutex_trylock(mutex);
        if (free_mutex == 0) pthread_mutex_unlock(mutex);
    });
    script_files("", 0);
    EXPECT_EQ(next(), STS_ENOENT);
    EXPECT_EQ(free_mutex, 0);
}

TEST_F(ListFiles, ABusyServiceIsReportedAtOnceAndAskedAgainAfterItsPause)
{
    clock.set_time(1000);
    script_files(file_element("/A"), 1, STS_EBUSY, 20);
    EXPECT_EQ(next(), STS_EBUSY);
    EXPECT_THAT(session.lines(), ElementsAre(code(0, 20), record("stspi_list_file: STS_EBUSY received")));
    EXPECT_THAT(clock.sleeps(), ElementsAre());
    clock.set_time(1005);
    script_files(file_element("/A"), 1);
    EXPECT_EQ(next_path(), "/A");
    EXPECT_THAT(clock.sleeps(), ElementsAre(15u));
}

TEST_F(ListFiles, LooksAtNoOtherErrorOfAReply)
{
    script_files(file_element("/A"), 1, 2060099);
    EXPECT_EQ(next_path(), "/A");
    script_files("", 0, 2060099);
    EXPECT_EQ(next(), STS_ENOENT);
}

TEST_F(ListFiles, DoesNotRememberTheEndAndStillHonoursItsPause)
{
    clock.set_time(1000);
    script_files(file_element("/not counted"), 0, 0, 4);
    EXPECT_EQ(next(), STS_ENOENT);
    EXPECT_THAT(session.lines(), ElementsAre(code(0, 4), kNoMore));
    script_files(file_element("/A"), 1);
    EXPECT_EQ(next_path(), "/A");
    EXPECT_THAT(clock.sleeps(), ElementsAre(4u));
}

TEST_F(ListFiles, SendsTheFiltersOfEachCallFollowedByWhatTheListIsRestrictedTo)
{
    info().qtree_paths = {"/vol/v1/q1", "/vol/v1/q2"};
    std::vector<char> filters(2 * kFilterSize, 'x');
    std::strcpy(filters.data(), "/one");
    // The second fills its row and has no terminator.
    script_files(file_element("/A"), 1);
    ASSERT_EQ(list_file()(list, 2, filters.data(), entry.get()), 0);
    EXPECT_EQ(service.request_body(3),
              element("listFile",
                      token_element("fileListHandle", "C1") + element("filterPathNum", "4") +
                          element("filterPathList",
                                  element("item", "/one") + element("item", std::string(kFilterSize, 'x')) +
                                      element("item", "/vol/v1/q1") + element("item", "/vol/v1/q2"))));
    script_files(file_element("/B"), 1);
    ASSERT_EQ(next(), 0);
    EXPECT_EQ(service.request_body(4),
              element("listFile", token_element("fileListHandle", "C1") + element("filterPathNum", "2") +
                                      element("filterPathList", element("item", "/vol/v1/q1") +
                                                                    element("item", "/vol/v1/q2"))));
}

TEST_F(ListFiles, LeavesItToTheServiceToFilter)
{
    info().qtree_paths = {"/vol/v1/q1"};
    script_files(file_element("/vol/v1/other"), 1);
    EXPECT_EQ(next_path(), "/vol/v1/other");
}

TEST_F(ListFiles, MapsAFaultAndAsksAgainInTheNextCall)
{
    clock.set_time(1000);
    script_files("", 0, 0, 30);
    EXPECT_EQ(next(), STS_ENOENT);
    session.clear();
    service.script(fault_answer(fault(2060012)));
    EXPECT_EQ(next(), STS_EINUSE);
    EXPECT_THAT(session.lines(),
                ElementsAre(record("stspi_list_file: Sleeping for 30 seconds until list_file can be serviced "
                                   "again."),
                            code(1), failure(rendered_fault(2060012))));
    EXPECT_EQ(info().retry_interval, 0);
    EXPECT_EQ(info().last_reply_time, 0);

    service.script(fault_answer(fault_with_detail("")));
    EXPECT_EQ(next(), STS_EFAULTDETAIL);
    service.script(fault_answer(fault(2060012, "SOAP-ENV:Server")));
    EXPECT_EQ(next(), STS_ESOAPERROR);
    script_files(file_element("/A"), 1);
    EXPECT_EQ(next_path(), "/A");
}

TEST_F(ListFiles, RewritesPathsWithTheMountOfTheList)
{
    info().parsed_isid.mpfs_vec = {{"/mnt/s1", "filer1:/vol/v1"}};
    info().repl_patterns = {{"", "q1", "/src/data"}};
    script_files(file_element(diff_export + "/q1/a\\20b") + file_element(base_export + "/gone", 1), 2);
    EXPECT_EQ(next_path(), "/mnt/s1//src/data/a b");
    EXPECT_EQ(next_path(), "/mnt/s1/gone");
    EXPECT_THAT(session.lines(),
                ElementsAre(code(0), file_name(diff_export + "/q1/a\\20b"),
                            record("transform: " + diff_export + "/q1/a\\20b " + diff_export),
                            record("info.parsed_isid.mpfs_vec[0].mount_path /mnt/s1"), kOk,
                            file_name(base_export + "/gone"), kFromBuffer));
}

TEST_F(ListFiles, LooksForADeletedFileInTheNewerSnapshotWhereThereIsNoMount)
{
    script_files(file_element(base_export + "/d/f", 1), 1);
    EXPECT_EQ(next_path(), diff_export + "/d/f");
    EXPECT_THAT(session.lines(),
                ElementsAre(code(0), file_name(base_export + "/d/f"),
                            record("stspi_list_file: deleted entry " + base_export + "/d/f"), kOk));
}

TEST_F(ListFiles, LetsTheExceptionOfADeletedPathWithoutASnapshotThrough)
{
    script_files(file_element("/x", 1) + file_element("/y"), 2);
    EXPECT_THROW(next(), std::out_of_range);
    info().entry_buffer.emplace_back(*entry); // as a buffered entry it stays where it was
    EXPECT_THROW(next(), std::out_of_range);
    EXPECT_THAT(info().entry_buffer, SizeIs(1));
    info().entry_buffer.clear();
}

TEST_F(ListFiles, WorksOnAnEmptyRecordWhereNothingIsFiled)
{
    registry().clear();
    script_files(file_element("/A\\41", 3) + file_element("/B"), 2);
    EXPECT_EQ(next_path(), "/AA");
    EXPECT_THAT(info().entry_buffer, SizeIs(1));
    EXPECT_EQ(next_path(), "/B");
}

TEST_F(ListFiles, ServesTwoListsOfOneServerByTheirTokens)
{
    stsp_change_list_t* const first = list;
    open_at_service("C2");
    stsp_change_list_t* const second = list;
    list = first;
    script_files(file_element("/A1") + file_element("/B1"), 2);
    EXPECT_EQ(next_path(), "/A1");
    list = second;
    script_files(file_element("/A2"), 1);
    EXPECT_EQ(next_path(), "/A2");
    list = first;
    EXPECT_EQ(next_path(), "/B1");
    close_at_service();
    list = second; // closed by the fixture
}
