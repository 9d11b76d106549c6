// The file of a recording, written and read.
#include "messages/base64.h"
#include "messages/blotter.h"
#include "messages/recording.h"
#include "messages/recording_reader.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace
{

using namespace soapwrapper::messages;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr char kHead[] = R"({"recording":1,"program":"p","library":"l","time":"t"})"
                         "\n";

Recording reread(const std::string& text, const RecordingBounds& bounds = {})
{
    std::istringstream in(text);
    return read_recording(in, bounds);
}

// Why it can't be read.
std::string refusal_of(const std::string& text, const RecordingBounds& bounds = {})
{
    try {
        reread(text, bounds);
    } catch (const RecordingError& error) {
        return error.what();
    }
    return "it was taken";
}

RecordedExchange some_exchange()
{
    RecordedExchange exchange;
    exchange.number = 7;
    exchange.time = "2026-01-12T09:30:00.125Z";
    exchange.microseconds = 1500;
    exchange.url = "https://filer1:8086";
    exchange.is_tls = true;
    exchange.operation = "openServer";
    exchange.request = "<a>\n\"r\xC3\xA9quest\"</a>";
    exchange.reply = "<?xml version=\"1.0\"?><b>r\xE9ply\x01</b>"; // Latin-1
    exchange.status = 500;
    exchange.content_type = "text/xml";
    exchange.end = ReplyEnd::kCut;
    exchange.failure = "the connection ended";
    return exchange;
}

// As a line, and what is read from it again.
std::string line_of(const RecordedExchange& exchange, const std::string& credential = "")
{
    Blotter blotter(credential);
    return recording_line(exchange, blotter);
}
RecordedExchange written_and_read(const RecordedExchange& exchange)
{
    return reread(kHead + line_of(exchange)).exchanges.at(0);
}

TEST(RecordingFile, AnExchangeComesBackAsItWasWithBytesThatAreNoUtf8)
{
    const RecordedExchange exchange = some_exchange();
    const RecordedExchange again = written_and_read(exchange);
    EXPECT_EQ(again.number, exchange.number);
    EXPECT_EQ(again.time, exchange.time);
    EXPECT_EQ(again.microseconds, exchange.microseconds);
    EXPECT_EQ(again.url, exchange.url);
    EXPECT_EQ(again.is_tls, exchange.is_tls);
    EXPECT_EQ(again.operation, exchange.operation);
    EXPECT_EQ(again.request, exchange.request);
    EXPECT_EQ(again.reply, exchange.reply);
    EXPECT_EQ(again.status, exchange.status);
    EXPECT_EQ(again.content_type, exchange.content_type);
    EXPECT_EQ(again.end, exchange.end);
    EXPECT_EQ(again.failure, exchange.failure);
}

TEST(RecordingFile, EachEndOfAReplyComesBack)
{
    for (const ReplyEnd end : {ReplyEnd::kWhole, ReplyEnd::kCut, ReplyEnd::kNoHttp, ReplyEnd::kNothing,
                               ReplyEnd::kReset, ReplyEnd::kUnconnected}) {
        RecordedExchange exchange = some_exchange();
        exchange.end = end;
        EXPECT_EQ(written_and_read(exchange).end, end) << name_of(end);
    }
}

TEST(RecordingFile, TellsWhereItComesFrom)
{
    Blotter blotter("");
    const RecordingHead head = reread(recording_line({"program 1", "library 2", "now"}, blotter)).head;
    EXPECT_EQ(head.program, "program 1");
    EXPECT_EQ(head.library, "library 2");
    EXPECT_EQ(head.time, "now");
}

TEST(RecordingFile, HoldsNoCredentialAndNoTokenWhereverTheyStood)
{
    const std::string credential = "open sesame";
    const std::string token = "0123456789abcdef0123456789abcdef";
    RecordedExchange exchange;
    exchange.url = "http://filer/" + credential;
    exchange.content_type = credential;
    exchange.failure = "the peer said " + credential + " to " + token;
    exchange.request = "<cert>" + base64_of(credential) + "</cert><token>" + token + "</token>";
    exchange.reply = "<a>" + credential + "</a><b>" + base64_of("1" + credential) + "</b><c>" +
                     base64_of("12" + credential) + "</c><token>a short one</token><id>" + token + "</id>";
    exchange.status = 200;
    const std::string line = line_of(exchange, credential);
    for (const std::string& secret : {credential, token, std::string("a short one"), base64_of(credential),
                                      base64_of("1" + credential), base64_of("12" + credential)}) {
        EXPECT_THAT(line, Not(HasSubstr(secret.substr(4, 6)))) << secret;
    }
    EXPECT_THAT(line, HasSubstr("<token>[token 1]</token>"));
}

TEST(RecordingFile, ABodyThatIsNoXmlIsLeftOutButForItsSize)
{
    RecordedExchange exchange = some_exchange();
    exchange.status = 200;
    exchange.reply = "password: sesame";
    EXPECT_EQ(written_and_read(exchange).reply, "(not XML, 16 bytes)");
}

TEST(RecordingFile, ThePlainTextOfAnHttpErrorIsKeptWithoutWhatIsSecret)
{
    RecordedExchange exchange = some_exchange();
    const auto kept = [&exchange](const std::string& reply) {
        exchange.reply = reply;
        return reread(kHead + line_of(exchange, "sesame")).exchanges.at(0).reply;
    };
    exchange.status = 503;
    EXPECT_EQ(kept("503 Service Unavailable\n"), "503 Service Unavailable\n");
    EXPECT_EQ(kept("no sesame: c2VzYW1l"), "no ***: ***");
    EXPECT_EQ(kept("it was <cert>x</cert>"), "(not XML, 21 bytes)");
    EXPECT_EQ(kept("it was &lt;cert>"), "(not XML, 16 bytes)");
    EXPECT_EQ(kept(std::string("s\0e\0s\0a\0m\0e\0", 12)), "(not XML, 12 bytes)");
    EXPECT_EQ(kept(std::string(5000, 'x')), "(not XML, 5000 bytes)");
}

TEST(RecordingFile, ABodyThatALineHasNoRoomForIsLeftOut)
{
    RecordedExchange exchange = some_exchange();
    exchange.reply = "<a>" + std::string(1000, 'x') + "</a>";
    RecordingBounds bounds;
    bounds.line_bytes = 1000;
    Blotter blotter("");
    RecordedExchange again = reread(kHead + recording_line(exchange, blotter, bounds)).exchanges.at(0);
    EXPECT_EQ(again.reply, "(left out, 1007 bytes)");
    EXPECT_EQ(again.request, exchange.request);
    exchange.request = exchange.reply;
    again = reread(kHead + recording_line(exchange, blotter, bounds)).exchanges.at(0);
    EXPECT_EQ(again.request, "(left out, 1007 bytes)");
}

TEST(RecordingFile, IsReadUpToALineThatWasNeverFinished)
{
    const std::string line = line_of(some_exchange());
    for (std::size_t length = 1; length < line.size(); ++length) {
        const Recording recording = reread(kHead + line + line.substr(0, length));
        EXPECT_THAT(recording.exchanges, SizeIs(1)) << length;
        EXPECT_TRUE(recording.is_cut) << length;
    }
    EXPECT_FALSE(reread(kHead + line).is_cut);
}

TEST(RecordingFile, WhatIsWrongIsToldWithItsLine)
{
    const std::string line = line_of(some_exchange());
    const auto changed = [&line](const std::string& from, const std::string& to) {
        std::string text = line;
        return kHead + line + text.replace(text.find(from), from.size(), to);
    };
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "line 1: the recording is empty"},
        {"\n", "line 1: it is no JSON from byte 1 on"},
        {"{}\n", "line 1: the member \"recording\" is missing, or is of another type"},
        {"[1]\n", "line 1: an array isn't expected"},
        {"1\n", "line 1: it is no object"},
        {std::string("\0\xFF\n", 3), "line 1: it is no JSON from byte 1 on"},
        {R"({"recording":2,"program":"","library":"","time":""})"
         "\n",
         "line 1: it isn't a recording of version 1"},
        {std::string(kHead) + "x\n", "line 2: it is no JSON from byte 1 on"},
        {kHead + line + "{\"a\":{\"b\":1}}\n", "line 3: an object within the object isn't expected"},
        {kHead + line + "{\"a\":null}\n", "line 3: a member is null"},
        {kHead + line + "{\"a\":\"\xFF\"}\n", "line 3: it is no JSON from byte 7 on"},
        {changed("\"status\":500", "\"status\":\"500\""),
         "line 3: the member \"status\" is missing, or is of another type"},
        {changed("\"status\":500", "\"status\":1000"), "line 3: the member \"status\" is out of range"},
        {changed("\"status\":500", "\"status\":1.5"), "line 3: a number isn't whole"},
        {changed("\"status\":500", "\"status\":0"), "line 3: a reply without an HTTP status"},
        {changed("\"number\":7", "\"number\":-7"), "line 3: the member \"number\" is out of range"},
        {changed("\"number\":7", "\"number\":18446744073709551615"), "line 3: a number is too great"},
        {changed("\"cut\"", "\"torn\""), "line 3: an unknown end of a reply"},
        {changed("replyBase64\":\"", "replyBase64\":\"="), "line 3: the member \"replyBase64\" isn't Base64"},
        {changed("replyBase64", "answer"), "line 3: the member \"reply\" is missing, or is of another type"},
    };
    for (const auto& [text, why] : cases) EXPECT_EQ(refusal_of(text), why);
}

TEST(RecordingFile, AMemberThatALaterProgramAddsIsPassedOver)
{
    std::string line = line_of(some_exchange());
    line.insert(1, R"("later":"x",)");
    EXPECT_EQ(reread(kHead + line).exchanges.at(0).number, 7U);
}

TEST(RecordingFile, MayBeSeveralOnesPutTogether)
{
    const std::string line = line_of(some_exchange());
    const std::string other = R"({"recording":1,"program":"q","library":"","time":""})"
                              "\n";
    const Recording recording = reread(kHead + line + other + line);
    EXPECT_EQ(recording.head.program, "p");
    EXPECT_THAT(recording.exchanges, SizeIs(2));
}

TEST(RecordingFile, HasBounds)
{
    const std::string line = line_of(some_exchange());
    RecordingBounds bounds;
    bounds.exchanges = 1;
    EXPECT_EQ(refusal_of(kHead + line + line, bounds), "line 3: there are too many exchanges");
    bounds = {};
    bounds.line_bytes = line.size() - 2;
    EXPECT_EQ(refusal_of(kHead + line, bounds), "line 2: the line is too long");
    bounds = {};
    bounds.bytes = line.size() * 2;
    EXPECT_EQ(refusal_of(kHead + line + line, bounds), "line 3: the recording is too long");
    std::string members = "{";
    for (int i = 0; i < 100; ++i) members += "\"" + std::to_string(i) + "\":1,";
    EXPECT_EQ(refusal_of(kHead + members + "\"a\":1}\n"), "line 2: it has too many members");
}

TEST(Base64, AnyBytesComeBackAndNoOtherTextIsTaken)
{
    std::string bytes;
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(bytes_of_base64(base64_of(bytes)), bytes);
        bytes += static_cast<char>(i * 7);
    }
    EXPECT_EQ(base64_of("light wor"), "bGlnaHQgd29y");
    EXPECT_EQ(base64_of("light wo"), "bGlnaHQgd28=");
    EXPECT_EQ(base64_of("light w"), "bGlnaHQgdw==");
    for (const char* text : {"A", "AB", "ABC", "====", "A===", "AB=C", "AB==AB==", "AB\n=", "AB*=", "AR=="}) {
        EXPECT_FALSE(bytes_of_base64(text)) << text;
    }
}

} // namespace
