#ifndef SOAPWRAPPER_PROBE_WIRE_WRITTEN_FILE_H
#define SOAPWRAPPER_PROBE_WIRE_WRITTEN_FILE_H

#include <ext/stdio_filebuf.h>

#include <ostream>
#include <string>

namespace soapwrapper::probe::wire
{

// A file for what only its owner should read. A regular file is replaced by a new one; a pipe or a device is
// written to. Anything else, such as a link to a file, is a Problem.
class WrittenFile
{
  public:
    explicit WrittenFile(const std::string& path);
    ~WrittenFile() = default;
    WrittenFile(const WrittenFile&) = delete;
    WrittenFile& operator=(const WrittenFile&) = delete;

    std::ostream& stream() { return stream_; }

  private:
    __gnu_cxx::stdio_filebuf<char> buffer_;
    std::ostream stream_;
};

} // namespace soapwrapper::probe::wire

#endif
