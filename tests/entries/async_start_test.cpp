#include "tests/entries/async_start_cases.h"

#include <algorithm>
#include <iterator>

using namespace kit;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace
{

class Start : public testing::TestWithParam<StartCase>
{
  protected:
    Start() { connect(arguments_); }
    ~Start() override { release(); }

    void connect(StartArguments& arguments)
    {
        arguments.server_record.endpoint = url_.data();
        arguments.server_record.session = session_.get();
        arguments.async = &async_;
    }

    int start() { return GetParam().call(arguments_); }

    // Every handle that was made, at the end of a test or ahead of the next start.
    void release()
    {
        if (async_ != untouched()) const AsyncHandle owner(async_);
        async_ = untouched();
    }

    static stsp_async_t* untouched()
    {
        static int somewhere;
        return reinterpret_cast<stsp_async_t*>(&somewhere);
    }

    ScriptedService service_;
    RecordedSession session_;
    std::string url_ = service_.url();
    StartArguments arguments_;
    stsp_async_t* async_ = untouched();
};

class StartWithId : public Start
{
};

class StartWithoutATestOfOut : public Start
{
};

std::vector<StartCase> cases_where(bool (*holds)(const StartCase&))
{
    std::vector<StartCase> cases;
    std::copy_if(start_cases().begin(), start_cases().end(), std::back_inserter(cases), holds);
    return cases;
}

bool has_id(const StartCase& start)
{
    return !start.named;
}

bool tests_no_out(const StartCase& start)
{
    return has_id(start) && std::none_of(start.checks.begin(), start.checks.end(),
                                         [](const Check& c) { return c.what == std::string("out"); });
}

std::string entry_of(const testing::TestParamInfo<StartCase>& info)
{
    return info.param.entry;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Entries, Start, testing::ValuesIn(start_cases()), entry_of);
INSTANTIATE_TEST_SUITE_P(Entries, StartWithId, testing::ValuesIn(cases_where(has_id)), entry_of);
INSTANTIATE_TEST_SUITE_P(Entries, StartWithoutATestOfOut, testing::ValuesIn(cases_where(tests_no_out)),
                         entry_of);

TEST_P(Start, SendsItsMembersInWireOrder)
{
    service_.script(GetParam().good_answer());
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(service_.request_body(0), GetParam().request());
    EXPECT_EQ(service_.connections(), 1U);
}

TEST_P(Start, LogsItsThreeLinesAsTheyAreSpelt)
{
    service_.script(GetParam().good_answer());
    EXPECT_EQ(start(), 0);
    std::vector<LogLine> expected = GetParam().lines_until_return_code(0);
    expected.push_back(record(GetParam().ok_name + ": STS_EOK"));
    EXPECT_THAT(session_.lines(), ElementsAreArray(expected));
    EXPECT_TRUE(session_.ids_were_right());
}

TEST_P(Start, HandsOutARecordOfTheOperationOnlyWhereTheServiceNamesIt)
{
    service_.script(GetParam().good_answer());
    EXPECT_EQ(start(), 0);
    if (GetParam().named) {
        EXPECT_EQ(async_, untouched());
        return;
    }
    ASSERT_NE(async_, untouched());
    EXPECT_EQ(async_->server, &arguments_.server_record);
    EXPECT_STREQ(async_->op_token, "op-7");
    EXPECT_EQ(async_->pendingflag, GetParam().pendingflag);
}

TEST_P(Start, TestsItsArgumentsInItsOwnOrderAndSendsNothingThen)
{
    const std::vector<Check>& checks = GetParam().checks;
    for (std::size_t first = 0; first < checks.size(); ++first) {
        SCOPED_TRACE(checks[first].what);
        // Whatever is tested behind the first bad argument may be bad as well.
        for (const std::size_t last : {first, checks.size() - 1}) {
            StartArguments arguments;
            connect(arguments);
            for (std::size_t i = first; i <= last; ++i) checks[i].breaks(arguments);
            session_.clear();
            EXPECT_EQ(GetParam().call(arguments), checks[first].status);
            if (checks[first].entered) {
                EXPECT_THAT(session_.lines(), ElementsAre(record(GetParam().enter_name + ": enter")));
            } else {
                EXPECT_THAT(session_.lines(), IsEmpty());
            }
        }
    }
    EXPECT_EQ(service_.connections(), 0U);
    EXPECT_EQ(async_, untouched());
}

TEST_P(Start, ReturnsTheStatusOfAFaultAndHandsOutNothing)
{
    service_.script(fault_answer(fault(2060013)));
    EXPECT_EQ(start(), 2060013);
    EXPECT_EQ(async_, untouched());
    std::vector<LogLine> expected = GetParam().lines_until_return_code(1);
    expected.push_back(failure(rendered_fault(2060013)));
    EXPECT_THAT(session_.lines(), ElementsAreArray(expected));
}

TEST_P(Start, ReturnsTheStatus0OfAFaultWithoutTheLineOfASuccess)
{
    service_.script(fault_answer(fault(0)));
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(async_, untouched());
    EXPECT_EQ(session_.lines().back(), failure(rendered_fault(0)));
}

TEST_P(Start, ReportsAFaultWithoutADetail)
{
    service_.script(fault_answer(fault_with_detail("")));
    EXPECT_EQ(start(), 2060021);
    EXPECT_EQ(async_, untouched());
}

TEST_P(Start, ReportsALostConnection)
{
    service_.script({Answer::Manner::kReset, ""});
    EXPECT_EQ(start(), 2060017);
    EXPECT_EQ(async_, untouched());
    EXPECT_EQ(session_.lines().size(), 3U);
    EXPECT_EQ(session_.lines().back().level, STS_LOG_FAILURE);
}

TEST_P(Start, CanBeRepeatedAfterAFailure)
{
    service_.script({fault_answer(fault(2060013)), GetParam().good_answer()});
    EXPECT_EQ(start(), 2060013);
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(service_.request_body(1), GetParam().request());
}

TEST_P(Start, DoesTheSameForASessionThatHearsNothing)
{
    session_->log_callback = nullptr;
    service_.script({GetParam().good_answer(), fault_answer(fault(77))});
    EXPECT_EQ(start(), 0);
    release();
    EXPECT_EQ(start(), 77);
    EXPECT_EQ(async_, untouched());
}

TEST_P(StartWithId, CannotUseAReplyWithoutAnId)
{
    const std::string name = GetParam().operation + "Response";
    const std::pair<std::string, const char*> replies[] = {{"", "opid"},
                                                           {nil("opid"), "opid"},
                                                           {element("opid"), "token"},
                                                           {element("opid", nil("token")), "token"}};
    for (const auto& [content, missing] : replies) {
        SCOPED_TRACE(content);
        session_.clear();
        service_.script(answer(reply(name, content)));
        EXPECT_EQ(start(), 2060046);
        EXPECT_EQ(async_, untouched());
        std::vector<LogLine> expected = GetParam().lines_until_return_code(0);
        expected.push_back(failure(GetParam().entry + ": the reply has no " + missing));
        EXPECT_THAT(session_.lines(), ElementsAreArray(expected));
    }
}

TEST_P(StartWithId, KeepsAnIdThatIsEmptyOrLong)
{
    for (const std::string& token : {std::string(), std::string(5000, 't')}) {
        service_.script(answer(reply(GetParam().operation + "Response", token_element("opid", token))));
        EXPECT_EQ(start(), 0);
        ASSERT_NE(async_, untouched());
        EXPECT_EQ(async_->op_token, token);
        release();
    }
}

TEST_P(StartWithoutATestOfOut, GoesOnWithoutAPlaceForTheHandleAndSaysSo)
{
    arguments_.async = nullptr;
    service_.script(GetParam().good_answer());
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(service_.request_body(0), GetParam().request());
    std::vector<LogLine> expected = GetParam().lines_until_return_code(0);
    expected.push_back(anomaly(GetParam().entry + ": no place for the handle"));
    expected.push_back(record(GetParam().ok_name + ": STS_EOK"));
    EXPECT_THAT(session_.lines(), ElementsAreArray(expected));
}

TEST_P(StartWithoutATestOfOut, RefusesAReplyWithoutAnIdThoughThereIsNoPlaceForTheHandle)
{
    arguments_.async = nullptr;
    service_.script(answer(reply(GetParam().operation + "Response")));
    EXPECT_EQ(start(), 2060046);
}

TEST_P(Start, EncryptsForAnHttpsHandle)
{
    url_ = service_.tls_url();
    arguments_.server_record.endpoint = url_.data();
    arguments_.server_record.use_https = true;
    service_.script(GetParam().good_answer());
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(service_.requests().at(0).tls);
}
