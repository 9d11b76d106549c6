#include "canned_service.h"

#include <algorithm>
#include <cstring>
#include <sstream>

namespace schema
{

namespace
{

// Any number will do: no system call ever sees it.
constexpr SOAP_SOCKET kPretendedSocket = 1 << 20;

CannedService& service_of(soap* context)
{
    return *static_cast<CannedService*>(context->user);
}

} // namespace

CannedService::CannedService(PSVWSSoapBindingProxy& proxy)
{
    proxy.user = this;
    proxy.fopen = open;
    proxy.fsend = send;
    proxy.frecv = receive;
    proxy.fclose = close;
    proxy.fpoll = poll;
}

void CannedService::reply(const std::string& status, const std::string& body)
{
    reply_ = "HTTP/1.1 " + status +
             "\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " + std::to_string(body.size()) +
             "\r\nConnection: close\r\n\r\n" + body;
    read_ = 0;
}

std::string CannedService::envelope(const std::string& content, const std::string& envelope_namespace)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><E:Envelope xmlns:E=\"" + envelope_namespace +
           "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:ns1=\"" +
           std::string(kServiceNamespace) + "\"><E:Body>" + content + "</E:Body></E:Envelope>";
}

std::string content_of_body(const std::string& message)
{
    const std::string begin = "<SOAP-ENV:Body>";
    const size_t from = message.find(begin);
    const size_t to = message.find("</SOAP-ENV:Body>");
    if (from == std::string::npos || to == std::string::npos) return "no SOAP body in: " + message;
    return message.substr(from + begin.size(), to - from - begin.size());
}

std::string written_in_body(const std::function<int(soap*)>& put)
{
    PSVWSSoapBindingProxy context;
    std::ostringstream text;
    context.os = &text;
    soap_begin(&context);
    soap_set_version(&context, 1);
    context.encodingStyle = nullptr;
    if (soap_begin_send(&context) || soap_envelope_begin_out(&context) || soap_body_begin_out(&context) ||
        put(&context) || soap_body_end_out(&context) || soap_envelope_end_out(&context) ||
        soap_end_send(&context)) {
        return "error " + std::to_string(context.error);
    }
    return content_of_body(text.str());
}

SOAP_SOCKET CannedService::open(soap* context, const char* endpoint, const char* host, int port)
{
    CannedService& self = service_of(context);
    ++self.opened_;
    self.endpoint_ = endpoint;
    self.host_ = host;
    self.port_ = port;
    self.sent_.clear();
    self.read_ = 0;
    if (self.refuses_) {
        context->error = SOAP_TCP_ERROR;
        return SOAP_INVALID_SOCKET;
    }
    return kPretendedSocket;
}

int CannedService::send(soap* context, const char* text, size_t length)
{
    service_of(context).sent_.append(text, length);
    return SOAP_OK;
}

size_t CannedService::receive(soap* context, char* buffer, size_t room)
{
    CannedService& self = service_of(context);
    const size_t length = std::min(room, self.reply_.size() - self.read_);
    std::memcpy(buffer, self.reply_.data() + self.read_, length);
    self.read_ += length;
    return length;
}

int CannedService::close(soap* context)
{
    // The runtime closes ahead of each connect, too, open or not.
    if (context->socket != SOAP_INVALID_SOCKET) ++service_of(context).closed_;
    context->socket = SOAP_INVALID_SOCKET;
    return SOAP_OK;
}

int CannedService::poll(soap*)
{
    return SOAP_OK;
}

} // namespace schema
