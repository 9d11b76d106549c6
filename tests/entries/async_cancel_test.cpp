#include "tests/entries/async_wait_fixture.h"

using namespace kit;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

class AsyncCancel : public AsyncWaitTest
{
  protected:
    int cancel() { return main_slot<decltype(stspi_async_cancel)>(41)(caller_.get(), async_.get()); }
};

class NamedAsyncStatus : public AsyncWaitTest
{
  protected:
    int status(const sts_opname_t& name = opname("the operation"))
    {
        return main_slot<decltype(stspi_named_async_status)>(47)(&server_, name);
    }
};

} // namespace

TEST_F(AsyncCancel, SendsTheCallersSessionAndTheOperation)
{
    service_.script(answer(reply("asyncCancelResponse")));
    EXPECT_EQ(cancel(), 0);
    EXPECT_EQ(service_.request_body(0),
              element("asyncCancel", caller_element() + token_element("opid", "op-1")));
}

TEST_F(AsyncCancel, LogsOneLineOfASuccessToTheServersSession)
{
    service_.script(answer(reply("asyncCancelResponse")));
    EXPECT_EQ(cancel(), 0);
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_async_cancel: SOAP return code = 0")));
    EXPECT_THAT(caller_.lines(), IsEmpty());
}

TEST_F(AsyncCancel, LeavesTheHandleAsItIs)
{
    service_.script({answer(reply("asyncCancelResponse")), answer(reply("asyncCancelResponse"))});
    EXPECT_EQ(cancel(), 0);
    EXPECT_EQ(async_->server, &server_);
    EXPECT_STREQ(async_->op_token, "op-1");
    EXPECT_EQ(cancel(), 0);
}

TEST_F(AsyncCancel, TestsSessionServerAndServiceHandleInThisOrderSilently)
{
    const auto entry = main_slot<decltype(stspi_async_cancel)>(41);
    server_.service_handle = nullptr;
    EXPECT_EQ(cancel(), 2060026);
    async_->server = nullptr;
    EXPECT_EQ(cancel(), 2060022);
    EXPECT_EQ(entry(caller_.get(), nullptr), 2060022);
    EXPECT_EQ(entry(nullptr, async_.get()), 2060001);
    EXPECT_EQ(entry(nullptr, nullptr), 2060001);
    EXPECT_THAT(session_.lines(), IsEmpty());
    EXPECT_THAT(caller_.lines(), IsEmpty());
    EXPECT_EQ(service_.connections(), 0U);
}

TEST_F(AsyncCancel, LogsAFaultToTheServersSession)
{
    service_.script(fault_answer(fault(2060013)));
    EXPECT_EQ(cancel(), 2060013);
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_async_cancel: SOAP return code = 1"),
                                              failure(rendered_fault(2060013))));
    EXPECT_THAT(caller_.lines(), IsEmpty());
}

TEST_F(AsyncCancel, ReportsALostConnectionAndAFaultWithoutADetail)
{
    service_.script(
        {{Answer::Manner::kReset, ""}, fault_answer(fault_with_detail("")), fault_answer(fault(0))});
    EXPECT_EQ(cancel(), 2060017);
    EXPECT_EQ(cancel(), 2060021);
    EXPECT_EQ(cancel(), 0);
}

TEST_F(AsyncCancel, SendsNoIdForASessionWithoutOne)
{
    caller_.drop_id();
    service_.script(answer(reply("asyncCancelResponse")));
    EXPECT_EQ(cancel(), 0);
    EXPECT_THAT(service_.request_body(0), HasSubstr(nil("id")));
}

TEST_F(AsyncCancel, EncryptsForAnHttpsHandle)
{
    use_https();
    service_.script(answer(reply("asyncCancelResponse")));
    EXPECT_EQ(cancel(), 0);
    EXPECT_TRUE(service_.requests().at(0).tls);
}

TEST_F(NamedAsyncStatus, SendsTheServerAndTheName)
{
    service_.script({answer(reply("namedAsyncStatusResponse")), answer(reply("namedAsyncStatusResponse"))});
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(service_.request_body(0), element("namedAsyncStatus", token_element("serverHandle", "SH") +
                                                                        element("opname", "the operation")));
    EXPECT_EQ(status(sts_opname_t{}), 0);
    EXPECT_THAT(service_.request_body(1), HasSubstr("<ns1:opname/></ns1:namedAsyncStatus>"));
}

TEST_F(NamedAsyncStatus, LogsTheThreeUsualLines)
{
    service_.script(answer(reply("namedAsyncStatusResponse")));
    EXPECT_EQ(status(), 0);
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_named_async_status: enter"),
                                              record("stspi_named_async_status: SOAP return code = 0"),
                                              record("stspi_named_async_status: STS_EOK")));
}

TEST_F(NamedAsyncStatus, IsTheStatusOfTheFault)
{
    service_.script({fault_answer(fault(2060005)),
                     fault_answer(fault(0)),
                     fault_answer(fault_with_detail("")),
                     {Answer::Manner::kReset, ""}});
    EXPECT_EQ(status(), 2060005);
    EXPECT_THAT(session_.lines(), ElementsAre(record("stspi_named_async_status: enter"),
                                              record("stspi_named_async_status: SOAP return code = 1"),
                                              failure(rendered_fault(2060005))));
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
    EXPECT_EQ(status(), 2060021);
    EXPECT_EQ(status(), 2060017);
}

TEST_F(NamedAsyncStatus, AsksWithoutAServiceHandleAndSurvivesANullServer)
{
    server_.service_handle = nullptr;
    service_.script(answer(reply("namedAsyncStatusResponse")));
    EXPECT_EQ(status(), 0);
    EXPECT_THAT(service_.request_body(0), HasSubstr("<ns1:serverHandle><ns1:token/></ns1:serverHandle>"));
    EXPECT_EQ(main_slot<decltype(stspi_named_async_status)>(47)(nullptr, opname("o")), 2060022);
    EXPECT_EQ(service_.connections(), 1U);
}
