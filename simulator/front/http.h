// HTTP/1.1 as far as a SOAP service needs it: one POST a connection, its length told beforehand.
#ifndef SOAPWRAPPER_SIMULATOR_FRONT_HTTP_H
#define SOAPWRAPPER_SIMULATOR_FRONT_HTTP_H

#include <cstddef>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

constexpr std::size_t kMaxHead = 16 * 1024;
constexpr std::size_t kMaxBody = 1024 * 1024;

// Collects a request as its bytes come in.
class RequestReader
{
  public:
    enum class Progress { kIncomplete, kComplete, kRefused };

    Progress add(std::string_view bytes);

    // Once refused: the HTTP status to answer with.
    int refusal() const { return refusal_; }
    // Whether the client waits for a word before it sends the body; true once.
    bool take_expectation();
    // Once complete: the body, given away.
    std::string take_body();

  private:
    Progress refuse(int status);
    // Both return an HTTP status, or 0 if all is well.
    int judge_head(std::string_view head);
    int judge_field(std::string_view line);

    std::string received_; // the head as it grows, then the body alone
    bool has_head_ = false;
    bool has_length_ = false;
    bool expects_continue_ = false;
    std::size_t length_ = 0;
    int refusal_ = 0;
};

// A whole response, which ends the connection.
std::string http_response(int status, std::string_view content_type, std::string_view body);
// A response that says no more than its status.
std::string http_refusal(int status);

// The word to a client that waits for one.
extern const std::string_view kContinue;

} // namespace soapwrapper::simulator

#endif
