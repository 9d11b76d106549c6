// The library, driven as a host drives it: loaded by its path, greeted by two handshakes, and from then on
// called through the slots of its tables only.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_PLUGIN_LIBRARY_H
#define SOAPWRAPPER_PROBE_LIBRARY_PLUGIN_LIBRARY_H

#include "plugin/host/entry_points.h"
#include "probe/library/slots.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

// A file that stands for the library's own configuration.
struct ReplacedConfiguration {
    std::string name;  // as the user says it
    std::string bytes; // the path at which its bytes are, as the library gets them
};

// What the user says of places; none: the default.
struct LibraryPlaces {
    std::optional<std::string> library;
    // What the library is told about its own place, beside which it looks for its configuration. Default: its
    // real path.
    std::optional<std::string> plugin_path;
    std::optional<std::string> manager;                 // of the second plug-in; default: none
    std::optional<ReplacedConfiguration> configuration; // default: the one beside the told place
};

// As text for people: the path, or the name that the loader is to find.
std::string place_of_library(const LibraryPlaces& places);

// What the library will be told about its own place, as far as that is known before it is loaded.
std::optional<std::string> told_place_ahead(const LibraryPlaces& places);

// In the order in which they are taken.
enum class LoadStep { kLoadingManager, kLoading, kInit, kInit3, kTerminate, kUnloading, kDone };

class PluginLibrary
{
  public:
    // Loads the library (not the plug-in manager, which must be loaded by then) and greets it. A library that
    // can't be loaded, lacks a handshake or refuses one is a Problem. `begins` is told of each step ahead of
    // it, those of the destructor as well.
    explicit PluginLibrary(const LibraryPlaces& places, std::function<void(LoadStep)> begins = {});

    // Says good-bye and unloads it: no handle may be open.
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    // Its real path.
    const std::string& path() const { return path_; }
    // What it was told about that.
    const std::string& told_path() const { return told_path_; }
    const std::optional<ReplacedConfiguration>& configuration() const { return configuration_; }
    // What it filled in stspi_init.
    const stspi_plugin_def_t& definition() const { return main_; }
    // The loader's.
    void* handle() const { return handle_.get(); }
    // Its name for itself, of stspi_init.
    std::string release() const;

    // The entry in a slot. A slot that is empty is a Problem that names it.
    template <class Entry>
    Entry* entry(const Slot<Entry>& slot) const
    {
        Entry* const taken = slot.taken_from(table_of(slot.table));
        if (!taken) fail_empty(slot.table, slot.number, slot.name);
        return taken;
    }

  private:
    struct Unload {
        void operator()(void* handle) const;
    };

    const stspi_slot_t* table_of(TableId table) const
    {
        return table == TableId::kMain ? main_.entry_points : second_.entry_points;
    }
    [[noreturn]] static void fail_empty(TableId table, std::size_t number, const char* name);
    void begin(LoadStep step) const;
    void load(const LibraryPlaces& places);

    const std::function<void(LoadStep)> begins_;
    std::unique_ptr<void, Unload> handle_;
    std::string path_;
    std::string told_path_;
    std::optional<ReplacedConfiguration> configuration_;
    stspi_plugin_def_t main_ = {};
    stspi_plugin_def3_t second_ = {};
};

} // namespace soapwrapper::probe

#endif
