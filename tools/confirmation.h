// The question ahead of everything that can't be undone.
#ifndef SOAPWRAPPER_TOOLS_CONFIRMATION_H
#define SOAPWRAPPER_TOOLS_CONFIRMATION_H

#include <iosfwd>
#include <string>

namespace CLI
{
class App;
}

namespace soapwrapper::probe
{

void add_yes_option(CLI::App& command, bool& yes);

// Puts "QUESTION [y/N]" to `out` and takes a line of `in`: anything but y or yes means no.
bool answered_yes(const std::string& question, std::istream& in, std::ostream& out);

// Asks on the terminal, unless `yes`. Without a terminal, or with another answer, a Problem is thrown.
// `thing` must be clean.
void confirm_deletion(const std::string& thing, bool yes);

} // namespace soapwrapper::probe

#endif
