// Writes a recording of the library's exchanges.
#ifndef SOAPWRAPPER_PROBE_WIRE_RECORDER_H
#define SOAPWRAPPER_PROBE_WIRE_RECORDER_H

#include "messages/blotter.h"
#include "messages/recording.h"
#include "probe/output/descriptor_stream.h"
#include "probe/output/problem.h"
#include "probe/wire/exchange.h"
#include "probe/wire/written_file.h"

#include <cstddef>
#include <optional>
#include <string>

namespace soapwrapper::probe::wire
{

class Recorder
{
  public:
    // A path that can't be written to is a Problem.
    Recorder(const std::string& path, const messages::RecordingHead& head, messages::Blotter& blotter,
             const DescriptorBuffer::Wait& wait);

    void take(const Exchange& exchange);

    // What was wrong with the writing, if anything.
    std::optional<Problem> problem() const;

  private:
    // Every line is written at once, so that it is there whatever becomes of this program.
    void write(const std::string& line);

    messages::Blotter& blotter_;
    WrittenFile file_;
    std::size_t exchanges_ = 0;
    std::size_t bytes_ = 0;
    bool is_full_ = false;
    bool has_failed_ = false;
};

// As a recording keeps it, but with what is secret.
messages::RecordedExchange recorded(const Exchange& exchange);

} // namespace soapwrapper::probe::wire

#endif
