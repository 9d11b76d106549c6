// Exchanges as files.
#ifndef SOAPWRAPPER_SIMULATOR_TRAFFIC_DUMP_FOLDER_H
#define SOAPWRAPPER_SIMULATOR_TRAFFIC_DUMP_FOLDER_H

#include "simulator/front/descriptor.h"
#include "simulator/traffic/exchange.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

namespace soapwrapper::simulator
{

// Any thread may call.
class DumpFolder
{
  public:
    // Makes the folder if it isn't there. Throws a std::runtime_error if it can't be used.
    explicit DumpFolder(std::string path);

    // A file for the request and one for the reply, numbered behind those that were there at the start. If
    // they can't be written, that is told on standard error, once.
    void write(const Exchange& exchange);

  private:
    bool write_file(const std::string& name, std::string_view text) const;

    const std::string path_;
    Descriptor folder_;
    std::uint64_t numbers_before_ = 0;
    std::atomic<bool> has_failed_{false};
};

} // namespace soapwrapper::simulator

#endif
