#include "probe/library/library_search.h"

#include <dlfcn.h>
#include <link.h>

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace soapwrapper::probe
{
namespace
{

namespace fs = std::filesystem;

bool is_path(const std::string& name)
{
    return name.find('/') != std::string::npos;
}

std::string absolute(const std::string& path)
{
    std::error_code error;
    const fs::path found = fs::absolute(path, error);
    return error ? path : found.string();
}

std::string real_path(void* handle, const std::string& name)
{
    const link_map* map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || !map) return name;
    std::error_code error;
    const fs::path path = fs::canonical(map->l_name, error);
    return error ? map->l_name : path.string();
}

Loaded load(const std::string& name, int mode)
{
    Loaded loaded;
    dlerror();
    loaded.handle = dlopen(name.c_str(), mode);
    loaded.path = loaded.handle ? real_path(loaded.handle, name) : name;
    if (loaded.handle) return loaded;
    const char* reason = dlerror();
    loaded.reason = reason ? reason : name;
    return loaded;
}

// Beside this program, and in the folders of libraries that belong to the folder of an installed program.
std::optional<std::string> in_own_folders(const std::string& file_name)
{
    std::error_code error;
    const fs::path own = fs::read_symlink("/proc/self/exe", error).parent_path();
    if (error) return std::nullopt;
    const std::array<fs::path, 3> folders = {own, own / SOAPWRAPPER_LIBRARIES_FROM_PROGRAM, own / "../lib"};
    for (const fs::path& folder : folders) {
        const fs::path path = (folder / file_name).lexically_normal();
        if (fs::exists(path, error)) return path.string();
    }
    return std::nullopt;
}

// The loader names what it hasn't found, which may be something that the library needs.
bool was_not_found(const std::string& name, const std::string& reason)
{
    return reason.rfind(name + ": cannot open shared object file", 0) == 0;
}

} // namespace

Loaded load_named(const std::string& name, int mode)
{
    if (is_path(name)) return load(absolute(name), mode);
    Loaded loaded = load(name, mode);
    if (loaded.handle || !was_not_found(name, loaded.reason)) return loaded;
    if (const auto own = in_own_folders(name)) return load(*own, mode);
    std::error_code error;
    if (fs::exists(name, error)) {
        loaded.reason +=
            "\nA name without a slash is not looked for in the current folder: did you mean ./" + name + "?";
    }
    return loaded;
}

Loaded load_default(const char* file_name, int mode)
{
    return load(in_own_folders(file_name).value_or(file_name), mode);
}

std::optional<std::string> path_ahead(const std::optional<std::string>& name, const char* file_name)
{
    if (!name) return in_own_folders(file_name);
    if (is_path(*name)) return absolute(*name);
    return std::nullopt;
}

} // namespace soapwrapper::probe
