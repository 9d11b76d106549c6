// Each entry against each fault of the wire: the status is right, nothing is left open, and the handle serves
// the next call as if nothing had happened.
#include "plugin/host/slots.h"
#include "tests/entries/standard_descriptors.h"
#include "tests/torture/faults.h"
#include "tests/torture/subject.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <future>
#include <ostream>
#include <set>

using namespace kit;
using namespace torture;

namespace
{

std::size_t descriptors()
{
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
}

struct Case {
    Entry entry;
    bool tls;
};

std::vector<Case> plain_cases()
{
    std::vector<Case> all;
    for (const auto& some : {server_entries(), catalogue_entries(), start_entries(), follow_entries(),
                             event_entries(), change_list_entries()}) {
        for (const Entry& entry : some) all.push_back({entry, false});
    }
    return all;
}

// The frame is the same for all entries, so those of the servers stand for the others over TLS.
std::vector<Case> tls_cases()
{
    std::vector<Case> all;
    for (const Entry& entry : server_entries()) all.push_back({entry, true});
    return all;
}

void PrintTo(const Case& test, std::ostream* out)
{
    *out << test.entry.name;
}

class Torture : public testing::TestWithParam<Case>
{
  protected:
    Torture() { Host::instance(); } // what it opens, it has now

    static const Entry& entry() { return GetParam().entry; }
    static bool tls() { return GetParam().tls; }
    static std::string url_of(const ScriptedService& service)
    {
        return tls() ? service.tls_url() : service.url();
    }

    static void expect_end(const Fault& fault, int status)
    {
        if (fault.end == End::kSucceeds) {
            EXPECT_EQ(status, 0);
        } else if (fault.end == End::kFails) {
            EXPECT_EQ(status, entry().status_without_answer);
        } else if (fault.end == End::kIsUseless) {
            EXPECT_EQ(status, STS_EPLUGIN);
        }
    }

    static void expect_a_failure_in_the_log(const Subject& subject)
    {
        const std::vector<LogLine> lines = subject.session.lines();
        EXPECT_TRUE(std::any_of(lines.begin(), lines.end(),
                                [](const LogLine& line) { return line.level == STS_LOG_FAILURE; }));
    }

    // One connection a request: nothing is tried again, and no redirection is followed.
    static void expect_no_other_connection(const ScriptedService& service, std::size_t before, bool answered)
    {
        EXPECT_EQ(service.connections(), before + entry().conversation({}, answered).size());
    }

    static void script_well(ScriptedService& service)
    {
        service.forget_answers();
        service.script(entry().conversation(answer(entry().good_reply), true));
    }

    static void suffer(const Fault& fault)
    {
        SCOPED_TRACE(fault.name);
        ScriptedService service;
        Subject subject(url_of(service), tls());
        const std::size_t connections = service.connections();
        const bool is_answered = fault.end == End::kSucceeds || fault.end == End::kIsUseless;
        service.script(entry().conversation(fault.answer, is_answered));
        subject.session.clear();
        const int status = entry().call(subject);
        expect_end(fault, status);
        if (status == entry().status_without_answer || fault.end == End::kIsUseless) {
            expect_a_failure_in_the_log(subject);
        }
        expect_no_other_connection(service, connections, status != entry().status_without_answer);
        script_well(service);
        EXPECT_EQ(entry().call(subject), 0) << "the handle is of no more use";
    }

    static void suffer_all(const std::vector<Fault>& faults)
    {
        for (const Fault& fault : faults) {
            suffer(fault); // the first call of all may leave something open for all others
            if (&fault == &faults.front()) descriptors_before_ = descriptors();
            EXPECT_EQ(descriptors(), descriptors_before_) << fault.name;
        }
    }

    static std::size_t descriptors_before_;
};

std::size_t Torture::descriptors_before_ = 0;

class TortureOverTls : public Torture
{
};

std::string name_of(const testing::TestParamInfo<Case>& info)
{
    return info.param.entry.name;
}

} // namespace

TEST_P(Torture, ByTheTransport)
{
    suffer_all(transport_faults(entry().good_reply));
}

TEST_P(Torture, ByTheHeader)
{
    suffer_all(header_faults(entry().good_reply));
}

TEST_P(Torture, ByTheBody)
{
    suffer_all(body_faults(entry().good_reply));
}

TEST_P(Torture, ByHttp)
{
    suffer_all(http_errors(entry().good_reply));
}

TEST_P(Torture, ByAReplyWithoutWhatItIsAbout)
{
    suffer_all(gaps(entry().good_reply, entry().required));
}

TEST_P(Torture, ByAServiceThatIsntThere)
{
    const DeadPort port;
    const std::string port_text = std::to_string(port.port());
    Subject subject((tls() ? "https://127.0.0.1:" : "http://127.0.0.1:") + port_text, tls());
    const std::size_t before = descriptors();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(entry().call(subject), entry().status_without_answer);
    EXPECT_EQ(descriptors(), before);
}

TEST_P(Torture, ByRepliesThatCostMoreThanTheyWeigh)
{
    suffer_all(costly_replies(entry().good_reply));
}

TEST_P(Torture, ByAnEndpointWithoutAHost)
{
    const std::string scheme = tls() ? "https:" : "http:";
    for (const std::string& url : {scheme + "//", scheme + "//:8086", std::string("/x"), std::string()}) {
        SCOPED_TRACE(url);
        Subject subject(url, tls());
        int status = 0;
        int left = 0;
        bool raised = false;
        {
            const StandardDescriptors descriptors("believe me");
            status = entry().call(subject);
            left = descriptors.left_in_input();
            raised = StandardDescriptors::raised_sigpipe();
        }
        EXPECT_EQ(status, entry().status_without_answer);
        EXPECT_EQ(left, 10);
        EXPECT_FALSE(raised);
        expect_a_failure_in_the_log(subject);
    }
}

TEST_P(Torture, ByAServiceThatTakesItsTime)
{
    ScriptedService service;
    Subject subject(url_of(service), tls());
    service.script(entry().conversation({Answer::Manner::kHold, http_message(entry().good_reply)}, true));
    std::future<int> status = std::async(std::launch::async, [&] { return entry().call(subject); });
    service.wait_for_requests(entry().ahead.size() + 1);
    service.release();
    EXPECT_EQ(status.get(), 0);
}

TEST_P(TortureOverTls, ByAServiceThatSpeaksNoTls)
{
    suffer_all({{"no TLS", End::kFails, {Answer::Manner::kRefuseHandshake, ""}},
                {"no TLS again", End::kFails, {Answer::Manner::kRefuseHandshake, ""}}});
}

TEST_P(Torture, ByAnEndAtAnyByte)
{
    const std::string whole = http_message(entry().good_reply);
    constexpr std::size_t kCallsPerService = 100;
    std::size_t before = 0;
    for (std::size_t length = 0; length < whole.size();) {
        if (length == kCallsPerService) before = descriptors();
        ScriptedService service;
        Subject subject(url_of(service), tls());
        for (std::size_t i = 0; i < kCallsPerService && length < whole.size(); ++i, ++length) {
            service.script(entry().conversation({Answer::Manner::kReply, whole.substr(0, length)}, false));
            EXPECT_EQ(entry().call(subject), entry().status_without_answer) << "after " << length << " bytes";
        }
        script_well(service);
        EXPECT_EQ(entry().call(subject), 0);
    }
    EXPECT_EQ(descriptors(), before);
}

INSTANTIATE_TEST_SUITE_P(Plain, Torture, testing::ValuesIn(plain_cases()), name_of);
INSTANTIATE_TEST_SUITE_P(Tls, Torture, testing::ValuesIn(tls_cases()), name_of);
INSTANTIATE_TEST_SUITE_P(Tls, TortureOverTls, testing::ValuesIn(tls_cases()), name_of);

// An entry that is added to a table without a row here would be tried by no fault at all.
TEST(TortureCases, AreThereForEveryEntryThatCallsTheService)
{
    std::set<std::string> tortured;
    for (const Case& test : plain_cases()) tortured.insert(test.entry.name);
    const std::set<std::string> without_a_call = {"stspi_claim", "stspi_terminate"};
#define SOAPWRAPPER_EXPECT(slot, entry)                                                                      \
    EXPECT_EQ(tortured.count(#entry) + without_a_call.count(#entry), 1U) << "slot " #slot ", " #entry;
    STSPI_V10_ENTRIES(SOAPWRAPPER_EXPECT)
    STSPI_V11_ENTRIES(SOAPWRAPPER_EXPECT)
    STSPI3_V11_ENTRIES(SOAPWRAPPER_EXPECT)
#undef SOAPWRAPPER_EXPECT
}
