#include "probe/library/plugin_library.h"

#include "plugin/host/entry_points.h"
#include "plugin/host/slots.h"
#include "plugin/host/status.h"
#include "probe/library/slots.h"
#include "probe/output/problem.h"
#include "probe/output/status_text.h"

#include <dlfcn.h>
#include <link.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace soapwrapper::probe
{
namespace
{

namespace fs = std::filesystem;

constexpr char kFileName[] = "libsoapwrapper.so";
constexpr std::uint64_t kHostVersion = 11;

// What to give to the loader: it searches for a name without a slash and takes any other as a path.
std::string loadable_name(const std::optional<std::string>& path)
{
    std::error_code error;
    if (path) {
        const fs::path absolute = fs::absolute(*path, error);
        return error ? *path : absolute.string();
    }
    const fs::path beside = fs::read_symlink("/proc/self/exe", error).replace_filename(kFileName);
    return !error && fs::exists(beside, error) ? beside.string() : kFileName;
}

std::string real_path(void* handle, const std::string& name)
{
    const link_map* map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || !map) return name;
    std::error_code error;
    const fs::path path = fs::canonical(map->l_name, error);
    return error ? map->l_name : path.string();
}

template <class Function>
Function* find_symbol(void* handle, const char* name)
{
    dlerror();
    void* symbol = dlsym(handle, name);
    if (!symbol) {
        const char* reason = dlerror();
        throw library_problem(std::string("the library does not export ") + name, reason ? reason : "");
    }
    return reinterpret_cast<Function*>(symbol);
}

// A handshake is good if it returned 0, speaks this host's version and gave a table.
template <class Definition>
void check_handshake(const char* name, int status, const Definition& definition)
{
    if (status != STS_EOK) {
        const StatusText text = status_text(status);
        throw Problem(ExitCode::kLibrary, text.name, status,
                      std::string("the library refused ") + name + ": " + text.meaning);
    }
    if (definition.version < kHostVersion || !definition.entry_points) {
        throw library_problem(std::string("the library's answer to ") + name + " cannot be used",
                              definition.entry_points
                                  ? "interface version " + std::to_string(definition.version)
                                  : "it gave no table of entries");
    }
}

} // namespace

void PluginLibrary::Unload::operator()(void* handle) const
{
    dlclose(handle);
}

PluginLibrary::PluginLibrary(const std::optional<std::string>& path,
                             const std::optional<std::string>& plugin_path)
{
    const std::string name = loadable_name(path);
    handle_.reset(dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!handle_) {
        const char* reason = dlerror();
        throw library_problem("the library could not be loaded", reason ? reason : name);
    }
    auto* init = find_symbol<decltype(stspi_init)>(handle_.get(), "stspi_init");
    auto* init3 = find_symbol<decltype(stspi_init3)>(handle_.get(), "stspi_init3");

    const std::string told = plugin_path ? *plugin_path : real_path(handle_.get(), name);
    check_handshake("stspi_init", init(kHostVersion, told.c_str(), &main_), main_);
    check_handshake("stspi_init3", init3(kHostVersion, &second_), second_);
}

PluginLibrary::~PluginLibrary()
{
    if (auto* const terminate = STSPI_V11_ENTRY(main_.entry_points, stspi_terminate)) terminate();
}

void PluginLibrary::fail_empty(TableId table, std::size_t number, const char* name)
{
    throw Problem(ExitCode::kOperation, "not served", std::nullopt,
                  std::string("the library does not serve ") + name + ": slot " + std::to_string(number) +
                      " of its " + (table == TableId::kMain ? "main" : "second") + " table is empty");
}

} // namespace soapwrapper::probe
