// A service that gives every request the same reply, with as little work of its own as will do; and clients
// that do no more than carry the bytes.
#ifndef SOAPWRAPPER_BENCH_CANNED_SERVICE_H
#define SOAPWRAPPER_BENCH_CANNED_SERVICE_H

#include "tests/kit/certificate.h"

#include <openssl/ssl.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace bench
{

enum class Channel {
    kPlain,
    kTls,
    kTls12,         // no later version
    kTlsManyTickets // a hundred for each full handshake
};

class CannedService
{
  public:
    // What a request is answered with. The text must outlive the answer.
    using Choice = std::function<const std::string&(const std::string& request)>;

    // `reply` is a whole HTTP message. Each thread serves one connection at a time.
    CannedService(std::string reply, Channel channel, int threads = 1);
    CannedService(Choice choice, Channel channel, int threads = 1);
    ~CannedService();
    CannedService(const CannedService&) = delete;
    CannedService& operator=(const CannedService&) = delete;

    int port() const { return port_; }
    std::string url() const;
    // The bytes of the last request.
    std::string last_request() const;

  private:
    void serve();
    void serve_connection(int socket);

    std::string reply_;
    Choice choice_;
    kit::TlsContext context_; // none: without TLS
    int listener_ = -1;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    mutable std::mutex mutex_;
    std::string last_request_;
    std::vector<std::thread> threads_;
};

// Connects, sends `request`, reads until the peer closes; the number of bytes read.
std::size_t bare_exchange(int port, const std::string& request);
// The same over TLS, with a context that the caller has prepared.
std::size_t bare_tls_exchange(int port, const std::string& request, SSL_CTX* context);

} // namespace bench

#endif
