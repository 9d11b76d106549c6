#ifndef SOAPWRAPPER_PROBE_WIRE_WRITTEN_FILE_H
#define SOAPWRAPPER_PROBE_WIRE_WRITTEN_FILE_H

#include "probe/output/descriptor_stream.h"

#include <ostream>
#include <string>

namespace soapwrapper::probe::wire
{

// A file for what only its owner should read. A regular file is replaced by a new one; a pipe or a device is
// written to. Anything else, such as a link to a file, is a Problem.
class WrittenFile
{
  public:
    // `wait`: until a pipe takes something.
    WrittenFile(const std::string& path, const DescriptorBuffer::Wait& wait);
    ~WrittenFile();
    WrittenFile(const WrittenFile&) = delete;
    WrittenFile& operator=(const WrittenFile&) = delete;

    std::ostream& stream() { return stream_; }

  private:
    const int descriptor_;
    DescriptorStream stream_;
};

} // namespace soapwrapper::probe::wire

#endif
