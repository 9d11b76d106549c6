// One HTTP/1 message, out of the bytes of a connection.
#ifndef SOAPWRAPPER_PROBE_WIRE_HTTP_MESSAGE_H
#define SOAPWRAPPER_PROBE_WIRE_HTTP_MESSAGE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace soapwrapper::probe::wire
{

// Takes any bytes: those that aren't HTTP are the body of a message without a head.
class HttpMessage
{
  public:
    static constexpr std::size_t kLongestHead = std::size_t{64} << 10U;
    static constexpr std::size_t kLongestBody = std::size_t{8} << 20U; // of more, only how much is kept

    enum class Kind { kRequest, kReply };

    explicit HttpMessage(Kind kind) : kind_(kind) {}
    ~HttpMessage();
    HttpMessage(const HttpMessage&) = delete;
    HttpMessage& operator=(const HttpMessage&) = delete;

    // Takes what belongs to the message, and tells how much that is: less than all, if it became whole.
    std::size_t take(std::string_view bytes);
    // There is no more.
    void end();

    bool is_begun() const { return is_begun_; }
    bool is_whole() const { return part_ == Part::kNone; }

    const std::string& head() const { return head_; }
    const std::string& body() const { return body_; }
    // What is to be known of the body, such as that it isn't whole.
    std::string note() const;
    int status() const; // of a reply; 0: none

    // Of the head; empty: there is none. The name is in lower case.
    std::string field(std::string_view name) const;

    // Unpacks a body that was packed, if it can be.
    void unpack();

  private:
    enum class Part { kHead, kCountedBody, kChunkSize, kChunk, kChunkEnd, kTrailer, kBodyToEnd, kNone };

    std::string_view last_head() const;
    std::size_t take_line(std::string_view bytes);
    void take_head_line();
    void begin_body();
    void begin_chunk();
    void go_on_raw(const char* note);
    std::size_t take_body(std::string_view bytes);
    void keep(std::string_view bytes);

    const Kind kind_;
    Part part_ = Part::kHead;
    bool is_begun_ = false;
    std::string head_;
    std::size_t last_head_ = 0; // where it begins: a reply may have interim ones ahead
    std::string line_;
    std::string body_;
    std::uint64_t left_ = 0; // of the body or the chunk
    std::uint64_t dropped_ = 0;
    std::string note_;
};

} // namespace soapwrapper::probe::wire

#endif
