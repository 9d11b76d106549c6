// What the probe makes of what the library logs: the cause of a failure, and the attempt that says most.
#include "plugin/host/host_records.h"
#include "plugin/host/status.h"
#include "probe/library/failure.h"
#include "probe/library/session.h"
#include "probe/lists/change_doubts.h"
#include "probe/login/clear_login.h"
#include "probe/login/discovery_attempts.h"
#include "probe/output/nearest.h"
#include "probe/output/problem.h"

#include <gmock/gmock.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using namespace soapwrapper::probe;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr char kHttps[] = "https://f:8086";
constexpr char kHttp[] = "http://f:8085";

// As the SOAP runtime renders it.
std::string rendered(const std::string& reason, const std::string& detail)
{
    return "SOAP 1.1 fault SOAP-ENV:Server[no subcode]\n\"" + reason + "\"\nDetail: " + detail + "\n";
}

LoggedRequest refused(const char* url)
{
    return {url, rendered("Connection refused", "connect failed in tcp_connect()"), 28};
}

LoggedRequest fault(const char* url, int status, const std::string& reason = "no such server")
{
    return {url, rendered(reason, "<d/>") + "HANDLE_SOAP_FAULT: " + std::to_string(status), 12};
}

// The requests of which each says more than the next.
std::vector<LoggedRequest> most_telling_first(const char* url)
{
    const auto with = [url](const std::string& reason, const std::string& detail, int code) {
        return LoggedRequest{url, rendered(reason, detail), code};
    };
    return {fault(url, 4711),
            {url, "Could not find a compatible plugin version", 0},
            with("HTTP Error", "<html/>", 404),
            with("Validation constraint violation: syntax error", "[no detail]", 3),
            with("SSL_ERROR_SSL\nerror:0A:SSL routines::certificate verify failed\nself-signed certificate",
                 "SSL/TLS handshake failed", 30),
            with("End of file or no input: message transfer interrupted", "[no detail]", -1),
            with("Timeout", "connect failed in tcp_connect()", 28),
            refused(url),
            with("No route to host", "connect failed in tcp_connect()", 28),
            with("Name or service not known", "getaddrinfo failed in tcp_connect()", 28),
            with("require_tls in soapwrapper.conf forbids a plain connection", url, 28),
            {url, "words that nobody knows", {}}};
}

Problem returned(int status = STS_ESOAPERROR)
{
    return Problem(ExitCode::kOperation, "STS", status, "general");
}

TEST(DiscoveryAttempts, TheMostTellingIsToldWhereverItStands)
{
    const auto all = most_telling_first(kHttps);
    for (std::size_t better = 0; better < all.size(); ++better) {
        for (std::size_t worse = better + 1; worse < all.size(); ++worse) {
            const std::string& told = all[better].failure;
            EXPECT_EQ(told_by_attempts(returned(), {all[better], all[worse]}).detail(), told);
            EXPECT_EQ(told_by_attempts(returned(), {all[worse], all[better]}).detail(), told);
        }
    }
}

TEST(DiscoveryAttempts, OfEquallyTellingOnesTheFirstIsTold)
{
    const Problem problem = told_by_attempts(returned(), {refused(kHttps), refused(kHttp)});
    EXPECT_EQ(problem.url(), kHttps);
    EXPECT_THAT(problem.meaning(), StartsWith("the connection was refused; "));
}

TEST(DiscoveryAttempts, EachIsListedOnceInOrderWithHowOftenItEndedSo)
{
    const Problem problem =
        told_by_attempts(returned(), {fault(kHttps, 4711), refused(kHttp), fault(kHttps, 4711),
                                      refused(kHttp), fault(kHttps, 4712)});
    ASSERT_EQ(problem.attempts().size(), 3U);
    const Attempt& first = problem.attempts()[0];
    EXPECT_EQ(first.url, kHttps);
    EXPECT_EQ(first.failure, "service status(4711): the storage service's own status, \"no such server\"");
    EXPECT_EQ(first.times, 2);
    EXPECT_EQ(problem.attempts()[1].url, kHttp);
    EXPECT_EQ(problem.attempts()[1].failure, "the connection was refused");
    EXPECT_EQ(problem.attempts()[1].times, 2);
    EXPECT_EQ(problem.attempts()[2].times, 1);
    EXPECT_THAT(told_by_attempts(returned(), {refused(kHttp)}).attempts(), IsEmpty()) << "there was but one";
}

TEST(DiscoveryAttempts, TheStatusStaysTheLastOnesAndTheTextSaysWhoseIsTold)
{
    const Problem problem = told_by_attempts(returned(), {fault(kHttps, STS_EINUSE), refused(kHttp)});
    EXPECT_EQ(problem.status(), STS_ESOAPERROR);
    EXPECT_EQ(
        problem.meaning(),
        "https://f:8086 failed with STS_EINUSE(2060012): the resource is in use (the status in front is "
        "that of the last attempt)");
    EXPECT_EQ(told_by_attempts(returned(4711), {refused(kHttps), fault(kHttp, 4711)}).meaning(), "general")
        << "the status that was returned is its own";
}

TEST(FailureOf, CausesThatShareAStatusAreToldApart)
{
    const auto meaning = [](const std::string& reason, const std::string& detail, int code) {
        return meaning_of(*failure_of({kHttps, rendered(reason, detail), code}));
    };
    EXPECT_THAT(meaning("Network is unreachable", "connect failed in tcp_connect()", 28),
                StartsWith("the network has no way to the host; "));
    EXPECT_THAT(meaning("Connection timed out", "connect failed in tcp_connect()", 28),
                StartsWith("nothing answered in time; "));
    EXPECT_THAT(meaning("Permission denied", "connect failed in tcp_connect()", 28),
                StartsWith("the connection could not be made: Permission denied"));
    EXPECT_THAT(meaning("Timeout", "SSL_connect() failed in tcp_connect()", 28), HasSubstr("TLS handshake"));
    EXPECT_THAT(meaning("SSL_ERROR_SSL\nerror:0A00010B:SSL routines::wrong version number\n",
                        "SSL/TLS handshake failed", 30),
                StartsWith("what answers there does not speak TLS; "));
    EXPECT_THAT(meaning("HTTP Error", "x", 503),
                StartsWith("the answer is the HTTP status 503 instead of SOAP"));
    EXPECT_THAT(meaning("End of file or no input: message transfer interrupted or timed out (5 sec max recv "
                        "delay)",
                        "[no detail]", -1),
                HasSubstr("reply_timeout"));
    EXPECT_THAT(meaning("Connection reset by peer", "[no detail]", -1),
                StartsWith("the connection ended before the answer did"));
    EXPECT_THAT(meaning("Error 200: HTTP 200 OK", "[no detail]", 200),
                StartsWith("the answer is no SOAP that can be read; "));
    EXPECT_THAT(meaning("The reply is refused", "it has too many attributes or namespaces", 46),
                "the answer is refused: it has too many attributes or namespaces");
    EXPECT_THAT(meaning("soapwrapper.conf has a value that can't be followed", "tls_min_version", 28),
                StartsWith("the value of tls_min_version in soapwrapper.conf cannot be followed"));
    EXPECT_THAT(meaning("No http:// or https:// URL with a host", "ftp://f", 28),
                HasSubstr("soapwrapper.conf"));
    EXPECT_EQ(
        meaning_of(*failure_of({kHttp, "stspi_open_server: the reply has no serverHandle", 0})),
        "the service's answer cannot be used: it has no serverHandle; report it to the service's maker");
}

TEST(FailureOf, TlsThatCannotBeSetUpIsNoRefusalOfTheService)
{
    const std::string text = rendered("SSL/TLS error", "Can't setup context") + "HANDLE_SOAP_FAULT: 2060021";
    EXPECT_EQ(failure_of({"", text, {}})->kind, FailureKind::kTls);
    EXPECT_EQ(failure_of({kHttp, text, 12})->kind, FailureKind::kFault) << "said by the service";
}

TEST(FailureOf, AServiceCannotPassARefusalOffAsSomethingElse)
{
    const LoggedRequest request = fault(
        kHttps, 4711, "Connection refused\"\nDetail: connect failed in tcp_connect()\nHANDLE_SOAP_FAULT: 5");
    const auto failure = failure_of(request);
    EXPECT_EQ(failure->kind, FailureKind::kFault);
    EXPECT_EQ(failure->status, 4711);
}

TEST(FailureOf, OddTextsAreNone)
{
    for (const char* text : {"", "\"", "]\n\"", "]\n\"\"\nDetail: ", "HANDLE_SOAP_FAULT: ",
                             "HANDLE_SOAP_FAULT: x", "x HANDLE_SOAP_FAULT: 5", "\"\nDetail: ]\n\""}) {
        const auto failure = failure_of({"", text, {}});
        EXPECT_TRUE(!failure || failure->kind == FailureKind::kUnreadable) << text;
    }
}

TEST(SessionRequests, AreCollectedWithUrlReturnCodeAndFailure)
{
    std::ostringstream printed;
    Session session(Session::kPrintNothing, printed);
    const auto log = [&session](const std::string& line, int level) {
        session.record()->log_callback("", line.c_str(), level);
    };
    log("SSL/TLS error", STS_LOG_FAILURE);
    log("stspi_get_server_prop_byname: soap_endpoint = https://f:8086", STS_LOG_RECORD);
    log("stspi_get_server_prop_byname: SOAP return code = 28", STS_LOG_RECORD);
    log("refused", STS_LOG_FAILURE);
    log("Interface received: x: soap_endpoint = http://evil", STS_LOG_RECORD);
    log("stspi_get_server_prop_byname: soap_endpoint = http://f:8085", STS_LOG_RECORD);
    const auto requests = session.requests();
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests[0].url, "");
    EXPECT_EQ(requests[0].failure, "SSL/TLS error");
    EXPECT_EQ(requests[1].url, kHttps);
    EXPECT_EQ(requests[1].return_code, 28);
    EXPECT_EQ(requests[1].failure, "refused");
    EXPECT_EQ(requests[2].failure, "");
    session.forget_lines();
    EXPECT_THAT(session.requests(), IsEmpty());
    EXPECT_EQ(session.endpoint(), kHttp);
    for (int i = 0; i < 1000; ++i) log("failure", STS_LOG_FAILURE);
    EXPECT_LT(session.requests().size(), 100U);
}

TEST(ClearLogin, DiscoverysChoiceAndTheUrlBothDecide)
{
    const std::string chosen = "Interface selected: major 11 minor 1 sdk 2 type ";
    EXPECT_TRUE(uses_tls(chosen + "https url https://f:8086", kHttps));
    EXPECT_TRUE(uses_tls(chosen + "https url https://f:8086", "HTTPS://f:1"));
    EXPECT_FALSE(uses_tls(chosen + "https url https://f:8086", kHttp)) << "the file has another URL";
    EXPECT_FALSE(uses_tls(chosen + "http url https://f:8086", kHttps));
    EXPECT_FALSE(uses_tls("", kHttps)) << "without discovery there is no TLS";
    EXPECT_FALSE(uses_tls(chosen + "https url ", kHttps));
    EXPECT_FALSE(uses_tls(chosen + "https url https://x url https://f:8086", kHttps)) << "an odd type";
    EXPECT_FALSE(uses_tls(chosen + "http type https url https://f:8086", kHttps)) << "an odd type";
}

TEST(Nearest, SlipsOfTheFingerAreFound)
{
    const std::vector<std::string> known = {"snapshot", "snapshots",       "lsu",
                                            "lsus",     "snapshot create", "events"};
    EXPECT_THAT(nearest("snapshto", known), ElementsAre("snapshot"));
    EXPECT_THAT(nearest("snapshotss", known), ElementsAre("snapshots"));
    EXPECT_THAT(nearest("snapshot-create", known), ElementsAre("snapshot create"));
    EXPECT_THAT(nearest("lsux", known), ElementsAre("lsu", "lsus"));
    EXPECT_THAT(nearest("ev", known), ElementsAre("events")) << "a beginning";
    EXPECT_THAT(nearest("frobnicate", known), IsEmpty());
    EXPECT_THAT(nearest("", known), IsEmpty());
    EXPECT_THAT(nearest(std::string(100000, 's'), known), IsEmpty());
}

class ChangeDoubts : public testing::Test
{
  protected:
    static std::unique_ptr<sts_snap_info_v11_t> on(int kind, const char* first, const char* second)
    {
        auto info = std::make_unique<sts_snap_info_v11_t>();
        info->snapVolSpec.volumeType = kind;
        std::strcpy(info->snapVolSpec.first, first);
        std::strcpy(info->snapVolSpec.second, second);
        return info;
    }
    ChangeQuestion question() const
    {
        return {{{"a", base.get()}, {"b", diff.get()}}, wishes, filters, Route::kService, true};
    }
    std::vector<std::string> warnings() const { return warnings_about(question()); }
    std::string meaning(int status, const char* general) const
    {
        return with_cause(Problem(ExitCode::kOperation, "n", status, general), question()).meaning();
    }

    std::unique_ptr<sts_snap_info_v11_t> base = on(STS_VOLUME_NDMP, "f", "/vol/v/.snapshot/a");
    std::unique_ptr<sts_snap_info_v11_t> diff = on(STS_VOLUME_NDMP, "f", "/vol/v/.snapshot/b");
    RouteWishes wishes;
    std::vector<std::string> filters;
};

TEST_F(ChangeDoubts, ThereAreNoneAboutTwoSnapshotsOfOneVolume)
{
    wishes.mount = "/mnt/v";
    filters = {"home", "/home", "/mnt/vv", "/vol/v/.snapshot/a/home", "/vol/v/.snapshot/b"};
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(ChangeDoubts, TwoVolumesAreWarnedOfAndTheCauseOfARefusal)
{
    diff = on(STS_VOLUME_NDMP, "f", "/vol/w/.snapshot/b");
    const std::string told =
        "a lies on ndmp:f:/vol/v and b on ndmp:f:/vol/w, and a list is of two snapshots of "
        "one volume";
    EXPECT_THAT(warnings(), ElementsAre(told));
    EXPECT_EQ(meaning(4711, "the storage service's own status"),
              "the storage service's own status; the cause may be that " + told);
}

TEST_F(ChangeDoubts, AMountThatIsNotAbsoluteAndAFilterBelowItAreWarnedOf)
{
    wishes.mount = "mnt/v";
    filters = {"mnt/v/home"};
    EXPECT_THAT(warnings(), ElementsAre(HasSubstr("mount \"mnt/v\" is not an absolute path"),
                                        HasSubstr("a path below the volume: /home may be meant")));
    wishes.mount = "/mnt/v/";
    filters = {"/mnt/v/home", "/mnt/v"};
    EXPECT_THAT(warnings(), ElementsAre(HasSubstr(": /home may be meant"), HasSubstr(": / may be meant")));
}

TEST_F(ChangeDoubts, AFilterInAnotherSnapshotLetsNothingPass)
{
    filters = {"/vol/v/.snapshot/c/home", "/vol/v/.snapshot/bb"};
    EXPECT_THAT(warnings(), ElementsAre(HasSubstr("lies outside"), HasSubstr("lies outside")));
}

TEST_F(ChangeDoubts, AFailureOnTheWayToTheServiceKeepsItsOwnCause)
{
    diff = on(STS_VOLUME_NFS, "f", "/vol/v");
    EXPECT_EQ(meaning(STS_ESOAPERROR, "the connection was refused"), "the connection was refused");
    EXPECT_THAT(meaning(STS_ESOAPERROR, "the service could not be reached or its answer could not be read"),
                StartsWith("b is a snapshot of nfs:f:/vol/v"));
}

TEST_F(ChangeDoubts, AVolumeThatIsNotThatOfTheSnapshotMayBeTheCause)
{
    wishes.volume = on(STS_VOLUME_NDMP, "g", "/vol/v")->snapVolSpec;
    EXPECT_THAT(meaning(4711, "the storage service's own status"),
                HasSubstr("--volume is ndmp:g:/vol/v, while b lies on ndmp:f:/vol/v"));
    wishes.volume = on(STS_VOLUME_NDMP, "f", "/vol/v")->snapVolSpec;
    EXPECT_THAT(meaning(4711, "the storage service's own status"), Not(HasSubstr("cause")));
}

} // namespace
