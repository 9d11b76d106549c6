// The texts of requests and replies, for the generated code.
#ifndef SOAPWRAPPER_SERVICE_WIRE_TEXT_H
#define SOAPWRAPPER_SERVICE_WIRE_TEXT_H

#include <string>
#include <string_view>

struct soap;

namespace soapwrapper
{

// The text as UTF-8. A pair of surrogates becomes the character that it stands for; every other byte that
// belongs to no character becomes the one of its number in Latin-1, so that nothing is lost.
std::string to_valid_utf8(std::string_view text);

} // namespace soapwrapper

// In place of the runtime's functions of these names. Where a context's strings hold Latin-1 they are the
// runtime's; where they hold UTF-8, what comes in or goes out as broken UTF-8 is mended on the way.
extern "C" {
char* soapwrapper_string_in(soap* context, int flag, long minimum, long maximum, const char* pattern);
int soapwrapper_string_out(soap* context, const char* text, int flag);
}

#endif
