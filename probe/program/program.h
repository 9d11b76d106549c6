// The program's command line.
#ifndef SOAPWRAPPER_PROBE_PROGRAM_PROGRAM_H
#define SOAPWRAPPER_PROBE_PROGRAM_PROGRAM_H

namespace soapwrapper::probe
{

// Reads the command line and does what it says. The result is the exit code.
int run_command_line(int argc, char** argv);

} // namespace soapwrapper::probe

#endif
