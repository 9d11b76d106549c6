// A service that answers what a test tells it to, over a real socket, and keeps what it was sent.
#ifndef SOAPWRAPPER_TESTS_KIT_SCRIPTED_SERVICE_H
#define SOAPWRAPPER_TESTS_KIT_SCRIPTED_SERVICE_H

#include "tests/kit/certificate.h"
#include "tests/kit/tls_acceptor.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kit
{

class Stream;

// What one connection gets.
struct Answer {
    enum class Manner {
        kReply,           // read the request, send `bytes`, close
        kReset,           // read the request, send `bytes`, reset the connection
        kCloseAtOnce,     // close without reading
        kResetAtOnce,     // reset without reading
        kCloseMidRequest, // close when the request's header has arrived, its body unread
        kHold,            // read the request and keep silent until release() or the end of the service
        kLateHandshake,   // reply, but keep silent likewise ahead of the TLS handshake
        kLateRead,        // reply, but keep silent likewise ahead of reading the request
        kRefuseHandshake, // over TLS: answer the client's hello with garbage
        kChoose,          // read the request, send what the service chooses to answer it with, close
        // Reply, also over TLS in a full handshake. To a hello that offers a session to resume, do this:
        kAlertAtResumption,   // answer with a fatal alert, close
        kGarbageAtResumption, // answer with garbage, close
        kCloseAtResumption,   // close
        kResetAtResumption,   // reset the connection
        kSilentAtResumption   // keep silent likewise, close
    };
    Manner manner = Manner::kReply;
    std::string bytes;
};

// A whole HTTP message around a SOAP body, with a true Content-Length.
std::string http_message(std::string_view soap, int code = 200, std::string_view reason = "OK");

// HTTP 200 with this SOAP text; faults travel as 500.
Answer answer(std::string_view soap);
Answer fault_answer(std::string_view soap);

struct Request {
    bool tls = false;
    int tls_version = 0;  // as OpenSSL numbers them: TLS1_3_VERSION
    bool resumed = false; // the connection's handshake has resumed a session
    std::string head;     // the request line and the header
    std::string body;
};

class ScriptedService
{
  public:
    // What a request is answered with, as an HTTP message.
    using Choice = std::function<std::string(const Request&)>;

    // Without a choice, a connection is closed unanswered that no scripted answer is left for.
    ScriptedService() : ScriptedService(nullptr) {}
    explicit ScriptedService(Choice choice);
    ~ScriptedService();
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;

    int port() const { return port_; }
    // "http://127.0.0.1:PORT" and its https form: both are served on the one port, told apart by the first
    // byte that the client sends.
    std::string url() const;
    std::string tls_url() const;

    // For TLS connections that come from now on. In the beginning it is a context with a certificate of its
    // own that is signed by itself.
    void set_tls_context(TlsContext context);
    Handshakes handshakes() const;

    // Answers are used in order, one a connection.
    void script(Answer answer);
    void script(const std::vector<Answer>& answers);
    // Drops those that nobody came for.
    void forget_answers();

    std::vector<Request> requests() const;
    // What stood in the SOAP body of the request with this number, counted from 0; empty if there is none.
    std::string request_body(std::size_t number) const;
    std::size_t connections() const;
    // Blocks until this many requests have been read.
    void wait_for_requests(std::size_t count) const;
    // Blocks until this many connections have come.
    void wait_for_connections(std::size_t count) const;
    // Lets held connections go.
    void release();

  private:
    void serve();
    void serve_connection(int socket, const Answer& answer);
    Answer next_answer();
    bool secure(Stream& stream, Answer::Manner manner);
    void refuse_resumption(Stream& stream, Answer::Manner manner);
    void keep_silent(std::unique_lock<std::mutex>& lock);
    void keep_silent();

    int listener_ = -1;
    int wake_[2] = {-1, -1};
    int port_ = 0;
    TlsAcceptor tls_{make_tls_server_context()};
    Choice choice_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::deque<Answer> answers_;
    std::vector<Request> requests_;
    std::size_t connections_ = 0;
    bool released_ = false;
    bool stopping_ = false;
    std::vector<std::thread> connection_threads_;
    std::thread thread_;
};

// A port on which nobody listens, for as long as the object lives: bound, and never listened on.
class DeadPort
{
  public:
    DeadPort();
    ~DeadPort();
    DeadPort(const DeadPort&) = delete;
    DeadPort& operator=(const DeadPort&) = delete;

    int port() const { return port_; }
    std::string url() const;

  private:
    int socket_ = -1;
    int port_ = 0;
};

} // namespace kit

#endif
