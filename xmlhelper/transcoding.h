// Between UTF-8 and the parser's 16-bit texts, through one transcoder that the process shares.
#ifndef SOAPWRAPPER_XMLHELPER_TRANSCODING_H
#define SOAPWRAPPER_XMLHELPER_TRANSCODING_H

#include <xercesc/util/XercesDefs.hpp>

#include <cstddef>
#include <string>

XERCES_CPP_NAMESPACE_BEGIN
class XMLTranscoder;
XERCES_CPP_NAMESPACE_END

namespace Oskelund::Tarnholme::VMware::XMLHelper
{

// The longest text that passes: 16-bit characters on the way out, bytes on the way in.
constexpr std::size_t kMaxTranscodedLength = 65536;

// What a text accessor gives back in the absence of anything better.
extern const std::string EmptyString;

// Throws std::domain_error if it can't be had.
xercesc::XMLTranscoder* getUtf8Transcoder();

// Throws std::domain_error for a text that is too long.
std::string transcodeXmlToUtf8(const XMLCh* text);

// A new array, the caller's to delete[]; null for null. Of text that isn't UTF-8 it holds what stands ahead
// of the first bad byte. Throws std::domain_error for a text that is too long.
XMLCh* transcodeUtf8ToXml(const char* text);

// The name of an element or an attribute. The array is the tag cache's and lives as long as the library.
// Throws like transcodeUtf8ToXml.
const XMLCh* transcodeUtf8TagToXmlTag(const std::string& tag);

} // namespace Oskelund::Tarnholme::VMware::XMLHelper

#endif
