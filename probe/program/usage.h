// How the program tells that its command line can't be followed.
#ifndef SOAPWRAPPER_PROBE_PROGRAM_USAGE_H
#define SOAPWRAPPER_PROBE_PROGRAM_USAGE_H

#include <string>

namespace CLI
{
class App;
class ParseError;
} // namespace CLI

namespace soapwrapper::probe
{

// What is wrong with the command line that the program has failed to parse, as one sentence, with what may
// have been meant.
std::string usage_trouble(const CLI::App& program, const CLI::ParseError& error);

// The same for standard error: under the program's name, and with the command's usage and where its help is.
std::string usage_text(const CLI::App& program, const CLI::ParseError& error);

} // namespace soapwrapper::probe

#endif
