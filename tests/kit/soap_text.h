// SOAP messages as a person would write them. Nothing here knows the generated binding, so that one mistake
// can't hide on both sides.
#ifndef SOAPWRAPPER_TESTS_KIT_SOAP_TEXT_H
#define SOAPWRAPPER_TESTS_KIT_SOAP_TEXT_H

#include <string>
#include <string_view>

namespace kit
{

// <ns1:name>content</ns1:name>, the content as it stands.
std::string element(std::string_view name, std::string_view content = "");
// <ns1:name xsi:nil="true"/>, as requests and replies write it.
std::string nil(std::string_view name);

// A whole SOAP 1.1 envelope around what stands in its body.
std::string envelope(std::string_view body);
// The envelope of a reply: <ns1:name>content</ns1:name> in the body.
std::string reply(std::string_view name, std::string_view content = "");

// The envelope of a fault whose detail bears a status.
std::string fault(int code, std::string_view faultcode = "SOAP-ENV:Client",
                  std::string_view text = "it went wrong");
// The same with another detail element, or none where `detail` is empty.
std::string fault_with_detail(std::string_view detail, std::string_view faultcode = "SOAP-ENV:Client",
                              std::string_view text = "it went wrong");

// What the library logs of such a fault: the SOAP runtime's rendering, and the frame's own line.
std::string rendered_fault(int code, std::string_view faultcode = "SOAP-ENV:Client",
                           std::string_view text = "it went wrong");

// What stands in the body of a request or reply.
std::string body_of(std::string_view message);

} // namespace kit

#endif
