// The library, driven as a host drives it: loaded by its path, greeted by two handshakes, and from then on
// called through the slots of its tables only.
#ifndef SOAPWRAPPER_PROBE_LIBRARY_PLUGIN_LIBRARY_H
#define SOAPWRAPPER_PROBE_LIBRARY_PLUGIN_LIBRARY_H

#include "plugin/host/entry_points.h"
#include "probe/library/slots.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace soapwrapper::probe
{

class PluginLibrary
{
  public:
    // Loads the library from `path`; without one, from beside this program, else from where the system's
    // loader finds it. `plugin_path` is what the library is told about its own place, beside which it looks
    // for its configuration; without one, its real path. A library that can't be loaded, lacks a handshake
    // or refuses one is a Problem.
    PluginLibrary(const std::optional<std::string>& path, const std::optional<std::string>& plugin_path);

    // Says good-bye and unloads it: no handle may be open.
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

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

    std::unique_ptr<void, Unload> handle_;
    stspi_plugin_def_t main_ = {};
    stspi_plugin_def3_t second_ = {};
};

} // namespace soapwrapper::probe

#endif
