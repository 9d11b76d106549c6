// What a run writes of the library's exchanges with services.
#ifndef SOAPWRAPPER_PROBE_WIRE_WATCHING_H
#define SOAPWRAPPER_PROBE_WIRE_WATCHING_H

#include "probe/output/descriptor_stream.h"
#include "probe/output/problem.h"
#include "probe/wire/exchange.h"
#include "probe/wire/exchanges.h"
#include "probe/wire/recorder.h"
#include "probe/wire/secrets.h"
#include "probe/wire/written_file.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

namespace soapwrapper::probe::wire
{

// Made ahead of the library, and at its end behind it.
class Watching
{
  public:
    // `wait`: until a pipe takes something; see DescriptorBuffer.
    explicit Watching(DescriptorBuffer::Wait wait) : wait_(std::move(wait)) {}

    // Writes each exchange as a text as soon as it ends, to a file of this path or, if it is "-", to
    // `errors`. A path that can't be written to is a Problem.
    void trace(const std::string& path, std::ostream& errors);

    // Writes each exchange as a line of a recording, of which `library` is the release of the one at work. A
    // path that can't be written to is a Problem.
    void record(const std::string& path, const std::string& library);

    // Writes what is under way still. The result is what was wrong with the writing, if anything.
    std::optional<Problem> finish();

  private:
    void write_trace(const Exchange& exchange);

    const DescriptorBuffer::Wait wait_;
    Secrets secrets_;
    std::optional<WrittenFile> file_;
    std::ostream* trace_ = nullptr;
    std::uint64_t last_ = 0;
    std::optional<Recorder> recorder_;
    Exchanges exchanges_; // the last member: at its end it gives what is under way to the others
};

} // namespace soapwrapper::probe::wire

#endif
