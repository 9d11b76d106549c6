#include "tests/entries/async_wait_fixture.h"

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

class AsyncWait : public AsyncWaitTest
{
  protected:
    AsyncWait() { fill(record_); }

    int wait(std::int32_t blockflag)
    {
        return main_slot<decltype(stspi_async_wait)>(2)(caller_.get(), async_.get(), blockflag, &record_);
    }

    static Answer result(std::int64_t bytes, int error, int delay)
    {
        return answer(reply("asyncWaitResponse",
                            element("result", nil("image") + number("bytesTransferred", bytes) +
                                                  number("error", error) + number("delayInSeconds", delay))));
    }
    static Answer busy(int delay) { return result(1, 2060005, delay); }

    sts_async_result_t record_;
};

} // namespace

TEST_F(AsyncWait, SendsTheCallersSessionAndTheOperation)
{
    service_.script(result(5, 0, 0));
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(service_.request_body(0),
              element("asyncWait", caller_element() + token_element("opid", "op-1")));
}

TEST_F(AsyncWait, FillsTheRecordAndSaysSo)
{
    service_.script(result(6000000000, 2060013, 4));
    EXPECT_EQ(wait(7), 0);
    EXPECT_EQ(record_.aio_bytes_transferred, 6000000000);
    EXPECT_EQ(record_.aio_error, 2060013U);
    EXPECT_THAT(
        caller_.lines(),
        ElementsAre(record("stspi_async_wait: enter, blockflag = 7"),
                    record("stspi_async_wait: SOAP return code = 0"),
                    record("stspi_async_wait: aio_bytes_transferred = 6000000000 aio_error = 2060013"),
                    record("stspi_async_wait: STS_EOK")));
    EXPECT_THAT(session_.lines(), IsEmpty());
}

TEST_F(AsyncWait, PassesNegativeNumbersBitForBit)
{
    service_.script(result(-6000000000, -2, 0));
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(record_.aio_bytes_transferred, -6000000000);
    EXPECT_EQ(record_.aio_error, 0xFFFFFFFEU);
}

TEST_F(AsyncWait, IgnoresTheImage)
{
    service_.script(answer(reply(
        "asyncWaitResponse", element("result", token_element("image", "I") + number("bytesTransferred", 9) +
                                                   number("error", 0) + number("delayInSeconds", 0)))));
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(record_.aio_bytes_transferred, 9);
}

TEST_F(AsyncWait, RefusesANullSessionOrRecordSilently)
{
    const auto entry = main_slot<decltype(stspi_async_wait)>(2);
    EXPECT_EQ(entry(nullptr, async_.get(), 1, &record_), 2060001);
    EXPECT_EQ(entry(caller_.get(), async_.get(), 1, nullptr), 2060001);
    EXPECT_EQ(entry(caller_.get(), nullptr, 1, nullptr), 2060001);
    EXPECT_THAT(caller_.lines(), IsEmpty());
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_TRUE(is_untouched(record_));
}

TEST_F(AsyncWait, RefusesAHandleWithoutServerOrServiceHandleOnceItHasLoggedItsBeginning)
{
    server_.service_handle = nullptr;
    EXPECT_EQ(wait(-1), 2060026);
    async_->server = nullptr;
    EXPECT_EQ(wait(-1), 2060022);
    async_.reset();
    EXPECT_EQ(wait(-1), 2060022);
    const LogLine enter = record("stspi_async_wait: enter, blockflag = -1");
    EXPECT_THAT(caller_.lines(), ElementsAre(enter, enter, enter));
    EXPECT_EQ(service_.connections(), 0U);
    EXPECT_TRUE(is_untouched(record_));
}

TEST_F(AsyncWait, ReturnsAtOnceFromABusyOperationIfItIsNotToBlock)
{
    service_.script(busy(5));
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(record_.aio_error, 2060005U);
    EXPECT_EQ(service_.connections(), 1U);
    EXPECT_THAT(clock_.sleeps(), IsEmpty());
    EXPECT_THAT(caller_.texts(),
                ElementsAre("stspi_async_wait: enter, blockflag = 0",
                            "stspi_async_wait: SOAP return code = 0",
                            "stspi_async_wait: aio_bytes_transferred = 1 aio_error = 2060005",
                            "stspi_async_wait: STS_EOK"));
}

TEST_F(AsyncWait, AsksAgainAfterEachDelayUntilTheOperationIsNoLongerBusy)
{
    service_.script({busy(5), busy(-1), busy(0), busy(2147483647), result(70, 0, 9)});
    EXPECT_EQ(wait(1), 0);
    EXPECT_THAT(clock_.sleeps(), ElementsAre(5U, 30U, 2147483647U));
    EXPECT_EQ(record_.aio_bytes_transferred, 70);
    EXPECT_EQ(record_.aio_error, 0U);
    const LogLine return_code = record("stspi_async_wait: SOAP return code = 0");
    EXPECT_THAT(caller_.lines(),
                ElementsAre(record("stspi_async_wait: enter, blockflag = 1"), return_code,
                            record("stspi_async_wait: STS_EBUSY delayInSeconds = 5"), return_code,
                            record("stspi_async_wait: STS_EBUSY delayInSeconds = -1"), return_code,
                            record("stspi_async_wait: STS_EBUSY delayInSeconds = 0"), return_code,
                            record("stspi_async_wait: STS_EBUSY delayInSeconds = 2147483647"), return_code,
                            record("stspi_async_wait: aio_bytes_transferred = 70 aio_error = 0"),
                            record("stspi_async_wait: STS_EOK")));
    for (std::size_t i = 1; i < 5; ++i) EXPECT_EQ(service_.request_body(i), service_.request_body(0));
}

TEST_F(AsyncWait, EndsWithTheOperationsOwnErrorInTheRecord)
{
    service_.script({busy(1), result(3, 2060012, 0)});
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(record_.aio_error, 2060012U);
}

TEST_F(AsyncWait, LeavesTheRecordAloneIfTheServiceGoesAwayInTheMiddle)
{
    service_.script({busy(5), {Answer::Manner::kCloseAtOnce, ""}});
    EXPECT_EQ(wait(1), 2060017);
    EXPECT_TRUE(is_untouched(record_));
    const std::vector<LogLine> lines = caller_.lines();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_THAT(lines[3].text, HasSubstr("stspi_async_wait: SOAP return code = "));
    EXPECT_EQ(lines[4].level, STS_LOG_FAILURE);
}

TEST_F(AsyncWait, ReturnsAFaultOfALaterRound)
{
    service_.script({busy(5), fault_answer(fault(2060013))});
    EXPECT_EQ(wait(1), 2060013);
    EXPECT_TRUE(is_untouched(record_));
    EXPECT_EQ(caller_.lines().back(), failure(rendered_fault(2060013)));
}

TEST_F(AsyncWait, ReturnsAFaultOfTheFirstRound)
{
    service_.script(fault_answer(fault(2060013)));
    EXPECT_EQ(wait(1), 2060013);
    EXPECT_TRUE(is_untouched(record_));
    EXPECT_THAT(caller_.lines(), ElementsAre(record("stspi_async_wait: enter, blockflag = 1"),
                                             record("stspi_async_wait: SOAP return code = 1"),
                                             failure(rendered_fault(2060013))));
}

TEST_F(AsyncWait, ReturnsTheStatus0OfAFaultWithoutTouchingTheRecord)
{
    service_.script(fault_answer(fault(0)));
    EXPECT_EQ(wait(1), 0);
    EXPECT_TRUE(is_untouched(record_));
    EXPECT_EQ(caller_.lines().back(), failure(rendered_fault(0)));
}

TEST_F(AsyncWait, CannotUseAReplyWithoutAResult)
{
    for (const std::string& content : {std::string(), nil("result")}) {
        caller_.clear();
        service_.script({busy(0), answer(reply("asyncWaitResponse", content))});
        EXPECT_EQ(wait(1), 2060046);
        EXPECT_TRUE(is_untouched(record_));
        const LogLine return_code = record("stspi_async_wait: SOAP return code = 0");
        EXPECT_THAT(caller_.lines(),
                    ElementsAre(record("stspi_async_wait: enter, blockflag = 1"), return_code,
                                record("stspi_async_wait: STS_EBUSY delayInSeconds = 0"), return_code,
                                failure("stspi_async_wait: the reply has no result")));
    }
}

TEST_F(AsyncWait, SendsNoIdForASessionWithoutOne)
{
    caller_.drop_id();
    service_.script(result(1, 0, 0));
    EXPECT_EQ(wait(0), 0);
    EXPECT_THAT(service_.request_body(0), HasSubstr(nil("id")));
}

TEST_F(AsyncWait, SendsAnEmptyTokenForAHandleWithoutOne)
{
    async_ = make_async(&server_, 0, nullptr);
    service_.script(result(1, 0, 0));
    EXPECT_EQ(wait(0), 0);
    EXPECT_THAT(service_.request_body(0), HasSubstr("<ns1:opid><ns1:token/></ns1:opid>"));
}

TEST_F(AsyncWait, LeavesTheHandleAsItIsForAnyNumberOfWaits)
{
    service_.script({result(1, 0, 0), result(2, 0, 0)});
    EXPECT_EQ(wait(0), 0);
    EXPECT_EQ(wait(1), 0);
    EXPECT_EQ(async_->server, &server_);
    EXPECT_STREQ(async_->op_token, "op-1");
    EXPECT_EQ(service_.request_body(1), service_.request_body(0));
}

TEST_F(AsyncWait, EncryptsEachRoundForAnHttpsHandle)
{
    use_https();
    service_.script({busy(1), busy(1), result(5, 0, 0)});
    EXPECT_EQ(wait(1), 0);
    ASSERT_EQ(service_.requests().size(), 3U);
    for (const Request& request : service_.requests()) EXPECT_TRUE(request.tls);
    EXPECT_EQ(record_.aio_bytes_transferred, 5);
}

TEST_F(AsyncWait, WritesNothingBehindTheRecord)
{
    struct {
        sts_async_result_t record;
        char behind[16];
    } memory;
    fill(memory);
    service_.script(result(1, 2, 3));
    EXPECT_EQ(main_slot<decltype(stspi_async_wait)>(2)(caller_.get(), async_.get(), 0, &memory.record), 0);
    EXPECT_TRUE(is_untouched(memory.behind));
}
