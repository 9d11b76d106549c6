#include "tests/torture/faults.h"

#include "tests/kit/soap_text.h"

#include <stdexcept>

using namespace kit;
using namespace std::string_literals;

namespace torture
{
namespace
{

using Manner = Answer::Manner;

constexpr char kTextXml[] = "Content-Type: text/xml; charset=utf-8\r\n";

Answer bytes(std::string text)
{
    return {Manner::kReply, std::move(text)};
}

Answer with_header(const std::string& lines, const std::string& body)
{
    return bytes("HTTP/1.1 200 OK\r\n" + lines + "\r\n" + body);
}

std::string content_length(std::string_view length)
{
    return "Content-Length: " + std::string(length) + "\r\n";
}

std::string repeated(std::string_view text, std::size_t times)
{
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

std::string hexadecimal(std::size_t number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%zx", number);
    return text;
}

std::string chunk(const std::string& text)
{
    return hexadecimal(text.size()) + "\r\n" + text + "\r\n";
}

// The reply with more inside: behind the operation's start tag.
std::string with_inside(const std::string& good_reply, const std::string& more)
{
    const std::size_t body = good_reply.find("<SOAP-ENV:Body>");
    const std::size_t start_tag_end = good_reply.find('>', body + 15);
    return good_reply.substr(0, start_tag_end + 1) + more + good_reply.substr(start_tag_end + 1);
}

std::string halved(const std::string& text)
{
    return text.substr(0, text.size() / 2);
}

} // namespace

std::vector<Fault> transport_faults(const std::string& good_reply)
{
    const std::string message = http_message(good_reply);
    const std::size_t body = message.find("\r\n\r\n") + 4;
    const auto reset_after = [&](std::size_t length) {
        return Answer{Manner::kReset, message.substr(0, length)};
    };
    return {
        {"closed ahead of the request", End::kFails, {Manner::kCloseAtOnce, ""}},
        {"reset ahead of the request", End::kFails, {Manner::kResetAtOnce, ""}},
        {"closed within the request", End::kFails, {Manner::kCloseMidRequest, ""}},
        {"closed behind the request", End::kFails, bytes("")},
        {"reset behind the request", End::kFails, {Manner::kReset, ""}},
        {"reset within the status line", End::kFails, reset_after(6)},
        {"reset within the header", End::kFails, reset_after(body / 2)},
        {"reset ahead of the body", End::kFails, reset_after(body)},
        {"reset within the body", End::kFails, reset_after((body + message.size()) / 2)},
        {"reset behind the body", End::kSurvives, reset_after(message.size())},
        {"no fault at all", End::kSucceeds, bytes(message)},
    };
}

std::vector<Fault> header_faults(const std::string& good_reply)
{
    const std::string size = std::to_string(good_reply.size());
    const std::string half = std::to_string(good_reply.size() / 2);
    const std::string good_header = kTextXml + content_length(size);
    return {
        {"no header at all", End::kSurvives, bytes(good_reply)},
        {"a status line alone", End::kFails, bytes("HTTP/1.1 200 OK\r\n")},
        {"a broken status line", End::kFails, bytes("HTTP/9.x abc\r\n\r\n" + good_reply)},
        {"another protocol's greeting", End::kFails, bytes("220 mail ready\r\n")},
        {"an older HTTP", End::kSucceeds, bytes("HTTP/1.0 200 OK\r\n" + good_header + "\r\n" + good_reply)},
        {"lines that end with a line feed alone", End::kSurvives,
         bytes("HTTP/1.1 200 OK\nContent-Length: " + size + "\n\n" + good_reply)},
        {"header lines without a colon", End::kSurvives,
         with_header("nonsense\r\n" + good_header, good_reply)},
        {"a header line of a million characters", End::kFails,
         with_header("X: " + std::string(1'000'000, 'x') + "\r\n" + good_header, good_reply)},
        {"a hundred thousand header lines", End::kSurvives,
         with_header(repeated("X-Filler: something\r\n", 100'000) + good_header, good_reply)},
        {"a header that ends only with the connection", End::kFails,
         bytes("HTTP/1.1 200 OK\r\n" + repeated("X-Filler: something\r\n", 50'000))},
        {"many interim replies", End::kSurvives,
         bytes(repeated("HTTP/1.1 100 Continue\r\n\r\n", 1000) + http_message(good_reply))},
        {"interim replies and no more", End::kFails, bytes(repeated("HTTP/1.1 100 Continue\r\n\r\n", 1000))},
        {"no length", End::kSucceeds, with_header(kTextXml, good_reply)},
        {"no length and half a body", End::kFails, with_header(kTextXml, halved(good_reply))},
        {"a length of 0", End::kFails, with_header(kTextXml + content_length("0"), good_reply)},
        {"a length too short", End::kSurvives, with_header(kTextXml + content_length(half), good_reply)},
        {"a length too long", End::kSurvives, with_header(kTextXml + content_length("999999"), good_reply)},
        {"a negative length", End::kSurvives, with_header(kTextXml + content_length("-5"), good_reply)},
        {"a length that is no number", End::kSurvives,
         with_header(kTextXml + content_length("x"), good_reply)},
        {"the greatest length", End::kSurvives,
         with_header(kTextXml + content_length("9223372036854775807"), good_reply)},
        {"a length beyond all numbers", End::kSurvives,
         with_header(kTextXml + content_length(std::string(40, '9')), good_reply)},
        {"chunks", End::kSucceeds,
         with_header(kTextXml + "Transfer-Encoding: chunked\r\n"s,
                     chunk(halved(good_reply)) + chunk(good_reply.substr(good_reply.size() / 2)) +
                         "0\r\n\r\n")},
        {"a chunk of no size", End::kFails,
         with_header(kTextXml + "Transfer-Encoding: chunked\r\n"s, "zz\r\n" + good_reply)},
        {"a chunk cut short", End::kFails,
         with_header(kTextXml + "Transfer-Encoding: chunked\r\n"s, "ffffff\r\n" + halved(good_reply))},
        {"a chunk of more than there can be", End::kSurvives,
         with_header(kTextXml + "Transfer-Encoding: chunked\r\n"s, "ffffffffffffffffff\r\n" + good_reply)},
        {"chunks without end", End::kFails,
         with_header(kTextXml + "Transfer-Encoding: chunked\r\n"s, repeated("1\r\n \r\n", 20'000))},
        {"a compression that it isn't in", End::kFails,
         with_header(good_header + "Content-Encoding: gzip\r\n", good_reply)},
        {"a compressed body cut short", End::kFails,
         with_header(kTextXml + "Content-Encoding: gzip\r\n"s, "\x1f\x8b\x08\0\0\0\0\0\0\x03"s)},
        {"a compression unknown", End::kSurvives,
         with_header(good_header + "Content-Encoding: br\r\n", good_reply)},
        {"another content type", End::kSurvives,
         with_header("Content-Type: application/json\r\n" + content_length(size), good_reply)},
        {"attachments that aren't there", End::kFails,
         with_header("Content-Type: multipart/related; boundary=\"b\"; type=\"text/xml\"\r\n" +
                         content_length(size),
                     good_reply)},
        {"records that aren't there", End::kFails,
         with_header("Content-Type: application/dime\r\n" + content_length(size), good_reply)},
        {"an unknown character set", End::kSurvives,
         with_header("Content-Type: text/xml; charset=klingon\r\n" + content_length(size), good_reply)},
    };
}

std::vector<Fault> body_faults(const std::string& good_reply)
{
    const auto message = [](const std::string& body) { return bytes(http_message(body)); };
    const std::string deep = repeated("<a>", 20'000) + repeated("</a>", 20'000);
    const std::string open_only = repeated("<a>", 20'000);
    return {
        {"an empty body", End::kFails, message("")},
        {"blanks", End::kFails, message("  \r\n  ")},
        {"a text", End::kFails, message("this is no XML")},
        {"a page", End::kFails, message("<html><body>welcome</body></html>")},
        {"bytes of all kinds", End::kFails, message("\x00\x01\x7f\x80\xfe\xff<\x00>&&&"s)},
        {"a terminator first", End::kSurvives, message("\0"s + good_reply)},
        {"half an envelope, well counted", End::kFails, message(halved(good_reply))},
        {"an envelope of another kind", End::kFails, message("<x:Envelope xmlns:x=\"urn:x\"/>")},
        {"an envelope without a body", End::kFails,
         message("<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"/>")},
        {"an envelope with an empty body", End::kSurvives, message(envelope(""))},
        {"another operation's reply", End::kFails, message(reply("anotherResponse", element("lsu", "x")))},
        {"an element of no namespace", End::kFails, message(envelope("<response/>"))},
        {"two envelopes", End::kSurvives, message(good_reply + good_reply)},
        {"a declared entity", End::kSurvives,
         message("<!DOCTYPE x [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>" +
                 with_inside(good_reply, element("surprise", "&b;&b;")))},
        {"an external entity", End::kSurvives,
         message("<!DOCTYPE x [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>" +
                 with_inside(good_reply, element("surprise", "&a;")))},
        {"an unknown element", End::kSucceeds,
         message(with_inside(good_reply, element("surprise", element("within", "x"))))},
        {"an element of four million characters", End::kSucceeds,
         message(with_inside(good_reply, element("surprise", std::string(4'000'000, 'x'))))},
        {"a hundred thousand elements", End::kSucceeds,
         message(with_inside(good_reply, repeated("<ns1:surprise/>", 100'000)))},
        {"elements twenty thousand deep", End::kSurvives, message(with_inside(good_reply, deep))},
        {"elements that never end", End::kFails, message(with_inside(good_reply, open_only))},
        {"a tag of a million characters", End::kSurvives,
         message(with_inside(good_reply, "<" + std::string(1'000'000, 't') + "/>"))},
        {"an attribute of a million characters", End::kSurvives,
         message(with_inside(good_reply, "<a b=\"" + std::string(1'000'000, 'v') + "\"/>"))},
        {"a hundred thousand attributes", End::kSurvives,
         message(with_inside(good_reply, "<a" + repeated(" b=\"c\"", 100'000) + "/>"))},
        {"a reference to nothing", End::kSurvives,
         message(with_inside(good_reply, "<ns1:info href=\"#none\"/>"))},
        {"a comment that never ends", End::kFails, message(with_inside(good_reply, "<!-- "))},
        {"a character section that never ends", End::kFails, message(with_inside(good_reply, "<![CDATA[ "))},
    };
}

std::vector<Fault> http_errors(const std::string& good_reply)
{
    std::vector<Fault> faults;
    for (const int code : {301, 302, 303, 307, 308}) {
        faults.push_back(
            {"HTTP " + std::to_string(code) + " elsewhere", End::kFails,
             bytes("HTTP/1.1 " + std::to_string(code) +
                   " Moved\r\nLocation: http://127.0.0.1:1/elsewhere\r\nContent-Length: 0\r\n\r\n")});
    }
    for (const int code : {204, 205, 300, 304, 305, 306, 400, 401, 402, 403, 404, 405, 406, 407,
                           408, 409, 410, 411, 412, 413, 414, 415, 417, 418, 421, 422, 426, 428,
                           429, 431, 451, 500, 501, 502, 503, 504, 505, 507, 511, 599, 600, 999}) {
        faults.push_back({"HTTP " + std::to_string(code) + " with a page", End::kFails,
                          bytes(http_message("<html>no</html>", code, "Reason"))});
        faults.push_back({"HTTP " + std::to_string(code) + " with nothing", End::kFails,
                          bytes(http_message("", code, "Reason"))});
    }
    for (const int code : {0, -1, 1, 100, 199, 201, 202, 2000, 2147483647}) {
        faults.push_back({"HTTP " + std::to_string(code) + " with a good reply", End::kSurvives,
                          bytes(http_message(good_reply, code, "Reason"))});
    }
    faults.push_back({"HTTP 401 that asks for a password", End::kFails,
                      bytes("HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"r\"\r\n"
                            "Content-Length: 0\r\n\r\n")});
    return faults;
}

std::vector<Fault> costly_replies(const std::string& good_reply)
{
    const auto message = [](const std::string& body) { return bytes(http_message(body)); };
    const auto attributes = [](const std::string& prefix, int count) {
        std::string all;
        for (int i = 0; i < count; ++i) all += " " + prefix + std::to_string(i) + "=\"u\"";
        return all;
    };
    const std::string nested =
        "<e:Envelope xmlns:e=\"http://www.w3.org/2003/05/soap-envelope\"><e:Body><e:Fault><e:Code>"
        "<e:Value>e:Sender</e:Value>" +
        repeated("<e:Subcode><e:Value>a</e:Value>", 50'000) + repeated("</e:Subcode>", 50'000) +
        "</e:Code></e:Fault></e:Body></e:Envelope>";
    const std::string with_attributes = "<ns1:surprise" + attributes("a", 80'000) + "/>";
    const std::string with_namespaces = "<ns1:surprise" + attributes("xmlns:a", 80'000) + "/>";
    return {{"subcodes fifty thousand deep", End::kFails, message(nested)},
            {"eighty thousand attributes", End::kFails, message(with_inside(good_reply, with_attributes))},
            {"eighty thousand namespaces", End::kFails, message(with_inside(good_reply, with_namespaces))}};
}

std::vector<Fault> gaps(const std::string& good_reply, const std::vector<std::string>& elements)
{
    std::vector<Fault> faults;
    for (const std::string& name : elements) {
        const std::string close = "</ns1:" + name + ">";
        const std::size_t begin = good_reply.find("<ns1:" + name + ">");
        const std::size_t end = good_reply.rfind(close);
        if (begin == std::string::npos || end == std::string::npos) throw std::logic_error("no " + name);
        const std::string head = good_reply.substr(0, begin);
        const std::string tail = good_reply.substr(end + close.size());
        faults.push_back({"no " + name, End::kIsUseless, bytes(http_message(head + tail))});
        faults.push_back({"a nil " + name, End::kIsUseless, bytes(http_message(head + nil(name) + tail))});
    }
    return faults;
}

} // namespace torture
