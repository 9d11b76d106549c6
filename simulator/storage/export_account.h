// What a server exports, and to whom.
#ifndef SOAPWRAPPER_SIMULATOR_STORAGE_EXPORT_ACCOUNT_H
#define SOAPWRAPPER_SIMULATOR_STORAGE_EXPORT_ACCOUNT_H

#include "simulator/scenario/records.h"
#include "simulator/storage/serial.h"

#include <cstddef>
#include <string>
#include <vector>

namespace soapwrapper::simulator
{

// A snapshot or a volume made reachable for hosts; without names, for any.
struct Export {
    std::size_t lsu = 0;
    Serial snapshot = 0; // 0: it is no snapshot's
    Volume volume;       // as the hosts reach it
    std::vector<std::string> hosts;
};

// Not guarded.
class ExportAccount
{
  public:
    static constexpr std::size_t kMost = 1000;
    // That the hosts' names take, those of all exports together. One request can tell as many as a MiB holds.
    static constexpr std::size_t kMostBytes = std::size_t{16} << 20;

    // The one that a host reaches by the volume, or null.
    Export* find(const Volume& volume);
    // Whether the snapshot is exported.
    bool holds(Serial snapshot) const;

    // The fault that there is no room for it changes nothing.
    const Export& add(Export made);
    // Without names the export is for any host, and stays so. Those that it has already make no difference.
    void add_hosts(Export& exported, const std::vector<std::string>& hosts);
    // All of them or, with the fault that one isn't among the export's, none.
    void remove_hosts(Export& exported, const std::vector<std::string>& hosts);
    void erase(const Export& exported);

    const std::vector<Export>& all() const { return exports_; }

  private:
    void require_room(std::size_t bytes) const;

    std::vector<Export> exports_;
    std::size_t bytes_ = 0;
};

} // namespace soapwrapper::simulator

#endif
