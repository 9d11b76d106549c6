// A service without a network: it takes the place of a proxy's socket, keeps what the proxy sends, and
// answers with a text that the test has made.
#ifndef SOAPWRAPPER_TESTS_SCHEMA_CANNED_SERVICE_H
#define SOAPWRAPPER_TESTS_SCHEMA_CANNED_SERVICE_H

#include <functional>
#include <string>

#include "soapwrapperPSVWSSoapBindingProxy.h"

namespace schema
{

inline const char* const kServiceNamespace = SERVICE_NAMESPACE;
inline const char* const kSoap11Envelope = "http://schemas.xmlsoap.org/soap/envelope/";
inline const char* const kSoap12Envelope = "http://www.w3.org/2003/05/soap-envelope";

// What stands in the body of an envelope that the proxy wrote.
std::string content_of_body(const std::string& message);

// What `put` writes into the body of an envelope, without any service.
std::string written_in_body(const std::function<int(soap*)>& put);

class CannedService
{
  public:
    // The service must outlive the proxy's calls.
    explicit CannedService(PSVWSSoapBindingProxy& proxy);

    void refuse_connections() { refuses_ = true; }
    // Answers with an HTTP message of this status and body.
    void reply(const std::string& status, const std::string& body);
    // Answers with what stands in the envelope's body.
    void reply_body(const std::string& content) { reply("200 OK", envelope(content)); }
    void fault_body(const std::string& content) { reply("500 Internal Server Error", envelope(content)); }

    // The prefix ns1 is bound to the service's namespace, xsi to that of schema instances.
    static std::string envelope(const std::string& content,
                                const std::string& envelope_namespace = kSoap11Envelope);

    const std::string& sent() const { return sent_; }
    // The HTTP header, with its line ends, and what follows it.
    std::string sent_header() const { return sent_.substr(0, sent_.find("\r\n\r\n") + 2); }
    std::string sent_body() const { return sent_.substr(sent_.find("\r\n\r\n") + 4); }
    std::string sent_content() const { return content_of_body(sent_); }

    const std::string& endpoint() const { return endpoint_; }
    const std::string& host() const { return host_; }
    int port() const { return port_; }
    int opened() const { return opened_; }
    int closed() const { return closed_; }

  private:
    static SOAP_SOCKET open(soap* context, const char* endpoint, const char* host, int port);
    static int send(soap* context, const char* text, size_t length);
    static size_t receive(soap* context, char* buffer, size_t room);
    static int close(soap* context);
    static int poll(soap* context);

    bool refuses_ = false;
    std::string reply_;
    size_t read_ = 0;
    std::string sent_;
    std::string endpoint_;
    std::string host_;
    int port_ = 0;
    int opened_ = 0;
    int closed_ = 0;
};

} // namespace schema

#endif
