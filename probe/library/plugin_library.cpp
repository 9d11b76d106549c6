#include "probe/library/plugin_library.h"

#include "plugin/host/entry_points.h"
#include "plugin/host/slots.h"
#include "plugin/host/status.h"
#include "probe/library/library_search.h"
#include "probe/library/slots.h"
#include "probe/output/problem.h"
#include "probe/output/status_text.h"

#include <dlfcn.h>
#include <string.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace soapwrapper::probe
{
namespace
{

constexpr char kFileName[] = "libsoapwrapper.so";
constexpr std::uint64_t kHostVersion = 11;

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

std::string place_of_library(const LibraryPlaces& places)
{
    return path_ahead(places.library, kFileName).value_or(places.library.value_or(kFileName));
}

std::optional<std::string> told_place_ahead(const LibraryPlaces& places)
{
    if (places.plugin_path) return places.plugin_path;
    const std::optional<std::string> path = path_ahead(places.library, kFileName);
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path.value_or(""), error);
    return error ? path : real.string();
}

void PluginLibrary::Unload::operator()(void* handle) const
{
    dlclose(handle);
}

void PluginLibrary::begin(LoadStep step) const
{
    if (begins_) begins_(step);
}

void PluginLibrary::load(const LibraryPlaces& places)
{
    constexpr int kMode = RTLD_NOW | RTLD_LOCAL;
    begin(LoadStep::kLoading);
    Loaded loaded = places.library ? load_named(*places.library, kMode) : load_default(kFileName, kMode);
    handle_.reset(loaded.handle);
    if (!handle_) throw library_problem("the library could not be loaded", loaded.reason);
    path_ = std::move(loaded.path);
}

PluginLibrary::PluginLibrary(const LibraryPlaces& places, std::function<void(LoadStep)> begins)
    : begins_(std::move(begins)), configuration_(places.configuration)
{
    load(places);
    auto* init = find_symbol<decltype(stspi_init)>(handle_.get(), "stspi_init");
    auto* init3 = find_symbol<decltype(stspi_init3)>(handle_.get(), "stspi_init3");

    told_path_ = places.plugin_path.value_or(path_);
    begin(LoadStep::kInit);
    check_handshake("stspi_init", init(kHostVersion, told_path_.c_str(), &main_), main_);
    begin(LoadStep::kInit3);
    check_handshake("stspi_init3", init3(kHostVersion, &second_), second_);
}

PluginLibrary::~PluginLibrary()
{
    begin(LoadStep::kTerminate);
    if (auto* const terminate = STSPI_V11_ENTRY(main_.entry_points, stspi_terminate)) terminate();
    begin(LoadStep::kUnloading);
    handle_.reset();
}

std::string PluginLibrary::release() const
{
    return {main_.release, strnlen(main_.release, sizeof main_.release)};
}

void PluginLibrary::fail_empty(TableId table, std::size_t number, const char* name)
{
    throw Problem(ExitCode::kOperation, "not served", std::nullopt,
                  std::string("the library does not serve ") + name + ": slot " + std::to_string(number) +
                      " of its " + (table == TableId::kMain ? "main" : "second") + " table is empty");
}

} // namespace soapwrapper::probe
