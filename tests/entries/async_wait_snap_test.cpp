#include "tests/entries/async_wait_snap_fixture.h"

#include <malloc.h>

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

INSTANTIATE_TEST_SUITE_P(Families, AsyncWaitSnap, testing::Values(Family::kById, Family::kByName), family_of);

TEST_P(AsyncWaitSnap, SendsWhoAsksAndForWhat)
{
    service_.script(result({}));
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(service_.request_body(0),
              by_id() ? element("asyncWaitSnap", caller_element() + token_element("opid", "op-1"))
                      : element("namedAsyncWaitSnap",
                                token_element("serverHandle", "SH") + element("opname", "the operation")));
}

TEST_P(AsyncWaitSnap, FillsTheRecordAndSaysSo)
{
    service_.script(result({6000000000, 2060013, 4, 5, ""}));
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 6000000000);
    EXPECT_EQ(record_.aio_error, 2060013U);
    EXPECT_EQ(record_.retryInterval, 4);
    EXPECT_EQ(record_.result_kind, 5);
    EXPECT_THAT(log().lines(),
                ElementsAre(record(line("enter")), record(return_code(0)),
                            record(line("aio_total_bytes_transferred = 6000000000 aio_error = 2060013")),
                            record(line("STS_EOK"))));
    EXPECT_THAT((by_id() ? session_ : caller_).lines(), IsEmpty());
}

TEST_P(AsyncWaitSnap, PassesNegativeNumbersBitForBit)
{
    service_.script(result({-5, -2, -3, 4, ""}));
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, -5);
    EXPECT_EQ(record_.aio_error, 0xFFFFFFFEU);
    EXPECT_EQ(record_.retryInterval, -3);
}

TEST_P(AsyncWaitSnap, ReturnsAtOnceFromABusyOperationIfItIsNotToBlock)
{
    service_.script(busy(5));
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(record_.aio_error, 2060005U);
    EXPECT_EQ(record_.retryInterval, 5);
    EXPECT_EQ(service_.connections(), 1U);
    EXPECT_THAT(clock_.sleeps(), IsEmpty());
}

TEST_P(AsyncWaitSnap, AsksAgainAfterEachIntervalAndLogsTheFirstReturnCodeAlone)
{
    service_.script({busy(5), busy(-1), busy(0), busy(7), result({70, 0, 0, 0, ""})});
    EXPECT_EQ(wait(-1), 0);
    EXPECT_THAT(clock_.sleeps(), ElementsAre(5U, 30U, 7U));
    EXPECT_EQ(record_.aio_total_bytes_transferred, 70);
    EXPECT_EQ(record_.aio_error, 0U);
    EXPECT_THAT(
        log().lines(),
        ElementsAre(record(line("enter")), record(return_code(0)),
                    record(line("STS_EBUSY retryInterval = 5")), record(line("STS_EBUSY retryInterval = -1")),
                    record(line("STS_EBUSY retryInterval = 0")), record(line("STS_EBUSY retryInterval = 7")),
                    record(line("aio_total_bytes_transferred = 70 aio_error = 0")), record(line("STS_EOK"))));
    for (std::size_t i = 1; i < 5; ++i) EXPECT_EQ(service_.request_body(i), service_.request_body(0));
}

TEST_P(AsyncWaitSnap, LeavesTheRecordAloneIfTheServiceGoesAwayInTheMiddle)
{
    service_.script({busy(5), {Answer::Manner::kReset, ""}});
    EXPECT_EQ(wait(1), 2060017);
    EXPECT_TRUE(is_untouched(record_));
    const std::vector<LogLine> lines = log().lines();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[2], record(line("STS_EBUSY retryInterval = 5")));
    EXPECT_EQ(lines[3].level, STS_LOG_FAILURE);
}

TEST_P(AsyncWaitSnap, ReturnsAFaultOfAnyRound)
{
    service_.script({fault_answer(fault(2060013)), busy(5), fault_answer(fault(2060012))});
    EXPECT_EQ(wait(1), 2060013);
    EXPECT_THAT(log().lines(),
                ElementsAre(record(line("enter")), record(return_code(1)), failure(rendered_fault(2060013))));
    EXPECT_EQ(wait(1), 2060012);
    EXPECT_EQ(log().lines().back(), failure(rendered_fault(2060012)));
    EXPECT_TRUE(is_untouched(record_));
}

TEST_P(AsyncWaitSnap, ReturnsTheStatus0OfAFaultWithoutTouchingTheRecord)
{
    service_.script({busy(0), fault_answer(fault(0))});
    EXPECT_EQ(wait(1), 0);
    EXPECT_TRUE(is_untouched(record_));
    EXPECT_EQ(log().lines().back(), failure(rendered_fault(0)));
}

TEST_P(AsyncWaitSnap, CannotUseAReplyWithoutAResult)
{
    for (const std::string& content : {std::string(), nil("result")}) {
        log().clear();
        service_.script({busy(0), reply_with(content)});
        EXPECT_EQ(wait(1), 2060046);
        EXPECT_TRUE(is_untouched(record_));
        EXPECT_THAT(log().lines(), ElementsAre(record(line("enter")), record(return_code(0)),
                                               record(line("STS_EBUSY retryInterval = 0")),
                                               failure(line("the reply has no result"))));
    }
}

TEST_P(AsyncWaitSnap, EncryptsEachRoundForAnHttpsHandle)
{
    use_https();
    service_.script({busy(1), busy(1), result({})});
    EXPECT_EQ(wait(1), 0);
    ASSERT_EQ(service_.requests().size(), 3U);
    for (const Request& request : service_.requests()) EXPECT_TRUE(request.tls);
}

TEST_P(AsyncWaitSnap, DoesTheSameForASessionThatHearsNothing)
{
    caller_->log_callback = nullptr;
    session_->log_callback = nullptr;
    service_.script({busy(2), result({8, 0, 0, 0, ""}), result({8, 0, 0, 1, ""})});
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 8);
    EXPECT_THAT(clock_.sleeps(), ElementsAre(2U));
    EXPECT_EQ(wait(1), 2060046);
}

TEST_P(AsyncWaitSnap, KeepsNoReplyOfARoundThatIsOver)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the heap is the sanitizer's";
#endif
    constexpr std::size_t kReplySize = 100000;
    constexpr std::size_t kRounds = 100;
    const auto large_and_busy = [this] {
        return result({1, 2060005, 1, 0,
                       element("validateSnap", element("targetTopology", std::string(kReplySize, 't')))});
    };
    std::vector<std::size_t> in_use;
    clock_.on_sleep([&](unsigned int) {
        in_use.push_back(mallinfo2().uordblks + mallinfo2().hblkhd);
        service_.script(in_use.size() < kRounds ? large_and_busy() : result({}));
    });
    service_.script(large_and_busy());
    EXPECT_EQ(wait(1), 0);
    ASSERT_EQ(in_use.size(), kRounds);
    EXPECT_LT(in_use.back(), in_use.at(1) + kRounds * kReplySize / 4);
}

namespace
{

class WaitById : public AsyncWaitSnapTest
{
  protected:
    WaitById() : AsyncWaitSnapTest(Family::kById) {}
};

class WaitByName : public AsyncWaitSnapTest
{
  protected:
    WaitByName() : AsyncWaitSnapTest(Family::kByName) {}
};

} // namespace

TEST_F(WaitById, RefusesANullSessionOrRecordSilently)
{
    const auto entry = snapshot_slot<decltype(stspi_async_wait_snap)>(8);
    EXPECT_EQ(entry(nullptr, async_.get(), 1, &record_), 2060001);
    EXPECT_EQ(entry(caller_.get(), async_.get(), 1, nullptr), 2060001);
    EXPECT_EQ(entry(caller_.get(), nullptr, 1, nullptr), 2060001);
    EXPECT_THAT(caller_.lines(), IsEmpty());
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_TRUE(is_untouched(record_));
}

TEST_F(WaitById, RefusesAHandleWithoutServerOrServiceHandleOnceItHasLoggedItsBeginning)
{
    server_.service_handle = nullptr;
    EXPECT_EQ(wait(1), 2060026);
    async_->server = nullptr;
    EXPECT_EQ(wait(1), 2060022);
    async_.reset();
    EXPECT_EQ(wait(1), 2060022);
    const LogLine enter = record("stspi_async_wait_snap: enter");
    EXPECT_THAT(caller_.lines(), ElementsAre(enter, enter, enter));
    EXPECT_EQ(service_.connections(), 0U);
    EXPECT_TRUE(is_untouched(record_));
}

TEST_F(WaitById, SendsNoIdForASessionWithoutOne)
{
    caller_.drop_id();
    service_.script(result({}));
    EXPECT_EQ(wait(0), 0);
    EXPECT_THAT(service_.request_body(0), HasSubstr(nil("id")));
}

TEST_F(WaitByName, TestsTheRecordAndTheServerSilentlyAndTheServiceHandleOnceItHasLoggedItsBeginning)
{
    const auto entry = snapshot_slot<decltype(stspi_named_async_wait_snap)>(28);
    EXPECT_EQ(entry(nullptr, 1, nullptr, opname("o")), 2060001);
    EXPECT_EQ(entry(&server_, 1, nullptr, opname("o")), 2060001);
    EXPECT_EQ(entry(nullptr, 1, &record_, opname("o")), 2060022);
    EXPECT_THAT(session_.lines(), IsEmpty());
    server_.service_handle = nullptr;
    EXPECT_EQ(wait(1), 2060026);
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_named_async_wait_snap: enter")));
    EXPECT_EQ(service_.connections(), 0U);
    EXPECT_TRUE(is_untouched(record_));
}

TEST_F(WaitByName, SendsAnEmptyName)
{
    service_.script(result({}));
    EXPECT_EQ(snapshot_slot<decltype(stspi_named_async_wait_snap)>(28)(&server_, 0, &record_, sts_opname_t{}),
              0);
    EXPECT_THAT(service_.request_body(0), HasSubstr("<ns1:opname/></ns1:namedAsyncWaitSnap>"));
}

// ---- the bytes of a copy ----

TEST_F(WaitById, ShowsNoBytesOfACopyOnAServerThatDiscoveryDoesNotKnow)
{
    service_.script(result({6000000000, 0, 0, 3, snapshot_arm("copySnap")}));
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 0);
    EXPECT_EQ(record_.result_kind, 3);
    EXPECT_STREQ(record_.body.snapshot.targetSnapName, "the copy");
    EXPECT_EQ(caller_.texts().at(2), "stspi_async_wait_snap: aio_total_bytes_transferred = 0 aio_error = 0");
}

TEST_F(WaitById, ShowsTheBytesOfACopyThatWasStartedWithItsPendingFlag)
{
    async_->pendingflag = 1;
    service_.script(result({6000000000, 0, 0, 3, snapshot_arm("copySnap")}));
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 6000000000);
}

TEST_F(WaitById, ShowsTheBytesOfACopyOnAServerThatDiscoveryKnows)
{
    discover(server_.server_name, {"11;1;2;http;" + service_.url()});
    service_.script(result({6000000000, 0, 0, 3, snapshot_arm("copySnap")}));
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 6000000000);
}

TEST_F(WaitById, ShowsTheBytesOfEveryOtherKindInAnyCase)
{
    service_.script({result({7, 0, 0, 0, snapshot_arm("createSnap")}),
                     result({8, 0, 0, 0, snapshot_arm("importSnap")}), result({9, 0, 0, 0, ""})});
    for (const std::int64_t bytes : {7, 8, 9}) {
        EXPECT_EQ(wait(1), 0);
        EXPECT_EQ(record_.aio_total_bytes_transferred, bytes);
    }
}

TEST_F(WaitByName, ShowsTheBytesOfACopyInAllCases)
{
    service_.script(result({6000000000, 0, 0, 3, snapshot_arm("copySnap")}));
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_total_bytes_transferred, 6000000000);
    EXPECT_EQ(record_.result_kind, 3);
}
