// What a loaded library says of its making, in the note with package metadata that it may carry.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_RELEASE_NOTE_H
#define SOAPWRAPPER_PROBE_LIBRARY_RELEASE_NOTE_H

#include <cstddef>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

// Cleaned texts; empty ones are not told.
struct ReleaseNote {
    std::string name;
    std::string version;
    std::string gsoap;
    std::string openssl;
};

// Of the image behind a handle of the loader. None: it carries no note that can be read.
std::optional<ReleaseNote> release_note_of(void* handle);

// The version of the TLS library that the image behind a handle uses, or empty: it can't be known.
std::string tls_library_of(void* handle);

// Looks through a segment of notes, whatever it holds.
std::optional<ReleaseNote> find_release_note(const char* notes, std::size_t size, std::size_t alignment);

} // namespace soapwrapper::probe

#endif
