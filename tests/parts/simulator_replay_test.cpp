// Which recorded exchange answers a request, and how.
#include "messages/recording.h"
#include "simulator/front/http.h"
#include "simulator/replay/interface_rows.h"
#include "simulator/replay/recorded_answers.h"
#include "simulator/replay/replay.h"
#include "simulator/replay/request_key.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstddef>
#include <limits>
#include <string>
#include <thread>

namespace
{

using namespace soapwrapper::messages;
using namespace soapwrapper::simulator;
using testing::HasSubstr;
using testing::StartsWith;

std::string envelope(const std::string& body)
{
    return "<?xml version=\"1.0\"?>\n<e:Envelope xmlns:e=\"e\"><e:Body>" + body + "</e:Body></e:Envelope>";
}

std::string text_of(const std::string& body)
{
    return request_key(envelope(body)).text;
}

TEST(ReplayedRequest, IsKnownByItsOperationAndItsBody)
{
    EXPECT_EQ(request_key(envelope("<n:listLSU><n:a>1</n:a></n:listLSU>")).operation, "listLSU");
    EXPECT_NE(text_of("<n:f><n:lsuName>a</n:lsuName></n:f>"), text_of("<n:f><n:lsuName>b</n:lsuName></n:f>"));
    EXPECT_NE(text_of("<n:f><n:a/></n:f>"), text_of("<n:f><n:a xsi:nil=\"true\"/></n:f>"));
    EXPECT_NE(text_of("<n:f/>"), text_of("<n:g/>"));
}

TEST(ReplayedRequest, IsTheSameWhoeverAsksUnderWhateverHostAndPrefix)
{
    const std::string recorded =
        "<n:f><n:sd><n:id>probe</n:id></n:sd><n:server>Network_A:filer1</n:server><n:cred><n:len>9</n:len>"
        "<n:cert>***</n:cert></n:cred><n:token>[token 12]</n:token><n:id>[token 3]</n:id>"
        "<n:args>host ***;/vol</n:args></n:f>";
    const std::string now =
        "<m:f x='y'>\n <m:sd><m:id>host</m:id></m:sd><m:server>Network_A:127.0.0.1</m:server>"
        "<m:cred><m:len>4</m:len><m:cert>c2VjcmV0</m:cert></m:cred><m:token>[token 12]</m:token>"
        "<m:id>0123456789abcdef0123456789abcdef</m:id><m:args>host user password;/vol</m:args></m:f>";
    EXPECT_EQ(text_of(recorded), text_of(now));
    EXPECT_NE(text_of("<n:f>Network_A:h</n:f>"), text_of("<n:f>Network_B:h</n:f>"));
}

TEST(ReplayedRequest, MayBeAnyBytes)
{
    for (const std::string& body :
         {std::string(), std::string("x"), std::string("<"), std::string("<<<>>>"), std::string("<e:Body>"),
          std::string("<e:Body><"), std::string("<e:Body></a></a><\x01>"), std::string("<Body><\xFF\x01/>"),
          std::string("\0<Body><a/>", 11), std::string(100000, '<')}) {
        EXPECT_EQ(request_key(body).operation, "-") << body.substr(0, 20);
    }
    std::string deep = "<Body>";
    for (int i = 0; i < 100000; ++i) deep += "<cred>";
    EXPECT_EQ(request_key(deep).operation, "cred");
    EXPECT_EQ(request_key(envelope("<" + std::string(65, 'a') + "/>")).operation, "-");
}

class AnswersToRequests : public testing::Test
{
  protected:
    AnswersToRequests()
    {
        answers_.add(0, {"open", "open a"});
        answers_.add(1, {"list", "list 1"});
        answers_.add(2, {"list", "list 1"});
        answers_.add(3, {"open", "open b"});
    }

    std::string choose(const std::string& operation, const std::string& text)
    {
        const auto choice = answers_.choose({operation, text});
        if (!choice) return "none";
        const char* const fits[] = {"same", "again", "similar"};
        return std::to_string(choice->index) + " " + fits[static_cast<int>(choice->fit)];
    }

    RecordedAnswers answers_;
};

TEST_F(AnswersToRequests, EqualRequestsGetTheirAnswersInTheirOrderAndThenTheLastAgain)
{
    EXPECT_EQ(choose("list", "list 1"), "1 same");
    EXPECT_EQ(choose("list", "list 1"), "2 same");
    EXPECT_EQ(choose("list", "list 1"), "2 again");
    EXPECT_EQ(choose("open", "open b"), "3 same");
}

TEST_F(AnswersToRequests, ARequestThatWasNeverMadeTakesTheNextAnswerOfItsOperation)
{
    EXPECT_EQ(choose("open", "open a"), "0 same");
    EXPECT_EQ(choose("open", "open c"), "3 similar");
    EXPECT_EQ(choose("open", "open c"), "none");
    EXPECT_EQ(choose("open", "open b"), "3 again");
    EXPECT_EQ(choose("close", "close"), "none");
}

TEST(ReplayedInterfaces, LeadToTheReplay)
{
    const std::string reply = "<i>11;1;2;https;https://Filer1:8086</i><i>11;1;2;http;http://filer1/x/y</i>"
                              "<i> 11;1;2;https;https://filer2:8086 </i><i>filer1</i>";
    EXPECT_EQ(with_own_interfaces(reply, {"filer1"}, {"http://h:1", "https://h:2"}),
              "<i>11;1;2;https;https://h:2</i><i>11;1;2;http;http://h:1/x/y</i>"
              "<i> 11;1;2;https;https://filer2:8086 </i><i>filer1</i>");
    EXPECT_THAT(with_own_interfaces(reply, {"filer1"}, {"http://h:1", ""}),
                StartsWith("<i>11;1;2;http;http://h:1</i><i>11;1;2;http;http://h:1/x/y</i>"));
    EXPECT_THAT(with_own_interfaces(reply, {"filer1"}, {"", "https://h:2"}),
                StartsWith("<i>11;1;2;https;https://h:2</i><i>11;1;2;https;https://h:2/x/y</i>"));
}

TEST(ReplayedInterfaces, WhatIsNoRowStays)
{
    for (const char* reply : {"", "<", ">", "a;b;c;http;http://h", "<a>;;;;</a>", "<a>1;2;3;ftp;http://h</a>",
                              "<a>1;2;3;http;</a>", "<a>1;2;3;http;h</a>", "<a>1;2;3;http;http://h;4</a>",
                              "<a>1;2;http;http://h</a>", "<a>http://h</a>"}) {
        EXPECT_EQ(with_own_interfaces(reply, {"h", ""}, {"http://own", ""}), reply);
    }
}

TEST(ReplayedInterfaces, AHostStandsBetweenSchemeAndPort)
{
    EXPECT_EQ(host_in_url("https://Filer1:8086/x"), "filer1");
    EXPECT_EQ(host_in_url("http://[2001:db8::7]:8085"), "[2001:db8::7]");
    EXPECT_EQ(host_in_url("http://[2001:db8::7]"), "[2001:db8::7]");
    EXPECT_EQ(host_in_url("http://h"), "h");
    for (const char* url : {"", "h", "http:", "http://", "ftp://h"}) EXPECT_EQ(host_in_url(url), "") << url;
}

RecordedExchange exchange_of(const std::string& operation, ReplyEnd end)
{
    RecordedExchange exchange;
    exchange.number = 4;
    exchange.url = "https://filer1:8086";
    exchange.request = envelope("<" + operation + "/>");
    exchange.status = end == ReplyEnd::kWhole || end == ReplyEnd::kCut ? 503 : 0;
    exchange.content_type = "text/xml";
    exchange.reply = "<a>1;2;3;https;https://filer1:8086</a>";
    exchange.end = end;
    return exchange;
}

Recording recording_of(const RecordedExchange& exchange)
{
    Recording recording;
    recording.exchanges.push_back(exchange);
    return recording;
}

Request request_of(const std::string& operation)
{
    Request request;
    request.body = envelope("<x:" + operation + "/>");
    return request;
}

Answer replayed(ReplyEnd end)
{
    Replay replay(recording_of(exchange_of("f", end)), {"", "https://h:2"}, false);
    return replay.answer(request_of("f")).answer;
}

TEST(ReplayedAnswer, EndsAsTheRecordedOneDid)
{
    const Answer whole = replayed(ReplyEnd::kWhole);
    EXPECT_EQ(whole.status, 503);
    EXPECT_EQ(whole.content_type, "text/xml");
    EXPECT_EQ(whole.body, "<a>1;2;3;https;https://h:2</a>");
    EXPECT_EQ(whole.delivery, Delivery::kWhole);
    const Answer cut = replayed(ReplyEnd::kCut);
    EXPECT_EQ(cut.status, 503);
    EXPECT_EQ(cut.body.substr(0, cut.body.size() / 2), "<a>1;2;3;https;https://filer1:8086</a>");
    EXPECT_EQ(cut.delivery, Delivery::kCut);
    EXPECT_EQ(replayed(ReplyEnd::kNoHttp).delivery, Delivery::kRaw);
    EXPECT_EQ(replayed(ReplyEnd::kNothing).delivery, Delivery::kNothing);
    EXPECT_EQ(replayed(ReplyEnd::kReset).delivery, Delivery::kReset);
}

TEST(ReplayedAnswer, IsAFaultThatSaysSoWhereTheRecordingHoldsNone)
{
    Replay replay(recording_of(exchange_of("f", ReplyEnd::kUnconnected)), {}, false);
    for (const char* operation : {"f", "openServer"}) {
        const Replay::Replayed missing = replay.answer(request_of(operation));
        EXPECT_EQ(missing.answer.status, 500);
        EXPECT_THAT(missing.answer.body,
                    HasSubstr("<faultstring>the recording holds no answer to " + std::string(operation)));
        EXPECT_EQ(missing.outcome, "no answer left");
    }
}

TEST(ReplayedAnswer, TakesItsTimeUntilTheReplayIsStopped)
{
    RecordedExchange exchange = exchange_of("f", ReplyEnd::kWhole);
    exchange.microseconds = std::numeric_limits<decltype(exchange.microseconds)>::max();
    Replay replay(recording_of(exchange), {}, true);
    std::thread stopper([&replay] { replay.stop(); });
    EXPECT_EQ(replay.answer(request_of("f")).outcome, "replayed 4");
    stopper.join();
}

TEST(ReplayedAnswer, TakesTheTimeThatWasRecorded)
{
    RecordedExchange exchange = exchange_of("f", ReplyEnd::kWhole);
    exchange.microseconds = 20'000;
    Replay replay(recording_of(exchange), {}, true);
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(replay.answer(request_of("f")).outcome, "replayed 4");
    EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(20));
}

} // namespace
