// Replies that would cost the host its stack, its processor or its memory.
#include "tests/entries/server_fixture.h"
#include "tests/kit/small_stack.h"

#include <zlib.h>

using namespace kit;
using testing::Contains;
using testing::HasSubstr;

namespace
{

constexpr std::size_t kMebibyte = std::size_t{1} << 20;
constexpr std::size_t kStackOfACall = 192 * 1024; // what the administrator's guide promises

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kStackIsInstrumented = true;
#else
constexpr bool kStackIsInstrumented = false;
#endif

// A text of many parts, compressed part by part.
class Gzip
{
  public:
    Gzip()
    {
        constexpr int kGzipWindow = 15 + 16;
        if (deflateInit2(&stream_, 1, Z_DEFLATED, kGzipWindow, 9, Z_DEFAULT_STRATEGY) != Z_OK) std::abort();
    }
    ~Gzip() { deflateEnd(&stream_); }
    Gzip(const Gzip&) = delete;
    Gzip& operator=(const Gzip&) = delete;

    void add(std::string_view text) { run(text, Z_NO_FLUSH); }
    std::string end()
    {
        run({}, Z_FINISH);
        return std::move(compressed_);
    }

  private:
    void run(std::string_view text, int flush)
    {
        char buffer[65536];
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
        stream_.avail_in = static_cast<uInt>(text.size());
        do {
            stream_.next_out = reinterpret_cast<Bytef*>(buffer);
            stream_.avail_out = sizeof buffer;
            deflate(&stream_, flush);
            compressed_.append(buffer, sizeof buffer - stream_.avail_out);
        } while (stream_.avail_out == 0);
    }

    z_stream stream_ = {};
    std::string compressed_;
};

std::string gzip(std::string_view text)
{
    Gzip gzip;
    gzip.add(text);
    return gzip.end();
}

std::string compressed_message(std::string_view compressed, int code = 200)
{
    return "HTTP/1.1 " + std::to_string(code) +
           " X\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Encoding: gzip\r\nContent-Length: " +
           std::to_string(compressed.size()) + "\r\nConnection: close\r\n\r\n" + std::string(compressed);
}

std::string chunked_message(std::string_view body, std::size_t chunk, const std::string& header = "")
{
    std::string message = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n" + header +
                          "Transfer-Encoding: chunked\r\nConnection: close\r\n\r\n";
    for (std::size_t at = 0; at < body.size(); at += chunk) {
        const std::string_view part = body.substr(at, chunk);
        char size[32];
        std::snprintf(size, sizeof size, "%zx\r\n", part.size());
        message += size;
        message += part;
        message += "\r\n";
    }
    return message + "0\r\n\r\n";
}

// Attributes, or namespaces where the prefix is "xmlns:", each with a name of its own.
std::string many(std::size_t count, const std::string& prefix = "a")
{
    std::string attributes;
    for (std::size_t i = 0; i < count; ++i) attributes += " " + prefix + "n" + std::to_string(i) + "=\"u\"";
    return attributes;
}

std::string properties(const std::string& attributes, const std::string& content = "")
{
    return envelope("<ns1:getServerPropResponse><ns1:info" + attributes +
                    "><ns1:maxconnect>5</ns1:maxconnect>" + content +
                    "</ns1:info></ns1:getServerPropResponse>");
}

// A fault of SOAP 1.2 whose subcodes are nested this deep.
std::string nested_fault(std::size_t depth)
{
    std::string soap = "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://www.w3.org/2003/05/soap-envelope\">"
                       "<SOAP-ENV:Body><SOAP-ENV:Fault><SOAP-ENV:Code><SOAP-ENV:Value>SOAP-ENV:Sender"
                       "</SOAP-ENV:Value>";
    for (std::size_t i = 0; i < depth; ++i) soap += "<SOAP-ENV:Subcode><SOAP-ENV:Value>a</SOAP-ENV:Value>";
    for (std::size_t i = 0; i < depth; ++i) soap += "</SOAP-ENV:Subcode>";
    return soap + "</SOAP-ENV:Code><SOAP-ENV:Reason><SOAP-ENV:Text>no</SOAP-ENV:Text></SOAP-ENV:Reason>"
                  "</SOAP-ENV:Fault></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

class CostlyReplies : public ServerTest
{
  protected:
    int ask(const std::string& message)
    {
        session_.clear();
        service_.script({Answer::Manner::kReply, message});
        *info_ = {};
        return get_server_prop()(server_.get(), info_.get());
    }

    void expect_read(const std::string& message)
    {
        EXPECT_EQ(ask(message), 0);
        EXPECT_EQ(info_->maxconnect, 5);
    }

    // The entry's own status of a reply that can't be read, one failure line, and an untouched record.
    void expect_refused(const std::string& message, const std::string& why)
    {
        EXPECT_EQ(ask(message), 2060026);
        EXPECT_EQ(info_->maxconnect, 0);
        EXPECT_THAT(session_.lines(),
                    Contains(testing::AllOf(testing::Field(&LogLine::level, 4),
                                            testing::Field(&LogLine::text, HasSubstr(why)))));
    }

    ServerHandle server_ = make_server(session_, service_.url());
    std::unique_ptr<sts_server_info_v8_t> info_ = std::make_unique<sts_server_info_v8_t>();
};

} // namespace

TEST_F(CostlyReplies, NestedTooDeepAreRefused)
{
    expect_refused(http_message(nested_fault(1000)), "nested too deeply");
    expect_refused(compressed_message(gzip(nested_fault(100000))), "nested too deeply");
    expect_refused(http_message(nested_fault(1000), 500), "nested too deeply");
}

TEST_F(CostlyReplies, NestedWithinReasonAreRead)
{
    EXPECT_EQ(ask(http_message(nested_fault(24), 500)), 2060021);
    // Elements that nobody asked for may nest as they like.
    std::string unknown;
    for (int i = 0; i < 1000; ++i) unknown += "<x>";
    for (int i = 0; i < 1000; ++i) unknown += "</x>";
    expect_read(http_message(properties("", unknown)));
}

TEST_F(CostlyReplies, FitTheStackThatACallIsSaidToNeed)
{
    if (kStackIsInstrumented) GTEST_SKIP() << "frames are larger under the sanitizer";
    for (const std::size_t depth : {std::size_t{20}, std::size_t{1000}, std::size_t{100000}}) {
        const std::string message = compressed_message(gzip(nested_fault(depth)), 500);
        int status = 0;
        run_on_stack_of(kStackOfACall, [&] { status = ask(message); });
        EXPECT_EQ(status, depth < 100 ? 2060021 : 2060026);
    }
}

TEST_F(CostlyReplies, WithAThousandAttributesOnAnElementAreRead)
{
    expect_read(http_message(properties(many(990))));
    expect_read(compressed_message(gzip(properties(many(990)))));
    expect_read(http_message(properties(many(990, "xmlns:"))));
}

TEST_F(CostlyReplies, WithMoreAttributesThanThatAreRefused)
{
    for (const std::size_t count : {std::size_t{1001}, std::size_t{5000}, std::size_t{80000}}) {
        SCOPED_TRACE(count);
        const std::string soap = properties(many(count));
        expect_refused(http_message(soap), "too many attributes");
        expect_refused(compressed_message(gzip(soap)), "too many attributes");
        expect_refused(chunked_message(soap, 1000), "too many attributes");
    }
}

TEST_F(CostlyReplies, WithMoreNamespacesThanThatAreRefused)
{
    for (const std::size_t count : {std::size_t{1001}, std::size_t{80000}}) {
        SCOPED_TRACE(count);
        const std::string soap = properties(many(count, "xmlns:"));
        expect_refused(http_message(soap), "too many attributes");
        expect_refused(compressed_message(gzip(soap)), "too many attributes");
    }
}

TEST_F(CostlyReplies, WithManyElementsThatEachSearchManyAttributesAreRefused)
{
    std::string unknown;
    for (int i = 0; i < 400000; ++i) unknown += "<x/>";
    expect_refused(compressed_message(gzip(properties(many(990), unknown))), "too many elements");
    expect_read(compressed_message(gzip(properties(many(10), unknown))));
}

TEST_F(CostlyReplies, CompressedAreRead)
{
    const std::string soap = properties(" x=\"y\"", std::string(100000, ' '));
    expect_read(compressed_message(gzip(soap)));
    for (const std::size_t chunk : {std::size_t{1}, std::size_t{7}, std::size_t{65536}}) {
        expect_read(chunked_message(gzip(soap), chunk, "Content-Encoding: gzip\r\n"));
        expect_read(chunked_message(soap, chunk));
    }
}

TEST_F(CostlyReplies, CompressedBeyondReasonAreReadUpTo64Mebibytes)
{
    expect_read(compressed_message(gzip(properties("", std::string(60 * kMebibyte, ' ')))));
}

TEST_F(CostlyReplies, CompressedBeyondReasonAreRefusedBeyond64Mebibytes)
{
    expect_refused(compressed_message(gzip(properties("", std::string(66 * kMebibyte, ' ')))),
                   "compressed beyond reason");
    Gzip endless; // what comes behind the message is read to its end as well
    endless.add(properties(""));
    const std::string blanks(kMebibyte, ' ');
    for (int i = 0; i < 300; ++i) endless.add(blanks);
    expect_refused(compressed_message(endless.end()), "compressed beyond reason");
}

TEST_F(CostlyReplies, CompressedBeyondReasonAreRefusedBeforeTheirListsTakeTheMemory)
{
    Gzip list;
    list.add(envelope("").substr(0, envelope("").find("</SOAP-ENV:Body>")));
    list.add("<ns1:getServerPropResponse><ns1:info><ns1:cap>");
    std::string items;
    for (int i = 0; i < 10000; ++i) items += "<ns1:item>1</ns1:item>";
    for (int i = 0; i < 1000; ++i) list.add(items);
    list.add("</ns1:cap></ns1:info></ns1:getServerPropResponse></SOAP-ENV:Body></SOAP-ENV:Envelope>");
    expect_refused(compressed_message(list.end()), "compressed beyond reason");
}

TEST_F(CostlyReplies, CompressedWithinReasonAreReadHoweverLarge)
{
    // Noise keeps it below a hundred times what comes over the wire.
    std::string noise;
    unsigned int state = 1;
    for (std::size_t i = 0; i < 2000; ++i) {
        state = state * 1664525U + 1013904223U;
        noise += static_cast<char>('a' + (state >> 24) % 26);
    }
    Gzip large;
    const std::string soap = properties("", "<x>|</x>");
    const std::size_t middle = soap.find('|');
    large.add(soap.substr(0, middle));
    const std::string blanks(50000, ' ');
    for (int i = 0; i < 1400; ++i) {
        std::rotate(noise.begin(), noise.begin() + 701, noise.end());
        large.add(blanks);
        large.add(noise);
        noise[static_cast<std::size_t>(i)] = '-';
    }
    large.add(soap.substr(middle + 1));
    expect_read(compressed_message(large.end()));
}
