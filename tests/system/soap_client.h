// A client that sends what a test writes, byte for byte, and gives back what comes.
#ifndef SOAPWRAPPER_TESTS_SYSTEM_SOAP_CLIENT_H
#define SOAPWRAPPER_TESTS_SYSTEM_SOAP_CLIENT_H

#include <openssl/ssl.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

// A connection to the loopback. It blocks.
class ClientSocket
{
  public:
    explicit ClientSocket(int port, const char* host = "127.0.0.1");
    ~ClientSocket();
    ClientSocket(const ClientSocket&) = delete;
    ClientSocket& operator=(const ClientSocket&) = delete;

    int fd() const { return fd_; }
    void send(std::string_view bytes) const;
    // Up to the end; a reset ends it too.
    std::string receive_all() const;
    bool has_something_to_read() const;
    // Closes with a reset.
    void reset();

  private:
    int fd_ = -1;
};

class TlsClient
{
  public:
    // Shakes hands, prepared by that if it is given; throws if that fails.
    using Prepare = std::function<void(SSL*)>;
    explicit TlsClient(int port, const Prepare& prepare = {}, const char* host = "127.0.0.1");

    void send(std::string_view bytes) const;
    std::string receive_all() const;
    SSL* ssl() const { return ssl_.get(); }

  private:
    struct Free {
        void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
        void operator()(SSL* ssl) const { SSL_free(ssl); }
    };

    ClientSocket socket_;
    std::unique_ptr<SSL_CTX, Free> context_;
    std::unique_ptr<SSL, Free> ssl_;
};

struct HttpReply {
    int status = 0; // 0: none came
    std::string head;
    std::string body;
};

HttpReply parse_reply(const std::string& bytes);

// An HTTP request around a body, with its length.
std::string post_text(std::string_view body);

// Asks for an operation with this content. The reply's body is what stands inside the SOAP body.
HttpReply ask(int port, std::string_view operation, std::string_view content, bool tls = false);

// The text between the first start tag ns1:name and its end tag; empty if there is none.
std::string text_of(std::string_view message, std::string_view name);
// The error code of a client's fault with a detail; -1 if it is none.
long fault_code(const HttpReply& reply);

#endif
