// The question ahead of everything that can't be undone.
#ifndef SOAPWRAPPER_PROBE_ARGUMENTS_CONFIRMATION_H
#define SOAPWRAPPER_PROBE_ARGUMENTS_CONFIRMATION_H

#include "probe/arguments/command_line.h"

#include <iosfwd>
#include <string>

namespace soapwrapper::probe
{

// `deed` says what is done without asking, as in "Delete".
void add_yes_option(const Command& command, bool& yes, const std::string& deed = "Delete");

// Puts "QUESTION [y/N]" to `out` and takes a line of `in`: anything but y or yes means no.
bool answered_yes(const std::string& question, std::istream& in, std::ostream& out);

// Asks on the terminal, unless `yes`. Without a terminal, or with another answer, a Problem is thrown.
// `thing` must be clean.
void confirm_deletion(const std::string& thing, bool yes);

// The same for whatever else `question` asks for. `undone` tells of its not having happened.
void confirm(const std::string& question, const std::string& undone, bool yes);

} // namespace soapwrapper::probe

#endif
