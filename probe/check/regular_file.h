// Files that the configuration is made of, which may be anything.
#ifndef SOAPWRAPPER_PROBE_CHECK_REGULAR_FILE_H
#define SOAPWRAPPER_PROBE_CHECK_REGULAR_FILE_H

#include <sys/types.h>

#include <cstdio>
#include <memory>
#include <string>

namespace soapwrapper::probe
{

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

struct RegularFile {
    enum class Kind { kReadable, kMissing, kUnreadable, kIrregular, kTooLarge };

    Kind kind = Kind::kReadable;
    std::unique_ptr<std::FILE, CloseFile> stream;
    std::string fault; // why there is no stream
    bool writable_by_all = false;
};

// Opens it for reading if it is a regular one and not larger: a pipe would hold up whoever reads it, a device
// never end.
RegularFile open_regular(const std::string& path, off_t largest);

} // namespace soapwrapper::probe

#endif
