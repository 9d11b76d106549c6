#include "tests/kit/soap_text.h"

namespace kit
{
namespace
{

constexpr char kHead[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:ns1=\"" SOAPWRAPPER_SERVICE_NAMESPACE
    "\"><SOAP-ENV:Body>";
constexpr char kTail[] = "</SOAP-ENV:Body></SOAP-ENV:Envelope>";

} // namespace

std::string element(std::string_view name, std::string_view content)
{
    const std::string tag = "ns1:" + std::string(name);
    return "<" + tag + ">" + std::string(content) + "</" + tag + ">";
}

std::string nil(std::string_view name)
{
    return "<ns1:" + std::string(name) + " xsi:nil=\"true\"/>";
}

std::string envelope(std::string_view body)
{
    return kHead + std::string(body) + kTail;
}

std::string reply(std::string_view name, std::string_view content)
{
    return envelope(element(name, content));
}

std::string fault_with_detail(std::string_view detail, std::string_view faultcode, std::string_view text)
{
    std::string content = "<faultcode>" + std::string(faultcode) + "</faultcode><faultstring>" +
                          std::string(text) + "</faultstring>";
    if (!detail.empty()) content += "<detail>" + std::string(detail) + "</detail>";
    return envelope("<SOAP-ENV:Fault>" + content + "</SOAP-ENV:Fault>");
}

std::string fault(int code, std::string_view faultcode, std::string_view text)
{
    return fault_with_detail(element("STSException", element("errorCode", std::to_string(code))), faultcode,
                             text);
}

std::string rendered_fault(int code, std::string_view faultcode, std::string_view text)
{
    return "SOAP 1.1 fault " + std::string(faultcode) + "[no subcode]\n\"" + std::string(text) +
           "\"\nDetail: \nHANDLE_SOAP_FAULT: " + std::to_string(code);
}

std::string body_of(std::string_view message)
{
    constexpr std::string_view kOpen = "<SOAP-ENV:Body>";
    constexpr std::string_view kClose = "</SOAP-ENV:Body>";
    const std::size_t begin = message.find(kOpen);
    const std::size_t end = message.rfind(kClose);
    if (begin == std::string_view::npos || end == std::string_view::npos) return "no SOAP body";
    return std::string(message.substr(begin + kOpen.size(), end - begin - kOpen.size()));
}

} // namespace kit
