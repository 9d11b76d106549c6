/* Exported for tests that only have the built library: the conversion from UTF-8 as the XML helper does it.
 */
#ifndef SOAPWRAPPER_XMLHELPER_TRANSCODING_HOOKS_H
#define SOAPWRAPPER_XMLHELPER_TRANSCODING_HOOKS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The NUL-terminated UTF-8 `text` in UTF-16, with a terminator, for releaseXmlChForTest to release; null for
 * null. `width` receives the size of one character, 2, and `length` the count of characters without the
 * terminator, 0 for null; either may be null. Throws std::domain_error for more than 65536 bytes. */
__attribute__((visibility("default"))) uint16_t* utf8TranscodeForTest(const char* text, size_t* width,
                                                                      size_t* length);

/* Gives back what utf8TranscodeForTest returned. Null is welcome. */
__attribute__((visibility("default"))) void releaseXmlChForTest(uint16_t* text);

#ifdef __cplusplus
}
#endif

#endif
