// The recording that a replay answers from.
#ifndef SOAPWRAPPER_SIMULATOR_REPLAYED_FILE_H
#define SOAPWRAPPER_SIMULATOR_REPLAYED_FILE_H

#include "messages/recording.h"

#include <ostream>
#include <string>

namespace soapwrapper::simulator
{

// Throws a messages::RecordingError that names the file.
messages::Recording recording_in_file(const std::string& path);

// What is in it goes to `out`, and what of it can't be replayed to `warnings`.
void tell_of_recording(const messages::Recording& recording, std::ostream& out, std::ostream& warnings);

} // namespace soapwrapper::simulator

#endif
