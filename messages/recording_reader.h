#ifndef SOAPWRAPPER_MESSAGES_RECORDING_READER_H
#define SOAPWRAPPER_MESSAGES_RECORDING_READER_H

#include "messages/recording.h"

#include <istream>
#include <stdexcept>

namespace soapwrapper::messages
{

// Tells the line, and what is wrong with it.
class RecordingError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// Takes any bytes. Of several recordings, one behind the other, the first one's head stays. Throws a
// RecordingError.
Recording read_recording(std::istream& in, const RecordingBounds& bounds = {});

} // namespace soapwrapper::messages

#endif
