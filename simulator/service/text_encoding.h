#ifndef SOAPWRAPPER_SIMULATOR_SERVICE_TEXT_ENCODING_H
#define SOAPWRAPPER_SIMULATOR_SERVICE_TEXT_ENCODING_H

namespace soapwrapper::simulator
{

// What the bytes of a text are on the wire: each the character of its number, or together UTF-8.
enum class TextEncoding { kLatin1, kUtf8 };

} // namespace soapwrapper::simulator

#endif
