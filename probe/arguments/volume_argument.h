// Volumes as the command line and the output write them: KIND:FIRST[:SECOND[:THIRD]].
#ifndef SOAPWRAPPER_PROBE_ARGUMENTS_VOLUME_ARGUMENT_H
#define SOAPWRAPPER_PROBE_ARGUMENTS_VOLUME_ARGUMENT_H

#include "plugin/host/host_records.h"
#include "probe/arguments/command_line.h"

#include <string>

namespace soapwrapper::probe
{

// Fills `volume`. A backslash takes the character behind it as it is; the last text that a kind has goes to
// the end, colons and all. The result is what is wrong with `text`, if anything.
std::string parse_volume(const std::string& text, sts_volume_spec_v11_t& volume);

// The volume in the form that parse_volume reads, cleaned; empty if none of its texts is filled.
std::string volume_text(const sts_volume_spec_v11_t& volume);

// A record that shows whether an export has filled it: of a device the library brings nothing back.
sts_volume_spec_v11_t unfilled_volume();

// `--volume`, which is parsed with the command line. It isn't required.
Option add_volume_option(const Command& command, sts_volume_spec_v11_t& volume,
                         const std::string& description);

} // namespace soapwrapper::probe

#endif
