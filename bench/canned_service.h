// A service that gives every request the same reply, with as little work of its own as will do; and clients
// that do no more than carry the bytes.
#ifndef SOAPWRAPPER_BENCH_CANNED_SERVICE_H
#define SOAPWRAPPER_BENCH_CANNED_SERVICE_H

#include "tests/kit/certificate.h"

#include <openssl/ssl.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace bench
{

class CannedService
{
  public:
    // What a request is answered with. The text must outlive the answer.
    using Choice = std::function<const std::string&(const std::string& request)>;

    // `reply` is a whole HTTP message.
    CannedService(std::string reply, bool tls);
    CannedService(Choice choice, bool tls);
    ~CannedService();
    CannedService(const CannedService&) = delete;
    CannedService& operator=(const CannedService&) = delete;

    int port() const { return port_; }
    std::string url() const;
    // The bytes of the last request.
    const std::string& last_request() const { return last_request_; }
    void set_reply(std::string reply) { reply_ = std::move(reply); }

  private:
    void serve();
    void serve_connection(int socket);

    std::string reply_;
    Choice choice_;
    bool tls_;
    kit::TlsContext context_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    std::string last_request_;
    std::thread thread_;
};

// Connects, sends `request`, reads until the peer closes; the number of bytes read.
std::size_t bare_exchange(int port, const std::string& request);
// The same over TLS, with a context that the caller has prepared.
std::size_t bare_tls_exchange(int port, const std::string& request, SSL_CTX* context);

} // namespace bench

#endif
