// Standard input, output and error, as the whole program relies on them.
#ifndef SOAPWRAPPER_PROBE_PROGRAM_STANDARD_STREAMS_H
#define SOAPWRAPPER_PROBE_PROGRAM_STANDARD_STREAMS_H

#include "probe/output/descriptor_stream.h"

#include <iostream>
#include <streambuf>

namespace soapwrapper::probe
{

// To be called first. A standard descriptor that is closed would become that of a connection; and a closed
// pipe must not end the process, which has yet to close what is open at the service.
void prepare_standard_descriptors();

// Everything for std::cerr goes by way of a stream, for as long as this lives.
class ErrorsBy
{
  public:
    explicit ErrorsBy(DescriptorStream& stream) : before_(std::cerr.rdbuf(stream.rdbuf())) {}
    ~ErrorsBy() { std::cerr.rdbuf(before_); }
    ErrorsBy(const ErrorsBy&) = delete;
    ErrorsBy& operator=(const ErrorsBy&) = delete;

  private:
    std::streambuf* const before_;
};

// The exit code of a program whose output couldn't be written. It is told, but for a closed pipe: whoever
// closed it knows.
int fail_for_output(int error);

} // namespace soapwrapper::probe

#endif
