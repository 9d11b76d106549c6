// Where shared libraries are looked for, the plug-in library and the plug-in manager alike.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_LIBRARY_SEARCH_H
#define SOAPWRAPPER_PROBE_LIBRARY_LIBRARY_SEARCH_H

#include <optional>
#include <string>

namespace soapwrapper::probe
{

struct Loaded {
    void* handle = nullptr; // for dlclose()
    std::string path;       // the real one, or the name that couldn't be loaded
    std::string reason;     // why there is no handle
};

// Loads what the user names, with the mode that dlopen() takes. A name with a slash is a path. Any other is
// looked for where the system's loader does, then in this program's own folders: beside it, and where it is
// installed together with its libraries.
Loaded load_named(const std::string& name, int mode);

// Loads a library that nobody named: from this program's own folders, else from where the loader finds it.
Loaded load_default(const char* file_name, int mode);

// The path that the library is going to be loaded from, as far as that is known ahead of it.
std::optional<std::string> path_ahead(const std::optional<std::string>& name, const char* file_name);

} // namespace soapwrapper::probe

#endif
