#include "probe/library/plugin_manager.h"

#include "probe/library/library_search.h"
#include "probe/output/problem.h"

#include <dlfcn.h>

#include <string>

namespace soapwrapper::probe
{

void load_plugin_manager(const std::string& path)
{
    const Loaded loaded = load_named(path, RTLD_NOW | RTLD_GLOBAL);
    if (!loaded.handle) throw library_problem("the plug-in manager could not be loaded", loaded.reason);
    if (!dlsym(loaded.handle, "stsm_init")) {
        throw library_problem("the plug-in manager does not export stsm_init", loaded.path);
    }
}

bool plugin_manager_in_sight()
{
    return dlsym(RTLD_DEFAULT, "stsm_init") != nullptr;
}

} // namespace soapwrapper::probe
