// What all the entries of the catalogues, the exports and the I/O control have in common.
#include "tests/entries/catalogue_cases.h"

#include <utility>

using namespace catalogue;
using namespace kit;
using testing::ElementsAreArray;

namespace
{

// Each test starts with a list that an open made, and ends by closing what is still open.
class CatalogueFrame : public CatalogueTest, public testing::WithParamInterface<Case>
{
  protected:
    void SetUp() override
    {
        script("openLSUListResponse", token_element("lsuListHandle", "L"));
        ASSERT_EQ(open_lsu_list_v11()(&server, nullptr, &records->list), 0);
        records->server = &server;
        records->lsu = &lsu;
        records->image.server = &server;
        session.clear();
    }

    void TearDown() override
    {
        session->log_callback = nullptr;
        server.endpoint = url.data();
        server.use_https = false;
        if (!closed) end(records->list);
        if (records->out.list) end(records->out.list);
    }

    void end(stsp_list_t* list)
    {
        script("closeLSUListResponse");
        EXPECT_EQ(close_lsu_list()(list), 0);
    }

    int call()
    {
        const int status = GetParam().call(*records);
        if (GetParam().kind == Kind::kClose && last_was_good) closed = true;
        return status;
    }

    int good_call()
    {
        script(GetParam().reply, GetParam().content.text);
        last_was_good = true;
        return call();
    }

    int refused_call(const std::string& soap)
    {
        service.script(fault_answer(soap));
        return call();
    }

    // The lines of a call whose runtime result was this, up to the mapping.
    std::vector<LogLine> lines_up_to(int result) const
    {
        const Case& test = GetParam();
        std::vector<LogLine> lines = {record(test.name + ": enter")};
        lines.insert(lines.end(), test.after_enter.begin(), test.after_enter.end());
        const std::string name = test.return_code_name.empty() ? test.name : test.return_code_name;
        lines.push_back(record(name + ": SOAP return code = " + std::to_string(result)));
        return lines;
    }

    void expect_outputs_untouched()
    {
        const Records fresh;
        EXPECT_TRUE(same_bytes(records->out, fresh.out));
    }

    std::unique_ptr<Records> records = std::make_unique<Records>();
    bool last_was_good = false;
    bool closed = false;
};

class CatalogueOpens : public CatalogueFrame
{
};

class CatalogueCalls : public CatalogueFrame
{
};

class CatalogueRecords : public CatalogueFrame
{
};

INSTANTIATE_TEST_SUITE_P(EveryEntry, CatalogueFrame, testing::ValuesIn(cases()), name_of);
INSTANTIATE_TEST_SUITE_P(EveryOpen, CatalogueOpens, testing::ValuesIn(cases(Kind::kOpen)), name_of);
INSTANTIATE_TEST_SUITE_P(EveryCall, CatalogueCalls, testing::ValuesIn(calls_without_record()), name_of);
INSTANTIATE_TEST_SUITE_P(EveryRecord, CatalogueRecords, testing::ValuesIn(calls_with_record()), name_of);

} // namespace

TEST_P(CatalogueFrame, SendsItsRequestAndLogsEnterReturnCodeAndOk)
{
    EXPECT_EQ(good_call(), 0);
    EXPECT_EQ(service.request_body(1).rfind("<ns1:" + GetParam().request + ">", 0), 0u)
        << service.request_body(1);
    const std::vector<LogLine> lines = session.lines();
    const std::vector<LogLine> head = lines_up_to(0);
    ASSERT_GT(lines.size(), head.size());
    EXPECT_THAT(std::vector<LogLine>(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(head.size())),
                ElementsAreArray(head));
    EXPECT_EQ(lines.back(), record(GetParam().name + ": STS_EOK"));
    EXPECT_TRUE(session.ids_were_right());
}

TEST_P(CatalogueFrame, RefusedByTheServiceReturnsItsCodeWritesNothingAndCanBeCalledAgain)
{
    EXPECT_EQ(refused_call(fault(2060013)), 2060013);
    std::vector<LogLine> expected = lines_up_to(1);
    expected.push_back(failure(rendered_fault(2060013)));
    EXPECT_THAT(session.lines(), ElementsAreArray(expected));
    expect_outputs_untouched();
    EXPECT_EQ(good_call(), 0);
}

TEST_P(CatalogueFrame, RefusedWithTheCodeZeroReturnsZeroAndWritesNothing)
{
    EXPECT_EQ(refused_call(fault(0)), 0);
    std::vector<LogLine> expected = lines_up_to(1);
    expected.push_back(failure(rendered_fault(0)));
    EXPECT_THAT(session.lines(), ElementsAreArray(expected));
    expect_outputs_untouched();
}

TEST_P(CatalogueFrame, RefusedWithoutADetailReturns2060021)
{
    EXPECT_EQ(refused_call(fault_with_detail("")), STS_EFAULTDETAIL);
    expect_outputs_untouched();
}

TEST_P(CatalogueFrame, ThatReachesNobodyReturns2060017)
{
    const DeadPort nobody;
    std::string dead_url = nobody.url();
    server.endpoint = dead_url.data();
    EXPECT_EQ(call(), STS_ESOAPERROR);
    EXPECT_EQ(session.lines().front(), record(GetParam().name + ": enter"));
    EXPECT_EQ(session.lines().back().level, STS_LOG_FAILURE);
    expect_outputs_untouched();
}

TEST_P(CatalogueFrame, AnsweredWithSomethingElseReturns2060017)
{
    script("whoKnowsResponse", element("token", "x"));
    EXPECT_EQ(call(), STS_ESOAPERROR);
    expect_outputs_untouched();
}

TEST_P(CatalogueFrame, WithNobodyToListenDoesTheSame)
{
    session->log_callback = nullptr;
    EXPECT_EQ(refused_call(fault(2060013)), 2060013);
    EXPECT_EQ(good_call(), 0);
    EXPECT_THAT(session.lines(), testing::IsEmpty());
}

TEST_P(CatalogueFrame, GoesOverTlsIfTheHandleSaysSo)
{
    std::string tls_url = service.tls_url();
    server.endpoint = tls_url.data();
    server.use_https = true;
    EXPECT_EQ(good_call(), 0);
    ASSERT_EQ(service.requests().size(), 2u);
    EXPECT_TRUE(service.requests()[1].tls);
}

TEST_P(CatalogueOpens, RefusesAReplyWithoutATokenAndStoresNothing)
{
    const std::string& handle = GetParam().content.record;
    const std::pair<std::string, std::string> replies[] = {{"", handle},
                                                           {nil(handle), handle},
                                                           {element(handle), "token"},
                                                           {element(handle, nil("token")), "token"}};
    for (const auto& [content, missing] : replies) {
        session.clear();
        script(GetParam().reply, content);
        EXPECT_EQ(call(), STS_EPLUGIN) << content;
        expect_outputs_untouched();
        std::vector<LogLine> expected = lines_up_to(0);
        expected.push_back(failure(GetParam().name + ": the reply has no " + missing));
        EXPECT_THAT(session.lines(), ElementsAreArray(expected)) << content;
    }
}

TEST_P(CatalogueOpens, KeepsATokenOfAnyLength)
{
    for (const std::size_t length : {0u, 1u, 5000u}) {
        const std::string handle = GetParam().content.record;
        script(GetParam().reply, token_element(handle, long_text(length)));
        ASSERT_EQ(call(), 0);
        EXPECT_EQ(std::string(records->out.list->token), long_text(length));
        end(std::exchange(records->out.list, nullptr));
    }
}

TEST_P(CatalogueRecords, ThatAReplyLacksAreAFailureThatWritesNothing)
{
    const std::string& missing = GetParam().content.record;
    std::vector<LogLine> expected = lines_up_to(0);
    expected.push_back(failure(GetParam().name + ": the reply has no " + missing));
    for (const std::string& content : {std::string(), nil(missing), element("another", element(missing))}) {
        session.clear();
        script(GetParam().reply, content);
        EXPECT_EQ(call(), STS_EPLUGIN) << content;
        EXPECT_THAT(session.lines(), ElementsAreArray(expected)) << content;
        expect_outputs_untouched();
    }
    EXPECT_EQ(good_call(), 0);
}

TEST_P(CatalogueRecords, ThatAReplyLacksAreAFailureForASessionThatHearsNothingToo)
{
    session->log_callback = nullptr;
    script(GetParam().reply);
    EXPECT_EQ(call(), STS_EPLUGIN);
    expect_outputs_untouched();
}

TEST_P(CatalogueRecords, ThatAreThereAndHoldNothingWillDo)
{
    script(GetParam().reply, element(GetParam().content.record));
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(session.lines().back(), record(GetParam().name + ": STS_EOK"));
}

TEST_P(CatalogueCalls, ThatAreAboutNoRecordMakeDoWithAReplyThatHoldsNothing)
{
    script(GetParam().reply);
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(session.lines().back(), record(GetParam().name + ": STS_EOK"));
}
