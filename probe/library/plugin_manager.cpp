#include "probe/library/plugin_manager.h"

#include "probe/output/problem.h"

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace soapwrapper::probe
{

void load_plugin_manager(const std::string& path)
{
    // The loader would search for a name without a slash.
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    void* handle = dlopen((error ? path : absolute.string()).c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (!handle) {
        const char* reason = dlerror();
        throw library_problem("the plug-in manager could not be loaded", reason ? reason : path);
    }
    if (!dlsym(handle, "stsm_init")) {
        throw library_problem("the plug-in manager does not export stsm_init", path);
    }
}

bool plugin_manager_in_sight()
{
    return dlsym(RTLD_DEFAULT, "stsm_init") != nullptr;
}

} // namespace soapwrapper::probe
