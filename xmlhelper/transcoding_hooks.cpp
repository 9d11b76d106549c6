#include "xmlhelper/transcoding_hooks.h"

#include "xmlhelper/transcoding.h"

#include <xercesc/util/XMLString.hpp>

#include <cstddef>
#include <cstdint>

using namespace Oskelund::Tarnholme::VMware::XMLHelper;

extern "C" {

uint16_t* utf8TranscodeForTest(const char* text, size_t* width, size_t* length)
{
    XMLCh* converted = transcodeUtf8ToXml(text);
    if (width) *width = sizeof(XMLCh);
    if (length) *length = xercesc::XMLString::stringLen(converted);
    return reinterpret_cast<uint16_t*>(converted);
}

void releaseXmlChForTest(uint16_t* text)
{
    delete[] reinterpret_cast<XMLCh*>(text);
}

} // extern "C"
