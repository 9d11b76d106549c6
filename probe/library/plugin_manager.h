// The host framework's plug-in manager, through which the library finds its second plug-in.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_PLUGIN_MANAGER_H
#define SOAPWRAPPER_PROBE_LIBRARY_PLUGIN_MANAGER_H

#include <string>

namespace soapwrapper::probe
{

// Loads it, as load_named() finds it, in everybody's sight, ahead of the library, and for good: nobody tells
// when the second plug-in's work is over. One that can't be loaded, or is none, is a Problem.
void load_plugin_manager(const std::string& path);

// Whether the library sees one, loaded here or ahead of the program.
bool plugin_manager_in_sight();

} // namespace soapwrapper::probe

#endif
